#include "RetrieveImpl/Common/DeviceMusicDataRetrieverImpl.h"

#include "utils/LoggedValue.h"
#include "utils/MarlLog.h"

bool DeviceMusicDataRetrieverImpl::support()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::supportGenre()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::supportMood()
{
    return logged(false);
}

bool DeviceMusicDataRetrieverImpl::supportTuneCove()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlayAll()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlayArtist()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlayFavoritesOnly()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::supportPlaylist()
{
    return logged(false);
}

bool DeviceMusicDataRetrieverImpl::supportPlaylistAddSong()
{
    return logged(false);
}

bool DeviceMusicDataRetrieverImpl::supportPlaylistEdit()
{
    return logged(false);
}

bool DeviceMusicDataRetrieverImpl::supportRepeat()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::supportShuffle()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::appInstalled()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::currentMusicAppLoggedIn()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::getCurrentSongFavoriteMark()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::getMoodGridCataloged()
{
    return logged(true);
}

bool DeviceMusicDataRetrieverImpl::getCurrentMusicAppSlept()
{
    return logged(false);
}

bool DeviceMusicDataRetrieverImpl::getCurrentMusicAppMute()
{
    return logged(false);
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
    return loggedName("musicAppName", "None");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongAlbumName()
{
    return loggedName("albumName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongArtistName()
{
    return loggedName("artistName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongGenreName()
{
    return loggedName("genreName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentSongName()
{
    return loggedName("curSongName", "");
}

std::string DeviceMusicDataRetrieverImpl::getCurrentStationName()
{
    return loggedName("currentStationName", "");
}

std::string DeviceMusicDataRetrieverImpl::getLastStationName()
{
    return loggedName("lastStationName", "");
}

int DeviceMusicDataRetrieverImpl::getCurrentMusicPlayerStatus()
{
    LOGD("status[%d]", 0);
    return 0;
}
