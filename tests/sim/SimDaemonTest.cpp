// marl-sim's two daemons (--daemon gentle|platform), the latency entry of
// each turn and the transcript written as the session goes.
#include "SimRun.h"

#include <gtest/gtest.h>
#include <json/json.h>

#include <sstream>

namespace
{

using namespace simtest;

const char* const kTwoTurns = R"({
  "device": {"vconf": {"db/orvane/setting/lang": 5}},
  "engine": {"language": "en_US",
             "commands": [{"id": 2, "format": 0, "command": "show recipes"},
                          {"id": 3, "format": 0, "command": "open the fridge"}]},
  "turns": [{"audio": {"speechMs": 400, "silenceMs": 600},
             "server": [{"type": "partial", "text": "show"},
                        {"type": "asr", "text": "show recipes"},
                        {"type": "action", "agent": "Recipe", "rawJson": {}}]},
            {"audio": {"speechMs": 400, "silenceMs": 600},
             "server": [{"type": "asr", "text": "open the fridge"},
                        {"type": "action", "agent": "Recipe", "rawJson": {}}]}]
})";

Json::Value parse(const std::string& text)
{
    Json::CharReaderBuilder builder;
    std::istringstream in(text);
    Json::Value value;
    std::string errors;
    EXPECT_TRUE(Json::parseFromStream(builder, in, &value, &errors)) << errors << "\n" << text;
    return value;
}

struct Session {
    SimResult run;
    Json::Value transcript;
};

Session runScenario(const Scratch& scratch, const std::string& scenario, const std::vector<std::string>& extra)
{
    const fs::path file = scratch.path("s.json");
    writeText(file, scenario);
    const fs::path json = scratch.path("transcript.json");
    std::vector<std::string> args = {"run", file.string(), "--fast", "--json", json.string(),
                                     "--device", scratch.path("device").string()};
    args.insert(args.end(), extra.begin(), extra.end());
    Session session;
    session.run = runSim(scratch, args);
    session.transcript = parse(readText(json));
    return session;
}

std::vector<Json::Value> entriesOf(const Json::Value& transcript, const char* kind)
{
    std::vector<Json::Value> list;
    for (const auto& e : transcript["entries"])
        if (e["kind"] == kind)
            list.push_back(e);
    return list;
}

TEST(SimDaemon, DaemonOptionTakesGentleOrPlatform)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", "x.json", "--daemon", "strict"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("--daemon takes gentle or platform, not \"strict\""), std::string::npos) << run.err;
}

TEST(SimDaemon, ScenarioDaemonMemberIsChecked)
{
    Scratch scratch;
    const fs::path file = scratch.path("s.json");
    writeText(file, R"({"daemon": "strict", "engine": {"language": "en_US"}})");
    const SimResult run = runSim(scratch, {"run", file.string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("daemon: must be \"gentle\" or \"platform\""), std::string::npos) << run.err;
}

TEST(SimDaemon, PlatformDaemonSetsItsCommandsBeforeEveryStartAndFeedsTenMillisecondChunks)
{
    Scratch scratch;
    const Session s = runScenario(scratch, kTwoTurns, {"--daemon", "platform"});
    ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
    EXPECT_EQ(s.transcript["header"]["options"]["daemon"].asString(), "platform");
    std::string previousCall;
    std::vector<int> handles;
    int starts = 0, chunks = 0;
    for (const auto& e : s.transcript["entries"]) {
        if (e["kind"] != "call")
            continue;
        const std::string fn = e["fn"].asString();
        if (fn == "MarlEngine_start") {
            ++starts;
            EXPECT_EQ(previousCall, "MarlEngine_set_commands");
        } else if (fn == "MarlEngine_set_commands") {
            handles.push_back(e["args"][0].asInt());
        } else if (fn == "MarlEngine_set_recording_data") {
            ++chunks;
            EXPECT_EQ(e["args"][0].asInt(), 320);
        } else if (fn == "MarlEngine_set_result_cb" || fn == "MarlEngine_set_asr_result_cb" ||
                   fn == "MarlEngine_set_error_cb") {
            EXPECT_TRUE(e["args"][1].isNull()) << fn << " got user data";
        }
        previousCall = fn;
    }
    EXPECT_EQ(starts, 2);
    EXPECT_GT(chunks, 0);
    // Once at start-up (handle 1), then a handle of its own before each start.
    EXPECT_EQ(handles, (std::vector<int>{1, 1001, 1002}));
    for (const auto& e : entriesOf(s.transcript, "callback"))
        if (e.isMember("userData") && e["fn"] != "engine_info") {
            EXPECT_EQ(e["userData"].asString(), "null") << e.toStyledString();
        }
}

TEST(SimDaemon, PlatformDaemonStopsOneChunkAfterTheReportedEndOfSpeech)
{
    Scratch scratch;
    const Session s = runScenario(scratch, kTwoTurns, {"--daemon", "platform"});
    ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
    int endChunk = 0, lastChunk = 0, stops = 0;
    for (const auto& e : s.transcript["entries"]) {
        if (e["fn"] == "MarlEngine_set_recording_data" && e["kind"] == "call") {
            lastChunk = e["chunk"].asInt();
            if (e["speech"].isInt() && e["speech"].asInt() == 2)
                endChunk = lastChunk;
        } else if (e["fn"] == "MarlEngine_stop" && e["kind"] == "call") {
            ++stops;
            ASSERT_GT(endChunk, 0) << "stopped before an end of speech was reported";
            EXPECT_EQ(lastChunk, endChunk + 1);
            endChunk = 0;
        }
    }
    EXPECT_EQ(stops, 2);
    EXPECT_NE(s.run.out.find("note     the daemon stops the recorder and the engine 1 chunk(s) after the one that "
                             "reported the end of speech"),
              std::string::npos)
        << s.run.out;
}

TEST(SimDaemon, PlatformDaemonDoesNotStartWithoutACommand)
{
    Scratch scratch;
    const Session s = runScenario(scratch, R"({
      "engine": {"language": "en_US"},
      "turns": [{"audio": {"speechMs": 200}, "server": []}]})",
                                  {"--daemon", "platform"});
    ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
    for (const auto& e : s.transcript["entries"])
        EXPECT_NE(e["fn"], "MarlEngine_start");
    EXPECT_NE(s.run.out.find("note     the daemon does not start: there is no command"), std::string::npos)
        << s.run.out;
}

