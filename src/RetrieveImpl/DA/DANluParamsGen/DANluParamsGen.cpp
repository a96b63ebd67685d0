#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"

#include "utils/MarlLog.h"



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

