#include "PluginFixture.h"

#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "ServerTts/ServerTtsManager.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// The sanitizers' allocator statistics (gcc ships no header for them).
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>
#include <thread>

using marltest::EngineTest;
using marltest::daemon;

namespace {

// Bytes the program holds on its heap (the sanitizers keep their own heap).
size_t heapInUse()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

std::vector<Json::Value> playbacks()
{
    std::vector<Json::Value> found;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == "audio_playback")
            found.push_back(entry);
    return found;
}

_cloudParserResults* action(const std::string& nlu)
{
    return new _cloudParserResults{nlu, "Timer", "Set Timer"};
}

std::string speechOf(std::initializer_list<short> samples)
{
    std::string bytes(samples.size() * 2, '\0');
    std::memcpy(&bytes[0], samples.begin(), bytes.size());
    return bytes;
}

// Server definitions with user play and no speech file path.
class NoPathServerDefines : public ICustomizedServerDefines {
public:
    bool useServerTts() override { return true; }
    bool userPlayServerTts() override { return true; }
    std::string getServerTtsAudioPath() override { return ""; }
};

class NoPathSet : public ICustomizedDataRetrieve {
public:
    ICustomizedServerDefines* getServerDefineRetriever() override { return &mDefines; }

private:
    NoPathServerDefines mDefines;
};

}  // namespace

// The appliance language 5 turns user play off: the plug-in plays the speech.
class ServerTtsPlayback : public EngineTest {
protected:
    ServerTtsPlayback() : EngineTest(R"({"vconf": {"db/orvane/setting/lang": 5}, "audio_out": {"write_returns": "zero"}})") {}
    ServerTtsManager* tts() { return wrapper()->getServerTtsManager(); }
    bool played(size_t count)
    {
        return marltest::runLoopUntil([&] { return playbacks().size() >= count && !tts()->getOnPlaying(); }, 5000);
    }
};

TEST_F(ServerTtsPlayback, SpeechIsPlayedAt24kMonoWithGainInPiecesOf40Bytes)
{
    std::string speech = speechOf({20000, -20000, 100, -100});
    speech.resize(85, '\0');
    ASSERT_TRUE(tts()->copyServerTts(speech.data(), 50));
    ASSERT_TRUE(tts()->copyServerTts(speech.data() + 50, 35));
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    EXPECT_TRUE(tts()->getReceived());
    ASSERT_TRUE(played(1));
    const Json::Value playback = playbacks()[0];
    EXPECT_EQ(playback["rate"].asInt(), 24000);
    EXPECT_EQ(playback["channels"].asInt(), 1);
    EXPECT_EQ(playback["sample_type"].asInt(), 113);
    EXPECT_EQ(playback["sound_type"].asInt(), 4);
    EXPECT_EQ(playback["bytes"].asInt(), 85);  // 40, 40 and 5
    const std::vector<short> samples = marltest::wavSamples(vapp::devicePath(playback["file"].asString()));
    ASSERT_GE(samples.size(), 4u);
    EXPECT_EQ(samples[0], 32767);
    EXPECT_EQ(samples[1], -32768);
    EXPECT_EQ(samples[2], 200);
    EXPECT_EQ(samples[3], -200);
}

TEST_F(ServerTtsPlayback, TwoPlayRequestsInARowPlayOnce)
{
    const std::string speech(400, '\1');
    ASSERT_TRUE(tts()->copyServerTts(speech.data(), speech.size()));
    EXPECT_TRUE(tts()->requestServerTtsPlay(speech.data(), speech.size()));
    EXPECT_TRUE(tts()->requestServerTtsPlay(speech.data(), speech.size()));
    EXPECT_TRUE(marltest::logged("TTS is already on Playing - Ignore reqeusts"));
    ASSERT_TRUE(played(1));
    marltest::runLoopUntil([] { return false; }, 300);
    EXPECT_EQ(playbacks().size(), 1u);
}

