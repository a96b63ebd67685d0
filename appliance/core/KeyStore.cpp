#include "vappliance/Device.h"
#include "Internal.h"
#include "vappliance/FileWatch.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>
#include <mutex>
#include <sstream>

namespace vapp {

using namespace internal;

// --- the key store ---------------------------------------------------------

namespace {
const char* typeWord(VconfValue::Type type)
{
    switch (type) {
    case VconfValue::Int: return "int";
    case VconfValue::Bool: return "bool";
    case VconfValue::Double: return "double";
    default: return "string";
    }
}
}  // namespace

std::string vconfKeyFile(const std::string& key)
{
    return devicePath("vconf/" + key);
}

namespace {

// A key file holds the type word on its first line and the value after it.
bool parseKeyFile(const std::string& text, VconfValue& value)
{
    const auto newline = text.find('\n');
    if (newline == std::string::npos)
        return false;
    const std::string type = text.substr(0, newline);
    std::string body = text.substr(newline + 1);
    char* end = nullptr;
    errno = 0;
    if (type == "string") {
        value.type = VconfValue::String;
        value.s = body;
        return true;
    }
    // A number or flag written by hand usually ends with a newline.
    if (!body.empty() && body.back() == '\n')
        body.pop_back();
    if (type == "int") {
        const long v = std::strtol(body.c_str(), &end, 10);
        if (end == body.c_str() || *end || errno || v < INT32_MIN || v > INT32_MAX)
            return false;
        value.type = VconfValue::Int;
        value.i = static_cast<int>(v);
        return true;
    }
    if (type == "bool") {
        if (body != "0" && body != "1")
            return false;
        value.type = VconfValue::Bool;
        value.b = body == "1";
        return true;
    }
    if (type == "double") {
        const double v = std::strtod(body.c_str(), &end);
        if (end == body.c_str() || *end)
            return false;
        value.type = VconfValue::Double;
        value.d = v;
        return true;
    }
    return false;
}

// The keys read so far, by file: each is parsed again only when its file
// changed (vconftool, marl-device and other processes write them).
struct ReadKey {
    FileWatch watch;
    bool ok = false;
    VconfValue value;
};

std::mutex gKeysMutex;
std::map<std::string, ReadKey>& readKeys()
{
    static auto* keys = new std::map<std::string, ReadKey>();  // kept for readers at exit
    return *keys;
}

}  // namespace

bool vconfRead(const std::string& key, VconfValue& value)
{
    if (!validKey(key))
        return false;
    const std::string path = vconfKeyFile(key);
    std::lock_guard<std::mutex> lock(gKeysMutex);
    ReadKey& read = readKeys()[path];
    switch (read.watch.poll(path)) {
    case FileWatch::Missing:
        read.ok = false;
        return false;
    case FileWatch::Changed:
        read.value = VconfValue();
        read.ok = parseKeyFile(read.watch.text(), read.value);
        break;
    case FileWatch::Unchanged:
        break;
    }
    if (read.ok)
        value = read.value;
    return read.ok;
}

bool vconfWrite(const std::string& key, const VconfValue& value)
{
    if (!validKey(key))
        return false;
    std::ostringstream text;
    text << typeWord(value.type) << '\n';
    switch (value.type) {
    case VconfValue::Int: text << value.i; break;
    case VconfValue::Bool: text << (value.b ? "1" : "0"); break;
    case VconfValue::Double: text.precision(17); text << value.d; break;
    default: text << value.s; break;
    }
    if (!writeFileAtomic(vconfKeyFile(key), text.str()))
        return false;
    Json::Value entry;
    entry["key"] = key;
    entry["type"] = typeWord(value.type);
    entry["value"] = vconfToJson(value);
    journal("vconf_set", entry);
    return true;
}

bool vconfUnset(const std::string& key)
{
    if (!validKey(key) || ::unlink(vconfKeyFile(key).c_str()) != 0)
        return false;
    Json::Value entry;
    entry["key"] = key;
    journal("vconf_unset", entry);
    return true;
}

Json::Value vconfToJson(const VconfValue& value)
{
    switch (value.type) {
    case VconfValue::Int: return Json::Value(value.i);
    case VconfValue::Bool: return Json::Value(value.b);
    case VconfValue::Double: return Json::Value(value.d);
    default: return Json::Value(value.s);
    }
}

bool vconfFromJson(const Json::Value& json, VconfValue& value)
{
    if (json.isBool()) {
        value.type = VconfValue::Bool;
        value.b = json.asBool();
    } else if (json.type() == Json::intValue || json.type() == Json::uintValue) {
        // 1.0 stays a double; an integer outside the key store's range is refused.
        if (!json.isInt())
            return false;
        value.type = VconfValue::Int;
        value.i = json.asInt();
    } else if (json.type() == Json::realValue) {
        value.type = VconfValue::Double;
        value.d = json.asDouble();
    } else if (json.isString()) {
        value.type = VconfValue::String;
        value.s = json.asString();
    } else {
        return false;
    }
    return true;
}

}  // namespace vapp
