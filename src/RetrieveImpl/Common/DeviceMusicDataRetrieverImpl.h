#ifndef DEVICE_MUSIC_DATA_RETRIEVER_IMPL_H
#define DEVICE_MUSIC_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceMusicDataRetrieve.h"

// Fallback: a music app exists, is logged in and plays at level 5 of 15 with
// nothing named.
class DeviceMusicDataRetrieverImpl : public IDeviceMusicDataRetrieve {
public:
    bool support() override;
    bool supportGenre() override;
    bool supportMood() override;
    bool supportTuneCove() override;
    bool supportPlayAll() override;
    bool supportPlayArtist() override;
    bool supportPlayFavoritesOnly() override;
    bool supportPlaylist() override;
    bool supportPlaylistAddSong() override;
    bool supportPlaylistEdit() override;
    bool supportRepeat() override;
    bool supportShuffle() override;
    bool appInstalled() override;
    bool currentMusicAppLoggedIn() override;
    bool getCurrentSongFavoriteMark() override;
    bool getMoodGridCataloged() override;
    bool getCurrentMusicAppSlept() override;
    bool getCurrentMusicAppMute() override;
    int getCurrentMusicPlayerVolumeMaxLevel() override;
    int getCurrentMusicPlayerVolumeLevel() override;
    std::string getCurrentMusicPlayerName() override;
    std::string getCurrentSongAlbumName() override;
    std::string getCurrentSongArtistName() override;
    std::string getCurrentSongGenreName() override;
    std::string getCurrentSongName() override;
    std::string getCurrentStationName() override;
    std::string getLastStationName() override;
    int getCurrentMusicPlayerStatus() override;
};

#endif
