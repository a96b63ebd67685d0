#include <vconf.h>

#include "TestDevice.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

struct ToolRun {
    int status = -1;
    std::string output;  // stdout and stderr together
};

std::string tool()
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    return std::string(build ? build : ".") + "/bin/vconftool";
}

ToolRun run(const std::string& arguments)
{
    ToolRun result;
    FILE* pipe = ::popen((tool() + " " + arguments + " 2>&1").c_str(), "r");
    if (!pipe)
        return result;
    char buffer[512];
    while (std::fgets(buffer, sizeof buffer, pipe))
        result.output += buffer;
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

TEST(Vconftool, SetThenGetEachType)
{
    marltest::TestDevice dev;
    EXPECT_EQ(0, run("set -t string db/s 'hello world'").status);
    EXPECT_EQ(0, run("set -t int db/i -12").status);
    EXPECT_EQ(0, run("set -t bool db/b true").status);
    EXPECT_EQ(0, run("set -t double db/d 0.1").status);
    EXPECT_EQ("hello world\n", run("get db/s").output);
    EXPECT_EQ("-12\n", run("get db/i").output);
    EXPECT_EQ("1\n", run("get db/b").output);
    EXPECT_EQ("0.1\n", run("get db/d").output);
    // The library reads what the tool wrote.
    int value = 0;
    EXPECT_EQ(VCONF_OK, vconf_get_int("db/i", &value));
    EXPECT_EQ(-12, value);
}

TEST(Vconftool, DeviceOptionNamesTheDirectory)
{
    marltest::TestDevice other;
    marltest::TestDevice dev;
    EXPECT_EQ(0, run("set -t int db/i 5 --device " + other.dir()).status);
    EXPECT_EQ("5\n", run("--device " + other.dir() + " get db/i").output);
    EXPECT_EQ(1, run("get db/i").status);
}

TEST(Vconftool, GetOfAnUnsetKeyFailsWithAMessage)
{
    marltest::TestDevice dev;
    const ToolRun result = run("get db/none");
    EXPECT_EQ(1, result.status);
    EXPECT_NE(std::string::npos, result.output.find("db/none is not set")) << result.output;
}

TEST(Vconftool, UnsetRemovesAKeyAndFailsOnAnUnsetOne)
{
    marltest::TestDevice dev(R"({"vconf": {"db/k": 1}})");
    EXPECT_EQ(0, run("unset db/k").status);
    EXPECT_EQ(1, run("get db/k").status);
    EXPECT_EQ(1, run("unset db/k").status);
}

TEST(Vconftool, BadArgumentsPrintUsageAndExitWithTwo)
{
    marltest::TestDevice dev;
    for (const char* arguments : {"", "frobnicate", "set db/k 1", "set -t int db/k",
                                  "set -t float db/k 1", "set -t int db/k twelve",
                                  "set -t int db/k 99999999999", "set -t bool db/k maybe",
                                  "set -t double db/k 1.5x", "get", "get a b",
                                  "watch db/k --count", "watch db/k --count many",
                                  "watch db/k --bogus 1", "get db/k --device"}) {
        const ToolRun result = run(arguments);
        EXPECT_EQ(2, result.status) << arguments;
        EXPECT_NE(std::string::npos, result.output.find("usage: vconftool")) << arguments;
    }
    EXPECT_EQ(1, run("get db/k").status);  // nothing was written meanwhile
}

TEST(Vconftool, MissingDeviceDirectoryFailsWithExitOne)
{
    std::string missing;
    {
        marltest::TestDevice dev;
        missing = dev.dir();
    }
    for (const char* arguments : {"set -t int db/k 1", "get db/k", "unset db/k", "watch db/k"}) {
        const ToolRun result = run(std::string(arguments) + " --device " + missing);
        EXPECT_EQ(1, result.status) << arguments;
        EXPECT_NE(std::string::npos, result.output.find("no device directory")) << result.output;
    }
}

TEST(Vconftool, WatchPrintsTheChangesThatThisProcessWrites)
{
    marltest::TestDevice dev;
    FILE* pipe = ::popen((tool() + " watch db/w --count 2 --timeout 10").c_str(), "r");
    ASSERT_NE(nullptr, pipe);
    char line[256];
    ASSERT_NE(nullptr, std::fgets(line, sizeof line, pipe));
    EXPECT_EQ(std::string("watching db/w\n"), line);
    EXPECT_EQ(VCONF_OK, vconf_set_int("db/w", 1));
    EXPECT_EQ(VCONF_OK, vconf_set_int("db/w", 2));
    std::string changes;
    while (std::fgets(line, sizeof line, pipe))
        changes += line;
    const int status = ::pclose(pipe);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    // Two lines; the value is read when the change arrives, so the last line
    // is always the last value.
    ASSERT_EQ(2, std::count(changes.begin(), changes.end(), '\n')) << changes;
    EXPECT_EQ(0u, changes.find("db/w="));
    EXPECT_NE(std::string::npos, changes.find("\ndb/w=2\n")) << changes;
}

TEST(Vconftool, WatchThatTimesOutBeforeItsCountFails)
{
    marltest::TestDevice dev;
    const ToolRun result = run("watch db/w --count 1 --timeout 0");
    EXPECT_EQ(1, result.status);
    EXPECT_NE(std::string::npos, result.output.find("timed out")) << result.output;
    EXPECT_EQ(0, run("watch db/w --timeout 0").status);
}

}  // namespace
