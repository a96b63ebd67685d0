#include "DynamicSymbols.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::string pluginPath()
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    return std::string(build ? build : ".") + "/lib/libvc-engine-marl.so";
}

// The daemon's view of vcp_get_engine_info, as its probe calls it.
using EngineInfoCallback = void (*)(const char* uuid, const char* name, const char* setting, bool network,
                                    void* user_data);
using GetEngineInfo = int (*)(EngineInfoCallback callback, void* user_data);

void keepUuid(const char* uuid, const char*, const char*, bool, void* user_data)
{
    *static_cast<std::string*>(user_data) = uuid ? uuid : "";
}

bool pluginIsLoaded()
{
    void* handle = dlopen(pluginPath().c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle)
        return false;
    dlclose(handle);
    return true;
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

TEST(PluginLink, ExportsExactlyTheEntryPointsAndProcessWideVariables)
{
    std::set<linktest::ExportedSymbol> symbols;
    ASSERT_TRUE(linktest::definedDynamicSymbols(pluginPath(), symbols)) << pluginPath();
    std::vector<std::string> names;
    for (const auto& symbol : symbols) {
        names.push_back(symbol.name);
        EXPECT_EQ(symbol.binding, STB_GLOBAL) << symbol.name << " is weak or unique";
    }
    const std::vector<std::string> expected = {
        "MarlEngine_cancel",
        "MarlEngine_deinitialize",
        "MarlEngine_foreach_supported_languages",
        "MarlEngine_get_nlu_base_info",
        "MarlEngine_get_private_data",
        "MarlEngine_get_recording_format",
        "MarlEngine_initialize",
        "MarlEngine_is_language_supported",
        "MarlEngine_process_haptic_event",
        "MarlEngine_process_list_event",
        "MarlEngine_process_text",
        "MarlEngine_set_asr_result_cb",
        "MarlEngine_set_commands",
        "MarlEngine_set_domain",
        "MarlEngine_set_error_cb",
        "MarlEngine_set_language",
        "MarlEngine_set_private_data",
        "MarlEngine_set_recording_data",
        "MarlEngine_set_result_cb",
        "MarlEngine_start",
        "MarlEngine_stop",
        "MarlEngine_unset_commands",
        "commandCount",
        "current_count",
        "local_audio_type",
        "local_foreach_command",
        "local_get_audio_type",
        "local_get_command_count",
        "local_user_data",
        "marlEngineWrapper",
        "resultList",
        "vcp_get_engine_info",
        "vcp_load_engine",
        "vcp_unload_engine",
        "vcpd_foreach_command_cb_local",
    };
    EXPECT_EQ(names, expected);
}

TEST(PluginLink, TheDaemonsProbeUnloadsThePlugin)
{
    ASSERT_FALSE(pluginIsLoaded());
    void* plugin = dlopen(pluginPath().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(plugin, nullptr) << dlerror();
    const auto getEngineInfo = reinterpret_cast<GetEngineInfo>(dlsym(plugin, "vcp_get_engine_info"));
    ASSERT_NE(getEngineInfo, nullptr);
    std::string uuid;
    EXPECT_EQ(getEngineInfo(keepUuid, &uuid), 0);
    EXPECT_EQ(uuid, "4FAF79CF-FE69-40E0-AE11-69369F6DA743");
    EXPECT_EQ(dlclose(plugin), 0) << dlerror();
    EXPECT_FALSE(pluginIsLoaded()) << "dlclose left the plug-in in the process";
}

TEST(PluginLink, TheRealLoadDoesNotSeeTheProbesUserData)
{
    std::string uuid;
    void* probe = dlopen(pluginPath().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(probe, nullptr) << dlerror();
    const auto getEngineInfo = reinterpret_cast<GetEngineInfo>(dlsym(probe, "vcp_get_engine_info"));
    auto* userData = static_cast<void**>(dlsym(probe, "local_user_data"));
    ASSERT_NE(getEngineInfo, nullptr);
    ASSERT_NE(userData, nullptr);
    EXPECT_EQ(getEngineInfo(keepUuid, &uuid), 0);
    EXPECT_EQ(*userData, &uuid);
    dlclose(probe);

    void* real = dlopen(pluginPath().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(real, nullptr) << dlerror();
    userData = static_cast<void**>(dlsym(real, "local_user_data"));
    ASSERT_NE(userData, nullptr);
    EXPECT_EQ(*userData, nullptr) << "the probe's user data lived on into the real load";
    dlclose(real);
}
