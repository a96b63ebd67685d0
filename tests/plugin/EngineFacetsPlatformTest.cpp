// The facets that answer from the platform: settings, system, software and
// location, each on a virtual appliance described for the test.
#include "PluginFixture.h"

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplLocation.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSettings.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSoftWare.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSystem.h"

#include <tzplatform_config.h>
#include <wifi.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iomanip>
#include <regex>
#include <sstream>
#include <string>

using marltest::TestDevice;
using marltest::logged;

namespace {

size_t countLogged(const std::string& text)
{
    const std::string log = marltest::platformLog();
    size_t count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1))
        ++count;
    return count;
}

std::string journal(const TestDevice& device)
{
    std::ifstream in(device.path("journal.jsonl"));
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Writes the position file with `text` as its content.
void writePositionFile(const std::string& text)
{
    std::ofstream out(tzplatform_mkpath(TZ_USER_DATA, "AccInfoData.txt"), std::ios::trunc);
    out << text;
}

struct Position {
    std::string latitude;
    std::string longitude;
    std::string latLong;
};

Position positionOf(RetrieveDeviceDataEngineImplLocation& location)
{
    return {location.getLatitude(), location.getLongitude(), location.getLatLong()};
}

}  // namespace

// Settings

TEST(SettingsFacet, SwitchesTheApplianceLacksAnswerConstants)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getSettingsEnabledOnOffState(), "On");
    EXPECT_EQ(settings.getPowerSavingModeOnOffState(), "Off");
    EXPECT_EQ(settings.getDrivingModeOnOffState(), "Off");
    EXPECT_EQ(settings.getBlockModeOnOffState(), "Off");
    EXPECT_EQ(settings.getCallBlockModeOnOffState(), "Off");
    EXPECT_EQ(settings.getBlueToothDevice(), "");
    EXPECT_EQ(settings.getSyncOnOff(), "Off");
    EXPECT_EQ(settings.getLumbeamOnOff(), "Off");
    EXPECT_EQ(settings.getAutoBrightnessOnOffState(), "On");
    EXPECT_EQ(settings.getFlashLightOnOffState(), "Off");
    EXPECT_EQ(settings.getPrivateModeOnOffState(), "Off");
    EXPECT_EQ(settings.getDeepSaveOnOffState(), "Off");
    EXPECT_EQ(settings.getGazeHoldOnOffState(), "Off");
    EXPECT_EQ(settings.getScreenMirrorOnOffState(), "Off");
    EXPECT_EQ(settings.isAnySubSettingSelectedForBlockMode(), "False");
    EXPECT_EQ(settings.isAnySubSettingSelectedForPowerSavingMode(), "False");
    EXPECT_TRUE(logged("getScreenMirrorOnOffState("));
    IEngineRetrieveDeviceSettingsData bare;
    EXPECT_EQ(bare.getSettingsEnabledOnOffState(), "Off");
}

