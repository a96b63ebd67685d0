#include <tzplatform_config.h>

#include "TestDevice.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <thread>

extern "C" const char* tzUserShareFileInC(const char* name);
int tzUserDataIdInCxx14();

namespace {

std::string str(const char* text)
{
    return text ? text : "(null)";
}

TEST(Tzplatform, HeaderCompilesAsCAndAsCxx14)
{
    marltest::TestDevice dev;
    EXPECT_EQ(dev.path("root/home/owner/share/x"), str(tzUserShareFileInC("x")));
    EXPECT_EQ(59, tzUserDataIdInCxx14());
}

TEST(Tzplatform, EnumeratorsCarryTheNumbersAndNamesOfTheDeviceTable)
{
    EXPECT_EQ(28, TZ_SYS_RO_SHARE);
    EXPECT_EQ(50, TZ_USER_APP);
    EXPECT_EQ(59, TZ_USER_DATA);
    EXPECT_EQ(71, TZ_USER_SHARE);
    for (const auto& variable : vapp::tzVariables()) {
        EXPECT_EQ(variable.id, tzplatform_getid(variable.name)) << variable.name;
        EXPECT_EQ(std::string(variable.name),
                  str(tzplatform_getname(static_cast<tzplatform_variable>(variable.id))));
    }
}

TEST(Tzplatform, GetenvAnswersTheVariablesDirectoryInsideTheDevice)
{
    marltest::TestDevice dev;
    EXPECT_EQ(dev.path("root/usr/share"), str(tzplatform_getenv(TZ_SYS_RO_SHARE)));
    EXPECT_EQ(dev.path("root/home/owner/apps_rw"), str(tzplatform_getenv(TZ_USER_APP)));
    EXPECT_EQ(dev.path("root/home/owner/data"), str(tzplatform_getenv(TZ_USER_DATA)));
    EXPECT_EQ(dev.path("root/home/owner/share"), str(tzplatform_getenv(TZ_USER_SHARE)));
    for (const auto& variable : vapp::tzVariables())
        EXPECT_EQ(vapp::hostPath(variable.path),
                  str(tzplatform_getenv(static_cast<tzplatform_variable>(variable.id))));
}

TEST(Tzplatform, GetenvAnswersStayValid)
{
    marltest::TestDevice dev;
    const char* share = tzplatform_getenv(TZ_USER_SHARE);
    const char* data = tzplatform_getenv(TZ_USER_DATA);
    tzplatform_mkpath(TZ_USER_APP, "x");
    EXPECT_EQ(dev.path("root/home/owner/share"), str(share));
    EXPECT_EQ(dev.path("root/home/owner/data"), str(data));
}

TEST(Tzplatform, MkpathMeetsThePathsThatTheApplianceSpellsOut)
{
    marltest::TestDevice dev;
    EXPECT_EQ(vapp::hostPath("/home/owner/share/.voice/vc/engine/shared/data/"),
              str(tzplatform_mkpath(TZ_USER_SHARE, ".voice/vc/engine/shared/data/")));
    EXPECT_EQ(vapp::hostPath("/home/owner/apps_rw/org.tizen.webdatabaseserviceapp/shared/trusted/Recipe.db"),
              str(tzplatform_mkpath(TZ_USER_APP,
                                    "org.tizen.webdatabaseserviceapp/shared/trusted/Recipe.db")));
    EXPECT_EQ(dev.path("root/home/owner/data/AccInfoData.txt"),
              str(tzplatform_mkpath(TZ_USER_DATA, "AccInfoData.txt")));
    EXPECT_EQ(dev.path("root/usr/share/voice/vc/1.0/engine-data/marl/shared/res/en_US"),
              str(tzplatform_mkpath(TZ_SYS_RO_SHARE, "voice/vc/1.0/engine-data/marl/shared/res/en_US")));
}

TEST(Tzplatform, MkpathJoinsWithOneSlash)
{
    marltest::TestDevice dev;
    const std::string share = dev.path("root/home/owner/share");
    EXPECT_EQ(share + "/a", str(tzplatform_mkpath(TZ_USER_SHARE, "/a")));
    EXPECT_EQ(share + "/a/", str(tzplatform_mkpath(TZ_USER_SHARE, "a/")));
    EXPECT_EQ(share, str(tzplatform_mkpath(TZ_USER_SHARE, "")));
    EXPECT_EQ(share + "/a/b", str(tzplatform_mkpath3(TZ_USER_SHARE, "a/", "/b")));
    EXPECT_EQ(share + "/a/b/c", str(tzplatform_mkpath4(TZ_USER_SHARE, "a", "b", "c")));
}

TEST(Tzplatform, UnknownVariableOrMissingPartAnswersNull)
{
    marltest::TestDevice dev;
    const auto unknown = static_cast<tzplatform_variable>(2);
    EXPECT_EQ(nullptr, tzplatform_getenv(unknown));
    EXPECT_EQ(nullptr, tzplatform_mkpath(unknown, "x"));
    EXPECT_EQ(nullptr, tzplatform_mkpath(_TZPLATFORM_VARIABLES_INVALID_, "x"));
    EXPECT_EQ(nullptr, tzplatform_getname(unknown));
    EXPECT_EQ(_TZPLATFORM_VARIABLES_INVALID_, tzplatform_getid("TZ_NO_SUCH"));
    EXPECT_EQ(_TZPLATFORM_VARIABLES_INVALID_, tzplatform_getid(nullptr));
    EXPECT_EQ(nullptr, tzplatform_mkpath(TZ_USER_SHARE, nullptr));
    EXPECT_EQ(nullptr, tzplatform_mkpath3(TZ_USER_SHARE, "a", nullptr));
}

TEST(Tzplatform, EachThreadHasItsOwnMkpathBuffer)
{
    marltest::TestDevice dev;
    const char* mine = tzplatform_mkpath(TZ_USER_SHARE, "main");
    std::string theirs;
    std::thread([&] { theirs = str(tzplatform_mkpath(TZ_USER_DATA, "other")); }).join();
    EXPECT_EQ(dev.path("root/home/owner/share/main"), str(mine));
    EXPECT_EQ(dev.path("root/home/owner/data/other"), theirs);
}

TEST(Tzplatform, AFileWrittenAtAMkpathIsTheFileOfItsAppliancePath)
{
    marltest::TestDevice dev(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt",
                                            "text": "{\"city\": \"Suwon\"}"}]})");
    std::ifstream byVariable(tzplatform_mkpath(TZ_USER_DATA, "AccInfoPrev.txt"));
    std::string text;
    std::getline(byVariable, text);
    EXPECT_EQ("{\"city\": \"Suwon\"}", text);
    // With the file-system map preloaded, the hand-spelled path reaches it too.
    std::ifstream bySpelling("/home/owner/data/AccInfoPrev.txt");
    std::getline(bySpelling, text);
    EXPECT_EQ("{\"city\": \"Suwon\"}", text);
}

TEST(Tzplatform, FreshDeviceHasTheVariablesDirectories)
{
    marltest::TestDevice dev;
    for (const auto& variable : vapp::tzVariables())
        EXPECT_EQ(0, ::access(tzplatform_getenv(static_cast<tzplatform_variable>(variable.id)), F_OK))
            << variable.name;
}

TEST(Tzplatform, PathsFollowTheNamedDeviceEvenWhenItIsMissing)
{
    std::string missing;
    {
        marltest::TestDevice dev;
        missing = dev.dir();
    }
    ::setenv("MARL_DEVICE_DIR", missing.c_str(), 1);
    EXPECT_EQ(missing + "/root/home/owner/share/x", str(tzplatform_mkpath(TZ_USER_SHARE, "x")));
    EXPECT_NE(0, ::access(missing.c_str(), F_OK));
}

TEST(Tzplatform, MalformedDescriptionDoesNotMatter)
{
    marltest::TestDevice dev;
    std::ofstream(dev.path("device.json")) << "{";
    EXPECT_EQ(dev.path("root/home/owner/data/x"), str(tzplatform_mkpath(TZ_USER_DATA, "x")));
}

}  // namespace
