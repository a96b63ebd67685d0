#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_H

#include <asr-nlu/IEngineRetrieveDeviceData.h>
#include <asr-nlu/IEngineRetrieveDeviceAlarmData.h>
#include <asr-nlu/IEngineRetrieveDeviceClockData.h>
#include <asr-nlu/IEngineRetrieveDeviceConfigData.h>
#include <asr-nlu/IEngineRetrieveDeviceContactsData.h>
#include <asr-nlu/IEngineRetrieveDeviceCustomData.h>
#include <asr-nlu/IEngineRetrieveDeviceLocationData.h>
#include <asr-nlu/IEngineRetrieveDeviceMemoData.h>
#include <asr-nlu/IEngineRetrieveDeviceMorningBriefData.h>
#include <asr-nlu/IEngineRetrieveDeviceMusicData.h>
#include <asr-nlu/IEngineRetrieveDeviceNavigationData.h>
#include <asr-nlu/IEngineRetrieveDeviceNewsData.h>
#include <asr-nlu/IEngineRetrieveDeviceServerTtsData.h>
#include <asr-nlu/IEngineRetrieveDeviceSettingsData.h>
#include <asr-nlu/IEngineRetrieveDeviceShoppingListData.h>
#include <asr-nlu/IEngineRetrieveDeviceSoftwareData.h>
#include <asr-nlu/IEngineRetrieveDeviceDependentStaticData.h>
#include <asr-nlu/IEngineRetrieveDeviceSystemData.h>
#include <asr-nlu/IEngineRetrieveDeviceTimerData.h>

// The device data facade handed to the speech library: a tree of two levels,
// the facets held by value and returned by address. Facets not yet built for
// the appliance answer with their interface's defaults.
class RetrieveDeviceDataEngineImpl : public IEngineRetrieveDeviceData {
public:
    RetrieveDeviceDataEngineImpl();
    ~RetrieveDeviceDataEngineImpl() override;

    IEngineRetrieveDeviceAlarmData* getDeviceAlarmData() override;
    IEngineRetrieveDeviceClockData* getDeviceClockData() override;
    IEngineRetrieveDeviceConfigData* getDeviceConfigData() override;
    IEngineRetrieveDeviceContactsData* getDeviceContactsData() override;
    IEngineRetrieveDeviceDependentStaticData* getDeviceDependentStaticData() override;
    IEngineRetrieveDeviceLocationData* getDeviceLocationData() override;
    IEngineRetrieveDeviceMemoData* getDeviceMemoData() override;
    IEngineRetrieveDeviceMorningBriefData* getDeviceMorningBriefData() override;
    IEngineRetrieveDeviceMusicData* getDeviceMusicData() override;
    IEngineRetrieveDeviceNavigationData* getDeviceNavigationData() override;
    IEngineRetrieveDeviceNewsData* getDeviceNewsData() override;
    IEngineRetrieveDeviceServerTtsData* getDeviceServerTtsData() override;
    IEngineRetrieveDeviceSettingsData* getDeviceSettingsData() override;
    IEngineRetrieveDeviceShoppingListData* getDeviceShoppingListData() override;
    IEngineRetrieveDeviceSoftwareData* getDeviceSoftwareData() override;
    IEngineRetrieveDeviceSystemData* getDeviceSystemData() override;
    IEngineRetrieveDeviceTimerData* getDeviceTimerData() override;
    IEngineRetrieveDeviceCustomData* getDeviceCustomData() override;

private:
    IEngineRetrieveDeviceAlarmData mAlarm;
    IEngineRetrieveDeviceClockData mClock;
    IEngineRetrieveDeviceConfigData mConfig;
    IEngineRetrieveDeviceContactsData mContacts;
    IEngineRetrieveDeviceCustomData mCustom;
    IEngineRetrieveDeviceLocationData mLocation;
    IEngineRetrieveDeviceMemoData mMemo;
    IEngineRetrieveDeviceMorningBriefData mMorningBrief;
    IEngineRetrieveDeviceMusicData mMusic;
    IEngineRetrieveDeviceNavigationData mNavigation;
    IEngineRetrieveDeviceNewsData mNews;
    IEngineRetrieveDeviceServerTtsData mServerTts;
    IEngineRetrieveDeviceSettingsData mSettings;
    IEngineRetrieveDeviceShoppingListData mShoppingList;
    IEngineRetrieveDeviceSoftwareData mSoftWare;
    IEngineRetrieveDeviceDependentStaticData mStatic;
    IEngineRetrieveDeviceSystemData mSystem;
    IEngineRetrieveDeviceTimerData mTimer;
};

#endif
