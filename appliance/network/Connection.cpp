// Data connections: connection handles and the proxy address, from the
// "connection" section of device.json.
#include "PlatformSection.h"

#include <net_connection.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"CONNECTION_ERROR_NONE", CONNECTION_ERROR_NONE},
                         {"CONNECTION_ERROR_INVALID_PARAMETER", CONNECTION_ERROR_INVALID_PARAMETER},
                         {"CONNECTION_ERROR_OUT_OF_MEMORY", CONNECTION_ERROR_OUT_OF_MEMORY},
                         {"CONNECTION_ERROR_INVALID_OPERATION", CONNECTION_ERROR_INVALID_OPERATION},
                         {"CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED",
                          CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED},
                         {"CONNECTION_ERROR_OPERATION_FAILED", CONNECTION_ERROR_OPERATION_FAILED},
                         {"CONNECTION_ERROR_ITERATOR_END", CONNECTION_ERROR_ITERATOR_END},
                         {"CONNECTION_ERROR_NO_CONNECTION", CONNECTION_ERROR_NO_CONNECTION},
                         {"CONNECTION_ERROR_NOW_IN_PROGRESS", CONNECTION_ERROR_NOW_IN_PROGRESS},
                         {"CONNECTION_ERROR_ALREADY_EXISTS", CONNECTION_ERROR_ALREADY_EXISTS},
                         {"CONNECTION_ERROR_OPERATION_ABORTED", CONNECTION_ERROR_OPERATION_ABORTED},
                         {"CONNECTION_ERROR_DHCP_FAILED", CONNECTION_ERROR_DHCP_FAILED},
                         {"CONNECTION_ERROR_INVALID_KEY", CONNECTION_ERROR_INVALID_KEY},
                         {"CONNECTION_ERROR_NO_REPLY", CONNECTION_ERROR_NO_REPLY},
                         {"CONNECTION_ERROR_PERMISSION_DENIED", CONNECTION_ERROR_PERMISSION_DENIED},
                         {"CONNECTION_ERROR_NOT_SUPPORTED", CONNECTION_ERROR_NOT_SUPPORTED},
                     }),
                     true);

struct Connection {
    char unused = 0;
};

vapp::HandleTable<Connection> gConnections;

}  // namespace

extern "C" {

int connection_create(connection_h* connection)
{
    if (!connection)
        return CONNECTION_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(__func__, "connection", CONNECTION_ERROR_INVALID_OPERATION);
    if (!read.ok())
        return read.code();
    *connection = gConnections.add(std::make_shared<Connection>());
    return CONNECTION_ERROR_NONE;
}

int connection_destroy(connection_h connection)
{
    if (!connection || !gConnections.find(connection))
        return CONNECTION_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    return gConnections.take(connection) ? CONNECTION_ERROR_NONE : CONNECTION_ERROR_INVALID_PARAMETER;
}

// One proxy for both address families, as the platform keeps it. Without a
// configured proxy the platform answers success with empty text.
int connection_get_proxy(connection_h connection, connection_address_family_e address_family,
                         char** proxy)
{
    if (!connection || !gConnections.find(connection) || !proxy ||
        (address_family != CONNECTION_ADDRESS_FAMILY_IPV4 &&
         address_family != CONNECTION_ADDRESS_FAMILY_IPV6))
        return CONNECTION_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(__func__, "connection", CONNECTION_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    const Json::Value& value = read.member("proxy");
    int code = 0;
    if (vapp::errorInPlace(value, read.where("proxy"), &code))
        return code;
    if (!value.isNull() && !value.isString()) {
        vapp::platformWarning("device.json: connection.proxy must be text");
        return CONNECTION_ERROR_OPERATION_FAILED;
    }
    char* copy = ::strdup(value.isString() ? value.asCString() : "");
    if (!copy)
        return CONNECTION_ERROR_OUT_OF_MEMORY;
    *proxy = copy;
    return CONNECTION_ERROR_NONE;
}

}  // extern "C"
