// Replays every session in scenarios/ and compares marl-sim's normalized
// transcript with the expected one stored beside it (NAME.expected).
//
// Each session is also replayed with the platform's daemon (--daemon
// platform). Its transcript differs in the daemon's own lines (its commands
// before every start, its chunks, its stop, its null user data); what the
// plug-in answered (results, texts, errors, driver responses, actions, what
// the appliance saw) must be what NAME.expected holds, unless
// NAME.platform.expected keeps the platform's whole transcript for a session
// where one of the daemon's habits changes the answers (scenarios/README.md).
//
// The platform daemon feeds its chunks without waiting for the speech
// library: how they fall into runs among the library's observations, and
// whether the library reports the end of speech before the scenario's audio
// runs out, vary from run to run, so its transcripts (a scenario of the
// platform daemon, NAME.platform.expected) are compared without those lines.
//
// To take a new transcript as the expected one, run with
// MARL_UPDATE_EXPECTED=1: the test writes NAME.expected and is skipped; read
// the file (git diff) before keeping it.
#include "ScenarioNames.h"
#include "SimRun.h"
#include "SkipOutsideCi.h"

#include <gtest/gtest.h>
#include <json/json.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <sstream>

namespace
{

using namespace simtest;

// A transcript without the daemon's audio chunks, what the library saw of
// them and the recorder's silence after the audio.
std::string withoutAudio(const std::string& transcript)
{
    static const char* const audio[] = {"call     MarlEngine_set_recording_data", "speech   audio x",
                                        "note     the audio has ended; the recorder gives silence"};
    std::istringstream in(transcript);
    std::string out, line;
    while (std::getline(in, line))
        if (std::none_of(std::begin(audio), std::end(audio),
                         [&](const char* prefix) { return line.rfind(prefix, 0) == 0; }))
            out += line + "\n";
    return out;
}

bool playedByThePlatformDaemon(const fs::path& scenario)
{
    Json::CharReaderBuilder builder;
    std::istringstream in(readText(scenario));
    Json::Value root;
    std::string errors;
    return Json::parseFromStream(builder, in, &root, &errors) && root["daemon"] == "platform";
}

class ScenarioReplay : public ::testing::TestWithParam<std::string>
{
};

TEST_P(ScenarioReplay, TranscriptIsTheExpectedOne)
{
    const fs::path dir = MARL_SCENARIO_DIR;
    const fs::path scenario = dir / (GetParam() + ".json");
    const fs::path expected = dir / (GetParam() + ".expected");
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", scenario.string(), "--fast", "--normalized",
                                           "--device", scratch.path("device").string()});
    if (const char* update = std::getenv("MARL_UPDATE_EXPECTED"); update && *update == '1') {
        writeText(expected, run.out);
        MARL_SKIP_OUTSIDE_CI("wrote " << expected << " (exit " << run.exitCode
                                      << "); read it before keeping it");
    }
    ASSERT_TRUE(fs::exists(expected)) << expected << " is missing; see sim/README.md";
    EXPECT_EQ(run.exitCode, 0) << run.err;
    if (playedByThePlatformDaemon(scenario))
        EXPECT_EQ(withoutAudio(readText(expected)), withoutAudio(run.out)) << "stderr:\n" << run.err;
    else
        EXPECT_EQ(readText(expected), run.out) << "stderr:\n" << run.err;
}

// What the plug-in answered, from a normalized transcript: the turns, the
// daemon's callbacks without the user data it got back, the driver requests
// with their responses, the parser's actions and what the appliance saw.
std::string answers(const std::string& transcript)
{
    static const char* const kept[] = {"-- turn",         "daemon   result:", "daemon   asr:",
                                       "daemon   error:", "speech   driverRequest", "           response:",
                                       "speech   executeOVAction", "device   ", "file     "};
    std::istringstream in(transcript);
    std::string out, line;
    while (std::getline(in, line)) {
        for (const char* prefix : kept) {
            if (line.rfind(prefix, 0) != 0)
                continue;
            if (line.rfind("daemon   ", 0) == 0) {
                const size_t userData = line.find(", user data ");
                if (userData != std::string::npos)
                    line.erase(userData);
            }
            // How much of a spoken answer played depends on when the
            // platform daemon, done with the turn at its result, unloads the
            // engine.
            static const std::regex playedBytes("^(device   audio_playback: \\{\"bytes\":)[^,]*");
            line = std::regex_replace(line, playedBytes, "$1\"?\"");
            out += line + "\n";
            break;
        }
    }
    return out;
}

