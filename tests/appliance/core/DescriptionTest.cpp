// Applying device descriptions, reading device.json, and injected failures.
#include "TestDevice.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <tizen_error.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string fileText(const std::string& path)
{
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

Json::Value parse(const std::string& text)
{
    Json::Value json;
    Json::CharReaderBuilder builder;
    std::string errors;
    std::istringstream in(text);
    EXPECT_TRUE(Json::parseFromStream(builder, in, &json, &errors)) << errors;
    return json;
}

// Every file under the device directory with its content, to tell whether a
// refused description changed anything.
std::map<std::string, std::string> snapshot(const std::string& dir)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(dir)) {
        const std::string relative = fs::relative(entry.path(), dir).string();
        files[relative] = entry.is_regular_file() ? fileText(entry.path().string()) : "<dir>";
    }
    return files;
}

// Rows of a data-store table in rowid order: column name to value text, and
// the SQLite type of each value.
std::vector<std::map<std::string, std::string>> rows(const std::string& table)
{
    std::vector<std::map<std::string, std::string>> result;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(vapp::datastorePath().c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return result;
    }
    sqlite3_stmt* stmt = nullptr;
    const std::string sql = "SELECT * FROM \"" + table + "\" ORDER BY rowid";
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) == SQLITE_OK) {
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            std::map<std::string, std::string> row;
            for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                const char* type = "";
                switch (sqlite3_column_type(stmt, i)) {
                case SQLITE_INTEGER: type = "integer:"; break;
                case SQLITE_TEXT: type = "text:"; break;
                case SQLITE_NULL: type = "null:"; break;
                default: type = "other:"; break;
                }
                const unsigned char* text = sqlite3_column_text(stmt, i);
                row[sqlite3_column_name(stmt, i)] =
                    type + std::string(text ? reinterpret_cast<const char*>(text) : "");
            }
            result.push_back(row);
        }
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return result;
}

bool applyText(const std::string& description, std::string* error)
{
    return vapp::applyDescription(parse(description), ".", error);
}

TEST(Description, PlatformSectionsGoIntoDeviceJson)
{
    marltest::TestDevice dev(R"({"wifi": {"connected": true}, "dlog": {"stderr": "E"}})");
    EXPECT_TRUE(vapp::section("wifi")["connected"].asBool());
    EXPECT_EQ("E", vapp::section("dlog")["stderr"].asString());
    // A later description replaces the sections it names and keeps the others.
    dev.apply(R"({"wifi": {"connected": false}})");
    EXPECT_FALSE(vapp::section("wifi")["connected"].asBool());
    EXPECT_EQ("E", vapp::section("dlog")["stderr"].asString());
    EXPECT_TRUE(vapp::section("battery").isNull());
}

TEST(Description, ARewriteOfTheSameSizeIsSeenAtOnce)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "E"}})");
    EXPECT_EQ("E", vapp::section("dlog")["stderr"].asString());
    // Same length, written within one tick of the file system's clock.
    dev.apply(R"({"dlog": {"stderr": "W"}})");
    EXPECT_EQ("W", vapp::section("dlog")["stderr"].asString());
    std::ofstream(dev.path("device.json")) << R"({"dlog": {"stderr": "I"}})";
    EXPECT_EQ("I", vapp::section("dlog")["stderr"].asString());
}

TEST(Description, VconfValuesKeepTheirTypes)
{
    marltest::TestDevice dev(R"({"vconf": {"db/s": "text", "db/i": -3, "db/b": false,
                                          "db/d": 0.25, "db/whole": 3.0}})");
    vapp::VconfValue value;
    ASSERT_TRUE(vapp::vconfRead("db/s", value));
    EXPECT_EQ(vapp::VconfValue::String, value.type);
    EXPECT_EQ("text", value.s);
    ASSERT_TRUE(vapp::vconfRead("db/i", value));
    EXPECT_EQ(vapp::VconfValue::Int, value.type);
    EXPECT_EQ(-3, value.i);
    ASSERT_TRUE(vapp::vconfRead("db/b", value));
    EXPECT_EQ(vapp::VconfValue::Bool, value.type);
    EXPECT_FALSE(value.b);
    ASSERT_TRUE(vapp::vconfRead("db/d", value));
    EXPECT_EQ(vapp::VconfValue::Double, value.type);
    EXPECT_EQ(0.25, value.d);
    ASSERT_TRUE(vapp::vconfRead("db/whole", value));
    EXPECT_EQ(vapp::VconfValue::Double, value.type);
    EXPECT_EQ("string\ntext", fileText(dev.path("vconf/db/s")));
}

