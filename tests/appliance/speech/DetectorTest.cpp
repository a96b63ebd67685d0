#include "SpeechDetector.h"
#include "SpeechFixture.h"

using namespace marltest;

namespace {

const double kLoud = 8000.0;   // RMS about 5657, far above 750

class SpeechDetectorTest : public SpeechLibraryTest {
protected:
    void SetUp() override
    {
        SpeechLibraryTest::SetUp();
        ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    }

    // Feeds `ms` of audio in 20 ms chunks and waits for the library to
    // handle each.
    void feed(int ms, double amplitude)
    {
        for (int done = 0; done < ms; done += 20) {
            std::vector<short> chunk = sine16k(20, amplitude);
            manager->processAudio(chunk.data(), static_cast<int>(chunk.size()), false);
            waitIdle();
        }
    }

    int count(const std::string& name)
    {
        int n = 0;
        for (const std::string& called : listener.names())
            n += called == name;
        return n;
    }
};

TEST_F(SpeechDetectorTest, SpeechBeginsAfter60MillisecondsOfLoudAudio)
{
    feed(200, 0.0);
    feed(40, kLoud);
    EXPECT_EQ(count("onBeginningOfSpeech"), 0);
    feed(20, kLoud);
    EXPECT_EQ(count("onBeginningOfSpeech"), 1);
    const auto speech = observations.of("speech");
    ASSERT_EQ(speech.size(), 1u);
    EXPECT_EQ(speech[0]["event"], "begin");
    EXPECT_EQ(speech[0]["thread"], "library");
}

TEST_F(SpeechDetectorTest, SpeechEndsAfter300MillisecondsOfQuietAudio)
{
    feed(200, kLoud);
    feed(280, 0.0);
    EXPECT_EQ(count("onEndOfSpeech"), 0);
    feed(20, 0.0);
    EXPECT_EQ(count("onEndOfSpeech"), 1);
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onBeginningOfSpeech", "onEndOfSpeech"}));
}

TEST_F(SpeechDetectorTest, LoudAudioBetweenQuietChunksRestartsTheQuietCount)
{
    feed(200, kLoud);
    feed(200, 0.0);
    feed(20, kLoud);
    feed(200, 0.0);
    EXPECT_EQ(count("onEndOfSpeech"), 0);
    feed(100, 0.0);
    EXPECT_EQ(count("onEndOfSpeech"), 1);
}

TEST_F(SpeechDetectorTest, BeginAndEndAreReportedOncePerTurn)
{
    feed(500, kLoud);
    feed(500, 0.0);
    feed(500, kLoud);
    feed(500, 0.0);
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onBeginningOfSpeech", "onEndOfSpeech"}));

    manager->stopRecognition();
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    feed(100, kLoud);
    feed(400, 0.0);
    EXPECT_EQ(count("onBeginningOfSpeech"), 2);
    EXPECT_EQ(count("onEndOfSpeech"), 2);
}

TEST_F(SpeechDetectorTest, SoundBelowTheThresholdIsNotSpeech)
{
    feed(1000, 900.0);   // RMS about 636
    EXPECT_TRUE(listener.calls().empty());
}

TEST_F(SpeechDetectorTest, ABurstShorterThan60MillisecondsIsNotSpeech)
{
    feed(40, kLoud);
    feed(500, 0.0);
    feed(40, kLoud);
    feed(500, 0.0);
    EXPECT_TRUE(listener.calls().empty());
}

TEST_F(SpeechDetectorTest, ListenersAreCalledOnTheLibraryThread)
{
    feed(100, kLoud);
    feed(400, 0.0);
    const auto calls = listener.calls();
    ASSERT_EQ(calls.size(), 2u);
    for (const auto& call : calls)
        EXPECT_NE(call.thread, std::this_thread::get_id());
}

TEST_F(SpeechDetectorTest, AudioOutsideAVoiceTurnIsNotListenedTo)
{
    manager->stopRecognition();
    feed(500, kLoud);
    EXPECT_TRUE(listener.calls().empty());
    EXPECT_EQ(observations.of("audio").size(), 25u);
}

TEST_F(SpeechDetectorTest, AudioObservationCountsTheTurnsSamples)
{
    std::vector<short> chunk = sine16k(20, 0.0);
    manager->processAudio(chunk.data(), 320, true);
    manager->processAudio(chunk.data(), 160, false);
    manager->processAudio(nullptr, 160, false);
    manager->processAudio(chunk.data(), 0, false);
    const auto audio = observations.of("audio");
    ASSERT_EQ(audio.size(), 2u);
    EXPECT_EQ(audio[0]["samples"], 320);
    EXPECT_EQ(audio[0]["total"], 320);
    EXPECT_EQ(audio[0]["epd"], true);
    EXPECT_EQ(audio[1]["total"], 480);
    EXPECT_EQ(audio[1]["thread"], "caller");
}

class SpeechDetectorConfigTest : public SpeechDetectorTest {
protected:
    void SetUp() override
    {
        Config config;
        config.setEpdThreshold(3000);
        config.enableRMSComputation(true);
        start(config);
        ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    }
};

TEST_F(SpeechDetectorConfigTest, ThresholdAndRmsReportsFollowTheConfig)
{
    feed(200, 2000.0);   // RMS about 1414: speech at 750, not at 3000
    EXPECT_EQ(count("onBeginningOfSpeech"), 0);
    EXPECT_EQ(count("onRmsChanged"), 10);
    const int rms = listener.calls().front().args["rms"].asInt();
    EXPECT_NEAR(rms, 1414, 5);
    feed(60, kLoud);
    EXPECT_EQ(count("onBeginningOfSpeech"), 1);
}

// Speech pauses (the recognizer may start its final pass) after 100 ms of
// quiet once it has begun, and no longer as soon as loud audio comes back.
TEST(SpeechDetectorPause, SpeechPausesAfter100MillisecondsOfQuietUntilLoudAudioComesBack)
{
    standin::SpeechDetector detector;
    detector.reset(750, 16000);
    const std::vector<short> quiet(320, 0), loud(320, 5000);
    int rms = 0;
    for (int i = 0; i < 10; ++i)
        detector.feed(quiet, rms);
    EXPECT_FALSE(detector.paused()) << "quiet before any speech is no pause";
    for (int i = 0; i < 5; ++i)
        detector.feed(loud, rms);
    ASSERT_TRUE(detector.begun());
    for (int i = 0; i < 4; ++i)
        detector.feed(quiet, rms);
    EXPECT_FALSE(detector.paused()) << "80 ms";
    detector.feed(quiet, rms);
    EXPECT_TRUE(detector.paused()) << "100 ms";
    detector.feed(loud, rms);
    EXPECT_FALSE(detector.paused());
    for (int i = 0; i < 15; ++i)
        detector.feed(quiet, rms);
    EXPECT_TRUE(detector.ended());
    EXPECT_TRUE(detector.paused());
    detector.feed(loud, rms);
    EXPECT_TRUE(detector.paused()) << "after the end of speech, nothing more is heard";
}

}  // namespace
