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
    if (file.good() && parseLocationFile(reader, file, root)) {
        dataNode["currentLocationName"] = root["data"]["simple"].get("cityName", "").asString();
        dataNode["locationID"] = root["data"]["simple"].get("cityId", "").asString();
    }
    // Read by index: without a readable file both members go out as null.
    LOGD("currentLocationName: %s", dataNode["currentLocationName"].asString().c_str());
    LOGD("locationID: %s", dataNode["locationID"].asString().c_str());
}

bool DaDriverResponseGenWeather::parseLocationFile(Json::Reader& reader, std::istream& file, Json::Value& root)
{
    // The reader throws on nesting deeper than its stack limit: that file is
    // as unreadable as a broken one.
    try {
        return reader.parse(file, root, true);
    } catch (const Json::Exception& e) {
        LOGE("location file not usable (%s)", e.what());
        return false;
    }
}
