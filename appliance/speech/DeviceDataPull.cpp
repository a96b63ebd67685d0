#include "DeviceDataPull.h"

#include <asr-nlu/IEngineRetrieveDeviceData.h>

#include <glib.h>
#include <json-glib/json-glib.h>

namespace standin {
namespace {

// Every answer goes under the operation's name: text as a string, bool and
// int as themselves, a static table as an object. A null facet is null.
#define ASK(facet, out, operation, ...) (out)[#operation] = (facet)->operation(__VA_ARGS__)

Json::Value table(IEngineRetrieveDeviceDependentStaticData::StaticTable* rows)
{
    if (!rows)
        return Json::Value();
    Json::Value out(Json::objectValue);
    for (const auto& row : *rows)
        out[row.first] = row.second;
    return out;
}

Json::Value alarm(IEngineRetrieveDeviceAlarmData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getDefaultAlarmName);
    ASK(f, o, getAlarmPageSize);
    return o;
}

Json::Value clockData(IEngineRetrieveDeviceClockData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getTimezone);
    return o;
}

Json::Value config(IEngineRetrieveDeviceConfigData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getCurrentVerbosity);
    ASK(f, o, getDeviceProfileName);
    ASK(f, o, getRecoStateName);
    ASK(f, o, getAsrRampCode);
    ASK(f, o, getNluRampCode);
    ASK(f, o, useClientDP);
    ASK(f, o, getLanguagePackPath);
    return o;
}

Json::Value contacts(IEngineRetrieveDeviceContactsData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, isContactsSupported);
    return o;
}

Json::Value staticData(IEngineRetrieveDeviceDependentStaticData* f)
{
    Json::Value o(Json::objectValue);
    o["getMusicStaticDeviceData"] = table(f->getMusicStaticDeviceData());
    o["getTimerStaticDeviceData"] = table(f->getTimerStaticDeviceData());
    o["getNavigationStaticDeviceData"] = table(f->getNavigationStaticDeviceData());
    o["getAlarmStaticDeviceData"] = table(f->getAlarmStaticDeviceData());
    o["getMemoStaticDeviceData"] = table(f->getMemoStaticDeviceData());
    o["getSystemStaticDeviceData"] = table(f->getSystemStaticDeviceData());
    o["getSettingsStaticDeviceData"] = table(f->getSettingsStaticDeviceData());
    o["getHfdStaticDeviceData"] = table(f->getHfdStaticDeviceData());
    o["getNewsStaticDeviceData"] = table(f->getNewsStaticDeviceData());
    o["getContactsStaticDeviceData"] = table(f->getContactsStaticDeviceData());
    o["getCalendarStaticDeviceData"] = table(f->getCalendarStaticDeviceData());
    o["getOpenAppStaticDeviceData"] = table(f->getOpenAppStaticDeviceData());
    o["getWeatherStaticDeviceData"] = table(f->getWeatherStaticDeviceData());
    o["getPoiStaticDeviceData"] = table(f->getPoiStaticDeviceData());
    o["getExcerciseStaticDeviceData"] = table(f->getExcerciseStaticDeviceData());
    o["getHearthlinkStaticDeviceData"] = table(f->getHearthlinkStaticDeviceData());
    o["getClientStaticDeviceData"] = table(f->getClientStaticDeviceData());
    return o;
}

Json::Value location(IEngineRetrieveDeviceLocationData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getCountry);
    ASK(f, o, getCurrentTime);
    ASK(f, o, getLatitude);
    ASK(f, o, getLatLong);
    ASK(f, o, getLocale);
    ASK(f, o, getLongitude);
    return o;
}

Json::Value memo(IEngineRetrieveDeviceMemoData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, isVoiceMemoSupported);
    ASK(f, o, isMemoStorageAvailable);
    ASK(f, o, isMemoInstalled);
    return o;
}

Json::Value morningBrief(IEngineRetrieveDeviceMorningBriefData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, appInstalled);
    ASK(f, o, appRunning);
    return o;
}

