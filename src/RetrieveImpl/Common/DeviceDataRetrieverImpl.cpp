#include "RetrieveImpl/Common/DeviceDataRetrieverImpl.h"

IDeviceMorningBriefDataRetrieve* DeviceDataRetrieverImpl::getDeviceMorningBriefDataRetriever()
{
    return &mMorningBrief;
}

IDeviceMusicDataRetrieve* DeviceDataRetrieverImpl::getDeviceMusicDataRetriever()
{
    return &mMusic;
}

IDeviceShoppingListDataRetrieve* DeviceDataRetrieverImpl::getDeviceShoppingListDataRetriever()
{
    return &mShoppingList;
}

IDeviceStatusDataRetrieve* DeviceDataRetrieverImpl::getDeviceStatusDataRetriever()
{
    return &mStatus;
}

IDeviceTimerDataRetrieve* DeviceDataRetrieverImpl::getDeviceTimerDataRetriever()
{
    return &mTimer;
}