TEST_F(ServerTtsPlayback, ACopyOfLengthZeroLeavesTheBufferAlone)
{
    const char speech[2] = {1, 2};
    EXPECT_FALSE(tts()->copyServerTts(speech, 0));
    EXPECT_TRUE(marltest::logged("ttsBufferLen is 0"));
    EXPECT_FALSE(tts()->copyServerTts(nullptr, 2));
    EXPECT_FALSE(tts()->serverTtsReceiveDone());
    EXPECT_TRUE(marltest::logged("mTtsBuf is NULL"));
}

TEST_F(ServerTtsPlayback, StoppingWithoutAPlaybackSaysSo)
{
    EXPECT_FALSE(tts()->requestServerTtsStop());
    EXPECT_TRUE(marltest::logged("There is no playing TTS"));
    EXPECT_FALSE(tts()->stopPlayingServerTts());
    EXPECT_TRUE(marltest::logged("There is no handle"));
}

// The platform's audio output answers a write with the byte count.
class ServerTtsOnThePlatform : public EngineTest {
protected:
    ServerTtsOnThePlatform() : EngineTest(R"({"vconf": {"db/orvane/setting/lang": 6}})") {}
};

TEST_F(ServerTtsOnThePlatform, AByteCountFromTheFirstWriteEndsThePlayback)
{
    ServerTtsManager* tts = wrapper()->getServerTtsManager();
    const std::string speech(200, '\0');
    ASSERT_TRUE(tts->copyServerTts(speech.data(), speech.size()));
    ASSERT_TRUE(tts->serverTtsReceiveDone());
    ASSERT_TRUE(marltest::runLoopUntil([] { return !playbacks().empty(); }, 5000));
    EXPECT_EQ(playbacks()[0]["bytes"].asInt(), 40);
    EXPECT_TRUE(marltest::logged("audio_out_write - ret[40]"));
}

// On a fresh appliance server speech goes to an outside player.
class ServerTtsUserPlay : public EngineTest {
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        ASSERT_EQ(setCommands({{9, 1, 5, "#org.tizen.Timer"}}), 0);
        daemon().results.clear();
    }
    ServerTtsManager* tts() { return wrapper()->getServerTtsManager(); }
};

TEST_F(ServerTtsUserPlay, CompleteSpeechIsWrittenAsItCameAndReleasesTheWaitingAction)
{
    ASSERT_TRUE(tts()->getEnabled());
    ASSERT_TRUE(tts()->getUserPlay());
    ASSERT_TRUE(tts()->requestServerTtsWait(action("{\"n\":1}")));
    const std::string speech = speechOf({20000, 100});
    ASSERT_TRUE(tts()->copyServerTts(speech.data(), speech.size()));
    EXPECT_TRUE(daemon().results.empty());
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    EXPECT_TRUE(tts()->getReceived());
    std::string written;
    ASSERT_TRUE(vapp::readFile(vapp::hostPath("/home/owner/share/ServerTTS.pcm"), written));
    EXPECT_EQ(written, speech);  // no gain, no header
    EXPECT_TRUE(marltest::logged("ServerTtsManager.cpp: serverTtsReceiveDone("));
    EXPECT_TRUE(marltest::logged("fwrite result[4]"));
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].nlu, "{\"n\":1}");
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{9});
}

TEST_F(ServerTtsUserPlay, ANewWaitDeletesTheOlderActionUnexecuted)
{
    ASSERT_TRUE(tts()->requestServerTtsWait(action("older")));
    ASSERT_TRUE(tts()->requestServerTtsWait(action("newer")));
    const char speech[2] = {1, 0};
    ASSERT_TRUE(tts()->copyServerTts(speech, 2));
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].nlu, "newer");
}

