#include "AppFwTest.h"

#include <app_control.h>
#include <app_manager.h>

#include <sys/wait.h>

#include <cerrno>
#include <functional>
#include <sstream>

using namespace appfwtest;

namespace {

const char* const kApps = R"({"apps": {
    "installed": ["org.example.home", "org.example.recipes",
                  {"id": "org.example.shop-service", "service": true}],
    "running": ["org.example.home"],
    "foreground": "org.example.home"}})";

struct Request {
    const char* appId = nullptr;
    const char* operation = nullptr;
    const char* uri = nullptr;
    std::vector<std::pair<const char*, const char*>> extras;
};

int launch(const Request& request)
{
    app_control_h handle = nullptr;
    EXPECT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    if (request.appId) {
        EXPECT_EQ(app_control_set_app_id(handle, request.appId), APP_CONTROL_ERROR_NONE);
    }
    if (request.operation) {
        EXPECT_EQ(app_control_set_operation(handle, request.operation), APP_CONTROL_ERROR_NONE);
    }
    if (request.uri) {
        EXPECT_EQ(app_control_set_uri(handle, request.uri), APP_CONTROL_ERROR_NONE);
    }
    for (const auto& extra : request.extras)
        EXPECT_EQ(app_control_add_extra_data(handle, extra.first, extra.second),
                  APP_CONTROL_ERROR_NONE);
    const int result = app_control_send_launch_request(handle, nullptr, nullptr);
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
    return result;
}

Request recipes()
{
    Request request;
    request.appId = "org.example.recipes";
    return request;
}

}  // namespace

// --- the handle -------------------------------------------------------------

