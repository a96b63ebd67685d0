// The journal: one JSON object per line, appended by every process.
#include "TestDevice.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

namespace {

long long nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

TEST(Journal, EntriesCarryEventTimeAndTheirFields)
{
    marltest::TestDevice dev;
    const long long before = nowMs();
    Json::Value entry;
    entry["appId"] = "org.tizen.music";
    vapp::journal("app_launch", entry);
    const auto entries = vapp::readJournal();
    ASSERT_EQ(1u, entries.size());
    EXPECT_EQ("app_launch", entries[0]["event"].asString());
    EXPECT_EQ("org.tizen.music", entries[0]["appId"].asString());
    EXPECT_GE(entries[0]["time"].asInt64(), before);
    EXPECT_LE(entries[0]["time"].asInt64(), nowMs());
}

TEST(Journal, ReadingFromAnIndexSkipsEarlierEntries)
{
    marltest::TestDevice dev;
    for (int i = 0; i < 3; ++i) {
        Json::Value entry;
        entry["n"] = i;
        vapp::journal("audio_playback", entry);
    }
    const auto later = vapp::readJournal(1);
    ASSERT_EQ(2u, later.size());
    EXPECT_EQ(1, later[0]["n"].asInt());
    EXPECT_EQ(2, later[1]["n"].asInt());
    EXPECT_TRUE(vapp::readJournal(3).empty());
}

TEST(Journal, KeyStoreChangesAreJournaled)
{
    marltest::TestDevice dev(R"({"vconf": {"db/k": 4}})");
    const auto entries = vapp::readJournal();
    ASSERT_EQ(1u, entries.size());
    EXPECT_EQ("vconf_set", entries[0]["event"].asString());
    EXPECT_EQ("db/k", entries[0]["key"].asString());
    EXPECT_EQ("int", entries[0]["type"].asString());
    EXPECT_EQ(4, entries[0]["value"].asInt());
}

TEST(Journal, SeveralProcessesAppendWholeLines)
{
    marltest::TestDevice dev;
    const int children = 4;
    const int perChild = 100;
    std::vector<pid_t> pids;
    for (int c = 0; c < children; ++c) {
        const pid_t pid = ::fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            for (int i = 0; i < perChild; ++i) {
                Json::Value entry;
                entry["child"] = c;
                entry["padding"] = std::string(500, 'p');
                vapp::journal("app_launch", entry);
            }
            ::_exit(0);
        }
        pids.push_back(pid);
    }
    for (pid_t pid : pids)
        ::waitpid(pid, nullptr, 0);
    std::ifstream in(dev.path("journal.jsonl"));
    size_t lines = 0;
    for (std::string line; std::getline(in, line);)
        ++lines;
    EXPECT_EQ(static_cast<size_t>(children * perChild), lines);
    EXPECT_EQ(static_cast<size_t>(children * perChild), vapp::readJournal().size());
}

TEST(Journal, WithoutADeviceNothingIsWrittenAnywhere)
{
    std::string missing;
    {
        marltest::TestDevice dev;
        missing = dev.dir();
    }
    ::setenv("MARL_DEVICE_DIR", missing.c_str(), 1);
    vapp::journal("app_launch", Json::Value(Json::objectValue));
    EXPECT_TRUE(vapp::readJournal().empty());
    EXPECT_NE(0, ::access(missing.c_str(), F_OK));
}

}  // namespace