TEST(Description, VconfNullUnsetsAKey)
{
    marltest::TestDevice dev(R"({"vconf": {"db/k": 1}})");
    dev.apply(R"({"vconf": {"db/k": null}})");
    vapp::VconfValue value;
    EXPECT_FALSE(vapp::vconfRead("db/k", value));
}

TEST(Description, AppsKeepHandlersAndServiceFlags)
{
    marltest::TestDevice dev(R"({"apps": {"installed": ["org.tizen.plain",
        {"id": "com.samsung.commerce", "handler": "handlers/commerce.sh", "service": true},
        {"id": "LAykghKXQw.FoodMinder", "handler": "handlers/foodminder.sh"}],
        "running": ["com.samsung.commerce"], "foreground": "LAykghKXQw.FoodMinder"}})");
    vapp::AppsState apps;
    std::string error;
    ASSERT_TRUE(vapp::loadApps(apps, &error)) << error;
    ASSERT_EQ(3u, apps.installed.size());
    EXPECT_EQ("org.tizen.plain", apps.installed[0].id);
    EXPECT_EQ("", apps.installed[0].handler);
    EXPECT_FALSE(apps.installed[0].service);
    const vapp::InstalledApp* commerce = apps.find("com.samsung.commerce");
    ASSERT_NE(nullptr, commerce);
    EXPECT_EQ("handlers/commerce.sh", commerce->handler);
    EXPECT_TRUE(commerce->service);
    EXPECT_FALSE(apps.find("LAykghKXQw.FoodMinder")->service);
    EXPECT_EQ("LAykghKXQw.FoodMinder", apps.foreground);
    // The foreground app counts as running.
    EXPECT_TRUE(apps.isRunning("LAykghKXQw.FoodMinder"));
    EXPECT_TRUE(apps.isRunning("com.samsung.commerce"));
    EXPECT_FALSE(apps.isRunning("org.tizen.plain"));
}

TEST(Description, UpdateAppsChangesTheStateUnderItsLock)
{
    marltest::TestDevice dev(R"({"apps": {"installed": ["a", "b"]}})");
    ASSERT_TRUE(vapp::updateApps([](vapp::AppsState& state) {
        state.running.push_back("b");
        state.foreground = "b";
    }));
    vapp::AppsState apps;
    ASSERT_TRUE(vapp::loadApps(apps));
    EXPECT_EQ("b", apps.foreground);
    EXPECT_TRUE(apps.isRunning("b"));
}

TEST(Description, MalformedAppsFileIsAnError)
{
    marltest::TestDevice dev;
    std::ofstream(dev.path("apps.json")) << "{\"installed\": [";
    vapp::AppsState apps;
    std::string error;
    EXPECT_FALSE(vapp::loadApps(apps, &error));
    EXPECT_NE(std::string::npos, error.find("apps.json")) << error;
}

TEST(Description, DatastoreTablesKeepTextIntegersMissingColumnsAndRowOrder)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [
        {"id": "3", "remain": 120, "name": "pasta"},
        {"id": "1", "remain": 0},
        {"id": "2", "name": null, "remain": -5}],
        "Empty": []}})");
    const auto timer = rows("Timer");
    ASSERT_EQ(3u, timer.size());
    EXPECT_EQ("text:3", timer[0].at("id"));
    EXPECT_EQ("integer:120", timer[0].at("remain"));
    EXPECT_EQ("text:pasta", timer[0].at("name"));
    EXPECT_EQ("text:1", timer[1].at("id"));
    EXPECT_EQ("null:", timer[1].at("name"));
    EXPECT_EQ("text:2", timer[2].at("id"));
    EXPECT_EQ("integer:-5", timer[2].at("remain"));
    EXPECT_EQ("null:", timer[2].at("name"));
    EXPECT_TRUE(rows("Empty").empty());
}

