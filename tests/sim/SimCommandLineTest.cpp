// marl-sim's command line: usage, scenario checking, the loader's refusals,
// the transcript's forms and the session's driving of the main loop.
#include "SimRun.h"

#include <gtest/gtest.h>
#include <json/json.h>

#include <cstdint>

namespace
{

using namespace simtest;

// A small session that the plug-in matches by text.
const char* const kSmallScenario = R"({
  "device": {"vconf": {"db/orvane/setting/lang": 5}},
  "engine": {"language": "en_US",
             "commands": [{"id": 2, "format": 0, "command": "show recipes"}]},
  "turns": [{"audio": {"speechMs": 200},
             "server": [{"type": "asr", "text": "show recipes"},
                        {"type": "action", "agent": "Recipe", "rawJson": {}}]}]
})";

fs::path writeScenario(const Scratch& scratch, const std::string& text,
                       const std::string& name = "s.json")
{
    const fs::path path = scratch.path(name);
    writeText(path, text);
    return path;
}

Json::Value parse(const std::string& text)
{
    Json::CharReaderBuilder builder;
    std::istringstream in(text);
    Json::Value value;
    std::string errors;
    EXPECT_TRUE(Json::parseFromStream(builder, in, &value, &errors)) << errors;
    return value;
}

// A WAV header and `frames` frames of silence.
std::string wav(uint32_t rate, uint16_t channels, uint16_t bits, uint32_t frames)
{
    auto le = [](std::string& out, uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            out += static_cast<char>((value >> (8 * i)) & 0xff);
    };
    const uint32_t data = frames * channels * bits / 8;
    std::string out = "RIFF";
    le(out, 36 + data, 4);
    out += "WAVEfmt ";
    le(out, 16, 4);
    le(out, 1, 2);
    le(out, channels, 2);
    le(out, rate, 4);
    le(out, rate * channels * bits / 8, 4);
    le(out, channels * bits / 8, 2);
    le(out, bits, 2);
    out += "data";
    le(out, data, 4);
    return out + std::string(data, '\0');
}

TEST(SimCommandLine, RunWithoutScenarioIsAUsageError)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("run needs a scenario file"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("usage: marl-sim run"), std::string::npos) << run.err;
}

TEST(SimCommandLine, UnknownOptionIsAUsageError)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", "x.json", "--frobnicate"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("unexpected argument \"--frobnicate\""), std::string::npos) << run.err;
}

TEST(SimCommandLine, TimeoutMustBeAPositiveNumber)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", "x.json", "--timeout", "0"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("--timeout takes a number of seconds above 0"), std::string::npos)
        << run.err;
}

TEST(SimCommandLine, ScenarioThatIsNotJsonIsRefused)
{
    Scratch scratch;
    const SimResult run =
        runSim(scratch, {"run", writeScenario(scratch, "{\"engine\": ").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("not valid JSON"), std::string::npos) << run.err;
}

TEST(SimCommandLine, MemberOfTheWrongTypeIsNamedByItsPath)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", writeScenario(scratch, R"({
      "engine": {"language": "en_US"},
      "turns": [{"server": [{"type": "partial", "text": "a"},
                            {"type": "asr", "text": "a", "confidence": "high"}]}]})")
                                                      .string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].server[1].confidence: must be an integer"), std::string::npos)
        << run.err;
}

TEST(SimCommandLine, UnknownMemberIsNamedByItsPath)
{
    Scratch scratch;
    const SimResult run = runSim(
        scratch, {"run", writeScenario(scratch, R"({"engine": {"langauge": "en_US"}})").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("engine.langauge: unknown member"), std::string::npos) << run.err;
}

TEST(SimCommandLine, MissingLanguageIsNamedByItsPath)
{
    Scratch scratch;
    const SimResult run =
        runSim(scratch, {"run", writeScenario(scratch, R"({"engine": {}})").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("engine.language: missing"), std::string::npos) << run.err;
}

TEST(SimCommandLine, UnknownServerEventIsRefused)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", writeScenario(scratch, R"({
      "engine": {"language": "en_US"},
      "turns": [{"server": [{"type": "hello"}]}]})")
                                                      .string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].server[0].type: unknown event \"hello\""), std::string::npos)
        << run.err;
}

TEST(SimCommandLine, MissingSpeechFileIsRefused)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", writeScenario(scratch, R"({
      "engine": {"language": "en_US"},
      "turns": [{"server": [{"type": "nlu", "text": "{}", "speechFile": "nothere.pcm"}]}]})")
                                                      .string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].server[0].speechFile: no such file: " +
                           scratch.path("nothere.pcm").string()),
              std::string::npos)
        << run.err;
}

TEST(SimCommandLine, WavOfAnotherFormatIsRefusedWithWhatItHolds)
{
    Scratch scratch;
    writeText(scratch.path("cd.wav"), wav(44100, 2, 16, 441));
    const SimResult run = runSim(scratch, {"run", writeScenario(scratch, R"({
      "engine": {"language": "en_US"}, "turns": [{"audio": "cd.wav"}]})")
                                                      .string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].audio: cd.wav holds PCM, 44100 Hz, 2 channel(s), 16 bit; "
                           "the engine takes 16000 Hz mono 16-bit PCM"),
              std::string::npos)
        << run.err;
}

