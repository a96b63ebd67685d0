#ifndef DA_NLU_PARAMS_GEN_H
#define DA_NLU_PARAMS_GEN_H

#include "ClientManager/OrvaneMaster.h"

#include <json/json.h>

#include <string>

// Composes one group of the NLU parameter set: a flat object whose members are
// all text. A derived generator fills dataNode in makeParams; a generator is
// made afresh for each request.
class DANluParamsGen : public OrvaneMaster {
public:
    explicit DANluParamsGen(std::string agentName);
    virtual ~DANluParamsGen();

    // Fills dataNode; this body composes nothing.
    virtual void makeParams();

    // Runs makeParams and returns the group's JSON text, or empty text when
    // nothing was composed.
    std::string getNluParams();
    std::string getAgentName();

protected:
    Json::Value dataNode;
    std::string agentName;
};

#endif
