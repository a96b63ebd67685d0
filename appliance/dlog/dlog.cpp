// The platform log of the virtual appliance: every line goes to
// DIR/log/dlog.log, and from a chosen priority up also to stderr. The file
// stays open between lines; device.json's settings are read again only when
// the file has changed.
#include <dlog.h>

#include "vappliance/Device.h"
#include "vappliance/EnvironmentValue.h"

#include <fcntl.h>
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

// A line buffer grown beyond this by a long line is given back after it.
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

// What a process keeps between lines: the log file open for appending, the
// settings read from device.json, looked at again only when device.json has
// been parsed again, and the buffer that the line is put together in.
// Guarded by mutex.
struct LogState {
    std::mutex mutex;
    int fd = -1;
    vapp::EnvironmentValue dirVariable{"MARL_DEVICE_DIR"};
    vapp::EnvironmentValue stderrVariable{"MARL_LOG_STDERR"};
    std::string dir;  // MARL_DEVICE_DIR of the open file; empty: made from $HOME, checked each line
    std::shared_ptr<const Json::Value> settingsFrom;  // the description the settings came from
    bool settingsRead = false;
    int descriptionThreshold = DLOG_SILENT;
    bool injected = false;  // device.json's "errors" names dlog_print
    int injectedCode = 0;
    time_t stampSecond = -1;  // the second that stampText spells
    char stampText[32] = "";
    pid_t pid = -1;           // the process that pidText names
    char pidText[32] = "";
    std::string line;
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
// formatted once a second.
void appendTimestamp(LogState& log, std::string& line)
{
    struct timeval now;
    ::gettimeofday(&now, nullptr);
    if (now.tv_sec != log.stampSecond) {
        struct tm local;
        ::localtime_r(&now.tv_sec, &local);
        std::strftime(log.stampText, sizeof log.stampText, "%Y-%m-%d %H:%M:%S", &local);
        log.stampSecond = now.tv_sec;
    }
    const int ms = static_cast<int>(now.tv_usec / 1000);
    line.append(log.stampText);
    line.push_back('.');
    line.push_back(static_cast<char>('0' + ms / 100));
    line.push_back(static_cast<char>('0' + ms / 10 % 10));
    line.push_back(static_cast<char>('0' + ms % 10));
}

// "(  PID): ", formatted again only when the process is another (a fork).
void appendPid(LogState& log, std::string& line)
{
    const pid_t pid = ::getpid();
    if (pid != log.pid) {
        std::snprintf(log.pidText, sizeof log.pidText, "(%5d): ", static_cast<int>(pid));
        log.pid = pid;
    }
    line.append(log.pidText);
}

bool writeAll(int fd, const std::string& text)
{
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
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
    log.dir.clear();
}

// The descriptor of DIR/log/dlog.log, opened again when the device directory
// changed or the file was removed or replaced; -1 without a device directory.
int logFile(LogState& log)
{
    const char* dir = log.dirVariable.get();
    const bool sameDevice = dir && *dir && log.dir == dir;
    struct stat st;
    // A file removed, or replaced by a rename, has no links left.
    if (log.fd >= 0 && sameDevice && ::fstat(log.fd, &st) == 0 && st.st_nlink > 0)
        return log.fd;
    closeLog(log);
    if (!vapp::deviceExists() || !vapp::makeDirs(vapp::devicePath("log")))
        return -1;
    // O_APPEND: each line is one write at the end, so the lines of several
    // processes never interleave, and a line written is in the file even if
    // this process dies right after.
    const int fd = ::open(vapp::devicePath("log/dlog.log").c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return -1;
    log.fd = fd;
    log.dir = dir && *dir ? dir : "";
    return fd;
}

}  // namespace

extern "C" int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap)
{
    if (!tag || !fmt || !(prio == DLOG_DEFAULT || (prio >= DLOG_VERBOSE && prio <= DLOG_FATAL)))
        return DLOG_ERROR_INVALID_PARAMETER;
    const std::shared_ptr<const Json::Value> description = vapp::description();
    LogState& log = state();
    std::lock_guard<std::mutex> lock(log.mutex);
    readSettings(log, description);
    if (log.injected)
        return log.injectedCode;
    // The line is put together in one buffer kept from line to line; the
    // message is formatted straight into it.
    std::string& line = log.line;
    line.clear();
    appendTimestamp(log, line);
    const char head[] = {' ', letterOf(prio), '/', '\0'};
    line.append(head).append(tag);
    appendPid(log, line);
    const size_t start = line.size();
    line.resize(start + 512);
    va_list copy;
    va_copy(copy, ap);
    const int length = std::vsnprintf(&line[start], line.size() - start, fmt, copy);
    va_end(copy);
    if (length < 0)
        return DLOG_ERROR_INVALID_PARAMETER;
    if (start + static_cast<size_t>(length) >= line.size()) {
        line.resize(start + static_cast<size_t>(length) + 1);
        std::vsnprintf(&line[start], line.size() - start, fmt, ap);
    }
    line.resize(start + static_cast<size_t>(length));
    while (line.size() > start && line.back() == '\n')
        line.pop_back();
    line.push_back('\n');

    const int effective = prio == DLOG_DEFAULT ? DLOG_INFO : prio;
    if (effective >= stderrThreshold(log))
        writeAll(STDERR_FILENO, line);

    const int fd = logFile(log);
    int result = static_cast<int>(line.size());
    if (fd < 0) {
        result = DLOG_ERROR_NOT_PERMITTED;
    } else if (!writeAll(fd, line)) {
        closeLog(log);
        result = DLOG_ERROR_NOT_PERMITTED;
    }
    if (line.capacity() > kKeptCapacity)
        std::string().swap(line);
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