TEST(Description, DatastoreTableIsReplacedAndOtherTablesKept)
{
    marltest::TestDevice dev(R"({"datastore": {"Music": [{"title": "a"}], "Task": [{"t": 1}]}})");
    dev.apply(R"({"datastore": {"Music": [{"artist": "b"}, {"artist": "c"}]}})");
    const auto music = rows("Music");
    ASSERT_EQ(2u, music.size());
    EXPECT_EQ(0u, music[0].count("title"));
    EXPECT_EQ("text:c", music[1].at("artist"));
    EXPECT_EQ(1u, rows("Task").size());
}

TEST(Description, FilesByPathTzplatformDeviceAndFrom)
{
    marltest::TestDevice source;
    std::ofstream(source.path("resource.bin")) << "from a file";
    const std::string from = source.path("resource.bin");
    marltest::TestDevice dev(R"({"files": [
        {"path": "/opt/usr/share/a.txt", "text": "by path"},
        {"tzplatform": "TZ_USER_DATA", "name": "AccInfoData.txt", "json": {"lat": 37.5}},
        {"tzplatform": 71, "name": ".voice/vc/engine/shared/data/x", "text": "by number"},
        {"device": "handlers/commerce.sh", "text": "#!/bin/sh\n", "executable": true},
        {"path": "/usr/share/res.bin", "from": ")" + from + R"("}]})");
    EXPECT_EQ("by path", fileText(dev.path("root/opt/usr/share/a.txt")));
    EXPECT_EQ(37.5, parse(fileText(dev.path("root/home/owner/data/AccInfoData.txt")))["lat"].asDouble());
    EXPECT_EQ("by number", fileText(dev.path("root/home/owner/share/.voice/vc/engine/shared/data/x")));
    EXPECT_EQ("#!/bin/sh\n", fileText(dev.path("handlers/commerce.sh")));
    EXPECT_EQ("from a file", fileText(dev.path("root/usr/share/res.bin")));
    struct stat st;
    ASSERT_EQ(0, ::stat(dev.path("handlers/commerce.sh").c_str(), &st));
    EXPECT_EQ(0755u, st.st_mode & 0777);
    ASSERT_EQ(0, ::stat(dev.path("root/opt/usr/share/a.txt").c_str(), &st));
    EXPECT_EQ(0u, st.st_mode & 0111);
}

TEST(Description, RelativeFromIsReadBesideTheDescription)
{
    marltest::TestDevice source;
    std::ofstream(source.path("beside.txt")) << "beside";
    marltest::TestDevice dev;
    std::string error;
    ASSERT_TRUE(vapp::applyDescription(parse(R"({"files": [{"path": "/opt/usr/b", "from": "beside.txt"}]})"),
                                       source.dir(), &error))
        << error;
    EXPECT_EQ("beside", fileText(dev.path("root/opt/usr/b")));
}

// A refused description names what is wrong and leaves every file as it was.
void expectRefused(const marltest::TestDevice& dev, const std::string& description,
                   const std::string& words)
{
    const auto before = snapshot(dev.dir());
    std::string error;
    EXPECT_FALSE(applyText(description, &error)) << description;
    EXPECT_NE(std::string::npos, error.find(words)) << description << " -> " << error;
    EXPECT_EQ(before, snapshot(dev.dir())) << description;
}

