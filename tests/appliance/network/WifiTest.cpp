#include "DeviceFaults.h"

#include <wifi.h>

#include <cstdlib>
#include <string>

using marltest::TestDevice;

namespace {

const char* kConnected = R"({
  "wifi": {
    "connection_state": "WIFI_CONNECTION_STATE_CONNECTED",
    "essid": "KitchenNet",
    "mac_address": "8c:79:f5:12:34:56"
  }
})";

std::string takeString(char* value)
{
    std::string text = value ? value : "(null)";
    std::free(value);
    return text;
}

// The library's initialisation lives as long as the process; every test
// leaves it as it found it.
class Wifi : public ::testing::Test {
protected:
    void TearDown() override { wifi_deinitialize(); }
};

}  // namespace

TEST_F(Wifi, ConnectedApNameComesFromTheDescription)
{
    TestDevice dev(kConnected);
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_initialize());
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_FAILURE;
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_get_connection_state(&state));
    EXPECT_EQ(WIFI_CONNECTION_STATE_CONNECTED, state);
    EXPECT_EQ(3, state);
    wifi_ap_h ap = nullptr;
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_get_connected_ap(&ap));
    char* essid = nullptr;
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_ap_get_essid(ap, &essid));
    EXPECT_EQ("KitchenNet", takeString(essid));
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_ap_destroy(ap));
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_deinitialize());
}

TEST_F(Wifi, ConnectionStateMayBeGivenByNumber)
{
    TestDevice dev(R"({"wifi": {"connection_state": 1}})");
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_FAILURE;
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_get_connection_state(&state));
    EXPECT_EQ(WIFI_CONNECTION_STATE_ASSOCIATION, state);
}

TEST_F(Wifi, DeviceWithoutAConnectionStateIsDisconnectedAndHasNoConnectedAp)
{
    TestDevice dev(R"({"wifi": {"essid": "KitchenNet"}})");
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_initialize());
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_CONNECTED;
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_get_connection_state(&state));
    EXPECT_EQ(WIFI_CONNECTION_STATE_DISCONNECTED, state);
    wifi_ap_h ap = nullptr;
    EXPECT_EQ(WIFI_ERROR_NO_CONNECTION, wifi_get_connected_ap(&ap));
    EXPECT_EQ(nullptr, ap);
}

TEST_F(Wifi, UnknownConnectionStateIsAnOperationFailure)
{
    TestDevice dev(R"({"wifi": {"connection_state": "CONNECTED"}})");
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_CONNECTED;
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_get_connection_state(&state));
}

TEST_F(Wifi, ActivatedFollowsTheDescriptionOrElseTheConnectionState)
{
    TestDevice dev(R"({"wifi": {"activated": true}})");
    bool activated = false;
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_is_activated(&activated));
    EXPECT_TRUE(activated);
    dev.apply(R"({"wifi": {"connection_state": 2}})");
    activated = false;
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_is_activated(&activated));
    EXPECT_TRUE(activated);
    dev.apply(R"({"wifi": {}})");
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_is_activated(&activated));
    EXPECT_FALSE(activated);
}

TEST_F(Wifi, SecondInitializeAndDeinitializeWithoutInitializeAreInvalidOperations)
{
    TestDevice dev(kConnected);
    EXPECT_EQ(WIFI_ERROR_INVALID_OPERATION, wifi_deinitialize());
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_initialize());
    EXPECT_EQ(WIFI_ERROR_INVALID_OPERATION, wifi_initialize());
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_deinitialize());
    EXPECT_EQ(WIFI_ERROR_INVALID_OPERATION, wifi_deinitialize());
}

TEST_F(Wifi, ConnectedApNeedsTheLibraryInitialized)
{
    TestDevice dev(kConnected);
    wifi_ap_h ap = nullptr;
    EXPECT_EQ(WIFI_ERROR_INVALID_OPERATION, wifi_get_connected_ap(&ap));
    EXPECT_EQ(nullptr, ap);
}

