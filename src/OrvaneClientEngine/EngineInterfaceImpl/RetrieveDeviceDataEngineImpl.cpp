#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImpl.h"

#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImpl::RetrieveDeviceDataEngineImpl()
{
    LOGD("");
}

RetrieveDeviceDataEngineImpl::~RetrieveDeviceDataEngineImpl()
{
    LOGD("");
}

IEngineRetrieveDeviceAlarmData* RetrieveDeviceDataEngineImpl::getDeviceAlarmData()
{
    return &mAlarm;
}

IEngineRetrieveDeviceClockData* RetrieveDeviceDataEngineImpl::getDeviceClockData()
{
    return &mClock;
}

IEngineRetrieveDeviceConfigData* RetrieveDeviceDataEngineImpl::getDeviceConfigData()
{
    return &mConfig;
}

IEngineRetrieveDeviceContactsData* RetrieveDeviceDataEngineImpl::getDeviceContactsData()
{
    return &mContacts;
}

IEngineRetrieveDeviceDependentStaticData* RetrieveDeviceDataEngineImpl::getDeviceDependentStaticData()
{
    return &mStatic;
}

IEngineRetrieveDeviceLocationData* RetrieveDeviceDataEngineImpl::getDeviceLocationData()
{
    return &mLocation;
}

IEngineRetrieveDeviceMemoData* RetrieveDeviceDataEngineImpl::getDeviceMemoData()
{
    return &mMemo;
}

IEngineRetrieveDeviceMorningBriefData* RetrieveDeviceDataEngineImpl::getDeviceMorningBriefData()
{
    return &mMorningBrief;
}

IEngineRetrieveDeviceMusicData* RetrieveDeviceDataEngineImpl::getDeviceMusicData()
{
    return &mMusic;
}

IEngineRetrieveDeviceNavigationData* RetrieveDeviceDataEngineImpl::getDeviceNavigationData()
{
    return &mNavigation;
}

IEngineRetrieveDeviceNewsData* RetrieveDeviceDataEngineImpl::getDeviceNewsData()
{
    return &mNews;
}

IEngineRetrieveDeviceServerTtsData* RetrieveDeviceDataEngineImpl::getDeviceServerTtsData()
{
    return &mServerTts;
}

IEngineRetrieveDeviceSettingsData* RetrieveDeviceDataEngineImpl::getDeviceSettingsData()
{
    return &mSettings;
}

IEngineRetrieveDeviceShoppingListData* RetrieveDeviceDataEngineImpl::getDeviceShoppingListData()
{
    return &mShoppingList;
}

IEngineRetrieveDeviceSoftwareData* RetrieveDeviceDataEngineImpl::getDeviceSoftwareData()
{
    return &mSoftWare;
}

IEngineRetrieveDeviceSystemData* RetrieveDeviceDataEngineImpl::getDeviceSystemData()
{
    return &mSystem;
}

IEngineRetrieveDeviceTimerData* RetrieveDeviceDataEngineImpl::getDeviceTimerData()
{
    return &mTimer;
}

IEngineRetrieveDeviceCustomData* RetrieveDeviceDataEngineImpl::getDeviceCustomData()
{
    return &mCustom;
}
