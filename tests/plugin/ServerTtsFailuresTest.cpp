// How server speech degrades when the platform fails it: an audio output that
// cannot be made, prepared or written to, a speech file that cannot be opened,
// memory that cannot be had, and requests without speech. Every failure is
// logged and answered with false or an empty playback; none reaches the
// daemon, and a waiting action still goes.
//
// Memory is no platform call that the appliance could fail: this test's
// program is linked with the C library's malloc and calloc wrapped
// (tests/plugin/CMakeLists.txt), so that the plug-in's next allocation of a
// chosen size fails.
#include "PluginFixture.h"

#include "ServerTts/ServerTtsManager.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

using marltest::EngineTest;
using marltest::daemon;

extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __wrap_malloc(size_t size);
void* __wrap_calloc(size_t count, size_t size);
}

namespace {

// Allocations of exactly gFailSize bytes: gFailAfter of them still succeed,
// the next one answers null.
std::atomic<size_t> gFailSize{0};
std::atomic<int> gFailAfter{0};

void failAllocation(size_t size, int after = 0)
{
    gFailAfter = after;
    gFailSize = size;
}

bool failsNow(size_t size)
{
    if (size == 0 || gFailSize.load() != size)
        return false;
    if (gFailAfter.fetch_sub(1) > 0)
        return false;
    size_t expected = size;
    return gFailSize.compare_exchange_strong(expected, 0);
}

}  // namespace

void* __wrap_malloc(size_t size)
{
    return failsNow(size) ? nullptr : __real_malloc(size);
}

void* __wrap_calloc(size_t count, size_t size)
{
    return count != 0 && size != 0 && failsNow(count * size) ? nullptr : __real_calloc(count, size);
}

namespace {

std::vector<Json::Value> playbacks()
{
    std::vector<Json::Value> found;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == "audio_playback")
            found.push_back(entry);
    return found;
}

// How many times the platform log holds `text`.
size_t timesLogged(const std::string& text)
{
    const std::string log = marltest::platformLog();
    size_t count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + text.size()))
        ++count;
    return count;
}

}  // namespace

// The plug-in plays the speech itself (appliance language 5), and each write
// answers 0, as the plug-in expects.
class ServerTtsFailures : public EngineTest {
protected:
    ServerTtsFailures() : EngineTest(R"({"vconf": {"db/orvane/setting/lang": 5}, "audio_out": {"write_returns": "zero"}})")
    {
    }
    void TearDown() override
    {
        failAllocation(0);
        EngineTest::TearDown();
    }
    ServerTtsManager* tts() { return wrapper()->getServerTtsManager(); }

    // Gathers `speech` and hands it to the play thread; true when the thread
    // has ended within five seconds.
    bool playToTheEnd(const std::string& speech)
    {
        if (!tts()->copyServerTts(speech.data(), static_cast<unsigned int>(speech.size())) ||
            !tts()->serverTtsReceiveDone())
            return false;
        return marltest::runLoopUntil(
            [&] { return marltest::logged("audio_out_destroy - ret[") || marltest::logged("audio_out_unprepare - ret[") ||
                         marltest::logged("Failed to create audioOutHandle"); },
            5000) &&
               marltest::runLoopUntil([&] { return !tts()->getOnPlaying(); }, 5000);
    }
};

TEST_F(ServerTtsFailures, AnAudioOutputThatCannotBeMadePlaysNothing)
{
    device.apply(R"({"errors": {"audio_out_create": "AUDIO_IO_ERROR_DEVICE_NOT_OPENED"}})");
    ASSERT_TRUE(playToTheEnd(std::string(400, '\1')));
    EXPECT_TRUE(tts()->getReceived());
    // The failure is logged with the line of another step, as it always was.
    EXPECT_TRUE(marltest::logged("audio_out_unprepare - ret[" + std::to_string(AUDIO_IO_ERROR_DEVICE_NOT_OPENED) + "]"));
    EXPECT_TRUE(playbacks().empty());
    EXPECT_TRUE(daemon().errors.empty());
}

