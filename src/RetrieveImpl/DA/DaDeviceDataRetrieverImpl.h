#ifndef DA_DEVICE_DATA_RETRIEVER_IMPL_H
#define DA_DEVICE_DATA_RETRIEVER_IMPL_H

#include "RetrieveImpl/DA/DaDeviceMorningBriefDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceShoppingListDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceStatusDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"
#include "RetrieveManager/IDeviceDataRetrieve.h"

// The appliance's set of device data retrievers. The music and timer facets
// connect to the data store when the set is built.
class DaDeviceDataRetrieverImpl : public IDeviceDataRetrieve {
public:
    IDeviceMorningBriefDataRetrieve* getDeviceMorningBriefDataRetriever() override;
    IDeviceMusicDataRetrieve* getDeviceMusicDataRetriever() override;
    IDeviceShoppingListDataRetrieve* getDeviceShoppingListDataRetriever() override;
    IDeviceStatusDataRetrieve* getDeviceStatusDataRetriever() override;
    IDeviceTimerDataRetrieve* getDeviceTimerDataRetriever() override;

private:
    DaDeviceMorningBriefDataRetrieverImpl mMorningBrief;
    DaDeviceMusicDataRetrieverImpl mMusic;
    DaDeviceShoppingListDataRetrieverImpl mShoppingList;
    DaDeviceStatusDataRetrieverImpl mStatus;
    DaDeviceTimerDataRetrieverImpl mTimer;
};

#endif
