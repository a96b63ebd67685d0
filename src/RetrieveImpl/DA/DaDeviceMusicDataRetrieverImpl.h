#ifndef DA_DEVICE_MUSIC_DATA_RETRIEVER_IMPL_H
#define DA_DEVICE_MUSIC_DATA_RETRIEVER_IMPL_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"

// The appliance's music: fixed capabilities, the media volume the daemon
// reports, and the music apps' state as published in the "Music" table, one
// row per app.
class DaDeviceMusicDataRetrieverImpl : public IDeviceMusicDataRetrieve, public DADeviceDataAutoRefresher {
public:
    DaDeviceMusicDataRetrieverImpl();
    ~DaDeviceMusicDataRetrieverImpl() override;

    // The media volume level sent by the daemon; 0 reads as muted.
    void setVolumeLevel(int volumeLevel);

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
    bool getCurrentRadioFavoriteMark() override;
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

private:
    int mVolumeLevel;
};

#endif
