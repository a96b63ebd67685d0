#include <gtest/gtest.h>

#include <dlfcn.h>

#include <cstdlib>
#include <string>

namespace {

std::string pluginPath()
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    return std::string(build ? build : ".") + "/lib/libvc-engine-marl.so";
}

}  // namespace

TEST(PluginLink, EverySymbolResolvesAgainstTheAppliancesLibraries)
{
    void* plugin = dlopen(pluginPath().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(plugin, nullptr) << dlerror();
    EXPECT_NE(dlsym(plugin, "vcp_get_engine_info"), nullptr);
    EXPECT_NE(dlsym(plugin, "vcp_load_engine"), nullptr);
    EXPECT_NE(dlsym(plugin, "vcp_unload_engine"), nullptr);
    dlclose(plugin);
}

TEST(PluginLink, OnlyTheEntryPointsAndProcessWideVariablesAreExported)
{
    void* plugin = dlopen(pluginPath().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(plugin, nullptr) << dlerror();
    for (const char* name : {"MarlEngine_initialize", "MarlEngine_set_recording_data", "marlEngineWrapper",
                             "local_foreach_command", "local_get_command_count", "local_get_audio_type",
                             "local_audio_type", "local_user_data", "commandCount", "current_count", "resultList"})
        EXPECT_NE(dlsym(plugin, name), nullptr) << name;
    // The client's classes stay inside.
    for (const char* name : {"_ZN17MarlEngineWrapperC1Ev", "_ZN12OrvaneMaster10getWrapperEv",
                             "_ZN16ServerTtsManager4initEv"})
        EXPECT_EQ(dlsym(plugin, name), nullptr) << name;
    dlclose(plugin);
}
