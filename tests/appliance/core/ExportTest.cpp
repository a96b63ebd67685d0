// marl-device export: the description of a device as it is, which init and
// apply turn into a device that exports the same.
#include "ScenarioNames.h"
#include "TestDevice.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

std::string fileText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// marl-device with `arguments`; stdout and stderr apart.
ToolRun marlDevice(const std::string& arguments, const std::string& scratch)
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    const std::string errFile = scratch + "/stderr.txt";
    const std::string command =
        std::string(build ? build : ".") + "/bin/marl-device " + arguments + " 2>" + errFile;
    ToolRun result;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return result;
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        result.out.append(buffer, n);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.err = fileText(errFile);
    return result;
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

// Exports `dir`, makes a fresh device from that description and exports it
// in turn; the two texts must be equal. Returns the first export.
Json::Value exportRoundTrip(const marltest::TestDevice& scratch, const std::string& dir)
{
    const ToolRun first = marlDevice("export " + dir, scratch.dir());
    EXPECT_EQ(0, first.status) << first.err;
    const std::string description = scratch.path("exported.json");
    std::ofstream(description) << first.out;
    const std::string copy = scratch.path("copy");
    const ToolRun init = marlDevice("init " + copy + " " + description, scratch.dir());
    EXPECT_EQ(0, init.status) << init.err;
    const ToolRun second = marlDevice("export " + copy, scratch.dir());
    EXPECT_EQ(0, second.status) << second.err;
    EXPECT_EQ(first.out, second.out);
    return parse(first.out);
}

TEST(DeviceExport, HoldsKeysAppsTablesFilesAndPlatformSections)
{
    marltest::TestDevice dev(R"({
      "vconf": {"db/setting/region_code": "EU", "db/orvane/setting/lang": 5, "db/flag": true, "db/ratio": 0.25},
      "apps": {"installed": [{"id": "org.tizen.music"}, {"id": "org.tizen.shop", "service": true}],
               "running": ["org.tizen.music"], "foreground": "org.tizen.music"},
      "datastore": {"Timer": [{"id": "1", "status": "10", "remaining": 300}, {"id": "2", "status": null}]},
      "files": [{"path": "/home/owner/share/AccInfoPrev.txt", "text": "{\"city\": \"Leeds\"}\n"}],
      "wifi": {"on": true},
      "errors": {"battery_get_percent": "DEVICE_ERROR_OPERATION_FAILED"}
    })");
    marltest::TestDevice scratch;
    const Json::Value exported = exportRoundTrip(scratch, dev.dir());

    EXPECT_EQ("EU", exported["vconf"]["db/setting/region_code"].asString());
    EXPECT_EQ(5, exported["vconf"]["db/orvane/setting/lang"].asInt());
    EXPECT_TRUE(exported["vconf"]["db/flag"].isBool());
    EXPECT_DOUBLE_EQ(0.25, exported["vconf"]["db/ratio"].asDouble());
    EXPECT_EQ("org.tizen.music", exported["apps"]["foreground"].asString());
    EXPECT_TRUE(exported["apps"]["installed"][1]["service"].asBool());
    ASSERT_EQ(2u, exported["datastore"]["Timer"].size());
    EXPECT_EQ(300, exported["datastore"]["Timer"][0]["remaining"].asInt());
    EXPECT_TRUE(exported["datastore"]["Timer"][1]["status"].isNull());
    ASSERT_EQ(1u, exported["files"].size());
    EXPECT_EQ("/home/owner/share/AccInfoPrev.txt", exported["files"][0]["path"].asString());
    EXPECT_EQ("{\"city\": \"Leeds\"}\n", exported["files"][0]["text"].asString());
    EXPECT_TRUE(exported["wifi"]["on"].asBool());
    EXPECT_EQ("DEVICE_ERROR_OPERATION_FAILED", exported["errors"]["battery_get_percent"].asString());
}