TEST(Description, RefusalsLeaveTheDeviceUnchanged)
{
    marltest::TestDevice dev(R"({"wifi": {"connected": true}, "vconf": {"db/k": 1},
                                 "datastore": {"Timer": [{"id": "1"}]},
                                 "apps": {"installed": ["a"]}})");
    // Each carries a valid section too, which must not be applied either.
    const std::string good = R"("vconf": {"db/k": 2, "db/new": 1}, "wifi": {"connected": false})";
    expectRefused(dev, R"({"bogus": {}, )" + good + "}", "unknown section \"bogus\"");
    expectRefused(dev, R"({"vconf": [1]})", "vconf: must be an object");
    expectRefused(dev, R"({"vconf": {"db/a": [1]}, "wifi": {}})", "\"db/a\" must be");
    expectRefused(dev, R"({"vconf": {"db/a": 3000000000}})", "\"db/a\" must be");
    expectRefused(dev, R"({"vconf": {"../a": 1}, "wifi": {}})", "bad key");
    expectRefused(dev, R"({"vconf": {"/db/a": 1}})", "bad key");
    expectRefused(dev, R"({"apps": ["a"], )" + good + "}", "apps: must be an object");
    expectRefused(dev, R"({"apps": {"installed": "a"}, )" + good + "}", "\"installed\" must be an array");
    expectRefused(dev, R"({"apps": {"installed": [{"id": "a", "service": "yes"}]}, )" + good + "}",
                  "\"service\" of a");
    expectRefused(dev, R"({"apps": {"running": "a"}, )" + good + "}", "\"running\"");
    expectRefused(dev, R"({"apps": {"extra": 1}, )" + good + "}", "unknown member");
    expectRefused(dev, R"({"datastore": {"Timer": [{"id": 1.5}]}, )" + good + "}",
                  "must hold text or an integer");
    expectRefused(dev, R"({"datastore": {"Timer": {"id": 1}}, )" + good + "}", "array of rows");
    expectRefused(dev, R"({"datastore": [], )" + good + "}", "datastore: must be an object");
    expectRefused(dev, R"({"files": [{"path": "/opt/usr/ok", "text": "x"},
                                     {"path": "/opt/usr/../../etc/x", "text": "x"}], )" + good + "}",
                  "absolute appliance path");
    expectRefused(dev, R"({"files": [{"path": "relative", "text": "x"}], )" + good + "}",
                  "absolute appliance path");
    expectRefused(dev, R"({"files": [{"tzplatform": 71, "name": "../x", "text": "x"}], )" + good + "}",
                  "\"name\"");
    expectRefused(dev, R"({"files": [{"tzplatform": 2, "name": "x", "text": "x"}], )" + good + "}",
                  "unknown tzplatform variable");
    expectRefused(dev, R"({"files": [{"device": "../x", "text": "x"}], )" + good + "}",
                  "relative to the device directory");
    expectRefused(dev, R"({"files": [{"device": "x"}], )" + good + "}", "\"text\", \"json\" or \"from\"");
    expectRefused(dev, R"({"files": [{"device": "x", "from": "/no/such/file"}], )" + good + "}",
                  "cannot read /no/such/file");
    expectRefused(dev, R"({"files": [{"device": "x", "text": "", "executable": "yes"}], )" + good + "}",
                  "\"executable\"");
    expectRefused(dev, R"({"files": {}, )" + good + "}", "files: must be an array");
    expectRefused(dev, R"({"errors": {"wifi_get_x": 1.5}, )" + good + "}", "\"wifi_get_x\"");
    expectRefused(dev, R"({"errors": [], )" + good + "}", "errors: must be an object");
    expectRefused(dev, "[1]", "one JSON object");
}

TEST(Description, MalformedDeviceJsonAnswersNullSectionsAndIsReported)
{
    marltest::TestDevice dev(R"({"wifi": {"connected": true}})");
    std::ofstream(dev.path("device.json")) << "{\"wifi\": ";
    EXPECT_TRUE(vapp::section("wifi").isNull());
    Json::Value description;
    std::string error;
    EXPECT_FALSE(vapp::loadDescription(description, &error));
    EXPECT_NE(std::string::npos, error.find("device.json is not valid JSON")) << error;
    // Applying onto it is refused rather than losing what was there.
    std::string applyError;
    EXPECT_FALSE(applyText(R"({"dlog": {}})", &applyError));
    EXPECT_NE(std::string::npos, applyError.find("not valid JSON")) << applyError;
    EXPECT_EQ("{\"wifi\": ", fileText(dev.path("device.json")));
}

TEST(Description, DeviceJsonThatIsNoObjectIsReported)
{
    marltest::TestDevice dev;
    std::ofstream(dev.path("device.json")) << "[]";
    Json::Value description;
    std::string error;
    EXPECT_FALSE(vapp::loadDescription(description, &error));
    EXPECT_NE(std::string::npos, error.find("must hold one JSON object")) << error;
    EXPECT_TRUE(vapp::section("errors").isNull());
}

