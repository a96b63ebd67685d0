#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGen.h"
#include "utils/VconfText.h"

#include "utils/MarlLog.h"

#include <vconf.h>

#include <stdlib.h>

DARecognitionModeGen::DARecognitionModeGen() : mRecoState()
{
}

DARecognitionModeGen::~DARecognitionModeGen()
{
}

bool DARecognitionModeGen::makeRecoState()
{
    return false;
}

bool DARecognitionModeGen::isValid()
{
    return makeRecoState();
}

std::string DARecognitionModeGen::getRecognitionMode()
{
    LOGD("");
    if (!makeRecoState() || mRecoState.size() == 0)
        return std::string();
    Json::FastWriter writer;
    return writer.write(mRecoState);
}

std::string DARecognitionModeGen::readRegion()
{
    return readVconfText("db/setting/region_code", "US");
}

Json::Value DARecognitionModeGen::makeContext(const char* agent, const char* name)
{
    Json::Value context;
    context["agent"] = agent;
    context["name"] = name;
    return context;
}