TEST(SettingsFacet, BatteryPercentageIsDecimalText)
{
    TestDevice device(R"({"battery": {"percent": 42, "charging": false}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getBatteryCurrentPercentage(), "42");
}

TEST(SettingsFacet, AFailedBatteryReadGivesZeroNotTheDefault)
{
    TestDevice device(R"({"battery": {"charging": false}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getBatteryCurrentPercentage(), "0");
    EXPECT_TRUE(logged("[ERROR] Fail to get battery percent("));
    IEngineRetrieveDeviceSettingsData bare;
    EXPECT_EQ(bare.getBatteryCurrentPercentage(), "100");
}

TEST(SettingsFacet, WifiIsOnOnlyWhenConnected)
{
    TestDevice device(R"({"wifi": {"connection_state": "WIFI_CONNECTION_STATE_CONNECTED"}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getWifiOnOffState(), "On");
    device.apply(R"({"wifi": {"connection_state": "WIFI_CONNECTION_STATE_ASSOCIATION", "activated": true}})");
    EXPECT_EQ(settings.getWifiOnOffState(), "Off");
    device.apply(R"({"wifi": {"connection_state": 0}})");
    EXPECT_EQ(settings.getWifiOnOffState(), "Off");
    // Each call leaves the Wi-Fi library closed again.
    EXPECT_NE(wifi_deinitialize(), 0);
}

TEST(SettingsFacet, AFailedWifiInitGivesOff)
{
    TestDevice device(R"({"wifi": {"connection_state": 3}, "errors": {"wifi_initialize": "WIFI_ERROR_OPERATION_FAILED"}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getWifiOnOffState(), "Off");
    EXPECT_TRUE(logged("[ERROR] Fail to wifi init("));
}

TEST(SettingsFacet, AFailedWifiStateGivesOffAndLeavesTheLibraryOpen)
{
    TestDevice device(R"({"wifi": {"connection_state": 3}, "errors": {"wifi_get_connection_state": "WIFI_ERROR_OPERATION_FAILED"}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getWifiOnOffState(), "Off");
    EXPECT_TRUE(logged("[ERROR] Fail to get wifi state("));
    EXPECT_EQ(wifi_deinitialize(), 0);
}

TEST(SettingsFacet, MuteAndSoundReadSilentModeInOppositeSenses)
{
    TestDevice device(R"({"system_settings": {"SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE": true}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getMuteOnOffState(), "On");
    EXPECT_EQ(settings.getSoundOnOffState(), "Off");
    EXPECT_TRUE(logged("Silent Mode(1)"));
    EXPECT_TRUE(logged("Silent mode(1)"));
    device.apply(R"({"system_settings": {"SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE": false}})");
    EXPECT_EQ(settings.getMuteOnOffState(), "Off");
    EXPECT_EQ(settings.getSoundOnOffState(), "On");
}

TEST(SettingsFacet, AFailedSilentModeReadGivesOffFromMuteAndSound)
{
    TestDevice device(R"({"system_settings": {"SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE": {"error": "SYSTEM_SETTINGS_ERROR_IO_ERROR"}}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getMuteOnOffState(), "Off");
    EXPECT_EQ(settings.getSoundOnOffState(), "Off");
    EXPECT_EQ(countLogged("[ERROR] Fail to get system silent mode ("), 2u);
}

TEST(SettingsFacet, BluetoothFollowsTheRuntimeInfo)
{
    TestDevice device(R"({"runtime_info": {"RUNTIME_INFO_KEY_BLUETOOTH_ENABLED": true}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getBluetoothOnOffState(), "On");
    EXPECT_TRUE(logged("Bluetooth (1)"));
    device.apply(R"({"runtime_info": {"RUNTIME_INFO_KEY_BLUETOOTH_ENABLED": false}})");
    EXPECT_EQ(settings.getBluetoothOnOffState(), "Off");
    device.apply(R"({"runtime_info": {}})");
    EXPECT_EQ(settings.getBluetoothOnOffState(), "Off");
    EXPECT_TRUE(logged("[ERROR] Fail to get runtime info("));
}

TEST(SettingsFacet, TheAccessPointNameIsTheConnectedEssid)
{
    TestDevice device(R"({"wifi": {"connection_state": 3, "essid": "KitchenNet"}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getWifiConnectedAPName(), "KitchenNet");
    EXPECT_TRUE(logged("Essid (KitchenNet)"));
    EXPECT_NE(wifi_deinitialize(), 0);
}

TEST(SettingsFacet, NoConnectedAccessPointGivesEmptyText)
{
    TestDevice device(R"({"wifi": {"connection_state": 0, "essid": "KitchenNet"}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getWifiConnectedAPName(), "");
    EXPECT_TRUE(logged("[ERROR] Fail to get connected ap ("));
    EXPECT_NE(wifi_deinitialize(), 0);
}

TEST(SettingsFacet, AnUnreadableEssidGivesEmptyText)
{
    TestDevice device(R"({"wifi": {"connection_state": 3}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getWifiConnectedAPName(), "");
    EXPECT_TRUE(logged("[ERROR] Fail to get essid ("));
    EXPECT_NE(wifi_deinitialize(), 0);
}

TEST(SettingsFacet, AFailedWifiInitGivesNoAccessPointName)
{
    TestDevice device(R"({"wifi": {"connection_state": 3, "essid": "KitchenNet"}, "errors": {"wifi_initialize": "WIFI_ERROR_OPERATION_FAILED"}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getWifiConnectedAPName(), "");
    EXPECT_TRUE(logged("[ERROR] Fail to wifi init ("));
}

TEST(SettingsFacet, VibrationAutoRotationAndHotspotFollowTheRuntimeInfo)
{
    TestDevice device(R"({"runtime_info": {"RUNTIME_INFO_KEY_VIBRATION_ENABLED": true,
        "RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED": true, "RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED": true}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getVibrateOnOff(), "On");
    EXPECT_EQ(settings.getAutoRotateOnOff(), "On");
    EXPECT_EQ(settings.getWifiHotspotOnOff(), "On");
    device.apply(R"({"runtime_info": {"RUNTIME_INFO_KEY_VIBRATION_ENABLED": false,
        "RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED": false, "RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED": false}})");
    EXPECT_EQ(settings.getVibrateOnOff(), "Off");
    EXPECT_EQ(settings.getAutoRotateOnOff(), "Off");
    EXPECT_EQ(settings.getWifiHotspotOnOff(), "Off");
}

TEST(SettingsFacet, FailedVibrationAutoRotationAndHotspotReadsGiveOff)
{
    TestDevice device(R"({"runtime_info": {}, "errors": {"runtime_info_get_value_bool": "RUNTIME_INFO_ERROR_IO_ERROR"}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getVibrateOnOff(), "Off");
    EXPECT_EQ(settings.getAutoRotateOnOff(), "Off");
    EXPECT_EQ(settings.getWifiHotspotOnOff(), "Off");
    EXPECT_TRUE(logged("[ERROR] Fail to get runtime info vibrate ("));
    EXPECT_EQ(countLogged("[ERROR] Fail to get runtime info("), 2u);
}

TEST(SettingsFacet, GpsIsOnForAnyStatusButDisabled)
{
    TestDevice device(R"({"runtime_info": {"RUNTIME_INFO_KEY_GPS_STATUS": 0}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getGPSOnOff(), "Off");
    device.apply(R"({"runtime_info": {"RUNTIME_INFO_KEY_GPS_STATUS": 2}})");
    EXPECT_EQ(settings.getGPSOnOff(), "On");
    device.apply(R"({"runtime_info": {"RUNTIME_INFO_KEY_GPS_STATUS": -1}})");
    EXPECT_EQ(settings.getGPSOnOff(), "On");
    EXPECT_TRUE(logged("GPS (-1)"));
}

TEST(SettingsFacet, AFailedGpsReadGivesOff)
{
    TestDevice device(R"({"runtime_info": {"RUNTIME_INFO_KEY_GPS_STATUS": {"error": "RUNTIME_INFO_ERROR_IO_ERROR"}}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getGPSOnOff(), "Off");
    EXPECT_TRUE(logged("[ERROR] Fail to get runtime info gps ("));
}

TEST(SettingsFacet, MobileDataAndFlightModeFollowTheSystemSettings)
{
    TestDevice device(R"({"system_settings": {"SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED": true,
        "SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE": true}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getMobileDataOnOff(), "On");
    EXPECT_EQ(settings.isAirplaneModeOn(), "On");
    EXPECT_TRUE(logged("3G Data network(1)"));
    EXPECT_TRUE(logged("Flight mode(1)"));
    device.apply(R"({"system_settings": {"SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED": false,
        "SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE": false}})");
    EXPECT_EQ(settings.getMobileDataOnOff(), "Off");
    EXPECT_EQ(settings.isAirplaneModeOn(), "Off");
}

TEST(SettingsFacet, FailedMobileDataAndFlightModeReadsGiveOff)
{
    TestDevice device(R"({"system_settings": {}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getMobileDataOnOff(), "Off");
    EXPECT_EQ(settings.isAirplaneModeOn(), "Off");
    EXPECT_TRUE(logged("[ERROR] Fail to get system 3g network ("));
    EXPECT_TRUE(logged("[ERROR] Fail to get system flight mode ("));
}

TEST(SettingsFacet, NfcIsOnOnlyWhenActivated)
{
    TestDevice device(R"({"nfc": {"activated": true}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getNFCOnOff(), "On");
    EXPECT_TRUE(logged("NFC (1)"));
    device.apply(R"({"nfc": {"activated": false}})");
    EXPECT_EQ(settings.getNFCOnOff(), "Off");
    device.apply(R"({"nfc": {}})");
    EXPECT_EQ(settings.getNFCOnOff(), "Off");
}

TEST(SettingsFacet, AVolumeOfSevenOfFifteenIsFortySixPercent)
{
    TestDevice device(R"({"sound_manager": {"SOUND_TYPE_MEDIA": {"volume": 7, "max_volume": 15}}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getVolumePercent(), "46");
    EXPECT_TRUE(logged("Volume percent (46)"));
    device.apply(R"({"sound_manager": {"SOUND_TYPE_MEDIA": {"volume": 15, "max_volume": 15}}})");
    EXPECT_EQ(settings.getVolumePercent(), "100");
}

// Kept on purpose: the percentage divides by the platform's maximum without a
// guard, so a maximum of 0 takes the process down.
TEST(SettingsFacetDeathTest, AMaximumVolumeOfZeroIsKeptUnguarded)
{
    TestDevice device(R"({"sound_manager": {"SOUND_TYPE_MEDIA": {"volume": 7, "max_volume": 0}}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_DEATH(settings.getVolumePercent(), "");
}

TEST(SettingsFacet, AFailedVolumeReadGivesZeroPercent)
{
    TestDevice device(R"({"sound_manager": {"SOUND_TYPE_MEDIA": {"volume": 7, "max_volume": {"error": "SOUND_MANAGER_ERROR_INTERNAL"}}}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getVolumePercent(), "0");
    EXPECT_TRUE(logged("[ERROR] Fail to get max volume ("));
    device.apply(R"({"sound_manager": {"SOUND_TYPE_MEDIA": {"volume": {"error": "SOUND_MANAGER_ERROR_INTERNAL"}, "max_volume": 15}}})");
    EXPECT_EQ(settings.getVolumePercent(), "0");
    EXPECT_TRUE(logged("[ERROR] Fail to get volume ("));
    IEngineRetrieveDeviceSettingsData bare;
    EXPECT_EQ(bare.getVolumePercent(), "100");
}

TEST(SettingsFacet, TheVolumeLevelIsTheMediaVolume)
{
    TestDevice device(R"({"sound_manager": {"SOUND_TYPE_MEDIA": {"volume": 7, "max_volume": 15},
        "SOUND_TYPE_NOTIFICATION": {"volume": 3, "max_volume": 15}}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getVolumeLevel(), "7");
    EXPECT_TRUE(logged("Volume (7)"));
}

TEST(SettingsFacet, AFailedVolumeLevelReadGivesZeroNeverEmpty)
{
    TestDevice device(R"({"sound_manager": {}})");
    RetrieveDeviceDataEngineImplSettings settings;
    EXPECT_EQ(settings.getVolumeLevel(), "0");
    EXPECT_TRUE(logged("[ERROR] Fail to get volume ("));
    IEngineRetrieveDeviceSettingsData bare;
    EXPECT_EQ(bare.getVolumeLevel(), "");
}

// System

TEST(SystemFacet, FeaturesTheApplianceLacksAnswerConstants)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.checkForChineseCTC(), "False");
    EXPECT_EQ(system.getCurrentTimeForCMA(), "");
    EXPECT_EQ(system.getFindMyCarPkgName(), "");
    EXPECT_EQ(system.getFindMyDevicePkgName(), "");
    EXPECT_EQ(system.getPackageVersionCode("org.tizen.fridge-timer"), "");
    EXPECT_EQ(system.getPhoneTelecom(), "");
    EXPECT_EQ(system.getWeatherSetting(), "");
    EXPECT_EQ(system.isChineseModel(), "False");
    EXPECT_EQ(system.isDeviceHas2MicNSEnabled(), "False");
    EXPECT_EQ(system.isIOSAttached(), "False");
    EXPECT_EQ(system.isVoiceMailAvailable(), "False");
    EXPECT_TRUE(logged("isVoiceMailAvailable("));
}

TEST(SystemFacet, VideoCallSupportIsEmptyWhereTheInterfaceSaysFalse)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.isVideoCallSupported(), "");
    IEngineRetrieveDeviceSystemData bare;
    EXPECT_EQ(bare.isVideoCallSupported(), "False");
}

TEST(SystemFacet, TheThumbnailIsAsWideAsTheScreenAndHalfAsHigh)
{
    TestDevice device(R"({"system_info": {"tizen.org/feature/screen.width": 1080, "tizen.org/feature/screen.height": 1920}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.getPhoneScreenWidth(), "1080");
    EXPECT_EQ(system.getPhoneScreenHeight(), "1920");
    EXPECT_EQ(system.getPhoneThumbnailWidth(), "1080");
    EXPECT_EQ(system.getPhoneThumbnailHeight(), "960");
    device.apply(R"({"system_info": {"tizen.org/feature/screen.width": 1081, "tizen.org/feature/screen.height": 1081}})");
    EXPECT_EQ(system.getPhoneThumbnailWidth(), "1081");
    EXPECT_EQ(system.getPhoneThumbnailHeight(), "540");
}

TEST(SystemFacet, ScreenLinesGoToTheLogUnderTheirOwnTag)
{
    TestDevice device(R"({"system_info": {"tizen.org/feature/screen.width": 1080, "tizen.org/feature/screen.height": 1920}})");
    RetrieveDeviceDataEngineImplSystem system;
    system.getPhoneScreenWidth();
    system.getPhoneScreenHeight();
    system.getPhoneThumbnailWidth();
    system.getPhoneThumbnailHeight();
    const std::string log = marltest::platformLog();
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(D/VCPE\(\s*\d+\): \S+: getPhoneScreenWidth\(\d+\) > Screen Width\(1080\))")));
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(D/VCPE\(\s*\d+\): .*Screen Height\(1920\))")));
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(D/VCPE\(\s*\d+\): .*Temp Thumbnail Width\(1080\))")));
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(D/VCPE\(\s*\d+\): .*Temp Thumbnail Height\(960\))")));
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(D/VoiceEnginePlugIn\(\s*\d+\): \S+: getPhoneScreenWidth\(\d+\) > $)",
                                                  std::regex::multiline)));
}

TEST(SystemFacet, AFailedScreenReadGivesZero)
{
    TestDevice device(R"({"system_info": {}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.getPhoneScreenWidth(), "0");
    EXPECT_EQ(system.getPhoneScreenHeight(), "0");
    EXPECT_EQ(system.getPhoneThumbnailWidth(), "0");
    EXPECT_EQ(system.getPhoneThumbnailHeight(), "0");
    const std::string log = marltest::platformLog();
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(E/VCPE\(\s*\d+\): .*\[ERROR\] Fail to get system screen width \()")));
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(E/VCPE\(\s*\d+\): .*\[ERROR\] Fail to get system screen height \()")));
    EXPECT_EQ(countLogged("[ERROR] Fail to get system screen width ("), 2u);
    EXPECT_EQ(countLogged("[ERROR] Fail to get system screen height ("), 2u);
}

TEST(SystemFacet, TelephonyAnswersFollowThePlatformFeatures)
{
    TestDevice device(R"({"system_info": {"tizen.org/feature/network.telephony": true, "tizen.org/feature/network.telephony.sms": true}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.isSMSAvailable(), "True");
    EXPECT_EQ(system.isVoiceCallSupported(), "True");
    EXPECT_TRUE(logged("System Info sms (1)"));
    EXPECT_TRUE(logged("System Info telephony (1)"));
    device.apply(R"({"system_info": {"tizen.org/feature/network.telephony": false, "tizen.org/feature/network.telephony.sms": false}})");
    EXPECT_EQ(system.isSMSAvailable(), "False");
    EXPECT_EQ(system.isVoiceCallSupported(), "False");
}

TEST(SystemFacet, FailedTelephonyReadsGiveFalse)
{
    TestDevice device(R"({"system_info": {"tizen.org/feature/network.telephony": true, "tizen.org/feature/network.telephony.sms": true},
        "errors": {"system_info_get_platform_bool": "SYSTEM_INFO_ERROR_IO_ERROR"}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.isSMSAvailable(), "False");
    EXPECT_EQ(system.isVoiceCallSupported(), "False");
    EXPECT_TRUE(logged("[ERROR] Fail to get system info sms ("));
    EXPECT_TRUE(logged("[ERROR] Fail to get system info telephony ("));
}

TEST(SystemFacet, OnlyTheCountryUsMeasuresInFahrenheit)
{
    TestDevice device(R"({"vconf": {"db/setting/country_code": "US"}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.IsTemperatureTypeFahrenheit(), "True");
    EXPECT_TRUE(logged("Country (US)"));
    EXPECT_TRUE(logged("retv: True"));
    device.apply(R"({"vconf": {"db/setting/country_code": "us"}})");
    EXPECT_EQ(system.IsTemperatureTypeFahrenheit(), "False");
    device.apply(R"({"vconf": {"db/setting/country_code": "GB"}})");
    EXPECT_EQ(system.IsTemperatureTypeFahrenheit(), "False");
    device.apply(R"({"vconf": {"db/setting/country_code": null}})");
    EXPECT_EQ(system.IsTemperatureTypeFahrenheit(), "False");
    EXPECT_TRUE(logged("Country ()"));
}

TEST(SystemFacet, TheDeviceIdentifierIsTheSha256OfTheMacText)
{
    TestDevice device(R"({"wifi": {"mac_address": "8c:79:f5:12:34:56"}})");
    RetrieveDeviceDataEngineImplSystem system;
    const std::string id = system.getUniqueDeviceIdentifier();
    EXPECT_EQ(id, "751efc15c52bbe1d48d293fb15db51561da96453494ad0123e0a89064451d517");
    EXPECT_TRUE(std::regex_match(id, std::regex("[0-9a-f]{64}")));
    EXPECT_TRUE(logged("mac_address[8c:79:f5:12:34:56]"));
    EXPECT_TRUE(logged("deviceId[" + id + "]"));
    EXPECT_EQ(system.getUniqueDeviceIdentifier(), id);

    device.apply(R"({"wifi": {"mac_address": "8C:79:F5:12:34:56"}})");
    EXPECT_EQ(system.getUniqueDeviceIdentifier(),
              "adc61aef621d0a5b47642925a5c57037350052b15bc97f1e08fcd16fd3c52f89");
}

TEST(SystemFacet, AnEmptyMacTextIsHashedToo)
{
    TestDevice device(R"({"wifi": {"mac_address": ""}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.getUniqueDeviceIdentifier(),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(SystemFacet, AnUnreadableMacGivesNoIdentifier)
{
    TestDevice device(R"({"wifi": {}})");
    RetrieveDeviceDataEngineImplSystem system;
    EXPECT_EQ(system.getUniqueDeviceIdentifier(), "");
    EXPECT_TRUE(logged("get wifi mac address failed"));
    EXPECT_FALSE(logged("deviceId["));
}

// Software

TEST(SoftwareFacet, TheLanguageIsAlwaysEnUs)
{
    TestDevice device(R"({"vc_setting": {"language": "ko_KR"},
        "system_settings": {"SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY": "ko_KR"}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getOS_Language(), "en-US");
    IEngineRetrieveDeviceSoftwareData bare;
    EXPECT_EQ(bare.getOS_Language(), "en_US");
}

TEST(SoftwareFacet, VersionMakerAndModelComeFromThePlatform)
{
    TestDevice device(R"({"system_info": {"tizen.org/feature/platform.version": "3.0",
        "tizen.org/system/platform.name": "Tizen", "tizen.org/system/model_name": "LD2.0"}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getOS_Ver(), "3.0");
    EXPECT_EQ(software.getFirmware_ver(), "3.0");
    EXPECT_EQ(software.getMaker(), "Tizen");
    EXPECT_EQ(software.getModel(), "LD2.0");
    EXPECT_EQ(software.getModelAndVersion(), "LD2.03.0");
    EXPECT_TRUE(logged("Platform version(3.0)"));
    EXPECT_TRUE(logged("Platform name(Tizen)"));
    EXPECT_TRUE(logged("Model name(LD2.0)"));
}

TEST(SoftwareFacet, AFailedVersionReadGivesEmptyTextNotTheDefault)
{
    TestDevice device(R"({"system_info": {"tizen.org/system/model_name": "LD2.0"}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getOS_Ver(), "");
    EXPECT_EQ(software.getFirmware_ver(), "");
    EXPECT_EQ(countLogged("Fail to get system info platform version ("), 2u);
    IEngineRetrieveDeviceSoftwareData bare;
    EXPECT_EQ(bare.getOS_Ver(), "3.0");
}

TEST(SoftwareFacet, FailedMakerAndModelReadsGiveEmptyText)
{
    TestDevice device(R"({"system_info": {}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getMaker(), "");
    EXPECT_EQ(software.getModel(), "");
    EXPECT_TRUE(logged("Fail to get system info platform name ("));
    EXPECT_TRUE(logged("Fail to get system info model name ("));
}

TEST(SoftwareFacet, ModelAndVersionKeepsWhicheverPartItCouldRead)
{
    TestDevice device(R"({"system_info": {"tizen.org/feature/platform.version": "3.0"}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getModelAndVersion(), "3.0");
    device.apply(R"({"system_info": {"tizen.org/system/model_name": "LD2.0"}})");
    EXPECT_EQ(software.getModelAndVersion(), "LD2.0");
    device.apply(R"({"system_info": {}})");
    EXPECT_EQ(software.getModelAndVersion(), "");
}

TEST(SoftwareFacet, TheProxyIsTheConnectionsProxy)
{
    TestDevice device(R"({"connection": {"proxy": "http://10.0.0.1:8080"}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getProxyUrl(), "http://10.0.0.1:8080");
    EXPECT_TRUE(logged("Proxy(http://10.0.0.1:8080)"));
}

TEST(SoftwareFacet, NoProxyGivesEmptyText)
{
    TestDevice device(R"({"connection": {}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getProxyUrl(), "");
}

TEST(SoftwareFacet, FailedConnectionCallsGiveNoProxy)
{
    TestDevice device(R"({"connection": {"proxy": "http://10.0.0.1:8080"},
        "errors": {"connection_create": "CONNECTION_ERROR_INVALID_OPERATION"}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getProxyUrl(), "");
    EXPECT_TRUE(logged("[ERROR] Fail to connection create ("));
    device.apply(R"({"connection": {"proxy": {"error": "CONNECTION_ERROR_OPERATION_FAILED"}}, "errors": {}})");
    EXPECT_EQ(software.getProxyUrl(), "");
    EXPECT_TRUE(logged("[ERROR] Fail to get proxy ("));
}

// Location

TEST(LocationFacet, ThePositionComesFromTheFirstElementOfTheFile)
{
    TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt",
        "json": [{"geo_la": 51.5074, "geo_lo": -0.1278}]}]})");
    RetrieveDeviceDataEngineImplLocation location;
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "51.5074");
    EXPECT_EQ(p.longitude, "-0.1278");
    EXPECT_EQ(p.latLong, "51.5074,-0.1278");
    EXPECT_TRUE(logged("latitude: \"51.5074\""));
    EXPECT_TRUE(logged("longitude: \"-0.1278\""));
    EXPECT_TRUE(logged("latlong: 51.5074,-0.1278"));
}

TEST(LocationFacet, AnEmptyFirstElementGivesTheDefaultsWithSixDigits)
{
    TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt", "json": [{}]}]})");
    RetrieveDeviceDataEngineImplLocation location;
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "37.2539");
    EXPECT_EQ(p.longitude, "127.046");
    EXPECT_EQ(p.latLong, "37.2539,127.046");
}

TEST(LocationFacet, AMissingMemberFallsBackAloneAndFurtherElementsAreIgnored)
{
    TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt",
        "json": [{"geo_la": 10, "city": "x"}, {"geo_lo": 20}]}]})");
    RetrieveDeviceDataEngineImplLocation location;
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "10");
    EXPECT_EQ(p.longitude, "127.046");
    EXPECT_EQ(p.latLong, "10,127.046");
}

TEST(LocationFacet, PositionsKeepSixSignificantDigits)
{
    TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt",
        "json": [{"geo_la": 37.123456789, "geo_lo": 127.987654321}]}]})");
    RetrieveDeviceDataEngineImplLocation location;
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "37.1235");
    EXPECT_EQ(p.longitude, "127.988");
    EXPECT_EQ(p.latLong, "37.1235,127.988");
}

TEST(LocationFacet, NoFileGivesEmptyText)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplLocation location;
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "");
    EXPECT_EQ(p.longitude, "");
    EXPECT_EQ(p.latLong, "");
    EXPECT_TRUE(logged("latitude: \"\""));
    EXPECT_TRUE(logged("longitude: \"\""));
    EXPECT_TRUE(logged("latlong: \"\""));
}

