#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGen.h"

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
    std::string region = "US";
    char* value = vconf_get_str("db/setting/region_code");
    if (value) {
        region = value;
        free(value);
    }
    return region;
}

Json::Value DARecognitionModeGen::makeContext(const char* agent, const char* name)
{
    Json::Value context;
    context["agent"] = agent;
    context["name"] = name;
    return context;
}
