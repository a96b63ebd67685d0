// marl-sim say and listen: spoken requests on the virtual appliance.
#include "SimRun.h"

#include "voice/Voice.h"

#include <gtest/gtest.h>
#include <sndfile.h>

namespace
{

using namespace simtest;

// A kitchen whose one timer is paused with 4 minutes and 30 seconds left.
const char* const kKitchen = R"({
  "device": {"datastore": {"Timer": [{"id": "1", "isrunning": "0", "isringing": "0", "delayTime": "600",
                                      "expectedRingingTimeStamp": "1700000270",
                                      "lastUpdateTimeStamp": "1700000000"}]}},
  "engine": {"language": "en_US",
             "commands": [{"id": 2, "format": 0, "command": "open the fridge camera"},
                          {"id": 10, "type": 2, "format": 5, "command": "#org.tizen.Timer"}]},
  "turns": [{"audio": {"speechMs": 100}, "server": []}]
})";

fs::path writeFile(const Scratch& scratch, const std::string& name, const std::string& text)
{
    const fs::path path = scratch.path(name);
    writeText(path, text);
    return path;
}

bool writeWav(const fs::path& path, const std::vector<int16_t>& samples, int rate, int channels)
{
    SF_INFO info = {};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (!file)
        return false;
    sf_writef_short(file, samples.data(), static_cast<sf_count_t>(samples.size() / channels));
    sf_close(file);
    return true;
}