TEST_F(ServerTtsUserPlay, SpeechBeforeAnyWaitingActionIsDropped)
{
    const char speech[2] = {1, 0};
    ASSERT_TRUE(tts()->copyServerTts(speech, 2));
    EXPECT_FALSE(tts()->serverTtsReceiveDone());
    EXPECT_TRUE(marltest::logged("There is no pended item to play server tts"));
    EXPECT_FALSE(tts()->getReceived());
    std::string written;
    EXPECT_FALSE(vapp::readFile(vapp::hostPath("/home/owner/share/ServerTTS.pcm"), written));
}

TEST_F(ServerTtsUserPlay, TheWaitExpiresAfterFiveSecondsAndTheActionGoesWithoutSpeech)
{
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(tts()->requestServerTtsWait(action("{\"late\":1}")));
    ASSERT_TRUE(marltest::runLoopUntil([] { return !daemon().results.empty(); }, 8000));
    const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    EXPECT_GE(waited.count(), 4900);
    EXPECT_EQ(daemon().results[0].nlu, "{\"late\":1}");
    EXPECT_TRUE(marltest::logged("pended agentName[Timer]"));
    EXPECT_FALSE(tts()->getReceived());
}

// Kept on purpose: the manager's destructor does not release the gathered
// speech; only clearing it (as a new turn does) releases it.
TEST_F(ServerTtsUserPlay, TheGatheredSpeechOutlivesItsManager)
{
    const std::string speech(1024 * 1024, '\1');
    const size_t before = heapInUse();
    ServerTtsManager* cleared = new ServerTtsManager();
    ASSERT_TRUE(cleared->copyServerTts(speech.data(), speech.size()));
    cleared->clearServerTts();
    delete cleared;
    EXPECT_LT(heapInUse(), before + speech.size() / 2);

    ServerTtsManager* manager = new ServerTtsManager();
    ASSERT_TRUE(manager->copyServerTts(speech.data(), speech.size()));
    delete manager;
    EXPECT_GE(heapInUse(), before + speech.size());
}

TEST_F(ServerTtsUserPlay, AnEmptySpeechPathWritesTheDefaultFile)
{
    wrapper()->getCustomizedDataRetrieveManager()->setUserRetriever(new NoPathSet());
    ASSERT_TRUE(tts()->requestServerTtsWait(action("{}")));
    const char speech[2] = {1, 0};
    ASSERT_TRUE(tts()->copyServerTts(speech, 2));
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    std::string written;
    EXPECT_TRUE(vapp::readFile(vapp::hostPath("/opt/usr/home/owner/media/Sounds/test.pcm"), written));
    EXPECT_EQ(written, std::string(speech, 2));
}