TEST(Description, MissingDeviceIsReported)
{
    std::string missing;
    {
        marltest::TestDevice dev;
        missing = dev.dir();
    }
    ::setenv("MARL_DEVICE_DIR", missing.c_str(), 1);
    Json::Value description;
    std::string error;
    EXPECT_FALSE(vapp::loadDescription(description, &error));
    EXPECT_EQ("no device directory " + missing, error);
    EXPECT_FALSE(vapp::deviceExists());
    int code = 0;
    EXPECT_FALSE(vapp::injectedError("anything", &code));
}

TEST(Description, FreshDeviceHasItsFoldersAndAnEmptyDescription)
{
    marltest::TestDevice dev;
    EXPECT_TRUE(fs::is_directory(dev.path("root")));
    EXPECT_TRUE(fs::is_directory(dev.path("log")));
    for (const auto& variable : vapp::tzVariables())
        EXPECT_TRUE(fs::is_directory(vapp::hostPath(variable.path))) << variable.name;
    Json::Value description;
    EXPECT_TRUE(vapp::loadDescription(description));
    EXPECT_TRUE(description.isObject());
}

TEST(Description, DeviceDirectoryComesFromTheEnvironmentOrHome)
{
    marltest::TestDevice dev;
    EXPECT_EQ(dev.dir(), vapp::deviceDir());
    EXPECT_EQ(dev.dir() + "/root/home/owner/x", vapp::hostPath("/home/owner/x"));
    EXPECT_EQ(dev.dir() + "/root/rel", vapp::hostPath("rel"));
    const std::string saved = vapp::deviceDir();
    ::unsetenv("MARL_DEVICE_DIR");
    const char* home = std::getenv("HOME");
    EXPECT_EQ(std::string(home && *home ? home : "/tmp") + "/.marl-device", vapp::deviceDir());
    ::setenv("MARL_DEVICE_DIR", saved.c_str(), 1);
}

TEST(InjectedError, NumbersAndRegisteredNamesAreAnswered)
{
    vapp::registerErrorNames({{"TEST_ERROR_SPECIAL", -4242}});
    marltest::TestDevice dev(R"({"errors": {"f_number": -5, "f_name": "TIZEN_ERROR_IO_ERROR",
                                            "f_registered": "TEST_ERROR_SPECIAL",
                                            "f_none": "TIZEN_ERROR_NONE"}})");
    int code = 1;
    EXPECT_TRUE(vapp::injectedError("f_number", &code));
    EXPECT_EQ(-5, code);
    EXPECT_TRUE(vapp::injectedError("f_name", &code));
    EXPECT_EQ(-EIO, code);
    EXPECT_TRUE(vapp::injectedError("f_registered", &code));
    EXPECT_EQ(-4242, code);
    EXPECT_TRUE(vapp::injectedError("f_none", &code));
    EXPECT_EQ(0, code);
    code = 1;
    EXPECT_FALSE(vapp::injectedError("f_other", &code));
    EXPECT_EQ(1, code);
}

TEST(InjectedError, UnknownNameAnswersUnknownError)
{
    marltest::TestDevice dev(R"({"errors": {"f": "NO_SUCH_ERROR_NAME"}})");
    int code = 0;
    ::testing::internal::CaptureStderr();
    EXPECT_TRUE(vapp::injectedError("f", &code));
    const std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(static_cast<int>(TIZEN_ERROR_UNKNOWN), code);
    EXPECT_NE(std::string::npos, err.find("NO_SUCH_ERROR_NAME")) << err;
}

TEST(InjectedError, ErrorCodeFromJsonTakesNumbersAndNamesOnly)
{
    int code = 0;
    EXPECT_TRUE(vapp::errorCodeFromJson(Json::Value(-3), &code));
    EXPECT_EQ(-3, code);
    EXPECT_TRUE(vapp::errorCodeFromJson(Json::Value("TIZEN_ERROR_NOT_SUPPORTED"), &code));
    EXPECT_EQ(static_cast<int>(TIZEN_ERROR_NOT_SUPPORTED), code);
    EXPECT_FALSE(vapp::errorCodeFromJson(Json::Value("nope"), &code));
    EXPECT_FALSE(vapp::errorCodeFromJson(Json::Value(true), &code));
    EXPECT_FALSE(vapp::errorCodeFromJson(Json::Value(Json::arrayValue), &code));
}

}  // namespace
