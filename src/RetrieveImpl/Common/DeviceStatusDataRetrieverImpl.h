#ifndef DEVICE_STATUS_DATA_RETRIEVER_IMPL_H
#define DEVICE_STATUS_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceStatusDataRetrieve.h"

// Fallback: only the customized driver response is switched on.
class DeviceStatusDataRetrieverImpl : public IDeviceStatusDataRetrieve {
public:
    bool useCustomizedDriverResponse() override;
};

#endif
