/* Application context: a running application as the application manager saw
 * it (library capi-appfw-app-manager). Error codes are in app_manager.h. */
#ifndef __TIZEN_APPFW_APP_CONTEXT_H
#define __TIZEN_APPFW_APP_CONTEXT_H

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct app_context_s *app_context_h;

typedef enum {
    APP_STATE_UNDEFINED = 0,
    APP_STATE_FOREGROUND = 1,
    APP_STATE_BACKGROUND = 2,
    APP_STATE_SERVICE = 3,
    APP_STATE_TERMINATED = 4
} app_state_e;

int app_context_destroy(app_context_h app_context);
/* The copy is released with free(). */
int app_context_get_app_id(app_context_h app_context, char **app_id);
int app_context_get_app_state(app_context_h app_context, app_state_e *state);

#ifdef __cplusplus
}
#endif

#endif /* __TIZEN_APPFW_APP_CONTEXT_H */
