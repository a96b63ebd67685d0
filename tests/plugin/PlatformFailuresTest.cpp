// The platform calls that fail or answer without a value, through the virtual
// appliance's injected errors ("errors": {"function": code}); a code of 0 makes
// a call answer success without doing anything, so that what it should have
// given stays null.
#include "PluginFixture.h"

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSoftWare.h"
#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "RetrieveImpl/DA/DAUtils/AppControlData.h"
#include "SessionManager/SessionManager.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <app_control.h>

#include <string>
#include <vector>

using Util::AppControl;
using Util::AppControlData;
using marltest::EngineTest;
using marltest::TestDevice;
using marltest::logged;

namespace {

size_t launches()
{
    size_t count = 0;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == "app_launch")
            ++count;
    return count;
}

AppControlData& fullRequest(AppControlData& data)
{
    return data.setPackageName("org.tizen.fridge-timer")
        .setOperation("http://tizen.org/appcontrol/operation/default")
        .setUri("tizen://timer")
        .addExtraData("key", "value");
}

}  // namespace

TEST(AppControlFailures, EachFailedStepOfALaunchReturnsItsCodeAndLaunchesNothing)
{
    const struct {
        const char* function;
        const char* message;
    } steps[] = {{"app_control_set_app_id", "Failed to set app id"},
                 {"app_control_set_operation", "Failed to set operation"},
                 {"app_control_add_extra_data", "Failed to add extra data"}};
    for (const auto& step : steps) {
        TestDevice device(std::string(R"({"apps": {"installed": ["org.tizen.fridge-timer"]}, "errors": {")") +
                          step.function + R"(": "APP_CONTROL_ERROR_INVALID_DATA_TYPE"}})");
        AppControlData data;
        EXPECT_EQ(AppControl::performAppControl(fullRequest(data)), APP_CONTROL_ERROR_INVALID_DATA_TYPE)
            << step.function;
        EXPECT_TRUE(logged(step.message)) << step.function;
        EXPECT_EQ(launches(), 0u) << step.function;
    }
}

TEST(AppControlFailures, AFailedDestroyAfterALaunchIsLoggedAndReturned)
{
    TestDevice device(R"({"apps": {"installed": ["org.tizen.fridge-timer"]},
        "errors": {"app_control_destroy": "APP_CONTROL_ERROR_INVALID_PARAMETER"}})");
    AppControlData data;
    EXPECT_EQ(AppControl::performAppControl(fullRequest(data)), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_TRUE(logged("Failed to destroy app_control handle"));
    EXPECT_EQ(launches(), 1u);
}

TEST(AppControlFailures, AHandleThatIsNotMadeLaunchesNothing)
{
    // The call answers success and makes no handle.
    TestDevice device(R"({"apps": {"installed": ["org.tizen.fridge-timer"]}, "errors": {"app_control_create": 0}})");
    AppControlData data;
    EXPECT_EQ(AppControl::performAppControl(fullRequest(data)), -1);
    EXPECT_TRUE(logged("Failed to create app_control handle"));
    EXPECT_EQ(launches(), 0u);
}

TEST(SoftwareFacetFailures, APlatformStringAnsweredWithoutAValueGivesEmptyText)
{
    TestDevice device(R"({"system_info": {"tizen.org/feature/platform.version": "3.0",
        "tizen.org/system/platform.name": "Tizen", "tizen.org/system/model_name": "LD2.0"},
        "errors": {"system_info_get_platform_string": 0}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getOS_Ver(), "");
    EXPECT_EQ(software.getMaker(), "");
    EXPECT_EQ(software.getModel(), "");
    EXPECT_TRUE(logged("Invalid Version"));
    EXPECT_TRUE(logged("Invalid name"));
    EXPECT_TRUE(logged("Invalid model name"));
}

TEST(SoftwareFacetFailures, AProxyAnsweredWithoutAValueGivesEmptyText)
{
    TestDevice device(R"({"connection": {"proxy": "http://10.0.0.1:8080"},
        "errors": {"connection_get_proxy": 0}})");
    RetrieveDeviceDataEngineImplSoftWare software;
    EXPECT_EQ(software.getProxyUrl(), "");
    EXPECT_TRUE(logged("Invalid proxy"));
}

TEST(SessionState, TheDriverResponseFlagIsKeptAsSet)
{
    TestDevice device;
    SessionManager session;
    EXPECT_FALSE(session.getOnDriverResponse());
    session.setOnDriverResponse(true);
    EXPECT_TRUE(session.getOnDriverResponse());
    EXPECT_TRUE(logged("onDriverResponse[1]"));
    EXPECT_TRUE(logged("mOnDriverResponse[1]"));
}
