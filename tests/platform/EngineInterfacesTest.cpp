#include <asr-nlu/IEngineRetrieveDeviceData.h>

#include <json-glib/json-glib.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>

#include "VtableSlot.h"

typedef std::map<std::string, std::string> Table;

TEST(EngineInterfaces, BareRootAnswersNullForEveryFacet)
{
    IEngineRetrieveDeviceData root;
    EXPECT_EQ(root.getDeviceAlarmData(), nullptr);
    EXPECT_EQ(root.getDeviceClockData(), nullptr);
    EXPECT_EQ(root.getDeviceConfigData(), nullptr);
    EXPECT_EQ(root.getDeviceContactsData(), nullptr);
    EXPECT_EQ(root.getDeviceDependentStaticData(), nullptr);
    EXPECT_EQ(root.getDeviceLocationData(), nullptr);
    EXPECT_EQ(root.getDeviceMemoData(), nullptr);
    EXPECT_EQ(root.getDeviceMorningBriefData(), nullptr);
    EXPECT_EQ(root.getDeviceMusicData(), nullptr);
    EXPECT_EQ(root.getDeviceNavigationData(), nullptr);
    EXPECT_EQ(root.getDeviceNewsData(), nullptr);
    EXPECT_EQ(root.getDeviceServerTtsData(), nullptr);
    EXPECT_EQ(root.getDeviceSettingsData(), nullptr);
    EXPECT_EQ(root.getDeviceShoppingListData(), nullptr);
    EXPECT_EQ(root.getDeviceSoftwareData(), nullptr);
    EXPECT_EQ(root.getDeviceSystemData(), nullptr);
    EXPECT_EQ(root.getDeviceTimerData(), nullptr);
    EXPECT_EQ(root.getDeviceCustomData(), nullptr);
}

namespace {

class PlayingMusic : public IEngineRetrieveDeviceMusicData {
public:
    std::string isMusicPlaying() override { return "True"; }
};

class FacadeWithMusic : public IEngineRetrieveDeviceData {
public:
    IEngineRetrieveDeviceMusicData* getDeviceMusicData() override { return &mMusic; }

private:
    PlayingMusic mMusic;
};

} // namespace

TEST(EngineInterfaces, OverridesAreReachedThroughTheRootAndOthersKeepTheirBodies)
{
    FacadeWithMusic facade;
    IEngineRetrieveDeviceData* root = &facade;

    IEngineRetrieveDeviceMusicData* music = root->getDeviceMusicData();
    ASSERT_NE(music, nullptr);
    EXPECT_EQ(music, root->getDeviceMusicData());
    EXPECT_EQ(music->isMusicPlaying(), "True");
    EXPECT_EQ(music->getCurMusicAppVolume(), 5);
    EXPECT_EQ(music->getCurrentMusicAppName(), "None");
    EXPECT_EQ(root->getDeviceTimerData(), nullptr);
}

TEST(EngineInterfaces, AlarmDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceAlarmData facet;
    EXPECT_EQ(facet.getDefaultAlarmName(), "Alarm");
    EXPECT_EQ(facet.getAlarmPageSize(), "5");
}

TEST(EngineInterfaces, ClockDefaultIsTheInterfaceBody)
{
    IEngineRetrieveDeviceClockData facet;
    EXPECT_EQ(facet.getTimezone(), "-0800");
}

TEST(EngineInterfaces, ConfigDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceConfigData facet;
    EXPECT_EQ(facet.getCurrentVerbosity(), "0");
    EXPECT_EQ(facet.getDeviceProfileName(), "Common");
    EXPECT_EQ(facet.getRecoStateName(), "Marl Global");
    EXPECT_EQ(facet.getAsrRampCode(), "");
    EXPECT_EQ(facet.getNluRampCode(), "");
    EXPECT_FALSE(facet.useClientDP());
    EXPECT_EQ(facet.getLanguagePackPath(), "/home/owner/share/.voice/vc/engine/shared/data/");
}

TEST(EngineInterfaces, ContactsDefaultIsTheInterfaceBody)
{
    IEngineRetrieveDeviceContactsData facet;
    EXPECT_EQ(facet.isContactsSupported(), "False");
}

TEST(EngineInterfaces, CustomDefaultsAreNull)
{
    IEngineRetrieveDeviceCustomData facet;
    EXPECT_EQ(facet.getCustomDomainData(), nullptr);
    EXPECT_EQ(facet.getCustomRecoStateData(), nullptr);
}

