#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"

#include "utils/LoggedValue.h"
#include "utils/MarlLog.h"

namespace {

const int MAX_VOLUME_LEVEL = 15;
const int STATUS_PLAYING = 10;
const int STATUS_STOPPED = 12;

}  // namespace

DaDeviceMusicDataRetrieverImpl::DaDeviceMusicDataRetrieverImpl()
    : DADeviceDataAutoRefresher("Music"), mVolumeLevel(0)
{
    LOGD("");
}

DaDeviceMusicDataRetrieverImpl::~DaDeviceMusicDataRetrieverImpl()
{
    LOGD("");
}

void DaDeviceMusicDataRetrieverImpl::setVolumeLevel(int volumeLevel)
{
    LOGD("volumeLevel[%d]", volumeLevel);
    mVolumeLevel = volumeLevel;
}

bool DaDeviceMusicDataRetrieverImpl::support()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportGenre()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportMood()
{
    return LOGGED(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportTuneCove()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlayAll()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlayArtist()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlayFavoritesOnly()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlaylist()
{
    return LOGGED(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlaylistAddSong()
{
    return LOGGED(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlaylistEdit()
{
    return LOGGED(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportRepeat()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportShuffle()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::appInstalled()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::currentMusicAppLoggedIn()
{
    DataMap rows = getDataMap();
    bool retv = false;
    for (auto& row : rows) {
        if (row.second["appName"] != "Pandora")
            continue;
        if (row.second["isLoggedIn"] == "1")
            retv = true;
        else if (row.second["isLoggedIn"] == "0")
            retv = false;
    }
    return LOGGED(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentSongFavoriteMark()
{
    DataMap rows = getDataMap();
    bool retv = false;
    for (auto& row : rows) {
        if (row.second["musicPlaying"] == "1" && row.second["currentSongRating"] == "1")
            retv = true;
    }
    return LOGGED(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentRadioFavoriteMark()
{
    DataMap rows = getDataMap();
    bool retv = false;
    for (auto& row : rows) {
        if (row.second["appName"] == "TuneIn" && row.second["isFollowing"] == "1")
            retv = true;
    }
    return LOGGED(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getMoodGridCataloged()
{
    return LOGGED(true);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentMusicAppSlept()
{
    DataMap rows = getDataMap();
    bool retv = false;
    for (auto& row : rows) {
        if (row.second["musicPlaying"] == "1" && row.second["sleepMode"] == "1")
            retv = true;
    }
    return LOGGED(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentMusicAppMute()
{
    return LOGGED(mVolumeLevel == 0);
}

int DaDeviceMusicDataRetrieverImpl::getCurrentMusicPlayerVolumeMaxLevel()
{
    LOGD("maxVolumeLevel[%d]", MAX_VOLUME_LEVEL);
    return MAX_VOLUME_LEVEL;
}

int DaDeviceMusicDataRetrieverImpl::getCurrentMusicPlayerVolumeLevel()
{
    LOGD("volumeLevel[%d]", mVolumeLevel);
    return mVolumeLevel;
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentMusicPlayerName()
{
    DataMap rows = getDataMap();
    std::string musicAppName = "None";
    for (auto& row : rows) {
        if (row.second["musicPlaying"] == "1")
            musicAppName = row.second["appName"];
    }
    return LOGGED_NAME("musicAppName", musicAppName);
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongAlbumName()
{
    return LOGGED_NAME("albumName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongArtistName()
{
    return LOGGED_NAME("artistName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongGenreName()
{
    return LOGGED_NAME("genreName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongName()
{
    return LOGGED_NAME("curSongName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentStationName()
{
    DataMap rows = getDataMap();
    std::string currentStationName;
    for (auto& row : rows) {
        if (row.second["appName"] == "Pandora" && !row.second["stationName"].empty())
            currentStationName = row.second["stationName"];
    }
    return LOGGED_NAME("currentStationName", currentStationName);
}

std::string DaDeviceMusicDataRetrieverImpl::getLastStationName()
{
    DataMap rows = getDataMap();
    std::string lastStationName = "Not Found";
    for (auto& row : rows) {
        if (row.second["appName"] == "Pandora" && !row.second["stationName"].empty())
            lastStationName = "Found";
    }
    return LOGGED_NAME("lastStationName", lastStationName);
}

int DaDeviceMusicDataRetrieverImpl::getCurrentMusicPlayerStatus()
{
    DataMap rows = getDataMap();
    int status = STATUS_STOPPED;
    for (auto& row : rows) {
        if (row.second["musicPlaying"] == "1")
            status = STATUS_PLAYING;
    }
    LOGD("status[%d]", status);
    return status;
}
