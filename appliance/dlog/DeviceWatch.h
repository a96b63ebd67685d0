// Tells the log whether device.json may have changed since its settings were
// read, without a stat per line: inotify on the device directory reports
// every change of the file (written, replaced, removed, made) and of the
// directory itself. Where inotify is not to be had (no instance left, no
// directory yet), every question answers "may have changed", and the log
// reads the description as any other caller does.
//
// Not thread-safe: the log asks under its lock.
#pragma once

#include <sys/types.h>

#include <string>

class DescriptionWatch {
public:
    DescriptionWatch() = default;
    DescriptionWatch(const DescriptionWatch&) = delete;
    DescriptionWatch& operator=(const DescriptionWatch&) = delete;

    // True while the watch has seen no change of device.json in the device
    // it was armed for; false for the default device (no MARL_DEVICE_DIR),
    // which is not watched.
    bool unchanged(pid_t pid);

    // Watches the device that `dirVariable` (MARL_DEVICE_DIR's value, null
    // for none) names from now on; the caller reads the description after
    // this, so that no change falls between the two.
    void arm(const char* dirVariable, pid_t pid);

private:
    // Reads the waiting events; true when one concerns device.json or the
    // watch itself.
    bool drain();

    int mFd = -1;              // the inotify instance; -1: none yet
    bool mUnavailable = false;  // inotify refused: answer "may have changed" for good
    pid_t mPid = -1;           // the process that made mFd (a fork shares it)
    int mWatch = -1;           // the directory's watch; -1: none
    std::string mFor;          // the MARL_DEVICE_DIR value it watches
};
