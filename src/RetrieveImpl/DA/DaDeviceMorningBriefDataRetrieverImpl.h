#ifndef DA_DEVICE_MORNING_BRIEF_DATA_RETRIEVER_IMPL_H
#define DA_DEVICE_MORNING_BRIEF_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceMorningBriefDataRetrieve.h"

// The appliance answers the morning brief questions with fixed values; the
// "MorningBrief" table is read by the NLU parameters and the recognition mode.
class DaDeviceMorningBriefDataRetrieverImpl : public IDeviceMorningBriefDataRetrieve {
public:
    bool appInstalled() override;
    bool appRunning() override;
};

#endif
