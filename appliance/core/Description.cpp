#include "vappliance/Device.h"
#include "Internal.h"
#include "vappliance/EnvironmentValue.h"
#include "vappliance/FileWatch.h"

#include <tizen_error.h>

#include <sys/stat.h>

#include <cstring>
#include <memory>
#include <mutex>

namespace vapp {

using namespace internal;

// --- device.json ---------------------------------------------------------

namespace {

// device.json as last parsed; parsed again only when the file changed.
struct CachedDescription {
    std::mutex mutex;
    FileWatch watch;
    std::shared_ptr<const Json::Value> value;  // null when malformed
    std::string error;
    EnvironmentValue dirVariable{"MARL_DEVICE_DIR"};
    std::string dir;  // MARL_DEVICE_DIR that path was made from
    std::string path;
};

CachedDescription& cached()
{
    static CachedDescription* cache = new CachedDescription();  // kept for readers at exit
    return *cache;
}

// The path of device.json, made again only when MARL_DEVICE_DIR changed:
// the log asks for the description at every line.
const std::string& descriptionPath(CachedDescription& cache)
{
    const char* dir = cache.dirVariable.get();
    if (!dir || !*dir) {
        cache.dir.clear();
        cache.path = devicePath("device.json");
    } else if (cache.path.empty() || std::strcmp(cache.dir.c_str(), dir) != 0) {
        cache.dir = dir;
        cache.path = devicePath("device.json");
    }
    return cache.path;
}

}  // namespace

std::shared_ptr<const Json::Value> description(std::string* error)
{
    CachedDescription& cache = cached();
    std::lock_guard<std::mutex> lock(cache.mutex);
    const std::string& path = descriptionPath(cache);
    switch (cache.watch.poll(path)) {
    case FileWatch::Missing: {
        struct stat st;
        cache.value = nullptr;
        cache.error = ::stat(path.c_str(), &st) == 0 ? "cannot read " + path
                      : deviceExists()               ? "no device description " + path
                                                     : "no device directory " + deviceDir();
        // Said again on the next call: the file may come back.
        if (error)
            *error = cache.error;
        return nullptr;
    }
    case FileWatch::Changed: {
        auto value = std::make_shared<Json::Value>();
        std::string parseError;
        cache.value = nullptr;
        if (!parseJson(cache.watch.text(), *value, &parseError)) {
            cache.error = path + " is not valid JSON: " + parseError;
        } else if (!value->isObject()) {
            cache.error = path + " must hold one JSON object";
        } else {
            cache.value = value;
            cache.error.clear();
        }
        if (!cache.value)
            warnOnce(cache.error);
        break;
    }
    case FileWatch::Unchanged:
        break;
    }
    if (!cache.value && error)
        *error = cache.error;
    return cache.value;
}

bool loadDescription(Json::Value& out, std::string* error)
{
    const auto parsed = description(error);
    out = parsed ? *parsed : Json::Value();
    return parsed != nullptr;
}

Json::Value section(const char* name)
{
    const auto parsed = description();
    if (!parsed)
        return Json::Value();
    return parsed->get(name, Json::Value());
}

bool injectedError(const char* function, int* code)
{
    const auto parsed = description();
    return parsed && injectedError(*parsed, function, code);
}

bool injectedError(const Json::Value& parsed, const char* function, int* code)
{
    if (!parsed.isObject())
        return false;
    const Json::Value* errors = parsed.find("errors", "errors" + 6);
    if (!errors || !errors->isObject())
        return false;
    const Json::Value* entry = errors->find(function, function + std::strlen(function));
    if (!entry)
        return false;
    if (!errorCodeFromJson(*entry, code)) {
        warnOnce(std::string("errors.") + function + ": unknown error code " +
                 writeJson(*entry, false) + ", answering TIZEN_ERROR_UNKNOWN");
        *code = TIZEN_ERROR_UNKNOWN;
    }
    return true;
}

}  // namespace vapp
