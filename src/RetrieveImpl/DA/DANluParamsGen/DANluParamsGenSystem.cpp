#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenSystem.h"

#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "RetrieveManager/IDeviceTimerDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

#include <aul_svc.h>
#include <stdio.h>
#include <vconf.h>

namespace {

const char* const TRUE_TEXT = "True";
const char* const FALSE_TEXT = "False";
const int MUSIC_PLAYING = 10;

const char* boolText(bool value)
{
    return value ? TRUE_TEXT : FALSE_TEXT;
}

// The music apps that can be in front, in the order they are asked.
const char* const MUSIC_APPS[][2] = {
    {"TuneIn", "nn7Wgp14c8.LarderTuneIn"},
    {"Pandora", "g5kOHeKOMQ.Pandora"},
    {"Spotify", "9DZ9Lnbtx0.spotifylarder"},
    {"iHeartRadio", "4GKFs7KtEh.iHeartLarder"},
};

std::string foregroundMusicApp()
{
    for (const auto& app : MUSIC_APPS)
        if (Util::AppControl::isForeground(app[1]))
            return app[0];
    return std::string();
}

void appendAlias(const char* aliasAppId, const char* /*appId*/, void* data)
{
    std::string* list = static_cast<std::string*>(data);
    if (!aliasAppId)
        return;
    if (!list->empty())
        list->append(",");
    list->append(aliasAppId);
}

}  // namespace

std::string is24HourFormat()
{
    int value = -1;
    vconf_get_int("db/menu_widget/regionformat_time1224", &value);
    if (value == -1) {
        LOGD("Vconf Read Fail");
        return TRUE_TEXT;
    }
    return value == 2 ? TRUE_TEXT : FALSE_TEXT;
}

DANluParamsGenSystem::DANluParamsGenSystem() : DANluParamsGen("System")
{
}

void DANluParamsGenSystem::initDataNode()
{
    static const char* const DEFAULTS[][2] = {
        {"24HourFormat", "True"},
        {"AirplaneMode", ""},
        {"SMSSupported", ""},
        {"VideoAllowed", ""},
        {"VideoSupported", ""},
        {"VoiceSupported", ""},
        {"albumName", ""},
        {"ampmRight", ""},
        {"artistName", ""},
        {"clientVersion", ""},
        {"contactsEnabled", ""},
        {"currentLocationAvailable", "True"},
        {"driveModeOnOff", "Off"},
        {"enableServerTTS", "False"},
        {"genreName", ""},
        {"getGeoLocationFromClient", "True"},
        {"hideOffensiveWords", ""},
        {"isOneShotMode", ""},
        {"isTimerWithinLimit", "True"},
        {"latitude", ""},
        {"longitude", ""},
        {"maxGroupSMSSize", ""},
        {"tuneCoveAvailable", ""},
        {"musicPlaying", ""},
        {"moodGridCataloged", ""},
        {"navigationEnabled", ""},
        {"newVoicemail", ""},
        {"nextTimerNum", ""},
        {"now", ""},
        {"pageSize", ""},
        {"somethingPausable", "False"},
        {"songName", ""},
        {"temp_units", "metric"},
        {"timerLimit", ""},
        {"timerRunning", ""},
        {"usePLM", ""},
        {"userDeviceCategory", ""},
        {"isFollowing", ""},
        {"currentApp", ""},
    };
    for (const auto& entry : DEFAULTS)
        dataNode[entry[0]] = entry[1];
}

