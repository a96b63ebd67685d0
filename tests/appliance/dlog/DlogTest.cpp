#include <dlog.h>

#include "TestDevice.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

extern "C" int dlogErrorPriorityInC(void);
extern "C" int dlogPrintFromC(const char* text);
int dlogFatalPriorityInCxx14();

namespace {

class Dlog : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char* env = std::getenv("MARL_LOG_STDERR");
        mSavedEnv = env ? env : "";
        mHadEnv = env != nullptr;
        ::unsetenv("MARL_LOG_STDERR");
    }
    void TearDown() override
    {
        if (mHadEnv)
            ::setenv("MARL_LOG_STDERR", mSavedEnv.c_str(), 1);
        else
            ::unsetenv("MARL_LOG_STDERR");
    }

    static std::vector<std::string> logLines(const marltest::TestDevice& dev)
    {
        std::ifstream in(dev.path("log/dlog.log"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }

    static std::string logText(const marltest::TestDevice& dev)
    {
        std::ifstream in(dev.path("log/dlog.log"));
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

private:
    std::string mSavedEnv;
    bool mHadEnv = false;
};

int vprintVia(log_priority prio, const char* tag, const char* fmt, ...)
{
    va_list ap;
    va_start(ap, fmt);
    const int result = dlog_vprint(prio, tag, fmt, ap);
    va_end(ap);
    return result;
}

TEST_F(Dlog, PrioritiesHaveThePlatformValues)
{
    EXPECT_EQ(0, DLOG_UNKNOWN);
    EXPECT_EQ(1, DLOG_DEFAULT);
    EXPECT_EQ(2, DLOG_VERBOSE);
    EXPECT_EQ(3, DLOG_DEBUG);
    EXPECT_EQ(4, DLOG_INFO);
    EXPECT_EQ(5, DLOG_WARN);
    EXPECT_EQ(6, DLOG_ERROR);
    EXPECT_EQ(7, DLOG_FATAL);
    EXPECT_EQ(8, DLOG_SILENT);
    EXPECT_EQ(0, DLOG_ERROR_NONE);
    EXPECT_EQ(-EINVAL, DLOG_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(-EPERM, DLOG_ERROR_NOT_PERMITTED);
}

TEST_F(Dlog, HeaderCompilesAsCAndAsCxx14)
{
    EXPECT_EQ(DLOG_ERROR, dlogErrorPriorityInC());
    EXPECT_EQ(DLOG_FATAL, dlogFatalPriorityInCxx14());
    marltest::TestDevice dev;
    EXPECT_GT(dlogPrintFromC("from C"), 0);
    ASSERT_EQ(1u, logLines(dev).size());
    EXPECT_NE(std::string::npos, logLines(dev)[0].find(" W/FromC("));
}

TEST_F(Dlog, LineGoesToTheDeviceLogInThePlatformFormat)
{
    marltest::TestDevice dev;
    const int written = dlog_print(DLOG_INFO, "VoiceEnginePlugIn", "%s: %s(%d) > hello %d",
                                   "File.cpp", "run", 42, 7);
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(1u, lines.size());
    const std::regex format(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} I/VoiceEnginePlugIn\( *(\d+)\): File\.cpp: run\(42\) > hello 7)");
    std::smatch match;
    ASSERT_TRUE(std::regex_match(lines[0], match, format)) << lines[0];
    EXPECT_EQ(std::to_string(::getpid()), match[1].str());
    // The answer is the number of bytes written, newline included.
    EXPECT_EQ(static_cast<int>(lines[0].size() + 1), written);
}

TEST_F(Dlog, EachPriorityHasItsLetter)
{
    marltest::TestDevice dev;
    const log_priority prios[] = {DLOG_VERBOSE, DLOG_DEBUG, DLOG_INFO,
                                  DLOG_WARN,    DLOG_ERROR, DLOG_FATAL};
    for (log_priority prio : prios)
        EXPECT_GT(dlog_print(prio, "T", "m"), 0);
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(6u, lines.size());
    const char letters[] = "VDIWEF";
    for (size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(std::string(" ") + letters[i] + "/T(", lines[i].substr(23, 5)) << lines[i];
}

TEST_F(Dlog, LinesAreAppendedAfterEarlierOnes)
{
    marltest::TestDevice dev;
    dlog_print(DLOG_INFO, "T", "first");
    dlog_print(DLOG_INFO, "T", "second\n");
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(2u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("): first"));
    // A message's own trailing newline does not make an empty line.
    EXPECT_NE(std::string::npos, lines[1].find("): second"));
    EXPECT_EQ('\n', logText(dev).back());
}

TEST_F(Dlog, VprintTakesAnArgumentList)
{
    marltest::TestDevice dev;
    EXPECT_GT(vprintVia(DLOG_ERROR, "T", "%d-%s", 5, "x"), 0);
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find(" E/T("));
    EXPECT_NE(std::string::npos, lines[0].find("): 5-x"));
}

TEST_F(Dlog, BadArgumentsAreRefusedAndNothingIsWritten)
{
    marltest::TestDevice dev;
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, dlog_print(DLOG_UNKNOWN, "T", "m"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, dlog_print(DLOG_SILENT, "T", "m"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, dlog_print(static_cast<log_priority>(42), "T", "m"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, dlog_print(DLOG_INFO, nullptr, "m"));
    EXPECT_EQ(DLOG_ERROR_INVALID_PARAMETER, vprintVia(DLOG_INFO, "T", nullptr));
    EXPECT_TRUE(logLines(dev).empty());
}

TEST_F(Dlog, SeveralProcessesNeverInterleaveTheirLines)
{
    marltest::TestDevice dev;
    const int children = 4;
    const int perChild = 200;
    const std::string payload(300, 'x');
    std::vector<pid_t> pids;
    for (int c = 0; c < children; ++c) {
        const pid_t pid = ::fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            for (int i = 0; i < perChild; ++i)
                if (dlog_print(DLOG_INFO, "Child", "%d %d %s", c, i, payload.c_str()) <= 0)
                    ::_exit(1);
            ::_exit(0);
        }
        pids.push_back(pid);
    }
    for (pid_t pid : pids) {
        int status = 0;
        ASSERT_EQ(pid, ::waitpid(pid, &status, 0));
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(static_cast<size_t>(children * perChild), lines.size());
    const std::regex format(R"(.{23} I/Child\( *\d+\): \d \d+ x{300})");
    for (const auto& line : lines)
        ASSERT_TRUE(std::regex_match(line, format)) << line;
}

TEST_F(Dlog, SeveralThreadsEachWriteWholeLines)
{
    marltest::TestDevice dev;
    const int threads = 4;
    const int perThread = 300;
    const std::string payload(200, 'y');
    std::vector<std::thread> writers;
    std::atomic<int> refused{0};
    for (int t = 0; t < threads; ++t)
        writers.emplace_back([&, t] {
            for (int i = 0; i < perThread; ++i)
                if (dlog_print(DLOG_INFO, "Thread", "%d %d %s", t, i, payload.c_str()) <= 0)
                    ++refused;
        });
    for (auto& writer : writers)
        writer.join();
    EXPECT_EQ(0, refused.load());
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(static_cast<size_t>(threads * perThread), lines.size());
    const std::regex format(R"(.{23} I/Thread\( *\d+\): (\d) (\d+) y{200})");
    std::vector<int> next(threads, 0);
    for (const auto& line : lines) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, format)) << line;
        // Each thread's lines are in the order it wrote them.
        const int t = std::stoi(match[1].str());
        EXPECT_EQ(next[t]++, std::stoi(match[2].str()));
    }
}

TEST_F(Dlog, LinesMillisecondsApartHaveTheirOwnStamps)
{
    marltest::TestDevice dev;
    for (int i = 0; i < 3; ++i) {
        dlog_print(DLOG_INFO, "T", "line %d", i);
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
    }
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(3u, lines.size());
    EXPECT_LT(lines[0].substr(0, 23), lines[1].substr(0, 23));
    EXPECT_LT(lines[1].substr(0, 23), lines[2].substr(0, 23));
}

TEST_F(Dlog, StderrIsQuietByDefault)
{
    marltest::TestDevice dev;
    ::testing::internal::CaptureStderr();
    dlog_print(DLOG_FATAL, "T", "not on stderr");
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());
}

