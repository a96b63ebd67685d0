#ifndef DEVICE_DATA_RETRIEVER_IMPL_H
#define DEVICE_DATA_RETRIEVER_IMPL_H

#include "RetrieveImpl/Common/DeviceMorningBriefDataRetrieverImpl.h"
#include "RetrieveImpl/Common/DeviceMusicDataRetrieverImpl.h"
#include "RetrieveImpl/Common/DeviceShoppingListDataRetrieverImpl.h"
#include "RetrieveImpl/Common/DeviceStatusDataRetrieverImpl.h"
#include "RetrieveImpl/Common/DeviceTimerDataRetrieverImpl.h"
#include "RetrieveManager/IDeviceDataRetrieve.h"

// The built-in fallback set of device data retrievers.
class DeviceDataRetrieverImpl : public IDeviceDataRetrieve {
public:
    IDeviceMorningBriefDataRetrieve* getDeviceMorningBriefDataRetriever() override;
    IDeviceMusicDataRetrieve* getDeviceMusicDataRetriever() override;
    IDeviceShoppingListDataRetrieve* getDeviceShoppingListDataRetriever() override;
    IDeviceStatusDataRetrieve* getDeviceStatusDataRetriever() override;
    IDeviceTimerDataRetrieve* getDeviceTimerDataRetriever() override;

private:
    DeviceMorningBriefDataRetrieverImpl mMorningBrief;
    DeviceMusicDataRetrieverImpl mMusic;
    DeviceShoppingListDataRetrieverImpl mShoppingList;
    DeviceStatusDataRetrieverImpl mStatus;
    DeviceTimerDataRetrieverImpl mTimer;
};

#endif