Json::Value music(IEngineRetrieveDeviceMusicData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getTuneCoveAvailableStatus);
    ASK(f, o, getMusicMoodUri, std::string());
    ASK(f, o, getMusicPlayStatus);
    ASK(f, o, getMoodGridCatalogedStatus);
    ASK(f, o, isGenreSupported);
    ASK(f, o, isRepeatSupported);
    ASK(f, o, isMusicSupported);
    ASK(f, o, isMusicPlaying);
    ASK(f, o, getSongName);
    ASK(f, o, getGenreName);
    ASK(f, o, getAlbumName);
    ASK(f, o, getArtistName);
    ASK(f, o, getCurrentMusicAppName);
    ASK(f, o, getCurrentSongStarMarked);
    ASK(f, o, getCurrentRadioStarMarked);
    ASK(f, o, isSleepMode);
    ASK(f, o, isMute);
    ASK(f, o, getCurMusicAppLoggedIn);
    ASK(f, o, getCurMusicAppVolume);
    ASK(f, o, getCurMusicAppMaxVolume);
    return o;
}

Json::Value navigation(IEngineRetrieveDeviceNavigationData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, isNavigationInstalled);
    ASK(f, o, isNavigationSupported);
    return o;
}

Json::Value news(IEngineRetrieveDeviceNewsData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, isFlipboardInstalled);
    return o;
}

Json::Value serverTts(IEngineRetrieveDeviceServerTtsData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getEnalbed);
    ASK(f, o, getTeller);
    return o;
}

Json::Value settings(IEngineRetrieveDeviceSettingsData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getSettingsEnabledOnOffState);
    ASK(f, o, getBatteryCurrentPercentage);
    ASK(f, o, getPowerSavingModeOnOffState);
    ASK(f, o, getWifiOnOffState);
    ASK(f, o, getDrivingModeOnOffState);
    ASK(f, o, getBlockModeOnOffState);
    ASK(f, o, getCallBlockModeOnOffState);
    ASK(f, o, getMuteOnOffState);
    ASK(f, o, getBluetoothOnOffState);
    ASK(f, o, getWifiConnectedAPName);
    ASK(f, o, getVibrateOnOff);
    ASK(f, o, getGPSOnOff);
    ASK(f, o, getBlueToothDevice);
    ASK(f, o, getAutoRotateOnOff);
    ASK(f, o, getWifiHotspotOnOff);
    ASK(f, o, getMobileDataOnOff);
    ASK(f, o, getNFCOnOff);
    ASK(f, o, getSyncOnOff);
    ASK(f, o, getLumbeamOnOff);
    ASK(f, o, getVolumePercent);
    ASK(f, o, getAutoBrightnessOnOffState);
    ASK(f, o, getVolumeLevel);
    ASK(f, o, getFlashLightOnOffState);
    ASK(f, o, getPrivateModeOnOffState);
    ASK(f, o, getDeepSaveOnOffState);
    ASK(f, o, getGazeHoldOnOffState);
    ASK(f, o, getScreenMirrorOnOffState);
    ASK(f, o, isAirplaneModeOn);
    ASK(f, o, isAnySubSettingSelectedForBlockMode);
    ASK(f, o, isAnySubSettingSelectedForPowerSavingMode);
    ASK(f, o, getSoundOnOffState);
    return o;
}

Json::Value shoppingList(IEngineRetrieveDeviceShoppingListData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getCurrentShoppingListSize);
    return o;
}

Json::Value software(IEngineRetrieveDeviceSoftwareData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, getOS_Language);
    ASK(f, o, getOS_Ver);
    ASK(f, o, getFirmware_ver);
    ASK(f, o, getMaker);
    ASK(f, o, getModel);
    ASK(f, o, getModelAndVersion);
    ASK(f, o, getProxyUrl);
    return o;
}

Json::Value systemData(IEngineRetrieveDeviceSystemData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, checkForChineseCTC);
    ASK(f, o, getCurrentTimeForCMA);
    ASK(f, o, getFindMyCarPkgName);
    ASK(f, o, getFindMyDevicePkgName);
    ASK(f, o, getPackageVersionCode, std::string());
    ASK(f, o, getPhoneScreenHeight);
    ASK(f, o, getPhoneScreenWidth);
    ASK(f, o, getPhoneTelecom);
    ASK(f, o, getPhoneThumbnailHeight);
    ASK(f, o, getPhoneThumbnailWidth);
    ASK(f, o, getUniqueDeviceIdentifier);
    ASK(f, o, getWeatherSetting);
    ASK(f, o, isChineseModel);
    ASK(f, o, isDeviceHas2MicNSEnabled);
    ASK(f, o, isIOSAttached);
    ASK(f, o, isSMSAvailable);
    ASK(f, o, IsTemperatureTypeFahrenheit);
    ASK(f, o, isVideoCallSupported);
    ASK(f, o, isVoiceCallSupported);
    ASK(f, o, isVoiceMailAvailable);
    return o;
}

