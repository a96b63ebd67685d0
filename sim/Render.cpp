#include "Render.h"

#include "Latency.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <map>
#include <regex>
#include <sstream>

namespace sim
{

namespace
{

std::string quote(const Json::Value& value)
{
    return value.isNull() ? "null" : compact(value);
}

std::string asrEventName(int event)
{
    switch (event) {
        case 0:
            return "FINAL";
        case 1:
            return "PARTIAL";
        case 2:
            return "ERROR";
    }
    return "?";
}

std::string speechName(const Json::Value& value)
{
    if (value.isNull())
        return "not written";
    switch (value.asInt()) {
        case 0:
            return "none";
        case 1:
            return "begin";
        case 2:
            return "end";
    }
    return std::to_string(value.asInt());
}

std::string errorName(int code)
{
    switch (code) {
        case 0:
            return "NONE";
        case -22:
            return "INVALID_PARAMETER";
        case -0x100030:
            return "OUT_OF_NETWORK";
        case -0x100031:
            return "INVALID_STATE";
        case -0x100032:
            return "INVALID_LANGUAGE";
        case -0x100034:
            return "OPERATION_FAILED";
        case -0x100035:
            return "NOT_SUPPORTED_FEATURE";
    }
    return "";
}

std::string withName(int code)
{
    const std::string name = errorName(code);
    return std::to_string(code) + (name.empty() || code == 0 ? "" : " (" + name + ")");
}

// A JSON object without some members.
Json::Value without(Json::Value value, std::initializer_list<const char*> names)
{
    for (const char* name : names)
        value.removeMember(name);
    return value;
}

bool isAppliance(const Json::Value& e)
{
    return e["kind"] == "device" || e["kind"] == "file";
}

bool isAudioCall(const Json::Value& e)
{
    return e["kind"] == "call" && e["fn"] == "MarlEngine_set_recording_data";
}
bool isAudioObservation(const Json::Value& e)
{
    return e["kind"] == "speech" && (e["obs"]["what"] == "audio" || e["obs"]["what"] == "speech");
}

std::string callLine(const Json::Value& e)
{
    std::string line = e["fn"].asString() + "(";
    const Json::Value& args = e["args"];
    for (Json::ArrayIndex i = 0; i < args.size(); ++i)
        line += (i ? ", " : "") + quote(args[i]);
    line += ")";
    if (e.isMember("ret"))
        line += " -> " + (e["ret"].isBool() ? std::string(e["ret"].asBool() ? "true" : "false")
                                            : withName(e["ret"].asInt()));
    else
        line += " (no return value)";
    const Json::Value extra = without(e, {"kind", "fn", "args", "ret", "t", "thread"});
    if (!extra.empty())
        line += "  " + compact(extra);
    return line;
}

std::string callbackLine(const Json::Value& e)
{
    const std::string fn = e["fn"].asString();
    std::string line;
    if (fn == "result") {
        const int event = e["event"].asInt();
        line = "result: event " + std::to_string(event) + " (" + resultEventName(event) +
               "), ids " + compact(e["ids"]) + ", count " + std::to_string(e["count"].asInt()) +
               ", all result " + quote(e["allResult"]) + ", non-fixed " +
               quote(e["nonFixedResult"]) + ", nlu " + quote(e["nluResult"]) + ", msg " +
               quote(e["message"]);
        if (e.isMember("matched"))
            line += ", matched commands " + compact(e["matched"]);
    } else if (fn == "asr") {
        const int event = e["event"].asInt();
        line = "asr: event " + std::to_string(event) + " (" + asrEventName(event) + "), " +
               quote(e["text"]);
    } else if (fn == "error") {
        line = "error: " + withName(e["code"].asInt()) + ", msg " + quote(e["message"]);
    } else {
        line = fn + ": " + compact(without(e, {"kind", "fn", "t", "userData", "thread"}));
    }
    if (e.isMember("userData"))
        line += ", user data " + e["userData"].asString();
    if (e.isMember("dropped"))
        line += "; dropped: " + e["dropped"].asString();
    return line;
}

// The device data of one pull, one line per getter, NLU parameter group and
// the recognition state.
void deviceDataLines(const Json::Value& obs, std::vector<std::string>& lines)
{
    const Json::Value& facets = obs["facets"];
    for (const auto& facet : facets.getMemberNames()) {
        const Json::Value& getters = facets[facet];
        if (!getters.isObject()) {
            lines.push_back("           " + facet + " = " + quote(getters));
            continue;
        }
        for (const auto& getter : getters.getMemberNames())
            lines.push_back("           " + facet + "." + getter + " = " + quote(getters[getter]));
    }
    const Json::Value& params = obs["nluParams"];
    if (params.isObject()) {
        for (const auto& group : params.getMemberNames())
            lines.push_back("           nluParams." + group + " = " + quote(params[group]));
    } else {
        lines.push_back("           nluParams = " + quote(params));
    }
    lines.push_back("           recoState = " + quote(obs["recoState"]));
    const Json::Value rest = without(obs, {"what", "thread", "facets", "nluParams", "recoState"});
    if (!rest.empty())
        lines.push_back("           " + compact(rest));
}

void speechLines(const Json::Value& e, const RenderOptions& options,
                 std::vector<std::string>& lines)
{
    const Json::Value& obs = e["obs"];
    const std::string what = obs["what"].asString();
    const std::string thread = obs["thread"] == "library" ? " @library" : "";
    if (what == "deviceData") {
        lines.push_back("speech   deviceData" + thread +
                        ": the library pulled at recognition start");
        const size_t first = lines.size();
        deviceDataLines(obs, lines);
        if (options.normalized || options.briefDeviceData) {
            auto dropped =
                std::remove_if(lines.begin() + first, lines.end(), [&](const std::string& line) {
                    const std::string name = line.substr(line.find_first_not_of(' '));
                    for (const auto& kept : options.deviceDataKept)
                        if (name.compare(0, kept.size(), kept) == 0)
                            return false;
                    return true;
                });
            lines.erase(dropped, lines.end());
        }
        return;
    }
    if (what == "setCommandList") {
        lines.push_back("speech   setCommandList" + thread + ": " + obs["document"].asString());
        return;
    }
    if (what == "driverRequest") {
        lines.push_back("speech   driverRequest" + thread + ": " + quote(obs["request"]));
        lines.push_back("           response: " + quote(obs["response"]));
        return;
    }
    const Json::Value rest = without(obs, {"what", "thread", "workMs"});
    lines.push_back("speech   " + what + thread + (rest.empty() ? "" : ": " + compact(rest)));
}

// A run of audio chunks: the calls of set_recording_data and what the speech
// library saw of them, told in two lines.
void audioRunLines(const std::vector<Json::Value>& run, bool normalized,
                   std::vector<std::string>& lines)
{
    size_t calls = 0, samples = 0, bytes = 0;
    std::map<std::string, size_t> returns;
    std::vector<std::string> detected;
    size_t observed = 0, observedSamples = 0;
    long long total = -1;
    std::vector<std::string> libraryDetected;
    for (const auto& e : run) {
        if (e["kind"] == "call") {
            ++calls;
            bytes += e["args"][0].asUInt();
            samples += e["args"][0].asUInt() / 2;
            ++returns[withName(e["ret"].asInt())];
            // The library detects on its own thread, so the chunk that carries
            // a detection can differ by one from run to run: the normalized
            // form keeps only the order of the values.
            if (e["speech"].isNull() || e["speech"].asInt() != 0)
                detected.push_back(speechName(e["speech"]) +
                                   (normalized ? "" : " at chunk " + std::to_string(calls)));
        } else if (e["obs"]["what"] == "audio") {
            ++observed;
            observedSamples += e["obs"]["samples"].asUInt();
            total = e["obs"]["total"].asInt64();
        } else {
            libraryDetected.push_back(e["obs"]["event"].asString() + " after chunk " +
                                      std::to_string(observed));
        }
    }
    if (calls) {
        std::string rets;
        for (const auto& r : returns)
            rets += (rets.empty() ? "" : ", ") + r.first +
                    (returns.size() > 1 ? " x" + std::to_string(r.second) : "");
        std::string speech = "speech: none";
        if (!detected.empty()) {
            speech = "speech: ";
            for (size_t i = 0; i < detected.size(); ++i)
                speech += (i ? ", " : "") + detected[i];
            speech += ", otherwise none";
        }
        lines.push_back("call     MarlEngine_set_recording_data x" + std::to_string(calls) + " (" +
                        std::to_string(bytes) + " bytes, " + std::to_string(samples) +
                        " samples) -> " + rets + "; " + speech);
    }
    if (observed || !libraryDetected.empty()) {
        std::string line = "speech   audio x" + std::to_string(observed) + " (" +
                           std::to_string(observedSamples) + " samples, total " +
                           std::to_string(total) + ")";
        if (!libraryDetected.empty()) {
            line += "; detected ";
            for (size_t i = 0; i < libraryDetected.size(); ++i)
                line += (i ? ", " : "") + libraryDetected[i];
        }
        lines.push_back(line);
    }
}

void entryLines(const Json::Value& e, const RenderOptions& options, std::vector<std::string>& lines)
{
    const std::string kind = e["kind"].asString();
    if (kind == "call") {
        lines.push_back("call     " + callLine(e));
    } else if (kind == "callback") {
        lines.push_back("daemon   " + callbackLine(e));
    } else if (kind == "speech") {
        speechLines(e, options, lines);
    } else if (kind == "device") {
        lines.push_back("device   " + e["event"].asString() + ": " +
                        compact(without(e, {"kind", "event", "t", "time", "thread"})));
    } else if (kind == "file") {
        lines.push_back(
            "file     " + e["change"].asString() + " " + e["path"].asString() +
            (e.isMember("bytes") ? " (" + std::to_string(e["bytes"].asUInt64()) + " bytes)" : ""));
    } else if (kind == "turn") {
        lines.push_back("");
        lines.push_back("-- turn " + std::to_string(e["turn"].asInt()) + ": audio " +
                        (e["audio"].asString().empty() ? "none" : e["audio"].asString()) +
                        ", ends by " + e["end"].asString() + ", " +
                        (e["listen"].asBool() ? std::string("recognized, the appliance's speech service answers")
                                              : std::to_string(e["server"].size()) + " server event(s)"));
    } else if (kind == "section") {
        lines.push_back("");
        lines.push_back("-- " + e["text"].asString());
    } else if (kind == "latency") {
        lines.push_back("latency  " + latencyLine(e, options.normalized));
    } else if (kind == "memory") {
        lines.push_back("memory   " + compact(without(e, {"kind", "t", "thread"})));
    } else if (kind == "note") {
        lines.push_back("note     " + e["text"].asString());
    } else {
        lines.push_back(compact(e));
    }
}

std::string timeColumn(long long ms)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%4lld.%03lld  ", ms / 1000, ms % 1000);
    return buffer;
}

// Present times in the normalized form: epoch seconds or milliseconds within
// a week of now, and today's date as the plug-in writes it.
std::string maskPresent(std::string line, long long nowMs)
{
    static const std::regex digits("\\b(\\d{13}|\\d{10})\\b");
    std::string out;
    auto begin = std::sregex_iterator(line.begin(), line.end(), digits);
    size_t last = 0;
    const long long week = 7LL * 24 * 3600 * 1000;
    for (auto it = begin; it != std::sregex_iterator(); ++it) {
        const std::string number = it->str();
        long long value = std::stoll(number);
        if (number.size() == 10)
            value *= 1000;
        out += line.substr(last, it->position() - last);
        out += std::llabs(value - nowMs) < week ? "<now>" : number;
        last = it->position() + it->length();
    }
    out += line.substr(last);
    return out;
}

std::string normalize(std::string line, const RenderOptions& options)
{
    for (const auto& sub : options.substitutions) {
        if (sub.first.empty())
            continue;
        for (size_t pos = line.find(sub.first); pos != std::string::npos;
             pos = line.find(sub.first, pos + sub.second.size()))
            line.replace(pos, sub.first.size(), sub.second);
    }
    static const std::regex pointer("0x[0-9a-fA-F]{4,}");
    line = std::regex_replace(line, pointer, "0x?");
    return maskPresent(line, options.nowEpochMs);
}

}  // namespace