TEST_F(ServerTtsFailures, AnAudioOutputMadeWithoutAHandlePlaysNothing)
{
    // The call succeeds and leaves the handle null.
    device.apply(R"({"errors": {"audio_out_create": 0}})");
    ASSERT_TRUE(playToTheEnd(std::string(400, '\1')));
    EXPECT_TRUE(marltest::logged("Failed to create audioOutHandle"));
    EXPECT_TRUE(playbacks().empty());
}

TEST_F(ServerTtsFailures, AFailedPrepareIsLoggedAndThePlayGoesOn)
{
    device.apply(R"({"errors": {"audio_out_prepare": "AUDIO_IO_ERROR_SOUND_POLICY"}})");
    ASSERT_TRUE(playToTheEnd(std::string(400, '\1')));
    EXPECT_TRUE(marltest::logged("audio_out_prepare - ret[" + std::to_string(AUDIO_IO_ERROR_SOUND_POLICY) + "]"));
    // The output refuses the write of an unprepared stream, which ends the
    // play; the output is still closed.
    EXPECT_EQ(timesLogged("audio_out_write - ret[" + std::to_string(AUDIO_IO_ERROR_INVALID_STATE) + "]"), 1u);
    ASSERT_TRUE(marltest::runLoopUntil([] { return playbacks().size() == 1; }, 5000));
    EXPECT_EQ(playbacks()[0]["bytes"].asInt(), 0);
}

TEST_F(ServerTtsFailures, AFailedWriteEndsThePlayAndClosesTheOutput)
{
    device.apply(R"({"errors": {"audio_out_write": "AUDIO_IO_ERROR_INVALID_BUFFER"}})");
    ASSERT_TRUE(playToTheEnd(std::string(400, '\1')));
    // Ten pieces of 40 bytes; the first failed write is the last.
    EXPECT_EQ(timesLogged("audio_out_write - ret[" + std::to_string(AUDIO_IO_ERROR_INVALID_BUFFER) + "]"), 1u);
    ASSERT_TRUE(marltest::runLoopUntil([] { return playbacks().size() == 1; }, 5000));
    EXPECT_EQ(playbacks()[0]["bytes"].asInt(), 0);
    EXPECT_TRUE(marltest::logged("audio_out_destroy - ret[0]"));
}

TEST_F(ServerTtsFailures, AnOutputThatWorksAgainPlaysTheNextSpeech)
{
    device.apply(R"({"errors": {"audio_out_create": "AUDIO_IO_ERROR_DEVICE_NOT_OPENED"}})");
    ASSERT_TRUE(playToTheEnd(std::string(400, '\1')));
    // The play thread's end reaches the main loop.
    ASSERT_TRUE(marltest::runLoopUntil([] { return marltest::logged("__threadEndCb("); }, 5000));
    device.apply(R"({"errors": {}})");
    tts()->init();
    ASSERT_TRUE(tts()->copyServerTts(std::string(120, '\2').data(), 120));
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    ASSERT_TRUE(marltest::runLoopUntil([] { return playbacks().size() == 1; }, 5000));
    EXPECT_EQ(playbacks()[0]["bytes"].asInt(), 120);
}

TEST_F(ServerTtsFailures, RequestsWithoutSpeechAreRefused)
{
    const char speech[4] = {1, 2, 3, 4};
    EXPECT_FALSE(tts()->requestServerTtsPlay(nullptr, 4));
    EXPECT_TRUE(marltest::logged("ttsBuffer is NULL"));
    EXPECT_FALSE(tts()->requestServerTtsPlay(speech, 0));
    EXPECT_TRUE(marltest::logged("ttsBufferLen is 0"));
    EXPECT_FALSE(tts()->playServerTts(nullptr, 4));
    EXPECT_FALSE(tts()->playServerTts(speech, 0));
    marltest::runLoopUntil([] { return false; }, 200);
    EXPECT_TRUE(playbacks().empty());
}

