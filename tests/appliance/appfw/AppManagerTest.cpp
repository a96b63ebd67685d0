#include "AppFwTest.h"

#include <app_manager.h>
#include <app_manager_extension.h>

#include <cstdint>
#include <functional>

using namespace appfwtest;

namespace {

const char* const kApps = R"({"apps": {
    "installed": ["org.example.home", "org.example.recipes", "org.example.timer",
                  {"id": "org.example.shop-service", "service": true}],
    "running": ["org.example.home", "org.example.timer", "org.example.shop-service"],
    "foreground": "org.example.home"}})";

app_state_e stateOf(const char* appId)
{
    app_context_h context = nullptr;
    EXPECT_EQ(app_manager_get_app_context(appId, &context), APP_MANAGER_ERROR_NONE) << appId;
    app_state_e state = APP_STATE_UNDEFINED;
    EXPECT_EQ(app_context_get_app_state(context, &state), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
    return state;
}

int terminate(const char* appId)
{
    app_context_h context = nullptr;
    EXPECT_EQ(app_manager_get_app_context(appId, &context), APP_MANAGER_ERROR_NONE) << appId;
    const int result = app_manager_terminate_app(context);
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
    return result;
}

}  // namespace

TEST(AppManager, NoSuchAppIsFEEF0001)
{
    static_assert(APP_MANAGER_ERROR_NO_SUCH_APP == static_cast<int>(0xFEEF0001u), "");
    EXPECT_EQ(static_cast<uint32_t>(APP_MANAGER_ERROR_NO_SUCH_APP), 0xFEEF0001u);
    EXPECT_LT(APP_MANAGER_ERROR_NO_SUCH_APP, 0);
}

// --- app_manager_is_running ---------------------------------------------------------

TEST(AppManager, IsRunningFollowsTheRunningList)
{
    marltest::TestDevice dev(kApps);
    bool running = false;
    EXPECT_EQ(app_manager_is_running("org.example.timer", &running), APP_MANAGER_ERROR_NONE);
    EXPECT_TRUE(running);
    EXPECT_EQ(app_manager_is_running("org.example.recipes", &running), APP_MANAGER_ERROR_NONE);
    EXPECT_FALSE(running);
    EXPECT_EQ(app_manager_is_running("org.example.absent", &running), APP_MANAGER_ERROR_NONE);
    EXPECT_FALSE(running);
}

TEST(AppManager, IsRunningOnADeviceWithoutAppsJsonIsFalse)
{
    marltest::TestDevice dev;
    bool running = true;
    EXPECT_EQ(app_manager_is_running("org.example.home", &running), APP_MANAGER_ERROR_NONE);
    EXPECT_FALSE(running);
}

TEST(AppManager, IsRunningWithoutADeviceDirectoryIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    ::setenv("MARL_DEVICE_DIR", dev.path("absent").c_str(), 1);
    bool running = false;
    EXPECT_EQ(app_manager_is_running("org.example.home", &running), APP_MANAGER_ERROR_IO_ERROR);
}

TEST(AppManager, IsRunningWithAMalformedAppsJsonIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    writeText(dev.path("apps.json"), "{\"running\": \"org.example.home\"}");
    bool running = false;
    EXPECT_EQ(app_manager_is_running("org.example.home", &running), APP_MANAGER_ERROR_IO_ERROR);
    writeText(dev.path("apps.json"), "not json");
    EXPECT_EQ(app_manager_is_running("org.example.home", &running), APP_MANAGER_ERROR_IO_ERROR);
}

TEST(AppManager, IsRunningWithAMalformedDeviceJsonIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    writeText(dev.path("device.json"), "[1, 2");
    bool running = false;
    EXPECT_EQ(app_manager_is_running("org.example.home", &running), APP_MANAGER_ERROR_IO_ERROR);
}

