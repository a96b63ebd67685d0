#include "RetrieveImpl/DA/DaDeviceDataRetrieverImpl.h"

IDeviceMorningBriefDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceMorningBriefDataRetriever()
{
    return &mMorningBrief;
}

IDeviceShoppingListDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceShoppingListDataRetriever()
{
    return &mShoppingList;
}

IDeviceStatusDataRetrieve* DaDeviceDataRetrieverImpl::getDeviceStatusDataRetriever()
{
    return &mStatus;
}
