#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_H

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplAlarm.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplClock.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplConfig.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplContacts.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplCustom.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplLocation.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplMemo.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplMorningBrief.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplMusic.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplNavigation.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplNews.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplServerTts.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSettings.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplShoppingList.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSoftWare.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplStatic.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSystem.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplTimer.h"

#include <asr-nlu/IEngineRetrieveDeviceData.h>

// The device data facade handed to the speech library: a tree of two levels,
// the facets held by value, in alphabetical order, and returned by address.
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
    RetrieveDeviceDataEngineImplAlarm mAlarm;
    RetrieveDeviceDataEngineImplClock mClock;
    RetrieveDeviceDataEngineImplConfig mConfig;
    RetrieveDeviceDataEngineImplContacts mContacts;
    RetrieveDeviceDataEngineImplCustom mCustom;
    RetrieveDeviceDataEngineImplLocation mLocation;
    RetrieveDeviceDataEngineImplMemo mMemo;
    RetrieveDeviceDataEngineImplMorningBrief mMorningBrief;
    RetrieveDeviceDataEngineImplMusic mMusic;
    RetrieveDeviceDataEngineImplNavigation mNavigation;
    RetrieveDeviceDataEngineImplNews mNews;
    RetrieveDeviceDataEngineImplServerTts mServerTts;
    RetrieveDeviceDataEngineImplSettings mSettings;
    RetrieveDeviceDataEngineImplShoppingList mShoppingList;
    RetrieveDeviceDataEngineImplSoftWare mSoftWare;
    RetrieveDeviceDataEngineImplStatic mStatic;
    RetrieveDeviceDataEngineImplSystem mSystem;
    RetrieveDeviceDataEngineImplTimer mTimer;
};

#endif
