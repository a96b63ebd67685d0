/* System settings: the user's settings of the device. */
#ifndef __TIZEN_SYSTEM_SYSTEM_SETTINGS_H__
#define __TIZEN_SYSTEM_SYSTEM_SETTINGS_H__

#include <stdbool.h>

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    SYSTEM_SETTINGS_ERROR_NONE = TIZEN_ERROR_NONE,
    SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    SYSTEM_SETTINGS_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR,
    SYSTEM_SETTINGS_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    SYSTEM_SETTINGS_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED,
    SYSTEM_SETTINGS_ERROR_CALL_UNSUPPORTED_API = TIZEN_ERROR_NOT_SUPPORTED,
    SYSTEM_SETTINGS_ERROR_LOCKSCREEN_APP_PASSWORD_MODE = TIZEN_ERROR_SYSTEM_SETTING | 0x01
} system_settings_error_e;

typedef enum {
    SYSTEM_SETTINGS_KEY_INCOMING_CALL_RINGTONE,                     /* 0, string */
    SYSTEM_SETTINGS_KEY_WALLPAPER_HOME_SCREEN,                      /* 1, string */
    SYSTEM_SETTINGS_KEY_WALLPAPER_LOCK_SCREEN,                      /* 2, string */
    SYSTEM_SETTINGS_KEY_FONT_SIZE,                                  /* 3, int */
    SYSTEM_SETTINGS_KEY_FONT_TYPE,                                  /* 4, string */
    SYSTEM_SETTINGS_KEY_MOTION_ACTIVATION,                          /* 5, bool */
    SYSTEM_SETTINGS_KEY_EMAIL_ALERT_RINGTONE,                       /* 6, string */
    SYSTEM_SETTINGS_KEY_USB_DEBUGGING_ENABLED,                      /* 7, bool */
    SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED,                    /* 8, bool */
    SYSTEM_SETTINGS_KEY_LOCKSCREEN_APP = SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED + 2, /* 10, string */
    SYSTEM_SETTINGS_KEY_DEFAULT_FONT_TYPE,                          /* 11, string */
    SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY,                             /* 12, string */
    SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE,                            /* 13, string */
    SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR,                   /* 14, bool */
    SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE,                            /* 15, string */
    SYSTEM_SETTINGS_KEY_TIME_CHANGED,                               /* 16, int */
    SYSTEM_SETTINGS_KEY_SOUND_LOCK,                                 /* 17, bool */
    SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE,                          /* 18, bool */
    SYSTEM_SETTINGS_KEY_SOUND_TOUCH,                                /* 19, bool */
    SYSTEM_SETTINGS_KEY_DISPLAY_SCREEN_ROTATION_AUTO,               /* 20, bool */
    SYSTEM_SETTINGS_KEY_DEVICE_NAME,                                /* 21, string */
    SYSTEM_SETTINGS_KEY_MOTION_ENABLED,                             /* 22, bool */
    SYSTEM_SETTINGS_KEY_NETWORK_WIFI_NOTIFICATION,                  /* 23, bool */
    SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE,                        /* 24, bool */
    SYSTEM_SETTINGS_KEY_SCREEN_BACKLIGHT_TIME,                      /* 25, int */
    SYSTEM_SETTINGS_KEY_SOUND_NOTIFICATION,                         /* 26, string */
    SYSTEM_SETTINGS_KEY_SOUND_NOTIFICATION_REPETITION_PERIOD,       /* 27, int */
    SYSTEM_SETTINGS_KEY_LOCK_STATE,                                 /* 28, int */
    SYSTEM_SETTINGS_KEY_ADS_ID                                      /* 29, string */
} system_settings_key_e;

int system_settings_get_value_int(system_settings_key_e key, int *value);
int system_settings_get_value_bool(system_settings_key_e key, bool *value);
/* The caller frees *value. */
int system_settings_get_value_string(system_settings_key_e key, char **value);

#ifdef __cplusplus
}
#endif

#endif
