#include "RetrieveImpl/DA/DaDeviceDataRetrieverImpl.h"

IDeviceMorningBriefDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceMorningBriefDataRetriever()
{
    return &mMorningBrief;
}

IDeviceMusicDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceMusicDataRetriever()
{
    return &mMusic;
}

IDeviceShoppingListDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceShoppingListDataRetriever()
{
    return &mShoppingList;
}

IDeviceStatusDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceStatusDataRetriever()
{
    return &mStatus;
}

IDeviceTimerDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceTimerDataRetriever()
{
    return &mTimer;
}
