// Tells the log whether device.json or its own file may have changed since
// it last looked, without a stat per line: inotify on the device directory
// reports every change of device.json (written, replaced, removed, made) and
// of the directory itself, and inotify on DIR/log every removal or
// replacement of dlog.log. Where inotify is not to be had (no instance left,
// no directory yet), every question answers "may have changed", and the log
// reads the description and checks its file as it would without the watch.
//
// Not thread-safe: the log asks under its lock.
#pragma once

#include <sys/types.h>

#include <string>

class DeviceWatch {
public:
    DeviceWatch() = default;
    DeviceWatch(const DeviceWatch&) = delete;
    DeviceWatch& operator=(const DeviceWatch&) = delete;

    // True while the watch has seen no change of device.json, nor of the log
    // file, in the device it was armed for; false for the default device (no
    // MARL_DEVICE_DIR), which is not watched, and while DIR/log is not there.
    bool unchanged(pid_t pid);

    // Watches the device that `dirVariable` (MARL_DEVICE_DIR's value, null
    // for none) names from now on; the caller reads the description and
    // checks the log file after this, so that no change falls between.
    void arm(const char* dirVariable, pid_t pid);

private:
    // Reads the waiting events; true when one concerns device.json, the log
    // file or a watched directory itself.
    bool drain();
    void unwatch(int& watch);

    int mFd = -1;              // the inotify instance; -1: none yet
    bool mUnavailable = false;  // inotify refused: answer "may have changed" for good
    pid_t mPid = -1;           // the process that made mFd (a fork shares it)
    int mWatch = -1;           // the device directory's watch; -1: none
    int mLogWatch = -1;        // DIR/log's watch; -1: none
    std::string mFor;          // the MARL_DEVICE_DIR value it watches
};
