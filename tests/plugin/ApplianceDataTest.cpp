#include "PluginFixture.h"

#include "RetrieveImpl/Common/DeviceDataRetrieverImpl.h"
#include "RetrieveImpl/Common/DeviceMusicDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DaDeviceDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <orvane-da-db/odb_manager.h>
#include <orvane-parser/TimerData.h>

#include <functional>
#include <memory>

using marltest::EngineTest;
using marltest::TestDevice;
using std::chrono::milliseconds;

namespace {

size_t countLogged(const std::string& text)
{
    const std::string log = marltest::platformLog();
    size_t count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + text.size()))
        ++count;
    return count;
}

std::string table(const std::string& name, const std::string& rows)
{
    return R"({"datastore": {")" + name + R"(": )" + rows + "}}";
}

const char* const kFailingWalk = R"({"errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})";
const char* const kNoErrors = R"({"errors": {}})";

struct TimerList {
    std::vector<TimerData*> timers;
    ~TimerList()
    {
        for (TimerData* timer : timers)
            delete timer;
    }
};

std::string timerRows(int count)
{
    std::string rows = "[";
    for (int id = 1; id <= count; ++id)
        rows += std::string(id > 1 ? "," : "") + R"({"id": ")" + std::to_string(id) + R"("})";
    return rows + "]";
}

}  // namespace

// --- the data store reader ---------------------------------------------------

TEST(AutoRefresher, RowsArriveInStoreOrderWithEveryValueAsText)
{
    TestDevice device(table("Timer", R"([{"id": "1", "delayTime": 300}, {"id": "2", "delayTime": -42},
                                          {"id": "3", "delayTime": 99999999999}])"));
    DADeviceDataAutoRefresher refresher("Timer");
    DADeviceDataAutoRefresher::DataMap rows = refresher.getDataMap();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0]["id"], "1");
    EXPECT_EQ(rows[0]["delayTime"], "300");
    EXPECT_EQ(rows[1]["delayTime"], "-42");
    EXPECT_EQ(rows[2]["delayTime"], "99999999999");
}

TEST(AutoRefresher, AColumnThatARowLacksIsNotStoredAndReadsEmptyInTheCopy)
{
    TestDevice device(table("Music", R"([{"appName": "Pandora", "isLoggedIn": "1"}, {"appName": "TuneIn"}])"));
    DADeviceDataAutoRefresher refresher("Music");
    DADeviceDataAutoRefresher::DataMap rows = refresher.getDataMap();
    EXPECT_EQ(rows[1].count("isLoggedIn"), 0u);
    EXPECT_EQ(rows[1]["isLoggedIn"], "");
    EXPECT_EQ(rows[0]["isLoggedIn"], "1");
}

TEST(AutoRefresher, TheConstructorDatesTheCacheTwoSecondsBackAndDoesNotRead)
{
    TestDevice device(kFailingWalk);
    const auto before = std::chrono::system_clock::now();
    DADeviceDataAutoRefresher refresher("Timer");
    const auto after = std::chrono::system_clock::now();
    const auto lastUpdate = PluginTestAccess::lastUpdate(&refresher);
    EXPECT_GE(lastUpdate, before - milliseconds(2000));
    EXPECT_LE(lastUpdate, after - milliseconds(2000));
    EXPECT_TRUE(refresher.isInvalidData());
    EXPECT_FALSE(marltest::logged("odb_manager_foreach_table failed"));
}

TEST(AutoRefresher, ReadsWithinASecondOfAGoodReadDoNotCallTheStore)
{
    TestDevice device(table("Timer", R"([{"id": "1"}])"));
    DADeviceDataAutoRefresher refresher("Timer");
    ASSERT_EQ(refresher.getDataMap().size(), 1u);
    EXPECT_FALSE(refresher.isInvalidData());
    device.apply(kFailingWalk);
    device.apply(table("Timer", R"([{"id": "1"}, {"id": "2"}])"));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(refresher.getDataMap().size(), 1u);
    PluginTestAccess::setLastUpdateAgo(&refresher, milliseconds(998));
    EXPECT_EQ(refresher.getDataMap().size(), 1u);
    EXPECT_FALSE(marltest::logged("odb_manager_foreach_table failed"));
}

TEST(AutoRefresher, AReadOneSecondAfterAGoodReadCallsTheStore)
{
    TestDevice device(table("Timer", R"([{"id": "1"}])"));
    DADeviceDataAutoRefresher refresher("Timer");
    ASSERT_EQ(refresher.getDataMap().size(), 1u);
    device.apply(table("Timer", R"([{"id": "1"}, {"id": "2"}])"));
    PluginTestAccess::setLastUpdateAgo(&refresher, milliseconds(1000));
    EXPECT_TRUE(refresher.isInvalidData());
    EXPECT_EQ(refresher.getDataMap().size(), 2u);
    EXPECT_FALSE(refresher.isInvalidData());
}

TEST(AutoRefresher, AFailedWalkEmptiesTheCacheAndTheNextReadTriesAgain)
{
    TestDevice device(table("Timer", R"([{"id": "1"}])"));
    DADeviceDataAutoRefresher refresher("Timer");
    ASSERT_EQ(refresher.getDataMap().size(), 1u);
    device.apply(kFailingWalk);
    PluginTestAccess::setLastUpdateAgo(&refresher, milliseconds(1500));
    const auto staleSince = PluginTestAccess::lastUpdate(&refresher);
    EXPECT_TRUE(refresher.getDataMap().empty());
    EXPECT_EQ(countLogged("odb_manager_foreach_table failed : " + std::to_string(ODB_ERROR_IO)), 1u);
    EXPECT_EQ(PluginTestAccess::lastUpdate(&refresher), staleSince);
    EXPECT_TRUE(refresher.getDataMap().empty());
    EXPECT_EQ(countLogged("odb_manager_foreach_table failed"), 2u);
    device.apply(kNoErrors);
    EXPECT_EQ(refresher.getDataMap().size(), 1u);
}

