#ifndef DEVICE_MORNING_BRIEF_DATA_RETRIEVER_IMPL_H
#define DEVICE_MORNING_BRIEF_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceMorningBriefDataRetrieve.h"

// Fallback: no morning brief app.
class DeviceMorningBriefDataRetrieverImpl : public IDeviceMorningBriefDataRetrieve {
public:
    DeviceMorningBriefDataRetrieverImpl();
    ~DeviceMorningBriefDataRetrieverImpl() override;
};

#endif
