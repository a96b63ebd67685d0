#include "TestDevice.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace {

// Runs `command` and gives its standard output and exit status.
std::string run(const std::string& command, int* status)
{
    std::string output;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) {
        *status = -1;
        return output;
    }
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe))
        output += buffer;
    *status = ::pclose(pipe);
    return output;
}

}  // namespace

// A handler at exit runs after the static objects of the process are gone; a
// path it names is still mapped into the device, and the process ends cleanly
// (under LeakSanitizer, whose check at exit comes after it, too).
TEST(FsmapAtExit, MapsPathsAfterTheStaticObjectsAreDestroyed)
{
    marltest::TestDevice dev;
    int status = 0;
    const std::string output = run(std::string(AT_EXIT_PROGRAM) + " 2>&1", &status);
    ASSERT_TRUE(WIFEXITED(status)) << output;
    EXPECT_EQ(0, WEXITSTATUS(status)) << output;
    EXPECT_NE(std::string::npos, output.find("in main: /home/owner/\n")) << output;
    EXPECT_NE(std::string::npos, output.find("at exit: translate 1 access 0\n")) << output;
}
