#include "apps/DeviceClock.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace apps {
namespace {

std::atomic<bool> gPinned{false};
std::atomic<int64_t> gPinnedNs{0};

}  // namespace

int64_t clockNowNs()
{
    if (gPinned.load())
        return gPinnedNs.load();
    struct timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

int64_t clockNowSeconds()
{
    const int64_t ns = clockNowNs();
    // Whole seconds toward the past, also before the epoch.
    return ns >= 0 ? ns / 1000000000 : -((-ns + 999999999) / 1000000000);
}

void pinClock(int64_t epochNs)
{
    gPinnedNs = epochNs;
    gPinned = true;
}

bool clockPinned()
{
    return gPinned.load();
}

void advanceClock(int64_t ns)
{
    if (gPinned.load())
        gPinnedNs += ns;
}

bool parseClockTime(const std::string& text, int64_t& epochSeconds, std::string& error)
{
    if (!text.empty() && text.find_first_not_of("0123456789") == std::string::npos && text.size() <= 12) {
        epochSeconds = std::strtoll(text.c_str(), nullptr, 10);
        return true;
    }
    struct tm parts = {};
    char zone = 0;
    int consumed = 0;
    if (std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%c%n", &parts.tm_year, &parts.tm_mon, &parts.tm_mday,
                    &parts.tm_hour, &parts.tm_min, &parts.tm_sec, &zone, &consumed) == 7 &&
        zone == 'Z' && static_cast<size_t>(consumed) == text.size() && parts.tm_mon >= 1 && parts.tm_mon <= 12 &&
        parts.tm_mday >= 1 && parts.tm_mday <= 31 && parts.tm_hour < 24 && parts.tm_min < 60 && parts.tm_sec < 60) {
        parts.tm_year -= 1900;
        parts.tm_mon -= 1;
        epochSeconds = static_cast<int64_t>(::timegm(&parts));
        return true;
    }
    error = "a time is UTC as 2025-03-03T08:00:00Z, or whole seconds since the epoch, not \"" + text + "\"";
    return false;
}

std::string clockTimeText(int64_t epochSeconds)
{
    const time_t t = static_cast<time_t>(epochSeconds);
    struct tm parts;
    char buffer[32] = "";
    if (::gmtime_r(&t, &parts))
        std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return buffer;
}

}  // namespace apps
