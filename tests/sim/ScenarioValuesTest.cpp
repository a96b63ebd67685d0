// The values that the checked scenarios of the platform daemon's end of a turn
// and of a session exist for, read from their JSON transcripts.
#include "SimRun.h"

#include <gtest/gtest.h>
#include <json/json.h>

#include <sstream>

namespace
{

using namespace simtest;

struct Replay {
    SimResult run;
    Json::Value entries;
};

Replay replay(const Scratch& scratch, const std::string& name, const std::vector<std::string>& options,
              const std::vector<std::string>& env = {})
{
    const fs::path json = scratch.path("transcript.json");
    std::vector<std::string> args = {"run", std::string(MARL_SCENARIO_DIR) + "/" + name + ".json", "--json",
                                     json.string(), "--device", scratch.path("device").string()};
    args.insert(args.end(), options.begin(), options.end());
    Replay replay;
    replay.run = runSim(scratch, args, env);
    Json::CharReaderBuilder builder;
    std::istringstream in(readText(json));
    Json::Value transcript;
    std::string errors;
    EXPECT_TRUE(Json::parseFromStream(builder, in, &transcript, &errors)) << errors;
    replay.entries = transcript["entries"];
    return replay;
}

Json::Value idList(int id)
{
    Json::Value ids(Json::arrayValue);
    ids.append(id);
    return ids;
}

bool isCall(const Json::Value& e, const char* fn)
{
    return e["kind"] == "call" && e["fn"] == fn;
}

// The index of the first entry from `from` that `match` accepts; -1 when none.
template <class Match>
int find(const Json::Value& entries, Match match, int from = 0)
{
    for (int i = from; i < int(entries.size()); ++i)
        if (match(entries[i]))
            return i;
    return -1;
}

// The plug-in plays 5 s of server speech itself (the appliance's audio output
// takes real time); the result comes 1 s into it and the platform daemon
// ends the session at once: deinitialize, vcp_unload_engine and dlclose, the
// plug-in really unmapped, then 2 s more of the daemon's main loop. Audio is
// fed at the recorder's pace.
TEST(UnloadWhileSpeaking, ThePlugInGoesBeforeItsSpeechWouldHaveEnded)
{
    Scratch scratch;
    std::vector<std::string> env = {"MARL_SIM_KEEP_PLUGIN_MAPPED"};
    // Under AddressSanitizer the leak check at exit cannot name the frames of
    // a plug-in that is gone, nor match them with the suppressions: it is left
    // to the replays of the same scenario that keep the plug-in mapped.
    if (const char* asan = std::getenv("ASAN_OPTIONS"))
        env.push_back(std::string("ASAN_OPTIONS=") + asan + ":detect_leaks=0");
    const Replay r = replay(scratch, "unload-while-speaking", {"--normalized"}, env);
    // A thread or a callback of the plug-in left behind would have run in
    // unmapped code, in the 2 s after the dlclose, and killed the run.
    ASSERT_EQ(r.run.exitCode, 0) << r.run.err;
    const Json::Value& e = r.entries;

    const int speech = find(e, [](const Json::Value& x) {
        return x["kind"] == "speech" && x["obs"]["what"] == "deliver" && x["obs"]["event"]["speechBytes"] == 240000;
    });
    const int result = find(e, [](const Json::Value& x) { return x["kind"] == "callback" && x["fn"] == "result"; });
    const int deinitialize = find(e, [](const Json::Value& x) { return isCall(x, "MarlEngine_deinitialize"); });
    const int unload = find(e, [](const Json::Value& x) { return isCall(x, "vcp_unload_engine"); }, deinitialize);
    const int dlclose = find(e, [](const Json::Value& x) { return isCall(x, "dlclose"); }, unload);
    const int lives = find(e, [](const Json::Value& x) { return x["text"] == "the daemon's main loop runs on for 2 s"; });
    ASSERT_GE(speech, 0);
    ASSERT_GT(result, speech);
    ASSERT_GT(deinitialize, result);
    ASSERT_GT(dlclose, unload);
    ASSERT_GT(lives, dlclose);
    // The three calls in a row, with nothing of the daemon in between.
    for (int i = deinitialize + 1; i < lives; ++i) {
        if (i != unload && i != dlclose) {
            EXPECT_TRUE(e[i]["kind"] == "speech" || e[i]["kind"] == "device") << e[i].toStyledString();
        }
    }

    EXPECT_EQ(e[result]["event"].asInt(), 0);
    EXPECT_EQ(e[result]["ids"], idList(10));
    EXPECT_FALSE(e[result].isMember("dropped"));
    EXPECT_EQ(e[deinitialize]["ret"].asInt(), 0);
    // About 1 s into the 5 s of speech, all three at once.
    const long long into = e[dlclose]["t"].asInt64() - e[speech]["t"].asInt64();
    EXPECT_GE(into, 1000);
    EXPECT_LT(into, 5000) << "the speech had ended before the unload";
    EXPECT_LT(e[dlclose]["t"].asInt64() - e[deinitialize]["t"].asInt64(), 1000);

    // The teardown ended the playback: the appliance journaled part of it.
    const int playback = find(e, [](const Json::Value& x) { return x["event"] == "audio_playback"; });
    ASSERT_GE(playback, 0);
    EXPECT_GT(e[playback]["bytes"].asUInt(), 0u);
    EXPECT_LT(e[playback]["bytes"].asUInt(), 240000u);
    EXPECT_NE(r.run.out.find("device   audio_playback: {\"bytes\":\"<played until the unload>\""), std::string::npos)
        << r.run.out;
}

// The daemon cancels the first request 100 ms after its stop, while the
// service still takes 3 s to answer: the answer comes during the next
// turn's recording, before that turn's stop, and is dropped; the next turn's
// own result is taken.
TEST(ResultAfterCancel, TheDaemonDropsTheResultOfTheRequestItCancelled)
{
    Scratch scratch;
    const Replay r = replay(scratch, "result-after-cancel", {"--fast"});
    ASSERT_EQ(r.run.exitCode, 0) << r.run.err;
    const Json::Value& e = r.entries;
    const int stop = find(e, [](const Json::Value& x) { return isCall(x, "MarlEngine_stop"); });
    const int note = find(e, [](const Json::Value& x) {
        return x["text"] == "the daemon cancels the request 100 ms after its stop";
    });
    const int cancel = find(e, [](const Json::Value& x) { return isCall(x, "MarlEngine_cancel"); });
    const int second = find(e, [](const Json::Value& x) { return x["kind"] == "turn" && x["turn"] == 2; });
    const int start = find(e, [](const Json::Value& x) { return isCall(x, "MarlEngine_start"); }, second);
    const int dropped = find(e, [](const Json::Value& x) { return x["kind"] == "callback" && x["fn"] == "result"; });
    const int stop2 = find(e, [](const Json::Value& x) { return isCall(x, "MarlEngine_stop"); }, stop + 1);
    const int taken = find(e, [](const Json::Value& x) { return x["kind"] == "callback" && x["fn"] == "result"; },
                           dropped + 1);
    ASSERT_GE(stop, 0);
    ASSERT_EQ(cancel, note + 1);
    EXPECT_GE(e[cancel]["t"].asInt64() - e[stop]["t"].asInt64(), 100);
    ASSERT_GT(second, cancel) << "the cancel ends the turn";
    ASSERT_GT(start, second);
    ASSERT_GT(dropped, start);
    ASSERT_GT(stop2, dropped) << "the cancelled request's result came before the next turn's stop";
    ASSERT_GT(taken, stop2);

    EXPECT_EQ(e[dropped]["dropped"].asString(), "the daemon is not processing a request");
    EXPECT_FALSE(e[taken].isMember("dropped"));
    EXPECT_EQ(e[taken]["event"].asInt(), 0);
    EXPECT_EQ(e[taken]["ids"], idList(3));
    EXPECT_EQ(e[taken]["allResult"].asString(), "open the fridge");
    // The second turn's latency counts its own result, not the dropped one.
    const int latency = find(e, [](const Json::Value& x) { return x["kind"] == "latency" && x["turn"] == 2; });
    ASSERT_GE(latency, 0);
    EXPECT_EQ(e[latency]["stages"]["result"].asInt64(), e[taken]["t"].asInt64() - e[start]["t"].asInt64());
    EXPECT_NE(r.run.out.find("; dropped: the daemon is not processing a request"), std::string::npos) << r.run.out;
}

}  // namespace
