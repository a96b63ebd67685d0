#include "LineDiff.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <tuple>

namespace marlcase
{

namespace
{

// Sequences longer than this (the product of both lengths) are compared line
// by line in place of the longest common subsequence.
const size_t kMaxCells = 4000000;
const size_t kContext = 3;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// "YYYY-MM-DD HH:MM:SS" (or with a "T") at `i`.
bool dateTime(const std::string& t, size_t i)
{
    static const char shape[] = "dddd-dd-dd dd:dd:dd";
    if (i + 19 > t.size())
        return false;
    for (size_t k = 0; k < 19; ++k) {
        const char c = t[i + k];
        if (shape[k] == 'd' ? !isDigit(c) : k == 10 ? (c != ' ' && c != 'T') : c != shape[k])
            return false;
    }
    return true;
}

// Seconds or milliseconds since the epoch within a month of the line's own
// time, written "<now>".
bool nearNow(const std::string& t, size_t i, const LogLine& l, std::string& out)
{
    if (l.clock != LogLine::Dated)
        return false;
    size_t end = i;
    while (end < t.size() && isDigit(t[end]))
        ++end;
    if (end - i != 10 && end - i != 13)
        return false;
    const long long v = std::stoll(t.substr(i, end - i));
    const long long seconds = end - i == 13 ? v / 1000 : v;
    if (std::llabs(seconds - l.ms / 1000) > 31LL * 86400)
        return false;
    out += "<now>";
    return true;
}

bool isHex(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Lines that a tone in place of the field's audio cannot reproduce: one per
// chunk, and where speech was heard.
bool approximate(const LogLine& l)
{
    return l.function == "processAudio" || l.function == "onBeginningOfSpeech" || l.function == "onEndOfSpeech" ||
           l.function == "onRmsChanged" || (l.function == "MarlEngine_set_recording_data");
}

std::string pretty(const std::string& text, bool& json)
{
    Json::Value v;
    Json::CharReaderBuilder builder;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errors;
    json = !text.empty() && reader->parse(text.data(), text.data() + text.size(), &v, &errors);
    if (!json)
        return text;
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "  ";
    writer["emitUTF8"] = true;
    return Json::writeString(writer, v);
}

bool sameJson(const std::string& a, const std::string& b)
{
    if (a == b)
        return true;
    Json::Value va, vb;
    Json::CharReaderBuilder builder;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errors;
    if (a.empty() || b.empty() || !reader->parse(a.data(), a.data() + a.size(), &va, &errors) ||
        !reader->parse(b.data(), b.data() + b.size(), &vb, &errors))
        return false;
    return va == vb;
}

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> out;
    std::istringstream in(text);
    std::string l;
    while (std::getline(in, l))
        out.push_back(l);
    if (out.empty())
        out.push_back(text.empty() ? "(empty)" : text);
    return out;
}

// The two answers in two columns, differing rows marked.
std::string sideBySide(const std::string& left, const std::string& right)
{
    bool lj, rj;
    const std::vector<std::string> a = lines(pretty(left, lj)), b = lines(pretty(right, rj));
    size_t width = 10;
    for (const auto& l : a)
        width = std::max(width, std::min<size_t>(l.size(), 60));
    std::string out;
    char head[256];
    std::snprintf(head, sizeof head, "    %-*s   %s\n", static_cast<int>(width), "field", "replay");
    out += head;
    for (size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        const std::string l = i < a.size() ? a[i] : "", r = i < b.size() ? b[i] : "";
        std::snprintf(head, sizeof head, "  %c %-*s %c %s\n", l == r ? ' ' : '*', static_cast<int>(width), l.c_str(),
                      l == r ? '|' : '#', r.c_str());
        out += head;
    }
    return out;
}

std::string eventLabel(const Json::Value& e)
{
    const std::string type = e["type"].asString();
    std::string what;
    if (type == "driverRequest")
        what = e["request"]["Server Reqeust"]["action"]["name"].asString();
    else if (type == "action")
        what = e["agent"].asString() + " / " + e["actionName"].asString();
    else if (type == "wait")
        what = std::to_string(e["ms"].asInt64()) + " ms";
    else if (type == "error")
        what = std::to_string(e["code"].asInt()) + " " + e["message"].asString();
    else
        what = e["text"].asString();
    if (what.size() > 60)
        what = what.substr(0, 57) + "...";
    return type + " \"" + what + "\"";
}

struct Item {
    std::string key;
    const LogLine* line;
    size_t index;  // in the session's lines
};

class Comparer
{
public:
    Comparer(const Session& f, const Session& r) : mF(f), mR(r) {}

