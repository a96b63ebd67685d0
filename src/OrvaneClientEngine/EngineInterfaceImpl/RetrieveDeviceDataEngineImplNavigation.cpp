#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplNavigation.h"

#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplNavigation::RetrieveDeviceDataEngineImplNavigation()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplNavigation::~RetrieveDeviceDataEngineImplNavigation()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplNavigation::isNavigationInstalled()
{
    LOGD("");
    return "False";
}

std::string RetrieveDeviceDataEngineImplNavigation::isNavigationSupported()
{
    LOGD("");
    return "False";
}
