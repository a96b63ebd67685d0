/* The app framework's headers compile as C. */
#include <app_control.h>
#include <app_manager.h>
#include <app_manager_extension.h>
#include <app_context.h>
#include <app_info.h>
#include <aul_svc.h>

int appfw_headers_compile_as_c(void)
{
    app_state_e state = APP_STATE_TERMINATED;
    return (int)state + APP_MANAGER_ERROR_NO_SUCH_APP + APP_CONTROL_ERROR_APP_NOT_FOUND + AUL_SVC_RET_OK;
}
