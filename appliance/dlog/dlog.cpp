// The platform log of the virtual appliance: every line goes to
// DIR/log/dlog.log, and from a chosen priority up also to stderr.
#include <dlog.h>

#include "vappliance/Device.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

const bool kNamesRegistered = (vapp::registerErrorNames({
                                   {"DLOG_ERROR_NONE", DLOG_ERROR_NONE},
                                   {"DLOG_ERROR_INVALID_PARAMETER", DLOG_ERROR_INVALID_PARAMETER},
                                   {"DLOG_ERROR_NOT_PERMITTED", DLOG_ERROR_NOT_PERMITTED},
                               }),
                               true);

// Letters of the priorities DLOG_VERBOSE .. DLOG_FATAL.
const char kLetters[] = "VDIWEF";

char letterOf(log_priority prio)
{
    return prio == DLOG_DEFAULT ? 'I' : kLetters[prio - DLOG_VERBOSE];
}

// The lowest priority that also goes to stderr; DLOG_SILENT for none.
// MARL_LOG_STDERR overrides device.json's "dlog": {"stderr": ...}.
int stderrThreshold()
{
    std::string word;
    const char* env = std::getenv("MARL_LOG_STDERR");
    if (env && *env) {
        word = env;
    } else {
        const Json::Value setting = vapp::section("dlog").get("stderr", Json::Value());
        if (setting.isString())
            word = setting.asString();
    }
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

std::string timestamp()
{
    struct timeval now;
    ::gettimeofday(&now, nullptr);
    struct tm local;
    ::localtime_r(&now.tv_sec, &local);
    char text[32];
    const size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(text + length, sizeof text - length, ".%03d",
                  static_cast<int>(now.tv_usec / 1000));
    return text;
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

}  // namespace

extern "C" int dlog_vprint(log_priority prio, const char* tag, const char* fmt, va_list ap)
{
    if (!tag || !fmt || !(prio == DLOG_DEFAULT || (prio >= DLOG_VERBOSE && prio <= DLOG_FATAL)))
        return DLOG_ERROR_INVALID_PARAMETER;
    int code;
    if (vapp::injectedError("dlog_print", &code))
        return code;

    va_list copy;
    va_copy(copy, ap);
    const int length = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    if (length < 0)
        return DLOG_ERROR_INVALID_PARAMETER;
    std::string message(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(&message[0], message.size(), fmt, ap);
    message.resize(static_cast<size_t>(length));
    while (!message.empty() && message.back() == '\n')
        message.pop_back();

    char head[64];
    std::snprintf(head, sizeof head, " %c/", letterOf(prio));
    char pid[32];
    std::snprintf(pid, sizeof pid, "(%5d): ", static_cast<int>(::getpid()));
    const std::string line = timestamp() + head + tag + pid + message + "\n";

    const int effective = prio == DLOG_DEFAULT ? DLOG_INFO : prio;
    if (effective >= stderrThreshold())
        writeAll(STDERR_FILENO, line);

    if (!vapp::deviceExists())
        return DLOG_ERROR_NOT_PERMITTED;
    const std::string dir = vapp::devicePath("log");
    if (!vapp::makeDirs(dir))
        return DLOG_ERROR_NOT_PERMITTED;
    // One write with O_APPEND: lines of several processes never interleave.
    const int fd = ::open((dir + "/dlog.log").c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC,
                          0644);
    if (fd < 0)
        return DLOG_ERROR_NOT_PERMITTED;
    const bool ok = writeAll(fd, line);
    ::close(fd);
    return ok ? static_cast<int>(line.size()) : DLOG_ERROR_NOT_PERMITTED;
}

extern "C" int dlog_print(log_priority prio, const char* tag, const char* fmt, ...)
{
    va_list ap;
    va_start(ap, fmt);
    const int result = dlog_vprint(prio, tag, fmt, ap);
    va_end(ap);
    return result;
}
