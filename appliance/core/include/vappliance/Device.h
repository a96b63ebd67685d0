// The virtual appliance's device directory: one folder that stands for one
// appliance. Every host implementation of a platform API reads and writes its
// state here, so that several processes (the daemon simulator, an app's launch
// handler, the command-line tools) see the same device.
//
//   DIR/device.json     platform values and injected failures (sections below)
//   DIR/apps.json       app framework state: installed, running, foreground
//   DIR/vconf/<key>     the shared key store, one file per key
//   DIR/datastore.db    the appliance data store (SQLite, one table per table)
//   DIR/root/           the appliance's file system root
//   DIR/journal.jsonl   what the appliance saw: launches, playbacks, key changes
//   DIR/log/dlog.log    the platform log
//
// The directory is named by MARL_DEVICE_DIR, and defaults to $HOME/.marl-device.
#pragma once

#include <json/json.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vapp {

// --- the directory -------------------------------------------------------

std::string deviceDir();
bool deviceExists();
// deviceDir() + "/" + relative
std::string devicePath(const std::string& relative);

// --- device.json ---------------------------------------------------------

// The parsed description, shared; null, with a message, when the file is
// missing or malformed (a malformed file is also reported once on stderr).
// The file is parsed again only when it has changed, so that two calls
// without a write in between answer the same object.
std::shared_ptr<const Json::Value> description(std::string* error = nullptr);
// The same, copied. False, with a message, when the file is missing or
// malformed.
bool loadDescription(Json::Value& out, std::string* error = nullptr);
// One top-level section of the description, null when absent or unreadable.
Json::Value section(const char* name);

// The names of the platform sections that device.json may hold. Each host
// library documents the format of its own section.
const std::vector<std::string>& platformSections();

// Failure injection: description["errors"][function] names the code that the
// platform function returns instead of doing its work. The code is a number or
// a registered symbolic name ("TIZEN_ERROR_IO_ERROR", "WIFI_ERROR_...").
bool injectedError(const char* function, int* code);
// The same, in a description already at hand.
bool injectedError(const Json::Value& description, const char* function, int* code);

// Codes given in JSON: a number, or a registered name. False when neither.
bool errorCodeFromJson(const Json::Value& value, int* code);
void registerErrorNames(std::initializer_list<std::pair<const char*, int>> names);

// --- the file system root ------------------------------------------------

std::string rootDir();
// The host path of an absolute appliance path: rootDir() + path.
std::string hostPath(const std::string& appliancePath);

// Absolute appliance paths under these prefixes are redirected into the root
// when a process runs with the file-system map preloaded.
const std::vector<std::string>& mappedPrefixes();

// tzplatform path variables: number, symbolic name, appliance path.
struct TzVariable {
    int id;
    const char* name;
    const char* path;
};
const std::vector<TzVariable>& tzVariables();
const TzVariable* tzVariable(int id);
const TzVariable* tzVariable(const std::string& name);

// --- small file helpers --------------------------------------------------

bool readFile(const std::string& path, std::string& content);
// Writes a temporary file beside the target and renames it into place.
bool writeFileAtomic(const std::string& path, const std::string& content);
bool makeDirs(const std::string& path);

// --- the key store (vconf) -----------------------------------------------

struct VconfValue {
    enum Type { String, Int, Bool, Double };
    Type type = String;
    std::string s;
    int i = 0;
    bool b = false;
    double d = 0.0;
};

std::string vconfKeyFile(const std::string& key);
// False when the key is unset or its file is unreadable.
bool vconfRead(const std::string& key, VconfValue& value);
bool vconfWrite(const std::string& key, const VconfValue& value);
bool vconfUnset(const std::string& key);
Json::Value vconfToJson(const VconfValue& value);
bool vconfFromJson(const Json::Value& json, VconfValue& value);

// --- the app framework's state (apps.json) --------------------------------

struct InstalledApp {
    std::string id;
    std::string handler;  // executable, relative to the device directory; may be empty
    bool service = false; // a service app runs without coming to the foreground
};

struct AppsState {
    std::vector<InstalledApp> installed;
    std::vector<std::string> running;
    std::string foreground;

    const InstalledApp* find(const std::string& id) const;
    bool isRunning(const std::string& id) const;
};

bool appsFromJson(const Json::Value& json, AppsState& state, std::string* error);
Json::Value appsToJson(const AppsState& state);
// A missing apps.json is an empty state; a malformed one is an error. The
// file is parsed again only when it has changed.
bool loadApps(AppsState& state, std::string* error = nullptr);
// Read, change and write back under an exclusive lock.
bool updateApps(const std::function<void(AppsState&)>& change, std::string* error = nullptr);

// --- the journal -----------------------------------------------------------

// Appends one JSON object as one line, with "time" (milliseconds since the
// epoch) and "event" set. Events: "app_launch", "app_launch_refused",
// "app_terminate", "audio_playback", "vconf_set", "vconf_unset",
// "location_start", "location_stop".
void journal(const char* event, Json::Value entry);
// The entries from line `from` on (0 = all).
std::vector<Json::Value> readJournal(size_t from = 0);

// --- the data store ----------------------------------------------------------

std::string datastorePath();
// A table or column name quoted for SQL.
std::string quoteSqlIdentifier(const std::string& name);

// --- descriptions ------------------------------------------------------------

// Applies a device description to the directory: "vconf", "apps", "datastore"
// and "files" go into their stores, every other section replaces the same
// section of device.json. baseDir resolves relative "from" files.
bool applyDescription(const Json::Value& description, const std::string& baseDir,
                      std::string* error);
// The description of the device as it is: its platform sections, every key,
// the apps, every data-store table, every file under the root (as "text",
// or "base64" when it is no UTF-8 text) and the device directory's other
// files (launch handlers and what they read; not the journal, the log, the
// played audio or marl-sim's answers).
// Applied to a fresh device, it gives a device that exports the same.
bool exportDescription(Json::Value& out, std::string* error);

}  // namespace vapp