TEST(SimCommandLine, RefusedScenarioLeavesTheDeviceUntouched)
{
    Scratch scratch;
    const fs::path device = scratch.path("device");
    const SimResult run = runSim(scratch, {"run",
                                           writeScenario(scratch, R"({
      "device": {"vconf": {"db/orvane/setting/lang": 5}},
      "engine": {"language": "en_US"}, "turns": [{"end": "pause"}]})")
                                               .string(),
                                           "--device", device.string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].end: must be \"stop\" or \"cancel\""), std::string::npos)
        << run.err;
    EXPECT_FALSE(fs::exists(device));
}

TEST(SimCommandLine, PluginThatCannotBeLoadedIsReported)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", writeScenario(scratch, kSmallScenario).string(),
                                           "--plugin", scratch.path("nothere.so").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot load the plug-in"), std::string::npos) << run.err;
}

TEST(SimCommandLine, LoaderRefusesTableSizesOfAnotherBuild)
{
    Scratch scratch;
    const SimResult run = runSim(scratch,
                                 {"run", writeScenario(scratch, kSmallScenario).string(),
                                  "--device", scratch.path("device").string()},
                                 {std::string("MARL_PLUGIN=") + FAKE_PLUGIN_BAD_SIZES});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("refused: the plug-in wrote table sizes 20 and 96"), std::string::npos)
        << run.err;
    EXPECT_NE(run.out.find("vcp_load_engine(\"daemon table\", \"engine table\") -> 0"),
              std::string::npos)
        << run.out;
    EXPECT_EQ(run.out.find("MarlEngine_initialize"), std::string::npos) << run.out;
}

