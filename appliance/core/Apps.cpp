#include "vappliance/Device.h"
#include "Internal.h"
#include "vappliance/FileWatch.h"

#include <mutex>

namespace vapp {

using namespace internal;

// --- the app framework's state ----------------------------------------------

const InstalledApp* AppsState::find(const std::string& id) const
{
    for (const auto& app : installed)
        if (app.id == id)
            return &app;
    return nullptr;
}

bool AppsState::isRunning(const std::string& id) const
{
    for (const auto& app : running)
        if (app == id)
            return true;
    return false;
}

bool appsFromJson(const Json::Value& json, AppsState& state, std::string* error)
{
    auto fail = [error](const std::string& message) {
        if (error)
            *error = "apps: " + message;
        return false;
    };
    state = AppsState();
    if (!json.isObject())
        return fail("must be an object with \"installed\", \"running\" and \"foreground\"");
    for (const auto& name : json.getMemberNames())
        if (name != "installed" && name != "running" && name != "foreground")
            return fail("unknown member \"" + name + "\"");
    const Json::Value& installed = json["installed"];
    if (!installed.isNull() && !installed.isArray())
        return fail("\"installed\" must be an array");
    for (const auto& entry : installed) {
        InstalledApp app;
        if (entry.isString()) {
            app.id = entry.asString();
        } else if (entry.isObject() && entry["id"].isString()) {
            app.id = entry["id"].asString();
            if (!entry["handler"].isNull() && !entry["handler"].isString())
                return fail("\"handler\" of " + app.id + " must be a string");
            if (!entry["service"].isNull() && !entry["service"].isBool())
                return fail("\"service\" of " + app.id + " must be true or false");
            app.handler = entry.get("handler", "").asString();
            app.service = entry.get("service", false).asBool();
        } else {
            return fail("each installed app is an id or an object with \"id\"");
        }
        if (app.id.empty())
            return fail("an installed app has an empty id");
        state.installed.push_back(app);
    }
    const Json::Value& running = json["running"];
    if (!running.isNull() && !running.isArray())
        return fail("\"running\" must be an array of ids");
    for (const auto& id : running) {
        if (!id.isString())
            return fail("\"running\" must be an array of ids");
        state.running.push_back(id.asString());
    }
    const Json::Value& foreground = json["foreground"];
    if (!foreground.isNull() && !foreground.isString())
        return fail("\"foreground\" must be an app id or empty");
    state.foreground = foreground.asString();
    if (!state.foreground.empty() && !state.isRunning(state.foreground))
        state.running.push_back(state.foreground);
    return true;
}

Json::Value appsToJson(const AppsState& state)
{
    Json::Value json(Json::objectValue);
    json["installed"] = Json::Value(Json::arrayValue);
    for (const auto& app : state.installed) {
        Json::Value entry;
        entry["id"] = app.id;
        if (!app.handler.empty())
            entry["handler"] = app.handler;
        if (app.service)
            entry["service"] = true;
        json["installed"].append(entry);
    }
    json["running"] = Json::Value(Json::arrayValue);
    for (const auto& id : state.running)
        json["running"].append(id);
    json["foreground"] = state.foreground;
    return json;
}

namespace {
bool loadAppsUnlocked(AppsState& state, std::string* error)
{
    std::string text;
    state = AppsState();
    if (!readFile(devicePath("apps.json"), text))
        return true;
    Json::Value json;
    std::string parseError;
    if (!parseJson(text, json, &parseError)) {
        if (error)
            *error = devicePath("apps.json") + " is not valid JSON: " + parseError;
        return false;
    }
    return appsFromJson(json, state, error);
}
}  // namespace

namespace {

// apps.json as last parsed; parsed again only when the file changed.
struct CachedApps {
    std::mutex mutex;
    FileWatch watch;
    bool ok = true;
    AppsState state;
    std::string error;
};

}  // namespace

bool loadApps(AppsState& state, std::string* error)
{
    if (!deviceExists()) {
        if (error)
            *error = "no device directory " + deviceDir();
        return false;
    }
    static CachedApps& cache = *new CachedApps();  // kept for readers at exit
    const std::string path = devicePath("apps.json");
    std::lock_guard<std::mutex> lock(cache.mutex);
    // Writers replace the file whole (a rename under the lock), so a read
    // needs no lock to see one complete state.
    switch (cache.watch.poll(path)) {
    case FileWatch::Missing:
        cache.ok = true;
        cache.state = AppsState();
        cache.error.clear();
        break;
    case FileWatch::Changed: {
        Json::Value json;
        std::string parseError;
        cache.error.clear();
        if (!parseJson(cache.watch.text(), json, &parseError)) {
            cache.state = AppsState();
            cache.error = path + " is not valid JSON: " + parseError;
            cache.ok = false;
        } else {
            cache.ok = appsFromJson(json, cache.state, &cache.error);
        }
        break;
    }
    case FileWatch::Unchanged:
        break;
    }
    state = cache.ok ? cache.state : AppsState();
    if (!cache.ok && error)
        *error = cache.error;
    return cache.ok;
}

bool updateApps(const std::function<void(AppsState&)>& change, std::string* error)
{
    if (!deviceExists()) {
        if (error)
            *error = "no device directory " + deviceDir();
        return false;
    }
    FileLock lock(devicePath("apps.json"));
    AppsState state;
    if (!loadAppsUnlocked(state, error))
        return false;
    change(state);
    if (!writeFileAtomic(devicePath("apps.json"), writeJson(appsToJson(state), true) + "\n")) {
        if (error)
            *error = "cannot write " + devicePath("apps.json");
        return false;
    }
    return true;
}

}  // namespace vapp