namespace {

// Speech of `bytes` bytes whose samples stay clear of clipping when doubled.
std::string rampSpeech(size_t bytes)
{
    std::string speech(bytes, '\0');
    for (size_t i = 0; i + 1 < bytes; i += 2) {
        const short sample = static_cast<short>(static_cast<int>((i / 2) % 2000) - 1000);
        std::memcpy(&speech[i], &sample, 2);
    }
    return speech;
}

size_t countOf(const std::string& text, const std::string& what)
{
    size_t count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

size_t cancelCallbacks()
{
    return countOf(marltest::platformLog(), "__threadCancelCb(");
}

// The played file holds the first `bytes` of `speech` (all of it by
// default), doubled.
void expectPlayedDoubled(const Json::Value& playback, const std::string& speech, size_t bytes = 0)
{
    if (!bytes)
        bytes = speech.size();
    EXPECT_EQ(playback["bytes"].asUInt(), bytes);
    const std::vector<short> samples = marltest::wavSamples(vapp::devicePath(playback["file"].asString()));
    ASSERT_EQ(samples.size(), bytes / 2);
    size_t wrong = 0;
    for (size_t i = 0; i < samples.size(); ++i) {
        short sample = 0;
        std::memcpy(&sample, speech.data() + 2 * i, 2);
        if (samples[i] != sample * 2)
            ++wrong;
    }
    EXPECT_EQ(wrong, 0u);
}

// A new turn while the speech plays clears the gathered speech and cancels the
// thread; the thread plays on from its own copy, to the end. Twenty times over.
void bargeInRuns(const std::string& speech)
{
    for (int run = 0; run < 20; ++run) {
        SCOPED_TRACE(run);
        const size_t cancelled = cancelCallbacks();
        const size_t before = playbacks().size();
        {
            ServerTtsManager manager;
            ASSERT_TRUE(manager.copyServerTts(speech.data(), speech.size()));
            ASSERT_TRUE(manager.serverTtsReceiveDone());
            ASSERT_TRUE(marltest::runLoopUntil([&] { return manager.getOnPlaying(); }, 5000));
            manager.init();  // the start of a driver-response turn
            ASSERT_TRUE(marltest::runLoopUntil([&] { return cancelCallbacks() > cancelled; }, 20000));
            EXPECT_FALSE(manager.getOnPlaying());
            // A cancelled playback stays recorded: later speech is ignored.
            ASSERT_TRUE(manager.copyServerTts(speech.data(), 40));
            EXPECT_TRUE(manager.requestServerTtsPlay(speech.data(), 40));
            EXPECT_EQ(countOf(marltest::platformLog(), "TTS is already on Playing - Ignore reqeusts"),
                      static_cast<size_t>(run + 1));
        }
        const std::vector<Json::Value> played = playbacks();
        ASSERT_EQ(played.size(), before + 1);
        expectPlayedDoubled(played.back(), speech);
    }
}

}  // namespace

// Language 6: the plug-in plays the speech itself; every write answers 0, so
// the whole speech plays, here without taking its real time.
class ServerTtsBargeIn : public EngineTest {
protected:
    ServerTtsBargeIn()
        : EngineTest(R"({"vconf": {"db/orvane/setting/lang": 6},
                         "audio_out": {"write_returns": "zero", "paced": false}})")
    {
    }
};

// About five seconds of speech.
TEST_F(ServerTtsBargeIn, ANewTurnWhileSpeechPlaysLeavesThePlayingSamplesWhole)
{
    bargeInRuns(rampSpeech(256 * 1024));
}

TEST_F(ServerTtsBargeIn, ANewTurnWhileFourMegabytesOfSpeechPlayLeavesThemWhole)
{
    bargeInRuns(rampSpeech(4 * 1024 * 1024));
}

// The same through the daemon: a new start while the answer plays.
TEST_F(ServerTtsBargeIn, ANewStartWhileTheAnswerPlaysLeavesThePlayingSamplesWhole)
{
    const std::string speech = rampSpeech(1024 * 1024);
    ServerTtsManager* tts = wrapper()->getServerTtsManager();
    ASSERT_TRUE(tts->copyServerTts(speech.data(), speech.size()));
    ASSERT_TRUE(tts->serverTtsReceiveDone());
    ASSERT_TRUE(marltest::runLoopUntil([&] { return tts->getOnPlaying(); }, 5000));
    ASSERT_EQ(MarlEngine_start(false), 0);
    ASSERT_TRUE(marltest::runLoopUntil([&] { return cancelCallbacks() > 0; }, 30000));
    ASSERT_EQ(playbacks().size(), 1u);
    expectPlayedDoubled(playbacks()[0], speech);
    EXPECT_TRUE(marltest::logged("There is no handle"));
    // Every later start finds the cancelled thread recorded and leaves it alone.
    ASSERT_EQ(MarlEngine_cancel(), 0);
    ASSERT_EQ(MarlEngine_start(false), 0);
    EXPECT_TRUE(marltest::logged("thread check failed"));
}

