/* Runtime information: switches and states that change while the device runs. */
#ifndef __TIZEN_SYSTEM_RUNTIME_INFO_H__
#define __TIZEN_SYSTEM_RUNTIME_INFO_H__

#include <stdbool.h>

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    RUNTIME_INFO_ERROR_NONE = TIZEN_ERROR_NONE,
    RUNTIME_INFO_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    RUNTIME_INFO_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    RUNTIME_INFO_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR,
    RUNTIME_INFO_ERROR_REMOTE_IO = -EREMOTEIO, /* the platform's TIZEN_ERROR_REMOTE_IO */
    RUNTIME_INFO_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    RUNTIME_INFO_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED,
    RUNTIME_INFO_ERROR_NO_DATA = TIZEN_ERROR_NO_DATA
} runtime_info_error_e;

typedef enum {
    RUNTIME_INFO_KEY_BLUETOOTH_ENABLED = 2,            /* bool */
    RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED = 3,         /* bool */
    RUNTIME_INFO_KEY_BLUETOOTH_TETHERING_ENABLED = 4,  /* bool */
    RUNTIME_INFO_KEY_USB_TETHERING_ENABLED = 5,        /* bool */
    RUNTIME_INFO_KEY_PACKET_DATA_ENABLED = 9,          /* bool */
    RUNTIME_INFO_KEY_DATA_ROAMING_ENABLED = 10,        /* bool */
    RUNTIME_INFO_KEY_VIBRATION_ENABLED = 12,           /* bool */
    RUNTIME_INFO_KEY_AUDIO_JACK_CONNECTED = 17,        /* bool */
    RUNTIME_INFO_KEY_GPS_STATUS = 18,                  /* int, runtime_info_gps_status_e */
    RUNTIME_INFO_KEY_BATTERY_IS_CHARGING = 19,         /* bool */
    RUNTIME_INFO_KEY_TV_OUT_CONNECTED = 20,            /* bool */
    RUNTIME_INFO_KEY_AUDIO_JACK_STATUS = 21,           /* int */
    RUNTIME_INFO_KEY_USB_CONNECTED = 23,               /* bool */
    RUNTIME_INFO_KEY_CHARGER_CONNECTED = 24,           /* bool */
    RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED = 26        /* bool */
} runtime_info_key_e;

typedef enum {
    RUNTIME_INFO_GPS_STATUS_DISABLED,
    RUNTIME_INFO_GPS_STATUS_SEARCHING,
    RUNTIME_INFO_GPS_STATUS_CONNECTED
} runtime_info_gps_status_e;

int runtime_info_get_value_int(runtime_info_key_e key, int *value);
int runtime_info_get_value_bool(runtime_info_key_e key, bool *value);
int runtime_info_get_value_double(runtime_info_key_e key, double *value);
/* The caller frees *value. */
int runtime_info_get_value_string(runtime_info_key_e key, char **value);

#ifdef __cplusplus
}
#endif

#endif
