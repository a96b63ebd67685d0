#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplMusic.h"

#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

namespace {

// The player status that means "playing".
const int MUSIC_STATUS_PLAYING = 10;

}  // namespace

RetrieveDeviceDataEngineImplMusic::RetrieveDeviceDataEngineImplMusic()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplMusic::~RetrieveDeviceDataEngineImplMusic()
{
    LOGD("");
}

IDeviceMusicDataRetrieve* RetrieveDeviceDataEngineImplMusic::_getRetriever()
{
    return getWrapper()->getDeviceDataRetrieveManager()->getMusicRetriever();
}

std::string RetrieveDeviceDataEngineImplMusic::getTuneCoveAvailableStatus()
{
    std::string result = "False";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->supportTuneCove() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::getMoodGridCatalogedStatus()
{
    std::string result = "False";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getMoodGridCataloged() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::isGenreSupported()
{
    std::string result = "False";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->supportGenre() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::isRepeatSupported()
{
    std::string result = "False";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->supportRepeat() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::isMusicSupported()
{
    std::string result = "False";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->support() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::isMusicPlaying()
{
    std::string result = "False";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentMusicPlayerStatus() == MUSIC_STATUS_PLAYING ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::getSongName()
{
    std::string result = "";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentSongName();
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::getGenreName()
{
    std::string result = "";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentSongGenreName();
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::getAlbumName()
{
    std::string result = "";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentSongAlbumName();
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::getArtistName()
{
    std::string result = "";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentSongArtistName();
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplMusic::getCurrentMusicAppName()
{
    std::string result = "";
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentMusicPlayerName();
    LOGD("retv[%s]", result.c_str());
    return result;
}

bool RetrieveDeviceDataEngineImplMusic::getCurrentSongStarMarked()
{
    bool result = false;
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentSongFavoriteMark();
    LOGD("retv[%d]", result);
    return result;
}

bool RetrieveDeviceDataEngineImplMusic::getCurrentRadioStarMarked()
{
    bool result = false;
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentRadioFavoriteMark();
    LOGD("retv[%d]", result);
    return result;
}

bool RetrieveDeviceDataEngineImplMusic::isSleepMode()
{
    bool result = false;
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentMusicAppSlept();
    LOGD("retv[%d]", result);
    return result;
}

bool RetrieveDeviceDataEngineImplMusic::isMute()
{
    bool result = false;
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentMusicAppMute();
    LOGD("retv[%d]", result);
    return result;
}

bool RetrieveDeviceDataEngineImplMusic::getCurMusicAppLoggedIn()
{
    bool result = false;
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->currentMusicAppLoggedIn();
    LOGD("retv[%d]", result);
    return result;
}

int RetrieveDeviceDataEngineImplMusic::getCurMusicAppVolume()
{
    int result = 0;
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentMusicPlayerVolumeLevel();
    LOGD("retv[%d]", result);
    return result;
}

int RetrieveDeviceDataEngineImplMusic::getCurMusicAppMaxVolume()
{
    int result = 0;
    IDeviceMusicDataRetrieve* retriever = _getRetriever();
    if (retriever)
        result = retriever->getCurrentMusicPlayerVolumeMaxLevel();
    LOGD("retv[%d]", result);
    return result;
}
