// Answers that a 32-bit ARM target could change: there `char` is unsigned and
// `long` and `time_t` are 32 bits wide. Each expected value here was taken on
// the 64-bit host; the same program runs on the appliance's target under
// emulation (scripts/test-appliance-target.sh), where it must give the same.
#include "PluginFixture.h"

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSystem.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenTimer.h"
#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "ServerTts/ServerTtsManager.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <orvane-parser/TimerData.h>

#include <climits>
#include <cstring>
#include <fstream>
#include <iterator>

using marltest::EngineTest;
using marltest::TestDevice;

namespace {

std::string timerRow(const std::string& id, const std::string& running, const std::string& delay,
                     const std::string& expected, const std::string& lastUpdate)
{
    return R"({"id": ")" + id + R"(", "isrunning": ")" + running + R"(", "isringing": "0", "delayTime": ")" +
           delay + R"(", "expectedRingingTimeStamp": ")" + expected + R"(", "lastUpdateTimeStamp": ")" +
           lastUpdate + R"("})";
}

std::vector<Json::Value> playbacks()
{
    std::vector<Json::Value> found;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == "audio_playback")
            found.push_back(entry);
    return found;
}

}  // namespace

class TargetTimers : public EngineTest {
protected:
    void setTimers(const std::string& rows)
    {
        device.apply(R"({"datastore": {"Timer": [)" + rows + "]}}");
        timerRetriever()->refreshData();
    }
    DaDeviceTimerDataRetrieverImpl* timerRetriever()
    {
        return dynamic_cast<DaDeviceTimerDataRetrieverImpl*>(
            wrapper()->getDeviceDataRetrieveManager()->getTimerRetriever());
    }
};

TEST(TargetAnswers, DeviceIdentifierDigestBytesAbove0x7FAreTwoHexDigits)
{
    // Its digest starts with 0x92 and 0x7a: a signed char would print "ffffff92".
    TestDevice device(R"({"wifi": {"mac_address": "ff:ff:ff:ff:ff:ff"}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.getUniqueDeviceIdentifier(),
              "927ac519ac15daff25271b8c925e9376a4e5de537a86e9daeb27b4a397e6bb56");
    device.apply(R"({"wifi": {"mac_address": "FC:F1:52:80:9A:E7"}})");
    EXPECT_EQ(system.getUniqueDeviceIdentifier(),
              "ec3e207044673a4ae779e4eff4384c9056f9ba80884a8ae889f847a9480cd4b5");
}

TEST(TargetAnswers, DurationsPastTheIntRangeAreHeldAtItsLimits)
{
    // 68 years fit in an int, 69 do not; a 32-bit long would not hold the sum either.
    EXPECT_EQ(strTimeToInt("68"), 2144448000);
    EXPECT_EQ(strTimeToInt("69"), INT_MAX);
    EXPECT_EQ(strTimeToInt("-69"), INT_MIN);
    EXPECT_EQ(strTimeToInt("0, 0, 0, 0, 35791394, 0"), 2147483640);
    EXPECT_EQ(strTimeToInt("0, 0, 0, 0, 35791395, 0"), INT_MAX);
    EXPECT_EQ(strTimeToInt("0, 0, 0, 0, 0, 2147483647"), INT_MAX);
}

TEST_F(TargetTimers, APausedTimerNearTheEndOf32BitTimeShowsTheSameTimeLeft)
{
    // Time stamps a few hours before 2038-01-19, where a 32-bit time_t ends.
    setTimers(timerRow("1", "0", "900", "2147480000", "2147470000"));
    const std::string reply = DaCustomizedDriverResponseRetriever().getDriverResponse(
        R"({"Server Reqeust": {"agent": "Timer", "action": {"name": "Timer Request"}, "data": {}}})");
    EXPECT_NE(reply.find(R"("time":"02:46:40")"), std::string::npos) << reply;
}

TEST_F(TargetTimers, TimerIdsBeyondTheIntRangeCountAsZeroOnEveryTarget)
{
    // 2^32 + 2 would wrap to 2 through a 64-bit long; a 32-bit long saturates.
    setTimers(timerRow("1", "0", "60", "0", "0") + "," + timerRow("4294967298", "0", "60", "0", "0") + "," +
              timerRow("2147483648", "0", "60", "0", "0"));
    EXPECT_EQ(timerRetriever()->getCreatableTimerId(), "2");
}

TEST_F(TargetTimers, ANegativeDelayListsTheSameClockText)
{
    setTimers(timerRow("1", "0", "-3725", "0", "0"));
    std::vector<TimerData*> list;
    ASSERT_TRUE(timerRetriever()->getTimerList(&list));
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]->getTimerTime(), "-1:-2:-5");
    for (TimerData* timer : list)
        delete timer;
}

class TargetMediaVolume : public EngineTest {
protected:
    IDeviceMusicDataRetrieve* music() { return wrapper()->getDeviceDataRetrieveManager()->getMusicRetriever(); }
};

TEST_F(TargetMediaVolume, TheVolumeTakesTheWholeIntRange)
{
    EXPECT_EQ(MarlEngine_set_private_data("MediaVolume", "2147483647"), 0);
    EXPECT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), INT_MAX);
    EXPECT_EQ(MarlEngine_set_private_data("MediaVolume", "-2147483648"), 0);
    EXPECT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), INT_MIN);
}

class TargetSpeechPlayback : public EngineTest {
protected:
    TargetSpeechPlayback()
        : EngineTest(R"({"vconf": {"db/orvane/setting/lang": 5}, "audio_out": {"write_returns": "zero"}})")
    {
    }
    ServerTtsManager* tts() { return wrapper()->getServerTtsManager(); }
};

TEST_F(TargetSpeechPlayback, SampleBytesWithTheHighBitSetAreWalkedAsSignedSamples)
{
    // Little-endian 16-bit samples given as bytes: -16383, 16383, -32768, -1.
    const char speech[] = {'\x01', '\xc0', '\xff', '\x3f', '\x00', '\x80', '\xff', '\xff'};
    ASSERT_TRUE(tts()->copyServerTts(speech, sizeof speech));
    ASSERT_TRUE(tts()->serverTtsReceiveDone());
    ASSERT_TRUE(marltest::runLoopUntil([&] { return !playbacks().empty() && !tts()->getOnPlaying(); }, 5000));
    const Json::Value playback = playbacks()[0];
    EXPECT_EQ(playback["bytes"].asInt(), 8);
    const std::vector<short> samples = marltest::wavSamples(vapp::devicePath(playback["file"].asString()));
    ASSERT_EQ(samples.size(), 4u);
    EXPECT_EQ(samples[0], -32766);
    EXPECT_EQ(samples[1], 32766);
    EXPECT_EQ(samples[2], -32768);
    EXPECT_EQ(samples[3], -2);
}
