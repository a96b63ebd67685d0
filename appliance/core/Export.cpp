#include "vappliance/Device.h"
#include "Internal.h"

#include <openssl/evp.h>
#include <sqlite3.h>

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace vapp {

using namespace internal;

namespace {

// True when the bytes are well-formed UTF-8 without a NUL, so that a JSON
// text holds them exactly.
bool isPlainText(const std::string& bytes)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const size_t n = bytes.size();
    for (size_t i = 0; i < n;) {
        const unsigned c = p[i];
        size_t follow;
        unsigned low = 0x80, high = 0xBF;  // the range of the first continuation byte
        if (c == 0)
            return false;
        if (c < 0x80)
            follow = 0;
        else if (c >= 0xC2 && c <= 0xDF)
            follow = 1;
        else if (c >= 0xE0 && c <= 0xEF) {
            follow = 2;
            low = c == 0xE0 ? 0xA0 : 0x80;
            high = c == 0xED ? 0x9F : 0xBF;
        } else if (c >= 0xF0 && c <= 0xF4) {
            follow = 3;
            low = c == 0xF0 ? 0x90 : 0x80;
            high = c == 0xF4 ? 0x8F : 0xBF;
        } else
            return false;
        if (i + follow >= n && follow > 0)
            return false;
        for (size_t k = 1; k <= follow; ++k) {
            const unsigned b = p[i + k];
            if (k == 1 ? (b < low || b > high) : (b & 0xC0) != 0x80)
                return false;
        }
        i += follow + 1;
    }
    return true;
}

std::string base64(const std::string& bytes)
{
    std::string out(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    const int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(&out[0]),
                                  reinterpret_cast<const unsigned char*>(bytes.data()),
                                  static_cast<int>(bytes.size()));
    out.resize(n > 0 ? static_cast<size_t>(n) : 0);
    return out;
}

// One "files" entry with the file's content; false when it cannot be read.
bool fileEntry(const std::string& hostFile, const char* where, const std::string& name, Json::Value& entry)
{
    std::string content;
    if (!readFile(hostFile, content))
        return false;
    entry = Json::Value(Json::objectValue);
    entry[where] = name;
    if (isPlainText(content))
        entry["text"] = content;
    else
        entry["base64"] = base64(content);
    struct stat st;
    if (::stat(hostFile.c_str(), &st) == 0 && (st.st_mode & S_IXUSR))
        entry["executable"] = true;
    return true;
}

// Regular files under a folder, as paths relative to it, sorted.
std::vector<std::string> filesUnder(const std::string& folder)
{
    std::vector<std::string> found;
    std::error_code ec;
    for (fs::recursive_directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        if (it->is_regular_file(ec) && !it->is_symlink(ec))
            found.push_back(fs::path(it->path()).lexically_relative(folder).string());
    }
    std::sort(found.begin(), found.end());
    return found;
}

bool exportKeys(Json::Value& keys, std::string* error)
{
    keys = Json::Value(Json::objectValue);
    for (const auto& key : filesUnder(devicePath("vconf"))) {
        // A writer's file on its way into place.
        if (key.find(".tmp.") != std::string::npos)
            continue;
        VconfValue value;
        if (!vconfRead(key, value)) {
            if (error)
                *error = "vconf: cannot read the key \"" + key + "\"";
            return false;
        }
        keys[key] = vconfToJson(value);
    }
    return true;
}

bool exportDatastore(Json::Value& tables, std::string* error)
{
    tables = Json::Value(Json::objectValue);
    sqlite3* db = nullptr;
    auto fail = [&](const std::string& message) {
        if (error)
            *error = "datastore: " + message;
        sqlite3_close(db);
        return false;
    };
    if (sqlite3_open_v2(datastorePath().c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
        return fail(std::string("cannot open ") + datastorePath() + ": " + (db ? sqlite3_errmsg(db) : "out of memory"));
    sqlite3_busy_timeout(db, 2000);
    std::vector<std::string> names;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%' ORDER BY name",
                           -1, &stmt, nullptr) != SQLITE_OK)
        return fail(sqlite3_errmsg(db));
    while (sqlite3_step(stmt) == SQLITE_ROW)
        names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    for (const auto& name : names) {
        Json::Value rows(Json::arrayValue);
        if (sqlite3_prepare_v2(db, ("SELECT * FROM " + quoteSqlIdentifier(name)).c_str(), -1, &stmt, nullptr) != SQLITE_OK)
            return fail(sqlite3_errmsg(db));
        int step;
        while ((step = sqlite3_step(stmt)) == SQLITE_ROW) {
            Json::Value row(Json::objectValue);
            for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
                const std::string column = sqlite3_column_name(stmt, c);
                switch (sqlite3_column_type(stmt, c)) {
                case SQLITE_INTEGER:
                    row[column] = Json::Int64(sqlite3_column_int64(stmt, c));
                    break;
                case SQLITE_NULL:
                    row[column] = Json::Value();
                    break;
                default: {
                    // Numbers with a fraction and blobs are kept as their text.
                    const unsigned char* text = sqlite3_column_text(stmt, c);
                    row[column] = std::string(text ? reinterpret_cast<const char*>(text) : "",
                                              static_cast<size_t>(sqlite3_column_bytes(stmt, c)));
                }
                }
            }
            rows.append(row);
        }
        sqlite3_finalize(stmt);
        if (step != SQLITE_DONE)
            return fail("cannot read the table \"" + name + "\": " + sqlite3_errmsg(db));
        tables[name] = rows;
    }
    sqlite3_close(db);
    return true;
}

}  // namespace

bool exportDescription(Json::Value& out, std::string* error)
{
    auto fail = [error](const std::string& message) {
        if (error)
            *error = message;
        return false;
    };
    out = Json::Value(Json::objectValue);
    Json::Value current;
    if (!loadDescription(current, error))
        return false;
    for (const auto& name : platformSections())
        if (current.isMember(name))
            out[name] = current[name];

    if (!exportKeys(out["vconf"], error))
        return false;
    AppsState apps;
    if (!loadApps(apps, error))
        return false;
    out["apps"] = appsToJson(apps);
    // A device whose data store was never made has none.
    struct stat st;
    if (::stat(datastorePath().c_str(), &st) == 0 && !exportDatastore(out["datastore"], error))
        return false;

    Json::Value files(Json::arrayValue);
    for (const auto& path : filesUnder(rootDir())) {
        Json::Value entry;
        if (!fileEntry(rootDir() + "/" + path, "path", "/" + path, entry))
            return fail("files: cannot read " + rootDir() + "/" + path);
        files.append(entry);
    }
    // The device directory's own files (launch handlers and what they read),
    // but for its stores and what the appliance wrote as it ran.
    for (const auto& path : filesUnder(deviceDir())) {
        const std::string top = path.substr(0, path.find('/'));
        static const char* const skipped[] = {"device.json", "apps.json", "vconf", "root", "journal.jsonl",
                                              "log", "audio", "answers"};
        if (std::find(std::begin(skipped), std::end(skipped), top) != std::end(skipped) ||
            top.rfind("datastore.db", 0) == 0 || path.find(".tmp.") != std::string::npos ||
            (path.size() > 5 && path.compare(path.size() - 5, 5, ".lock") == 0))
            continue;
        Json::Value entry;
        if (!fileEntry(devicePath(path), "device", path, entry))
            return fail("files: cannot read " + devicePath(path));
        files.append(entry);
    }
    out["files"] = files;
    return true;
}

}  // namespace vapp
