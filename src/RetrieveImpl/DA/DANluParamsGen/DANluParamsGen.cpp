#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"

#include "utils/MarlLog.h"

#include <vconf.h>

#include <stdlib.h>

DANluParamsGen::DANluParamsGen(std::string agentName) : dataNode(), agentName(agentName)
{
}

DANluParamsGen::~DANluParamsGen()
{
}

void DANluParamsGen::makeParams()
{
}

std::string DANluParamsGen::getNluParams()
{
    makeParams();
    if (dataNode.size() == 0)
        return std::string();
    Json::FastWriter writer;
    return writer.write(dataNode);
}

std::string DANluParamsGen::getAgentName()
{
    return agentName;
}

std::string DANluParamsGen::readVconfText(const char* key, const std::string& fallback)
{
    std::string text = fallback;
    char* value = vconf_get_str(key);
    if (value) {
        text = value;
        free(value);
    }
    return text;
}
