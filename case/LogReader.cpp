#include "LogReader.h"

#include <cstring>

namespace marlcase
{

namespace
{

// A cursor over one line.
class Scan
{
public:
    explicit Scan(const std::string& s) : mS(s) {}

    bool done() const { return mPos >= mS.size(); }
    size_t pos() const { return mPos; }
    void to(size_t pos) { mPos = pos; }
    char peek() const { return done() ? '\0' : mS[mPos]; }
    bool eat(char c)
    {
        if (peek() != c)
            return false;
        ++mPos;
        return true;
    }
    bool eat(const char* word)
    {
        const size_t n = std::strlen(word);
        if (mS.compare(mPos, n, word) != 0)
            return false;
        mPos += n;
        return true;
    }
    void spaces()
    {
        while (peek() == ' ')
            ++mPos;
    }
    // Exactly `width` digits (any count from 1 when width is 0), at most 9.
    bool digits(size_t width, long long& value)
    {
        const size_t start = mPos;
        value = 0;
        while (isDigit(peek()) && (width == 0 || mPos - start < width) && mPos - start < 12) {
            value = value * 10 + (mS[mPos] - '0');
            ++mPos;
        }
        return mPos > start && (width == 0 || mPos - start == width);
    }
    std::string rest() const { return done() ? std::string() : mS.substr(mPos); }
    const std::string& line() const { return mS; }

    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

private:
    const std::string& mS;
    size_t mPos = 0;
};

long long daysFromCivil(long long y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long long>(doe) - 719468;
}

// "HH:MM:SS.mmm" into milliseconds of the day.
bool timeOfDay(Scan& s, long long& ms)
{
    long long h, m, sec, milli;
    if (!(s.digits(2, h) && s.eat(':') && s.digits(2, m) && s.eat(':') && s.digits(2, sec) && s.eat('.') &&
          s.digits(3, milli)))
        return false;
    if (h > 23 || m > 59 || sec > 60)
        return false;
    ms = ((h * 60 + m) * 60 + sec) * 1000 + milli;
    return true;
}

// An optional "+0900" or "-0530".
void zone(Scan& s, LogLine& line)
{
    const size_t start = s.pos();
    const char sign = s.peek();
    long long hhmm;
    if ((sign == '+' || sign == '-') && (s.eat(sign), s.digits(4, hhmm))) {
        line.zoned = true;
        line.zoneMinutes = static_cast<int>((hhmm / 100 * 60 + hhmm % 100) * (sign == '-' ? -1 : 1));
        return;
    }
    s.to(start);
}

bool level(char c)
{
    return std::strchr("VDIWEF", c) != nullptr && c != '\0';
}

std::string trimRight(std::string s)
{
    while (!s.empty() && s.back() == ' ')
        s.pop_back();
    return s;
}

// "L/TAG(PID): " or "L/TAG(P PID, T TID): " and the message.
bool levelTagPid(Scan& s, LogLine& line)
{
    const char l = s.peek();
    if (!level(l))
        return false;
    s.eat(l);
    if (!s.eat('/'))
        return false;
    const std::string& text = s.line();
    const size_t open = text.find('(', s.pos());
    if (open == std::string::npos || open == s.pos())
        return false;
    line.level = l;
    line.tag = trimRight(text.substr(s.pos(), open - s.pos()));
    if (line.tag.empty())
        return false;
    s.to(open + 1);
    s.spaces();
    long long pid, tid;
    if (s.eat('P')) {
        s.spaces();
        if (!s.digits(0, pid) || !s.eat(',') || (s.spaces(), !s.eat('T')))
            return false;
        s.spaces();
        if (!s.digits(0, tid))
            return false;
        line.tid = static_cast<int>(tid);
    } else if (!s.digits(0, pid)) {
        return false;
    }
    line.pid = static_cast<int>(pid);
    if (!s.eat("): ") && !(s.eat("):") && s.done()))
        return false;
    line.message = s.rest();
    return true;
}

// "  PID   TID L TAG     : " of the older threadtime form.
bool pidTidLevelTag(Scan& s, LogLine& line)
{
    long long pid, tid;
    s.spaces();
    if (!s.digits(0, pid))
        return false;
    s.spaces();
    if (!s.digits(0, tid) || !s.eat(' '))
        return false;
    const char l = s.peek();
    if (!level(l))
        return false;
    s.eat(l);
    if (!s.eat(' '))
        return false;
    const std::string& text = s.line();
    const size_t colon = text.find(": ", s.pos());
    const size_t end = colon == std::string::npos && text.size() > s.pos() && text.back() == ':' ? text.size() - 1 : colon;
    if (end == std::string::npos || end == s.pos())
        return false;
    line.tag = trimRight(text.substr(s.pos(), end - s.pos()));
    if (line.tag.empty())
        return false;
    line.level = l;
    line.pid = static_cast<int>(pid);
    line.tid = static_cast<int>(tid);
    line.message = end + 2 <= text.size() ? text.substr(end + 2) : std::string();
    return true;
}

bool parseLine(const std::string& text, LogLine& line)
{
    Scan s(text);
    long long a, b, c;
    // YYYY-MM-DD HH:MM:SS.mmm or MM-DD HH:MM:SS.mmm
    if (s.digits(4, a) && s.eat('-') && s.digits(2, b) && s.eat('-') && s.digits(2, c) && s.eat(' ')) {
        long long ms;
        if (b < 1 || b > 12 || c < 1 || c > 31 || !timeOfDay(s, ms))
            return false;
        line.clock = LogLine::Dated;
        line.ms = daysFromCivil(a, static_cast<unsigned>(b), static_cast<unsigned>(c)) * 86400000LL + ms;
        zone(s, line);
        return s.eat(' ') && levelTagPid(s, line);
    }
    s.to(0);
    if (s.digits(2, b) && s.eat('-') && s.digits(2, c) && s.eat(' ')) {
        long long ms;
        if (b < 1 || b > 12 || c < 1 || c > 31 || !timeOfDay(s, ms))
            return false;
        line.clock = LogLine::YearLess;
        // Within a leap year, so that the 29th of February has a place.
        line.ms = (daysFromCivil(2000, static_cast<unsigned>(b), static_cast<unsigned>(c)) -
                   daysFromCivil(2000, 1, 1)) * 86400000LL + ms;
        zone(s, line);
        if (!s.eat(' '))
            return false;
        const size_t at = s.pos();
        if (levelTagPid(s, line))
            return true;
        s.to(at);
        return pidTidLevelTag(s, line);
    }
    s.to(0);
    s.spaces();
    const size_t start = s.pos();
    long long seconds, milli;
    if (s.digits(0, seconds) && s.eat('.') && s.digits(3, milli)) {
        line.clock = LogLine::Boot;
        line.ms = seconds * 1000 + milli;
        zone(s, line);
        return s.eat(' ') && levelTagPid(s, line);
    }
    s.to(start);
    line.clock = LogLine::None;
    return levelTagPid(s, line);
}

void locate(LogLine& line)
{
    line.source.clear();
    line.function.clear();
    line.sourceLine = 0;
    if (!splitLocation(line.message, line.source, line.function, line.sourceLine, line.text))
        line.text = line.message;
    // The platform's secure log marks its lines so; what they say is the same.
    static const std::string secure = "[SECURE_LOG] ";
    if (line.text.compare(0, secure.size(), secure) == 0)
        line.text.erase(0, secure.size());
}

// A message whose "[" is not closed yet: the plug-in's values go between
// brackets, and one with a newline goes on in the next line.
bool unclosed(const std::string& message)
{
    long depth = 0;
    for (char c : message)
        depth += c == '[' ? 1 : c == ']' ? -1 : 0;
    return depth > 0;
}

bool banner(const std::string& text)
{
    return text.rfind("--------- ", 0) == 0 || text.find_first_not_of(" \t") == std::string::npos;
}

}  // namespace

bool splitLocation(const std::string& message, std::string& source, std::string& function, int& line,
                   std::string& text)
{
    const size_t colon = message.find(": ");
    if (colon == std::string::npos || colon == 0 || message.find(' ') < colon)
        return false;
    const size_t open = message.find('(', colon + 2);
    if (open == std::string::npos || open == colon + 2)
        return false;
    const size_t close = message.find(") >", open);
    if (close == std::string::npos || close == open + 1 || close - open > 10)
        return false;
    long long number = 0;
    for (size_t i = open + 1; i < close; ++i) {
        if (!Scan::isDigit(message[i]))
            return false;
        number = number * 10 + (message[i] - '0');
    }
    const std::string name = message.substr(colon + 2, open - colon - 2);
    if (name.find(' ') != std::string::npos)
        return false;
    source = message.substr(0, colon);
    function = name;
    line = static_cast<int>(number);
    size_t after = close + 3;
    if (after < message.size() && message[after] == ' ')
        ++after;
    text = message.substr(after);
    return true;
}

void readLog(const std::string& text, const std::string& name, size_t index, LogRead& out)
{
    size_t number = 0;
    size_t pos = 0;
    // Where the previous message of the appliance's form went, for its continuation lines.
    bool applianceOpen = false;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        const bool cut = end == std::string::npos;
        if (cut)
            end = text.size();
        std::string raw = text.substr(pos, end - pos);
        pos = end + 1;
        ++number;
        if (!raw.empty() && raw.back() == '\r')
            raw.pop_back();
        if (raw.find('\0') != std::string::npos) {
            out.problems.push_back(name + ":" + std::to_string(number) + ": holds a NUL byte: this is no text log");
            applianceOpen = false;
            continue;
        }
        LogLine line;
        line.file = index;
        line.number = number;
        if (!parseLine(raw, line)) {
            if (applianceOpen && !out.lines.empty() && unclosed(out.lines.back().message)) {
                LogLine& previous = out.lines.back();
                previous.message += "\n" + raw;
                locate(previous);
                continue;
            }
            if (banner(raw)) {
                ++out.otherLines;
                continue;
            }
            std::string shown = raw.size() > 80 ? raw.substr(0, 77) + "..." : raw;
            out.problems.push_back(name + ":" + std::to_string(number) + ": " +
                                   (cut ? "the log ends in the middle of this line: " : "not a line of the platform log: ") +
                                   "\"" + shown + "\"");
            continue;
        }
        applianceOpen = line.clock == LogLine::Dated;
        locate(line);
        // The reader's forms repeat the prefix on each line of a message:
        // a line without a location that follows one of the same time,
        // process and tag carries on its message.
        if (!out.lines.empty() && line.source.empty()) {
            LogLine& previous = out.lines.back();
            if (!previous.source.empty() && previous.file == line.file && previous.tag == line.tag &&
                previous.pid == line.pid && previous.tid == line.tid && previous.ms == line.ms &&
                previous.clock == line.clock && previous.level == line.level && line.clock != LogLine::Dated) {
                previous.message += "\n" + line.message;
                locate(previous);
                continue;
            }
        }
        out.lines.push_back(std::move(line));
    }
}

}  // namespace marlcase
