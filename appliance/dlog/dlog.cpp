// The platform log of the virtual appliance: every line goes to
// DIR/log/dlog.log, and from a chosen priority up also to stderr. The file
// stays open between lines; device.json's settings are read again only when
// the file has changed.
#include <dlog.h>

#include "DeviceWatch.h"
#include "vappliance/Device.h"
#include "vappliance/EnvironmentValue.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <ctime>
#include <string>

namespace {

const bool kNamesRegistered = (vapp::registerErrorNames({
                                   {"DLOG_ERROR_NONE", DLOG_ERROR_NONE},
                                   {"DLOG_ERROR_INVALID_PARAMETER", DLOG_ERROR_INVALID_PARAMETER},
                                   {"DLOG_ERROR_NOT_PERMITTED", DLOG_ERROR_NOT_PERMITTED},
                               }),
                               true);

// The room that the line buffer keeps; one grown beyond kKeptCapacity by a
// long line is given back after it.
const size_t kLineRoom = 1024;
const size_t kKeptCapacity = 64 * 1024;

// Letters of the priorities DLOG_VERBOSE .. DLOG_FATAL.
const char kLetters[] = "VDIWEF";

char letterOf(log_priority prio)
{
    return prio == DLOG_DEFAULT ? 'I' : kLetters[prio - DLOG_VERBOSE];
}

// The word that names the lowest priority also going to stderr.
int thresholdOf(const std::string& word)
{
    if (word.empty() || word == "none")
        return DLOG_SILENT;
    if (word.size() == 1) {
        for (int i = 0; kLetters[i]; ++i)
            if (std::toupper(static_cast<unsigned char>(word[0])) == kLetters[i])
                return DLOG_VERBOSE + i;
    }
    static bool warned = false;
    if (!warned) {
        warned = true;
        std::fprintf(stderr, "dlog: unknown stderr level \"%s\" (V, D, I, W, E, F or none)\n",
                     word.c_str());
    }
    return DLOG_SILENT;
}

// The lock of the log's state: held while one line is put together and
// written, which is short and seldom contended, and taken at every line, where
// a mutex's lock and unlock would cost a tenth of the line.
class SpinLock {
public:
    SpinLock() { ::pthread_spin_init(&mLock, PTHREAD_PROCESS_PRIVATE); }
    SpinLock(const SpinLock&) = delete;
    SpinLock& operator=(const SpinLock&) = delete;
    void lock() { ::pthread_spin_lock(&mLock); }
    void unlock() { ::pthread_spin_unlock(&mLock); }

private:
    pthread_spinlock_t mLock;
};

// What a process keeps between lines: the log file open for appending, the
// settings read from device.json, looked at again only when device.json has
// been parsed again, and the buffer that the line is put together in.
// Guarded by lock.
struct LogState {
    SpinLock lock;
    int fd = -1;
    vapp::EnvironmentValue dirVariable{"MARL_DEVICE_DIR"};
    vapp::EnvironmentValue stderrVariable{"MARL_LOG_STDERR"};
    std::string dir;  // MARL_DEVICE_DIR of the open file and the watch; empty: the default device
    DeviceWatch deviceWatch;  // whether device.json or the log file may have changed since
    std::shared_ptr<const Json::Value> settingsFrom;  // the description the settings came from
    bool settingsRead = false;
    int descriptionThreshold = DLOG_SILENT;
    bool injected = false;  // device.json's "errors" names dlog_print
    int injectedCode = 0;
    time_t stampSecond = -1;  // the second and millisecond that stampText spells
    int stampMs = -1;
    char stampText[32] = "";
    size_t stampLength = 0;
    pid_t pid = -1;           // the process that pidText names
    char pidText[32] = "";
    size_t pidLength = 0;
    std::string buffer;       // the line is put together at its start; never shorter than kLineRoom
};

// The line being put together in the kept buffer: its first `used` bytes.
struct Line {
    std::string& buffer;
    size_t used = 0;

