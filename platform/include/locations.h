/* Location manager: positioning methods and the location service. */
#ifndef __TIZEN_LOCATION_LOCATIONS_H__
#define __TIZEN_LOCATION_LOCATIONS_H__

#include <stdbool.h>

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    LOCATIONS_ERROR_NONE = TIZEN_ERROR_NONE,
    LOCATIONS_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    LOCATIONS_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    LOCATIONS_ERROR_ACCESSIBILITY_NOT_ALLOWED = TIZEN_ERROR_PERMISSION_DENIED,
    LOCATIONS_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED,
    LOCATIONS_ERROR_INCORRECT_METHOD = TIZEN_ERROR_LOCATION_MANAGER | 0x01,
    LOCATIONS_ERROR_NETWORK_FAILED = TIZEN_ERROR_LOCATION_MANAGER | 0x02,
    LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE = TIZEN_ERROR_LOCATION_MANAGER | 0x03,
    LOCATIONS_ERROR_GPS_SETTING_OFF = TIZEN_ERROR_LOCATION_MANAGER | 0x04,
    LOCATIONS_ERROR_SECURITY_RESTRICTED = TIZEN_ERROR_LOCATION_MANAGER | 0x05,
    LOCATIONS_ERROR_SETTING_OFF = LOCATIONS_ERROR_GPS_SETTING_OFF
} location_error_e;

typedef enum {
    LOCATIONS_METHOD_NONE = -1,
    LOCATIONS_METHOD_HYBRID,  /* 0 */
    LOCATIONS_METHOD_GPS,     /* 1 */
    LOCATIONS_METHOD_WPS,     /* 2 */
    LOCATIONS_METHOD_PASSIVE  /* 3 */
} location_method_e;

typedef struct location_manager_s *location_manager_h;

int location_manager_is_enabled_method(location_method_e method, bool *enable);
/* The caller releases *manager with location_manager_destroy. */
int location_manager_create(location_method_e method, location_manager_h *manager);
int location_manager_destroy(location_manager_h manager);
int location_manager_start(location_manager_h manager);
int location_manager_stop(location_manager_h manager);

#ifdef __cplusplus
}
#endif

#endif
