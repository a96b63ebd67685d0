#ifndef DA_DEVICE_DATA_RETRIEVER_IMPL_H
#define DA_DEVICE_DATA_RETRIEVER_IMPL_H

#include "RetrieveImpl/DA/DaDeviceMorningBriefDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceShoppingListDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceStatusDataRetrieverImpl.h"
#include "RetrieveManager/IDeviceDataRetrieve.h"

// The appliance's set of device data retrievers. Music and timers come from the
// data store; until their readers are in place the manager answers those two
// facets from the fallback set.
class DaDeviceDataRetrieverImpl : public IDeviceDataRetrieve {
public:
    IDeviceMorningBriefDataRetrieve* getDeviceMorningBriefDataRetriever() override;
    IDeviceShoppingListDataRetrieve* getDeviceShoppingListDataRetriever() override;
    IDeviceStatusDataRetrieve* getDeviceStatusDataRetriever() override;

private:
    DaDeviceMorningBriefDataRetrieverImpl mMorningBrief;
    DaDeviceShoppingListDataRetrieverImpl mShoppingList;
    DaDeviceStatusDataRetrieverImpl mStatus;
};

#endif