TEST_F(Dlog, StderrTakesLinesFromTheLevelTheDescriptionNames)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "W"}})");
    ::testing::internal::CaptureStderr();
    dlog_print(DLOG_INFO, "T", "below");
    dlog_print(DLOG_WARN, "T", "at the level");
    dlog_print(DLOG_ERROR, "T", "above");
    const std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::string::npos, err.find("below"));
    EXPECT_NE(std::string::npos, err.find(" W/T("));
    EXPECT_NE(std::string::npos, err.find("): at the level\n"));
    EXPECT_NE(std::string::npos, err.find("): above\n"));
    EXPECT_EQ(3u, logLines(dev).size());
}

TEST_F(Dlog, EnvironmentOverridesTheDescriptionForStderr)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "E"}})");
    ::setenv("MARL_LOG_STDERR", "D", 1);
    ::testing::internal::CaptureStderr();
    dlog_print(DLOG_VERBOSE, "T", "verbose");
    dlog_print(DLOG_DEBUG, "T", "debug");
    std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::string::npos, err.find("verbose"));
    EXPECT_NE(std::string::npos, err.find("): debug"));

    ::setenv("MARL_LOG_STDERR", "none", 1);
    ::testing::internal::CaptureStderr();
    dlog_print(DLOG_FATAL, "T", "fatal");
    err = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ("", err);
}

