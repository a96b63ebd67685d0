#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSystem.h"
#include "utils/VconfText.h"

#include "utils/MarlLog.h"

#include <system_info.h>
#include <vconf.h>
#include <wifi.h>

// SHA256_Init, SHA256_Update and SHA256_Final are deprecated since OpenSSL 3.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/sha.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

// The screen's lines go to the log under their own tag.
const char* const SCREEN_LOG_TAG = "VCPE";

const char* const FEATURE_SCREEN_WIDTH = "tizen.org/feature/screen.width";
const char* const FEATURE_SCREEN_HEIGHT = "tizen.org/feature/screen.height";

}  // namespace

RetrieveDeviceDataEngineImplSystem::RetrieveDeviceDataEngineImplSystem()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplSystem::~RetrieveDeviceDataEngineImplSystem()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplSystem::checkForChineseCTC()
{
    LOGD("");
    return "False";
}

std::string RetrieveDeviceDataEngineImplSystem::getCurrentTimeForCMA()
{
    LOGD("");
    return "";
}

std::string RetrieveDeviceDataEngineImplSystem::getFindMyCarPkgName()
{
    LOGD("");
    return "";
}

std::string RetrieveDeviceDataEngineImplSystem::getFindMyDevicePkgName()
{
    LOGD("");
    return "";
}

std::string RetrieveDeviceDataEngineImplSystem::getPackageVersionCode(std::string /*packageName*/)
{
    LOGD("");
    return "";
}

std::string RetrieveDeviceDataEngineImplSystem::getPhoneScreenHeight()
{
    LOGD("");
    int height = 0;
    int ret = system_info_get_platform_int(FEATURE_SCREEN_HEIGHT, &height);
    if (ret != 0) {
        MARL_LOG_WITH_TAG(DLOG_ERROR, SCREEN_LOG_TAG, "[ERROR] Fail to get system screen height (%d)", ret);
        return "0";
    }
    MARL_LOG_WITH_TAG(DLOG_DEBUG, SCREEN_LOG_TAG, "Screen Height(%d)", height);
    return std::to_string(height);
}

std::string RetrieveDeviceDataEngineImplSystem::getPhoneScreenWidth()
{
    LOGD("");
    int width = 0;
    int ret = system_info_get_platform_int(FEATURE_SCREEN_WIDTH, &width);
    if (ret != 0) {
        MARL_LOG_WITH_TAG(DLOG_ERROR, SCREEN_LOG_TAG, "[ERROR] Fail to get system screen width (%d)", ret);
        return "0";
    }
    MARL_LOG_WITH_TAG(DLOG_DEBUG, SCREEN_LOG_TAG, "Screen Width(%d)", width);
    return std::to_string(width);
}

std::string RetrieveDeviceDataEngineImplSystem::getPhoneTelecom()
{
    LOGD("");
    return "";
}

// Half the screen's height.
std::string RetrieveDeviceDataEngineImplSystem::getPhoneThumbnailHeight()
{
    LOGD("");
    int height = 0;
    int ret = system_info_get_platform_int(FEATURE_SCREEN_HEIGHT, &height);
    if (ret != 0) {
        MARL_LOG_WITH_TAG(DLOG_ERROR, SCREEN_LOG_TAG, "[ERROR] Fail to get system screen height (%d)", ret);
        return "0";
    }
    height = height / 2;
    MARL_LOG_WITH_TAG(DLOG_DEBUG, SCREEN_LOG_TAG, "Temp Thumbnail Height(%d)", height);
    return std::to_string(height);
}

// The screen's full width.
std::string RetrieveDeviceDataEngineImplSystem::getPhoneThumbnailWidth()
{
    LOGD("");
    int width = 0;
    int ret = system_info_get_platform_int(FEATURE_SCREEN_WIDTH, &width);
    if (ret != 0) {
        MARL_LOG_WITH_TAG(DLOG_ERROR, SCREEN_LOG_TAG, "[ERROR] Fail to get system screen width (%d)", ret);
        return "0";
    }
    MARL_LOG_WITH_TAG(DLOG_DEBUG, SCREEN_LOG_TAG, "Temp Thumbnail Width(%d)", width);
    return std::to_string(width);
}

// SHA-256 of the MAC address text exactly as the platform gives it, as 64
// lower-case hexadecimal digits; empty when the address can't be read.
std::string RetrieveDeviceDataEngineImplSystem::getUniqueDeviceIdentifier()
{
    LOGD("");
    std::string result;
    char* macAddress = nullptr;
    int ret = wifi_get_mac_address(&macAddress);
    if (ret != 0) {
        LOGE("get wifi mac address failed");
        return result;
    }
    if (!macAddress)
        return result;
    LOGD("mac_address[%s]", macAddress);

    unsigned char digest[SHA256_DIGEST_LENGTH];
    SHA256_CTX context;
    SHA256_Init(&context);
    SHA256_Update(&context, macAddress, strlen(macAddress));
    SHA256_Final(digest, &context);

    char hex[SHA256_DIGEST_LENGTH * 2 + 1] = {0};
    for (int i = 0; i < SHA256_DIGEST_LENGTH; ++i)
        snprintf(hex + i * 2, 3, "%02x", digest[i]);
    result = hex;
    free(macAddress);
    LOGD("deviceId[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplSystem::getWeatherSetting()
{
    LOGD("");
    return "";
}

std::string RetrieveDeviceDataEngineImplSystem::isChineseModel()
{
    LOGD("");
    return "False";
}

std::string RetrieveDeviceDataEngineImplSystem::isDeviceHas2MicNSEnabled()
{
    LOGD("");
    return "False";
}

std::string RetrieveDeviceDataEngineImplSystem::isIOSAttached()
{
    LOGD("");
    return "False";
}

std::string RetrieveDeviceDataEngineImplSystem::isSMSAvailable()
{
    LOGD("");
    bool supported = false;
    int ret = system_info_get_platform_bool("tizen.org/feature/network.telephony.sms", &supported);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get system info sms (%d)", ret);
        return "False";
    }
    LOGD("System Info sms (%d)", supported);
    return supported ? "True" : "False";
}

// Only the country "US", spelled so, measures in Fahrenheit.
std::string RetrieveDeviceDataEngineImplSystem::IsTemperatureTypeFahrenheit()
{
    LOGD("");
    std::string result = "False";
    const std::string country = readVconfText("db/setting/country_code", "");
    LOGD("Country (%s)", country.c_str());
    if (country == "US")
        result = "True";
    LOGD("retv: %s", result.c_str());
    return result;
}

// Empty, not "False": the appliance leaves the question open.
std::string RetrieveDeviceDataEngineImplSystem::isVideoCallSupported()
{
    LOGD("");
    return "";
}

std::string RetrieveDeviceDataEngineImplSystem::isVoiceCallSupported()
{
    LOGD("");
    bool supported = false;
    int ret = system_info_get_platform_bool("tizen.org/feature/network.telephony", &supported);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get system info telephony (%d)", ret);
        return "False";
    }
    LOGD("System Info telephony (%d)", supported);
    return supported ? "True" : "False";
}

std::string RetrieveDeviceDataEngineImplSystem::isVoiceMailAvailable()
{
    LOGD("");
    return "False";
}
