// aul's service aliases on the virtual appliance: the "aul" section of
// device.json.
#include <aul_svc.h>

#include "AppFw.h"

#include <utility>
#include <vector>

namespace {

struct ErrorNames {
    ErrorNames()
    {
        vapp::registerErrorNames({
            {"AUL_SVC_RET_OK", AUL_SVC_RET_OK},
            {"AUL_SVC_RET_ERROR", AUL_SVC_RET_ERROR},
            {"AUL_SVC_RET_EINVAL", AUL_SVC_RET_EINVAL},
            {"AUL_SVC_RET_ENOMATCH", AUL_SVC_RET_ENOMATCH},
            {"AUL_SVC_RET_ELAUNCH", AUL_SVC_RET_ELAUNCH},
            {"AUL_SVC_RET_EILLACC", AUL_SVC_RET_EILLACC},
            {"AUL_SVC_RET_ETERMINATING", AUL_SVC_RET_ETERMINATING},
            {"AUL_SVC_RET_EREJECTED", AUL_SVC_RET_EREJECTED},
            {"AUL_SVC_RET_ECANCELED", AUL_SVC_RET_ECANCELED},
        });
    }
} errorNames;

using Aliases = std::vector<std::pair<std::string, std::string>>;

// {"aliases": [{"alias": "...", "appid": "..."}, ...]}; an absent section has none.
bool readAliases(const Json::Value& section, Aliases& aliases, std::string& error)
{
    if (section.isNull())
        return true;
    if (!section.isObject()) {
        error = "must be an object with \"aliases\"";
        return false;
    }
    for (const auto& name : section.getMemberNames()) {
        if (name != "aliases") {
            error = "unknown member \"" + name + "\"";
            return false;
        }
    }
    const Json::Value& list = section["aliases"];
    if (!list.isNull() && !list.isArray()) {
        error = "\"aliases\" must be an array";
        return false;
    }
    for (const auto& entry : list) {
        if (!entry.isObject() || !entry["alias"].isString() || !entry["appid"].isString() ||
            entry["alias"].asString().empty() || entry["appid"].asString().empty() ||
            entry.size() != 2) {
            error = "each alias is {\"alias\": \"...\", \"appid\": \"...\"}, not " +
                    entry.toStyledString();
            return false;
        }
        aliases.emplace_back(entry["alias"].asString(), entry["appid"].asString());
    }
    return true;
}

}  // namespace

extern "C" int aul_svc_foreach_alias_info(
    void (*callback)(const char* alias_appid, const char* appid, void* data), void* user_data)
{
    int code;
    if (vapp::injectedError(__func__, &code))
        return code;
    if (!callback)
        return AUL_SVC_RET_EINVAL;
    if (!appfw::deviceUsable())
        return AUL_SVC_RET_ERROR;
    Aliases aliases;
    std::string error;
    if (!readAliases(vapp::section("aul"), aliases, error)) {
        appfw::warnOnce("aul: " + error);
        return AUL_SVC_RET_ERROR;
    }
    for (const auto& alias : aliases)
        callback(alias.first.c_str(), alias.second.c_str(), user_data);
    return AUL_SVC_RET_OK;
}