TEST(AutoRefresher, AClockSetBackKeepsTheCacheFresh)
{
    TestDevice device(table("Timer", R"([{"id": "1"}])"));
    DADeviceDataAutoRefresher refresher("Timer");
    ASSERT_EQ(refresher.getDataMap().size(), 1u);
    device.apply(table("Timer", "[]"));
    PluginTestAccess::setLastUpdateAgo(&refresher, milliseconds(-5000));
    EXPECT_FALSE(refresher.isInvalidData());
    EXPECT_EQ(refresher.getDataMap().size(), 1u);
}

TEST(AutoRefresher, ACallerChangingItsCopyLeavesTheCacheAlone)
{
    TestDevice device(table("Timer", R"([{"id": "1"}])"));
    DADeviceDataAutoRefresher refresher("Timer");
    DADeviceDataAutoRefresher::DataMap copy = refresher.getDataMap();
    copy[0]["id"] = "changed";
    copy[5]["isrunning"];
    DADeviceDataAutoRefresher::DataMap again = refresher.getDataMap();
    ASSERT_EQ(again.size(), 1u);
    EXPECT_EQ(again[0]["id"], "1");
    EXPECT_EQ(again.begin()->second.size(), 1u);
}

TEST(AutoRefresher, AnEmptyTableIsAGoodRead)
{
    TestDevice device(table("Timer", "[]"));
    DADeviceDataAutoRefresher refresher("Timer");
    EXPECT_TRUE(refresher.getDataMap().empty());
    EXPECT_FALSE(refresher.isInvalidData());
    device.apply(table("Timer", R"([{"id": "1"}])"));
    EXPECT_TRUE(refresher.getDataMap().empty());
}

TEST(AutoRefresher, AStoreWithoutTheTableReadsAsAnEmptyTable)
{
    TestDevice device(table("Timer", R"([{"id": "1"}])"));
    DADeviceDataAutoRefresher refresher("Music");
    EXPECT_TRUE(refresher.getDataMap().empty());
    EXPECT_TRUE(marltest::logged("odb_manager_foreach_table failed : " + std::to_string(ODB_ERROR_NO_SUCH_TABLE)));
    EXPECT_TRUE(refresher.isInvalidData());
}

TEST(AutoRefresher, AStoreWithoutADatabaseReadsAsAnEmptyTable)
{
    TestDevice device;
    DADeviceDataAutoRefresher refresher("Music");
    EXPECT_TRUE(refresher.getDataMap().empty());
    EXPECT_TRUE(marltest::logged("odb_manager_foreach_table failed : " + std::to_string(ODB_ERROR_IO)));
}

TEST(AutoRefresher, AFailedCreateKeepsTheObjectAndTheDestructorStillDestroys)
{
    TestDevice device(R"({"errors": {"odb_manager_create": "ODB_ERROR_IO"},
                          "datastore": {"Timer": [{"id": "1"}]}})");
    {
        DADeviceDataAutoRefresher refresher("Timer");
        EXPECT_TRUE(marltest::logged("odb_manager_create failed : " + std::to_string(ODB_ERROR_IO)));
        EXPECT_TRUE(refresher.getDataMap().empty());
        EXPECT_TRUE(
            marltest::logged("odb_manager_foreach_table failed : " + std::to_string(ODB_ERROR_INVALID_PARAMETER)));
        EXPECT_FALSE(marltest::logged("odb_manager_destroy failed"));
    }
    // The handle word still holds null, which the store refuses.
    EXPECT_TRUE(marltest::logged("odb_manager_destroy failed : " + std::to_string(ODB_ERROR_INVALID_PARAMETER)));
}

TEST(AutoRefresher, AFailedDestroyIsLoggedAndIgnored)
{
    TestDevice device(R"({"errors": {"odb_manager_destroy": "ODB_ERROR_IO"}})");
    { DADeviceDataAutoRefresher refresher("Timer"); }
    EXPECT_TRUE(marltest::logged("odb_manager_destroy failed : " + std::to_string(ODB_ERROR_IO)));
}

TEST(AutoRefresher, TheRowCallbackStoresTextOrDecimalAndKeepsTheLastValue)
{
    TestDevice device(table("Timer", "[]"));
    DADeviceDataAutoRefresher refresher("Timer");
    ASSERT_TRUE(refresher.getDataMap().empty());
    DADeviceDataAutoRefresher::foreachCb(3, ODB_VALUE_TYPE_TEXT, "name", "first", 99, &refresher);
    DADeviceDataAutoRefresher::foreachCb(3, ODB_VALUE_TYPE_TEXT, "name", "second", 0, &refresher);
    DADeviceDataAutoRefresher::foreachCb(3, ODB_VALUE_TYPE_INTEGER, "count", "ignored", -7, &refresher);
    DADeviceDataAutoRefresher::foreachCb(4, 5, "count", nullptr, 12, &refresher);
    DADeviceDataAutoRefresher::DataMap rows = refresher.getDataMap();
    EXPECT_EQ(rows[3]["name"], "second");
    EXPECT_EQ(rows[3]["count"], "-7");
    EXPECT_EQ(rows[4]["count"], "12");
    refresher.clearData();
    EXPECT_TRUE(refresher.getDataMap().empty());
}

// --- music ---------------------------------------------------------------------

