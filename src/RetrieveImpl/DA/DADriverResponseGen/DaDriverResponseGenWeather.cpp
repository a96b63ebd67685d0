#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenWeather.h"

#include "utils/MarlLog.h"

#include <tzplatform_config.h>

#include <fstream>

DaDriverResponseGenWeather::DaDriverResponseGenWeather(Json::Value request) : DaDriverResponseGen(request)
{
    if (getActionName() == "Location Request")
        setLocationInfo();
    else
        dataNode.clear();
}

void DaDriverResponseGenWeather::setLocationInfo()
{
    const char* path = tzplatform_mkpath(static_cast<tzplatform_variable>(59), "AccInfoPrev.txt");
    std::ifstream file(path ? path : "");
    Json::Reader reader;
    Json::Value root;
    if (file.good() && reader.parse(file, root, true)) {
        const Json::Value& data = root.isObject() ? root["data"] : Json::Value::nullSingleton();
        const Json::Value& simple = data.isObject() ? data["simple"] : Json::Value::nullSingleton();
        dataNode["currentLocationName"] = readText(simple, "cityName");
        dataNode["locationID"] = readText(simple, "cityId");
    }
    // Read by index: without a readable file both members go out as null.
    LOGD("currentLocationName: %s", dataNode["currentLocationName"].asString().c_str());
    LOGD("locationID: %s", dataNode["locationID"].asString().c_str());
}