TEST(LocationFacet, TheFileIsReadAnewOnEveryCall)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplLocation location;
    EXPECT_EQ(location.getLatitude(), "");
    writePositionFile(R"([{"geo_la": 1.5, "geo_lo": 2.5}])");
    EXPECT_EQ(location.getLatitude(), "1.5");
    EXPECT_EQ(location.getLatLong(), "1.5,2.5");
    writePositionFile(R"([{"geo_la": 3.25, "geo_lo": 4.75}])");
    EXPECT_EQ(location.getLatitude(), "3.25");
    EXPECT_EQ(location.getLongitude(), "4.75");
    EXPECT_EQ(location.getLatLong(), "3.25,4.75");
    std::remove(tzplatform_mkpath(TZ_USER_DATA, "AccInfoData.txt"));
    EXPECT_EQ(location.getLongitude(), "");
}

TEST(LocationFacet, BadFilesGiveEmptyTextWithoutCrashing)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplLocation location;
    for (const char* content : {"", "not json", "[{\"geo_la\": 1,", "{\"geo_la\": 51.5, \"geo_lo\": 0.1}", "[1, 2]",
                                "[[51.5, 0.1]]", "\"text\"", "[{\"geo_la\": \"51.5\", \"geo_lo\": \"x\"}]"}) {
        writePositionFile(content);
        const Position p = positionOf(location);
        EXPECT_EQ(p.latitude, "") << content;
        EXPECT_EQ(p.longitude, "") << content;
        EXPECT_EQ(p.latLong, "") << content;
    }
    EXPECT_TRUE(logged("position file not usable ("));
}