// Language 6 with an audio output that takes the real time of the speech, as
// the device's does: five seconds of speech play for five seconds.
class ServerTtsTeardown : public EngineTest {
protected:
    ServerTtsTeardown() : EngineTest(R"({"vconf": {"db/orvane/setting/lang": 6}, "audio_out": {"write_returns": "zero"}})") {}
    ServerTtsManager* tts() { return wrapper()->getServerTtsManager(); }
    void startPlaying(ServerTtsManager* manager)
    {
        ASSERT_TRUE(manager->copyServerTts(mSpeech.data(), mSpeech.size()));
        ASSERT_TRUE(manager->serverTtsReceiveDone());
        ASSERT_TRUE(marltest::runLoopUntil([&] { return manager->getOnPlaying(); }, 5000));
    }
    // The one playback of the test was cut short: its file holds the first
    // part of the speech, doubled.
    void expectCutShort()
    {
        ASSERT_EQ(playbacks().size(), 1u);
        const Json::Value playback = playbacks()[0];
        EXPECT_GT(playback["bytes"].asUInt(), 0u);
        EXPECT_LT(playback["bytes"].asUInt(), mSpeech.size());
        expectPlayedDoubled(playback, mSpeech, playback["bytes"].asUInt());
    }

    const std::string mSpeech = rampSpeech(240000);  // 5 s at 24 kHz
};

// What the manager's playback leaves when the manager goes: nothing runs and
// nothing waits on the main loop afterwards, so that the plug-in can be
// unloaded at once.
TEST_F(ServerTtsTeardown, DeletingTheManagerEndsItsPlaybackBeforeTheDeleteReturns)
{
    ServerTtsManager* manager = new ServerTtsManager();
    startPlaying(manager);
    delete manager;
    EXPECT_EQ(cancelCallbacks(), 1u) << "the cancel callback ran inside the delete";
    expectCutShort();
    marltest::runLoopUntil([] { return false; }, 300);
    EXPECT_EQ(cancelCallbacks(), 1u) << "nothing was left for the main loop";
}

TEST_F(ServerTtsTeardown, DeinitializeEndsThePlaybackBeforeItReturns)
{
    startPlaying(tts());
    ASSERT_EQ(MarlEngine_deinitialize(), 0);
    EXPECT_EQ(cancelCallbacks(), 1u);
    EXPECT_TRUE(marltest::logged("audio_out_destroy - ret[0]"));
    expectCutShort();
    ASSERT_EQ(MarlEngine_initialize(), 0);  // for the fixture's teardown
}

// A new turn cancels the playback and lets it play on; the teardown still
// ends it.
TEST_F(ServerTtsTeardown, DeinitializeEndsAPlaybackThatANewTurnLeftPlaying)
{
    startPlaying(tts());
    ASSERT_EQ(MarlEngine_start(false), 0);
    EXPECT_TRUE(tts()->getOnPlaying());
    EXPECT_EQ(cancelCallbacks(), 0u);
    ASSERT_EQ(MarlEngine_deinitialize(), 0);
    EXPECT_TRUE(marltest::logged("thread check failed"));
    EXPECT_EQ(cancelCallbacks(), 1u);
    expectCutShort();
    ASSERT_EQ(MarlEngine_initialize(), 0);
}

// A playback that has ended but whose callback the main loop has not run yet:
// the teardown's cancel turns it into the cancel callback, which the teardown
// runs itself.
TEST_F(ServerTtsTeardown, DeinitializeRunsTheQueuedCallbackItself)
{
    const std::string speech = rampSpeech(480);  // 10 ms
    ASSERT_TRUE(tts()->copyServerTts(speech.data(), speech.size()));
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (playbacks().empty() && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));  // the main loop does not run
    ASSERT_EQ(playbacks().size(), 1u);
    EXPECT_EQ(playbacks()[0]["bytes"].asUInt(), speech.size());
    EXPECT_EQ(cancelCallbacks(), 0u);
    ASSERT_EQ(MarlEngine_deinitialize(), 0);
    EXPECT_EQ(cancelCallbacks(), 1u);
    marltest::runLoopUntil([] { return false; }, 200);
    EXPECT_EQ(cancelCallbacks(), 1u);
    EXPECT_EQ(countOf(marltest::platformLog(), "__threadEndCb("), 0u);
    ASSERT_EQ(MarlEngine_initialize(), 0);
}
