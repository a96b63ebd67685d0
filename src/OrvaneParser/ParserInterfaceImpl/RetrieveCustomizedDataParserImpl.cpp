#include "OrvaneParser/ParserInterfaceImpl/RetrieveCustomizedDataParserImpl.h"

#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedDriverResponse.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

std::string RetrieveCustomizedDataParserImpl::getDriverResponse(std::string driverRequest)
{
    std::string driverResponse;
    ICustomizedDriverResponse* retriever = getWrapper()->getCustomizedDataRetrieveManager()->getDriverResponseRetriever();
    if (retriever)
        driverResponse = retriever->getDriverResponse(driverRequest);
    LOGD("driverResponse[%s]", driverResponse.c_str());
    return driverResponse;
}
