#include "RetrieveImpl/Common/DeviceMusicDataRetrieverImpl.h"

#include "utils/LoggedValue.h"
#include "utils/MarlLog.h"

bool DeviceMusicDataRetrieverImpl::support()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::supportGenre()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::supportMood()
{
    return LOGGED(false);
}

bool DeviceMusicDataRetrieverImpl::supportTuneCove()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlayAll()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlayArtist()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlayFavoritesOnly()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlaylist()
{
    return LOGGED(false);
}

bool DeviceMusicDataRetrieverImpl::supportPlaylistAddSong()
{
    return LOGGED(false);
}

bool DeviceMusicDataRetrieverImpl::supportPlaylistEdit()
{
    return LOGGED(false);
}

bool DeviceMusicDataRetrieverImpl::supportRepeat()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::supportShuffle()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::appInstalled()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::currentMusicAppLoggedIn()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::getCurrentSongFavoriteMark()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::getMoodGridCataloged()
{
    return LOGGED(true);
}

bool DeviceMusicDataRetrieverImpl::getCurrentMusicAppSlept()
{
    return LOGGED(false);
}

bool DeviceMusicDataRetrieverImpl::getCurrentMusicAppMute()
{
    return LOGGED(false);
}

int DeviceMusicDataRetrieverImpl::getCurrentMusicPlayerVolumeMaxLevel()
{
    LOGD("maxVolumeLevel[%d]", 15);
    return 15;
}

int DeviceMusicDataRetrieverImpl::getCurrentMusicPlayerVolumeLevel()
{
    LOGD("volumeLevel[%d]", 5);
    return 5;
}

std::string DeviceMusicDataRetrieverImpl::getCurrentMusicPlayerName()
{
    return LOGGED_NAME("musicAppName", "None");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongAlbumName()
{
    return LOGGED_NAME("albumName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongArtistName()
{
    return LOGGED_NAME("artistName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongGenreName()
{
    return LOGGED_NAME("genreName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongName()
{
    return LOGGED_NAME("curSongName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentStationName()
{
    return LOGGED_NAME("currentStationName", "");
}

std::string DeviceMusicDataRetrieverImpl::getLastStationName()
{
    return LOGGED_NAME("lastStationName", "");
}

int DeviceMusicDataRetrieverImpl::getCurrentMusicPlayerStatus()
{
    LOGD("status[%d]", 0);
    return 0;
}
