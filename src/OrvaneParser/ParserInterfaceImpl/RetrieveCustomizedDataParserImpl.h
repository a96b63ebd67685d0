#ifndef RETRIEVE_CUSTOMIZED_DATA_PARSER_IMPL_H
#define RETRIEVE_CUSTOMIZED_DATA_PARSER_IMPL_H

#include "ClientManager/OrvaneMaster.h"

#include <orvane-parser/IParserRetrieveUserCustomizedData.h>

// The road by which a driver request leaves the parser for the appliance's
// driver-response retriever.
class RetrieveCustomizedDataParserImpl : public IParserRetrieveUserCustomizedData, public OrvaneMaster {
public:
    std::string getDriverResponse(std::string driverRequest) override;
};

#endif
