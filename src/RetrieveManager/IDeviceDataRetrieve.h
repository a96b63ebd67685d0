#ifndef I_DEVICE_DATA_RETRIEVE_H
#define I_DEVICE_DATA_RETRIEVE_H

class IDeviceMorningBriefDataRetrieve;
class IDeviceMusicDataRetrieve;
class IDeviceShoppingListDataRetrieve;
class IDeviceStatusDataRetrieve;
class IDeviceTimerDataRetrieve;

// One set of device data retrievers; each facet is owned by the set.
class IDeviceDataRetrieve {
public:
    virtual ~IDeviceDataRetrieve() {}
    virtual IDeviceMorningBriefDataRetrieve* getDeviceMorningBriefDataRetriever() { return nullptr; }
    virtual IDeviceMusicDataRetrieve* getDeviceMusicDataRetriever() { return nullptr; }
    virtual IDeviceShoppingListDataRetrieve* getDeviceShoppingListDataRetriever() { return nullptr; }
    virtual IDeviceStatusDataRetrieve* getDeviceStatusDataRetriever() { return nullptr; }
    virtual IDeviceTimerDataRetrieve* getDeviceTimerDataRetriever() { return nullptr; }
};

#endif
