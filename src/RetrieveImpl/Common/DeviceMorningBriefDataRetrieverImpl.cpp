#include "RetrieveImpl/Common/DeviceMorningBriefDataRetrieverImpl.h"

#include "utils/MarlLog.h"

DeviceMorningBriefDataRetrieverImpl::DeviceMorningBriefDataRetrieverImpl()
{
    LOGD("");
}

DeviceMorningBriefDataRetrieverImpl::~DeviceMorningBriefDataRetrieverImpl()
{
    LOGD("");
}
