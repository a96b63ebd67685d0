#ifndef I_DEVICE_MUSIC_DATA_RETRIEVE_H
#define I_DEVICE_MUSIC_DATA_RETRIEVE_H

#include <string>

// What the device's music player can do and what it plays. The interface's
// answers say that nothing is there.
class IDeviceMusicDataRetrieve {
public:
    virtual ~IDeviceMusicDataRetrieve() {}
    virtual bool support() { return false; }
    virtual bool supportGenre() { return false; }
    virtual bool supportMood() { return false; }
    virtual bool supportTuneCove() { return false; }
    virtual bool supportPlayAll() { return false; }
    virtual bool supportPlayArtist() { return false; }
    virtual bool supportPlayFavoritesOnly() { return false; }
    virtual bool supportPlaylist() { return false; }
    virtual bool supportPlaylistAddSong() { return false; }
    virtual bool supportPlaylistEdit() { return false; }
    virtual bool supportRepeat() { return false; }
    virtual bool supportShuffle() { return false; }
    virtual bool appInstalled() { return false; }
    virtual bool currentMusicAppLoggedIn() { return false; }
    virtual bool getCurrentSongFavoriteMark() { return false; }
    virtual bool getCurrentRadioFavoriteMark() { return false; }
    virtual bool getMoodGridCataloged() { return false; }
    virtual bool getCurrentMusicAppSlept() { return false; }
    virtual bool getCurrentMusicAppMute() { return false; }
    virtual int getCurrentMusicPlayerVolumeMaxLevel() { return 15; }
    virtual int getCurrentMusicPlayerVolumeLevel() { return 0; }
    virtual std::string getCurrentMusicPlayerName() { return std::string(); }
    virtual std::string getCurrentSongAlbumName() { return std::string(); }
    virtual std::string getCurrentSongArtistName() { return std::string(); }
    virtual std::string getCurrentSongGenreName() { return std::string(); }
    virtual std::string getCurrentSongName() { return std::string(); }
    virtual std::string getCurrentStationName() { return std::string(); }
    virtual std::string getLastStationName() { return std::string(); }
    virtual int getCurrentMusicPlayerStatus() { return 0; }
};

#endif
