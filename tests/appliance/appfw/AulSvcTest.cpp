#include "AppFwTest.h"

#include <aul_svc.h>

using namespace appfwtest;

namespace {

using Aliases = std::vector<std::pair<std::string, std::string>>;

void collect(const char* alias, const char* appid, void* data)
{
    static_cast<Aliases*>(data)->emplace_back(alias, appid);
}

}  // namespace

TEST(AulSvc, AliasesComeFromTheAulSectionInOrder)
{
    marltest::TestDevice dev(R"({"aul": {"aliases": [
        {"alias": "org.example.music", "appid": "nn7Wgp14c8.LarderTuneIn"},
        {"alias": "org.example.browser", "appid": "org.tizen.browser"}]}})");
    Aliases aliases;
    EXPECT_EQ(aul_svc_foreach_alias_info(collect, &aliases), AUL_SVC_RET_OK);
    EXPECT_EQ(aliases, (Aliases{{"org.example.music", "nn7Wgp14c8.LarderTuneIn"},
                                {"org.example.browser", "org.tizen.browser"}}));
}

TEST(AulSvc, NoAulSectionMeansNoAliases)
{
    marltest::TestDevice dev;
    Aliases aliases;
    EXPECT_EQ(aul_svc_foreach_alias_info(collect, &aliases), AUL_SVC_RET_OK);
    EXPECT_TRUE(aliases.empty());
}

TEST(AulSvc, MalformedAulSectionIsAnErrorAndCallsNothing)
{
    const char* const malformed[] = {
        R"({"aul": ["org.example.music"]})",
        R"({"aul": {"aliases": {"alias": "a", "appid": "b"}}})",
        R"({"aul": {"aliases": [{"alias": "a", "appid": "b"}, {"alias": "c"}]}})",
        R"({"aul": {"aliases": [{"alias": "a", "appid": "b"}, {"alias": "c", "appid": 3}]}})",
        R"({"aul": {"aliases": [{"alias": "a", "appid": "b", "app": "c"}]}})",
        R"({"aul": {"alias": []}})",
    };
    for (const char* description : malformed) {
        marltest::TestDevice dev(description);
        Aliases aliases;
        EXPECT_EQ(aul_svc_foreach_alias_info(collect, &aliases), AUL_SVC_RET_ERROR) << description;
        EXPECT_TRUE(aliases.empty()) << description;
    }
}

TEST(AulSvc, NullCallbackIsAnInvalidArgument)
{
    marltest::TestDevice dev;
    EXPECT_EQ(aul_svc_foreach_alias_info(nullptr, nullptr), AUL_SVC_RET_EINVAL);
}

TEST(AulSvc, InjectedErrorIsReturnedAsIs)
{
    marltest::TestDevice dev(R"({"aul": {"aliases": [{"alias": "a", "appid": "b"}]},
        "errors": {"aul_svc_foreach_alias_info": "AUL_SVC_RET_EILLACC"}})");
    Aliases aliases;
    EXPECT_EQ(aul_svc_foreach_alias_info(collect, &aliases), AUL_SVC_RET_EILLACC);
    EXPECT_TRUE(aliases.empty());
    dev.apply(R"({"errors": {"aul_svc_foreach_alias_info": -3}})");
    EXPECT_EQ(aul_svc_foreach_alias_info(collect, &aliases), AUL_SVC_RET_ENOMATCH);
}

TEST(AulSvc, WithoutADeviceDirectoryIsAnError)
{
    marltest::TestDevice dev(R"({"aul": {"aliases": [{"alias": "a", "appid": "b"}]}})");
    ::setenv("MARL_DEVICE_DIR", dev.path("absent").c_str(), 1);
    Aliases aliases;
    EXPECT_EQ(aul_svc_foreach_alias_info(collect, &aliases), AUL_SVC_RET_ERROR);
    EXPECT_TRUE(aliases.empty());
}

TEST(AulSvc, WithAMalformedDeviceJsonIsAnError)
{
    marltest::TestDevice dev(R"({"aul": {"aliases": [{"alias": "a", "appid": "b"}]}})");
    writeText(dev.path("device.json"), R"({"aul": {"aliases": [{"alias": "a", "appid": "b"}]})");
    Aliases aliases;
    EXPECT_EQ(aul_svc_foreach_alias_info(collect, &aliases), AUL_SVC_RET_ERROR);
    EXPECT_TRUE(aliases.empty());
}