TEST_F(Dlog, UnknownStderrLevelIsReportedAndTakenAsNone)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "loud"}})");
    ::testing::internal::CaptureStderr();
    dlog_print(DLOG_FATAL, "T", "fatal");
    dlog_print(DLOG_FATAL, "T", "fatal again");
    const std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::string::npos, err.find("fatal"));
    // Reported at most once per process; an earlier test may have spent it.
    EXPECT_LE(err.size(), 80u) << err;
    EXPECT_EQ(2u, logLines(dev).size());
}

TEST_F(Dlog, WithoutADeviceDirectoryTheFileIsSkippedAndAnErrorReturned)
{
    std::string missing;
    {
        marltest::TestDevice dev;
        missing = dev.dir();
    }
    ::setenv("MARL_DEVICE_DIR", missing.c_str(), 1);
    ::setenv("MARL_LOG_STDERR", "I", 1);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(DLOG_ERROR_NOT_PERMITTED, dlog_print(DLOG_INFO, "T", "still on stderr"));
    const std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, err.find("): still on stderr"));
    EXPECT_NE(0, ::access(missing.c_str(), F_OK));
}

TEST_F(Dlog, InjectedErrorIsReturnedAsIs)
{
    marltest::TestDevice dev(R"({"errors": {"dlog_print": -5}})");
    EXPECT_EQ(-5, dlog_print(DLOG_INFO, "T", "m"));
    dev.apply(R"({"errors": {"dlog_print": "DLOG_ERROR_NOT_PERMITTED"}})");
    EXPECT_EQ(DLOG_ERROR_NOT_PERMITTED, dlog_print(DLOG_INFO, "T", "m"));
    EXPECT_TRUE(logLines(dev).empty());
}

TEST_F(Dlog, MalformedDescriptionStillLogsToTheFile)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "V"}})");
    std::ofstream(dev.path("device.json")) << "{ not json";
    ::testing::internal::CaptureStderr();
    EXPECT_GT(dlog_print(DLOG_ERROR, "T", "kept"), 0);
    const std::string err = ::testing::internal::GetCapturedStderr();
    // The stderr setting is unreadable, so stderr falls back to none.
    EXPECT_EQ(std::string::npos, err.find("): kept"));
    ASSERT_EQ(1u, logLines(dev).size());
    EXPECT_NE(std::string::npos, logLines(dev)[0].find("): kept"));
}