TEST(ApplianceMusic, CapabilitiesAndSongNamesAreFixed)
{
    TestDevice device;
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_TRUE(music.support());
    EXPECT_TRUE(music.supportGenre());
    EXPECT_FALSE(music.supportMood());
    EXPECT_TRUE(music.supportTuneCove());
    EXPECT_TRUE(music.supportPlayAll());
    EXPECT_TRUE(music.supportPlayArtist());
    EXPECT_TRUE(music.supportPlayFavoritesOnly());
    EXPECT_FALSE(music.supportPlaylist());
    EXPECT_FALSE(music.supportPlaylistAddSong());
    EXPECT_FALSE(music.supportPlaylistEdit());
    EXPECT_TRUE(music.supportRepeat());
    EXPECT_TRUE(music.supportShuffle());
    EXPECT_TRUE(music.appInstalled());
    EXPECT_TRUE(music.getMoodGridCataloged());
    EXPECT_EQ(music.getCurrentMusicPlayerVolumeMaxLevel(), 15);
    EXPECT_TRUE(marltest::logged("maxVolumeLevel[15]"));
    EXPECT_EQ(music.getCurrentSongAlbumName(), "");
    EXPECT_EQ(music.getCurrentSongArtistName(), "");
    EXPECT_EQ(music.getCurrentSongGenreName(), "");
    EXPECT_EQ(music.getCurrentSongName(), "");
    EXPECT_TRUE(marltest::logged("curSongName[]"));
}

