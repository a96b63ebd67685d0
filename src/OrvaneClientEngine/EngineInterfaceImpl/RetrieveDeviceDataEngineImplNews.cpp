#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplNews.h"

#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplNews::RetrieveDeviceDataEngineImplNews()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplNews::~RetrieveDeviceDataEngineImplNews()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplNews::isFlipboardInstalled()
{
    LOGD("");
    return "True";
}
