#include "RetrieveImpl/Common/DeviceStatusDataRetrieverImpl.h"

bool DeviceStatusDataRetrieverImpl::useCustomizedDriverResponse()
{
    return true;
}
