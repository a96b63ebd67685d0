#ifndef DA_DRIVER_RESPONSE_GEN_H
#define DA_DRIVER_RESPONSE_GEN_H

#include "ClientManager/OrvaneMaster.h"

#include <json/json.h>

#include <string>

// Answers one driver request. The base builds the response envelope from the
// request's agent and action name; a derived generator composes the "data" in
// its constructor. Lives for one request.
class DaDriverResponseGen : public OrvaneMaster {
public:
    explicit DaDriverResponseGen(Json::Value request);
    virtual ~DaDriverResponseGen();

    // The finished response text, or empty when no data was composed.
    std::string getDriverResponse();

protected:
    // The request's action name; empty when missing. A member of the wrong
    // JSON type throws Json::Exception.
    std::string getActionName();
    // The "value" of one of the request's parameters, as JsonCpp converts it
    // to text; empty when missing. A member of the wrong type throws.
    std::string getParameter(const char* name);

    Json::Value requestNode;
    Json::Value dataNode;
    Json::Value responseRootNode;
};

#endif
