// Helpers shared by the sources of the device directory library; not part of
// its interface.
#pragma once

#include <json/json.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <mutex>
#include <string>

namespace vapp {
namespace internal {

// Says a message on stderr, unless it is the one said last.
void warnOnce(const std::string& message);
bool parseJson(const std::string& text, Json::Value& out, std::string* error);
std::string writeJson(const Json::Value& value, bool pretty);
long long nowMs();
// A key of the key store: relative, without "..", "//" or a trailing slash.
bool validKey(const std::string& key);

// Holds an exclusive lock on a lock file beside the given path.
class FileLock {
public:
    explicit FileLock(const std::string& path)
        : mFd(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644))
    {
        if (mFd >= 0)
            ::flock(mFd, LOCK_EX);
    }
    ~FileLock()
    {
        if (mFd >= 0)
            ::close(mFd);
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    bool ok() const { return mFd >= 0; }

private:
    int mFd;
};

}  // namespace internal
}  // namespace vapp
