/* Application information: an installed application (library
 * capi-appfw-app-manager). Error codes are in app_manager.h. */
#ifndef __TIZEN_APPFW_APP_INFO_H
#define __TIZEN_APPFW_APP_INFO_H

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct app_info_s *app_info_h;

int app_info_create(const char *app_id, app_info_h *app_info);
int app_info_destroy(app_info_h app_info);
/* The copy is released with free(). */
int app_info_get_app_id(app_info_h app_info, char **app_id);

#ifdef __cplusplus
}
#endif

#endif /* __TIZEN_APPFW_APP_INFO_H */
