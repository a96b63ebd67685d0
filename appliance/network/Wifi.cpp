// Wi-Fi: the device state, the connected access point and the MAC address,
// from the "wifi" section of device.json.
#include "PlatformSection.h"

#include <wifi.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"WIFI_ERROR_NONE", WIFI_ERROR_NONE},
                         {"WIFI_ERROR_INVALID_PARAMETER", WIFI_ERROR_INVALID_PARAMETER},
                         {"WIFI_ERROR_OUT_OF_MEMORY", WIFI_ERROR_OUT_OF_MEMORY},
                         {"WIFI_ERROR_INVALID_OPERATION", WIFI_ERROR_INVALID_OPERATION},
                         {"WIFI_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED", WIFI_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED},
                         {"WIFI_ERROR_OPERATION_FAILED", WIFI_ERROR_OPERATION_FAILED},
                         {"WIFI_ERROR_NO_CONNECTION", WIFI_ERROR_NO_CONNECTION},
                         {"WIFI_ERROR_NOW_IN_PROGRESS", WIFI_ERROR_NOW_IN_PROGRESS},
                         {"WIFI_ERROR_ALREADY_EXISTS", WIFI_ERROR_ALREADY_EXISTS},
                         {"WIFI_ERROR_OPERATION_ABORTED", WIFI_ERROR_OPERATION_ABORTED},
                         {"WIFI_ERROR_DHCP_FAILED", WIFI_ERROR_DHCP_FAILED},
                         {"WIFI_ERROR_INVALID_KEY", WIFI_ERROR_INVALID_KEY},
                         {"WIFI_ERROR_NO_REPLY", WIFI_ERROR_NO_REPLY},
                         {"WIFI_ERROR_SECURITY_RESTRICTED", WIFI_ERROR_SECURITY_RESTRICTED},
                         {"WIFI_ERROR_PERMISSION_DENIED", WIFI_ERROR_PERMISSION_DENIED},
                         {"WIFI_ERROR_NOT_SUPPORTED", WIFI_ERROR_NOT_SUPPORTED},
                     }),
                     true);

std::mutex gMutex;
bool gInitialized = false;  // per process, as the platform's library is

// A connected access point as wifi_get_connected_ap saw it.
struct AccessPoint {
    int essidCode = WIFI_ERROR_NONE;
    std::string essid;
};

vapp::HandleTable<AccessPoint> gAccessPoints;

struct StateName {
    wifi_connection_state_e state;
    const char* name;
};
const StateName kStates[] = {
    {WIFI_CONNECTION_STATE_FAILURE, "WIFI_CONNECTION_STATE_FAILURE"},
    {WIFI_CONNECTION_STATE_DISCONNECTED, "WIFI_CONNECTION_STATE_DISCONNECTED"},
    {WIFI_CONNECTION_STATE_ASSOCIATION, "WIFI_CONNECTION_STATE_ASSOCIATION"},
    {WIFI_CONNECTION_STATE_CONFIGURATION, "WIFI_CONNECTION_STATE_CONFIGURATION"},
    {WIFI_CONNECTION_STATE_CONNECTED, "WIFI_CONNECTION_STATE_CONNECTED"},
};

// wifi.connection_state: a state's name or number; absent means disconnected.
int connectionState(const vapp::PlatformRead& read, wifi_connection_state_e* state)
{
    const Json::Value& value = read.member("connection_state");
    int code = 0;
    if (vapp::errorInPlace(value, read.where("connection_state"), &code))
        return code;
    if (value.isNull()) {
        *state = WIFI_CONNECTION_STATE_DISCONNECTED;
        return WIFI_ERROR_NONE;
    }
    for (const auto& known : kStates) {
        if ((value.isString() && value.asString() == known.name) ||
            (value.isInt() && !value.isBool() && value.asInt() == known.state)) {
            *state = known.state;
            return WIFI_ERROR_NONE;
        }
    }
    vapp::platformWarning("device.json: wifi.connection_state must be a WIFI_CONNECTION_STATE_ name or -1 to 3");
    return WIFI_ERROR_OPERATION_FAILED;
}