TEST(SimCommandLine, MissingSpeechStandInIsReported)
{
    Scratch scratch;
    const SimResult run =
        runSim(scratch, {"run", writeScenario(scratch, kSmallScenario).string(), "--plugin",
                         FAKE_PLUGIN_NO_STANDIN, "--device", scratch.path("device").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("the speech stand-in's control functions"), std::string::npos)
        << run.err;
}

TEST(SimCommandLine, InfoPrintsTheEngineIdentity)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"info"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("uuid 4FAF79CF-FE69-40E0-AE11-69369F6DA743\n"), std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("name Marl Engine\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("needs network yes\n"), std::string::npos) << run.out;
}

TEST(SimCommandLine, JsonTranscriptKeepsEveryAudioCallAndTheReadableFormFoldsThem)
{
    Scratch scratch;
    const fs::path json = scratch.path("transcript.json");
    const SimResult run =
        runSim(scratch, {"run", writeScenario(scratch, kSmallScenario).string(), "--fast", "--json",
                         json.string(), "--device", scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Json::Value transcript = parse(readText(json));
    EXPECT_EQ(transcript["header"]["engine"]["uuid"].asString(),
              "4FAF79CF-FE69-40E0-AE11-69369F6DA743");
    EXPECT_EQ(transcript["header"]["device"]["dir"].asString(), scratch.path("device").string());
    int chunks = 0;
    long long lastTime = -1;
    for (const auto& entry : transcript["entries"]) {
        EXPECT_GE(entry["t"].asInt64(), lastTime);
        lastTime = entry["t"].asInt64();
        if (entry["fn"] == "MarlEngine_set_recording_data") {
            ++chunks;
            EXPECT_EQ(entry["chunk"].asInt(), chunks);
            EXPECT_EQ(entry["args"][0].asInt(), 640);
            EXPECT_EQ(entry["ret"].asInt(), 0);
            EXPECT_TRUE(entry["speech"].isInt());
        }
    }
    EXPECT_EQ(chunks, 10);
    EXPECT_NE(
        run.out.find("MarlEngine_set_recording_data x10 (6400 bytes, 3200 samples) -> 0; speech: "),
        std::string::npos)
        << run.out;
    EXPECT_NE(
        run.out.find("result: event 0 (SUCCESS), ids [2], count 1, all result \"show recipes\""),
        std::string::npos)
        << run.out;
}

TEST(SimCommandLine, AudioIsFedEveryTwentyMillisecondsWithoutFast)
{
    Scratch scratch;
    const fs::path json = scratch.path("transcript.json");
    const SimResult run =
        runSim(scratch, {"run",
                         writeScenario(scratch, R"({
      "engine": {"language": "en_US", "commands": [{"id": 1, "format": 0, "command": "x"}]},
      "turns": [{"audio": {"speechMs": 400, "silenceMs": 600}}]})")
                             .string(),
                         "--json", json.string(), "--device", scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    std::vector<long long> times;
    const Json::Value transcript = parse(readText(json));
    for (const auto& entry : transcript["entries"])
        if (entry["fn"] == "MarlEngine_set_recording_data")
            times.push_back(entry["t"].asInt64());
    ASSERT_EQ(times.size(), 50u);
    // Paced by the main loop's timer: about a second for 50 chunks, where the
    // fast mode takes a few milliseconds. The margin is for a busy machine.
    EXPECT_GE(times.back() - times.front(), 49 * 20 * 3 / 4);
}

TEST(SimCommandLine, DeviceDirectoryComesFromTheEnvironmentElseATemporaryOne)
{
    Scratch scratch;
    const fs::path json = scratch.path("transcript.json");
    const fs::path device = scratch.path("env-device");
    SimResult run = runSim(
        scratch,
        {"run", writeScenario(scratch, kSmallScenario).string(), "--fast", "--json", json.string()},
        {"MARL_DEVICE_DIR=" + device.string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    Json::Value header = parse(readText(json))["header"];
    EXPECT_EQ(header["device"]["dir"].asString(), device.string());
    EXPECT_FALSE(header["device"]["temporary"].asBool());
    EXPECT_TRUE(fs::exists(device / "journal.jsonl") || fs::exists(device / "device.json"));

    run = runSim(
        scratch,
        {"run", writeScenario(scratch, kSmallScenario).string(), "--fast", "--json", json.string()},
        {"TMPDIR=" + scratch.dir()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    header = parse(readText(json))["header"];
    EXPECT_TRUE(header["device"]["temporary"].asBool());
    EXPECT_EQ(fs::path(header["device"]["dir"].asString()).parent_path(), fs::path(scratch.dir()));
    EXPECT_TRUE(fs::is_directory(header["device"]["dir"].asString()));
}

TEST(SimCommandLine, PluginWritesItsDataDirectoryThroughTheFileSystemMap)
{
    Scratch scratch;
    const fs::path device = scratch.path("device");
    const SimResult run = runSim(scratch, {"run", writeScenario(scratch, kSmallScenario).string(),
                                           "--fast", "--device", device.string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(fs::is_directory(device / "root/home/owner/share/.voice/vc/engine/shared/data"));
}

TEST(SimCommandLine, DomainIsSetAndNormalizedFormKeepsOnlyTheComparedDeviceData)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", writeScenario(scratch, R"({
      "engine": {"language": "en_US", "domain": "Fridge",
                 "commands": [{"id": 1, "format": 0, "command": "x"}]},
      "turns": [{"audio": {"speechMs": 100}}],
      "compare": {"deviceData": ["Config.getDeviceProfileName"]}})").string(),
                                           "--fast", "--normalized", "--device",
                                           scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("call     MarlEngine_set_domain(\"Fridge\") -> 0\n"), std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("\n           Config.getDeviceProfileName = "), std::string::npos)
        << run.out;
    EXPECT_EQ(run.out.find("Alarm."), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("recoState"), std::string::npos) << run.out;
}

TEST(SimCommandLine, TurnThatDoesNotSettleTimesOutAndTheSessionStillEnds)
{
    Scratch scratch;
    const SimResult run = runSim(
        scratch, {"run",
                  writeScenario(scratch, R"({
      "engine": {"language": "en_US", "commands": [{"id": 1, "format": 0, "command": "x"}]},
      "turns": [{"audio": {"speechMs": 100}, "server": [{"type": "wait", "ms": 20000}]},
                {"audio": {"speechMs": 100}}]})")
                      .string(),
                  "--fast", "--timeout", "0.5", "--device", scratch.path("device").string()});
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_NE(run.out.find("time-out: the turn did not settle within 0.5"), std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("(the speech stand-in still had events to deliver)"), std::string::npos)
        << run.out;
    EXPECT_EQ(run.out.find("-- turn 2"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("MarlEngine_deinitialize() -> 0"), std::string::npos) << run.out;
    EXPECT_NE(run.err.find("a turn timed out"), std::string::npos) << run.err;
}

TEST(SimCommandLine, ReloadEngineRequestQuitsTheMainLoopAndTheSessionGoesOn)
{
    Scratch scratch;
    const SimResult run =
        runSim(scratch, {"run",
                         writeScenario(scratch, R"({
      "device": {"vconf": {"db/orvane/setting/lang": 5}},
      "engine": {"language": "en_US",
                 "commands": [{"id": 2, "format": 0, "command": "show recipes"}],
                 "privateData": [{"key": "Request", "data": "reloadEngine"}]},
      "turns": [{"audio": {"speechMs": 200},
                 "server": [{"type": "asr", "text": "show recipes"},
                            {"type": "action", "agent": "Recipe", "rawJson": {}}]}]})")
                             .string(),
                         "--fast", "--normalized", "--device", scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const size_t request =
        run.out.find("MarlEngine_set_private_data(\"Request\", \"reloadEngine\") -> 0");
    const size_t note = run.out.find("note     the main loop was quit from inside the session");
    const size_t result = run.out.find("result: event 0 (SUCCESS), ids [2]");
    ASSERT_NE(request, std::string::npos) << run.out;
    ASSERT_NE(note, std::string::npos) << run.out;
    ASSERT_NE(result, std::string::npos) << run.out;
    EXPECT_LT(request, note);
    EXPECT_LT(note, result);
}

}  // namespace
