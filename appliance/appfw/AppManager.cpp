// app_manager, app_context and app_info on the virtual appliance: answers
// from DIR/apps.json. A context is a snapshot of a running app, taken when it
// is asked for; an info handle stands for an installed app.
#include <app_manager.h>
#include <app_manager_extension.h>

#include "AppFw.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

struct app_context_s {
    std::string appId;
    app_state_e state = APP_STATE_UNDEFINED;
};

struct app_info_s {
    std::string appId;
};

namespace {

struct ErrorNames {
    ErrorNames()
    {
        vapp::registerErrorNames({
            {"APP_MANAGER_ERROR_NONE", APP_MANAGER_ERROR_NONE},
            {"APP_MANAGER_ERROR_INVALID_PARAMETER", APP_MANAGER_ERROR_INVALID_PARAMETER},
            {"APP_MANAGER_ERROR_OUT_OF_MEMORY", APP_MANAGER_ERROR_OUT_OF_MEMORY},
            {"APP_MANAGER_ERROR_IO_ERROR", APP_MANAGER_ERROR_IO_ERROR},
            {"APP_MANAGER_ERROR_NO_SUCH_APP", APP_MANAGER_ERROR_NO_SUCH_APP},
            {"APP_MANAGER_ERROR_DB_FAILED", APP_MANAGER_ERROR_DB_FAILED},
            {"APP_MANAGER_ERROR_INVALID_PACKAGE", APP_MANAGER_ERROR_INVALID_PACKAGE},
            {"APP_MANAGER_ERROR_APP_NO_RUNNING", APP_MANAGER_ERROR_APP_NO_RUNNING},
            {"APP_MANAGER_ERROR_REQUEST_FAILED", APP_MANAGER_ERROR_REQUEST_FAILED},
            {"APP_MANAGER_ERROR_PERMISSION_DENIED", APP_MANAGER_ERROR_PERMISSION_DENIED},
            {"APP_MANAGER_ERROR_NOT_SUPPORTED", APP_MANAGER_ERROR_NOT_SUPPORTED},
        });
    }
} errorNames;

// Reads apps.json; false when the device or the file cannot be used.
bool readApps(vapp::AppsState& state)
{
    return appfw::deviceUsable() && appfw::loadApps(state);
}

int copyId(const std::string& id, char** out)
{
    char* copy = ::strdup(id.c_str());
    if (!copy)
        return APP_MANAGER_ERROR_OUT_OF_MEMORY;
    *out = copy;
    return APP_MANAGER_ERROR_NONE;
}

}  // namespace

extern "C" {

int app_manager_is_running(const char* app_id, bool* running)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_id || !running)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    vapp::AppsState state;
    if (!readApps(state))
        return APP_MANAGER_ERROR_IO_ERROR;
    *running = state.isRunning(app_id);
    return APP_MANAGER_ERROR_NONE;
}

int app_manager_get_app_context(const char* app_id, app_context_h* app_context)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_id || !app_context)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    vapp::AppsState state;
    if (!readApps(state))
        return APP_MANAGER_ERROR_IO_ERROR;
    if (!state.isRunning(app_id))
        return APP_MANAGER_ERROR_NO_SUCH_APP;
    app_context_h context = new (std::nothrow) app_context_s;
    if (!context)
        return APP_MANAGER_ERROR_OUT_OF_MEMORY;
    context->appId = app_id;
    const vapp::InstalledApp* installed = state.find(app_id);
    if (state.foreground == app_id)
        context->state = APP_STATE_FOREGROUND;
    else if (installed && installed->service)
        context->state = APP_STATE_SERVICE;
    else
        context->state = APP_STATE_BACKGROUND;
    *app_context = context;
    return APP_MANAGER_ERROR_NONE;
}

// An app that no longer runs cannot be terminated: APP_MANAGER_ERROR_REQUEST_FAILED.
int app_manager_terminate_app(app_context_h app_context)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_context)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    if (!appfw::deviceUsable())
        return APP_MANAGER_ERROR_IO_ERROR;
    const std::string& id = app_context->appId;
    bool wasRunning = false;
    std::string error;
    const bool written = vapp::updateApps(
        [&](vapp::AppsState& state) {
            auto found = std::find(state.running.begin(), state.running.end(), id);
            if (found == state.running.end())
                return;
            wasRunning = true;
            state.running.erase(found);
            if (state.foreground == id)
                state.foreground.clear();
        },
        &error);
    if (!written) {
        appfw::warnOnce(error);
        return APP_MANAGER_ERROR_IO_ERROR;
    }
    if (!wasRunning)
        return APP_MANAGER_ERROR_REQUEST_FAILED;
    Json::Value entry;
    entry["app_id"] = id;
    vapp::journal("app_terminate", entry);
    return APP_MANAGER_ERROR_NONE;
}

int app_context_destroy(app_context_h app_context)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_context)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    delete app_context;
    return APP_MANAGER_ERROR_NONE;
}

int app_context_get_app_id(app_context_h app_context, char** app_id)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_context || !app_id)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    return copyId(app_context->appId, app_id);
}

int app_context_get_app_state(app_context_h app_context, app_state_e* state)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_context || !state)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    *state = app_context->state;
    return APP_MANAGER_ERROR_NONE;
}

int app_info_create(const char* app_id, app_info_h* app_info)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_id || !app_info)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    vapp::AppsState state;
    if (!readApps(state))
        return APP_MANAGER_ERROR_IO_ERROR;
    if (!state.find(app_id))
        return APP_MANAGER_ERROR_NO_SUCH_APP;
    app_info_h info = new (std::nothrow) app_info_s;
    if (!info)
        return APP_MANAGER_ERROR_OUT_OF_MEMORY;
    info->appId = app_id;
    *app_info = info;
    return APP_MANAGER_ERROR_NONE;
}

int app_info_destroy(app_info_h app_info)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_info)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    delete app_info;
    return APP_MANAGER_ERROR_NONE;
}

int app_info_get_app_id(app_info_h app_info, char** app_id)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_info || !app_id)
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    return copyId(app_info->appId, app_id);
}

}  // extern "C"
