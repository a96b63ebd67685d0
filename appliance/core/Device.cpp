#include "vappliance/Device.h"
#include "vappliance/EnvironmentValue.h"
#include "Internal.h"

#include <sqlite3.h>
#include <tizen_error.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <map>
#include <memory>
#include <mutex>

namespace vapp {

namespace internal {

void warnOnce(const std::string& message)
{
    static std::mutex mutex;
    static std::string* last = new std::string();  // kept for warnings at exit
    std::lock_guard<std::mutex> lock(mutex);
    if (message != *last) {
        std::fprintf(stderr, "vappliance: %s\n", message.c_str());
        *last = message;
    }
}

bool parseJson(const std::string& text, Json::Value& out, std::string* error)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errs;
    if (!reader->parse(text.data(), text.data() + text.size(), &out, &errs)) {
        if (error)
            *error = errs;
        return false;
    }
    return true;
}

std::string writeJson(const Json::Value& value, bool pretty)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = pretty ? "  " : "";
    return Json::writeString(builder, value);
}

long long nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

bool validKey(const std::string& key)
{
    return !key.empty() && key[0] != '/' && key.find("..") == std::string::npos &&
           key.find("//") == std::string::npos && key.back() != '/';
}

}  // namespace internal

namespace {

// Guards the error names.
std::mutex gMutex;

std::map<std::string, int>& errorNames()
{
    static std::map<std::string, int> names = {
        {"TIZEN_ERROR_NONE", TIZEN_ERROR_NONE},
        {"TIZEN_ERROR_NOT_PERMITTED", TIZEN_ERROR_NOT_PERMITTED},
        {"TIZEN_ERROR_NO_SUCH_FILE", TIZEN_ERROR_NO_SUCH_FILE},
        {"TIZEN_ERROR_IO_ERROR", TIZEN_ERROR_IO_ERROR},
        {"TIZEN_ERROR_OUT_OF_MEMORY", TIZEN_ERROR_OUT_OF_MEMORY},
        {"TIZEN_ERROR_PERMISSION_DENIED", TIZEN_ERROR_PERMISSION_DENIED},
        {"TIZEN_ERROR_RESOURCE_BUSY", TIZEN_ERROR_RESOURCE_BUSY},
        {"TIZEN_ERROR_INVALID_PARAMETER", TIZEN_ERROR_INVALID_PARAMETER},
        {"TIZEN_ERROR_INVALID_OPERATION", TIZEN_ERROR_INVALID_OPERATION},
        {"TIZEN_ERROR_NO_DATA", TIZEN_ERROR_NO_DATA},
        {"TIZEN_ERROR_TIMED_OUT", TIZEN_ERROR_TIMED_OUT},
        {"TIZEN_ERROR_UNKNOWN", TIZEN_ERROR_UNKNOWN},
        {"TIZEN_ERROR_NOT_SUPPORTED", TIZEN_ERROR_NOT_SUPPORTED},
    };
    return names;
}

}  // namespace

// --- the directory -------------------------------------------------------

std::string deviceDir()
{
    thread_local EnvironmentValue dirVariable("MARL_DEVICE_DIR");
    const char* dir = dirVariable.get();
    if (dir && *dir)
        return dir;
    const char* home = std::getenv("HOME");
    return std::string(home && *home ? home : "/tmp") + "/.marl-device";
}

