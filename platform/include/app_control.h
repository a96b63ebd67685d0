/* App control: launch requests to other applications, as the platform's
 * application framework declares them (library capi-appfw-app-control). */
#ifndef __TIZEN_APPFW_APP_CONTROL_H__
#define __TIZEN_APPFW_APP_CONTROL_H__

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct app_control_s *app_control_h;

typedef enum {
    APP_CONTROL_ERROR_NONE = TIZEN_ERROR_NONE,
    APP_CONTROL_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    APP_CONTROL_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    APP_CONTROL_ERROR_APP_NOT_FOUND = TIZEN_ERROR_APPLICATION | 0x21,
    APP_CONTROL_ERROR_KEY_NOT_FOUND = -ENOKEY,      /* TIZEN_ERROR_KEY_NOT_AVAILABLE */
    APP_CONTROL_ERROR_KEY_REJECTED = -EKEYREJECTED, /* TIZEN_ERROR_KEY_REJECTED */
    APP_CONTROL_ERROR_INVALID_DATA_TYPE = TIZEN_ERROR_APPLICATION | 0x22,
    APP_CONTROL_ERROR_LAUNCH_REJECTED = TIZEN_ERROR_APPLICATION | 0x23,
    APP_CONTROL_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    APP_CONTROL_ERROR_LAUNCH_FAILED = TIZEN_ERROR_APPLICATION | 0x24,
    APP_CONTROL_ERROR_TIMED_OUT = TIZEN_ERROR_TIMED_OUT,
    APP_CONTROL_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR
} app_control_error_e;

typedef enum {
    APP_CONTROL_RESULT_APP_STARTED = 1,
    APP_CONTROL_RESULT_SUCCEEDED = 0,
    APP_CONTROL_RESULT_FAILED = -1,
    APP_CONTROL_RESULT_CANCELED = -2
} app_control_result_e;

#define APP_CONTROL_OPERATION_MAIN "http://tizen.org/appcontrol/operation/main"
#define APP_CONTROL_OPERATION_DEFAULT "http://tizen.org/appcontrol/operation/default"
#define APP_CONTROL_OPERATION_EDIT "http://tizen.org/appcontrol/operation/edit"
#define APP_CONTROL_OPERATION_VIEW "http://tizen.org/appcontrol/operation/view"
#define APP_CONTROL_OPERATION_PICK "http://tizen.org/appcontrol/operation/pick"
#define APP_CONTROL_OPERATION_SEARCH "http://tizen.org/appcontrol/operation/search"
#define APP_CONTROL_OPERATION_SETTING "http://tizen.org/appcontrol/operation/setting"
#define APP_CONTROL_OPERATION_LAUNCH_ON_EVENT "http://tizen.org/appcontrol/operation/launch_on_event"

/* Called when the launched application answers a request sent with a reply callback. */
typedef void (*app_control_reply_cb)(app_control_h request, app_control_h reply,
                                     app_control_result_e result, void *user_data);

int app_control_create(app_control_h *app_control);
int app_control_destroy(app_control_h app_control);

/* A null value removes what was set. The getters give a copy to be released
 * with free(), or NULL when nothing is set. */
int app_control_set_app_id(app_control_h app_control, const char *app_id);
int app_control_get_app_id(app_control_h app_control, char **app_id);
int app_control_set_operation(app_control_h app_control, const char *operation);
int app_control_get_operation(app_control_h app_control, char **operation);
int app_control_set_uri(app_control_h app_control, const char *uri);
int app_control_get_uri(app_control_h app_control, char **uri);

/* Key and value must not be empty; a key that is there already is replaced. */
int app_control_add_extra_data(app_control_h app_control, const char *key, const char *value);
int app_control_get_extra_data(app_control_h app_control, const char *key, char **value);

int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void *user_data);

#ifdef __cplusplus
}
#endif

#endif /* __TIZEN_APPFW_APP_CONTROL_H__ */
