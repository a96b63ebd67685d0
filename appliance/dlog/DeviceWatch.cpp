#include "DeviceWatch.h"

#include "vappliance/Device.h"

#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

const char kDescriptionName[] = "device.json";
const char kLogName[] = "dlog.log";

// In the device directory: any change of device.json. DIR/log removed or
// moved away shows on its own watch.
const uint32_t kMask = IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_FROM |
                       IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
// In DIR/log: dlog.log removed or replaced. Not its writes: every line is one.
const uint32_t kLogMask = IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

bool names(const struct inotify_event* event, const char* name)
{
    return event->len > 0 && std::strcmp(event->name, name) == 0;
}

}  // namespace

bool DeviceWatch::unchanged(pid_t pid)
{
    if (mFd < 0 || mWatch < 0 || mLogWatch < 0 || pid != mPid)
        return false;
    // Most lines find no event waiting: asking how many bytes wait is
    // cheaper than a read that fails.
    int waiting = 0;
    if (::ioctl(mFd, FIONREAD, &waiting) == 0 && waiting == 0)
        return true;
    return !drain();
}

void DeviceWatch::arm(const char* dirVariable, pid_t pid)
{
    if (mUnavailable)
        return;
    if (mFd >= 0 && pid != mPid) {
        // A forked child shares its parent's instance: it would take the
        // parent's events. It makes its own.
        ::close(mFd);
        mFd = -1;
    }
    if (mFd < 0) {
        mFd = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (mFd < 0) {
            mUnavailable = true;
            return;
        }
        mPid = pid;
        mWatch = -1;
        mLogWatch = -1;
    }
    // The default device ($HOME/.marl-device) is not watched: HOME may change.
    const std::string wanted = dirVariable ? dirVariable : "";
    if (wanted != mFor) {
        unwatch(mWatch);
        unwatch(mLogWatch);
        mFor = wanted;
    }
    if (!wanted.empty()) {
        if (mWatch < 0)
            mWatch = ::inotify_add_watch(mFd, vapp::deviceDir().c_str(), kMask);
        // DIR/log is made at the first line: watched from the line after.
        if (mWatch >= 0 && mLogWatch < 0)
            mLogWatch = ::inotify_add_watch(mFd, vapp::devicePath("log").c_str(), kLogMask);
    }
    drain();
}

void DeviceWatch::unwatch(int& watch)
{
    if (watch >= 0)
        ::inotify_rm_watch(mFd, watch);
    watch = -1;
}

bool DeviceWatch::drain()
{
    bool changed = false;
    alignas(struct inotify_event) char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(mFd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return changed;
        for (ssize_t offset = 0; offset < n;) {
            const auto* event = reinterpret_cast<const struct inotify_event*>(buffer + offset);
            offset += static_cast<ssize_t>(sizeof(struct inotify_event) + event->len);
            const bool gone = event->mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF);
            if (event->mask & IN_Q_OVERFLOW) {
                changed = true;
            } else if (event->wd < 0 || (event->wd != mWatch && event->wd != mLogWatch)) {
                // A directory watched before (its IN_IGNORED after inotify_rm_watch).
            } else if (gone) {
                // A directory is gone or elsewhere: both are watched again,
                // by their paths, on the next line.
                changed = true;
                if (event->wd == mWatch && (event->mask & IN_IGNORED))
                    mWatch = -1;
                if (event->wd == mLogWatch && (event->mask & IN_IGNORED))
                    mLogWatch = -1;
                unwatch(mWatch);
                unwatch(mLogWatch);
            } else if (event->wd == mWatch) {
                changed = changed || names(event, kDescriptionName);
            } else {
                changed = changed || names(event, kLogName);
            }
        }
    }
}
