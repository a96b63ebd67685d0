#ifndef DA_DEVICE_STATUS_DATA_RETRIEVER_IMPL_H
#define DA_DEVICE_STATUS_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceStatusDataRetrieve.h"

// The appliance customizes recognition mode, NLU parameters and driver
// responses, and uses no Chinese contents provider.
class DaDeviceStatusDataRetrieverImpl : public IDeviceStatusDataRetrieve {
public:
    bool useChineseContentsProvider() override;
    bool useCustomizedRecognitionMode() override;
    bool useCustomizedNluParams() override;
    bool useCustomizedDriverResponse() override;
};

#endif
