/* Application manager: which applications run, and in what state (library
 * capi-appfw-app-manager). Terminating an application is a platform-level
 * call and is declared in app_manager_extension.h. */
#ifndef __TIZEN_APPFW_APP_MANAGER_H
#define __TIZEN_APPFW_APP_MANAGER_H

#include <stdbool.h>

#include <tizen_error.h>

#include <app_context.h>
#include <app_info.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    APP_MANAGER_ERROR_NONE = TIZEN_ERROR_NONE,
    APP_MANAGER_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    APP_MANAGER_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    APP_MANAGER_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR,
    APP_MANAGER_ERROR_NO_SUCH_APP = TIZEN_ERROR_APPLICATION_MANAGER | 0x01,
    APP_MANAGER_ERROR_DB_FAILED = TIZEN_ERROR_APPLICATION_MANAGER | 0x03,
    APP_MANAGER_ERROR_INVALID_PACKAGE = TIZEN_ERROR_APPLICATION_MANAGER | 0x04,
    APP_MANAGER_ERROR_APP_NO_RUNNING = TIZEN_ERROR_APPLICATION_MANAGER | 0x05,
    APP_MANAGER_ERROR_REQUEST_FAILED = TIZEN_ERROR_APPLICATION_MANAGER | 0x06,
    APP_MANAGER_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    APP_MANAGER_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED
} app_manager_error_e;

int app_manager_is_running(const char *app_id, bool *running);
/* APP_MANAGER_ERROR_NO_SUCH_APP when the application isn't running. The
 * context is released with app_context_destroy(). */
int app_manager_get_app_context(const char *app_id, app_context_h *app_context);

#ifdef __cplusplus
}
#endif

#endif /* __TIZEN_APPFW_APP_MANAGER_H */
