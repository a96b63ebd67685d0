// The platform's path variables, answered as host paths inside the device's
// file-system root, so that plain file calls on them land in the device.
#include <tzplatform_config.h>

#include "vappliance/Device.h"

#include <initializer_list>
#include <mutex>
#include <set>
#include <string>

namespace {

// path-join: one slash between the parts, whatever the parts bring.
std::string join(std::string base, std::initializer_list<const char*> parts)
{
    for (const char* part : parts) {
        std::string next = part;
        if (next.empty())
            continue;
        const bool baseSlash = !base.empty() && base.back() == '/';
        const bool nextSlash = next[0] == '/';
        if (baseSlash && nextSlash)
            base.pop_back();
        else if (!baseSlash && !nextSlash)
            base += '/';
        base += next;
    }
    return base;
}

const char* mkpath(enum tzplatform_variable id, std::initializer_list<const char*> parts)
{
    const vapp::TzVariable* variable = vapp::tzVariable(static_cast<int>(id));
    if (!variable)
        return nullptr;
    for (const char* part : parts)
        if (!part)
            return nullptr;
    thread_local std::string scratch;
    scratch = vapp::hostPath(join(variable->path, parts));
    return scratch.c_str();
}

}  // namespace

extern "C" {

enum tzplatform_variable tzplatform_getid(const char* name)
{
    const vapp::TzVariable* variable = name ? vapp::tzVariable(std::string(name)) : nullptr;
    return variable ? static_cast<enum tzplatform_variable>(variable->id)
                    : _TZPLATFORM_VARIABLES_INVALID_;
}

const char* tzplatform_getname(enum tzplatform_variable id)
{
    const vapp::TzVariable* variable = vapp::tzVariable(static_cast<int>(id));
    return variable ? variable->name : nullptr;
}

const char* tzplatform_getenv(enum tzplatform_variable id)
{
    const vapp::TzVariable* variable = vapp::tzVariable(static_cast<int>(id));
    if (!variable)
        return nullptr;
    // Every answer is kept for the life of the process: callers hold on to it.
    static std::mutex mutex;
    static std::set<std::string>* answers = new std::set<std::string>;
    std::lock_guard<std::mutex> lock(mutex);
    return answers->insert(vapp::hostPath(variable->path)).first->c_str();
}

const char* tzplatform_mkpath(enum tzplatform_variable id, const char* path)
{
    return mkpath(id, {path});
}

const char* tzplatform_mkpath3(enum tzplatform_variable id, const char* path, const char* path2)
{
    return mkpath(id, {path, path2});
}

const char* tzplatform_mkpath4(enum tzplatform_variable id, const char* path, const char* path2,
                               const char* path3)
{
    return mkpath(id, {path, path2, path3});
}

}  // extern "C"