TEST_F(Dlog, LinesLoggedBeforeACrashAreInTheFile)
{
    marltest::TestDevice dev;
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        dlog_print(DLOG_INFO, "T", "first");
        dlog_print(DLOG_INFO, "T", "second");
        std::abort();
    }
    int status = 0;
    ASSERT_EQ(pid, ::waitpid(pid, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status));
    const std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(2u, lines.size());
    EXPECT_NE(std::string::npos, lines[1].find("): second"));
}

TEST_F(Dlog, StderrLevelChangedByAnotherProcessIsSeenAtTheNextLine)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "E"}})");
    const char* build = std::getenv("MARL_BUILD_DIR");
    const std::string marlDevice = std::string(build ? build : ".") + "/bin/marl-device";
    auto setLevel = [&](const char* level) {
        std::ofstream(dev.path("more.json"), std::ios::trunc)
            << "{\"dlog\": {\"stderr\": \"" << level << "\"}}";
        return std::system((marlDevice + " apply " + dev.path("more.json") + " --device " + dev.dir()).c_str());
    };
    for (int round = 0; round < 2; ++round) {
        ::testing::internal::CaptureStderr();
        dlog_print(DLOG_WARN, "T", "warning one");
        ASSERT_EQ(0, setLevel("W"));
        dlog_print(DLOG_WARN, "T", "warning two");
        ASSERT_EQ(0, setLevel("E"));
        dlog_print(DLOG_WARN, "T", "warning three");
        const std::string err = ::testing::internal::GetCapturedStderr();
        EXPECT_EQ(std::string::npos, err.find("warning one"));
        EXPECT_NE(std::string::npos, err.find("warning two"));
        EXPECT_EQ(std::string::npos, err.find("warning three"));
    }
    EXPECT_EQ(6u, logLines(dev).size());
}

TEST_F(Dlog, ARemovedLogIsMadeAgain)
{
    marltest::TestDevice dev;
    dlog_print(DLOG_INFO, "T", "before");
    ASSERT_EQ(0, ::unlink(dev.path("log/dlog.log").c_str()));
    dlog_print(DLOG_INFO, "T", "after the file went");
    std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("): after the file went"));
    ASSERT_EQ(0, ::unlink(dev.path("log/dlog.log").c_str()));
    ASSERT_EQ(0, ::rmdir(dev.path("log").c_str()));
    dlog_print(DLOG_INFO, "T", "after the folder went");
    lines = logLines(dev);
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("): after the folder went"));
}

TEST_F(Dlog, ALogReplacedOrMovedAwayIsMadeAgainAtTheNextLine)
{
    marltest::TestDevice dev;
    dlog_print(DLOG_INFO, "T", "first");
    dlog_print(DLOG_INFO, "T", "second");
    std::ofstream(dev.path("log/other.log")) << "kept\n";
    ASSERT_EQ(0, ::rename(dev.path("log/other.log").c_str(), dev.path("log/dlog.log").c_str()));
    dlog_print(DLOG_INFO, "T", "after a rename onto it");
    std::vector<std::string> lines = logLines(dev);
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ("kept", lines[0]);
    EXPECT_NE(std::string::npos, lines[1].find("): after a rename onto it"));
    ASSERT_EQ(0, ::rename(dev.path("log/dlog.log").c_str(), dev.path("log/moved.log").c_str()));
    dlog_print(DLOG_INFO, "T", "after the file was moved");
    lines = logLines(dev);
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("): after the file was moved"));
    ASSERT_EQ(0, ::rename(dev.path("log").c_str(), dev.path("old-log").c_str()));
    dlog_print(DLOG_INFO, "T", "after the folder was moved");
    lines = logLines(dev);
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("): after the folder was moved"));
    // The new folder is watched as the old one was.
    dlog_print(DLOG_INFO, "T", "settled");
    ASSERT_EQ(0, ::unlink(dev.path("log/dlog.log").c_str()));
    dlog_print(DLOG_INFO, "T", "after the file went");
    lines = logLines(dev);
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("): after the file went"));
}

