#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplMemo.h"

#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplMemo::RetrieveDeviceDataEngineImplMemo()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplMemo::~RetrieveDeviceDataEngineImplMemo()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplMemo::isVoiceMemoSupported()
{
    LOGD("");
    return "True";
}

std::string RetrieveDeviceDataEngineImplMemo::isMemoStorageAvailable()
{
    LOGD("");
    return "True";
}

std::string RetrieveDeviceDataEngineImplMemo::isMemoInstalled()
{
    LOGD("");
    return "True";
}