TEST(AppControl, HandleKeepsAppIdOperationAndUri)
{
    marltest::TestDevice dev;
    app_control_h handle = nullptr;
    ASSERT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(app_control_set_app_id(handle, "org.example.recipes"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_set_operation(handle, APP_CONTROL_OPERATION_VIEW), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_set_uri(handle, "file:///recipe/12"), APP_CONTROL_ERROR_NONE);
    char* text = nullptr;
    EXPECT_EQ(app_control_get_app_id(handle, &text), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(take(text), "org.example.recipes");
    EXPECT_EQ(app_control_get_operation(handle, &text), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(take(text), "http://tizen.org/appcontrol/operation/view");
    EXPECT_EQ(app_control_get_uri(handle, &text), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(take(text), "file:///recipe/12");
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
}

TEST(AppControl, UnsetFieldsAreNullAndANullValueUnsets)
{
    marltest::TestDevice dev;
    app_control_h handle = nullptr;
    ASSERT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    char* text = reinterpret_cast<char*>(1);
    EXPECT_EQ(app_control_get_uri(handle, &text), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(app_control_set_app_id(handle, "org.example.recipes"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_set_app_id(handle, nullptr), APP_CONTROL_ERROR_NONE);
    text = reinterpret_cast<char*>(1);
    EXPECT_EQ(app_control_get_app_id(handle, &text), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(text, nullptr);
    text = reinterpret_cast<char*>(1);
    EXPECT_EQ(app_control_get_operation(handle, &text), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
}

TEST(AppControl, ExtraDataIsFoundByKeyAndReplacedWhenAddedAgain)
{
    marltest::TestDevice dev;
    app_control_h handle = nullptr;
    ASSERT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_add_extra_data(handle, "key_merchant", "Tesco"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_add_extra_data(handle, "key_search_term", "bread"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_add_extra_data(handle, "key_merchant", "Lidl"), APP_CONTROL_ERROR_NONE);
    char* value = nullptr;
    EXPECT_EQ(app_control_get_extra_data(handle, "key_merchant", &value), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(take(value), "Lidl");
    EXPECT_EQ(app_control_get_extra_data(handle, "key_search_term", &value), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(take(value), "bread");
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
}

TEST(AppControl, BadExtraDataIsRefused)
{
    marltest::TestDevice dev;
    app_control_h handle = nullptr;
    ASSERT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    char* value = nullptr;
    EXPECT_EQ(app_control_get_extra_data(handle, "absent", &value), APP_CONTROL_ERROR_KEY_NOT_FOUND);
    EXPECT_EQ(app_control_add_extra_data(handle, "", "v"), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_add_extra_data(handle, "k", ""), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_add_extra_data(handle, nullptr, "v"), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_add_extra_data(handle, "k", nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_add_extra_data(handle, "__APP_SVC_OP_TYPE__", "v"),
              APP_CONTROL_ERROR_KEY_REJECTED);
    EXPECT_EQ(app_control_add_extra_data(handle, "__AUL_X", "v"), APP_CONTROL_ERROR_KEY_REJECTED);
    EXPECT_EQ(app_control_get_extra_data(handle, "k", &value), APP_CONTROL_ERROR_KEY_NOT_FOUND);
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
}

TEST(AppControl, NullArgumentsAreInvalidParameters)
{
    marltest::TestDevice dev;
    char* text = nullptr;
    EXPECT_EQ(app_control_create(nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_destroy(nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_set_app_id(nullptr, "a"), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_get_app_id(nullptr, &text), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_set_operation(nullptr, "a"), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_get_operation(nullptr, &text), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_set_uri(nullptr, "a"), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_get_uri(nullptr, &text), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_add_extra_data(nullptr, "k", "v"), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_get_extra_data(nullptr, "k", &text), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_send_launch_request(nullptr, nullptr, nullptr),
              APP_CONTROL_ERROR_INVALID_PARAMETER);
    app_control_h handle = nullptr;
    ASSERT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_get_app_id(handle, nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_get_extra_data(handle, "k", nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
}

TEST(AppControl, HandleFunctionsWorkWithoutADevice)
{
    marltest::TestDevice dev;
    ::setenv("MARL_DEVICE_DIR", dev.path("absent").c_str(), 1);
    app_control_h handle = nullptr;
    ASSERT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_set_app_id(handle, "org.example.recipes"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_add_extra_data(handle, "k", "v"), APP_CONTROL_ERROR_NONE);
    char* text = nullptr;
    EXPECT_EQ(app_control_get_app_id(handle, &text), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(take(text), "org.example.recipes");
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
}

TEST(AppControl, InjectedErrorIsReturnedAsIs)
{
    marltest::TestDevice dev;
    app_control_h handle = nullptr;
    ASSERT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_NONE);
    char* text = nullptr;
    const std::vector<std::pair<const char*, std::function<int()>>> calls = {
        {"app_control_create", [&] { app_control_h other = nullptr; return app_control_create(&other); }},
        {"app_control_destroy", [&] { return app_control_destroy(handle); }},
        {"app_control_set_app_id", [&] { return app_control_set_app_id(handle, "a"); }},
        {"app_control_get_app_id", [&] { return app_control_get_app_id(handle, &text); }},
        {"app_control_set_operation", [&] { return app_control_set_operation(handle, "a"); }},
        {"app_control_get_operation", [&] { return app_control_get_operation(handle, &text); }},
        {"app_control_set_uri", [&] { return app_control_set_uri(handle, "a"); }},
        {"app_control_get_uri", [&] { return app_control_get_uri(handle, &text); }},
        {"app_control_add_extra_data", [&] { return app_control_add_extra_data(handle, "k", "v"); }},
        {"app_control_get_extra_data", [&] { return app_control_get_extra_data(handle, "k", &text); }},
        {"app_control_send_launch_request",
         [&] { return app_control_send_launch_request(handle, nullptr, nullptr); }},
    };
    for (const auto& call : calls) {
        dev.apply(std::string(R"({"errors": {")") + call.first +
                  R"(": "APP_CONTROL_ERROR_LAUNCH_REJECTED"}})");
        EXPECT_EQ(call.second(), APP_CONTROL_ERROR_LAUNCH_REJECTED) << call.first;
        dev.apply(std::string(R"({"errors": {")") + call.first + R"(": -5}})");
        EXPECT_EQ(call.second(), -5) << call.first;
    }
    dev.apply(R"({"errors": {}})");
    EXPECT_EQ(app_control_destroy(handle), APP_CONTROL_ERROR_NONE);
}

TEST(AppControl, InjectedCreateErrorGivesNoHandle)
{
    marltest::TestDevice dev(R"({"errors": {"app_control_create": "APP_CONTROL_ERROR_OUT_OF_MEMORY"}})");
    app_control_h handle = nullptr;
    EXPECT_EQ(app_control_create(&handle), APP_CONTROL_ERROR_OUT_OF_MEMORY);
    EXPECT_EQ(handle, nullptr);
}

// --- launch requests ------------------------------------------------------------

TEST(AppControl, LaunchMakesTheAppForegroundAndKeepsThePreviousOneInTheBackground)
{
    marltest::TestDevice dev(kApps);
    EXPECT_EQ(launch(recipes()), APP_CONTROL_ERROR_NONE);
    const vapp::AppsState state = apps();
    EXPECT_EQ(state.foreground, "org.example.recipes");
    EXPECT_TRUE(state.isRunning("org.example.recipes"));
    EXPECT_TRUE(state.isRunning("org.example.home"));

    app_context_h context = nullptr;
    app_state_e appState = APP_STATE_UNDEFINED;
    ASSERT_EQ(app_manager_get_app_context("org.example.home", &context), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(app_context_get_app_state(context, &appState), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(appState, APP_STATE_BACKGROUND);
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
    ASSERT_EQ(app_manager_get_app_context("org.example.recipes", &context), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(app_context_get_app_state(context, &appState), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(appState, APP_STATE_FOREGROUND);
    EXPECT_EQ(app_context_destroy(context), APP_MANAGER_ERROR_NONE);
}

TEST(AppControl, LaunchOfARunningAppBringsItBackToTheForeground)
{
    marltest::TestDevice dev(R"({"apps": {"installed": ["a", "b"], "running": ["a", "b"], "foreground": "b"}})");
    Request request;
    request.appId = "a";
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);
    const vapp::AppsState state = apps();
    EXPECT_EQ(state.foreground, "a");
    EXPECT_EQ(state.running, (std::vector<std::string>{"a", "b"}));
}

TEST(AppControl, LaunchOfAServiceAppLeavesTheForegroundAlone)
{
    marltest::TestDevice dev(kApps);
    Request request;
    request.appId = "org.example.shop-service";
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);
    const vapp::AppsState state = apps();
    EXPECT_EQ(state.foreground, "org.example.home");
    EXPECT_TRUE(state.isRunning("org.example.shop-service"));
}

TEST(AppControl, LaunchIsJournaledWithItsExtrasInTheOrderAdded)
{
    marltest::TestDevice dev(kApps);
    Request request = recipes();
    request.operation = APP_CONTROL_OPERATION_SEARCH;
    request.uri = "app://recipes/search";
    request.extras = {{"key_search_term", "bread"}, {"key_merchant", "Tesco"}, {"a_last", "1"}};
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);
    const auto launches = journalEvents("app_launch");
    ASSERT_EQ(launches.size(), 1u);
    const Json::Value& entry = launches[0];
    EXPECT_EQ(entry["app_id"].asString(), "org.example.recipes");
    EXPECT_EQ(entry["operation"].asString(), "http://tizen.org/appcontrol/operation/search");
    EXPECT_EQ(entry["uri"].asString(), "app://recipes/search");
    EXPECT_EQ(entry["extras"]["key_search_term"].asString(), "bread");
    EXPECT_EQ(entry["extras"]["key_merchant"].asString(), "Tesco");
    EXPECT_EQ(entry["extras"]["a_last"].asString(), "1");
    EXPECT_EQ(entry["extras"].size(), 3u);
    ASSERT_EQ(entry["extra_keys"].size(), 3u);
    EXPECT_EQ(entry["extra_keys"][0].asString(), "key_search_term");
    EXPECT_EQ(entry["extra_keys"][1].asString(), "key_merchant");
    EXPECT_EQ(entry["extra_keys"][2].asString(), "a_last");
    EXPECT_TRUE(journalEvents("app_launch_refused").empty());
}

TEST(AppControl, LaunchWithoutOperationIsJournaledWithEmptyOperationAndUri)
{
    marltest::TestDevice dev(kApps);
    EXPECT_EQ(launch(recipes()), APP_CONTROL_ERROR_NONE);
    const auto launches = journalEvents("app_launch");
    ASSERT_EQ(launches.size(), 1u);
    EXPECT_EQ(launches[0]["operation"].asString(), "");
    EXPECT_EQ(launches[0]["uri"].asString(), "");
    EXPECT_TRUE(launches[0]["extras"].isObject());
    EXPECT_EQ(launches[0]["extras"].size(), 0u);
}

TEST(AppControl, LaunchWithNothingSetIsRefusedAsAppNotFound)
{
    marltest::TestDevice dev(kApps);
    EXPECT_EQ(launch(Request()), APP_CONTROL_ERROR_APP_NOT_FOUND);
    EXPECT_TRUE(journalEvents("app_launch").empty());
    const auto refused = journalEvents("app_launch_refused");
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0]["app_id"].asString(), "");
    EXPECT_EQ(refused[0]["error"].asInt(), APP_CONTROL_ERROR_APP_NOT_FOUND);
    EXPECT_EQ(apps().foreground, "org.example.home");
}

TEST(AppControl, LaunchWithOperationButNoAppIdIsRefusedAsAppNotFound)
{
    marltest::TestDevice dev(kApps);
    Request request;
    request.operation = APP_CONTROL_OPERATION_VIEW;
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_APP_NOT_FOUND);
}

TEST(AppControl, LaunchOfAnAppNotInstalledIsRefusedAsAppNotFound)
{
    marltest::TestDevice dev(kApps);
    Request request;
    request.appId = "org.example.absent";
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_APP_NOT_FOUND);
    const vapp::AppsState state = apps();
    EXPECT_FALSE(state.isRunning("org.example.absent"));
    EXPECT_EQ(state.foreground, "org.example.home");
    const auto refused = journalEvents("app_launch_refused");
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0]["app_id"].asString(), "org.example.absent");
}

TEST(AppControl, LaunchOnEventOperationIsRejected)
{
    marltest::TestDevice dev(kApps);
    Request request = recipes();
    request.operation = APP_CONTROL_OPERATION_LAUNCH_ON_EVENT;
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_LAUNCH_REJECTED);
    EXPECT_FALSE(apps().isRunning("org.example.recipes"));
}

TEST(AppControl, InjectedLaunchErrorLaunchesNothingAndIsJournaledAsRefused)
{
    marltest::TestDevice dev(R"({"apps": {"installed": ["org.example.recipes"]},
        "errors": {"app_control_send_launch_request": "APP_CONTROL_ERROR_LAUNCH_REJECTED"}})");
    EXPECT_EQ(launch(recipes()), APP_CONTROL_ERROR_LAUNCH_REJECTED);
    EXPECT_FALSE(apps().isRunning("org.example.recipes"));
    EXPECT_TRUE(journalEvents("app_launch").empty());
    const auto refused = journalEvents("app_launch_refused");
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0]["error"].asInt(), APP_CONTROL_ERROR_LAUNCH_REJECTED);
}

TEST(AppControl, LaunchWithoutADeviceDirectoryIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    ::setenv("MARL_DEVICE_DIR", dev.path("absent").c_str(), 1);
    EXPECT_EQ(launch(recipes()), APP_CONTROL_ERROR_IO_ERROR);
}

TEST(AppControl, LaunchWithAMalformedAppsJsonIsAnIoErrorAndKeepsTheFile)
{
    marltest::TestDevice dev(kApps);
    writeText(dev.path("apps.json"), "{\"installed\": [\"org.example.recipes\"");
    EXPECT_EQ(launch(recipes()), APP_CONTROL_ERROR_IO_ERROR);
    EXPECT_EQ(readText(dev.path("apps.json")), "{\"installed\": [\"org.example.recipes\"");
    EXPECT_TRUE(journalEvents("app_launch").empty());
}

TEST(AppControl, LaunchWithAMalformedDeviceJsonIsAnIoError)
{
    marltest::TestDevice dev(kApps);
    writeText(dev.path("device.json"), "{\"errors\": ");
    EXPECT_EQ(launch(recipes()), APP_CONTROL_ERROR_IO_ERROR);
    EXPECT_FALSE(apps().isRunning("org.example.recipes"));
}

// --- the launched app's handler ---------------------------------------------------

namespace {

// A handler that records its arguments and environment, then says hello on stdout.
const char* const kRecordingHandler = R"({
    "apps": {"installed": [{"id": "org.example.shop", "handler": "handlers/shop.sh"}]},
    "files": [{"device": "handlers/shop.sh", "executable": true, "text":
        "#!/bin/sh\nout=\"$MARL_DEVICE_DIR/handler-args\"\n{ echo \"MARL_DEVICE_DIR=$MARL_DEVICE_DIR\"; for a in \"$@\"; do echo \"$a\"; done; } > \"$out.tmp\"\necho hello from the handler\nmv \"$out.tmp\" \"$out\"\n"}]})";

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

}  // namespace

TEST(LaunchHandler, RunsWithTheRequestAsArgumentsAndTheDeviceInItsEnvironment)
{
    marltest::TestDevice dev(kRecordingHandler);
    Request request;
    request.appId = "org.example.shop";
    request.operation = APP_CONTROL_OPERATION_SEARCH;
    request.uri = "app://shop/search";
    request.extras = {{"key_merchant", "Tesco"}, {"key_search_term", "brown bread"}};
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);

    ASSERT_TRUE(waitForFile(dev.path("handler-args")));
    EXPECT_EQ(lines(readText(dev.path("handler-args"))),
              (std::vector<std::string>{"MARL_DEVICE_DIR=" + dev.dir(), "--app-id", "org.example.shop",
                                        "--operation", "http://tizen.org/appcontrol/operation/search",
                                        "--uri", "app://shop/search", "--extra", "key_merchant=Tesco",
                                        "--extra", "key_search_term=brown bread"}));
    EXPECT_EQ(readText(dev.path("log/handler-org.example.shop.log")), "hello from the handler\n");
}

TEST(LaunchHandler, GetsTheDefaultOperationAndAnEmptyUriWhenNoneWasSet)
{
    marltest::TestDevice dev(kRecordingHandler);
    Request request;
    request.appId = "org.example.shop";
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);
    ASSERT_TRUE(waitForFile(dev.path("handler-args")));
    EXPECT_EQ(lines(readText(dev.path("handler-args"))),
              (std::vector<std::string>{"MARL_DEVICE_DIR=" + dev.dir(), "--app-id", "org.example.shop",
                                        "--operation", "http://tizen.org/appcontrol/operation/default",
                                        "--uri", ""}));
}

TEST(LaunchHandler, LeavesNoChildProcessBehind)
{
    marltest::TestDevice dev(kRecordingHandler);
    Request request;
    request.appId = "org.example.shop";
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);
    errno = 0;
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    ASSERT_TRUE(waitForFile(dev.path("handler-args")));
}

TEST(LaunchHandler, DoesNotHoldUpTheLaunch)
{
    marltest::TestDevice dev(R"({
        "apps": {"installed": [{"id": "org.example.slow", "handler": "slow.sh"}]},
        "files": [{"device": "slow.sh", "executable": true,
                   "text": "#!/bin/sh\nsleep 3\ntouch \"$MARL_DEVICE_DIR/slow-done\"\n"}]})");
    Request request;
    request.appId = "org.example.slow";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_FALSE(std::ifstream(dev.path("slow-done")));
    EXPECT_TRUE(waitForFile(dev.path("slow-done")));
}

