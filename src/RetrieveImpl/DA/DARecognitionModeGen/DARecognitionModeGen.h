#ifndef DA_RECOGNITION_MODE_GEN_H
#define DA_RECOGNITION_MODE_GEN_H

#include "ClientManager/OrvaneMaster.h"

#include <json/json.h>

#include <string>

// Decides whether one family of foreground apps applies and composes its
// recognition state: {"name": "DA Global", "context": [{"agent", "name"}...]}.
// A generator is made afresh for each request.
class DARecognitionModeGen : public OrvaneMaster {
public:
    DARecognitionModeGen();
    virtual ~DARecognitionModeGen();

    // Composes the state into mRecoState; true when the generator applies.
    // This body never applies.
    virtual bool makeRecoState();

    // Runs makeRecoState and tells whether the generator applies.
    bool isValid();
    // Runs makeRecoState again and returns the state's JSON text, or empty
    // text when the generator doesn't apply.
    std::string getRecognitionMode();

protected:
    // The region code, "US" when it can't be read.
    static std::string readRegion();
    // One member of "context".
    static Json::Value makeContext(const char* agent, const char* name);

    Json::Value mRecoState;
};

#endif
