#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "utils/MarlLog.h"

DaDriverResponseGen::DaDriverResponseGen(Json::Value request)
    : requestNode(request), dataNode(), responseRootNode()
{
    Json::Value reply;
    reply["agent"] = readText(requestNode, "agent");

    // The reply is named after the request: its first "Request" becomes "Reply".
    std::string actionName = getActionName();
    const std::string request_word = "Request";
    const std::string::size_type found = actionName.find(request_word);
    if (found != std::string::npos)
        actionName.replace(found, request_word.size(), "Reply");
    reply["action"] = actionName;

    responseRootNode[ResponseKeys::USER_COMPOSED_DRIVER_RESPONSE] = reply;
}

std::string DaDriverResponseGen::readText(const Json::Value& object, const char* key)
{
    if (!object.isObject())
        return std::string();
    const Json::Value& value = object[key];
    return value.isConvertibleTo(Json::stringValue) ? value.asString() : std::string();
}

std::string DaDriverResponseGen::getActionName()
{
    return readText(requestNode.isObject() ? requestNode["action"] : Json::Value(), "name");
}

std::string DaDriverResponseGen::getParameter(const char* name)
{
    if (!requestNode.isObject() || !requestNode["data"].isObject())
        return std::string();
    return readText(requestNode["data"][name], "value");
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