TEST(LaunchHandler, ThatCannotRunIsLoggedAndTheLaunchStillCounts)
{
    marltest::TestDevice dev(R"({"apps": {"installed": [{"id": "org.example.shop", "handler": "handlers/absent.sh"}]}})");
    Request request;
    request.appId = "org.example.shop";
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(apps().foreground, "org.example.shop");
    EXPECT_EQ(journalEvents("app_launch").size(), 1u);
    const std::string log = readText(dev.path("log/handler-org.example.shop.log"));
    EXPECT_NE(log.find("cannot run the handler " + dev.path("handlers/absent.sh")), std::string::npos)
        << log;
}

#ifdef MARL_VCONFTOOL
TEST(LaunchHandler, CanAnswerThroughTheKeyStore)
{
    // The handler plays a commerce service app: it answers a search by
    // changing a vconf key with the appliance's vconftool.
    marltest::TestDevice dev(std::string(R"({
        "apps": {"installed": [{"id": "org.example.commerce", "handler": "commerce.sh", "service": true}]},
        "files": [{"device": "commerce.sh", "executable": true, "text":
            "#!/bin/sh\nexec )") + MARL_VCONFTOOL + R"( set -t string db/orvane/e-commerce/response \"$8\"\n"}]})");
    Request request;
    request.appId = "org.example.commerce";
    request.operation = APP_CONTROL_OPERATION_SEARCH;
    request.extras = {{"key_merchant", "Tesco"}};
    EXPECT_EQ(launch(request), APP_CONTROL_ERROR_NONE);

    vapp::VconfValue value;
    for (int i = 0; i < 200 && !vapp::vconfRead("db/orvane/e-commerce/response", value); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(value.type, vapp::VconfValue::String);
    EXPECT_EQ(value.s, "key_merchant=Tesco");
    const auto entries = vapp::readJournal();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]["event"].asString(), "app_launch");
    EXPECT_EQ(entries[1]["event"].asString(), "vconf_set");
    EXPECT_EQ(entries[1]["key"].asString(), "db/orvane/e-commerce/response");
    EXPECT_EQ(apps().foreground, "");
}
#endif
