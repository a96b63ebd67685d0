#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplMorningBrief.h"

#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceMorningBriefDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplMorningBrief::RetrieveDeviceDataEngineImplMorningBrief()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplMorningBrief::~RetrieveDeviceDataEngineImplMorningBrief()
{
    LOGD("");
}

bool RetrieveDeviceDataEngineImplMorningBrief::appInstalled()
{
    bool result = false;
    IDeviceMorningBriefDataRetrieve* retriever =
        getWrapper()->getDeviceDataRetrieveManager()->getMorningBriefRetriever();
    if (!retriever)
        return result;
    result = retriever->appInstalled();
    LOGD("retv[%d]", result);
    return result;
}

bool RetrieveDeviceDataEngineImplMorningBrief::appRunning()
{
    bool result = false;
    IDeviceMorningBriefDataRetrieve* retriever =
        getWrapper()->getDeviceDataRetrieveManager()->getMorningBriefRetriever();
    if (!retriever)
        return result;
    result = retriever->appRunning();
    LOGD("retv[%d]", result);
    return result;
}