class PlatformReplay : public ::testing::TestWithParam<std::string>
{
};

TEST_P(PlatformReplay, PluginAnswersAsUnderTheGentleDaemon)
{
    const fs::path dir = MARL_SCENARIO_DIR;
    const fs::path scenario = dir / (GetParam() + ".json");
    const fs::path expected = dir / (GetParam() + ".expected");
    const fs::path platformExpected = dir / (GetParam() + ".platform.expected");
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", scenario.string(), "--fast", "--normalized", "--daemon",
                                           "platform", "--device", scratch.path("device").string()});
    if (const char* update = std::getenv("MARL_UPDATE_EXPECTED");
        update && *update == '1' && fs::exists(platformExpected)) {
        writeText(platformExpected, run.out);
        MARL_SKIP_OUTSIDE_CI("wrote " << platformExpected << " (exit " << run.exitCode << ")");
    }
    EXPECT_EQ(run.exitCode, 0) << run.err;
    if (fs::exists(platformExpected)) {
        EXPECT_EQ(withoutAudio(readText(platformExpected)), withoutAudio(run.out)) << "stderr:\n" << run.err;
    } else {
        EXPECT_EQ(answers(readText(expected)), answers(run.out)) << run.out;
    }

    // The daemon's habits: its commands before every start, 10 ms chunks.
    std::istringstream in(run.out);
    std::string line, previousCall;
    int starts = 0;
    static const std::regex chunks("MarlEngine_set_recording_data x(\\d+) \\((\\d+) bytes");
    while (std::getline(in, line)) {
        if (line.rfind("call     ", 0) != 0)
            continue;
        if (line.rfind("call     MarlEngine_start(", 0) == 0) {
            ++starts;
            EXPECT_EQ(previousCall.rfind("call     MarlEngine_set_commands(", 0), 0u)
                << "start not right after set_commands: " << previousCall;
        }
        std::smatch m;
        if (std::regex_search(line, m, chunks)) {
            EXPECT_EQ(std::stoul(m[2]), 320u * std::stoul(m[1])) << line;
        }
        previousCall = line;
    }
    EXPECT_GT(starts, 0);
}

// Without --fast the platform daemon's recorder gives a 10 ms chunk on each
// tick of its main-loop timer, as a microphone does, and the plug-in answers
// as in the checked transcript.
TEST(PlatformPacedReplay, TheRecorderFeedsOnItsTimerAndThePluginAnswersAsExpected)
{
    const fs::path dir = MARL_SCENARIO_DIR;
    Scratch scratch;
    const fs::path json = scratch.path("transcript.json");
    const SimResult run = runSim(scratch, {"run", (dir / "timer-dialogue.json").string(), "--normalized", "--daemon",
                                           "platform", "--json", json.string(), "--device",
                                           scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(answers(readText(dir / "timer-dialogue.expected")), answers(run.out)) << run.out;

    Json::CharReaderBuilder builder;
    std::istringstream in(readText(json));
    Json::Value transcript;
    std::string errors;
    ASSERT_TRUE(Json::parseFromStream(builder, in, &transcript, &errors)) << errors;
    std::vector<long long> chunks;
    for (const auto& e : transcript["entries"])
        if (e["kind"] == "call" && e["fn"] == "MarlEngine_set_recording_data")
            chunks.push_back(e["t"].asInt64());
    ASSERT_GT(chunks.size(), 50u);
    // A timer never fires before its time: chunk N comes 10 * N ms after the first at the earliest.
    for (size_t i = 1; i < chunks.size(); ++i)
        ASSERT_GE(chunks[i] - chunks[0], static_cast<long long>(10 * i) - 1) << "chunk " << i + 1;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioReplay, ::testing::ValuesIn(marltest::scenarioNames(MARL_SCENARIO_DIR)),
                         marltest::scenarioTestName);
INSTANTIATE_TEST_SUITE_P(Scenarios, PlatformReplay, ::testing::ValuesIn(marltest::scenarioNames(MARL_SCENARIO_DIR)),
                         marltest::scenarioTestName);

}  // namespace