    Verdict run()
    {
        std::ostringstream report;
        const size_t turns = std::max(mF.turns.size(), mR.turns.size());
        if (mF.turns.size() != mR.turns.size())
            difference("the field's log has " + std::to_string(mF.turns.size()) + " turn(s), the replay " +
                       std::to_string(mR.turns.size()));
        // The set-up before the first turn.
        const size_t fSetup = mF.turns.empty() ? mF.lines.size() : mF.turns.front().firstLine;
        const size_t rSetup = mR.turns.empty() ? mR.lines.size() : mR.turns.front().firstLine;
        if (mF.loaded)
            report << "set-up: " << compareLines(nullptr, 0, fSetup, 0, rSetup, "the set-up before the first turn") << "\n";
        else
            report << "set-up: not compared: the field's log begins after the engine was loaded\n";
        for (size_t k = 0; k < turns && k < mF.turns.size() && k < mR.turns.size(); ++k) {
            const Turn& f = mF.turns[k];
            const Turn& r = mR.turns[k];
            const std::string name = "turn " + std::to_string(k + 1);
            report << name << ": " << compareCallbacks(f, r, name) << ", " << compareDriver(f, r, name) << ", "
                   << compareLines(&f, f.firstLine, f.endLine, r.firstLine, r.endLine, name) << "\n";
        }
        for (const auto& m : mMoved)
            report << "moved code: " << std::get<0>(m.first) << " " << std::get<1>(m.first) << ": line "
                   << std::get<2>(m.first) << " in the field's build, " << std::get<3>(m.first) << " in this one ("
                   << m.second << " line(s))\n";
        Verdict v;
        v.different = !mFirst.empty();
        v.report = report.str() + (mFirst.empty() ? "same\n" : "first difference: " + mFirst + "different\n");
        return v;
    }

private:
    void difference(const std::string& what)
    {
        if (mFirst.empty())
            mFirst = what + "\n";
    }

    std::string where(const Turn* t, size_t index, const std::string& turnName) const
    {
        if (!t)
            return turnName;
        size_t count = 0;
        const ServerEvent* last = nullptr;
        for (const ServerEvent& e : t->events) {
            if (e.line > index)
                break;
            ++count;
            last = &e;
        }
        if (!last)
            return turnName + ", recognition start and audio, before the server's first event";
        return turnName + ", " + last->stage + ", after the case's event " + std::to_string(count) + " (" +
               eventLabel(last->json) + ")";
    }

    std::string compareCallbacks(const Turn& f, const Turn& r, const std::string& name)
    {
        const size_t n = std::max(f.callbacks.size(), r.callbacks.size());
        for (size_t i = 0; i < n; ++i) {
            const Json::Value a = i < f.callbacks.size() ? f.callbacks[i].json : Json::Value();
            Json::Value b = i < r.callbacks.size() ? r.callbacks[i].json : Json::Value();
            // What the field's daemon did not log is not compared.
            if (a.isObject() && b.isObject())
                for (const auto& member : b.getMemberNames())
                    if (!a.isMember(member))
                        b.removeMember(member);
            if (a == b)
                continue;
            Json::StreamWriterBuilder w;
            w["indentation"] = "";
            w["emitUTF8"] = true;
            difference(name + ", the plug-in's call " + std::to_string(i + 1) + " back to the daemon:\n  field:  " +
                       (a.isNull() ? "(none)" : Json::writeString(w, a)) + "\n  replay: " +
                       (b.isNull() ? "(none)" : Json::writeString(w, b)));
            return "callbacks DIFFERENT (" + std::to_string(f.callbacks.size()) + " in the field, " +
                   std::to_string(r.callbacks.size()) + " in the replay)";
        }
        return "callbacks same (" + std::to_string(n) + ")";
    }

