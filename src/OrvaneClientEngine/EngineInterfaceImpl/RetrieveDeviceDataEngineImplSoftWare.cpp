#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSoftWare.h"

#include "utils/MarlLog.h"

#include <net_connection.h>
#include <system_info.h>

#include <stdlib.h>

namespace {

// Takes over a string that the platform allocated.
std::string adopt(char* value)
{
    std::string text(value);
    free(value);
    return text;
}

std::string readPlatformVersion()
{
    char* value = nullptr;
    int ret = system_info_get_platform_string("tizen.org/feature/platform.version", &value);
    if (ret != 0) {
        LOGE("Fail to get system info platform version (%d)", ret);
        return "";
    }
    if (!value) {
        LOGE("Invalid Version");
        return "";
    }
    LOGD("Platform version(%s)", value);
    return adopt(value);
}

std::string readPlatformName()
{
    char* value = nullptr;
    int ret = system_info_get_platform_string("tizen.org/system/platform.name", &value);
    if (ret != 0) {
        LOGE("Fail to get system info platform name (%d)", ret);
        return "";
    }
    if (!value) {
        LOGE("Invalid name");
        return "";
    }
    LOGD("Platform name(%s)", value);
    return adopt(value);
}

std::string readModelName()
{
    char* value = nullptr;
    int ret = system_info_get_platform_string("tizen.org/system/model_name", &value);
    if (ret != 0) {
        LOGE("Fail to get system info model name (%d)", ret);
        return "";
    }
    if (!value) {
        LOGE("Invalid model name");
        return "";
    }
    LOGD("Model name(%s)", value);
    return adopt(value);
}

}  // namespace

RetrieveDeviceDataEngineImplSoftWare::RetrieveDeviceDataEngineImplSoftWare()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplSoftWare::~RetrieveDeviceDataEngineImplSoftWare()
{
    LOGD("");
}

// Constant: the voice language is the location facet's getLocale().
std::string RetrieveDeviceDataEngineImplSoftWare::getOS_Language()
{
    LOGD("");
    return "en-US";
}

std::string RetrieveDeviceDataEngineImplSoftWare::getOS_Ver()
{
    LOGD("");
    return readPlatformVersion();
}

std::string RetrieveDeviceDataEngineImplSoftWare::getFirmware_ver()
{
    LOGD("");
    return readPlatformVersion();
}

std::string RetrieveDeviceDataEngineImplSoftWare::getMaker()
{
    LOGD("");
    return readPlatformName();
}

std::string RetrieveDeviceDataEngineImplSoftWare::getModel()
{
    LOGD("");
    return readModelName();
}

// Model and version with nothing between them; a part that fails is empty.
std::string RetrieveDeviceDataEngineImplSoftWare::getModelAndVersion()
{
    LOGD("");
    std::string model = readModelName();
    std::string version = readPlatformVersion();
    return model + version;
}

// The IPv4 proxy of the platform's connection, empty when there is none.
std::string RetrieveDeviceDataEngineImplSoftWare::getProxyUrl()
{
    LOGD("");
    connection_h connection = nullptr;
    int ret = connection_create(&connection);
    if (ret != 0) {
        LOGE("[ERROR] Fail to connection create (%d)", ret);
        return "";
    }
    char* proxy = nullptr;
    ret = connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy);
    connection_destroy(connection);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get proxy (%d)", ret);
        return "";
    }
    if (!proxy) {
        LOGE("Invalid proxy");
        return "";
    }
    LOGD("Proxy(%s)", proxy);
    return adopt(proxy);
}
