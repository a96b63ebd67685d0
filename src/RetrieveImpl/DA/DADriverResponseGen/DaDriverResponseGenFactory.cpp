#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenFactory.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenCalendar.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenCommerce.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenLaunchApps.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenMorningBrief.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenMusic.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenTimer.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenViewInsideAppControl.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenWeather.h"
#include "utils/MarlLog.h"

#include <json/json.h>

namespace {

template <typename Generator>
DaDriverResponseGen* create(const Json::Value& request)
{
    return new Generator(request);
}

// The generator of each agent; the first row whose agent matches exactly wins.
const struct {
    const char* agent;
    DaDriverResponseGen* (*create)(const Json::Value& request);
} GENERATORS[] = {
    {"Timer", &create<DaDriverResponseGenTimer>},
    {"Music App Control", &create<DaDriverResponseGenMusic>},
    {"Commerce", &create<DaDriverResponseGenCommerce>},
    {"Launch Apps", &create<DaDriverResponseGenLaunchApps>},
    {"Calendar", &create<DaDriverResponseGenCalendar>},
    {"View Inside App Control", &create<DaDriverResponseGenViewInsideAppControl>},
    {"Weather", &create<DaDriverResponseGenWeather>},
    {"Morning Brief", &create<DaDriverResponseGenMorningBrief>},
};

}  // namespace

DaDriverResponseGen* DaDriverResponseGenFactory::CreateInstance(std::string driverRequest)
{
    Json::Value root;
    Json::Reader reader;
    // A text that is not JSON still gets a generator: the base one, whose
    // response is empty.
    if (!reader.parse(driverRequest, root, true))
        LOGD("Json Parse Fail");

    // A root or request of the wrong JSON type throws; the retriever answers
    // it with the empty response.
    Json::Value request = root[ActionTypes::SERVER_REQUEST];
    const std::string agent = request.get("agent", "").asString();
    LOGD("agent[%s]", agent.c_str());

    for (const auto& row : GENERATORS) {
        if (agent == row.agent)
            return row.create(request);
    }
    return new DaDriverResponseGen(request);
}