// JsonCpp's reader refuses nesting deeper than 1000 levels by throwing.
TEST(LocationFacet, AFileNestedDeeperThanTheReaderGoesIsABrokenFile)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplLocation location;
    writePositionFile(std::string(5000, '[') + std::string(5000, ']'));
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "");
    EXPECT_EQ(p.longitude, "");
    EXPECT_EQ(p.latLong, "");
    EXPECT_TRUE(logged("position file not usable ("));
    EXPECT_TRUE(logged("latlong: \"\""));
}

TEST(LocationFacet, NullAndTrueMembersReadAsJsonCppConvertsThem)
{
    TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt",
        "json": [{"geo_la": null, "geo_lo": true}]}]})");
    RetrieveDeviceDataEngineImplLocation location;
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "0");
    EXPECT_EQ(p.longitude, "1");
    EXPECT_EQ(p.latLong, "0,1");
    writePositionFile("null");
    EXPECT_EQ(positionOf(location).latLong, "37.2539,127.046");
}

TEST(LocationFacet, ATextWhereOneNumberBelongsEmptiesTheJointAnswer)
{
    TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt",
        "json": [{"geo_la": 51.5, "geo_lo": "west"}]}]})");
    RetrieveDeviceDataEngineImplLocation location;
    const Position p = positionOf(location);
    EXPECT_EQ(p.latitude, "51.5");
    EXPECT_EQ(p.longitude, "");
    EXPECT_EQ(p.latLong, "");
}