Json::Value timer(IEngineRetrieveDeviceTimerData* f)
{
    Json::Value o(Json::objectValue);
    ASK(f, o, supportMultipleControl);
    ASK(f, o, getTimerActivatedCount);
    ASK(f, o, getTimerMaxCount);
    ASK(f, o, getTimerCancelEnabled);
    ASK(f, o, getTimerConfirmationEnabled);
    ASK(f, o, getTimerCreatableId);
    ASK(f, o, getTimerCreateEnabled);
    ASK(f, o, getTimerCurrentId);
    ASK(f, o, getTimerEnabled);
    ASK(f, o, getTimerResetEnabled);
    ASK(f, o, getTimerShowEnabled);
    ASK(f, o, getTimerStartEnabled);
    ASK(f, o, getTimerStopEnabled);
    ASK(f, o, getTimerTaskEnabled);
    ASK(f, o, isTimerRunning);
    ASK(f, o, isTimerWidgetActive);
    ASK(f, o, setTimerSetFromApp);
    ASK(f, o, setTimerTime);
    return o;
}

#undef ASK

template <typename Facet>
Json::Value facet(Facet* f, Json::Value (*read)(Facet*))
{
    return f ? read(f) : Json::Value();
}

// json-glib's text of one object, then the library's reference is dropped.
Json::Value renderAndFree(JsonObject* object)
{
    if (!object)
        return Json::Value();
    JsonNode* node = json_node_alloc();
    json_node_init_object(node, object);
    JsonGenerator* generator = json_generator_new();
    json_generator_set_root(generator, node);
    gchar* text = json_generator_to_data(generator, nullptr);
    Json::Value out(text ? text : "");
    g_free(text);
    g_object_unref(generator);
    json_node_free(node);
    json_object_unref(object);
    return out;
}

}  // namespace

Json::Value pullDeviceData(IEngineRetrieveDeviceData* data)
{
    Json::Value out(Json::objectValue);
    out["what"] = "deviceData";
    out["facets"] = Json::Value();
    out["nluParams"] = Json::Value();
    out["recoState"] = Json::Value();
    if (!data)
        return out;

    Json::Value& facets = out["facets"] = Json::Value(Json::objectValue);
    facets["Alarm"] = facet(data->getDeviceAlarmData(), alarm);
    facets["Clock"] = facet(data->getDeviceClockData(), clockData);
    facets["Config"] = facet(data->getDeviceConfigData(), config);
    facets["Contacts"] = facet(data->getDeviceContactsData(), contacts);
    facets["DependentStatic"] = facet(data->getDeviceDependentStaticData(), staticData);
    facets["Location"] = facet(data->getDeviceLocationData(), location);
    facets["Memo"] = facet(data->getDeviceMemoData(), memo);
    facets["MorningBrief"] = facet(data->getDeviceMorningBriefData(), morningBrief);
    facets["Music"] = facet(data->getDeviceMusicData(), music);
    facets["Navigation"] = facet(data->getDeviceNavigationData(), navigation);
    facets["News"] = facet(data->getDeviceNewsData(), news);
    facets["ServerTts"] = facet(data->getDeviceServerTtsData(), serverTts);
    facets["Settings"] = facet(data->getDeviceSettingsData(), settings);
    facets["ShoppingList"] = facet(data->getDeviceShoppingListData(), shoppingList);
    facets["Software"] = facet(data->getDeviceSoftwareData(), software);
    facets["System"] = facet(data->getDeviceSystemData(), systemData);
    facets["Timer"] = facet(data->getDeviceTimerData(), timer);

    IEngineRetrieveDeviceCustomData* custom = data->getDeviceCustomData();
    if (!custom) {
        facets["Custom"] = Json::Value();
        return out;
    }
    std::map<std::string, _JsonObject*>* params = custom->getCustomDomainData();
    if (params) {
        out["nluParams"] = Json::Value(Json::objectValue);
        for (const auto& group : *params)
            out["nluParams"][group.first] = renderAndFree(group.second);
        delete params;
    }
    out["recoState"] = renderAndFree(custom->getCustomRecoStateData());
    facets["Custom"]["getCustomDomainData"] = out["nluParams"];
    facets["Custom"]["getCustomRecoStateData"] = out["recoState"];
    return out;
}

}  // namespace standin