    std::string compareDriver(const Turn& f, const Turn& r, const std::string& name)
    {
        const size_t n = std::max(f.driver.size(), r.driver.size());
        for (size_t i = 0; i < n; ++i) {
            const std::string fq = i < f.driver.size() ? f.driver[i].request : "(none)";
            const std::string rq = i < r.driver.size() ? r.driver[i].request : "(none)";
            const std::string fa = i < f.driver.size() ? f.driver[i].response : "(none)";
            const std::string ra = i < r.driver.size() ? r.driver[i].response : "(none)";
            if (sameJson(fq, rq) && sameJson(fa, ra))
                continue;
            const std::string at = i < f.driver.size() ? where(&f, f.driver[i].line, name) : name;
            difference(at + ", driver request " + std::to_string(i + 1) + (sameJson(fq, rq) ? " " + fq : "") + ":\n" +
                       (sameJson(fq, rq) ? "" : "  the requests differ:\n" + sideBySide(fq, rq)) +
                       "  the plug-in's answers:\n" + sideBySide(fa, ra));
            return "driver responses DIFFERENT";
        }
        return "driver responses same (" + std::to_string(n) + ")";
    }

    std::vector<Item> items(const Session& s, size_t from, size_t to, size_t& skipped) const
    {
        std::vector<Item> out;
        for (size_t i = from; i < to && i < s.lines.size(); ++i) {
            if (approximate(*s.lines[i])) {
                ++skipped;
                continue;
            }
            out.push_back({normalizedLine(*s.lines[i]), s.lines[i], i});
        }
        return out;
    }

    static bool sameLines(const std::vector<Item>& a, const std::vector<Item>& b)
    {
        if (a.size() != b.size())
            return false;
        std::vector<std::string> x, y;
        for (const Item& i : a)
            x.push_back(i.key);
        for (const Item& i : b)
            y.push_back(i.key);
        std::sort(x.begin(), x.end());
        std::sort(y.begin(), y.end());
        return x == y;
    }