bool deviceExists()
{
    struct stat st;
    return ::stat(deviceDir().c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

std::string devicePath(const std::string& relative)
{
    return deviceDir() + "/" + relative;
}

const std::vector<std::string>& platformSections()
{
    static const std::vector<std::string> names = {
        "system_info", "runtime_info", "system_settings", "wifi",     "connection",
        "nfc",         "battery",      "sound_manager",   "location", "vc_setting",
        "aul",         "audio_out",    "dlog",            "errors",
    };
    return names;
}

bool errorCodeFromJson(const Json::Value& value, int* code)
{
    if (value.isInt()) {
        *code = value.asInt();
        return true;
    }
    if (value.isString()) {
        std::lock_guard<std::mutex> lock(gMutex);
        auto found = errorNames().find(value.asString());
        if (found != errorNames().end()) {
            *code = found->second;
            return true;
        }
    }
    return false;
}

void registerErrorNames(std::initializer_list<std::pair<const char*, int>> names)
{
    std::lock_guard<std::mutex> lock(gMutex);
    for (const auto& name : names)
        errorNames()[name.first] = name.second;
}

// --- the file system root ------------------------------------------------

std::string rootDir()
{
    return devicePath("root");
}

std::string hostPath(const std::string& appliancePath)
{
    if (appliancePath.empty() || appliancePath[0] != '/')
        return rootDir() + "/" + appliancePath;
    return rootDir() + appliancePath;
}

const std::vector<std::string>& mappedPrefixes()
{
    static const std::vector<std::string> prefixes = {
        "/home/owner/", "/opt/usr/", "/opt/share/", "/opt/var/", "/opt/etc/",
    };
    return prefixes;
}

const std::vector<TzVariable>& tzVariables()
{
    // Numbers as the appliance's path interface enumerates them. Paths built
    // from a variable and paths spelled out by hand meet in the same files:
    // 71 + ".voice/vc/engine/shared/data/" is the engine's language pack path,
    // 50 + "org.tizen.webdatabaseserviceapp/..." is the recipe database.
    static const std::vector<TzVariable> variables = {
        {1, "TZ_SYS_HOME", "/home"},
        {8, "TZ_SYS_SHARE", "/opt/usr/share"},
        {14, "TZ_SYS_DATA", "/opt/usr/data"},
        {28, "TZ_SYS_RO_SHARE", "/usr/share"},
        {29, "TZ_SYS_RO_APP", "/usr/apps"},
        {48, "TZ_USER_HOME", "/home/owner"},
        {50, "TZ_USER_APP", "/home/owner/apps_rw"},
        {52, "TZ_USER_CONTENT", "/home/owner/media"},
        {59, "TZ_USER_DATA", "/home/owner/data"},
        {66, "TZ_USER_SOUNDS", "/home/owner/media/Sounds"},
        {71, "TZ_USER_SHARE", "/home/owner/share"},
    };
    return variables;
}

const TzVariable* tzVariable(int id)
{
    for (const auto& variable : tzVariables())
        if (variable.id == id)
            return &variable;
    return nullptr;
}

const TzVariable* tzVariable(const std::string& name)
{
    for (const auto& variable : tzVariables())
        if (name == variable.name)
            return &variable;
    return nullptr;
}

// --- small file helpers --------------------------------------------------

bool readFile(const std::string& path, std::string& content)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    std::ostringstream buffer;
    buffer << in.rdbuf();
    content = buffer.str();
    return !in.bad();
}

bool makeDirs(const std::string& path)
{
    if (path.empty())
        return false;
    std::string partial;
    std::stringstream parts(path);
    std::string part;
    if (path[0] == '/')
        partial = "";
    while (std::getline(parts, part, '/')) {
        if (part.empty())
            continue;
        partial += (partial.empty() && path[0] != '/') ? part : "/" + part;
        if (::mkdir(partial.c_str(), 0755) != 0 && errno != EEXIST)
            return false;
    }
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool writeFileAtomic(const std::string& path, const std::string& content)
{
    const auto slash = path.rfind('/');
    if (slash != std::string::npos && slash > 0 && !makeDirs(path.substr(0, slash)))
        return false;
    const std::string temp = path + ".tmp." + std::to_string(::getpid());
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out)
            return false;
        out << content;
        out.flush();
        if (!out) {
            ::unlink(temp.c_str());
            return false;
        }
    }
    if (::rename(temp.c_str(), path.c_str()) != 0) {
        ::unlink(temp.c_str());
        return false;
    }
    return true;
}

// --- the data store -------------------------------------------------------------

std::string datastorePath()
{
    return devicePath("datastore.db");
}

std::string quoteSqlIdentifier(const std::string& name)
{
    // SQLite's own quoting of an identifier.
    char* quoted = sqlite3_mprintf("\"%w\"", name.c_str());
    std::string text = quoted ? quoted : "\"\"";
    sqlite3_free(quoted);
    return text;
}

}  // namespace vapp
