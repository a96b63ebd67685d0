// app_control on the virtual appliance: a handle is an in-memory request; a
// launch request changes DIR/apps.json, is written to the journal and runs the
// app's handler, if it has one.
#include <app_control.h>

#include "AppFw.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <utility>
#include <vector>

extern char** environ;

struct app_control_s {
    std::optional<std::string> appId;
    std::optional<std::string> operation;
    std::optional<std::string> uri;
    std::vector<std::pair<std::string, std::string>> extras;  // in the order added
};

namespace {

struct ErrorNames {
    ErrorNames()
    {
        vapp::registerErrorNames({
            {"APP_CONTROL_ERROR_NONE", APP_CONTROL_ERROR_NONE},
            {"APP_CONTROL_ERROR_INVALID_PARAMETER", APP_CONTROL_ERROR_INVALID_PARAMETER},
            {"APP_CONTROL_ERROR_OUT_OF_MEMORY", APP_CONTROL_ERROR_OUT_OF_MEMORY},
            {"APP_CONTROL_ERROR_APP_NOT_FOUND", APP_CONTROL_ERROR_APP_NOT_FOUND},
            {"APP_CONTROL_ERROR_KEY_NOT_FOUND", APP_CONTROL_ERROR_KEY_NOT_FOUND},
            {"APP_CONTROL_ERROR_KEY_REJECTED", APP_CONTROL_ERROR_KEY_REJECTED},
            {"APP_CONTROL_ERROR_INVALID_DATA_TYPE", APP_CONTROL_ERROR_INVALID_DATA_TYPE},
            {"APP_CONTROL_ERROR_LAUNCH_REJECTED", APP_CONTROL_ERROR_LAUNCH_REJECTED},
            {"APP_CONTROL_ERROR_PERMISSION_DENIED", APP_CONTROL_ERROR_PERMISSION_DENIED},
            {"APP_CONTROL_ERROR_LAUNCH_FAILED", APP_CONTROL_ERROR_LAUNCH_FAILED},
            {"APP_CONTROL_ERROR_TIMED_OUT", APP_CONTROL_ERROR_TIMED_OUT},
            {"APP_CONTROL_ERROR_IO_ERROR", APP_CONTROL_ERROR_IO_ERROR},
        });
    }
} errorNames;

int setField(app_control_h handle, std::optional<std::string> app_control_s::*field,
             const char* value)
{
    if (!handle)
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    if (value)
        handle->*field = std::string(value);
    else
        (handle->*field).reset();
    return APP_CONTROL_ERROR_NONE;
}

int getField(app_control_h handle, std::optional<std::string> app_control_s::*field, char** out)
{
    if (!handle || !out)
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    const auto& value = handle->*field;
    char* copy = nullptr;
    if (value && !(copy = ::strdup(value->c_str())))
        return APP_CONTROL_ERROR_OUT_OF_MEMORY;
    *out = copy;
    return APP_CONTROL_ERROR_NONE;
}

// Keys with these prefixes belong to the framework itself.
bool reservedKey(const char* key)
{
    return std::strncmp(key, "__AUL_", 6) == 0 || std::strncmp(key, "__APP_SVC_", 10) == 0;
}

Json::Value describe(const app_control_s& request)
{
    Json::Value entry;
    entry["app_id"] = request.appId.value_or("");
    entry["operation"] = request.operation.value_or("");
    entry["uri"] = request.uri.value_or("");
    entry["extras"] = Json::Value(Json::objectValue);
    entry["extra_keys"] = Json::Value(Json::arrayValue);
    for (const auto& extra : request.extras) {
        entry["extras"][extra.first] = extra.second;
        entry["extra_keys"].append(extra.first);
    }
    return entry;
}

int refuse(const app_control_s* request, int code)
{
    if (request) {
        Json::Value entry = describe(*request);
        entry["error"] = code;
        vapp::journal("app_launch_refused", entry);
    }
    return code;
}

std::string absoluteDeviceDir()
{
    std::string dir = vapp::deviceDir();
    if (!dir.empty() && dir[0] == '/')
        return dir;
    char cwd[4096];
    return ::getcwd(cwd, sizeof cwd) ? std::string(cwd) + "/" + dir : dir;
}

// Starts the app's handler and does not wait for it. The handler runs in a
// grandchild that init adopts, so nothing is left for this process to reap.
void runHandler(const vapp::InstalledApp& app, const std::string& operation,
                const app_control_s& request)
{
    std::string name = app.id;
    std::replace(name.begin(), name.end(), '/', '_');
    vapp::makeDirs(vapp::devicePath("log"));
    const std::string logPath = vapp::devicePath("log/handler-" + name + ".log");
    const int logFd = ::open(logPath.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    auto note = [&](const std::string& message) {
        const std::string line = "appfw: " + message + "\n";
        if (logFd < 0 || ::write(logFd, line.data(), line.size()) < 0)
            appfw::warnOnce(message);
    };

    const std::string program =
        !app.handler.empty() && app.handler[0] == '/' ? app.handler : vapp::devicePath(app.handler);
    if (::access(program.c_str(), X_OK) != 0) {
        note("cannot run the handler " + program + " of " + app.id + ": " + std::strerror(errno));
        if (logFd >= 0)
            ::close(logFd);
        return;
    }

    // Everything the child needs is prepared here: between fork and exec
    // only async-signal-safe calls are made.
    std::vector<std::string> args = {program,     "--app-id", app.id, "--operation",
                                     operation,   "--uri",    request.uri.value_or("")};
    for (const auto& extra : request.extras) {
        args.push_back("--extra");
        args.push_back(extra.first + "=" + extra.second);
    }
    std::vector<std::string> env;
    for (char** var = environ; var && *var; ++var)
        if (std::strncmp(*var, "MARL_DEVICE_DIR=", 16) != 0)
            env.emplace_back(*var);
    env.push_back("MARL_DEVICE_DIR=" + absoluteDeviceDir());
    std::vector<char*> argv, envp;
    for (auto& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    for (auto& var : env)
        envp.push_back(var.data());
    envp.push_back(nullptr);
    const std::string execFailed = "appfw: cannot execute the handler " + program + "\n";
    const int nullFd = ::open("/dev/null", O_RDONLY | O_CLOEXEC);

    const pid_t middle = ::fork();
    if (middle == 0) {
        if (::fork() == 0) {
            ::setsid();
            if (nullFd >= 0)
                ::dup2(nullFd, 0);
            if (logFd >= 0) {
                ::dup2(logFd, 1);
                ::dup2(logFd, 2);
            }
            ::close_range(3, ~0U, 0);
            ::execve(program.c_str(), argv.data(), envp.data());
            const ssize_t written = ::write(2, execFailed.data(), execFailed.size());
            (void)written;
            ::_exit(127);
        }
        ::_exit(0);
    }
    if (middle < 0)
        note(std::string("cannot start the handler of ") + app.id + ": " + std::strerror(errno));
    else
        while (::waitpid(middle, nullptr, 0) < 0 && errno == EINTR) {
        }
    if (nullFd >= 0)
        ::close(nullFd);
    if (logFd >= 0)
        ::close(logFd);
}

}  // namespace

extern "C" {

int app_control_create(app_control_h* app_control)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_control)
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    app_control_h handle = new (std::nothrow) app_control_s;
    if (!handle)
        return APP_CONTROL_ERROR_OUT_OF_MEMORY;
    *app_control = handle;
    return APP_CONTROL_ERROR_NONE;
}

int app_control_destroy(app_control_h app_control)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_control)
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    delete app_control;
    return APP_CONTROL_ERROR_NONE;
}

