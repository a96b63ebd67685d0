#include "RetrieveImpl/Common/CustomizedDriverResponseRetriever.h"

#include "utils/MarlLog.h"

std::string CustomizedDriverResponseRetriever::getDriverResponse(std::string driverRequest)
{
    LOGD("driverRequest[%s]", driverRequest.c_str());
    return std::string();
}
