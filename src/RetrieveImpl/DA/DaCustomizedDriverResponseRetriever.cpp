#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenFactory.h"
#include "utils/MarlLog.h"

#include <exception>
#include <memory>

std::string DaCustomizedDriverResponseRetriever::getDriverResponse(std::string driverRequest)
{
    LOGD("driverRequest[%s]", driverRequest.c_str());
    std::string response;
    try {
        std::unique_ptr<DaDriverResponseGen> generator(DaDriverResponseGenFactory::CreateInstance(driverRequest));
        response = generator->getDriverResponse();
    } catch (const std::exception& e) {
        // A request whose members have unexpected JSON types gets no answer.
        LOGE("driver request refused: %s", e.what());
        response.clear();
    }
    LOGD("driverResponse[%s]", response.c_str());
    return response;
}
