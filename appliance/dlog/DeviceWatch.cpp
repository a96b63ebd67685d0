#include "DescriptionWatch.h"

#include "vappliance/Device.h"

#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

const char kDescriptionName[] = "device.json";

const uint32_t kMask = IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_FROM |
                       IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

}  // namespace

bool DescriptionWatch::unchanged(pid_t pid)
{
    if (mFd < 0 || mWatch < 0 || pid != mPid)
        return false;
    // Most lines find no event waiting: asking how many bytes wait is
    // cheaper than a read that fails.
    int waiting = 0;
    if (::ioctl(mFd, FIONREAD, &waiting) == 0 && waiting == 0)
        return true;
    return !drain();
}

void DescriptionWatch::arm(const char* dirVariable, pid_t pid)
{
    if (mUnavailable)
        return;
    if (mFd >= 0 && pid != mPid) {
        // A forked child shares its parent's instance: it would take the
        // parent's events. It makes its own.
        ::close(mFd);
        mFd = -1;
        mWatch = -1;
    }
    if (mFd < 0) {
        mFd = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (mFd < 0) {
            mUnavailable = true;
            return;
        }
        mPid = pid;
        mWatch = -1;
    }
    // The default device ($HOME/.marl-device) is not watched: HOME may change.
    const std::string wanted = dirVariable ? dirVariable : "";
    if (mWatch < 0 || wanted != mFor) {
        if (mWatch >= 0)
            ::inotify_rm_watch(mFd, mWatch);
        mWatch = wanted.empty() ? -1 : ::inotify_add_watch(mFd, vapp::deviceDir().c_str(), kMask);
        mFor = wanted;
    }
    drain();
}

bool DescriptionWatch::drain()
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
            if (event->mask & IN_Q_OVERFLOW) {
                changed = true;
            } else if (event->wd != mWatch) {
                // A directory watched before (its IN_IGNORED after inotify_rm_watch).
            } else if (event->mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF)) {
                // The directory is gone or elsewhere: watched again, by its
                // path, on the next line.
                changed = true;
                if (!(event->mask & IN_IGNORED))
                    ::inotify_rm_watch(mFd, mWatch);
                mWatch = -1;
            } else if (event->len > 0 && std::strcmp(event->name, kDescriptionName) == 0) {
                changed = true;
            }
        }
    }
}