    void put(const char* text, size_t length)
    {
        if (used + length > buffer.size())
            buffer.resize(used + length + kLineRoom);
        std::memcpy(&buffer[used], text, length);
        used += length;
    }
};

LogState& state()
{
    static LogState* logState = new LogState();  // kept for lines logged at exit
    return *logState;
}

// Reads the settings of device.json again when it was parsed again: the
// lowest priority that also goes to stderr, and an error injected for
// dlog_print.
void readSettings(LogState& log, const std::shared_ptr<const Json::Value>& description)
{
    if (log.settingsRead && description == log.settingsFrom)
        return;
    log.settingsRead = true;
    log.settingsFrom = description;
    std::string word;
    if (description) {
        const Json::Value setting = description->get("dlog", Json::Value()).get("stderr", Json::Value());
        if (setting.isString())
            word = setting.asString();
    }
    log.descriptionThreshold = thresholdOf(word);
    log.injected = description && vapp::injectedError(*description, "dlog_print", &log.injectedCode);
}

// The lowest priority that also goes to stderr; DLOG_SILENT for none.
// MARL_LOG_STDERR overrides device.json's "dlog": {"stderr": ...}.
int stderrThreshold(LogState& log)
{
    const char* env = log.stderrVariable.get();
    if (env && *env)
        return thresholdOf(env);
    return log.descriptionThreshold;
}

// "YYYY-MM-DD HH:MM:SS.mmm", local time; the part up to the second is
// formatted once a second, the milliseconds once a millisecond.
void putTimestamp(LogState& log, Line& line)
{
    struct timeval now;
    ::gettimeofday(&now, nullptr);
    const int ms = static_cast<int>(now.tv_usec / 1000);
    if (now.tv_sec != log.stampSecond) {
        struct tm local;
        ::localtime_r(&now.tv_sec, &local);
        const size_t length = std::strftime(log.stampText, sizeof log.stampText - 4, "%Y-%m-%d %H:%M:%S", &local);
        log.stampText[length] = '.';
        log.stampLength = length + 4;
        log.stampSecond = now.tv_sec;
        log.stampMs = -1;
    }
    if (ms != log.stampMs) {
        char* digits = log.stampText + log.stampLength - 3;
        digits[0] = static_cast<char>('0' + ms / 100);
        digits[1] = static_cast<char>('0' + ms / 10 % 10);
        digits[2] = static_cast<char>('0' + ms % 10);
        log.stampMs = ms;
    }
    line.put(log.stampText, log.stampLength);
}

// "(  PID): ", formatted again only when the process is another (a fork).
void putPid(LogState& log, pid_t pid, Line& line)
{
    if (pid != log.pid) {
        const int length = std::snprintf(log.pidText, sizeof log.pidText, "(%5d): ", static_cast<int>(pid));
        log.pidLength = length > 0 ? static_cast<size_t>(length) : 0;
        log.pid = pid;
    }
    line.put(log.pidText, log.pidLength);
}

// The message, formatted straight into the buffer, without its final line
// breaks; false when the format is refused.
bool putMessage(Line& line, const char* fmt, va_list ap)
{
    const size_t start = line.used;
    va_list copy;
    va_copy(copy, ap);
    const int length = std::vsnprintf(&line.buffer[start], line.buffer.size() - start, fmt, copy);
    va_end(copy);
    if (length < 0)
        return false;
    if (static_cast<size_t>(length) >= line.buffer.size() - start) {
        line.buffer.resize(start + static_cast<size_t>(length) + 1);
        std::vsnprintf(&line.buffer[start], line.buffer.size() - start, fmt, ap);
    }
    line.used = start + static_cast<size_t>(length);
    while (line.used > start && line.buffer[line.used - 1] == '\n')
        --line.used;
    return true;
}

bool writeAll(int fd, const char* text, size_t size)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(fd, text + done, size - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

void closeLog(LogState& log)
{
    if (log.fd >= 0)
        ::close(log.fd);
    log.fd = -1;
}

// The descriptor of DIR/log/dlog.log, opened again when the file was removed,
// replaced or moved away (or closed for another device); -1 without a device
// directory.
int logFile(LogState& log)
{
    const std::string path = vapp::devicePath("log/dlog.log");
    struct stat opened;
    struct stat named;
    if (log.fd >= 0 && ::fstat(log.fd, &opened) == 0 && ::stat(path.c_str(), &named) == 0 &&
        opened.st_dev == named.st_dev && opened.st_ino == named.st_ino)
        return log.fd;
    closeLog(log);
    if (!vapp::deviceExists() || !vapp::makeDirs(vapp::devicePath("log")))
        return -1;
    // O_APPEND: each line is one write at the end, so the lines of several
    // processes never interleave, and a line written is in the file even if
    // this process dies right after.
    const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return -1;
    log.fd = fd;
    return fd;
}

}  // namespace

extern "C" int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap)
{
    if (!tag || !fmt || !(prio == DLOG_DEFAULT || (prio >= DLOG_VERBOSE && prio <= DLOG_FATAL)))
        return DLOG_ERROR_INVALID_PARAMETER;
    LogState& log = state();
    std::lock_guard<SpinLock> guard(log.lock);
    const pid_t pid = ::getpid();
    const char* dir = log.dirVariable.get();
    // A device named by MARL_DEVICE_DIR keeps its log file and its watch
    // while the variable stays; the default device is looked at afresh.
    const bool sameDevice = dir && *dir && std::strcmp(log.dir.c_str(), dir) == 0;
    if (!sameDevice) {
        closeLog(log);
        log.dir = dir && *dir ? dir : "";
    }
    const bool looked = !sameDevice || !log.settingsRead || !log.deviceWatch.unchanged(pid);
    if (looked) {
        log.deviceWatch.arm(dir, pid);
        readSettings(log, vapp::description());
    }
    if (log.injected)
        return log.injectedCode;
    // The line is put together in a buffer kept from line to line.
    if (log.buffer.size() < kLineRoom)
        log.buffer.resize(kLineRoom);
    Line line{log.buffer};
    putTimestamp(log, line);
    const char head[] = {' ', letterOf(prio), '/'};
    line.put(head, sizeof head);
    line.put(tag, std::strlen(tag));
    putPid(log, pid, line);
    int result = DLOG_ERROR_INVALID_PARAMETER;
    if (putMessage(line, fmt, ap)) {
        line.put("\n", 1);
        const int effective = prio == DLOG_DEFAULT ? DLOG_INFO : prio;
        if (effective >= stderrThreshold(log))
            writeAll(STDERR_FILENO, line.buffer.data(), line.used);
        // The file is checked only when the watch saw a change (or has none).
        const int fd = looked || log.fd < 0 ? logFile(log) : log.fd;
        result = static_cast<int>(line.used);
        if (fd < 0) {
            result = DLOG_ERROR_NOT_PERMITTED;
        } else if (!writeAll(fd, line.buffer.data(), line.used)) {
            closeLog(log);
            result = DLOG_ERROR_NOT_PERMITTED;
        }
    }
    if (log.buffer.size() > kKeptCapacity)
        std::string().swap(log.buffer);
    return result;
}

extern "C" int dlog_print(log_priority prio, const char* tag, const char* fmt, ...)
{
    va_list ap;
    va_start(ap, fmt);
    const int result = dlog_vprint(prio, tag, fmt, ap);
    va_end(ap);
    return result;
}