std::string compact(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

std::string renderHeader(const Json::Value& header, const RenderOptions& options)
{
    std::ostringstream out;
    std::vector<std::string> headerLines;
    if (options.normalized) {
        headerLines.push_back("scenario " + header["scenario"]["name"].asString());
        headerLines.push_back("engine " + compact(header["engine"]));
    } else {
        for (const auto& name : header.getMemberNames())
            headerLines.push_back(name + " " + compact(header[name]));
    }
    for (const auto& line : headerLines)
        out << "# " << (options.normalized ? normalize(line, options) : line) << "\n";
    return out.str();
}

std::string renderSection(const std::vector<Json::Value>& entries, const RenderOptions& options,
                          long long& previousT)
{
    std::ostringstream out;
    // The normalized form keeps long pauses visible, rounded to whole seconds,
    // and tells what the appliance saw (journal, files) at the end of each
    // turn: playback runs on a worker thread, so its place among the
    // callbacks is not fixed. A pause is time spent waiting: the time that
    // the speech stand-in says its own work took before an observation
    // (workMs: loading the recognizer, decoding) depends on the machine and
    // is not counted.
    std::vector<Json::Value> list = entries;
    if (options.normalized) {
        // A playback that the engine's teardown ended holds as many bytes as
        // had played by then, which varies from run to run.
        if (!list.empty() && list.front()["kind"] == "section")
            for (auto& e : list)
                if (e["kind"] == "device" && e["event"] == "audio_playback")
                    e["bytes"] = "<played until the unload>";
        if (previousT < 0)
            previousT = list.empty() ? 0 : list.front()["t"].asInt64();
        for (auto& e : list) {
            if (isAppliance(e))
                continue;
            const Json::Value& entry = e;
            const long long gap = entry["t"].asInt64() - previousT - entry["obs"]["workMs"].asInt64();
            if (gap >= 2000)
                e["pauseSeconds"] = Json::Int64(std::llround(double(gap) / 1000.0));
            previousT = e["t"].asInt64();
        }
        auto sectionStart = list.begin();
        for (auto it = list.begin();; ++it) {
            if (it == list.end() || (*it)["kind"] == "turn" || (*it)["kind"] == "section") {
                std::stable_partition(sectionStart, it,
                                      [](const Json::Value& e) { return !isAppliance(e); });
                if (it == list.end())
                    break;
                sectionStart = it;
            }
        }
    }

    for (size_t i = 0; i < list.size();) {
        const Json::Value& e = list[i];
        std::vector<std::string> lines;
        size_t next = i + 1;
        if (isAudioCall(e) || isAudioObservation(e)) {
            std::vector<Json::Value> run;
            for (next = i;
                 next < list.size() && (isAudioCall(list[next]) || isAudioObservation(list[next]));
                 ++next)
                run.push_back(list[next]);
            audioRunLines(run, options.normalized, lines);
        } else {
            entryLines(e, options, lines);
        }
        if (options.normalized) {
            if (e.isMember("pauseSeconds"))
                out << "         (about " << e["pauseSeconds"].asInt64() << " s later)\n";
            for (const auto& line : lines)
                out << normalize(line, options) << "\n";
        } else {
            bool first = true;
            for (const auto& line : lines) {
                if (line.empty())
                    out << "\n";
                else
                    out << (first ? timeColumn(e["t"].asInt64()) : std::string(10, ' ')) << line
                        << "\n";
                first = first && line.empty();
            }
        }
        i = next;
    }
    return out.str();
}

std::string render(const Json::Value& header, const std::vector<Json::Value>& entries,
                   const RenderOptions& options)
{
    long long previousT = -1;
    return renderHeader(header, options) + renderSection(entries, options, previousT);
}

std::string resultEventName(int event)
{
    switch (event) {
        case 0:
            return "SUCCESS";
        case 1:
            return "REJECTED";
        case 2:
            return "ERROR";
    }
    return "?";
}

}  // namespace sim