TEST(SimSpeaking, SaySpeaksARequestThatTheServiceAnswersWithSpeech)
{
    Scratch scratch;
    const fs::path device = scratch.path("device");
    const SimResult run =
        runSim(scratch, {"say", "how much time is left on the timer", "--scenario",
                         writeFile(scratch, "kitchen.json", kKitchen).string(), "--fast", "--normalized",
                         "--device", device.string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::string& out = run.out;
    EXPECT_NE(out.find("-- turn 1: audio speech \"how much time is left on the timer\" (en-us, 175 words a minute, "),
              std::string::npos)
        << out;
    EXPECT_EQ(out.find("-- turn 2"), std::string::npos) << "the scenario's own turns are not played";
    EXPECT_NE(out.find("daemon   asr: event 1 (PARTIAL)"), std::string::npos) << out;
    EXPECT_NE(out.find("daemon   asr: event 0 (FINAL), \"how much time is left on the timer\""), std::string::npos)
        << out;
    EXPECT_NE(out.find("speech   driverRequest @library: "
                       "\"{\\\"Server Reqeust\\\":{\\\"action\\\":{\\\"name\\\":\\\"Timer Request\\\"}"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("\\\"status\\\":\\\"Single Found\\\",\\\"time\\\":\\\"00:04:30\\\""), std::string::npos) << out;
    EXPECT_NE(out.find("\"spokenText\":\"Your timer is paused with 4 minutes and 30 seconds left.\""),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("result: event 0 (SUCCESS), ids [10], count 1, all result \"how much time is left on the "
                       "timer\""),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("matched commands [\"#org.tizen.Timer\"]"), std::string::npos) << out;
    EXPECT_NE(out.find("note     spoken answer: /home/owner/share/ServerTTS.pcm (24 kHz), as WAV "
                       "$DEVICE/answers/turn-1.wav"),
              std::string::npos)
        << out;

    SF_INFO info = {};
    SNDFILE* answer = sf_open((device / "answers/turn-1.wav").c_str(), SFM_READ, &info);
    ASSERT_NE(answer, nullptr);
    sf_close(answer);
    EXPECT_EQ(info.samplerate, 24000);
    EXPECT_EQ(info.channels, 1);
    EXPECT_GT(info.frames, 24000) << "more than a second of speech";
    EXPECT_EQ(static_cast<uintmax_t>(info.frames) * 2,
              fs::file_size(device / "root/home/owner/share/ServerTTS.pcm"));
}

TEST(SimSpeaking, SayOnTheBuiltInKitchenMatchesARegisteredCommand)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"say", "show recipes", "--fast", "--normalized", "--device",
                                           scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("# scenario kitchen (built in)"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\"engineType\":\"EMBEDDED\",\"text\":\"show recipes\""), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("result: event 0 (SUCCESS), ids [1], count 1, all result \"show recipes\""),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("matched commands [\"show recipes\"]"), std::string::npos) << run.out;
}

TEST(SimSpeaking, ListenFeedsARecording)
{
    Scratch scratch;
    std::vector<int16_t> speech;
    std::string error;
    ASSERT_TRUE(voice::synthesize("open the fridge camera", voice::SpeechOptions(), speech, error)) << error;
    std::vector<int16_t> audio(4800, 0);
    audio.insert(audio.end(), speech.begin(), speech.end());
    audio.insert(audio.end(), 12000, 0);
    ASSERT_TRUE(writeWav(scratch.path("camera.wav"), audio, 16000, 1));
    const SimResult run = runSim(scratch, {"listen", scratch.path("camera.wav").string(), "--fast", "--normalized",
                                           "--device", scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("-- turn 1: audio camera.wav, ends by stop, recognized"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("result: event 0 (SUCCESS), ids [2], count 1, all result \"open the fridge camera\""),
              std::string::npos)
        << run.out;
}

TEST(SimSpeaking, ListenRefusesAWavOfAnotherRateOrChannelCount)
{
    Scratch scratch;
    ASSERT_TRUE(writeWav(scratch.path("cd.wav"), std::vector<int16_t>(882, 0), 44100, 2));
    const SimResult run = runSim(scratch, {"listen", scratch.path("cd.wav").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("marl-sim: " + scratch.path("cd.wav").string() +
                           ": cd.wav holds PCM, 44100 Hz, 2 channel(s), 16 bit; the engine takes 16000 Hz mono "
                           "16-bit PCM"),
              std::string::npos)
        << run.err;
    writeText(scratch.path("text.wav"), "not a sound");
    const SimResult text = runSim(scratch, {"listen", scratch.path("text.wav").string()});
    EXPECT_EQ(text.exitCode, 1);
    EXPECT_NE(text.err.find("text.wav is not a sound file that can be read"), std::string::npos) << text.err;
}

TEST(SimSpeaking, SilenceIsAnsweredWithAnErrorOfNoSpeech)
{
    Scratch scratch;
    ASSERT_TRUE(writeWav(scratch.path("quiet.wav"), std::vector<int16_t>(16000, 0), 16000, 1));
    const SimResult run = runSim(scratch, {"listen", scratch.path("quiet.wav").string(), "--fast", "--normalized",
                                           "--device", scratch.path("device").string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("daemon   error: -1048628 (OPERATION_FAILED), msg \"no speech was heard\""),
              std::string::npos)
        << run.out;
}

TEST(SimSpeaking, SayRefusesWhatItCannotSay)
{
    Scratch scratch;
    SimResult run = runSim(scratch, {"say", "hello", "--voice", "xx-nowhere"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("marl-sim: cannot say \"hello\": espeak-ng has no voice \"xx-nowhere\""),
              std::string::npos)
        << run.err;
    run = runSim(scratch, {"say", " "});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot say \" \": there is no text to say"), std::string::npos) << run.err;
    run = runSim(scratch, {"say", "hello", "--rate", "fast"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("--rate takes 80 to 450 words a minute, not \"fast\""), std::string::npos) << run.err;
    run = runSim(scratch, {"say"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("say needs the words to say"), std::string::npos) << run.err;
    run = runSim(scratch, {"listen", "nothere.wav"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("nothere.wav is not a sound file that can be read"), std::string::npos) << run.err;
}

TEST(SimSpeaking, ScenarioTurnCanSpeakAndABadVoiceIsNamedByItsPath)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", writeFile(scratch, "s.json", R"({
      "engine": {"language": "en_US"},
      "turns": [{"audio": {"say": "open my cart", "voice": "xx-nowhere"}}]})").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("turns[0].audio: espeak-ng has no voice \"xx-nowhere\""), std::string::npos) << run.err;
}

}  // namespace
