#include "HtmlPage.h"

#include "Latency.h"

#include "Render.h"
#include "Transcript.h"

#include "vappliance/Device.h"

#include <openssl/evp.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace sim
{

namespace
{

// A spoken answer larger than this is named, not embedded.
const std::uintmax_t kMaxEmbeddedBytes = 16u << 20;

std::string escape(const std::string& text)
{
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string indented(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

// JSON text indented, other text as it is.
std::string pretty(const std::string& text)
{
    Json::CharReaderBuilder builder;
    std::istringstream in(text);
    Json::Value value;
    std::string errors;
    if (text.empty() || !Json::parseFromStream(builder, in, &value, &errors))
        return text;
    return indented(value);
}

std::string pre(const std::string& text)
{
    return "<pre>" + escape(text) + "</pre>";
}

std::string text(const Json::Value& value)
{
    return value.isNull() ? "(null)" : value.isString() ? value.asString() : compact(value);
}

// A value given as JSON text (an NLU result, a driver request) or as JSON.
std::string prettyValue(const Json::Value& value)
{
    return value.isString() ? pretty(value.asString()) : indented(value);
}

std::string base64(const std::string& bytes)
{
    std::string out(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    const int length = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(&out[0]),
                                       reinterpret_cast<const unsigned char*>(bytes.data()),
                                       static_cast<int>(bytes.size()));
    out.resize(static_cast<size_t>(std::max(0, length)));
    return out;
}

std::string callLine(const Json::Value& e)
{
    std::string line = e["fn"].asString() + "(";
    for (Json::ArrayIndex i = 0; i < e["args"].size(); ++i)
        line += (i ? ", " : "") + compact(e["args"][i]);
    line += ")";
    if (e.isMember("ret"))
        line += " \u2192 " + compact(e["ret"]);
    return line;
}

// The WAV file named by a note of the spoken answer, or "".
std::string spokenWav(const std::string& note)
{
    static const std::string asWav = " as WAV ", played = "spoken answer: played, ";
    if (note.rfind("spoken answer: ", 0) != 0)
        return "";
    const size_t at = note.find(asWav);
    if (at != std::string::npos)
        return note.substr(at + asWav.size());
    if (note.rfind(played, 0) == 0)
        return note.substr(played.size());
    return "";
}

const char* const kStyle = R"(
body { font: 15px/1.45 sans-serif; color: #222; background: #fff; margin: 24px auto; max-width: 1100px; padding: 0 16px; }
h1 { font-size: 22px; margin: 0 0 8px; }
h2 { font-size: 19px; margin: 0 0 6px; }
h3 { font-size: 15px; margin: 16px 0 4px; color: #444; }
h4 { font-size: 13px; margin: 0 0 2px; color: #555; font-weight: normal; }
section { border-top: 2px solid #ccc; padding: 14px 0 10px; margin-top: 18px; }
table { border-collapse: collapse; }
td, th { padding: 2px 10px 2px 0; text-align: left; vertical-align: top; }
th { font-weight: 600; color: #444; border-bottom: 1px solid #ccc; }
td.ms { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
pre { background: #f4f4f4; border: 1px solid #e2e2e2; padding: 6px 8px; margin: 2px 0 6px;
      white-space: pre-wrap; overflow-wrap: anywhere; font-size: 13px; }
dl { margin: 0; display: grid; grid-template-columns: max-content auto; gap: 2px 14px; }
dt { color: #555; }
dd { margin: 0; overflow-wrap: anywhere; }
ul { margin: 2px 0; padding-left: 20px; }
.meta { color: #555; margin: 0; }
.track { position: relative; width: 420px; height: 12px; background: #eee; margin-top: 4px; }
.bar { position: absolute; top: 0; height: 12px; background: #4a78b5; min-width: 2px; }
.latency { font-weight: 600; }
.pair { display: grid; grid-template-columns: 1fr 1fr; gap: 10px; }
.text { font-size: 16px; }
.outcome-SUCCESS { color: #1d6b2c; font-weight: 600; }
.outcome-REJECTED, .outcome-error { color: #9c2b1f; font-weight: 600; }
audio { width: 420px; }
)";

}  // namespace

HtmlPage::HtmlPage(std::string path) : mPath(std::move(path)), mTurns(std::tmpfile(), &std::fclose)
{
}

void HtmlPage::entry(const Json::Value& e)
{
    const std::string kind = e["kind"].asString();
    if (kind == "turn" || kind == "section") {
        endTurn();
        if (kind == "section") {
            mEnded = true;
            return;
        }
        mInTurn = true;
        mTurn = Turn();
        mTurn.number = e["turn"].asInt();
        mTurn.startMs = mTurn.lastMs = e["t"].asInt64();
        mTurn.audio = e["audio"].asString().empty() ? "none" : e["audio"].asString();
        mTurn.end = e["end"].asString();
        mTurn.listen = e["listen"].asBool();
        if (!mTurn.listen)
            mTurn.notes.push_back(std::to_string(e["server"].size()) + " scripted server event(s)");
        return;
    }
    if (!mInTurn) {
        if (kind == "call")
            (mEnded ? mEnd : mSetUp).push_back(callLine(e));
        else if (kind == "note")
            (mEnded ? mEnd : mSetUp).push_back("note: " + e["text"].asString());
        return;
    }
    turnEntry(e);
}

void HtmlPage::turnEntry(const Json::Value& e)
{
    const std::string kind = e["kind"].asString();
    const long long ms = e["t"].asInt64();
    if (kind != "device")
        mTurn.lastMs = std::max(mTurn.lastMs, ms);
    if (kind == "callback") {
        const std::string fn = e["fn"].asString();
        if (fn == "asr" && e["event"] == 1) {
            if (mTurn.partials.empty() || mTurn.partials.back() != text(e["text"]))
                mTurn.partials.push_back(text(e["text"]));
        } else if (fn == "asr" && e["event"] == 0) {
            mTurn.finals.push_back(text(e["text"]));
        } else if (fn == "asr") {
            mTurn.results.push_back("<p>asr error: " + escape(text(e["text"])) + "</p>");
        } else if (fn == "result") {
            const std::string event = resultEventName(e["event"].asInt());
            std::string html = "<dl><dt>event</dt><dd class=\"outcome-" + escape(event) + "\">" +
                               escape(event) + "</dd><dt>text</dt><dd class=\"text\">" +
                               escape(text(e["allResult"])) + "</dd><dt>command ids</dt><dd>" +
                               escape(text(e["ids"])) + "</dd>";
            if (e.isMember("matched"))
                html += "<dt>matched commands</dt><dd>" + escape(text(e["matched"])) + "</dd>";
            if (!e["nonFixedResult"].isNull())
                html += "<dt>non-fixed</dt><dd>" + escape(text(e["nonFixedResult"])) + "</dd>";
            html += "<dt>message</dt><dd>" + escape(text(e["message"])) + "</dd>";
            if (e.isMember("dropped"))
                html += "<dt>dropped</dt><dd>" + escape(text(e["dropped"])) + "</dd>";
            html += "</dl>";
            if (!e["nluResult"].isNull())
                html += "<h4>NLU result</h4>" + pre(prettyValue(e["nluResult"]));
            mTurn.results.push_back(html);
            if (!e.isMember("dropped")) {
                mTurn.heard = text(e["allResult"]);
                mTurn.outcome = event;
            }
        } else if (fn == "error") {
            const std::string line = "error " + std::to_string(e["code"].asInt()) + ": " + text(e["message"]);
            mTurn.results.push_back("<p class=\"outcome-error\">" + escape(line) + "</p>");
            mTurn.outcome = "error";
        }
    } else if (kind == "speech") {
        const Json::Value& obs = e["obs"];
        const std::string what = obs["what"].asString();
        if (what == "deliver") {
            const Json::Value& event = obs["event"];
            if (event["type"] == "nlu") {
                std::string head = "last: " + std::string(event["last"].asBool() ? "yes" : "no");
                if (event.isMember("speechBytes") || event.isMember("speechFile"))
                    head += ", with speech";
                mTurn.nlu.push_back("<h4>" + escape(head) + "</h4>" + pre(prettyValue(event["text"])));
            } else if (event["type"] == "error") {
                mTurn.notes.push_back("the service's error: " + compact(event));
            }
        } else if (what == "recognition") {
            mTurn.recognition.push_back(obs.isMember("problem")
                                            ? "problem: " + text(obs["problem"])
                                            : "\"" + text(obs["text"]) + "\", score " + text(obs["score"]) +
                                                  (obs["accepted"].asBool() ? ", accepted" : ", not accepted"));
        } else if (what == "driverRequest") {
            mTurn.driver.emplace_back(prettyValue(obs["request"]), prettyValue(obs["response"]));
        } else if (what == "executeOVAction") {
            Json::Value action = obs;
            action.removeMember("what");
            action.removeMember("thread");
            std::string html;
            if (action["rawJson"].isString()) {
                const std::string raw = pretty(action["rawJson"].asString());
                action.removeMember("rawJson");
                html = pre(indented(action)) + "<h4>rawJson</h4>" + pre(raw);
            } else {
                html = pre(indented(action));
            }
            mTurn.actions.push_back(html);
        }
    } else if (kind == "device") {
        Json::Value rest = e;
        for (const char* name : {"kind", "event", "t", "thread"})
            rest.removeMember(name);
        mTurn.appliance.push_back(e["event"].asString() + ": " + compact(rest));
        if (e["event"] == "audio_playback" && e["file"].isString()) {
            const std::string wav = vapp::devicePath(e["file"].asString());
            if (std::find(mTurn.spoken.begin(), mTurn.spoken.end(), wav) == mTurn.spoken.end())
                mTurn.spoken.push_back(wav);
        }
    } else if (kind == "file") {
        mTurn.appliance.push_back("file " + e["change"].asString() + " " + e["path"].asString() +
                                  (e.isMember("bytes") ? " (" + text(e["bytes"]) + " bytes)" : ""));
    } else if (kind == "note") {
        const std::string note = e["text"].asString();
        mTurn.notes.push_back(note);
        const std::string wav = spokenWav(note);
        if (!wav.empty() && std::find(mTurn.spoken.begin(), mTurn.spoken.end(), wav) == mTurn.spoken.end())
            mTurn.spoken.push_back(wav);
    } else if (kind == "latency") {
        mTurn.latency = e;
    }
}

// The turn's stages from its latency entry, in time order (stages of the
// same millisecond in the order a turn goes through them).
std::vector<HtmlPage::Stage> HtmlPage::stages() const
{
    std::vector<Stage> stages;
    for (const TurnStage& stage : turnStages(mTurn.latency)) {
        if (!stage.number) {
            stages.push_back({stage.title, stage.ms});
            continue;
        }
        const std::string n = " " + std::to_string(stage.number);
        stages.push_back({"driver request" + n, stage.ms});
        if (stage.endMs >= 0)
            stages.push_back({"driver response" + n, stage.endMs});
    }
    std::stable_sort(stages.begin(), stages.end(),
                     [](const Stage& a, const Stage& b) { return a.ms < b.ms; });
    return stages;
}

// The end of speech to the result, -1 when either is missing.
long long HtmlPage::eosToResult() const
{
    const Json::Value& ms = mTurn.latency["endOfSpeechToResultMs"];
    return ms.isNumeric() ? ms.asInt64() : -1;
}

std::string HtmlPage::timeline() const
{
    const long long eosToResult = this->eosToResult();
    const std::vector<Stage> stages = this->stages();
    long long total = std::max(1LL, mTurn.lastMs - mTurn.startMs);
    for (const auto& s : stages)
        total = std::max(total, s.ms);

    std::ostringstream out;
    out << "<h3>Timeline</h3>";
    if (eosToResult >= 0)
        out << "<p class=\"latency\">end of speech to result: " << eosToResult << " ms</p>";
    out << "<table class=\"timeline\"><tr><th>stage</th><th>at</th><th>took</th><th>from the turn's start "
        << "to its last entry (" << total << " ms)</th></tr>";
    long long previous = 0;
    for (const auto& s : stages) {
        const long long from = std::min(previous, s.ms);
        const double left = 100.0 * double(from) / double(total);
        const double width = 100.0 * double(s.ms - from) / double(total);
        char bar[96];
        std::snprintf(bar, sizeof bar, "left:%.2f%%;width:%.2f%%", left, width);
        out << "<tr><td>" << escape(s.name) << "</td><td class=\"ms\">" << s.ms
            << " ms</td><td class=\"ms\">+" << (s.ms - from) << " ms</td><td><div class=\"track\">"
            << "<div class=\"bar\" style=\"" << bar << "\"></div></div></td></tr>";
        previous = std::max(previous, s.ms);
    }
    if (stages.empty())
        out << "<tr><td colspan=\"4\">no stage seen</td></tr>";
    out << "</table>";
    return out.str();
}

std::string HtmlPage::spokenAnswer(const std::string& wav) const
{
    namespace fs = std::filesystem;
    std::error_code ec;
    const std::uintmax_t size = fs::file_size(wav, ec);
    if (ec)
        return "<p>" + escape(wav) + ": not found</p>";
    if (size > kMaxEmbeddedBytes)
        return "<p>" + escape(wav) + " (" + std::to_string(size) + " bytes, too large to embed)</p>";
    std::ifstream in(wav, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return "<p><audio controls preload=\"auto\" src=\"data:audio/wav;base64," + base64(bytes.str()) +
           "\"></audio><br><span class=\"meta\">" + escape(wav) + " (" + std::to_string(size) +
           " bytes)</span></p>";
}

void HtmlPage::endTurn()
{
    if (!mInTurn)
        return;
    mInTurn = false;
    const Turn& t = mTurn;
    std::ostringstream out;
    out << "<section class=\"turn\" id=\"turn-" << t.number << "\"><h2>Turn " << t.number << "</h2>"
        << "<p class=\"meta\">audio: " << escape(t.audio) << "; ends by " << escape(t.end) << "; "
        << (t.listen ? "recognized on the appliance, its speech service answers" : "scripted server")
        << "</p>";
    out << timeline();

    out << "<h3>Texts</h3><dl>";
    for (const auto& r : t.recognition)
        out << "<dt>recognizer</dt><dd>" << escape(r) << "</dd>";
    if (!t.partials.empty()) {
        out << "<dt>partial</dt><dd>";
        for (size_t i = 0; i < t.partials.size(); ++i)
            out << (i ? " \u2192 " : "") << escape(t.partials[i]);
        out << "</dd>";
    }
    for (const auto& f : t.finals)
        out << "<dt>final</dt><dd class=\"text\">" << escape(f) << "</dd>";
    if (t.recognition.empty() && t.partials.empty() && t.finals.empty())
        out << "<dt>none</dt><dd>no text reached the daemon</dd>";
    out << "</dl>";

    if (!t.nlu.empty()) {
        out << "<h3>NLU</h3>";
        for (const auto& n : t.nlu)
            out << n;
    }
    for (size_t i = 0; i < t.driver.size(); ++i)
        out << "<h3>Driver request " << (i + 1) << "</h3><div class=\"pair\"><div><h4>request</h4>"
            << pre(t.driver[i].first) << "</div><div><h4>the plug-in's response</h4>"
            << pre(t.driver[i].second) << "</div></div>";
    if (!t.actions.empty()) {
        out << "<h3>Action</h3>";
        for (const auto& a : t.actions)
            out << a;
    }
    out << "<h3>Result</h3>";
    if (t.results.empty())
        out << "<p>no result or error reached the daemon</p>";
    for (const auto& r : t.results)
        out << r;
    out << "<h3>What the appliance saw</h3>";
    if (t.appliance.empty())
        out << "<p>nothing</p>";
    else {
        out << "<ul>";
        for (const auto& a : t.appliance)
            out << "<li>" << escape(a) << "</li>";
        out << "</ul>";
    }
    if (!t.spoken.empty()) {
        out << "<h3>Spoken answer</h3>";
        for (const auto& wav : t.spoken)
            out << spokenAnswer(wav);
    }
    if (!t.notes.empty()) {
        out << "<h3>Notes</h3><ul>";
        for (const auto& n : t.notes)
            out << "<li>" << escape(n) << "</li>";
        out << "</ul>";
    }
    out << "</section>\n";
    const std::string html = out.str();
    if (mTurns)
        std::fwrite(html.data(), 1, html.size(), mTurns.get());

    Row row{t.number, t.audio, t.heard.empty() && !t.finals.empty() ? t.finals.back() : t.heard,
            t.outcome.empty() ? "none" : t.outcome, ""};
    if (eosToResult() >= 0)
        row.latency = std::to_string(eosToResult()) + " ms";
    mRows.push_back(row);
}

bool HtmlPage::finish(const Json::Value& header, std::string* error)
{
    endTurn();
    auto fail = [&](const std::string& why) {
        if (error)
            *error = why;
        return false;
    };
    if (!mTurns)
        return fail("cannot make a scratch file for " + mPath);
    std::ofstream out(mPath, std::ios::binary);
    if (!out)
        return fail("cannot write " + mPath);
    const std::string name = header["scenario"]["name"].asString();
    out << "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
        << "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        << "style-src 'unsafe-inline'; media-src data:\">"
        << "<title>marl-sim session: " << escape(name) << "</title><style>" << kStyle
        << "</style></head>\n<body>\n<h1>marl-sim session: " << escape(name) << "</h1><dl>";
    const std::pair<const char*, Json::Value> facts[] = {
        {"scenario", header["scenario"]["file"]},
        {"spoken by", header["spoken"]},
        {"engine", header["engine"]["name"].isString()
                       ? Json::Value(header["engine"]["name"].asString() + " (" +
                                     header["engine"]["uuid"].asString() + ")")
                       : Json::Value()},
        {"plug-in", header["plugin"]},
        {"device", header["device"]["dir"]},
        {"daemon", header["daemon"]},
        {"started", header["started"]},
        {"options", header["options"]}};
    for (const auto& fact : facts)
        if (!fact.second.isNull())
            out << "<dt>" << fact.first << "</dt><dd>" << escape(text(fact.second)) << "</dd>";
    out << "</dl>\n<section><h2>Turns</h2><table><tr><th>turn</th><th>audio</th><th>heard</th>"
        << "<th>outcome</th><th>end of speech to result</th></tr>";
    for (const auto& row : mRows)
        out << "<tr><td><a href=\"#turn-" << row.number << "\">" << row.number << "</a></td><td>"
            << escape(row.audio) << "</td><td>" << escape(row.heard) << "</td><td class=\"outcome-"
            << escape(row.outcome) << "\">" << escape(row.outcome) << "</td><td class=\"ms\">"
            << escape(row.latency) << "</td></tr>";
    if (mRows.empty())
        out << "<tr><td colspan=\"5\">no turn was played</td></tr>";
    out << "</table></section>\n<section><h2>Set-up</h2><ul>";
    for (const auto& line : mSetUp)
        out << "<li>" << escape(line) << "</li>";
    out << "</ul></section>\n";
    std::fflush(mTurns.get());
    std::rewind(mTurns.get());
    char buffer[65536];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, mTurns.get())) > 0;)
        out.write(buffer, static_cast<std::streamsize>(n));
    out << "<section><h2>End of the session</h2><ul>";
    for (const auto& line : mEnd)
        out << "<li>" << escape(line) << "</li>";
    out << "</ul></section>\n</body></html>\n";
    out.close();
    if (!out)
        return fail("cannot write " + mPath);
    return true;
}

}  // namespace sim