TEST_F(Dlog, EachDeviceGetsItsOwnLog)
{
    marltest::TestDevice first;
    dlog_print(DLOG_INFO, "T", "to the first");
    marltest::TestDevice second;
    dlog_print(DLOG_INFO, "T", "to the second");
    ASSERT_EQ(1u, logLines(first).size());
    ASSERT_EQ(1u, logLines(second).size());
    EXPECT_NE(std::string::npos, logLines(second)[0].find("): to the second"));
}

// device.json written as a whole: the same length each time, so that only
// the content tells the versions apart.
void writeDescription(const marltest::TestDevice& dev, int injected)
{
    std::ofstream(dev.path("device.json"), std::ios::trunc) << "{\"errors\": {\"dlog_print\": " << injected << "}}";
}

TEST_F(Dlog, ADescriptionRewrittenInPlaceIsSeenAtTheNextLine)
{
    marltest::TestDevice dev;
    EXPECT_GT(dlog_print(DLOG_INFO, "T", "m"), 0);
    for (int code : {-5, -7, -5, -7}) {
        writeDescription(dev, code);
        EXPECT_EQ(code, dlog_print(DLOG_INFO, "T", "m"));
        EXPECT_EQ(code, dlog_print(DLOG_INFO, "T", "m"));
    }
}

TEST_F(Dlog, ADescriptionReplacedByRenameOrRemovedIsSeenAtTheNextLine)
{
    marltest::TestDevice dev(R"({"errors": {"dlog_print": -5}})");
    EXPECT_EQ(-5, dlog_print(DLOG_INFO, "T", "m"));
    std::ofstream(dev.path("next.json")) << R"({"errors": {"dlog_print": -7}})";
    ASSERT_EQ(0, ::rename(dev.path("next.json").c_str(), dev.path("device.json").c_str()));
    EXPECT_EQ(-7, dlog_print(DLOG_INFO, "T", "m"));
    ASSERT_EQ(0, ::unlink(dev.path("device.json").c_str()));
    EXPECT_GT(dlog_print(DLOG_INFO, "T", "logged without a description"), 0);
    writeDescription(dev, -5);
    EXPECT_EQ(-5, dlog_print(DLOG_INFO, "T", "m"));
}

TEST_F(Dlog, ADeviceDirectoryMadeAgainIsWatchedAgain)
{
    marltest::TestDevice dev(R"({"errors": {"dlog_print": -5}})");
    EXPECT_EQ(-5, dlog_print(DLOG_INFO, "T", "m"));
    const std::string moved = dev.dir() + ".moved";
    ASSERT_EQ(0, ::rename(dev.dir().c_str(), moved.c_str()));
    ASSERT_EQ(0, ::mkdir(dev.dir().c_str(), 0755));
    writeDescription(dev, -7);
    EXPECT_EQ(-7, dlog_print(DLOG_INFO, "T", "m"));
    // The moved directory is no longer the device's.
    std::ofstream(moved + "/device.json", std::ios::trunc) << R"({"errors": {"dlog_print": -3}})";
    EXPECT_EQ(-7, dlog_print(DLOG_INFO, "T", "m"));
    writeDescription(dev, -5);
    EXPECT_EQ(-5, dlog_print(DLOG_INFO, "T", "m"));
    std::error_code ec;
    std::filesystem::remove_all(moved, ec);
}

TEST_F(Dlog, AForkedChildNeitherMissesNorTakesItsParentsChanges)
{
    marltest::TestDevice dev;
    EXPECT_GT(dlog_print(DLOG_INFO, "T", "parent before"), 0);
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        writeDescription(dev, -5);
        ::_exit(dlog_print(DLOG_INFO, "T", "child") == -5 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(pid, ::waitpid(pid, &status, 0));
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(0, WEXITSTATUS(status));
    EXPECT_EQ(-5, dlog_print(DLOG_INFO, "T", "parent after"));
}

}  // namespace
