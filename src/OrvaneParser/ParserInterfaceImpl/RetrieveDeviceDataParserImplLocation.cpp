#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplLocation.h"

#include "utils/MarlLog.h"

#include <json/json.h>
#include <tzplatform_config.h>

#include <fstream>
#include <sstream>

namespace {

const char* const LOCATION_FILE = "AccInfoData.txt";
const double DEFAULT_LATITUDE = 37.253909;
const double DEFAULT_LONGITUDE = 127.046322;

}  // namespace

RetrieveDeviceDataParserImplLocation::RetrieveDeviceDataParserImplLocation()
    : mLocationManager(nullptr), mIsEnabled(false)
{
    LOGD("");
    int ret = location_manager_is_enabled_method(LOCATIONS_METHOD_HYBRID, &mIsEnabled);
    if (ret != LOCATIONS_ERROR_NONE) {
        LOGE("[ERROR] Fail to location manager is enabled method(%d)", ret);
        return;
    }
    if (!mIsEnabled)
        return;
    ret = location_manager_create(LOCATIONS_METHOD_HYBRID, &mLocationManager);
    if (ret != LOCATIONS_ERROR_NONE) {
        LOGE("[ERROR] Fail to location manager create(%d)", ret);
        return;
    }
    ret = location_manager_start(mLocationManager);
    if (ret != LOCATIONS_ERROR_NONE)
        LOGE("[ERROR] Fail to location manager start(%d)", ret);
}

RetrieveDeviceDataParserImplLocation::~RetrieveDeviceDataParserImplLocation()
{
    LOGD("");
    location_manager_stop(mLocationManager);
    location_manager_destroy(mLocationManager);
}

std::string RetrieveDeviceDataParserImplLocation::getLatitude()
{
    LOGD("");
    std::string latitude = _readCoordinate("geo_la", DEFAULT_LATITUDE);
    LOGD("latitude: \"%s\"", latitude.c_str());
    return latitude;
}

std::string RetrieveDeviceDataParserImplLocation::getLongitude()
{
    LOGD("");
    std::string longitude = _readCoordinate("geo_lo", DEFAULT_LONGITUDE);
    LOGD("longitude: \"%s\"", longitude.c_str());
    return longitude;
}

std::string RetrieveDeviceDataParserImplLocation::_readCoordinate(const char* member, double defaultValue)
{
    std::string text;
    const char* path = tzplatform_mkpath(TZ_USER_DATA, LOCATION_FILE);
    if (!path)
        return text;
    std::ifstream file(path);
    Json::Value root;
    Json::Reader reader;
    // JsonCpp's conversions decide: a null file or member reads as JsonCpp
    // reads it; a file nested too deep, a root that is no array or a member
    // that is no number throws, and that file counts as broken.
    try {
        if (!file.is_open() || !reader.parse(file, root, true))
            return text;
        std::ostringstream stream;
        stream << root[0u].get(member, defaultValue).asDouble();
        text = stream.str();
    } catch (const Json::Exception& e) {
        LOGE("location file not usable (%s)", e.what());
    }
    return text;
}
