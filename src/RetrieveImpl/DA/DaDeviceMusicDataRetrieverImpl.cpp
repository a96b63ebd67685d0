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
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportGenre()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportMood()
{
    return logged(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportTuneCove()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlayAll()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlayArtist()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlayFavoritesOnly()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlaylist()
{
    return logged(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlaylistAddSong()
{
    return logged(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportPlaylistEdit()
{
    return logged(false);
}

bool DaDeviceMusicDataRetrieverImpl::supportRepeat()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::supportShuffle()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::appInstalled()
{
    return logged(true);
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
    return logged(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentSongFavoriteMark()
{
    DataMap rows = getDataMap();
    bool retv = false;
    for (auto& row : rows) {
        if (row.second["musicPlaying"] == "1" && row.second["currentSongRating"] == "1")
            retv = true;
    }
    return logged(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentRadioFavoriteMark()
{
    DataMap rows = getDataMap();
    bool retv = false;
    for (auto& row : rows) {
        if (row.second["appName"] == "TuneIn" && row.second["isFollowing"] == "1")
            retv = true;
    }
    return logged(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getMoodGridCataloged()
{
    return logged(true);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentMusicAppSlept()
{
    DataMap rows = getDataMap();
    bool retv = false;
    for (auto& row : rows) {
        if (row.second["musicPlaying"] == "1" && row.second["sleepMode"] == "1")
            retv = true;
    }
    return logged(retv);
}

bool DaDeviceMusicDataRetrieverImpl::getCurrentMusicAppMute()
{
    return logged(mVolumeLevel == 0);
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
    return loggedName("musicAppName", musicAppName);
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongAlbumName()
{
    return loggedName("albumName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongArtistName()
{
    return loggedName("artistName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongGenreName()
{
    return loggedName("genreName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentSongName()
{
    return loggedName("curSongName", "");
}

std::string DaDeviceMusicDataRetrieverImpl::getCurrentStationName()
{
    DataMap rows = getDataMap();
    std::string currentStationName;
    for (auto& row : rows) {
        if (row.second["appName"] == "Pandora" && !row.second["stationName"].empty())
            currentStationName = row.second["stationName"];
    }
    return loggedName("currentStationName", currentStationName);
}

std::string DaDeviceMusicDataRetrieverImpl::getLastStationName()
{
    DataMap rows = getDataMap();
    std::string lastStationName = "Not Found";
    for (auto& row : rows) {
        if (row.second["appName"] == "Pandora" && !row.second["stationName"].empty())
            lastStationName = "Found";
    }
    return loggedName("lastStationName", lastStationName);
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