namespace {

class OneGroupCustomData : public IEngineRetrieveDeviceCustomData {
public:
    std::map<std::string, JsonObject*>* getCustomDomainData() override
    {
        JsonObject* group = json_object_new();
        json_object_set_string_member(group, "isRunning", "True");
        return new std::map<std::string, JsonObject*>{{"Timer", group}};
    }
};

} // namespace

TEST(EngineInterfaces, CustomDataCarriesJsonGlibObjects)
{
    OneGroupCustomData custom;
    IEngineRetrieveDeviceCustomData* facet = &custom;

    std::map<std::string, _JsonObject*>* groups = facet->getCustomDomainData();
    ASSERT_NE(groups, nullptr);
    ASSERT_EQ(groups->size(), 1u);
    JsonObject* group = groups->at("Timer");
    EXPECT_STREQ(json_object_get_string_member(group, "isRunning"), "True");
    json_object_unref(group);
    delete groups;
}

TEST(EngineInterfaces, LocationDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceLocationData facet;
    EXPECT_EQ(facet.getCountry(), "");
    EXPECT_EQ(facet.getCurrentTime(), "");
    EXPECT_EQ(facet.getLatitude(), "");
    EXPECT_EQ(facet.getLatLong(), "");
    EXPECT_EQ(facet.getLocale(), "en-US");
    EXPECT_EQ(facet.getLongitude(), "");
}

TEST(EngineInterfaces, MemoDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceMemoData facet;
    EXPECT_EQ(facet.isVoiceMemoSupported(), "False");
    EXPECT_EQ(facet.isMemoStorageAvailable(), "False");
    EXPECT_EQ(facet.isMemoInstalled(), "False");
}

TEST(EngineInterfaces, MorningBriefDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceMorningBriefData facet;
    EXPECT_FALSE(facet.appInstalled());
    EXPECT_FALSE(facet.appRunning());
}

TEST(EngineInterfaces, MusicDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceMusicData facet;
    EXPECT_EQ(facet.getTuneCoveAvailableStatus(), "False");
    EXPECT_EQ(facet.getMusicMoodUri("calm"), "");
    EXPECT_EQ(facet.getMusicPlayStatus(), "False");
    EXPECT_EQ(facet.getMoodGridCatalogedStatus(), "False");
    EXPECT_EQ(facet.isGenreSupported(), "False");
    EXPECT_EQ(facet.isRepeatSupported(), "False");
    EXPECT_EQ(facet.isMusicSupported(), "False");
    EXPECT_EQ(facet.isMusicPlaying(), "False");
    EXPECT_EQ(facet.getSongName(), "");
    EXPECT_EQ(facet.getGenreName(), "");
    EXPECT_EQ(facet.getAlbumName(), "");
    EXPECT_EQ(facet.getArtistName(), "");
    EXPECT_EQ(facet.getCurrentMusicAppName(), "None");
    EXPECT_FALSE(facet.getCurrentSongStarMarked());
    EXPECT_FALSE(facet.getCurrentRadioStarMarked());
    EXPECT_FALSE(facet.isSleepMode());
    EXPECT_FALSE(facet.isMute());
    EXPECT_FALSE(facet.getCurMusicAppLoggedIn());
    EXPECT_EQ(facet.getCurMusicAppVolume(), 5);
    EXPECT_EQ(facet.getCurMusicAppMaxVolume(), 15);
}

TEST(EngineInterfaces, NavigationDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceNavigationData facet;
    EXPECT_EQ(facet.isNavigationInstalled(), "False");
    EXPECT_EQ(facet.isNavigationSupported(), "False");
}

TEST(EngineInterfaces, NewsDefaultIsTheInterfaceBody)
{
    IEngineRetrieveDeviceNewsData facet;
    EXPECT_EQ(facet.isFlipboardInstalled(), "False");
}

TEST(EngineInterfaces, ServerTtsDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceServerTtsData facet;
    EXPECT_FALSE(facet.getEnalbed());
    EXPECT_EQ(facet.getTeller(), "");
}

