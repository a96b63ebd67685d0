// marl-device run as a process.
#include "TestDevice.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

struct ToolRun {
    int status = -1;
    std::string output;  // stdout and stderr together
};

ToolRun marlDevice(const std::string& arguments)
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    const std::string command =
        std::string(build ? build : ".") + "/bin/marl-device " + arguments + " 2>&1";
    ToolRun result;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return result;
    char buffer[512];
    while (std::fgets(buffer, sizeof buffer, pipe))
        result.output += buffer;
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

std::string fileText(const std::string& path)
{
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST(MarlDevice, InitMakesAFreshDeviceWithItsDescription)
{
    marltest::TestDevice scratch;
    std::ofstream(scratch.path("desc.json")) << R"({"vconf": {"db/k": "v"}, "wifi": {"on": true}})";
    const std::string dir = scratch.path("new-device");
    const ToolRun run = marlDevice("init " + dir + " " + scratch.path("desc.json"));
    EXPECT_EQ(0, run.status) << run.output;
    EXPECT_TRUE(fs::is_directory(dir + "/root/home/owner/share"));
    EXPECT_EQ("string\nv", fileText(dir + "/vconf/db/k"));
    EXPECT_NE(std::string::npos, fileText(dir + "/device.json").find("\"wifi\""));
}

TEST(MarlDevice, InitOfAnExistingDeviceStartsItAfresh)
{
    marltest::TestDevice dev(R"({"vconf": {"db/old": 1}})");
    const ToolRun run = marlDevice("init " + dev.dir());
    EXPECT_EQ(0, run.status) << run.output;
    EXPECT_FALSE(fs::exists(dev.path("vconf/db/old")));
    EXPECT_TRUE(fs::exists(dev.path("device.json")));
}

TEST(MarlDevice, InitRefusesAForeignFolderAndLeavesItAlone)
{
    marltest::TestDevice scratch;
    const std::string foreign = scratch.path("foreign");
    fs::create_directories(foreign);
    std::ofstream(foreign + "/precious.txt") << "keep me";
    const ToolRun run = marlDevice("init " + foreign);
    EXPECT_EQ(1, run.status);
    EXPECT_NE(std::string::npos, run.output.find("not empty")) << run.output;
    EXPECT_EQ("keep me", fileText(foreign + "/precious.txt"));
    EXPECT_FALSE(fs::exists(foreign + "/device.json"));

    std::ofstream(scratch.path("plain-file")) << "x";
    EXPECT_EQ(1, marlDevice("init " + scratch.path("plain-file")).status);
    EXPECT_EQ("x", fileText(scratch.path("plain-file")));
}

TEST(MarlDevice, BadUsageExitsWithTwo)
{
    marltest::TestDevice dev;
    for (const char* arguments : {"", "frobnicate", "init", "init a b c", "apply", "apply a b",
                                  "path", "apply x.json --device"}) {
        const ToolRun run = marlDevice(arguments);
        EXPECT_EQ(2, run.status) << arguments;
        EXPECT_NE(std::string::npos, run.output.find("usage: marl-device")) << arguments;
    }
}

TEST(MarlDevice, ApplyOfABrokenFileFailsNamingTheFile)
{
    marltest::TestDevice dev(R"({"vconf": {"db/k": 1}})");
    const std::string broken = dev.path("broken.json");
    std::ofstream(broken) << "{\"vconf\": {";
    ToolRun run = marlDevice("apply " + broken + " --device " + dev.dir());
    EXPECT_EQ(1, run.status);
    EXPECT_NE(std::string::npos, run.output.find(broken)) << run.output;

    const std::string refused = dev.path("refused.json");
    std::ofstream(refused) << R"({"vconf": {"db/k": 2}, "bogus": 1})";
    run = marlDevice("apply " + refused + " --device " + dev.dir());
    EXPECT_EQ(1, run.status);
    EXPECT_NE(std::string::npos, run.output.find(refused + ": unknown section \"bogus\"")) << run.output;

    run = marlDevice("apply " + dev.path("absent.json") + " --device " + dev.dir());
    EXPECT_EQ(1, run.status);
    EXPECT_NE(std::string::npos, run.output.find(dev.path("absent.json"))) << run.output;
    EXPECT_EQ("int\n1", fileText(dev.path("vconf/db/k")));
}

TEST(MarlDevice, ApplyChangesTheNamedDevice)
{
    marltest::TestDevice dev;
    std::ofstream(dev.path("more.json")) << R"({"vconf": {"db/k": 3}})";
    const ToolRun run = marlDevice("--device " + dev.dir() + " apply " + dev.path("more.json"));
    EXPECT_EQ(0, run.status) << run.output;
    EXPECT_EQ("int\n3", fileText(dev.path("vconf/db/k")));
}

TEST(MarlDevice, PathPrintsWhereAnAppliancePathLives)
{
    marltest::TestDevice dev;
    const ToolRun run = marlDevice("path /home/owner/data/AccInfoData.txt --device " + dev.dir());
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(dev.path("root/home/owner/data/AccInfoData.txt") + "\n", run.output);
}

}  // namespace