TEST(LocationFacet, TheCountryIsTheLocaleEnUsEverywhere)
{
    TestDevice device(R"({"vconf": {"db/setting/country_code": "KR"}, "vc_setting": {"language": "ko_KR"}})");
    RetrieveDeviceDataEngineImplLocation location;
    EXPECT_EQ(location.getCountry(), "en-US");
}

TEST(LocationFacet, TheLocaleIsTheVoiceLanguageWithHyphens)
{
    TestDevice device(R"({"vc_setting": {"language": "ko_KR"}})");
    RetrieveDeviceDataEngineImplLocation location;
    EXPECT_EQ(location.getLocale(), "ko-KR");
    EXPECT_TRUE(logged("RetrieveDeviceDataEngineImplLocation::getLocale() ko-KR "));
    device.apply(R"({"vc_setting": {"language": "zh_Hans_CN"}})");
    EXPECT_EQ(location.getLocale(), "zh-Hans-CN");
}

TEST(LocationFacet, AFailedLanguageReadGivesEnUs)
{
    TestDevice device(R"({"vc_setting": {}})");
    RetrieveDeviceDataEngineImplLocation location;
    EXPECT_EQ(location.getLocale(), "en-US");
    device.apply(R"({"vc_setting": {"language": "ko_KR"}, "errors": {"vc_setting_get_language": "VC_ERROR_OPERATION_FAILED"}})");
    EXPECT_EQ(location.getLocale(), "en-US");
}