TEST(EngineInterfaces, SettingsDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceSettingsData facet;
    EXPECT_EQ(facet.getSettingsEnabledOnOffState(), "Off");
    EXPECT_EQ(facet.getBatteryCurrentPercentage(), "100");
    EXPECT_EQ(facet.getPowerSavingModeOnOffState(), "Off");
    EXPECT_EQ(facet.getWifiOnOffState(), "Off");
    EXPECT_EQ(facet.getDrivingModeOnOffState(), "Off");
    EXPECT_EQ(facet.getBlockModeOnOffState(), "Off");
    EXPECT_EQ(facet.getCallBlockModeOnOffState(), "Off");
    EXPECT_EQ(facet.getMuteOnOffState(), "Off");
    EXPECT_EQ(facet.getBluetoothOnOffState(), "Off");
    EXPECT_EQ(facet.getWifiConnectedAPName(), "");
    EXPECT_EQ(facet.getVibrateOnOff(), "Off");
    EXPECT_EQ(facet.getGPSOnOff(), "Off");
    EXPECT_EQ(facet.getBlueToothDevice(), "");
    EXPECT_EQ(facet.getAutoRotateOnOff(), "Off");
    EXPECT_EQ(facet.getWifiHotspotOnOff(), "Off");
    EXPECT_EQ(facet.getMobileDataOnOff(), "Off");
    EXPECT_EQ(facet.getNFCOnOff(), "Off");
    EXPECT_EQ(facet.getSyncOnOff(), "Off");
    EXPECT_EQ(facet.getLumbeamOnOff(), "Off");
    EXPECT_EQ(facet.getVolumePercent(), "100");
    EXPECT_EQ(facet.getAutoBrightnessOnOffState(), "On");
    EXPECT_EQ(facet.getVolumeLevel(), "");
    EXPECT_EQ(facet.getFlashLightOnOffState(), "Off");
    EXPECT_EQ(facet.getPrivateModeOnOffState(), "Off");
    EXPECT_EQ(facet.getDeepSaveOnOffState(), "Off");
    EXPECT_EQ(facet.getGazeHoldOnOffState(), "Off");
    EXPECT_EQ(facet.getScreenMirrorOnOffState(), "Off");
    EXPECT_EQ(facet.isAirplaneModeOn(), "Off");
    EXPECT_EQ(facet.isAnySubSettingSelectedForBlockMode(), "False");
    EXPECT_EQ(facet.isAnySubSettingSelectedForPowerSavingMode(), "False");
    EXPECT_EQ(facet.getSoundOnOffState(), "On");
}

TEST(EngineInterfaces, ShoppingListDefaultIsTheInterfaceBody)
{
    IEngineRetrieveDeviceShoppingListData facet;
    EXPECT_EQ(facet.getCurrentShoppingListSize(), 0);
}

TEST(EngineInterfaces, SoftwareDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceSoftwareData facet;
    EXPECT_EQ(facet.getOS_Language(), "en_US");
    EXPECT_EQ(facet.getOS_Ver(), "3.0");
    EXPECT_EQ(facet.getFirmware_ver(), "");
    EXPECT_EQ(facet.getMaker(), "");
    EXPECT_EQ(facet.getModel(), "");
    EXPECT_EQ(facet.getModelAndVersion(), "");
    EXPECT_EQ(facet.getProxyUrl(), "");
}

TEST(EngineInterfaces, SystemDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceSystemData facet;
    EXPECT_EQ(facet.checkForChineseCTC(), "False");
    EXPECT_EQ(facet.getCurrentTimeForCMA(), "");
    EXPECT_EQ(facet.getFindMyCarPkgName(), "");
    EXPECT_EQ(facet.getFindMyDevicePkgName(), "");
    EXPECT_EQ(facet.getPackageVersionCode("org.tizen.fridge-timer"), "");
    EXPECT_EQ(facet.getPhoneScreenHeight(), "");
    EXPECT_EQ(facet.getPhoneScreenWidth(), "");
    EXPECT_EQ(facet.getPhoneTelecom(), "");
    EXPECT_EQ(facet.getPhoneThumbnailHeight(), "");
    EXPECT_EQ(facet.getPhoneThumbnailWidth(), "");
    EXPECT_EQ(facet.getUniqueDeviceIdentifier(), "");
    EXPECT_EQ(facet.getWeatherSetting(), "");
    EXPECT_EQ(facet.isChineseModel(), "False");
    EXPECT_EQ(facet.isDeviceHas2MicNSEnabled(), "False");
    EXPECT_EQ(facet.isIOSAttached(), "False");
    EXPECT_EQ(facet.isSMSAvailable(), "False");
    EXPECT_EQ(facet.IsTemperatureTypeFahrenheit(), "False");
    EXPECT_EQ(facet.isVideoCallSupported(), "False");
    EXPECT_EQ(facet.isVoiceCallSupported(), "False");
    EXPECT_EQ(facet.isVoiceMailAvailable(), "False");
}