TEST(SimDaemon, EveryTurnEndsWithItsLatency)
{
    Scratch scratch;
    for (const char* daemon : {"gentle", "platform"}) {
        const Session s = runScenario(scratch, kTwoTurns, {"--daemon", daemon});
        ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
        const auto latencies = entriesOf(s.transcript, "latency");
        ASSERT_EQ(latencies.size(), 2u) << daemon;
        for (size_t i = 0; i < latencies.size(); ++i) {
            const Json::Value& l = latencies[i];
            EXPECT_EQ(l["turn"].asUInt(), i + 1);
            const Json::Value& stages = l["stages"];
            for (const char* stage : {"wordsEnd", "endOfSpeech", "stop", "finalText", "action", "result"})
                EXPECT_TRUE(stages[stage].isInt64()) << daemon << " turn " << i + 1 << " has no " << stage;
            EXPECT_FALSE(stages.isMember("error"));
            EXPECT_FALSE(stages.isMember("driverRequests"));
            EXPECT_LE(stages["wordsEnd"].asInt64(), stages["endOfSpeech"].asInt64());
            EXPECT_LE(stages["endOfSpeech"].asInt64(), stages["stop"].asInt64());
            EXPECT_LE(stages["stop"].asInt64(), stages["result"].asInt64());
            EXPECT_EQ(l["endOfSpeechToResultMs"].asInt64(),
                      stages["result"].asInt64() - stages["endOfSpeech"].asInt64());
        }
        const bool firstHasPartial = latencies[0]["stages"].isMember("firstPartial");
        EXPECT_TRUE(firstHasPartial);
        EXPECT_FALSE(latencies[1]["stages"].isMember("firstPartial"));
        EXPECT_NE(s.run.out.find("latency  turn 1: words end "), std::string::npos) << s.run.out;
        EXPECT_NE(s.run.out.find("; end of speech to result "), std::string::npos) << s.run.out;
    }
}

TEST(SimDaemon, DriverRequestsAndTheirResponsesAreStagesOfTheTurn)
{
    Scratch scratch;
    const Session s = runScenario(scratch, R"({
      "device": {"vconf": {"db/orvane/setting/lang": 5}},
      "engine": {"language": "en_US",
                 "commands": [{"id": 10, "type": 2, "format": 5, "command": "#org.tizen.Timer"}]},
      "turns": [{"audio": {"speechMs": 300, "silenceMs": 500},
                 "server": [{"type": "asr", "text": "what timers do I have"},
                            {"type": "driverRequest",
                             "request": {"Server Reqeust": {"agent": "Timer", "action": {"name": "Information Timer Request"}, "data": {}}}},
                            {"type": "action", "agent": "Timer", "rawJson": {}}]}]})",
                                  {});
    ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
    const auto latencies = entriesOf(s.transcript, "latency");
    ASSERT_EQ(latencies.size(), 1u);
    const Json::Value& requests = latencies[0]["stages"]["driverRequests"];
    ASSERT_EQ(requests.size(), 1u) << latencies[0].toStyledString();
    EXPECT_LE(requests[0]["request"].asInt64(), requests[0]["response"].asInt64());
}

