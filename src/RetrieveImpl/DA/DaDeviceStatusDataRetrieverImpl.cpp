#include "RetrieveImpl/DA/DaDeviceStatusDataRetrieverImpl.h"

bool DaDeviceStatusDataRetrieverImpl::useChineseContentsProvider()
{
    return false;
}

bool DaDeviceStatusDataRetrieverImpl::useCustomizedRecognitionMode()
{
    return true;
}

bool DaDeviceStatusDataRetrieverImpl::useCustomizedNluParams()
{
    return true;
}

bool DaDeviceStatusDataRetrieverImpl::useCustomizedDriverResponse()
{
    return true;
}