TEST(EngineInterfaces, TimerDefaultsAreTheInterfaceBodies)
{
    IEngineRetrieveDeviceTimerData facet;
    EXPECT_FALSE(facet.supportMultipleControl());
    EXPECT_EQ(facet.getTimerActivatedCount(), 0);
    EXPECT_EQ(facet.getTimerMaxCount(), 0);
    EXPECT_EQ(facet.getTimerCancelEnabled(), "False");
    EXPECT_EQ(facet.getTimerConfirmationEnabled(), "False");
    EXPECT_EQ(facet.getTimerCreatableId(), "");
    EXPECT_EQ(facet.getTimerCreateEnabled(), "False");
    EXPECT_EQ(facet.getTimerCurrentId(), "");
    EXPECT_EQ(facet.getTimerEnabled(), "False");
    EXPECT_EQ(facet.getTimerResetEnabled(), "False");
    EXPECT_EQ(facet.getTimerShowEnabled(), "False");
    EXPECT_EQ(facet.getTimerStartEnabled(), "False");
    EXPECT_EQ(facet.getTimerStopEnabled(), "False");
    EXPECT_EQ(facet.getTimerTaskEnabled(), "False");
    EXPECT_EQ(facet.isTimerRunning(), "False");
    EXPECT_EQ(facet.isTimerWidgetActive(), "False");
    EXPECT_EQ(facet.setTimerSetFromApp(), "False");
    EXPECT_EQ(facet.setTimerTime(), "");
}

TEST(EngineInterfaces, StaticTablesHoldTheirExactEntries)
{
    IEngineRetrieveDeviceDependentStaticData facet;

    EXPECT_EQ(*facet.getMusicStaticDeviceData(), (Table{
        {"addSongToPlaylistSupported", "False"}, {"musicEditPlaylistEnabled", "False"},
        {"musicInOrderPlayEnabled", "False"}, {"musicMarkAsFavoritesEnabled", "False"},
        {"musicMoodPlayEnabled", "False"}, {"musicMSPlayEnabled", "False"},
        {"musicPlayAllEnabled", "False"}, {"musicSimilarPlayEnabled", "False"},
        {"playAllMatchedEnable", "False"}}));
    EXPECT_EQ(*facet.getTimerStaticDeviceData(), (Table{{"timerConfirmationEnabled", "False"}}));
    EXPECT_EQ(*facet.getNavigationStaticDeviceData(), (Table{
        {"navigationCancelRouteEnabled", "False"}, {"navigationDestinationDistanceEnabled", "False"},
        {"navigationDestinationETAEnabled", "False"}, {"REVERSERouteEnabled", "False"},
        {"navigationDirectionsBetweenLocationsEnabled", "False"},
        {"navigationPersonalDestinationEnabled", "False"}}));
    EXPECT_EQ(*facet.getAlarmStaticDeviceData(), (Table{{"alarmSearchByNameEnabled", "False"}}));
    EXPECT_EQ(*facet.getMemoStaticDeviceData(), (Table{
        {"memoDeleteTextEnabled", "False"}, {"memoSearchTypeEnabled", "False"},
        {"memoSearchTextEnabled", "False"}, {"memoSearchTitleContentDisabled ", "True"}}));
    EXPECT_EQ(*facet.getSystemStaticDeviceData(), (Table{
        {"isOneShotMode", "FALSE"}, {"usePLM", "False"}, {"maxGroupSMSSize", "25"},
        {"hideOffensiveWords", "true"}, {"ampmRight", "True"}, {"pageSize", "6"},
        {"userDeviceCategory", "Sorrel"}, {"enableServerTTS", "False"}, {"clientVersion", "2"}}));
    EXPECT_EQ(*facet.getHfdStaticDeviceData(), (Table{
        {"RecentCallsEnabled", "False"}, {"enableConfirmCallNickname", "False"},
        {"enableAutoDisambiguation", "False"}, {"enableCallConfirmation", "True"},
        {"pageSize", "5"}, {"MissedCallsEnabled", "False"}, {"SMSForwardEnabled", "False"}}));
    EXPECT_EQ(*facet.getNewsStaticDeviceData(), (Table{
        {"newsEnabled", "True"}, {"localNewsProvider", "NONE"}, {"keywordNewsProvider", "YHOO"},
        {"categoryNewsProvider", "CNNMobile"}, {"clientNewsProvider", "False"}, {"useWebNews", "False"}}));
    EXPECT_EQ(*facet.getContactsStaticDeviceData(), (Table{
        {"pageSize", "5"}, {"contactsContactAddressEnabled", "False"},
        {"contactsContactDirectionsEnabled", "False"}, {"contactsContactEmailDataEnabled", "False"},
        {"contactsContactEventDataEnabled", "False"}, {"contactsGroupsEnabled", "False"}}));
    EXPECT_EQ(*facet.getCalendarStaticDeviceData(), (Table{
        {"calendarCreateEventEnabled", "False"}, {"calendarEditEventEnabled", "False"},
        {"calendarDeleteEventEnabled", "False"}, {"calendarSearchEventEnabled", "True"},
        {"calendarSearchRecurrentEventEnabled", "False"}, {"calendarCreateTaskEnabled", "False"},
        {"calendarEditTaskEnabled", "False"}, {"calendarDeleteTaskEnabled", "False"},
        {"calendarSearchTaskEnabled", "False"}, {"calendarSearchItemEnabled", "True"}}));
    EXPECT_EQ(*facet.getOpenAppStaticDeviceData(), (Table{
        {"launchAppsEnabled", "True"}, {"launchAppsInstalledEnabled", "False"}}));
    EXPECT_EQ(*facet.getWeatherStaticDeviceData(), (Table{{"webSearchEnabled", "True"}}));
    EXPECT_EQ(*facet.getPoiStaticDeviceData(), (Table{{"poiEnabled", "True"}}));
    EXPECT_EQ(*facet.getExcerciseStaticDeviceData(), (Table{{"currentExerciseName", "latest"}}));
    EXPECT_EQ(*facet.getHearthlinkStaticDeviceData(), (Table{
        {"onDeviceHumidityTTS", "50 Percent"}, {"12HourTime", "10 AM"}, {"iAmBackRoutine", "True"},
        {"goodByeRoutine", "True"}, {"goodNightRoutine", "True"}, {"overrideMode", "False"},
        {"goodMorningRoutine", "True"}}));
    EXPECT_EQ(*facet.getClientStaticDeviceData(), (Table{{"id", "VBTServerAPTest"}}));
}