TEST(LocationFacet, TheCurrentTimeIsLocalTimeInSeconds)
{
    TestDevice device;
    RetrieveDeviceDataEngineImplLocation location;
    const time_t before = time(nullptr);
    const std::string text = location.getCurrentTime();
    const time_t after = time(nullptr);
    ASSERT_TRUE(std::regex_match(text, std::regex(R"(\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2})"))) << text;
    std::tm parsed = {};
    std::istringstream in(text);
    in >> std::get_time(&parsed, "%Y-%m-%d %H:%M:%S");
    parsed.tm_isdst = -1;
    const time_t back = mktime(&parsed);
    EXPECT_GE(back, before);
    EXPECT_LE(back, after);
    EXPECT_TRUE(logged("Get current time(" + text + ")"));
}

TEST(LocationFacet, AnEnabledServiceRunsWhileTheFacetLives)
{
    TestDevice device(R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": true}}})");
    {
        RetrieveDeviceDataEngineImplLocation location;
        EXPECT_NE(journal(device).find("location_start"), std::string::npos);
        EXPECT_EQ(journal(device).find("location_stop"), std::string::npos);
    }
    EXPECT_NE(journal(device).find("location_stop"), std::string::npos);
}

TEST(LocationFacet, ADisabledServiceIsNotStarted)
{
    TestDevice device(R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": false}}})");
    { RetrieveDeviceDataEngineImplLocation location; }
    EXPECT_EQ(journal(device).find("location_start"), std::string::npos);
    EXPECT_FALSE(logged("[ERROR] Fail to location manager"));
}

