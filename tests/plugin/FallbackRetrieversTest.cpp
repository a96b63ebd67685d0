// The retriever interfaces' own answers and the built-in fallback sets, which
// answer whenever a set leaves a facet out: every operation, with the value it
// gives.
#include "PluginFixture.h"

#include "RetrieveImpl/Common/CustomizedDataRetrieverImpl.h"
#include "RetrieveImpl/Common/DeviceDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedDataRetrieve.h"
#include "RetrieveManager/ICustomizedDriverResponse.h"
#include "RetrieveManager/ICustomizedNluParams.h"
#include "RetrieveManager/ICustomizedRecognitionMode.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "RetrieveManager/IDeviceDataRetrieve.h"
#include "RetrieveManager/IDeviceMorningBriefDataRetrieve.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "RetrieveManager/IDeviceShoppingListDataRetrieve.h"
#include "RetrieveManager/IDeviceStatusDataRetrieve.h"
#include "RetrieveManager/IDeviceTimerDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <map>
#include <string>
#include <vector>

using marltest::EngineTest;

namespace {

// The music answers in the order of the interface: the twelve support
// switches, then the app and song state.
struct MusicAnswers {
    std::vector<bool> supports;
    bool appInstalled, loggedIn, songFavorite, radioFavorite, moodGrid, slept, mute;
    int maxVolume, volume;
    std::string player, album, artist, genre, song, station, lastStation;
    int status;
};

MusicAnswers answersOf(IDeviceMusicDataRetrieve& music)
{
    return MusicAnswers{
        {music.support(), music.supportGenre(), music.supportMood(), music.supportTuneCove(), music.supportPlayAll(),
         music.supportPlayArtist(), music.supportPlayFavoritesOnly(), music.supportPlaylist(),
         music.supportPlaylistAddSong(), music.supportPlaylistEdit(), music.supportRepeat(), music.supportShuffle()},
        music.appInstalled(),
        music.currentMusicAppLoggedIn(),
        music.getCurrentSongFavoriteMark(),
        music.getCurrentRadioFavoriteMark(),
        music.getMoodGridCataloged(),
        music.getCurrentMusicAppSlept(),
        music.getCurrentMusicAppMute(),
        music.getCurrentMusicPlayerVolumeMaxLevel(),
        music.getCurrentMusicPlayerVolumeLevel(),
        music.getCurrentMusicPlayerName(),
        music.getCurrentSongAlbumName(),
        music.getCurrentSongArtistName(),
        music.getCurrentSongGenreName(),
        music.getCurrentSongName(),
        music.getCurrentStationName(),
        music.getLastStationName(),
        music.getCurrentMusicPlayerStatus()};
}

// Every timer operation but the list, in the order of the interface.
std::vector<bool> timerSwitches(IDeviceTimerDataRetrieve& timer)
{
    return {timer.appInstalled(),  timer.support(),      timer.supportByAppControl(), timer.supportCancel(),
            timer.supportConfirm(), timer.supportCreate(), timer.supportOwnWidgetControl(), timer.supportReset(),
            timer.supportShow(),    timer.supportStart(),  timer.supportStop(),      timer.supportTask(),
            timer.supportMultipleControl()};
}

void expectTimerDefaults(IDeviceTimerDataRetrieve& timer)
{
    EXPECT_EQ(timerSwitches(timer), std::vector<bool>(13, false));
    EXPECT_EQ(timer.getTimerAppName(), "");
    EXPECT_EQ(timer.getTimerTime(), "00:00:00");
    EXPECT_EQ(timer.getTimerStatus(), 0);
    std::vector<TimerData*> list = {nullptr};
    EXPECT_FALSE(timer.getTimerList(&list));
    EXPECT_EQ(list.size(), 1u);  // untouched
    EXPECT_EQ(timer.getCurrentTimerCount(), 0);
    EXPECT_EQ(timer.getMaxTimerCount(), 0);
    EXPECT_EQ(timer.getRunningTimerCount(), 0);
    EXPECT_EQ(timer.getCreatableTimerId(), "0");
    EXPECT_EQ(timer.getCurrentTimerId(), "0");
}

}  // namespace

