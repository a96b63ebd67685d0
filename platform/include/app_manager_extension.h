/* Platform-level application manager calls (library capi-appfw-app-manager). */
#ifndef __TIZEN_APPFW_APP_MANAGER_EXTENSION_H
#define __TIZEN_APPFW_APP_MANAGER_EXTENSION_H

#include <app_manager.h>

#ifdef __cplusplus
extern "C" {
#endif

int app_manager_terminate_app(app_context_h app_context);

#ifdef __cplusplus
}
#endif

#endif /* __TIZEN_APPFW_APP_MANAGER_EXTENSION_H */
