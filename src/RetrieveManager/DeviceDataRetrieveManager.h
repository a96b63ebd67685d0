#ifndef DEVICE_DATA_RETRIEVE_MANAGER_H
#define DEVICE_DATA_RETRIEVE_MANAGER_H

#include "ClientManager/OrvaneMaster.h"
#include "RetrieveManager/IDeviceDataRetrieve.h"

// Two sets of device data retrievers: the appliance's, preferred, and a
// built-in fallback with fixed answers. The choice is made per facet.
class DeviceDataRetrieveManager : public OrvaneMaster {
public:
    DeviceDataRetrieveManager();
    virtual ~DeviceDataRetrieveManager();

    void setUserDeviceDataRetriever(IDeviceDataRetrieve* retriever);
    IDeviceDataRetrieve* getUserDeviceDataRetriever();
    IDeviceDataRetrieve* getInternalDeviceDataRetriever();

    IDeviceMorningBriefDataRetrieve* getMorningBriefRetriever();
    IDeviceMusicDataRetrieve* getMusicRetriever();
    IDeviceShoppingListDataRetrieve* getShoppingListRetriever();
    IDeviceStatusDataRetrieve* getStatusRetriever();
    IDeviceTimerDataRetrieve* getTimerRetriever();

private:
    IDeviceDataRetrieve* _createDivisonDataRetriever();

    IDeviceDataRetrieve* mUserRetriever;
    IDeviceDataRetrieve* mInternalRetriever;
};

#endif