    std::string compareLines(const Turn* t, size_t fFrom, size_t fTo, size_t rFrom, size_t rTo,
                             const std::string& name)
    {
        size_t skippedF = 0, skippedR = 0;
        const std::vector<Item> a = items(mF, fFrom, fTo, skippedF);
        const std::vector<Item> b = items(mR, rFrom, rTo, skippedR);
        // The longest common subsequence of the keys, when it fits.
        std::vector<std::pair<size_t, size_t>> matched;
        if (a.size() * b.size() <= kMaxCells) {
            // l(i, j): the common length of a[i..] and b[j..].
            const size_t w = b.size() + 1;
            std::vector<unsigned short> cells((a.size() + 1) * w, 0);
            auto l = [&](size_t i, size_t j) -> unsigned short& { return cells[i * w + j]; };
            for (size_t i = a.size(); i-- > 0;)
                for (size_t j = b.size(); j-- > 0;)
                    l(i, j) = a[i].key == b[j].key ? static_cast<unsigned short>(l(i + 1, j + 1) + 1)
                                                   : std::max(l(i + 1, j), l(i, j + 1));
            for (size_t i = 0, j = 0; i < a.size() && j < b.size();) {
                if (a[i].key == b[j].key) {
                    matched.emplace_back(i++, j++);
                } else if (l(i + 1, j) >= l(i, j + 1)) {
                    ++i;
                } else {
                    ++j;
                }
            }
        } else {
            for (size_t i = 0; i < a.size() && i < b.size() && a[i].key == b[i].key; ++i)
                matched.emplace_back(i, i);
        }
        for (const auto& m : matched) {
            const LogLine& x = *a[m.first].line;
            const LogLine& y = *b[m.second].line;
            if (x.sourceLine != y.sourceLine)
                ++mMoved[std::make_tuple(x.source, x.function, x.sourceLine, y.sourceLine)];
        }
        const size_t differing = a.size() + b.size() - 2 * matched.size();
        std::string audio = skippedF + skippedR
                                ? "; audio lines not compared: " + std::to_string(skippedF) + " in the field, " +
                                      std::to_string(skippedR) + " in the replay"
                                : "";
        if (differing == 0)
            return "log lines same (" + std::to_string(a.size()) + audio + ")";
        // The plug-in's threads (the play thread beside the main loop) log in
        // no fixed order: the same lines in another order are the same turn.
        if (sameLines(a, b))
            return "log lines same (" + std::to_string(a.size()) + ", " + std::to_string(a.size() - matched.size()) +
                   " in another order, as its threads ran" + audio + ")";
        // The first line that is in one and not in the other.
        size_t i = 0, j = 0;
        for (const auto& m : matched) {
            if (m.first != i || m.second != j)
                break;
            ++i;
            ++j;
        }
        const size_t at = i < a.size() ? a[i].index : (a.empty() ? fFrom : a.back().index + 1);
        std::string shown = where(t, at, name) + ", the plug-in's log lines:\n";
        for (size_t c = i > kContext ? i - kContext : 0; c < i; ++c)
            shown += "    " + a[c].key + "\n";
        shown += "  field:  " + (i < a.size() ? a[i].key : std::string("(no more lines)")) + "\n";
        shown += "  replay: " + (j < b.size() ? b[j].key : std::string("(no more lines)")) + "\n";
        difference(shown);
        return "log lines DIFFERENT (" + std::to_string(differing) + " of " + std::to_string(a.size()) + " and " +
               std::to_string(b.size()) + audio + ")";
    }

    const Session& mF;
    const Session& mR;
    std::string mFirst;
    std::map<std::tuple<std::string, std::string, int, int>, size_t> mMoved;
};

}  // namespace

std::string normalizedLine(const LogLine& l)
{
    const std::string& text = l.text;
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        if (text.compare(i, 5, "(nil)") == 0) {
            out += "0x?";
            i += 5;
        } else if (text[i] == '0' && i + 1 < text.size() && text[i + 1] == 'x' && i + 2 < text.size() &&
                   isHex(text[i + 2])) {
            out += "0x?";
            i += 2;
            while (i < text.size() && isHex(text[i]))
                ++i;
        } else if (dateTime(text, i)) {
            // A date and time of day: the moment the line was logged, or near it.
            out += "<time>";
            i += 19;
        } else if (isDigit(text[i]) && (i == 0 || !isDigit(text[i - 1])) && nearNow(text, i, l, out)) {
            while (i < text.size() && isDigit(text[i]))
                ++i;
        } else if (text[i] == '/' && (i == 0 || std::strchr(" [(=:\"'", text[i - 1]))) {
            // A path: its last part only.
            size_t end = i;
            while (end < text.size() && !std::strchr(" ])\",'", text[end]))
                ++end;
            std::string path = text.substr(i, end - i);
            const bool folder = path.size() > 1 && path.back() == '/';
            if (folder)
                path.pop_back();
            out += ".../" + path.substr(path.rfind('/') + 1) + (folder ? "/" : "");
            i = end;
        } else {
            out += text[i++];
        }
    }
    return (l.source.empty() ? l.tag : l.source + ": " + l.function) + " > " + out;
}

Verdict compareSessions(const Session& field, const Session& replay)
{
    return Comparer(field, replay).run();
}

}  // namespace marlcase
