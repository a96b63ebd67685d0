#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenFactory.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"
#include "utils/MarlLog.h"

#include <json/json.h>

DaDriverResponseGen* DaDriverResponseGenFactory::CreateInstance(std::string driverRequest)
{
    Json::Value root;
    Json::Reader reader;
    // A text that is not JSON still gets a generator: the base one, whose
    // response is empty.
    if (!reader.parse(driverRequest, root, true))
        LOGD("Json Parse Fail");

    Json::Value request = root.isObject() ? root[ActionTypes::SERVER_REQUEST] : Json::Value();
    const std::string agent = request.isObject() && request["agent"].isConvertibleTo(Json::stringValue)
                                  ? request["agent"].asString()
                                  : std::string();
    LOGD("agent[%s]", agent.c_str());

    // No agent has a generator of its own yet.
    return new DaDriverResponseGen(request);
}
