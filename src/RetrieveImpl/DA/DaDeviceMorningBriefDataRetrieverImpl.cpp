#include "RetrieveImpl/DA/DaDeviceMorningBriefDataRetrieverImpl.h"

bool DaDeviceMorningBriefDataRetrieverImpl::appInstalled()
{
    return false;
}

bool DaDeviceMorningBriefDataRetrieverImpl::appRunning()
{
    return false;
}
