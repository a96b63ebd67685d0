#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_DEPENDENT_STATIC_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_DEPENDENT_STATIC_DATA_H

#include <map>
#include <string>

// The device's fixed capability tables, one per domain. Keys and values are
// sent as they stand: case, blanks and mixed value styles ("FALSE", "true")
// are deliberate. Each operation refills its table and returns the member's
// address, so a table is empty until its operation has run and any change a
// caller makes is undone by the next call. The order of the virtual
// operations is shared with the speech library; the destructor comes last.
class IEngineRetrieveDeviceDependentStaticData {
public:
    typedef std::map<std::string, std::string> StaticTable;

    virtual StaticTable* getMusicStaticDeviceData()
    {
        mMusicStaticData = {
            {"addSongToPlaylistSupported", "False"},
            {"musicEditPlaylistEnabled", "False"},
            {"musicInOrderPlayEnabled", "False"},
            {"musicMarkAsFavoritesEnabled", "False"},
            {"musicMoodPlayEnabled", "False"},
            {"musicMSPlayEnabled", "False"},
            {"musicPlayAllEnabled", "False"},
            {"musicSimilarPlayEnabled", "False"},
            {"playAllMatchedEnable", "False"},
        };
        return &mMusicStaticData;
    }

    virtual StaticTable* getTimerStaticDeviceData()
    {
        mTimerStaticData = {
            {"timerConfirmationEnabled", "False"},
        };
        return &mTimerStaticData;
    }

    virtual StaticTable* getNavigationStaticDeviceData()
    {
        mNavigationStaticData = {
            {"navigationCancelRouteEnabled", "False"},
            {"navigationDestinationDistanceEnabled", "False"},
            {"navigationDestinationETAEnabled", "False"},
            {"REVERSERouteEnabled", "False"},
            {"navigationDirectionsBetweenLocationsEnabled", "False"},
            {"navigationPersonalDestinationEnabled", "False"},
        };
        return &mNavigationStaticData;
    }

    virtual StaticTable* getAlarmStaticDeviceData()
    {
        mAlarmStaticData = {
            {"alarmSearchByNameEnabled", "False"},
        };
        return &mAlarmStaticData;
    }

    virtual StaticTable* getMemoStaticDeviceData()
    {
        mMemoStaticData = {
            {"memoDeleteTextEnabled", "False"},
            {"memoSearchTypeEnabled", "False"},
            {"memoSearchTextEnabled", "False"},
            {"memoSearchTitleContentDisabled ", "True"},   // the trailing blank is part of the key
        };
        return &mMemoStaticData;
    }

    virtual StaticTable* getSystemStaticDeviceData()
    {
        mSystemStaticData = {
            {"isOneShotMode", "FALSE"},
            {"usePLM", "False"},
            {"maxGroupSMSSize", "25"},
            {"hideOffensiveWords", "true"},
            {"ampmRight", "True"},
            {"pageSize", "6"},
            {"userDeviceCategory", "Sorrel"},
            {"enableServerTTS", "False"},
            {"clientVersion", "2"},
        };
        return &mSystemStaticData;
    }

    virtual StaticTable* getSettingsStaticDeviceData()
    {
        mSettingsStaticData = {
            {"accessibilitySettings", "On"},
            {"aboutDeviceSettings", "On"},
            {"accountsSettings", "On"},
            {"applicationsSettings", "On"},
            {"backupResetSettings", "On"},
            {"batterySettings", "On"},
            {"datetimeSettings", "On"},
            {"displaySettings", "On"},
            {"easyModeSettings", "On"},
            {"edgeScreenSettings", "On"},
            {"globalRoamingSettings", "On"},
            {"helpSettings", "On"},
            {"languageInputSettings", "On"},
            {"lockScreenSettings", "On"},
            {"mobileNetworksSettings", "On"},
            {"moreSettings", "On"},
            {"motionsGesturesSettings", "On"},
            {"nfcAndPaymentSettings", "On"},
            {"privacyAndSafetySettings", "On"},
            {"soundAndNotificationsSettings", "On"},
            {"storageSettings", "On"},
            {"mobileHotSpotSettings", "On"},
            {"themeSettings", "On"},
            {"userSettings", "On"},
            {"wallPaperSettings", "On"},
            {"wifiDisplayOnOff", "Off"},
        };
        return &mSettingsStaticData;
    }