void DANluParamsGenSystem::makeParams()
{
    MarlEngineWrapper* wrapper = getWrapper();
    if (!wrapper)
        return;
    IEngineRetrieveDeviceData* engineData = wrapper->getEngineDeviceDataRetriever();
    if (!engineData)
        return;
    IEngineRetrieveDeviceDependentStaticData* staticData = engineData->getDeviceDependentStaticData();
    if (!staticData)
        return;
    IEngineRetrieveDeviceSystemData* system = engineData->getDeviceSystemData();
    if (!system)
        return;
    IEngineRetrieveDeviceSettingsData* settings = engineData->getDeviceSettingsData();
    if (!settings)
        return;
    IEngineRetrieveDeviceContactsData* contacts = engineData->getDeviceContactsData();
    if (!contacts)
        return;
    IEngineRetrieveDeviceLocationData* location = engineData->getDeviceLocationData();
    if (!location)
        return;
    IEngineRetrieveDeviceNavigationData* navigation = engineData->getDeviceNavigationData();
    if (!navigation)
        return;
    DeviceDataRetrieveManager* deviceManager = wrapper->getDeviceDataRetrieveManager();
    if (!deviceManager)
        return;
    IDeviceMusicDataRetrieve* music = deviceManager->getMusicRetriever();
    if (!music)
        return;
    IDeviceTimerDataRetrieve* timer = deviceManager->getTimerRetriever();
    if (!timer)
        return;
    CustomizedDataRetrieveManager* customizedManager = wrapper->getCustomizedDataRetrieveManager();
    if (!customizedManager)
        return;
    ICustomizedServerDefines* serverDefines = customizedManager->getServerDefineRetriever();
    if (!serverDefines)
        return;

    initDataNode();
    dataNode["24HourFormat"] = is24HourFormat();

    std::map<std::string, std::string>* staticTable = staticData->getSystemStaticDeviceData();
    if (!staticTable)
        return;
    for (const auto& entry : *staticTable)
        if (!entry.first.empty())
            dataNode[entry.first] = entry.second;

    dataNode["enableServerTTS"] = boolText(serverDefines->useServerTts());
    dataNode["albumName"] = music->getCurrentSongAlbumName();
    dataNode["artistName"] = music->getCurrentSongArtistName();
    dataNode["genreName"] = music->getCurrentSongGenreName();
    dataNode["musicPlaying"] = boolText(music->getCurrentMusicPlayerStatus() == MUSIC_PLAYING);
    dataNode["tuneCoveAvailable"] = boolText(music->supportTuneCove());
    dataNode["moodGridCataloged"] = boolText(music->getMoodGridCataloged());
    dataNode["songName"] = music->getCurrentSongName();
    dataNode["isFollowing"] = boolText(music->getCurrentRadioFavoriteMark());
    dataNode["currentApp"] = foregroundMusicApp();

    const int maxTimerCount = timer->getMaxTimerCount();
    dataNode["timerLimit"] = std::to_string(maxTimerCount);
    dataNode["timerRunning"] = boolText(timer->getRunningTimerCount() >= 1);
    dataNode["isTimerWithinLimit"] = boolText(timer->getCurrentTimerCount() < maxTimerCount);
    dataNode["nextTimerNum"] = timer->getCreatableTimerId();
    dataNode["AirplaneMode"] = settings->isAirplaneModeOn();

    // The player's maximum level is never 0 on this device. The level comes
    // from the daemon as any int: 100 times it is taken in 64 bits.
    const int volumeLevel = music->getCurrentMusicPlayerVolumeLevel();
    dataNode["volumeLevel"] = std::to_string(volumeLevel);
    char percent[24];
    snprintf(percent, sizeof(percent), "%lld", 100LL * volumeLevel / music->getCurrentMusicPlayerVolumeMaxLevel());
    dataNode["volumePercent"] = percent;
    dataNode["VolumeOnOff"] = volumeLevel != 0 ? "On" : "Off";

    dataNode["SMSSupported"] = system->isSMSAvailable();
    dataNode["VideoSupported"] = system->isVideoCallSupported();
    dataNode["VoiceSupported"] = system->isVoiceCallSupported();
    dataNode["temp_units"] = system->IsTemperatureTypeFahrenheit() == TRUE_TEXT ? "imperial" : "metric";
    dataNode["contactsEnabled"] = contacts->isContactsSupported();
    dataNode["navigationEnabled"] = navigation->isNavigationSupported();

    const std::string latitude = location->getLatitude();
    const std::string longitude = location->getLongitude();
    dataNode["latitude"] = latitude;
    dataNode["longitude"] = longitude;
    dataNode["now"] = location->getCurrentTime();
    if (latitude.empty() || longitude.empty())
        dataNode["currentLocationAvailable"] = FALSE_TEXT;

    std::string aliases;
    aul_svc_foreach_alias_info(appendAlias, &aliases);
    dataNode["parentalAppList"] = aliases;

    dataNode["OTNDate"] = "20170815";
    dataNode["ProductType"] = "REF";
    dataNode["ModelName"] = "LD2.0";
}