TEST(AppManager, NullArgumentsAreInvalidParameters)
{
    marltest::TestDevice dev(kApps);
    bool running = false;
    app_context_h context = nullptr;
    app_info_h info = nullptr;
    char* text = nullptr;
    app_state_e state;
    EXPECT_EQ(app_manager_is_running(nullptr, &running), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_manager_is_running("org.example.home", nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_manager_get_app_context(nullptr, &context), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_manager_get_app_context("org.example.home", nullptr),
              APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_manager_terminate_app(nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_context_destroy(nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_context_get_app_id(nullptr, &text), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_context_get_app_state(nullptr, &state), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_info_create(nullptr, &info), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_info_create("org.example.home", nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_info_destroy(nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_info_get_app_id(nullptr, &text), APP_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST(AppManager, InjectedErrorIsReturnedAsIs)
{
    marltest::TestDevice setup(kApps);
    app_context_h context = nullptr;
    app_info_h info = nullptr;
    ASSERT_EQ(app_manager_get_app_context("org.example.home", &context), APP_MANAGER_ERROR_NONE);
    ASSERT_EQ(app_info_create("org.example.home", &info), APP_MANAGER_ERROR_NONE);
    bool running = false;
    char* text = nullptr;
    app_state_e state;
    app_context_h otherContext = nullptr;
    app_info_h otherInfo = nullptr;
    const std::vector<std::pair<const char*, std::function<int()>>> calls = {
        {"app_manager_is_running", [&] { return app_manager_is_running("org.example.home", &running); }},
        {"app_manager_get_app_context",
         [&] { return app_manager_get_app_context("org.example.home", &otherContext); }},
        {"app_manager_terminate_app", [&] { return app_manager_terminate_app(context); }},
        {"app_context_destroy", [&] { return app_context_destroy(context); }},
        {"app_context_get_app_id", [&] { return app_context_get_app_id(context, &text); }},
        {"app_context_get_app_state", [&] { return app_context_get_app_state(context, &state); }},
        {"app_info_create", [&] { return app_info_create("org.example.home", &otherInfo); }},
        {"app_info_destroy", [&] { return app_info_destroy(info); }},
        {"app_info_get_app_id", [&] { return app_info_get_app_id(info, &text); }},
    };
    for (const auto& call : calls) {
        setup.apply(std::string(R"({"errors": {")") + call.first +
                    R"(": "APP_MANAGER_ERROR_REQUEST_FAILED"}})");
        EXPECT_EQ(call.second(), APP_MANAGER_ERROR_REQUEST_FAILED) << call.first;
        setup.apply(std::string(R"({"errors": {")") + call.first + R"(": -1234}})");
        EXPECT_EQ(call.second(), -1234) << call.first;
    }
    EXPECT_EQ(otherContext, nullptr);
    EXPECT_EQ(otherInfo, nullptr);
    // Nothing was terminated on the way.
    setup.apply(R"({"errors": {}})");
    EXPECT_TRUE(apps().isRunning("org.example.home"));
    EXPECT_TRUE(journalEvents("app_terminate").empty());
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(app_info_destroy(info), APP_MANAGER_ERROR_NONE);
}

// --- app contexts -----------------------------------------------------------------------

TEST(AppContext, StateIsForegroundBackgroundOrService)
{
    marltest::TestDevice dev(kApps);
    EXPECT_EQ(stateOf("org.example.home"), APP_STATE_FOREGROUND);
    EXPECT_EQ(stateOf("org.example.timer"), APP_STATE_BACKGROUND);
    EXPECT_EQ(stateOf("org.example.shop-service"), APP_STATE_SERVICE);
}

TEST(AppContext, GivesTheAppId)
{
    marltest::TestDevice dev(kApps);
    app_context_h context = nullptr;
    ASSERT_EQ(app_manager_get_app_context("org.example.timer", &context), APP_MANAGER_ERROR_NONE);
    char* id = nullptr;
    EXPECT_EQ(app_context_get_app_id(context, &id), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(take(id), "org.example.timer");
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
}

TEST(AppContext, OfAnAppNotRunningIsNoSuchApp)
{
    marltest::TestDevice dev(kApps);
    app_context_h context = nullptr;
    EXPECT_EQ(app_manager_get_app_context("org.example.recipes", &context), APP_MANAGER_ERROR_NO_SUCH_APP);
    EXPECT_EQ(context, nullptr);
    EXPECT_EQ(app_manager_get_app_context("org.example.absent", &context), APP_MANAGER_ERROR_NO_SUCH_APP);
}

TEST(AppContext, WithoutADeviceDirectoryIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    ::setenv("MARL_DEVICE_DIR", dev.path("absent").c_str(), 1);
    app_context_h context = nullptr;
    EXPECT_EQ(app_manager_get_app_context("org.example.home", &context), APP_MANAGER_ERROR_IO_ERROR);
    EXPECT_EQ(context, nullptr);
}

TEST(AppContext, WithAMalformedAppsJsonIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    writeText(dev.path("apps.json"), "{\"installed\": [{\"service\": true}]}");
    app_context_h context = nullptr;
    EXPECT_EQ(app_manager_get_app_context("org.example.home", &context), APP_MANAGER_ERROR_IO_ERROR);
}

// --- terminating -----------------------------------------------------------------------

TEST(AppManager, TerminateTakesTheAppOutOfTheForegroundAndTheRunningList)
{
    marltest::TestDevice dev(kApps);
    EXPECT_EQ(terminate("org.example.home"), APP_MANAGER_ERROR_NONE);
    const vapp::AppsState state = apps();
    EXPECT_FALSE(state.isRunning("org.example.home"));
    EXPECT_EQ(state.foreground, "");
    EXPECT_TRUE(state.isRunning("org.example.timer"));
    bool running = true;
    EXPECT_EQ(app_manager_is_running("org.example.home", &running), APP_MANAGER_ERROR_NONE);
    EXPECT_FALSE(running);
    const auto terminated = journalEvents("app_terminate");
    ASSERT_EQ(terminated.size(), 1u);
    EXPECT_EQ(terminated[0]["app_id"].asString(), "org.example.home");
}

TEST(AppManager, TerminateOfABackgroundAppKeepsTheForeground)
{
    marltest::TestDevice dev(kApps);
    EXPECT_EQ(terminate("org.example.timer"), APP_MANAGER_ERROR_NONE);
    const vapp::AppsState state = apps();
    EXPECT_FALSE(state.isRunning("org.example.timer"));
    EXPECT_EQ(state.foreground, "org.example.home");
}

TEST(AppManager, TerminateOfAnAppNoLongerRunningFails)
{
    marltest::TestDevice dev(kApps);
    app_context_h context = nullptr;
    ASSERT_EQ(app_manager_get_app_context("org.example.timer", &context), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(app_manager_terminate_app(context), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(app_manager_terminate_app(context), APP_MANAGER_ERROR_REQUEST_FAILED);
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(journalEvents("app_terminate").size(), 1u);
}

TEST(AppManager, TerminateWithAMalformedAppsJsonIsAnIoErrorAndKeepsTheFile)
{
    marltest::TestDevice dev(kApps);
    app_context_h context = nullptr;
    ASSERT_EQ(app_manager_get_app_context("org.example.timer", &context), APP_MANAGER_ERROR_NONE);
    writeText(dev.path("apps.json"), "{\"running\": [\"org.example.timer\"");
    EXPECT_EQ(app_manager_terminate_app(context), APP_MANAGER_ERROR_IO_ERROR);
    EXPECT_EQ(readText(dev.path("apps.json")), "{\"running\": [\"org.example.timer\"");
    EXPECT_TRUE(journalEvents("app_terminate").empty());
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
}

TEST(AppManager, TerminateWithoutADeviceDirectoryIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    app_context_h context = nullptr;
    ASSERT_EQ(app_manager_get_app_context("org.example.timer", &context), APP_MANAGER_ERROR_NONE);
    ::setenv("MARL_DEVICE_DIR", dev.path("absent").c_str(), 1);
    EXPECT_EQ(app_manager_terminate_app(context), APP_MANAGER_ERROR_IO_ERROR);
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
}

// --- app info ------------------------------------------------------------------------------

TEST(AppInfo, OfAnInstalledAppGivesItsId)
{
    marltest::TestDevice dev(kApps);
    app_info_h info = nullptr;
    ASSERT_EQ(app_info_create("org.example.recipes", &info), APP_MANAGER_ERROR_NONE);
    char* id = nullptr;
    EXPECT_EQ(app_info_get_app_id(info, &id), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(take(id), "org.example.recipes");
    EXPECT_EQ(app_info_destroy(info), APP_MANAGER_ERROR_NONE);
}

TEST(AppInfo, OfAnAppNotInstalledIsNoSuchApp)
{
    marltest::TestDevice dev(R"({"apps": {"installed": ["org.example.home"], "running": ["org.example.ghost"]}})");
    app_info_h info = nullptr;
    EXPECT_EQ(app_info_create("org.example.recipes", &info), APP_MANAGER_ERROR_NO_SUCH_APP);
    EXPECT_EQ(info, nullptr);
    // Running is not installed.
    EXPECT_EQ(app_info_create("org.example.ghost", &info), static_cast<int>(0xFEEF0001u));
}

TEST(AppInfo, WithoutADeviceDirectoryIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    ::setenv("MARL_DEVICE_DIR", dev.path("absent").c_str(), 1);
    app_info_h info = nullptr;
    EXPECT_EQ(app_info_create("org.example.home", &info), APP_MANAGER_ERROR_IO_ERROR);
}

TEST(AppInfo, WithAMalformedAppsJsonIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    writeText(dev.path("apps.json"), "{\"installed\": \"org.example.home\"}");
    app_info_h info = nullptr;
    EXPECT_EQ(app_info_create("org.example.home", &info), APP_MANAGER_ERROR_IO_ERROR);
}

TEST(AppInfo, WithAMalformedDeviceJsonIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    writeText(dev.path("device.json"), "{");
    app_info_h info = nullptr;
    EXPECT_EQ(app_info_create("org.example.home", &info), APP_MANAGER_ERROR_IO_ERROR);
}
