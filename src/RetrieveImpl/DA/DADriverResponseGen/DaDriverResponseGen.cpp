#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "utils/MarlLog.h"

DaDriverResponseGen::DaDriverResponseGen(Json::Value request)
    : requestNode(request), dataNode(), responseRootNode()
{
    Json::Value reply;
    reply["agent"] = requestNode.get("agent", "").asString();

    // The reply is named after the request: its first "Request" becomes "Reply".
    std::string actionName = getActionName();
    const std::string request_word = "Request";
    const std::string::size_type found = actionName.find(request_word);
    if (found != std::string::npos)
        actionName.replace(found, request_word.size(), "Reply");
    reply["action"] = actionName;

    responseRootNode[ResponseKeys::USER_COMPOSED_DRIVER_RESPONSE] = reply;
}

// JsonCpp's own conversions: a member of the wrong type throws, and the
// retriever's catch answers with the empty response.
std::string DaDriverResponseGen::getActionName()
{
    return requestNode["action"].get("name", "").asString();
}

std::string DaDriverResponseGen::getParameter(const char* name)
{
    return requestNode["data"][name].get("value", "").asString();
}

DaDriverResponseGen::~DaDriverResponseGen()
{
}

std::string DaDriverResponseGen::getDriverResponse()
{
    if (dataNode.size() == 0)
        return std::string();
    responseRootNode[ResponseKeys::USER_COMPOSED_DRIVER_RESPONSE]["data"] = dataNode;
    Json::FastWriter writer;
    return writer.write(responseRootNode);
}
