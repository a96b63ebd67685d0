#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenFactory.h"
#include "utils/MarlLog.h"

#include <memory>

std::string DaCustomizedDriverResponseRetriever::getDriverResponse(std::string driverRequest)
{
    LOGD("driverRequest[%s]", driverRequest.c_str());
    std::unique_ptr<DaDriverResponseGen> generator(DaDriverResponseGenFactory::CreateInstance(driverRequest));
    std::string response = generator->getDriverResponse();
    LOGD("driverResponse[%s]", response.c_str());
    return response;
}