TEST(ApplianceMusic, SpotifyPlayingWithPandoraLoggedOutIsNotLoggedInAndNamesSpotify)
{
    TestDevice device(table("Music", R"([{"appName": "Spotify", "musicPlaying": "1", "isLoggedIn": "1"},
                                          {"appName": "Pandora", "musicPlaying": "0", "isLoggedIn": "0"}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_FALSE(music.currentMusicAppLoggedIn());
    EXPECT_EQ(music.getCurrentMusicPlayerName(), "Spotify");
    EXPECT_TRUE(marltest::logged("musicAppName[Spotify]"));
}

TEST(ApplianceMusic, TheLastPandoraRowDecidesTheLogin)
{
    {
        TestDevice device(table("Music", R"([{"appName": "Pandora", "isLoggedIn": "1"},
                                              {"appName": "Pandora", "isLoggedIn": "0"}])"));
        EXPECT_FALSE(DaDeviceMusicDataRetrieverImpl().currentMusicAppLoggedIn());
    }
    {
        TestDevice device(table("Music", R"([{"appName": "Pandora", "isLoggedIn": "0"},
                                              {"appName": "Pandora", "isLoggedIn": "1"},
                                              {"appName": "Spotify", "isLoggedIn": "0"}])"));
        EXPECT_TRUE(DaDeviceMusicDataRetrieverImpl().currentMusicAppLoggedIn());
    }
}

TEST(ApplianceMusic, APandoraRowWithAnEmptyLoginLeavesTheEarlierAnswer)
{
    TestDevice device(table("Music", R"([{"appName": "Pandora", "isLoggedIn": "1"},
                                          {"appName": "Pandora", "isLoggedIn": ""},
                                          {"appName": "Pandora"}])"));
    EXPECT_TRUE(DaDeviceMusicDataRetrieverImpl().currentMusicAppLoggedIn());
}

TEST(ApplianceMusic, TwoPlayingRowsNameTheHigherRowAndPlay)
{
    TestDevice device(table("Music", R"([{"appName": "Spotify", "musicPlaying": "1"},
                                          {"appName": "TuneIn", "musicPlaying": "1"},
                                          {"appName": "Pandora", "musicPlaying": "0"}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_EQ(music.getCurrentMusicPlayerName(), "TuneIn");
    EXPECT_EQ(music.getCurrentMusicPlayerStatus(), 10);
    EXPECT_TRUE(marltest::logged("status[10]"));
}

TEST(ApplianceMusic, AFollowedTuneInStationIsAFavouriteEvenWhenNotPlaying)
{
    TestDevice device(table("Music", R"([{"appName": "TuneIn", "musicPlaying": "0", "isFollowing": "1"}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_TRUE(music.getCurrentRadioFavoriteMark());
    EXPECT_EQ(music.getCurrentMusicPlayerStatus(), 12);
}

TEST(ApplianceMusic, NamesAreComparedExactlyWithCase)
{
    TestDevice device(table("Music", R"([{"appName": "pandora", "isLoggedIn": "1", "stationName": "Jazz"},
                                          {"appName": "TUNEIN", "isFollowing": "1"},
                                          {"appName": "Pandora ", "isLoggedIn": "1"}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_FALSE(music.currentMusicAppLoggedIn());
    EXPECT_FALSE(music.getCurrentRadioFavoriteMark());
    EXPECT_EQ(music.getCurrentStationName(), "");
    EXPECT_EQ(music.getLastStationName(), "Not Found");
}

TEST(ApplianceMusic, TheSongMarkAndSleepNeedAPlayingRow)
{
    {
        TestDevice device(table("Music", R"([{"appName": "A", "musicPlaying": "0", "currentSongRating": "1",
                                               "sleepMode": "1"},
                                              {"appName": "B", "musicPlaying": "1", "currentSongRating": "0",
                                               "sleepMode": "0"}])"));
        DaDeviceMusicDataRetrieverImpl music;
        EXPECT_FALSE(music.getCurrentSongFavoriteMark());
        EXPECT_FALSE(music.getCurrentMusicAppSlept());
    }
    {
        TestDevice device(table("Music", R"([{"appName": "A", "musicPlaying": "1", "currentSongRating": "1"},
                                              {"appName": "B", "musicPlaying": "1", "sleepMode": "1"}])"));
        DaDeviceMusicDataRetrieverImpl music;
        EXPECT_TRUE(music.getCurrentSongFavoriteMark());
        EXPECT_TRUE(music.getCurrentMusicAppSlept());
    }
}

TEST(ApplianceMusic, StationsComeFromPandoraRowsWithAName)
{
    TestDevice device(table("Music", R"([{"appName": "Pandora", "stationName": "Jazz"},
                                          {"appName": "Spotify", "stationName": "Rock"},
                                          {"appName": "Pandora", "stationName": ""},
                                          {"appName": "Pandora", "stationName": "Blues"}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_EQ(music.getCurrentStationName(), "Blues");
    EXPECT_EQ(music.getLastStationName(), "Found");
    EXPECT_TRUE(marltest::logged("currentStationName[Blues]"));
    EXPECT_TRUE(marltest::logged("lastStationName[Found]"));
}

TEST(ApplianceMusic, APandoraRowWithoutAStationFindsNone)
{
    TestDevice device(table("Music", R"([{"appName": "Pandora", "stationName": ""}, {"appName": "Pandora"}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_EQ(music.getCurrentStationName(), "");
    EXPECT_EQ(music.getLastStationName(), "Not Found");
}

TEST(ApplianceMusic, IntegerFlagsReadLikeTextFlags)
{
    TestDevice device(table("Music", R"([{"appName": "Pandora", "isLoggedIn": 1, "musicPlaying": 1,
                                          "currentSongRating": 1}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_TRUE(music.currentMusicAppLoggedIn());
    EXPECT_TRUE(music.getCurrentSongFavoriteMark());
    EXPECT_EQ(music.getCurrentMusicPlayerStatus(), 10);
}

TEST(ApplianceMusic, OddValuesCountAsNotSet)
{
    TestDevice device(table("Music", R"([{"appName": 7, "musicPlaying": "yes", "isLoggedIn": -1},
                                          {"appName": "Pandora", "isLoggedIn": "true", "musicPlaying": 99999999999}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_FALSE(music.currentMusicAppLoggedIn());
    EXPECT_EQ(music.getCurrentMusicPlayerName(), "None");
    EXPECT_EQ(music.getCurrentMusicPlayerStatus(), 12);
}

TEST(ApplianceMusic, WithTheStoreDownNothingPlays)
{
    TestDevice device(R"({"errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"},
                          "datastore": {"Music": [{"appName": "Pandora", "isLoggedIn": "1", "musicPlaying": "1",
                                                   "currentSongRating": "1", "sleepMode": "1", "stationName": "Jazz"},
                                                  {"appName": "TuneIn", "isFollowing": "1"}]}})");
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_FALSE(music.currentMusicAppLoggedIn());
    EXPECT_FALSE(music.getCurrentSongFavoriteMark());
    EXPECT_FALSE(music.getCurrentRadioFavoriteMark());
    EXPECT_FALSE(music.getCurrentMusicAppSlept());
    EXPECT_EQ(music.getCurrentMusicPlayerName(), "None");
    EXPECT_EQ(music.getCurrentStationName(), "");
    EXPECT_EQ(music.getLastStationName(), "Not Found");
    EXPECT_EQ(music.getCurrentMusicPlayerStatus(), 12);
    EXPECT_TRUE(marltest::logged("odb_manager_foreach_table failed"));
    // The same rows with the store up.
    device.apply(kNoErrors);
    EXPECT_TRUE(music.currentMusicAppLoggedIn());
    EXPECT_EQ(music.getCurrentMusicPlayerName(), "Pandora");
}

TEST(ApplianceMusic, TheAppIsMutedUntilAVolumeOtherThanZeroIsSet)
{
    TestDevice device;
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_TRUE(music.getCurrentMusicAppMute());
    EXPECT_EQ(music.getCurrentMusicPlayerVolumeLevel(), 0);
    music.setVolumeLevel(7);
    EXPECT_FALSE(music.getCurrentMusicAppMute());
    EXPECT_EQ(music.getCurrentMusicPlayerVolumeLevel(), 7);
    EXPECT_TRUE(marltest::logged("volumeLevel[7]"));
    music.setVolumeLevel(0);
    EXPECT_TRUE(music.getCurrentMusicAppMute());
}

// --- timers --------------------------------------------------------------------

TEST(ApplianceTimer, CapabilitiesAndNamesAreFixed)
{
    TestDevice device(table("Timer", timerRows(3)));
    DaDeviceTimerDataRetrieverImpl timer;
    EXPECT_TRUE(timer.appInstalled());
    EXPECT_TRUE(timer.support());
    EXPECT_TRUE(timer.supportByAppControl());
    EXPECT_TRUE(timer.supportCancel());
    EXPECT_TRUE(timer.supportConfirm());
    EXPECT_TRUE(timer.supportCreate());
    EXPECT_FALSE(timer.supportOwnWidgetControl());
    EXPECT_TRUE(timer.supportReset());
    EXPECT_TRUE(timer.supportShow());
    EXPECT_TRUE(timer.supportStart());
    EXPECT_TRUE(timer.supportStop());
    EXPECT_TRUE(timer.supportTask());
    EXPECT_TRUE(timer.supportMultipleControl());
    EXPECT_EQ(timer.getTimerAppName(), "org.tizen.fridge-timer");
    EXPECT_TRUE(marltest::logged("timerAppName[org.tizen.fridge-timer]"));
    EXPECT_EQ(timer.getTimerTime(), "00:00:00");
    EXPECT_TRUE(marltest::logged("timerTime[00:00:00]"));
}

TEST(ApplianceTimer, TheCurrentIdIsEmptyWhereTheInterfaceSaysZero)
{
    TestDevice device(table("Timer", timerRows(2)));
    DaDeviceTimerDataRetrieverImpl timer;
    IDeviceTimerDataRetrieve bare;
    EXPECT_EQ(timer.getCurrentTimerId(), "");
    EXPECT_EQ(bare.getCurrentTimerId(), "0");
    EXPECT_TRUE(marltest::logged("currentTimerId[]"));
}

TEST(ApplianceTimer, TheMaximumStaysTwentyWhileTheCountMayPassIt)
{
    TestDevice device(table("Timer", timerRows(25)));
    DaDeviceTimerDataRetrieverImpl timer;
    EXPECT_EQ(timer.getMaxTimerCount(), 20);
    EXPECT_EQ(timer.getCurrentTimerCount(), 25);
    EXPECT_TRUE(marltest::logged("timerCount[25]"));
    EXPECT_TRUE(marltest::logged("maxTimerCount[20]"));
}

TEST(ApplianceTimer, StatusIsOneWithoutTimersTwelveWhenAllStandAndTenWhenOneRuns)
{
    {
        TestDevice device(table("Timer", "[]"));
        EXPECT_EQ(DaDeviceTimerDataRetrieverImpl().getTimerStatus(), 1);
    }
    {
        TestDevice device(table("Timer", R"([{"id": "1", "isrunning": "0"}, {"id": "2", "isrunning": "0"}])"));
        EXPECT_EQ(DaDeviceTimerDataRetrieverImpl().getTimerStatus(), 12);
    }
    {
        TestDevice device(table("Timer", R"([{"id": "1", "isrunning": "0"}, {"id": "2", "isrunning": "1"}])"));
        EXPECT_EQ(DaDeviceTimerDataRetrieverImpl().getTimerStatus(), 10);
        EXPECT_TRUE(marltest::logged("status[10]"));
    }
}

TEST(ApplianceTimer, ARingingTimerIsStatusTenButNotCountedAsRunning)
{
    TestDevice device(table("Timer", R"([{"id": "1", "isrunning": "1", "isringing": "1"}])"));
    DaDeviceTimerDataRetrieverImpl timer;
    EXPECT_EQ(timer.getTimerStatus(), 10);
    EXPECT_EQ(timer.getRunningTimerCount(), 0);
}

TEST(ApplianceTimer, RunningTimersCountOnlyWhenRunningAndNotRinging)
{
    TestDevice device(table("Timer", R"([{"id": "1", "isrunning": "1", "isringing": "0"},
                                          {"id": "2", "isrunning": "1", "isringing": "0"},
                                          {"id": "3", "isrunning": "0", "isringing": "0"},
                                          {"id": "4", "isrunning": "1"},
                                          {"id": "5", "isrunning": 1, "isringing": 0}])"));
    EXPECT_EQ(DaDeviceTimerDataRetrieverImpl().getRunningTimerCount(), 3);
}

TEST(ApplianceTimer, AnEmptyRunningFlagIsNotRunning)
{
    TestDevice device(table("Timer", R"([{"id": "1", "isrunning": "", "isringing": "0", "delayTime": "60"}])"));
    DaDeviceTimerDataRetrieverImpl timer;
    EXPECT_EQ(timer.getTimerStatus(), 12);
    EXPECT_EQ(timer.getRunningTimerCount(), 0);
    TimerList list;
    EXPECT_TRUE(timer.getTimerList(&list.timers));
    ASSERT_EQ(list.timers.size(), 1u);
    EXPECT_EQ(list.timers[0]->getIsRunning(), "False");
}

TEST(ApplianceTimer, WithoutRowsTheListIsFalseAndLeftAsItWas)
{
    TestDevice device(table("Timer", "[]"));
    DaDeviceTimerDataRetrieverImpl timer;
    TimerList list;
    list.timers.push_back(new TimerData());
    list.timers[0]->setId("kept");
    EXPECT_FALSE(timer.getTimerList(&list.timers));
    ASSERT_EQ(list.timers.size(), 1u);
    EXPECT_EQ(list.timers[0]->getId(), "kept");
}

TEST(ApplianceTimer, TheListAppendsOneRecordPerRowInRowOrder)
{
    TestDevice device(table("Timer", R"([{"id": "4", "isrunning": "1", "delayTime": "3661"},
                                          {"id": "2", "isrunning": "0", "delayTime": 59}])"));
    DaDeviceTimerDataRetrieverImpl timer;
    TimerList list;
    list.timers.push_back(new TimerData());
    EXPECT_TRUE(timer.getTimerList(&list.timers));
    ASSERT_EQ(list.timers.size(), 3u);
    EXPECT_EQ(list.timers[1]->getId(), "4");
    EXPECT_EQ(list.timers[1]->getIsRunning(), "True");
    EXPECT_EQ(list.timers[1]->getTimerTime(), "01:01:01");
    EXPECT_EQ(list.timers[2]->getId(), "2");
    EXPECT_EQ(list.timers[2]->getIsRunning(), "False");
    EXPECT_EQ(list.timers[2]->getTimerTime(), "00:00:59");
    EXPECT_TRUE(marltest::logged("retv[1]"));
}

TEST(ApplianceTimer, WholeDaysOfADelayAreDropped)
{
    TestDevice device(table("Timer", R"([{"id": "1", "delayTime": "90000"}, {"id": "2", "delayTime": 86399}])"));
    TimerList list;
    DaDeviceTimerDataRetrieverImpl().getTimerList(&list.timers);
    ASSERT_EQ(list.timers.size(), 2u);
    EXPECT_EQ(list.timers[0]->getTimerTime(), "01:00:00");
    EXPECT_EQ(list.timers[1]->getTimerTime(), "23:59:59");
}

TEST(ApplianceTimer, ABadDelayReadsAsNoTimeAndANegativeOneKeepsItsSign)
{
    TestDevice device(table("Timer", R"([{"id": "1", "delayTime": "abc"}, {"id": "2"},
                                          {"id": "3", "delayTime": "-3661"}, {"id": "4", "delayTime": -5},
                                          {"id": "5", "delayTime": 99999999999}, {"id": "6", "delayTime": "90s"}])"));
    TimerList list;
    EXPECT_TRUE(DaDeviceTimerDataRetrieverImpl().getTimerList(&list.timers));
    ASSERT_EQ(list.timers.size(), 6u);
    EXPECT_EQ(list.timers[0]->getTimerTime(), "00:00:00");
    EXPECT_EQ(list.timers[1]->getTimerTime(), "00:00:00");
    // Negative delays keep the plain arithmetic of the clock format.
    EXPECT_EQ(list.timers[2]->getTimerTime(), "-1:-1:-1");
    EXPECT_EQ(list.timers[3]->getTimerTime(), "00:00:-5");
    EXPECT_EQ(list.timers[4]->getTimerTime(), "00:00:00");
    EXPECT_EQ(list.timers[5]->getTimerTime(), "00:01:30");
    EXPECT_TRUE(marltest::logged("not a number[abc], taken as 0"));
    EXPECT_TRUE(marltest::logged("out of range[99999999999], taken as 0"));
}

TEST(ApplianceTimer, ANullListIsRefused)
{
    TestDevice device(table("Timer", timerRows(1)));
    EXPECT_FALSE(DaDeviceTimerDataRetrieverImpl().getTimerList(nullptr));
    EXPECT_TRUE(marltest::logged("list is NULL"));
}

TEST(ApplianceTimer, CreatableIdIsTheSmallestFreeOne)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"([{"id": "1"}, {"id": "2"}, {"id": "3"}])", "4"},
        {R"([{"id": "1"}, {"id": "3"}])", "2"},
        {"[]", "1"},
        {R"([{"id": "3"}, {"id": "2"}])", "1"},
        {R"([{"id": 1}, {"id": 2}])", "3"},
    };
    for (const auto& c : cases) {
        TestDevice device(table("Timer", c.first));
        EXPECT_EQ(DaDeviceTimerDataRetrieverImpl().getCreatableTimerId(), c.second) << c.first;
    }
}

TEST(ApplianceTimer, CreatableIdPassesAThousandWhenAllAreTaken)
{
    TestDevice device(table("Timer", timerRows(1000)));
    EXPECT_EQ(DaDeviceTimerDataRetrieverImpl().getCreatableTimerId(), "1001");
}

TEST(ApplianceTimer, CreatableIdIgnoresIdsOutOfRangeAndText)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"([{"id": "1"}, {"id": "5000"}, {"id": "-3"}])", "2"},
        {R"([{"id": "abc"}, {"id": ""}, {"id": "1"}])", "2"},
        {R"([{"id": "99999999999"}, {"id": "1"}])", "2"},
        {R"([{"id": "0"}, {"id": "-1"}])", "1"},
        {R"([{"isrunning": "1"}])", "1"},
    };
    for (const auto& c : cases) {
        TestDevice device(table("Timer", c.first));
        EXPECT_EQ(DaDeviceTimerDataRetrieverImpl().getCreatableTimerId(), c.second) << c.first;
    }
}

TEST(ApplianceTimer, WithTheStoreDownThereAreNoTimers)
{
    TestDevice device(R"({"errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"},
                          "datastore": {"Timer": [{"id": "1", "isrunning": "1", "isringing": "0"}]}})");
    DaDeviceTimerDataRetrieverImpl timer;
    TimerList list;
    EXPECT_EQ(timer.getTimerStatus(), 1);
    EXPECT_FALSE(timer.getTimerList(&list.timers));
    EXPECT_TRUE(list.timers.empty());
    EXPECT_EQ(timer.getCurrentTimerCount(), 0);
    EXPECT_EQ(timer.getRunningTimerCount(), 0);
    EXPECT_EQ(timer.getCreatableTimerId(), "1");
    device.apply(kNoErrors);
    EXPECT_EQ(timer.getRunningTimerCount(), 1);
}

// --- the appliance set and the manager -------------------------------------------

TEST(ApplianceSet, FacetsAreHeldInSlotOrder)
{
    TestDevice device;
    DaDeviceDataRetrieverImpl set;
    std::less<const void*> before;
    EXPECT_TRUE(before(set.getDeviceMorningBriefDataRetriever(), set.getDeviceMusicDataRetriever()));
    EXPECT_TRUE(before(set.getDeviceMusicDataRetriever(), set.getDeviceShoppingListDataRetriever()));
    EXPECT_TRUE(before(set.getDeviceShoppingListDataRetriever(), set.getDeviceStatusDataRetriever()));
    EXPECT_TRUE(before(set.getDeviceStatusDataRetriever(), set.getDeviceTimerDataRetriever()));
    EXPECT_NE(dynamic_cast<DaDeviceMusicDataRetrieverImpl*>(set.getDeviceMusicDataRetriever()), nullptr);
    EXPECT_NE(dynamic_cast<DaDeviceTimerDataRetrieverImpl*>(set.getDeviceTimerDataRetriever()), nullptr);
}

TEST(ApplianceSet, MusicAndTimerConnectToTheStoreWhenTheSetIsBuilt)
{
    TestDevice device(R"({"errors": {"odb_manager_create": "ODB_ERROR_IO"}})");
    { DaDeviceDataRetrieverImpl set; }
    EXPECT_EQ(countLogged("odb_manager_create failed"), 2u);
    EXPECT_EQ(countLogged("odb_manager_destroy failed"), 2u);
}

TEST(ApplianceSet, StatusSwitchesOnTheCustomizationsButNotTheChineseProvider)
{
    TestDevice device;
    DaDeviceDataRetrieverImpl set;
    IDeviceStatusDataRetrieve* status = set.getDeviceStatusDataRetriever();
    EXPECT_FALSE(status->useChineseContentsProvider());
    EXPECT_TRUE(status->useCustomizedRecognitionMode());
    EXPECT_TRUE(status->useCustomizedNluParams());
    EXPECT_TRUE(status->useCustomizedDriverResponse());
}

TEST(ApplianceSet, ShoppingListAndMorningBriefIgnoreTheirTables)
{
    TestDevice device(R"({"datastore": {"ShoppingList": [{"name": "milk"}, {"name": "eggs"}],
                                        "MorningBrief": [{"isMorningBriefPlaying": "1"}]}})");
    DaDeviceDataRetrieverImpl set;
    EXPECT_EQ(set.getDeviceShoppingListDataRetriever()->currentShoppingListSize(), 0);
    EXPECT_TRUE(marltest::logged("retv[0]"));
    EXPECT_FALSE(set.getDeviceMorningBriefDataRetriever()->appInstalled());
    EXPECT_FALSE(set.getDeviceMorningBriefDataRetriever()->appRunning());
}

namespace {

int gDeletedSets = 0;

class CountedSet : public IDeviceDataRetrieve {
public:
    ~CountedSet() override { ++gDeletedSets; }
    IDeviceMusicDataRetrieve* getDeviceMusicDataRetriever() override { return &mMusic; }

private:
    IDeviceMusicDataRetrieve mMusic;
};

}  // namespace

TEST(DeviceDataManager, TheApplianceSetAnswersEveryFacet)
{
    TestDevice device;
    DeviceDataRetrieveManager manager;
    IDeviceDataRetrieve* appliance = manager.getUserDeviceDataRetriever();
    ASSERT_NE(dynamic_cast<DaDeviceDataRetrieverImpl*>(appliance), nullptr);
    EXPECT_EQ(manager.getMorningBriefRetriever(), appliance->getDeviceMorningBriefDataRetriever());
    EXPECT_EQ(manager.getMusicRetriever(), appliance->getDeviceMusicDataRetriever());
    EXPECT_EQ(manager.getShoppingListRetriever(), appliance->getDeviceShoppingListDataRetriever());
    EXPECT_EQ(manager.getStatusRetriever(), appliance->getDeviceStatusDataRetriever());
    EXPECT_EQ(manager.getTimerRetriever(), appliance->getDeviceTimerDataRetriever());
    EXPECT_EQ(manager.getTimerRetriever()->getTimerAppName(), "org.tizen.fridge-timer");
}

TEST(DeviceDataManager, TheFallbackSetComesUpAtTheFirstGetterEvenWhenTheApplianceAnswers)
{
    TestDevice device;
    DeviceDataRetrieveManager manager;
    manager.getMusicRetriever();
    EXPECT_TRUE(marltest::logged("userMusicRetriever[0x"));
    EXPECT_TRUE(marltest::logged("internalMusicRetriever[0x"));
    EXPECT_TRUE(marltest::logged("retMusicRetriever[0x"));
    EXPECT_FALSE(marltest::logged("internalMusicRetriever[(nil)]"));
}

TEST(DeviceDataManager, ANullSetKeepsTheApplianceSetInUse)
{
    TestDevice device;
    DeviceDataRetrieveManager manager;
    IDeviceDataRetrieve* appliance = manager.getUserDeviceDataRetriever();
    manager.setUserDeviceDataRetriever(nullptr);
    EXPECT_TRUE(marltest::logged("parameter is empty"));
    EXPECT_EQ(manager.getUserDeviceDataRetriever(), appliance);
    EXPECT_EQ(manager.getTimerRetriever(), appliance->getDeviceTimerDataRetriever());
}

TEST(DeviceDataManager, AReplacedSetIsDeletedOnceAndTheNewOneWithTheManager)
{
    TestDevice device;
    gDeletedSets = 0;
    {
        DeviceDataRetrieveManager manager;
        manager.setUserDeviceDataRetriever(new CountedSet());
        EXPECT_EQ(gDeletedSets, 0);
        manager.setUserDeviceDataRetriever(new CountedSet());
        EXPECT_EQ(gDeletedSets, 1);
    }
    EXPECT_EQ(gDeletedSets, 2);
}

TEST(DeviceDataManager, ASetWithoutATimerFacetGetsTheFallbackTimerAlone)
{
    TestDevice device;
    DeviceDataRetrieveManager manager;
    CountedSet* set = new CountedSet();
    manager.setUserDeviceDataRetriever(set);
    EXPECT_EQ(manager.getMusicRetriever(), set->getDeviceMusicDataRetriever());
    IDeviceTimerDataRetrieve* timer = manager.getTimerRetriever();
    EXPECT_NE(dynamic_cast<DeviceTimerDataRetrieverImpl*>(timer), nullptr);
    EXPECT_EQ(timer->getTimerTime(), "00:00:00");
    EXPECT_EQ(timer->getCurrentTimerId(), "0");
    EXPECT_EQ(timer->getCreatableTimerId(), "0");
    EXPECT_NE(dynamic_cast<DeviceStatusDataRetrieverImpl*>(manager.getStatusRetriever()), nullptr);
}

// --- the media volume from the daemon ------------------------------------------

class MediaVolume : public EngineTest {
protected:
    IDeviceMusicDataRetrieve* music() { return wrapper()->getDeviceDataRetrieveManager()->getMusicRetriever(); }
};

TEST_F(MediaVolume, TheMusicAppIsMutedUntilAVolumeOtherThanZeroArrives)
{
    EXPECT_TRUE(music()->getCurrentMusicAppMute());
    EXPECT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), 0);
    EXPECT_EQ(MarlEngine_set_private_data("MediaVolume", "7"), 0);
    EXPECT_FALSE(music()->getCurrentMusicAppMute());
    EXPECT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), 7);
    EXPECT_EQ(MarlEngine_set_private_data("MediaVolume", "0"), 0);
    EXPECT_TRUE(music()->getCurrentMusicAppMute());
}