TEST(DeviceExport, KeepsABinaryFileAsBase64AndAHandlerAsAnExecutable)
{
    marltest::TestDevice dev(R"({"apps": {"installed": [{"id": "org.tizen.shop", "handler": "handlers/shop.sh"}]}})");
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    fs::create_directories(dev.path("root/opt/usr/data"));
    std::ofstream(dev.path("root/opt/usr/data/recipes.db"), std::ios::binary) << bytes;
    fs::create_directories(dev.path("handlers"));
    std::ofstream(dev.path("handlers/shop.sh")) << "#!/bin/sh\nexit 0\n";
    ::chmod(dev.path("handlers/shop.sh").c_str(), 0755);

    marltest::TestDevice scratch;
    const Json::Value exported = exportRoundTrip(scratch, dev.dir());
    ASSERT_EQ(2u, exported["files"].size());
    EXPECT_EQ("/opt/usr/data/recipes.db", exported["files"][0]["path"].asString());
    EXPECT_TRUE(exported["files"][0].isMember("base64"));
    EXPECT_EQ(bytes, fileText(scratch.path("copy/root/opt/usr/data/recipes.db")));
    EXPECT_EQ("handlers/shop.sh", exported["files"][1]["device"].asString());
    EXPECT_TRUE(exported["files"][1]["executable"].asBool());
    struct stat st;
    ASSERT_EQ(0, ::stat(scratch.path("copy/handlers/shop.sh").c_str(), &st));
    EXPECT_TRUE(st.st_mode & S_IXUSR);
}

TEST(DeviceExport, KeepsANumberWithAFractionInATableAsItsText)
{
    marltest::TestDevice dev(R"({"datastore": {"Music": [{"volume": 3}]}})");
    sqlite3* db = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open(vapp::datastorePath().c_str(), &db));
    ASSERT_EQ(SQLITE_OK, sqlite3_exec(db, "INSERT INTO Music VALUES (2.5)", nullptr, nullptr, nullptr));
    sqlite3_close(db);
    marltest::TestDevice scratch;
    const Json::Value exported = exportRoundTrip(scratch, dev.dir());
    EXPECT_EQ("2.5", exported["datastore"]["Music"][1]["volume"].asString());
}

TEST(DeviceExport, RefusesAFolderThatIsNoDevice)
{
    marltest::TestDevice scratch;
    fs::create_directories(scratch.path("plain"));
    const ToolRun run = marlDevice("export " + scratch.path("plain"), scratch.dir());
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(run.out.empty());
    EXPECT_NE(std::string::npos, run.err.find("is no device directory")) << run.err;
}

TEST(DeviceExport, ABase64FileThatIsNoBase64IsRefused)
{
    marltest::TestDevice dev;
    std::string error;
    Json::Value description = parse(R"({"files": [{"path": "/opt/x.bin", "base64": "ab$="}]})");
    EXPECT_FALSE(vapp::applyDescription(description, ".", &error));
    EXPECT_NE(std::string::npos, error.find("base64")) << error;
    EXPECT_FALSE(fs::exists(dev.path("root/opt/x.bin")));
}

// Every checked scenario's device, with the devices of its turns applied in
// order, exports a description that makes the same device again.
class ScenarioDeviceExport : public ::testing::TestWithParam<std::string> {
};

TEST_P(ScenarioDeviceExport, ExportsTheSameAfterInitAndApply)
{
    const Json::Value scenario = parse(fileText(std::string(MARL_SCENARIO_DIR) + "/" + GetParam() + ".json"));
    marltest::TestDevice dev;
    std::string error;
    std::vector<Json::Value> devices = {scenario["device"]};
    for (const auto& turn : scenario["turns"])
        devices.push_back(turn["device"]);
    for (const auto& description : devices) {
        if (description.isObject()) {
            ASSERT_TRUE(vapp::applyDescription(description, MARL_SCENARIO_DIR, &error)) << error;
        }
    }
    marltest::TestDevice scratch;
    const Json::Value exported = exportRoundTrip(scratch, dev.dir());
    // What the scenario set is in the export.
    for (const auto& description : devices) {
        for (const auto& key : description["vconf"].getMemberNames()) {
            if (!description["vconf"][key].isNull()) {
                EXPECT_TRUE(exported["vconf"].isMember(key)) << key;
            }
        }
        for (const auto& table : description["datastore"].getMemberNames())
            EXPECT_EQ(description["datastore"][table].size(), exported["datastore"][table].size()) << table;
    }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioDeviceExport, ::testing::ValuesIn(marltest::scenarioNames(MARL_SCENARIO_DIR)),
                         marltest::scenarioTestName);

}  // namespace