TEST(LocationFacet, ServiceFailuresAreLoggedAndLeaveThePositionAlone)
{
    TestDevice device(R"({"location": {"methods": {}}, "files": [{"tzplatform": 59, "name": "AccInfoData.txt",
        "json": [{"geo_la": 51.5074, "geo_lo": -0.1278}]}]})");
    {
        RetrieveDeviceDataEngineImplLocation location;
        EXPECT_TRUE(logged("[ERROR] Fail to location manager is enabled method("));
        EXPECT_EQ(location.getLatLong(), "51.5074,-0.1278");
    }
    EXPECT_EQ(journal(device).find("location_start"), std::string::npos);

    device.apply(R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": true}},
        "errors": {"location_manager_create": "LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE"}})");
    {
        RetrieveDeviceDataEngineImplLocation location;
        EXPECT_TRUE(logged("[ERROR] Fail to location manager create("));
        EXPECT_EQ(location.getLatitude(), "51.5074");
    }
    device.apply(R"({"errors": {"location_manager_start": "LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE"}})");
    {
        RetrieveDeviceDataEngineImplLocation location;
        EXPECT_TRUE(logged("[ERROR] Fail to location manager start("));
        EXPECT_EQ(location.getLongitude(), "-0.1278");
    }
    EXPECT_EQ(journal(device).find("location_start"), std::string::npos);
}