TEST_F(MediaVolume, TextThatIsNoNumberSetsZero)
{
    ASSERT_EQ(MarlEngine_set_private_data("MediaVolume", "7"), 0);
    ASSERT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), 7);
    EXPECT_EQ(MarlEngine_set_private_data("MediaVolume", "abc"), 0);
    EXPECT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), 0);
    EXPECT_TRUE(music()->getCurrentMusicAppMute());
}

TEST_F(MediaVolume, OtherKeysAndANullValueLeaveTheLevel)
{
    ASSERT_EQ(MarlEngine_set_private_data("MediaVolume", "7"), 0);
    EXPECT_EQ(MarlEngine_set_private_data("MediaVolume", nullptr), 0);
    EXPECT_EQ(MarlEngine_set_private_data("mediavolume", "3"), 0);
    EXPECT_EQ(MarlEngine_set_private_data(nullptr, "3"), 0);
    EXPECT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), 7);
}

TEST_F(MediaVolume, AnotherMusicRetrieverIsLeftAlone)
{
    CountedSet* set = new CountedSet();
    wrapper()->getDeviceDataRetrieveManager()->setUserDeviceDataRetriever(set);
    EXPECT_EQ(MarlEngine_set_private_data("MediaVolume", "7"), 0);
    EXPECT_EQ(music(), set->getDeviceMusicDataRetriever());
    EXPECT_EQ(music()->getCurrentMusicPlayerVolumeLevel(), 0);
}

