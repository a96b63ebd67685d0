// Parsed copies of device.json, key files and apps.json are kept between
// reads; a write by another process, however soon after a read and however
// like the old file it looks, is seen by the next read.
#include "TestDevice.h"

#include "vappliance/FileWatch.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

std::string tool(const char* name)
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    return std::string(build ? build : ".") + "/bin/" + name;
}

int run(const std::string& command)
{
    return std::system((command + " >/dev/null 2>&1").c_str());
}

// Writes the file in place: same inode, and the same size when the text is.
void overwrite(const std::string& path, const std::string& text)
{
    FILE* file = std::fopen(path.c_str(), "r+");
    ASSERT_NE(file, nullptr) << path;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

ino_t inodeOf(const std::string& path)
{
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 ? st.st_ino : 0;
}

std::string keyText(const char* key)
{
    vapp::VconfValue value;
    return vapp::vconfRead(key, value) ? value.s : "<unset>";
}

}  // namespace

TEST(ChangedFiles, DescriptionIsParsedOnceWhileTheFileStaysTheSame)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "none"}})");
    // Older than the window in which a stamp is not trusted alone.
    ::usleep(vapp::FileWatch::kRacyWindowNs / 1000 + 20000);
    const auto first = vapp::description();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(vapp::description(), first);
    EXPECT_EQ(vapp::section("dlog")["stderr"].asString(), "none");
}

TEST(ChangedFiles, DescriptionRewrittenInPlaceWithTheSameSizeIsSeenAtOnce)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "aaaa"}})");
    const std::string path = dev.path("device.json");
    EXPECT_EQ(vapp::section("dlog")["stderr"].asString(), "aaaa");
    const ino_t inode = inodeOf(path);
    const std::string text = "{\"dlog\": {\"stderr\": \"bbbb\"}}\n";
    std::ofstream(path, std::ios::trunc) << "{\"dlog\": {\"stderr\": \"aaaa\"}}\n";
    EXPECT_EQ(vapp::section("dlog")["stderr"].asString(), "aaaa");
    overwrite(path, text);
    ASSERT_EQ(inodeOf(path), inode);
    EXPECT_EQ(vapp::section("dlog")["stderr"].asString(), "bbbb");
    overwrite(path, "{\"dlog\": {\"stderr\": \"cccc\"}}\n");
    EXPECT_EQ(vapp::section("dlog")["stderr"].asString(), "cccc");
}

TEST(ChangedFiles, DescriptionAppliedTwiceByMarlDeviceWithinASecondIsSeenEachTime)
{
    marltest::TestDevice dev;
    for (const char* level : {"E", "W", "I", "E"}) {
        const std::string description = std::string("{\"dlog\": {\"stderr\": \"") + level + "\"}}";
        ASSERT_EQ(run("echo '" + description + "' > " + dev.path("more.json") + " && " +
                      tool("marl-device") + " apply " + dev.path("more.json") + " --device " + dev.dir()),
                  0);
        EXPECT_EQ(vapp::section("dlog")["stderr"].asString(), level);
    }
}

TEST(ChangedFiles, InjectedErrorFollowsTheDescription)
{
    marltest::TestDevice dev(R"({"errors": {}})");
    int code = 0;
    EXPECT_FALSE(vapp::injectedError("vconf_get_int", &code));
    dev.apply(R"({"errors": {"vconf_get_int": -5}})");
    EXPECT_TRUE(vapp::injectedError("vconf_get_int", &code));
    EXPECT_EQ(code, -5);
    dev.apply(R"({"errors": {"vconf_get_int": -6}})");
    EXPECT_TRUE(vapp::injectedError("vconf_get_int", &code));
    EXPECT_EQ(code, -6);
}

TEST(ChangedFiles, DescriptionRemovedAndMadeAgainIsSeen)
{
    marltest::TestDevice dev(R"({"dlog": {"stderr": "E"}})");
    EXPECT_NE(vapp::description(), nullptr);
    ::unlink(dev.path("device.json").c_str());
    std::string error;
    EXPECT_EQ(vapp::description(&error), nullptr);
    EXPECT_NE(error.find("no device description"), std::string::npos) << error;
    std::ofstream(dev.path("device.json")) << "{\"dlog\": {\"stderr\": \"W\"}}";
    EXPECT_EQ(vapp::section("dlog")["stderr"].asString(), "W");
}