TEST(RetrieverInterfaces, TheMusicInterfaceAnswersThatNothingIsThere)
{
    IDeviceMusicDataRetrieve bare;
    const MusicAnswers a = answersOf(bare);
    EXPECT_EQ(a.supports, std::vector<bool>(12, false));
    EXPECT_FALSE(a.appInstalled || a.loggedIn || a.songFavorite || a.radioFavorite || a.moodGrid || a.slept || a.mute);
    EXPECT_EQ(a.maxVolume, 15);
    EXPECT_EQ(a.volume, 0);
    for (const std::string& text : {a.player, a.album, a.artist, a.genre, a.song, a.station, a.lastStation})
        EXPECT_EQ(text, "");
    EXPECT_EQ(a.status, 0);
}

TEST(RetrieverInterfaces, TheOtherDeviceInterfacesAnswerFalseZeroAndTheTimerDefaults)
{
    IDeviceTimerDataRetrieve timer;
    expectTimerDefaults(timer);
    IDeviceMorningBriefDataRetrieve brief;
    EXPECT_FALSE(brief.appInstalled());
    EXPECT_FALSE(brief.appRunning());
    IDeviceShoppingListDataRetrieve shopping;
    EXPECT_EQ(shopping.currentShoppingListSize(), 0);
    IDeviceStatusDataRetrieve status;
    EXPECT_FALSE(status.useChineseContentsProvider());
    EXPECT_FALSE(status.useCustomizedRecognitionMode());
    EXPECT_FALSE(status.useCustomizedNluParams());
    EXPECT_FALSE(status.useCustomizedDriverResponse());
    IDeviceDataRetrieve set;
    EXPECT_EQ(set.getDeviceMorningBriefDataRetriever(), nullptr);
    EXPECT_EQ(set.getDeviceMusicDataRetriever(), nullptr);
    EXPECT_EQ(set.getDeviceShoppingListDataRetriever(), nullptr);
    EXPECT_EQ(set.getDeviceStatusDataRetriever(), nullptr);
    EXPECT_EQ(set.getDeviceTimerDataRetriever(), nullptr);
}

TEST(RetrieverInterfaces, TheCustomizedInterfacesComposeNothing)
{
    ICustomizedDataRetrieve set;
    EXPECT_EQ(set.getDriverResponseRetriever(), nullptr);
    EXPECT_EQ(set.getNluParamsRetriever(), nullptr);
    EXPECT_EQ(set.getRecognitionModeRetriever(), nullptr);
    EXPECT_EQ(set.getServerDefineRetriever(), nullptr);
    ICustomizedDriverResponse driver;
    EXPECT_EQ(driver.getDriverResponse("{\"Server Reqeust\": {}}"), "");
    ICustomizedNluParams nlu;
    std::map<std::string, _JsonObject*> map;
    EXPECT_FALSE(nlu.getNluParams(&map));
    EXPECT_TRUE(map.empty());
    ICustomizedRecognitionMode mode;
    EXPECT_EQ(mode.getRecognitionMode(), nullptr);
    ICustomizedServerDefines defines;
    EXPECT_FALSE(defines.useServerTts());
    EXPECT_FALSE(defines.userPlayServerTts());
    EXPECT_EQ(defines.getServerTtsAudioPath(), "/opt/usr/home/owner/media/Sounds/ServerTTS.pcm");
    EXPECT_EQ(defines.getAsrRampcode(), "dash");
    EXPECT_EQ(defines.getNluRampcode(), "dash");
    EXPECT_EQ(defines.getServerTtsTeller(), 0);
    EXPECT_EQ(defines.getTargetServerIndex(), 0);
}

