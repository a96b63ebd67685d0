#ifndef CUSTOMIZED_DRIVER_RESPONSE_RETRIEVER_H
#define CUSTOMIZED_DRIVER_RESPONSE_RETRIEVER_H

#include "RetrieveManager/ICustomizedDriverResponse.h"

// Fallback: composes no driver response.
class CustomizedDriverResponseRetriever : public ICustomizedDriverResponse {
public:
    std::string getDriverResponse(std::string driverRequest) override;
};

#endif