TEST(EngineInterfaces, StaticSettingsTableIsAllOnButWifiDisplay)
{
    IEngineRetrieveDeviceDependentStaticData facet;
    const Table& settings = *facet.getSettingsStaticDeviceData();

    const char* onKeys[] = {
        "accessibilitySettings", "aboutDeviceSettings", "accountsSettings", "applicationsSettings",
        "backupResetSettings", "batterySettings", "datetimeSettings", "displaySettings",
        "easyModeSettings", "edgeScreenSettings", "globalRoamingSettings", "helpSettings",
        "languageInputSettings", "lockScreenSettings", "mobileNetworksSettings", "moreSettings",
        "motionsGesturesSettings", "nfcAndPaymentSettings", "privacyAndSafetySettings",
        "soundAndNotificationsSettings", "storageSettings", "mobileHotSpotSettings", "themeSettings",
        "userSettings", "wallPaperSettings"};
    ASSERT_EQ(settings.size(), 26u);
    for (const char* key : onKeys) {
        ASSERT_EQ(settings.count(key), 1u) << key;
        EXPECT_EQ(settings.at(key), "On") << key;
    }
    EXPECT_EQ(settings.at("wifiDisplayOnOff"), "Off");
}

TEST(EngineInterfaces, StaticTableSizesAreFixed)
{
    IEngineRetrieveDeviceDependentStaticData facet;
    EXPECT_EQ(facet.getMusicStaticDeviceData()->size(), 9u);
    EXPECT_EQ(facet.getTimerStaticDeviceData()->size(), 1u);
    EXPECT_EQ(facet.getNavigationStaticDeviceData()->size(), 6u);
    EXPECT_EQ(facet.getAlarmStaticDeviceData()->size(), 1u);
    EXPECT_EQ(facet.getMemoStaticDeviceData()->size(), 4u);
    EXPECT_EQ(facet.getSystemStaticDeviceData()->size(), 9u);
    EXPECT_EQ(facet.getSettingsStaticDeviceData()->size(), 26u);
    EXPECT_EQ(facet.getHfdStaticDeviceData()->size(), 7u);
    EXPECT_EQ(facet.getNewsStaticDeviceData()->size(), 6u);
    EXPECT_EQ(facet.getContactsStaticDeviceData()->size(), 6u);
    EXPECT_EQ(facet.getCalendarStaticDeviceData()->size(), 10u);
    EXPECT_EQ(facet.getOpenAppStaticDeviceData()->size(), 2u);
    EXPECT_EQ(facet.getWeatherStaticDeviceData()->size(), 1u);
    EXPECT_EQ(facet.getPoiStaticDeviceData()->size(), 1u);
    EXPECT_EQ(facet.getExcerciseStaticDeviceData()->size(), 1u);
    EXPECT_EQ(facet.getHearthlinkStaticDeviceData()->size(), 7u);
    EXPECT_EQ(facet.getClientStaticDeviceData()->size(), 1u);
}