    virtual StaticTable* getHfdStaticDeviceData()
    {
        mHfdStaticData = {
            {"RecentCallsEnabled", "False"},
            {"enableConfirmCallNickname", "False"},
            {"enableAutoDisambiguation", "False"},
            {"enableCallConfirmation", "True"},
            {"pageSize", "5"},
            {"MissedCallsEnabled", "False"},
            {"SMSForwardEnabled", "False"},
        };
        return &mHfdStaticData;
    }

    virtual StaticTable* getNewsStaticDeviceData()
    {
        mNewsStaticData = {
            {"newsEnabled", "True"},
            {"localNewsProvider", "NONE"},
            {"keywordNewsProvider", "YHOO"},
            {"categoryNewsProvider", "CNNMobile"},
            {"clientNewsProvider", "False"},
            {"useWebNews", "False"},
        };
        return &mNewsStaticData;
    }

    virtual StaticTable* getContactsStaticDeviceData()
    {
        mContactsStaticData = {
            {"pageSize", "5"},
            {"contactsContactAddressEnabled", "False"},
            {"contactsContactDirectionsEnabled", "False"},
            {"contactsContactEmailDataEnabled", "False"},
            {"contactsContactEventDataEnabled", "False"},
            {"contactsGroupsEnabled", "False"},
        };
        return &mContactsStaticData;
    }

    virtual StaticTable* getCalendarStaticDeviceData()
    {
        mCalendarStaticData = {
            {"calendarCreateEventEnabled", "False"},
            {"calendarEditEventEnabled", "False"},
            {"calendarDeleteEventEnabled", "False"},
            {"calendarSearchEventEnabled", "True"},
            {"calendarSearchRecurrentEventEnabled", "False"},
            {"calendarCreateTaskEnabled", "False"},
            {"calendarEditTaskEnabled", "False"},
            {"calendarDeleteTaskEnabled", "False"},
            {"calendarSearchTaskEnabled", "False"},
            {"calendarSearchItemEnabled", "True"},
        };
        return &mCalendarStaticData;
    }

    virtual StaticTable* getOpenAppStaticDeviceData()
    {
        mOpenAppStaticData = {
            {"launchAppsEnabled", "True"},
            {"launchAppsInstalledEnabled", "False"},
        };
        return &mOpenAppStaticData;
    }

    virtual StaticTable* getWeatherStaticDeviceData()
    {
        mWeatherStaticData = {
            {"webSearchEnabled", "True"},
        };
        return &mWeatherStaticData;
    }

    virtual StaticTable* getPoiStaticDeviceData()
    {
        mPoiStaticData = {
            {"poiEnabled", "True"},
        };
        return &mPoiStaticData;
    }

    virtual StaticTable* getExcerciseStaticDeviceData()
    {
        mExcerciseStaticData = {
            {"currentExerciseName", "latest"},
        };
        return &mExcerciseStaticData;
    }

    virtual StaticTable* getHearthlinkStaticDeviceData()
    {
        mHearthlinkStaticData = {
            {"onDeviceHumidityTTS", "50 Percent"},
            {"12HourTime", "10 AM"},
            {"iAmBackRoutine", "True"},
            {"goodByeRoutine", "True"},
            {"goodNightRoutine", "True"},
            {"overrideMode", "False"},
            {"goodMorningRoutine", "True"},
        };
        return &mHearthlinkStaticData;
    }

    virtual StaticTable* getClientStaticDeviceData()
    {
        mClientStaticData = {
            {"id", "VBTServerAPTest"},
        };
        return &mClientStaticData;
    }

    virtual ~IEngineRetrieveDeviceDependentStaticData() {}

protected:
    StaticTable mMusicStaticData;
    StaticTable mMemoStaticData;
    StaticTable mSystemStaticData;
    StaticTable mSettingsStaticData;
    StaticTable mHfdStaticData;
    StaticTable mNewsStaticData;
    StaticTable mContactsStaticData;
    StaticTable mCalendarStaticData;
    StaticTable mOpenAppStaticData;
    StaticTable mWeatherStaticData;
    StaticTable mPoiStaticData;
    StaticTable mHearthlinkStaticData;
    StaticTable mClientStaticData;
    StaticTable mTimerStaticData;
    StaticTable mAlarmStaticData;
    StaticTable mExcerciseStaticData;
    StaticTable mNavigationStaticData;
};

#endif
