#include "Latency.h"

#include <cstdio>
#include <filesystem>

namespace sim
{

namespace
{

bool isCall(const Json::Value& e, const char* fn)
{
    return e["kind"] == "call" && e["fn"] == fn;
}

bool isCallback(const Json::Value& e, const char* fn)
{
    return e["kind"] == "callback" && e["fn"] == fn;
}

const Json::Value& observation(const Json::Value& e)
{
    static const Json::Value none;
    return e["kind"] == "speech" ? e["obs"] : none;
}

bool isDelivered(const Json::Value& e, const char* type)
{
    const Json::Value& obs = observation(e);
    return obs["what"] == "deliver" && obs["event"]["type"] == type;
}

bool isSpeechWritten(const Json::Value& e)
{
    return e["kind"] == "file" && e["change"] != "removed" &&
           std::filesystem::path(e["path"].asString()).extension() == ".pcm";
}

struct Stage {
    const char* key;
    const char* label;  // the latency line's
    const char* title;  // the session page's
};

// In the order a turn goes through them.
const Stage kStages[] = {{"wordsEnd", "words end", "words end"},
                         {"endOfSpeech", "end of speech", "end of speech reported"},
                         {"stop", "stop", "stop"},
                         {"firstPartial", "first partial", "first partial text"},
                         {"finalText", "final text", "final text"},
                         {"nlu", "nlu", "NLU"},
                         {"driverRequests", "driver request", "driver request"},
                         {"action", "action", "action"},
                         {"result", "result", "result callback"},
                         {"error", "error", "error callback"},
                         {"speech", "speech", "spoken answer"}};

std::string seconds(long long ms)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.3f", double(ms) / 1000.0);
    return buffer;
}

}  // namespace

Json::Value latencyEntry(const std::vector<Json::Value>& entries, size_t turn)
{
    long long start = -1;
    for (const auto& e : entries)
        if (isCall(e, "MarlEngine_start")) {
            start = e["t"].asInt64();
            break;
        }
    if (start < 0)
        return Json::Value();

    Json::Value stages(Json::objectValue);
    auto first = [&](const char* stage, const Json::Value& e) {
        if (!stages.isMember(stage))
            stages[stage] = Json::Int64(e["t"].asInt64() - start);
    };
    Json::Value requests(Json::arrayValue);
    Json::ArrayIndex answered = 0;
    for (const auto& e : entries) {
        const Json::Value& obs = observation(e);
        if (isCall(e, "MarlEngine_set_recording_data")) {
            if (e["wordsEnd"].asBool())
                first("wordsEnd", e);
            if (e["speech"].isInt() && e["speech"].asInt() == 2)
                first("endOfSpeech", e);
        } else if (isCall(e, "MarlEngine_stop") || isCall(e, "MarlEngine_cancel")) {
            first("stop", e);
        } else if (isCallback(e, "asr")) {
            first(e["event"].asInt() == 1 ? "firstPartial" : e["event"].asInt() == 0 ? "finalText" : "asrError", e);
        } else if (isDelivered(e, "nlu") || obs["what"] == "parse") {
            first("nlu", e);
        } else if (isDelivered(e, "driverRequest")) {
            Json::Value request;
            request["request"] = Json::Int64(e["t"].asInt64() - start);
            requests.append(request);
        } else if (obs["what"] == "processDriverResponse") {
            if (answered >= requests.size()) {
                // A response without a delivered request (the service's own).
                Json::Value request;
                request["request"] = Json::Int64(e["t"].asInt64() - start);
                requests.append(request);
            }
            requests[answered++]["response"] = Json::Int64(e["t"].asInt64() - start);
        } else if (obs["what"] == "executeOVAction") {
            first("action", e);
        } else if (isCallback(e, "result") && !e.isMember("dropped")) {
            first("result", e);
        } else if (isCallback(e, "error")) {
            first("error", e);
        } else if ((e["kind"] == "device" && e["event"] == "audio_playback") || isSpeechWritten(e)) {
            first("speech", e);
        }
    }
    stages.removeMember("asrError");
    if (!requests.empty())
        stages["driverRequests"] = requests;

    Json::Value entry;
    entry["kind"] = "latency";
    entry["turn"] = Json::UInt64(turn);
    entry["startT"] = Json::Int64(start);
    entry["stages"] = stages;
    if (stages.isMember("endOfSpeech") && (stages.isMember("result") || stages.isMember("error"))) {
        long long end = stages.isMember("result") ? stages["result"].asInt64() : stages["error"].asInt64();
        if (stages.isMember("error") && stages["error"].asInt64() < end)
            end = stages["error"].asInt64();
        entry["endOfSpeechToResultMs"] = Json::Int64(end - stages["endOfSpeech"].asInt64());
    }
    return entry;
}

std::vector<TurnStage> turnStages(const Json::Value& latency)
{
    std::vector<TurnStage> list;
    const Json::Value& stages = latency["stages"];
    if (!stages.isObject())
        return list;
    for (const auto& stage : kStages) {
        const Json::Value& value = stages[stage.key];
        if (value.isNumeric()) {
            list.push_back({stage.key, stage.label, stage.title, value.asInt64()});
        } else if (value.isArray()) {
            int number = 0;
            for (const auto& request : value) {
                TurnStage driver{stage.key, stage.label, stage.title, request["request"].asInt64()};
                driver.endMs = request["response"].isNumeric() ? request["response"].asInt64() : -1;
                driver.number = ++number;
                list.push_back(driver);
            }
        }
    }
    return list;
}

std::string latencyLine(const Json::Value& e, bool normalized)
{
    std::string line = "turn " + std::to_string(e["turn"].asUInt64()) + ":";
    const std::vector<TurnStage> stages = turnStages(e);
    for (size_t i = 0; i < stages.size(); ++i) {
        const TurnStage& stage = stages[i];
        line += std::string(i ? "," : "") + " " + stage.label;
        if (normalized)
            continue;
        if (stage.number)
            line += " " + seconds(stage.ms) + " -> " + (stage.endMs >= 0 ? seconds(stage.endMs) : "no response");
        else
            line += " " + seconds(stage.ms);
    }
    if (stages.empty())
        line += " no stage";
    if (e.isMember("endOfSpeechToResultMs"))
        line += normalized ? "; end of speech to result measured"
                           : "; end of speech to result " + std::to_string(e["endOfSpeechToResultMs"].asInt64()) + " ms";
    return line;
}

}  // namespace sim