TEST(FallbackRetrievers, TheMusicFallbackHasALoggedInAppAtLevelFiveOfFifteenWithNothingNamed)
{
    marltest::TestDevice device;
    DeviceDataRetrieverImpl fallback;
    const MusicAnswers a = answersOf(*fallback.getDeviceMusicDataRetriever());
    // support, genre, mood, tune cove, play all, artist, favorites only,
    // playlist, add song, edit, repeat, shuffle
    EXPECT_EQ(a.supports,
              std::vector<bool>({true, true, false, true, true, true, true, false, false, false, true, true}));
    EXPECT_TRUE(a.appInstalled);
    EXPECT_TRUE(a.loggedIn);
    EXPECT_TRUE(a.songFavorite);
    EXPECT_FALSE(a.radioFavorite);
    EXPECT_TRUE(a.moodGrid);
    EXPECT_FALSE(a.slept);
    EXPECT_FALSE(a.mute);
    EXPECT_EQ(a.maxVolume, 15);
    EXPECT_EQ(a.volume, 5);
    EXPECT_EQ(a.player, "None");
    for (const std::string& text : {a.album, a.artist, a.genre, a.song, a.station, a.lastStation})
        EXPECT_EQ(text, "");
    EXPECT_EQ(a.status, 0);
    // Each answer is logged with its label.
    for (const char* line : {"retv[1]", "retv[0]", "maxVolumeLevel[15]", "volumeLevel[5]", "musicAppName[None]",
                             "albumName[]", "artistName[]", "genreName[]", "curSongName[]", "currentStationName[]",
                             "lastStationName[]", "status[0]"})
        EXPECT_TRUE(marltest::logged(line)) << line;
}

TEST(FallbackRetrievers, TheOtherDeviceFallbacksAnswerAsTheirInterfacesButForDriverResponses)
{
    marltest::TestDevice device;
    DeviceDataRetrieverImpl fallback;
    expectTimerDefaults(*fallback.getDeviceTimerDataRetriever());
    EXPECT_FALSE(fallback.getDeviceMorningBriefDataRetriever()->appInstalled());
    EXPECT_FALSE(fallback.getDeviceMorningBriefDataRetriever()->appRunning());
    EXPECT_EQ(fallback.getDeviceShoppingListDataRetriever()->currentShoppingListSize(), 0);
    EXPECT_TRUE(marltest::logged("retv[0]"));
    IDeviceStatusDataRetrieve* status = fallback.getDeviceStatusDataRetriever();
    EXPECT_FALSE(status->useChineseContentsProvider());
    EXPECT_FALSE(status->useCustomizedRecognitionMode());
    EXPECT_FALSE(status->useCustomizedNluParams());
    EXPECT_TRUE(status->useCustomizedDriverResponse());
}

TEST(FallbackRetrievers, TheCustomizedFallbackLogsWhatItIsAskedAndComposesNothing)
{
    marltest::TestDevice device;
    CustomizedDataRetrieverImpl fallback;
    EXPECT_EQ(fallback.getDriverResponseRetriever()->getDriverResponse("{\"x\": 1}"), "");
    EXPECT_TRUE(marltest::logged("driverRequest[{\"x\": 1}]"));
    EXPECT_FALSE(fallback.getNluParamsRetriever()->getNluParams(nullptr));
    EXPECT_TRUE(marltest::logged("list is NULL"));
    ICustomizedServerDefines* defines = fallback.getServerDefineRetriever();
    EXPECT_TRUE(defines->useServerTts());
    EXPECT_FALSE(defines->userPlayServerTts());
    EXPECT_EQ(defines->getServerTtsAudioPath(), "/opt/usr/home/owner/media/Sounds/ServerTTS.pcm");
    EXPECT_EQ(defines->getAsrRampcode(), "dash");
    EXPECT_EQ(defines->getNluRampcode(), "dash");
    EXPECT_EQ(defines->getServerTtsTeller(), 1);
    EXPECT_EQ(defines->getTargetServerIndex(), 50);
}

class FallbackSets : public EngineTest {};

TEST_F(FallbackSets, ASetThatLeavesEveryFacetOutIsAnsweredByTheFallbackFacets)
{
    DeviceDataRetrieveManager* manager = wrapper()->getDeviceDataRetrieveManager();
    manager->setUserDeviceDataRetriever(new IDeviceDataRetrieve());
    IDeviceDataRetrieve* fallback = manager->getInternalDeviceDataRetriever();
    EXPECT_EQ(manager->getMorningBriefRetriever(), fallback->getDeviceMorningBriefDataRetriever());
    EXPECT_EQ(manager->getMusicRetriever(), fallback->getDeviceMusicDataRetriever());
    EXPECT_EQ(manager->getShoppingListRetriever(), fallback->getDeviceShoppingListDataRetriever());
    EXPECT_EQ(manager->getStatusRetriever(), fallback->getDeviceStatusDataRetriever());
    EXPECT_EQ(manager->getTimerRetriever(), fallback->getDeviceTimerDataRetriever());
    EXPECT_EQ(manager->getMusicRetriever()->getCurrentMusicPlayerName(), "None");
}
