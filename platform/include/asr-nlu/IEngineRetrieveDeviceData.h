#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_DATA_H

#include "IEngineRetrieveDeviceAlarmData.h"
#include "IEngineRetrieveDeviceClockData.h"
#include "IEngineRetrieveDeviceConfigData.h"
#include "IEngineRetrieveDeviceContactsData.h"
#include "IEngineRetrieveDeviceCustomData.h"
#include "IEngineRetrieveDeviceDependentStaticData.h"
#include "IEngineRetrieveDeviceLocationData.h"
#include "IEngineRetrieveDeviceMemoData.h"
#include "IEngineRetrieveDeviceMorningBriefData.h"
#include "IEngineRetrieveDeviceMusicData.h"
#include "IEngineRetrieveDeviceNavigationData.h"
#include "IEngineRetrieveDeviceNewsData.h"
#include "IEngineRetrieveDeviceServerTtsData.h"
#include "IEngineRetrieveDeviceSettingsData.h"
#include "IEngineRetrieveDeviceShoppingListData.h"
#include "IEngineRetrieveDeviceSoftwareData.h"
#include "IEngineRetrieveDeviceSystemData.h"
#include "IEngineRetrieveDeviceTimerData.h"

// The device data facade handed to Tessel::init: one operation per domain,
// each returning that domain's facet, which the caller only borrows. A bare
// facade has no facets. The order of the virtual operations is shared with
// the library; the destructor comes first.
class IEngineRetrieveDeviceData {
public:
    virtual ~IEngineRetrieveDeviceData() {}
    virtual IEngineRetrieveDeviceAlarmData* getDeviceAlarmData() { return nullptr; }
    virtual IEngineRetrieveDeviceClockData* getDeviceClockData() { return nullptr; }
    virtual IEngineRetrieveDeviceConfigData* getDeviceConfigData() { return nullptr; }
    virtual IEngineRetrieveDeviceContactsData* getDeviceContactsData() { return nullptr; }
    virtual IEngineRetrieveDeviceDependentStaticData* getDeviceDependentStaticData() { return nullptr; }
    virtual IEngineRetrieveDeviceLocationData* getDeviceLocationData() { return nullptr; }
    virtual IEngineRetrieveDeviceMemoData* getDeviceMemoData() { return nullptr; }
    virtual IEngineRetrieveDeviceMorningBriefData* getDeviceMorningBriefData() { return nullptr; }
    virtual IEngineRetrieveDeviceMusicData* getDeviceMusicData() { return nullptr; }
    virtual IEngineRetrieveDeviceNavigationData* getDeviceNavigationData() { return nullptr; }
    virtual IEngineRetrieveDeviceNewsData* getDeviceNewsData() { return nullptr; }
    virtual IEngineRetrieveDeviceServerTtsData* getDeviceServerTtsData() { return nullptr; }
    virtual IEngineRetrieveDeviceSettingsData* getDeviceSettingsData() { return nullptr; }
    virtual IEngineRetrieveDeviceShoppingListData* getDeviceShoppingListData() { return nullptr; }
    virtual IEngineRetrieveDeviceSoftwareData* getDeviceSoftwareData() { return nullptr; }
    virtual IEngineRetrieveDeviceSystemData* getDeviceSystemData() { return nullptr; }
    virtual IEngineRetrieveDeviceTimerData* getDeviceTimerData() { return nullptr; }
    virtual IEngineRetrieveDeviceCustomData* getDeviceCustomData() { return nullptr; }
};

#endif
