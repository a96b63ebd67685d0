#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplLocation.h"

#include "utils/MarlLog.h"

#include <json/json.h>
#include <tzplatform_config.h>
#include <voice_control_setting.h>

#include <stdlib.h>
#include <string.h>
#include <time.h>

#include <fstream>
#include <sstream>

namespace {

const char* const POSITION_FILE = "AccInfoData.txt";
const char* const LATITUDE = "geo_la";
const char* const LONGITUDE = "geo_lo";
const double DEFAULT_LATITUDE = 37.253909;
const double DEFAULT_LONGITUDE = 127.046322;

// Parses the position file; false when it is missing or not JSON. The
// reader throws on nesting deeper than its stack limit: that file is broken too.
bool readPositionFile(Json::Value& root)
{
    const char* path = tzplatform_mkpath(TZ_USER_DATA, POSITION_FILE);
    if (!path)
        return false;
    std::ifstream file(path);
    Json::Reader reader;
    try {
        return file.is_open() && reader.parse(file, root, true);
    } catch (const Json::Exception& e) {
        LOGE("position file not usable (%s)", e.what());
        return false;
    }
}

// Writes one coordinate of the file's first element in the stream's default
// format, six significant digits. Throws Json::Exception when the file's
// shape or the member's type doesn't fit.
void writeCoordinate(std::ostringstream& text, const Json::Value& root, const char* member, double fallback)
{
    text << root[Json::ArrayIndex(0)].get(member, fallback).asDouble();
}

}  // namespace

RetrieveDeviceDataEngineImplLocation::RetrieveDeviceDataEngineImplLocation()
    : mManager(nullptr), mEnabled(false)
{
    LOGD("");
    int ret = location_manager_is_enabled_method(LOCATIONS_METHOD_HYBRID, &mEnabled);
    if (ret != 0)
        LOGE("[ERROR] Fail to location manager is enabled method(%d)", ret);
    if (mEnabled) {
        ret = location_manager_create(LOCATIONS_METHOD_HYBRID, &mManager);
        if (ret != 0) {
            LOGE("[ERROR] Fail to location manager create(%d)", ret);
            return;
        }
        ret = location_manager_start(mManager);
        if (ret != 0) {
            LOGE("[ERROR] Fail to location manager start(%d)", ret);
            return;
        }
    }
    LOGD("");
}

// Stops and destroys the manager whether or not one was made.
RetrieveDeviceDataEngineImplLocation::~RetrieveDeviceDataEngineImplLocation()
{
    LOGD("");
    location_manager_stop(mManager);
    location_manager_destroy(mManager);
}

// A locale, not a country.
std::string RetrieveDeviceDataEngineImplLocation::getCountry()
{
    LOGD("");
    return "en-US";
}

std::string RetrieveDeviceDataEngineImplLocation::getCurrentTime()
{
    LOGD("");
    char buffer[80] = {0};
    time_t now = time(nullptr);
    struct tm* local = localtime(&now);
    if (local)
        strftime(buffer, sizeof(buffer), "%Y-%m-%d %H:%M:%S", local);
    LOGD("Get current time(%s)", buffer);
    return buffer;
}

std::string RetrieveDeviceDataEngineImplLocation::getLatitude()
{
    LOGD("");
    std::string result;
    Json::Value root;
    if (readPositionFile(root)) {
        try {
            std::ostringstream text;
            writeCoordinate(text, root, LATITUDE, DEFAULT_LATITUDE);
            result = text.str();
        } catch (const Json::Exception& e) {
            LOGE("position file not usable (%s)", e.what());
        }
    }
    LOGD("latitude: \"%s\"", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplLocation::getLatLong()
{
    LOGD("");
    std::string result;
    Json::Value root;
    if (readPositionFile(root)) {
        try {
            std::ostringstream text;
            writeCoordinate(text, root, LATITUDE, DEFAULT_LATITUDE);
            text << ",";
            writeCoordinate(text, root, LONGITUDE, DEFAULT_LONGITUDE);
            result = text.str();
            LOGD("latlong: %s", result.c_str());
            return result;
        } catch (const Json::Exception& e) {
            LOGE("position file not usable (%s)", e.what());
        }
    }
    LOGD("latlong: \"%s\"", result.c_str());
    return result;
}

// The voice-control language with "-" for "_", "en-US" when it can't be read.
std::string RetrieveDeviceDataEngineImplLocation::getLocale()
{
    LOGD("");
    vc_setting_initialize();
    char* language = nullptr;
    int ret = vc_setting_get_language(&language);
    if (ret != 0 || !language) {
        free(language);
        language = strdup("en_US");
    }
    for (char* underscore = strchr(language, '_'); underscore; underscore = strchr(language, '_'))
        *underscore = '-';
    std::string result = language;
    LOGD("RetrieveDeviceDataEngineImplLocation::getLocale() %s ", language);
    free(language);
    return result;
}

std::string RetrieveDeviceDataEngineImplLocation::getLongitude()
{
    LOGD("");
    std::string result;
    Json::Value root;
    if (readPositionFile(root)) {
        try {
            std::ostringstream text;
            writeCoordinate(text, root, LONGITUDE, DEFAULT_LONGITUDE);
            result = text.str();
        } catch (const Json::Exception& e) {
            LOGE("position file not usable (%s)", e.what());
        }
    }
    LOGD("longitude: \"%s\"", result.c_str());
    return result;
}
