/* System information: the platform's fixed features, by key name
 * ("tizen.org/feature/screen.width", "tizen.org/system/model_name"). */
#ifndef __TIZEN_SYSTEM_SYSTEM_INFO_H__
#define __TIZEN_SYSTEM_SYSTEM_INFO_H__

#include <stdbool.h>

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    SYSTEM_INFO_ERROR_NONE = TIZEN_ERROR_NONE,
    SYSTEM_INFO_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    SYSTEM_INFO_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    SYSTEM_INFO_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR,
    SYSTEM_INFO_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    SYSTEM_INFO_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED
} system_info_error_e;

typedef enum {
    SYSTEM_INFO_BOOL,
    SYSTEM_INFO_INT,
    SYSTEM_INFO_DOUBLE,
    SYSTEM_INFO_STRING
} system_info_type_e;

int system_info_get_platform_bool(const char *key, bool *value);
int system_info_get_platform_int(const char *key, int *value);
int system_info_get_platform_double(const char *key, double *value);
/* The caller frees *value. */
int system_info_get_platform_string(const char *key, char **value);

#ifdef __cplusplus
}
#endif

#endif