namespace {

// Whether the platform log holds a line of `file`'s `function` with `message`.
bool loggedFrom(const std::string& file, const std::string& function, const std::string& message)
{
    const std::string log = marltest::platformLog();
    const std::string prefix = file + ": " + function + "(";
    for (size_t at = log.find(prefix); at != std::string::npos; at = log.find(prefix, at + 1)) {
        const size_t close = log.find(") > ", at + prefix.size());
        const size_t end = log.find('\n', at);
        if (close == std::string::npos || close > end)
            continue;
        const std::string line = log.substr(at + prefix.size(), close - at - prefix.size());
        if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos &&
            log.compare(close + 4, message.size(), message) == 0)
            return true;
    }
    return false;
}

}  // namespace

TEST(DeviceDataManager, TheChoiceIsLoggedUnderTheGetterThatChooses)
{
    TestDevice device;
    DeviceDataRetrieveManager manager;
    manager.getMusicRetriever();
    manager.getTimerRetriever();
    EXPECT_TRUE(loggedFrom("DeviceDataRetrieveManager.cpp", "getMusicRetriever", "userMusicRetriever[0x"));
    EXPECT_TRUE(loggedFrom("DeviceDataRetrieveManager.cpp", "getMusicRetriever", "internalMusicRetriever[0x"));
    EXPECT_TRUE(loggedFrom("DeviceDataRetrieveManager.cpp", "getMusicRetriever", "retMusicRetriever[0x"));
    EXPECT_TRUE(loggedFrom("DeviceDataRetrieveManager.cpp", "getTimerRetriever", "retTimerRetriever[0x"));
    EXPECT_FALSE(marltest::logged("RetrieverChoice.h"));
}