TEST(EngineInterfaces, StaticMemoTableKeepsTheTrailingBlank)
{
    IEngineRetrieveDeviceDependentStaticData facet;
    const Table& memo = *facet.getMemoStaticDeviceData();
    ASSERT_EQ(memo.count("memoSearchTitleContentDisabled "), 1u);
    EXPECT_EQ(memo.at("memoSearchTitleContentDisabled "), "True");
    EXPECT_EQ(memo.count("memoSearchTitleContentDisabled"), 0u);
}

TEST(EngineInterfaces, StaticTablesKeepTheirOddValueStyles)
{
    IEngineRetrieveDeviceDependentStaticData facet;
    const Table& system = *facet.getSystemStaticDeviceData();
    EXPECT_EQ(system.at("isOneShotMode"), "FALSE");
    EXPECT_EQ(system.at("hideOffensiveWords"), "true");
    EXPECT_EQ(system.at("pageSize"), "6");
    EXPECT_EQ(facet.getHfdStaticDeviceData()->at("pageSize"), "5");
    EXPECT_EQ(facet.getContactsStaticDeviceData()->at("pageSize"), "5");
}

namespace {

// Opens the protected tables to the tests.
class StaticDataPeek : public IEngineRetrieveDeviceDependentStaticData {
public:
    using IEngineRetrieveDeviceDependentStaticData::mMusicStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mMemoStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mSystemStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mSettingsStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mHfdStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mNewsStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mContactsStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mCalendarStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mOpenAppStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mWeatherStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mPoiStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mHearthlinkStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mClientStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mTimerStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mAlarmStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mExcerciseStaticData;
    using IEngineRetrieveDeviceDependentStaticData::mNavigationStaticData;
};

} // namespace

TEST(EngineInterfaces, StaticTablesAreEmptyUntilTheirOperationRuns)
{
    StaticDataPeek facet;
    EXPECT_TRUE(facet.mMusicStaticData.empty());
    EXPECT_TRUE(facet.mNavigationStaticData.empty());

    Table* music = facet.getMusicStaticDeviceData();
    EXPECT_EQ(music, &facet.mMusicStaticData);
    EXPECT_EQ(music->size(), 9u);
    EXPECT_TRUE(facet.mNavigationStaticData.empty());
}

TEST(EngineInterfaces, StaticTablesAreDeclaredInDomainOrder)
{
    StaticDataPeek facet;
    const Table* inOrder[] = {
        &facet.mMusicStaticData, &facet.mMemoStaticData, &facet.mSystemStaticData,
        &facet.mSettingsStaticData, &facet.mHfdStaticData, &facet.mNewsStaticData,
        &facet.mContactsStaticData, &facet.mCalendarStaticData, &facet.mOpenAppStaticData,
        &facet.mWeatherStaticData, &facet.mPoiStaticData, &facet.mHearthlinkStaticData,
        &facet.mClientStaticData, &facet.mTimerStaticData, &facet.mAlarmStaticData,
        &facet.mExcerciseStaticData, &facet.mNavigationStaticData};
    for (size_t i = 1; i < sizeof inOrder / sizeof inOrder[0]; ++i)
        EXPECT_LT(reinterpret_cast<const char*>(inOrder[i - 1]), reinterpret_cast<const char*>(inOrder[i])) << i;
}

TEST(EngineInterfaces, StaticTableIsRestoredOnEveryCall)
{
    IEngineRetrieveDeviceDependentStaticData facet;
    Table* first = facet.getSystemStaticDeviceData();
    (*first)["pageSize"] = "99";
    (*first)["extra"] = "x";

    Table* second = facet.getSystemStaticDeviceData();
    EXPECT_EQ(second, first);
    EXPECT_EQ(second->at("pageSize"), "6");
    EXPECT_EQ(second->count("extra"), 0u);
    EXPECT_EQ(second->size(), 9u);
}

