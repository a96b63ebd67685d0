#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_MUSIC_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_MUSIC_DATA_H

#include <string>

// What the speech library asks the device about the music player. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes first.
class IEngineRetrieveDeviceMusicData {
public:
    virtual ~IEngineRetrieveDeviceMusicData() {}
    virtual std::string getTuneCoveAvailableStatus() { return "False"; }
    virtual std::string getMusicMoodUri(std::string /*mood*/) { return ""; }
    virtual std::string getMusicPlayStatus() { return "False"; }
    virtual std::string getMoodGridCatalogedStatus() { return "False"; }
    virtual std::string isGenreSupported() { return "False"; }
    virtual std::string isRepeatSupported() { return "False"; }
    virtual std::string isMusicSupported() { return "False"; }
    virtual std::string isMusicPlaying() { return "False"; }
    virtual std::string getSongName() { return ""; }
    virtual std::string getGenreName() { return ""; }
    virtual std::string getAlbumName() { return ""; }
    virtual std::string getArtistName() { return ""; }
    virtual std::string getCurrentMusicAppName() { return "None"; }
    virtual bool getCurrentSongStarMarked() { return false; }
    virtual bool getCurrentRadioStarMarked() { return false; }
    virtual bool isSleepMode() { return false; }
    virtual bool isMute() { return false; }
    virtual bool getCurMusicAppLoggedIn() { return false; }
    virtual int getCurMusicAppVolume() { return 5; }
    virtual int getCurMusicAppMaxVolume() { return 15; }
};

#endif