// A turn with "reload" is preceded by the engine's end and a fresh load, and
// goes on as the first turn did.
TEST(SimDaemon, AReloadUnloadsTheEngineAndLoadsItAfresh)
{
    Scratch scratch;
    Json::Value scenario;
    std::istringstream(kTwoTurns) >> scenario;
    scenario["turns"][1]["reload"] = true;
    for (const char* daemon : {"gentle", "platform"}) {
        const Session s = runScenario(scratch, scenario.toStyledString(), {"--daemon", daemon});
        ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
        std::vector<std::string> calls;
        bool second = false;
        for (const auto& e : s.transcript["entries"]) {
            second = second || (e["kind"] == "turn" && e["turn"] == 2);
            if (second && e["kind"] == "call" && e["fn"] != "MarlEngine_set_recording_data")
                calls.push_back(e["fn"].asString());
        }
        ASSERT_GE(calls.size(), 7u) << daemon;
        EXPECT_EQ(std::vector<std::string>(calls.begin(), calls.begin() + 7),
                  (std::vector<std::string>{"MarlEngine_deinitialize", "vcp_unload_engine", "dlclose", "dlopen",
                                            "vcp_load_engine", "MarlEngine_initialize", "MarlEngine_set_result_cb"}))
            << daemon;
        const auto results = entriesOf(s.transcript, "callback");
        int taken = 0;
        for (const auto& e : results)
            taken += e["fn"] == "result" && !e.isMember("dropped");
        EXPECT_EQ(taken, 2) << daemon;
    }
}

TEST(SimDaemon, TurnMembersOfTheDaemonAreChecked)
{
    Scratch scratch;
    const fs::path file = scratch.path("s.json");
    writeText(file, R"({"engine": {"language": "en_US"}, "turns": [{"reload": "yes"}]})");
    SimResult run = runSim(scratch, {"run", file.string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].reload: must be true or false"), std::string::npos) << run.err;
    writeText(file, R"({"engine": {"language": "en_US"}, "turns": [{"cancelAfterMs": -5}]})");
    run = runSim(scratch, {"run", file.string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].cancelAfterMs: must be a whole number of milliseconds"), std::string::npos)
        << run.err;
}

TEST(SimDaemon, EveryEntryNamesTheThreadItWasRecordedOn)
{
    Scratch scratch;
    const Session s = runScenario(scratch, kTwoTurns, {});
    ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
    bool library = false;
    for (const auto& e : s.transcript["entries"]) {
        const std::string thread = e["thread"].asString();
        EXPECT_TRUE(thread == "main" || thread == "speech" || thread == "worker" || thread == "journal")
            << e.toStyledString();
        if (e["kind"] == "call") {
            EXPECT_EQ(thread, "main") << e.toStyledString();
        }
        if (e["kind"] == "device") {
            EXPECT_EQ(thread, "journal");
        }
        if (e["kind"] == "speech" && e["obs"]["thread"] == "library") {
            EXPECT_EQ(thread, "speech") << e.toStyledString();
            library = true;
        }
    }
    EXPECT_TRUE(library);
}

TEST(SimDaemon, ReadableFormComesOutTurnByTurnAndMatchesTheJson)
{
    Scratch scratch;
    const Session s = runScenario(scratch, kTwoTurns, {"--memory"});
    ASSERT_EQ(s.run.exitCode, 0) << s.run.err;
    // The header is printed first, though the JSON file writes it last.
    EXPECT_EQ(s.run.out.rfind("# ", 0), 0u) << s.run.out;
    EXPECT_TRUE(s.transcript["header"]["engine"].isObject());
    const auto memory = entriesOf(s.transcript, "memory");
    ASSERT_EQ(memory.size(), 2u);
    EXPECT_GT(memory[1]["rssBytes"].asInt64(), 0);
    EXPECT_GT(memory[1]["heapBytes"].asInt64(), 0);
    size_t calls = 0;
    for (const auto& e : s.transcript["entries"])
        calls += e["kind"] == "call" && e["fn"] != "MarlEngine_set_recording_data";
    size_t lines = 0;
    std::istringstream out(s.run.out);
    for (std::string line; std::getline(out, line);)
        lines += line.find("  call     ") != std::string::npos &&
                 line.find("MarlEngine_set_recording_data") == std::string::npos;
    EXPECT_EQ(lines, calls) << s.run.out;
}

}  // namespace