TEST(ChangedFiles, KeySetByVconftoolTwiceWithinASecondIsSeenEachTime)
{
    marltest::TestDevice dev(R"({"vconf": {"db/test/word": "one"}})");
    EXPECT_EQ(keyText("db/test/word"), "one");
    for (const char* word : {"two", "six", "ten"}) {
        ASSERT_EQ(run(tool("vconftool") + " set -t string db/test/word " + word), 0);
        EXPECT_EQ(keyText("db/test/word"), word);
    }
    ASSERT_EQ(run(tool("vconftool") + " unset db/test/word"), 0);
    EXPECT_EQ(keyText("db/test/word"), "<unset>");
}

TEST(ChangedFiles, KeyFileRewrittenInPlaceWithTheSameSizeIsSeen)
{
    marltest::TestDevice dev(R"({"vconf": {"db/test/word": "one"}})");
    const std::string path = vapp::vconfKeyFile("db/test/word");
    EXPECT_EQ(keyText("db/test/word"), "one");
    overwrite(path, "string\ntwo");
    EXPECT_EQ(keyText("db/test/word"), "two");
    overwrite(path, "string\nsix");
    EXPECT_EQ(keyText("db/test/word"), "six");
}

TEST(ChangedFiles, KeysOfTwoDevicesAreNotMixed)
{
    marltest::TestDevice first(R"({"vconf": {"db/test/word": "first"}})");
    EXPECT_EQ(keyText("db/test/word"), "first");
    marltest::TestDevice second(R"({"vconf": {"db/test/word": "second"}})");
    EXPECT_EQ(keyText("db/test/word"), "second");
}

TEST(ChangedFiles, AppsChangedByAnotherProcessAreSeenAtOnce)
{
    marltest::TestDevice dev(R"({"apps": {"installed": ["org.a"], "running": [], "foreground": ""}})");
    vapp::AppsState state;
    ASSERT_TRUE(vapp::loadApps(state));
    EXPECT_FALSE(state.isRunning("org.a"));
    ASSERT_EQ(run("echo '{\"apps\": {\"installed\": [\"org.a\"], \"running\": [\"org.a\"], \"foreground\": \"\"}}' > " +
                  dev.path("more.json") + " && " + tool("marl-device") + " apply " + dev.path("more.json") +
                  " --device " + dev.dir()),
              0);
    ASSERT_TRUE(vapp::loadApps(state));
    EXPECT_TRUE(state.isRunning("org.a"));
    // By hand, in place, the same length: org.a leaves, org.b comes.
    std::ofstream(dev.path("apps.json"), std::ios::trunc)
        << R"({"installed": ["org.a", "org.b"], "running": ["org.a"], "foreground": ""})";
    ASSERT_TRUE(vapp::loadApps(state));
    overwrite(dev.path("apps.json"), R"({"installed": ["org.a", "org.b"], "running": ["org.b"], "foreground": ""})");
    ASSERT_TRUE(vapp::loadApps(state));
    EXPECT_FALSE(state.isRunning("org.a"));
    EXPECT_TRUE(state.isRunning("org.b"));
    std::ofstream(dev.path("apps.json"), std::ios::trunc) << "{ not json";
    std::string error;
    EXPECT_FALSE(vapp::loadApps(state, &error));
    EXPECT_NE(error.find("is not valid JSON"), std::string::npos) << error;
    ::unlink(dev.path("apps.json").c_str());
    ASSERT_TRUE(vapp::loadApps(state));
    EXPECT_TRUE(state.installed.empty());
}

TEST(ChangedFiles, WatchTellsChangedUnchangedAndMissing)
{
    marltest::TestDevice dev;
    const std::string path = dev.path("watched.txt");
    std::ofstream(path) << "old text";
    vapp::FileWatch watch;
    ASSERT_EQ(watch.poll(path), vapp::FileWatch::Changed);
    EXPECT_EQ(watch.text(), "old text");
    EXPECT_EQ(watch.poll(path), vapp::FileWatch::Unchanged);
    overwrite(path, "new text");
    ASSERT_EQ(watch.poll(path), vapp::FileWatch::Changed);
    EXPECT_EQ(watch.text(), "new text");
    ::usleep(vapp::FileWatch::kRacyWindowNs / 1000 + 20000);
    EXPECT_EQ(watch.poll(path), vapp::FileWatch::Unchanged);
    EXPECT_EQ(watch.poll(path), vapp::FileWatch::Unchanged);
    // Older than the window now: a rewrite is told by its stamp.
    overwrite(path, "one more");
    ASSERT_EQ(watch.poll(path), vapp::FileWatch::Changed);
    EXPECT_EQ(watch.text(), "one more");
    ::unlink(path.c_str());
    EXPECT_EQ(watch.poll(path), vapp::FileWatch::Missing);
    std::ofstream(path) << "one more";
    EXPECT_EQ(watch.poll(path), vapp::FileWatch::Changed);
}
