#ifndef DA_CUSTOMIZED_DRIVER_RESPONSE_RETRIEVER_H
#define DA_CUSTOMIZED_DRIVER_RESPONSE_RETRIEVER_H

#include "RetrieveManager/ICustomizedDriverResponse.h"

// Answers a driver request through the generator that the request's agent selects.
class DaCustomizedDriverResponseRetriever : public ICustomizedDriverResponse {
public:
    std::string getDriverResponse(std::string driverRequest) override;
};

#endif