int app_control_set_app_id(app_control_h app_control, const char* app_id)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    return setField(app_control, &app_control_s::appId, app_id);
}

int app_control_get_app_id(app_control_h app_control, char** app_id)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    return getField(app_control, &app_control_s::appId, app_id);
}

int app_control_set_operation(app_control_h app_control, const char* operation)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    return setField(app_control, &app_control_s::operation, operation);
}

int app_control_get_operation(app_control_h app_control, char** operation)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    return getField(app_control, &app_control_s::operation, operation);
}

int app_control_set_uri(app_control_h app_control, const char* uri)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    return setField(app_control, &app_control_s::uri, uri);
}

int app_control_get_uri(app_control_h app_control, char** uri)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    return getField(app_control, &app_control_s::uri, uri);
}

int app_control_add_extra_data(app_control_h app_control, const char* key, const char* value)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_control || !key || !*key || !value || !*value)
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    if (reservedKey(key))
        return APP_CONTROL_ERROR_KEY_REJECTED;
    auto& extras = app_control->extras;
    extras.erase(std::remove_if(extras.begin(), extras.end(),
                                [key](const auto& extra) { return extra.first == key; }),
                 extras.end());
    extras.emplace_back(key, value);
    return APP_CONTROL_ERROR_NONE;
}

int app_control_get_extra_data(app_control_h app_control, const char* key, char** value)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!app_control || !key || !*key || !value)
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    if (reservedKey(key))
        return APP_CONTROL_ERROR_KEY_REJECTED;
    for (const auto& extra : app_control->extras) {
        if (extra.first == key) {
            char* copy = ::strdup(extra.second.c_str());
            if (!copy)
                return APP_CONTROL_ERROR_OUT_OF_MEMORY;
            *value = copy;
            return APP_CONTROL_ERROR_NONE;
        }
    }
    return APP_CONTROL_ERROR_KEY_NOT_FOUND;
}

// No reply ever comes back on the virtual appliance: `callback` is accepted
// and never called.
int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void* user_data)
{
    (void)callback;
    (void)user_data;
    int code;
    if (vapp::injectedError(__func__, &code))
        return refuse(app_control, code);
    if (!app_control)
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    if (!appfw::deviceUsable())
        return refuse(app_control, APP_CONTROL_ERROR_IO_ERROR);

    // Without an operation the request is an explicit launch, and the app
    // receives the default operation.
    const std::string operation = app_control->operation.value_or(APP_CONTROL_OPERATION_DEFAULT);
    if (operation == APP_CONTROL_OPERATION_LAUNCH_ON_EVENT)
        return refuse(app_control, APP_CONTROL_ERROR_LAUNCH_REJECTED);
    if (!app_control->appId)
        return refuse(app_control, APP_CONTROL_ERROR_APP_NOT_FOUND);

    const std::string& id = *app_control->appId;
    std::optional<vapp::InstalledApp> app;
    std::string error;
    const bool written = vapp::updateApps(
        [&](vapp::AppsState& state) {
            const vapp::InstalledApp* installed = state.find(id);
            if (!installed)
                return;
            app = *installed;
            if (!state.isRunning(id))
                state.running.push_back(id);
            if (!installed->service)
                state.foreground = id;
        },
        &error);
    if (!written) {
        appfw::warnOnce(error);
        return refuse(app_control, APP_CONTROL_ERROR_IO_ERROR);
    }
    if (!app)
        return refuse(app_control, APP_CONTROL_ERROR_APP_NOT_FOUND);

    vapp::journal("app_launch", describe(*app_control));
    if (!app->handler.empty())
        runHandler(*app, operation, *app_control);
    return APP_CONTROL_ERROR_NONE;
}

}  // extern "C"
