#include "vappliance/Device.h"
#include "Internal.h"

#include <openssl/evp.h>
#include <sqlite3.h>

#include <sys/stat.h>

#include <algorithm>

namespace vapp {

using namespace internal;

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

bool decodeBase64(const std::string& text, std::string& bytes)
{
    if (text.size() % 4 != 0)
        return false;
    bytes.assign(text.size() / 4 * 3 + 1, '\0');
    const int n = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(&bytes[0]),
                                  reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    if (n < 0)
        return false;
    // The decoder counts the padding as bytes.
    size_t size = static_cast<size_t>(n);
    for (size_t i = text.size(); i > 0 && text[i - 1] == '=' && size > 0; --i)
        --size;
    bytes.resize(size);
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
        } else if (file["base64"].isString()) {
            if (!decodeBase64(file["base64"].asString(), planned.content))
                return fail("\"base64\" is not base64 text");
        } else if (file["from"].isString()) {
            std::string from = file["from"].asString();
            if (!from.empty() && from[0] != '/')
                from = baseDir + "/" + from;
            if (!readFile(from, planned.content))
                return fail("cannot read " + from);
        } else {
            return fail("each entry needs \"text\", \"json\" or \"from\" (or \"base64\")");
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