TEST(EngineInterfaces, RootSlotsFollowTheLibraryOrder)
{
    typedef IEngineRetrieveDeviceData R;
    static_assert(std::has_virtual_destructor<R>::value, "virtual destructor");
    EXPECT_EQ(vtableSlots(&R::getDeviceAlarmData, &R::getDeviceClockData, &R::getDeviceConfigData,
                          &R::getDeviceContactsData, &R::getDeviceDependentStaticData,
                          &R::getDeviceLocationData, &R::getDeviceMemoData, &R::getDeviceMorningBriefData,
                          &R::getDeviceMusicData, &R::getDeviceNavigationData, &R::getDeviceNewsData,
                          &R::getDeviceServerTtsData, &R::getDeviceSettingsData,
                          &R::getDeviceShoppingListData, &R::getDeviceSoftwareData,
                          &R::getDeviceSystemData, &R::getDeviceTimerData, &R::getDeviceCustomData),
              consecutiveSlots(2, 18));
}

// Facets whose destructor comes last start at slot 0; those whose destructor
// comes first start at slot 2, after its two entries.
TEST(EngineInterfaces, FacetSlotsFollowTheLibraryOrder)
{
    {
        typedef IEngineRetrieveDeviceAlarmData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::getDefaultAlarmName, &F::getAlarmPageSize), consecutiveSlots(0, 2));
    }
    {
        typedef IEngineRetrieveDeviceClockData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::getTimezone), consecutiveSlots(0, 1));
    }
    {
        typedef IEngineRetrieveDeviceConfigData F;
        EXPECT_EQ(vtableSlots(&F::getCurrentVerbosity, &F::getDeviceProfileName, &F::getRecoStateName,
                              &F::getAsrRampCode, &F::getNluRampCode, &F::useClientDP,
                              &F::getLanguagePackPath),
                  consecutiveSlots(2, 7));
    }
    {
        typedef IEngineRetrieveDeviceContactsData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::isContactsSupported), consecutiveSlots(0, 1));
    }
    {
        typedef IEngineRetrieveDeviceCustomData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::getCustomDomainData, &F::getCustomRecoStateData), consecutiveSlots(0, 2));
    }
    {
        typedef IEngineRetrieveDeviceDependentStaticData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::getMusicStaticDeviceData, &F::getTimerStaticDeviceData,
                              &F::getNavigationStaticDeviceData, &F::getAlarmStaticDeviceData,
                              &F::getMemoStaticDeviceData, &F::getSystemStaticDeviceData,
                              &F::getSettingsStaticDeviceData, &F::getHfdStaticDeviceData,
                              &F::getNewsStaticDeviceData, &F::getContactsStaticDeviceData,
                              &F::getCalendarStaticDeviceData, &F::getOpenAppStaticDeviceData,
                              &F::getWeatherStaticDeviceData, &F::getPoiStaticDeviceData,
                              &F::getExcerciseStaticDeviceData, &F::getHearthlinkStaticDeviceData,
                              &F::getClientStaticDeviceData),
                  consecutiveSlots(0, 17));
    }
    {
        typedef IEngineRetrieveDeviceLocationData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::getCountry, &F::getCurrentTime, &F::getLatitude, &F::getLatLong,
                              &F::getLocale, &F::getLongitude),
                  consecutiveSlots(0, 6));
    }
    {
        typedef IEngineRetrieveDeviceMemoData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::isVoiceMemoSupported, &F::isMemoStorageAvailable, &F::isMemoInstalled),
                  consecutiveSlots(0, 3));
    }
    {
        typedef IEngineRetrieveDeviceMorningBriefData F;
        EXPECT_EQ(vtableSlots(&F::appInstalled, &F::appRunning), consecutiveSlots(2, 2));
    }
    {
        typedef IEngineRetrieveDeviceMusicData F;
        EXPECT_EQ(vtableSlots(&F::getTuneCoveAvailableStatus, &F::getMusicMoodUri, &F::getMusicPlayStatus,
                              &F::getMoodGridCatalogedStatus, &F::isGenreSupported, &F::isRepeatSupported,
                              &F::isMusicSupported, &F::isMusicPlaying, &F::getSongName, &F::getGenreName,
                              &F::getAlbumName, &F::getArtistName, &F::getCurrentMusicAppName,
                              &F::getCurrentSongStarMarked, &F::getCurrentRadioStarMarked, &F::isSleepMode,
                              &F::isMute, &F::getCurMusicAppLoggedIn, &F::getCurMusicAppVolume,
                              &F::getCurMusicAppMaxVolume),
                  consecutiveSlots(2, 20));
    }
    {
        typedef IEngineRetrieveDeviceNavigationData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::isNavigationInstalled, &F::isNavigationSupported), consecutiveSlots(0, 2));
    }
    {
        typedef IEngineRetrieveDeviceNewsData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::isFlipboardInstalled), consecutiveSlots(0, 1));
    }
    {
        typedef IEngineRetrieveDeviceServerTtsData F;
        EXPECT_EQ(vtableSlots(&F::getEnalbed, &F::getTeller), consecutiveSlots(2, 2));
    }
    {
        typedef IEngineRetrieveDeviceSettingsData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::getSettingsEnabledOnOffState, &F::getBatteryCurrentPercentage,
                              &F::getPowerSavingModeOnOffState, &F::getWifiOnOffState,
                              &F::getDrivingModeOnOffState, &F::getBlockModeOnOffState,
                              &F::getCallBlockModeOnOffState, &F::getMuteOnOffState,
                              &F::getBluetoothOnOffState, &F::getWifiConnectedAPName, &F::getVibrateOnOff,
                              &F::getGPSOnOff, &F::getBlueToothDevice, &F::getAutoRotateOnOff,
                              &F::getWifiHotspotOnOff, &F::getMobileDataOnOff, &F::getNFCOnOff,
                              &F::getSyncOnOff, &F::getLumbeamOnOff, &F::getVolumePercent,
                              &F::getAutoBrightnessOnOffState, &F::getVolumeLevel,
                              &F::getFlashLightOnOffState, &F::getPrivateModeOnOffState,
                              &F::getDeepSaveOnOffState, &F::getGazeHoldOnOffState,
                              &F::getScreenMirrorOnOffState, &F::isAirplaneModeOn,
                              &F::isAnySubSettingSelectedForBlockMode,
                              &F::isAnySubSettingSelectedForPowerSavingMode, &F::getSoundOnOffState),
                  consecutiveSlots(0, 31));
    }
    {
        typedef IEngineRetrieveDeviceShoppingListData F;
        EXPECT_EQ(vtableSlots(&F::getCurrentShoppingListSize), consecutiveSlots(2, 1));
    }
    {
        typedef IEngineRetrieveDeviceSoftwareData F;
        static_assert(std::has_virtual_destructor<F>::value, "virtual destructor");
        EXPECT_EQ(vtableSlots(&F::getOS_Language, &F::getOS_Ver, &F::getFirmware_ver, &F::getMaker,
                              &F::getModel, &F::getModelAndVersion, &F::getProxyUrl),
                  consecutiveSlots(0, 7));
    }
    {
        typedef IEngineRetrieveDeviceSystemData F;
        EXPECT_EQ(vtableSlots(&F::checkForChineseCTC, &F::getCurrentTimeForCMA, &F::getFindMyCarPkgName,
                              &F::getFindMyDevicePkgName, &F::getPackageVersionCode,
                              &F::getPhoneScreenHeight, &F::getPhoneScreenWidth, &F::getPhoneTelecom,
                              &F::getPhoneThumbnailHeight, &F::getPhoneThumbnailWidth,
                              &F::getUniqueDeviceIdentifier, &F::getWeatherSetting, &F::isChineseModel,
                              &F::isDeviceHas2MicNSEnabled, &F::isIOSAttached, &F::isSMSAvailable,
                              &F::IsTemperatureTypeFahrenheit, &F::isVideoCallSupported,
                              &F::isVoiceCallSupported, &F::isVoiceMailAvailable),
                  consecutiveSlots(2, 20));
    }
    {
        typedef IEngineRetrieveDeviceTimerData F;
        EXPECT_EQ(vtableSlots(&F::supportMultipleControl, &F::getTimerActivatedCount, &F::getTimerMaxCount,
                              &F::getTimerCancelEnabled, &F::getTimerConfirmationEnabled,
                              &F::getTimerCreatableId, &F::getTimerCreateEnabled, &F::getTimerCurrentId,
                              &F::getTimerEnabled, &F::getTimerResetEnabled, &F::getTimerShowEnabled,
                              &F::getTimerStartEnabled, &F::getTimerStopEnabled, &F::getTimerTaskEnabled,
                              &F::isTimerRunning, &F::isTimerWidgetActive, &F::setTimerSetFromApp,
                              &F::setTimerTime),
                  consecutiveSlots(2, 18));
    }
}
