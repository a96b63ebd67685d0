#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplStatic.h"

#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplStatic::RetrieveDeviceDataEngineImplStatic()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplStatic::~RetrieveDeviceDataEngineImplStatic()
{
    LOGD("");
}
