#include "vappliance/FileWatch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

namespace vapp {

namespace {

int64_t nanoseconds(const struct timespec& t)
{
    return static_cast<int64_t>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

int64_t realNowNs()
{
    struct timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    return nanoseconds(now);
}

// The whole file through an open descriptor, and its stat from that same
// descriptor, so that both belong to one file even while it is replaced.
bool readWhole(const std::string& path, std::string& text, struct stat& st)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    bool ok = ::fstat(fd, &st) == 0;
    text.clear();
    if (ok && st.st_size > 0)
        text.reserve(static_cast<size_t>(st.st_size));
    char buffer[4096];
    while (ok) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            ok = false;
        if (n <= 0)
            break;
        text.append(buffer, static_cast<size_t>(n));
    }
    ::close(fd);
    return ok;
}

}  // namespace

bool FileWatch::Stamp::operator==(const Stamp& other) const
{
    return dev == other.dev && ino == other.ino && size == other.size && mtimeNs == other.mtimeNs &&
           ctimeNs == other.ctimeNs;
}

FileWatch::Result FileWatch::poll(const std::string& path)
{
    struct stat st;
    if (::stat(path.c_str(), &st) != 0) {
        forget();
        return Missing;
    }
    Stamp stamp;
    stamp.dev = st.st_dev;
    stamp.ino = st.st_ino;
    stamp.size = st.st_size;
    stamp.mtimeNs = nanoseconds(st.st_mtim);
    stamp.ctimeNs = nanoseconds(st.st_ctim);
    if (mKnown && !mRacy && path == mPath && stamp == mStamp)
        return Unchanged;

    const int64_t readStart = realNowNs();
    std::string text;
    if (!readWhole(path, text, st)) {
        forget();
        return Missing;
    }
    stamp.dev = st.st_dev;
    stamp.ino = st.st_ino;
    stamp.size = st.st_size;
    stamp.mtimeNs = nanoseconds(st.st_mtim);
    stamp.ctimeNs = nanoseconds(st.st_ctim);
    const bool same = mKnown && path == mPath && text == mText;
    mKnown = true;
    mPath = path;
    mStamp = stamp;
    mRacy = stamp.mtimeNs > readStart - kRacyWindowNs || stamp.ctimeNs > readStart - kRacyWindowNs;
    if (same)
        return Unchanged;
    mText.swap(text);
    return Changed;
}

void FileWatch::forget()
{
    mKnown = false;
    mRacy = false;
    mPath.clear();
    mText.clear();
    mStamp = Stamp();
}

}  // namespace vapp