TEST_F(ServerTtsFailures, SpeechPlayedOnTheCallersThreadGetsTheGainAndIsClosed)
{
    std::vector<short> samples = {20000, -20000, 100};
    EXPECT_TRUE(tts()->playServerTts(reinterpret_cast<const char*>(samples.data()), 6));
    // In place: the caller's speech now holds what was played.
    EXPECT_EQ(samples, std::vector<short>({32767, -32768, 200}));
    ASSERT_EQ(playbacks().size(), 1u);
    EXPECT_EQ(playbacks()[0]["bytes"].asInt(), 6);
    EXPECT_FALSE(tts()->getOnPlaying());
}

TEST_F(ServerTtsFailures, GatheringWithoutMemoryKeepsWhatCameBefore)
{
    ASSERT_TRUE(tts()->copyServerTts("\1\1\1\1", 4));
    // The next piece needs 4 + 6 + 1 bytes.
    failAllocation(11);
    EXPECT_FALSE(tts()->copyServerTts("\2\2\2\2\2\2", 6));
    EXPECT_TRUE(marltest::logged("Failed to calloc"));
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    ASSERT_TRUE(marltest::runLoopUntil([] { return playbacks().size() == 1; }, 5000));
    EXPECT_EQ(playbacks()[0]["bytes"].asInt(), 4);
}

TEST_F(ServerTtsFailures, WithoutMemoryForThePlaysCopyNothingIsPlayed)
{
    const std::string speech(4242, '\1');
    ASSERT_TRUE(tts()->copyServerTts(speech.data(), 4242));
    failAllocation(4242);
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    EXPECT_TRUE(marltest::logged("Failed to calloc"));
    ASSERT_TRUE(marltest::runLoopUntil([] { return marltest::logged("ttsBuffer is NULL"); }, 5000));
    marltest::runLoopUntil([] { return false; }, 200);
    EXPECT_TRUE(playbacks().empty());
}

TEST_F(ServerTtsFailures, WithoutMemoryForAPieceThePlayEndsAndTheOutputIsClosed)
{
    // One piece of 37 bytes; the play's own copy of the speech, of the same
    // size, is made first.
    const std::string speech(37, '\1');
    ASSERT_TRUE(tts()->copyServerTts(speech.data(), 37));
    failAllocation(37, 1);
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    ASSERT_TRUE(marltest::runLoopUntil([] { return playbacks().size() == 1; }, 5000));
    EXPECT_EQ(playbacks()[0]["bytes"].asInt(), 0);
}

// Server speech goes to a file for an outside player (a fresh appliance).
class ServerTtsFileFailures : public EngineTest {
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        ASSERT_EQ(setCommands({{9, 1, 5, "#org.tizen.Timer"}}), 0);
        daemon().results.clear();
    }
    ServerTtsManager* tts() { return wrapper()->getServerTtsManager(); }
};

TEST_F(ServerTtsFileFailures, ASpeechFileThatCannotBeOpenedDropsTheSpeechAndTheActionWaitsItsFiveSeconds)
{
    // A folder stands where the speech file goes.
    device.apply(R"({"files": [{"path": "/home/owner/share/ServerTTS.pcm/in-the-way", "text": ""}]})");
    ASSERT_TRUE(tts()->requestServerTtsWait(new _cloudParserResults{"{\"x\":1}", "Timer", "Set Timer"}));
    ASSERT_TRUE(tts()->copyServerTts("\1\2\3\4", 4));
    EXPECT_FALSE(tts()->serverTtsReceiveDone());
    EXPECT_TRUE(marltest::logged("Failed to fopen. Please remained spaces or access rights"));
    EXPECT_FALSE(tts()->getReceived());
    EXPECT_FALSE(tts()->serverTtsReceiveDone());  // the speech was dropped
    EXPECT_TRUE(marltest::logged("mTtsBuf is NULL"));
    EXPECT_TRUE(daemon().results.empty());
    // The waiting action goes when its timer runs out.
    ASSERT_TRUE(marltest::runLoopUntil([] { return !daemon().results.empty(); }, 6500));
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{9});
    EXPECT_EQ(daemon().results[0].nlu, "{\"x\":1}");
}
