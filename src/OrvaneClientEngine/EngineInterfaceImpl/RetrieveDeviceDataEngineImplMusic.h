#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_MUSIC_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_MUSIC_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceMusicData.h>

#include <string>

class IDeviceMusicDataRetrieve;

// The music facet: what the music player can do and what it plays, asked of
// the current music retriever on every call. getMusicMoodUri and
// getMusicPlayStatus keep the interface's answers.
class RetrieveDeviceDataEngineImplMusic : public IEngineRetrieveDeviceMusicData, public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplMusic();
    ~RetrieveDeviceDataEngineImplMusic() override;

    std::string getTuneCoveAvailableStatus() override;
    std::string getMoodGridCatalogedStatus() override;
    std::string isGenreSupported() override;
    std::string isRepeatSupported() override;
    std::string isMusicSupported() override;
    std::string isMusicPlaying() override;
    std::string getSongName() override;
    std::string getGenreName() override;
    std::string getAlbumName() override;
    std::string getArtistName() override;
    std::string getCurrentMusicAppName() override;
    bool getCurrentSongStarMarked() override;
    bool getCurrentRadioStarMarked() override;
    bool isSleepMode() override;
    bool isMute() override;
    bool getCurMusicAppLoggedIn() override;
    int getCurMusicAppVolume() override;
    int getCurMusicAppMaxVolume() override;

private:
    IDeviceMusicDataRetrieve* _getRetriever();
};

#endif
