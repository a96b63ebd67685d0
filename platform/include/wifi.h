/* Wi-Fi: state of the Wi-Fi device, the connected access point, the MAC address. */
#ifndef __TIZEN_NETWORK_WIFI_H__
#define __TIZEN_NETWORK_WIFI_H__

#include <stdbool.h>

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    WIFI_ERROR_NONE = TIZEN_ERROR_NONE,
    WIFI_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    WIFI_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    WIFI_ERROR_INVALID_OPERATION = TIZEN_ERROR_INVALID_OPERATION,
    WIFI_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED = -EAFNOSUPPORT, /* TIZEN_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED */
    WIFI_ERROR_OPERATION_FAILED = TIZEN_ERROR_WIFI | 0x0301,
    WIFI_ERROR_NO_CONNECTION = TIZEN_ERROR_WIFI | 0x0302,
    WIFI_ERROR_NOW_IN_PROGRESS = -EINPROGRESS, /* TIZEN_ERROR_NOW_IN_PROGRESS */
    WIFI_ERROR_ALREADY_EXISTS = TIZEN_ERROR_WIFI | 0x0303,
    WIFI_ERROR_OPERATION_ABORTED = TIZEN_ERROR_WIFI | 0x0304,
    WIFI_ERROR_DHCP_FAILED = TIZEN_ERROR_WIFI | 0x0306,
    WIFI_ERROR_INVALID_KEY = TIZEN_ERROR_WIFI | 0x0307,
    WIFI_ERROR_NO_REPLY = TIZEN_ERROR_WIFI | 0x0308,
    WIFI_ERROR_SECURITY_RESTRICTED = TIZEN_ERROR_WIFI | 0x0309,
    WIFI_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    WIFI_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED
} wifi_error_e;

typedef enum {
    WIFI_CONNECTION_STATE_FAILURE = -1,
    WIFI_CONNECTION_STATE_DISCONNECTED = 0,
    WIFI_CONNECTION_STATE_ASSOCIATION = 1,
    WIFI_CONNECTION_STATE_CONFIGURATION = 2,
    WIFI_CONNECTION_STATE_CONNECTED = 3
} wifi_connection_state_e;

typedef void *wifi_ap_h;

int wifi_initialize(void);
int wifi_deinitialize(void);
int wifi_is_activated(bool *activated);
int wifi_get_connection_state(wifi_connection_state_e *connection_state);
/* The caller releases *ap with wifi_ap_destroy. */
int wifi_get_connected_ap(wifi_ap_h *ap);
/* The caller frees *essid. */
int wifi_ap_get_essid(wifi_ap_h ap, char **essid);
int wifi_ap_destroy(wifi_ap_h ap);
/* The caller frees *mac_address. */
int wifi_get_mac_address(char **mac_address);

#ifdef __cplusplus
}
#endif

#endif
