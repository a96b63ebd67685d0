// The app framework's headers compile as C++14.
#include <app_control.h>
#include <app_manager.h>
#include <app_manager_extension.h>
#include <app_context.h>
#include <app_info.h>
#include <aul_svc.h>

int appfwHeadersCompileAsCxx14()
{
    return APP_STATE_SERVICE + APP_MANAGER_ERROR_NO_SUCH_APP + APP_CONTROL_ERROR_KEY_REJECTED;
}
