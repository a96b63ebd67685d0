#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_STATIC_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_STATIC_H

#include <asr-nlu/IEngineRetrieveDeviceDependentStaticData.h>

// The static capability facet. The interface holds the tables and fills them;
// this class only marks its construction and destruction in the log.
class RetrieveDeviceDataEngineImplStatic : public IEngineRetrieveDeviceDependentStaticData {
public:
    RetrieveDeviceDataEngineImplStatic();
    ~RetrieveDeviceDataEngineImplStatic() override;
};

#endif