TEST(ApplianceMusic, AnswersAreLoggedUnderTheOperationThatAnswers)
{
    TestDevice device(table("Music", R"([{"appName": "Spotify", "musicPlaying": "1", "isLoggedIn": "1"}])"));
    DaDeviceMusicDataRetrieverImpl music;
    EXPECT_EQ(music.getCurrentMusicPlayerName(), "Spotify");
    EXPECT_TRUE(music.support());
    EXPECT_TRUE(loggedFrom("DaDeviceMusicDataRetrieverImpl.cpp", "getCurrentMusicPlayerName", "musicAppName[Spotify]"));
    EXPECT_TRUE(loggedFrom("DaDeviceMusicDataRetrieverImpl.cpp", "support", "retv[1]"));
    EXPECT_FALSE(marltest::logged("LoggedValue.h"));
}

TEST(FallbackMusic, AnswersAreLoggedUnderTheOperationThatAnswers)
{
    TestDevice device;
    DeviceMusicDataRetrieverImpl music;
    EXPECT_EQ(music.getCurrentMusicPlayerName(), "None");
    EXPECT_TRUE(music.support());
    EXPECT_TRUE(loggedFrom("DeviceMusicDataRetrieverImpl.cpp", "getCurrentMusicPlayerName", "musicAppName[None]"));
    EXPECT_TRUE(loggedFrom("DeviceMusicDataRetrieverImpl.cpp", "support", "retv[1]"));
    EXPECT_FALSE(marltest::logged("LoggedValue.h"));
}
