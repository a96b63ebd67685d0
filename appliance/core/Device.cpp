#include "vappliance/Device.h"

#include <sqlite3.h>
#include <tizen_error.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>
#include <sstream>

namespace vapp {

namespace {

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

struct CachedDescription {
    std::string path;
    std::string text;
    bool loaded = false;
    bool ok = false;
    std::string error;
    Json::Value value;
};

void warnOnce(const std::string& message)
{
    static std::mutex mutex;
    static std::string last;
    std::lock_guard<std::mutex> lock(mutex);
    if (message != last) {
        std::fprintf(stderr, "vappliance: %s\n", message.c_str());
        last = message;
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

// Holds an exclusive lock on a lock file beside the given path.
class FileLock {
public:
    explicit FileLock(const std::string& path)
        : mFd(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644))
    {
        if (mFd >= 0)
            ::flock(mFd, LOCK_EX);
    }
    ~FileLock()
    {
        if (mFd >= 0)
            ::close(mFd);
    }
    bool ok() const { return mFd >= 0; }

private:
    int mFd;
};

}  // namespace

// --- the directory -------------------------------------------------------

std::string deviceDir()
{
    const char* dir = std::getenv("MARL_DEVICE_DIR");
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

// --- device.json ---------------------------------------------------------

bool loadDescription(Json::Value& out, std::string* error)
{
    static CachedDescription cache;
    const std::string path = devicePath("device.json");
    std::lock_guard<std::mutex> lock(gMutex);

    // The file is small and read on every call: a rewrite within one tick of
    // the file system's clock leaves size and time alone, so only the text
    // itself tells whether the parsed value is still current.
    struct stat st;
    std::string text;
    if (::stat(path.c_str(), &st) != 0 || !readFile(path, text)) {
        const bool present = ::stat(path.c_str(), &st) == 0;
        cache = CachedDescription();
        out = Json::Value();
        if (error)
            *error = present ? "cannot read " + path
                     : deviceExists() ? "no device description " + path
                                      : "no device directory " + deviceDir();
        return false;
    }
    if (!cache.loaded || cache.path != path || cache.text != text) {
        cache = CachedDescription();
        cache.path = path;
        cache.text = text;
        cache.loaded = true;
        std::string parseError;
        if (!parseJson(text, cache.value, &parseError)) {
            cache.error = path + " is not valid JSON: " + parseError;
        } else if (!cache.value.isObject()) {
            cache.error = path + " must hold one JSON object";
        } else {
            cache.ok = true;
        }
        if (!cache.ok)
            warnOnce(cache.error);
    }
    out = cache.ok ? cache.value : Json::Value();
    if (!cache.ok && error)
        *error = cache.error;
    return cache.ok;
}

Json::Value section(const char* name)
{
    Json::Value description;
    if (!loadDescription(description))
        return Json::Value();
    return description.get(name, Json::Value());
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

bool injectedError(const char* function, int* code)
{
    Json::Value errors = section("errors");
    if (!errors.isObject() || !errors.isMember(function))
        return false;
    if (!errorCodeFromJson(errors[function], code)) {
        warnOnce(std::string("errors.") + function + ": unknown error code " +
                 writeJson(errors[function], false) + ", answering TIZEN_ERROR_UNKNOWN");
        *code = TIZEN_ERROR_UNKNOWN;
    }
    return true;
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

bool validKey(const std::string& key)
{
    return !key.empty() && key[0] != '/' && key.find("..") == std::string::npos &&
           key.find("//") == std::string::npos && key.back() != '/';
}
}  // namespace

std::string vconfKeyFile(const std::string& key)
{
    return devicePath("vconf/" + key);
}

// A key file holds the type word on its first line and the value after it.
bool vconfRead(const std::string& key, VconfValue& value)
{
    std::string text;
    if (!validKey(key) || !readFile(vconfKeyFile(key), text))
        return false;
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

bool loadApps(AppsState& state, std::string* error)
{
    if (!deviceExists()) {
        if (error)
            *error = "no device directory " + deviceDir();
        return false;
    }
    FileLock lock(devicePath("apps.json"));
    return loadAppsUnlocked(state, error);
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

// --- the journal ---------------------------------------------------------------

void journal(const char* event, Json::Value entry)
{
    if (!deviceExists())
        return;
    entry["time"] = Json::Int64(nowMs());
    entry["event"] = event;
    const std::string line = writeJson(entry, false) + "\n";
    const int fd = ::open(devicePath("journal.jsonl").c_str(),
                          O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return;
    ::flock(fd, LOCK_EX);
    const ssize_t written = ::write(fd, line.data(), line.size());
    (void)written;
    ::close(fd);
}

std::vector<Json::Value> readJournal(size_t from)
{
    std::vector<Json::Value> entries;
    std::ifstream in(devicePath("journal.jsonl"));
    std::string line;
    for (size_t index = 0; std::getline(in, line); ++index) {
        Json::Value entry;
        if (index >= from && parseJson(line, entry, nullptr))
            entries.push_back(entry);
    }
    return entries;
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

// --- descriptions -----------------------------------------------------------------

namespace {


bool applyDatastore(const Json::Value& tables, std::string* error)
{
    auto fail = [error](const std::string& message) {
        if (error)
            *error = "datastore: " + message;
        return false;
    };
    if (!tables.isObject())
        return fail("must be an object from table name to an array of rows");
    sqlite3* db = nullptr;
    if (sqlite3_open(datastorePath().c_str(), &db) != SQLITE_OK) {
        std::string message = db ? sqlite3_errmsg(db) : "out of memory";
        sqlite3_close(db);
        return fail("cannot open " + datastorePath() + ": " + message);
    }
    bool ok = true;
    std::string message;
    auto exec = [&](const std::string& sql) {
        char* err = nullptr;
        if (ok && sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
            ok = false;
            message = std::string(err ? err : "error") + " in: " + sql;
        }
        sqlite3_free(err);
    };
    exec("BEGIN");
    for (const auto& table : tables.getMemberNames()) {
        const Json::Value& rows = tables[table];
        if (!rows.isArray()) {
            ok = false;
            message = "table \"" + table + "\" must be an array of rows";
            break;
        }
        std::vector<std::string> columns;
        for (const auto& row : rows) {
            if (!row.isObject()) {
                ok = false;
                message = "each row of \"" + table + "\" must be an object";
                break;
            }
            for (const auto& column : row.getMemberNames()) {
                const Json::Value& value = row[column];
                if (!value.isString() && !value.isIntegral() && !value.isNull()) {
                    ok = false;
                    message = "column \"" + column + "\" of \"" + table +
                              "\" must hold text or an integer";
                }
                bool known = false;
                for (const auto& c : columns)
                    known = known || c == column;
                if (!known)
                    columns.push_back(column);
            }
        }
        if (!ok)
            break;
        exec("DROP TABLE IF EXISTS " + quoteSqlIdentifier(table));
        std::string create = "CREATE TABLE " + quoteSqlIdentifier(table) + " (";
        for (size_t i = 0; i < columns.size(); ++i)
            create += (i ? ", " : "") + quoteSqlIdentifier(columns[i]);
        if (columns.empty())
            create += "\"_row\"";
        exec(create + ")");
        for (const auto& row : rows) {
            if (!ok || columns.empty())
                break;
            std::string sql = "INSERT INTO " + quoteSqlIdentifier(table) + " VALUES (";
            for (size_t i = 0; i < columns.size(); ++i)
                sql += i ? ", ?" : "?";
            sqlite3_stmt* stmt = nullptr;
            if (sqlite3_prepare_v2(db, (sql + ")").c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
                ok = false;
                message = sqlite3_errmsg(db);
                break;
            }
            for (size_t i = 0; i < columns.size(); ++i) {
                const Json::Value& value = row[columns[i]];
                const int index = static_cast<int>(i) + 1;
                if (value.isString())
                    sqlite3_bind_text(stmt, index, value.asCString(), -1, SQLITE_TRANSIENT);
                else if (value.isIntegral())
                    sqlite3_bind_int64(stmt, index, value.isUInt64() && !value.isInt64()
                                                        ? static_cast<sqlite3_int64>(value.asUInt64())
                                                        : value.asInt64());
                else
                    sqlite3_bind_null(stmt, index);
            }
            if (sqlite3_step(stmt) != SQLITE_DONE) {
                ok = false;
                message = sqlite3_errmsg(db);
            }
            sqlite3_finalize(stmt);
        }
        if (!ok)
            break;
    }
    sqlite3_exec(db, ok ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return ok ? true : fail(message);
}

// The shape of a datastore section, checked before anything is written.
bool checkDatastore(const Json::Value& tables, std::string* error)
{
    auto fail = [error](const std::string& message) {
        if (error)
            *error = "datastore: " + message;
        return false;
    };
    if (!tables.isObject())
        return fail("must be an object from table name to an array of rows");
    for (const auto& table : tables.getMemberNames()) {
        const Json::Value& rows = tables[table];
        if (!rows.isArray())
            return fail("table \"" + table + "\" must be an array of rows");
        for (const auto& row : rows) {
            if (!row.isObject())
                return fail("each row of \"" + table + "\" must be an object");
            for (const auto& column : row.getMemberNames()) {
                const Json::Value& value = row[column];
                if (!value.isString() && !value.isIntegral() && !value.isNull())
                    return fail("column \"" + column + "\" of \"" + table +
                                "\" must hold text or an integer");
            }
        }
    }
    return true;
}

struct PlannedFile {
    std::string target;
    std::string content;
    bool executable = false;
};

// Resolves every entry of a files section, reading "from" sources, without
// writing anything: a refused entry leaves the device as it was.
bool planFiles(const Json::Value& files, const std::string& baseDir,
               std::vector<PlannedFile>& plan, std::string* error)
{
    auto fail = [error](const std::string& message) {
        if (error)
            *error = "files: " + message;
        return false;
    };
    if (!files.isArray())
        return fail("must be an array of file entries");
    for (const auto& file : files) {
        if (!file.isObject())
            return fail("each entry must be an object");
        PlannedFile planned;
        if (file["path"].isString()) {
            const std::string path = file["path"].asString();
            if (path.empty() || path[0] != '/' || path.find("..") != std::string::npos)
                return fail("\"path\" must be an absolute appliance path: " + path);
            planned.target = hostPath(path);
        } else if (file.isMember("tzplatform")) {
            const Json::Value& var = file["tzplatform"];
            const TzVariable* variable = var.isInt() ? tzVariable(var.asInt())
                                         : var.isString() ? tzVariable(var.asString())
                                                          : nullptr;
            if (!variable)
                return fail("unknown tzplatform variable " + writeJson(var, false));
            if (!file["name"].isString() || file["name"].asString().empty() ||
                file["name"].asString().find("..") != std::string::npos)
                return fail("an entry with \"tzplatform\" needs a \"name\" without \"..\"");
            planned.target = hostPath(std::string(variable->path) + "/" + file["name"].asString());
        } else if (file["device"].isString()) {
            const std::string path = file["device"].asString();
            if (path.empty() || path[0] == '/' || path.find("..") != std::string::npos)
                return fail("\"device\" must be relative to the device directory: " + path);
            planned.target = devicePath(path);
        } else {
            return fail("each entry needs \"path\", \"tzplatform\" and \"name\", or \"device\"");
        }
        if (file["text"].isString()) {
            planned.content = file["text"].asString();
        } else if (file.isMember("json")) {
            planned.content = writeJson(file["json"], true) + "\n";
        } else if (file["from"].isString()) {
            std::string from = file["from"].asString();
            if (!from.empty() && from[0] != '/')
                from = baseDir + "/" + from;
            if (!readFile(from, planned.content))
                return fail("cannot read " + from);
        } else {
            return fail("each entry needs \"text\", \"json\" or \"from\"");
        }
        const Json::Value& executable = file["executable"];
        if (!executable.isNull() && !executable.isBool())
            return fail("\"executable\" must be true or false");
        planned.executable = executable.asBool();
        plan.push_back(planned);
    }
    return true;
}

bool writeFiles(const std::vector<PlannedFile>& plan, std::string* error)
{
    for (const auto& file : plan) {
        if (!writeFileAtomic(file.target, file.content) ||
            (file.executable && ::chmod(file.target.c_str(), 0755) != 0)) {
            if (error)
                *error = "files: cannot write " + file.target;
            return false;
        }
    }
    return true;
}

// The directories that every appliance has, so that a fresh device takes
// files under the platform's path variables as the appliance does.
bool makeStandardDirs()
{
    for (const auto& variable : tzVariables())
        if (!makeDirs(hostPath(variable.path)))
            return false;
    // The voice-control daemon's own folder, the engine's installed resources
    // and the media folder of the appliance's first user, as the appliance's
    // image has them.
    for (const char* folder : {"/home/owner/share/.voice/vc", "/usr/share/voice/vc/1.0/engine-data/marl/shared/res/en_US",
                               "/opt/usr/home/owner/media/Sounds"})
        if (!makeDirs(hostPath(folder)))
            return false;
    return true;
}

}  // namespace

bool applyDescription(const Json::Value& description, const std::string& baseDir,
                      std::string* error)
{
    auto fail = [error](const std::string& message) {
        if (error)
            *error = message;
        return false;
    };
    if (!description.isObject())
        return fail("a device description is one JSON object");
    const auto& platform = platformSections();
    for (const auto& name : description.getMemberNames()) {
        const bool known = name == "vconf" || name == "apps" || name == "datastore" ||
                           name == "files" ||
                           std::find(platform.begin(), platform.end(), name) != platform.end();
        if (!known)
            return fail("unknown section \"" + name + "\"");
    }

    // Validate everything before anything is written: a refused description
    // leaves the device as it was.
    const Json::Value& errors = description["errors"];
    if (!errors.isNull() && !errors.isObject())
        return fail("errors: must be an object from function name to error code");
    for (const auto& function : errors.getMemberNames())
        if (!errors[function].isInt() && !errors[function].isString())
            return fail("errors: \"" + function + "\" must be a number or an error name");
    if (description.isMember("datastore") && !checkDatastore(description["datastore"], error))
        return false;
    std::vector<PlannedFile> plannedFiles;
    if (description.isMember("files") &&
        !planFiles(description["files"], baseDir, plannedFiles, error))
        return false;
    AppsState apps;
    if (description.isMember("apps") && !appsFromJson(description["apps"], apps, error))
        return false;
    const Json::Value& keys = description["vconf"];
    if (!keys.isNull() && !keys.isObject())
        return fail("vconf: must be an object from key to value");
    for (const auto& key : keys.getMemberNames()) {
        VconfValue value;
        if (!validKey(key))
            return fail("vconf: bad key \"" + key + "\"");
        if (!vconfFromJson(keys[key], value) && !keys[key].isNull())
            return fail("vconf: \"" + key + "\" must be text, a number, true, false or null");
    }
    Json::Value current;
    std::string loadError;
    if (!loadDescription(current, &loadError)) {
        struct stat st;
        if (::stat(devicePath("device.json").c_str(), &st) == 0)
            return fail(loadError);
        current = Json::Value(Json::objectValue);
    }
    if (!makeDirs(deviceDir()) || !makeDirs(rootDir()) || !makeDirs(devicePath("log")) ||
        !makeStandardDirs())
        return fail("cannot create the device directory " + deviceDir());

    bool platformChanged = false;
    for (const auto& name : platform) {
        if (description.isMember(name)) {
            current[name] = description[name];
            platformChanged = true;
        }
    }
    if (platformChanged || !current.isObject() || current.empty()) {
        if (!writeFileAtomic(devicePath("device.json"), writeJson(current, true) + "\n"))
            return fail("cannot write " + devicePath("device.json"));
    }
    for (const auto& key : keys.getMemberNames()) {
        VconfValue value;
        if (keys[key].isNull())
            vconfUnset(key);
        else if (vconfFromJson(keys[key], value) && !vconfWrite(key, value))
            return fail("vconf: cannot write \"" + key + "\"");
    }
    if (description.isMember("apps")) {
        if (!updateApps([&apps](AppsState& state) { state = apps; }, error))
            return false;
    }
    if (description.isMember("datastore") && !applyDatastore(description["datastore"], error))
        return false;
    if (!writeFiles(plannedFiles, error))
        return false;
    return true;
}

}  // namespace vapp