TEST_F(Wifi, MacAddressComesFromTheDescriptionWithoutInitialize)
{
    TestDevice dev(kConnected);
    char* mac = nullptr;
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_get_mac_address(&mac));
    EXPECT_EQ("8c:79:f5:12:34:56", takeString(mac));
}

TEST_F(Wifi, AbsentMacAddressIsAnOperationFailure)
{
    TestDevice dev(R"({"wifi": {"connection_state": 3}})");
    char* mac = nullptr;
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_get_mac_address(&mac));
    EXPECT_EQ(nullptr, mac);
}

TEST_F(Wifi, ErrorInPlaceOfAValueIsAnswered)
{
    TestDevice dev(R"({"wifi": {"connection_state": 3, "essid": {"error": "WIFI_ERROR_OPERATION_ABORTED"},
                                "mac_address": {"error": "WIFI_ERROR_PERMISSION_DENIED"}}})");
    char* mac = nullptr;
    EXPECT_EQ(WIFI_ERROR_PERMISSION_DENIED, wifi_get_mac_address(&mac));
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_initialize());
    wifi_ap_h ap = nullptr;
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_get_connected_ap(&ap));
    char* essid = nullptr;
    EXPECT_EQ(WIFI_ERROR_OPERATION_ABORTED, wifi_ap_get_essid(ap, &essid));
    EXPECT_EQ(nullptr, essid);
    EXPECT_EQ(WIFI_ERROR_NONE, wifi_ap_destroy(ap));
    dev.apply(R"({"wifi": {"connection_state": {"error": "WIFI_ERROR_NO_REPLY"}}})");
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_FAILURE;
    EXPECT_EQ(WIFI_ERROR_NO_REPLY, wifi_get_connection_state(&state));
}

TEST_F(Wifi, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(kConnected);
    dev.apply(R"({"errors": {"wifi_initialize": "WIFI_ERROR_PERMISSION_DENIED",
                             "wifi_get_connection_state": "WIFI_ERROR_OPERATION_FAILED"}})");
    EXPECT_EQ(WIFI_ERROR_PERMISSION_DENIED, wifi_initialize());
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_FAILURE;
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_get_connection_state(&state));
    EXPECT_EQ(WIFI_CONNECTION_STATE_FAILURE, state);
    // A failed initialize leaves the library uninitialized.
    EXPECT_EQ(WIFI_ERROR_INVALID_OPERATION, wifi_deinitialize());
}

TEST_F(Wifi, MissingDeviceDirectoryIsAnOperationFailure)
{
    TestDevice dev(kConnected);
    marltest::removeDevice(dev);
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_initialize());
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_FAILURE;
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_get_connection_state(&state));
    char* mac = nullptr;
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_get_mac_address(&mac));
}

TEST_F(Wifi, MalformedDescriptionIsAnOperationFailure)
{
    TestDevice dev(kConnected);
    marltest::breakDescription(dev);
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_initialize());
    char* mac = nullptr;
    EXPECT_EQ(WIFI_ERROR_OPERATION_FAILED, wifi_get_mac_address(&mac));
}

TEST_F(Wifi, DestroyedOrUnknownApIsAnInvalidParameter)
{
    TestDevice dev(kConnected);
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_initialize());
    wifi_ap_h ap = nullptr;
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_get_connected_ap(&ap));
    ASSERT_EQ(WIFI_ERROR_NONE, wifi_ap_destroy(ap));
    char* essid = nullptr;
    EXPECT_EQ(WIFI_ERROR_INVALID_PARAMETER, wifi_ap_get_essid(ap, &essid));
    EXPECT_EQ(WIFI_ERROR_INVALID_PARAMETER, wifi_ap_destroy(ap));
    EXPECT_EQ(WIFI_ERROR_INVALID_PARAMETER, wifi_ap_destroy(nullptr));
    EXPECT_EQ(WIFI_ERROR_INVALID_PARAMETER, wifi_get_connected_ap(nullptr));
}
