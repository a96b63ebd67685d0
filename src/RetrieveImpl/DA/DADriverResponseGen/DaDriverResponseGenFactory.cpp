#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenFactory.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenLaunchApps.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenViewInsideAppControl.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenWeather.h"
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

    if (agent == "Launch Apps")
        return new DaDriverResponseGenLaunchApps(request);
    if (agent == "View Inside App Control")
        return new DaDriverResponseGenViewInsideAppControl(request);
    if (agent == "Weather")
        return new DaDriverResponseGenWeather(request);
    return new DaDriverResponseGen(request);
}
