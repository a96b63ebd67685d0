#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_MORNING_BRIEF_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_MORNING_BRIEF_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceMorningBriefData.h>

// The morning brief facet: whether its app is installed and running, as the
// morning brief retriever tells.
class RetrieveDeviceDataEngineImplMorningBrief : public IEngineRetrieveDeviceMorningBriefData,
                                                 public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplMorningBrief();
    ~RetrieveDeviceDataEngineImplMorningBrief() override;

    bool appInstalled() override;
    bool appRunning() override;
};

#endif