// A text member: its value, its {"error": CODE}, or `missing` when absent.
int textMember(const vapp::PlatformRead& read, const char* name, int missing, std::string* text)
{
    const Json::Value& value = read.member(name);
    int code = 0;
    if (vapp::errorInPlace(value, read.where(name), &code))
        return code;
    if (value.isNull())
        return missing;
    if (!value.isString()) {
        vapp::platformWarning(std::string("device.json: wifi.") + name + " must be text");
        return WIFI_ERROR_OPERATION_FAILED;
    }
    *text = value.asString();
    return WIFI_ERROR_NONE;
}

int copyText(const std::string& text, char** out)
{
    char* copy = ::strdup(text.c_str());
    if (!copy)
        return WIFI_ERROR_OUT_OF_MEMORY;
    *out = copy;
    return WIFI_ERROR_NONE;
}

}  // namespace

extern "C" {

int wifi_initialize(void)
{
    vapp::PlatformRead read(__func__, "wifi", WIFI_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    std::lock_guard<std::mutex> lock(gMutex);
    if (gInitialized)
        return WIFI_ERROR_INVALID_OPERATION;
    gInitialized = true;
    return WIFI_ERROR_NONE;
}

int wifi_deinitialize(void)
{
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    std::lock_guard<std::mutex> lock(gMutex);
    if (!gInitialized)
        return WIFI_ERROR_INVALID_OPERATION;
    gInitialized = false;
    return WIFI_ERROR_NONE;
}

int wifi_is_activated(bool* activated)
{
    if (!activated)
        return WIFI_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(__func__, "wifi", WIFI_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    const Json::Value& value = read.member("activated");
    int code = 0;
    if (vapp::errorInPlace(value, read.where("activated"), &code))
        return code;
    if (value.isNull()) {
        // Without "activated", a device that is connected or connecting is on.
        wifi_connection_state_e state = WIFI_CONNECTION_STATE_DISCONNECTED;
        if ((code = connectionState(read, &state)) != WIFI_ERROR_NONE)
            return code;
        *activated = state > WIFI_CONNECTION_STATE_DISCONNECTED;
        return WIFI_ERROR_NONE;
    }
    if (!value.isBool()) {
        vapp::platformWarning("device.json: wifi.activated must be true or false");
        return WIFI_ERROR_OPERATION_FAILED;
    }
    *activated = value.asBool();
    return WIFI_ERROR_NONE;
}

int wifi_get_connection_state(wifi_connection_state_e* connection_state)
{
    if (!connection_state)
        return WIFI_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(__func__, "wifi", WIFI_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    return connectionState(read, connection_state);
}

int wifi_get_connected_ap(wifi_ap_h* ap)
{
    if (!ap)
        return WIFI_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(__func__, "wifi", WIFI_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    {
        std::lock_guard<std::mutex> lock(gMutex);
        if (!gInitialized)
            return WIFI_ERROR_INVALID_OPERATION;
    }
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_DISCONNECTED;
    int code = connectionState(read, &state);
    if (code != WIFI_ERROR_NONE)
        return code;
    if (state != WIFI_CONNECTION_STATE_CONNECTED)
        return WIFI_ERROR_NO_CONNECTION;
    auto point = std::make_shared<AccessPoint>();
    point->essidCode = textMember(read, "essid", WIFI_ERROR_OPERATION_FAILED, &point->essid);
    *ap = gAccessPoints.add(point);
    return WIFI_ERROR_NONE;
}

int wifi_ap_get_essid(wifi_ap_h ap, char** essid)
{
    auto point = ap ? gAccessPoints.find(ap) : nullptr;
    if (!point || !essid)
        return WIFI_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (point->essidCode != WIFI_ERROR_NONE)
        return point->essidCode;
    return copyText(point->essid, essid);
}

int wifi_ap_destroy(wifi_ap_h ap)
{
    if (!ap || !gAccessPoints.find(ap))
        return WIFI_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    return gAccessPoints.take(ap) ? WIFI_ERROR_NONE : WIFI_ERROR_INVALID_PARAMETER;
}

int wifi_get_mac_address(char** mac_address)
{
    if (!mac_address)
        return WIFI_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(__func__, "wifi", WIFI_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    std::string mac;
    const int code = textMember(read, "mac_address", WIFI_ERROR_OPERATION_FAILED, &mac);
    return code != WIFI_ERROR_NONE ? code : copyText(mac, mac_address);
}

}  // extern "C"
