#include "DeviceFaults.h"

#include <runtime_info.h>

#include <cstdlib>

using marltest::TestDevice;

namespace {

const char* kDescription = R"({
  "runtime_info": {
    "RUNTIME_INFO_KEY_BLUETOOTH_ENABLED": true,
    "RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED": false,
    "RUNTIME_INFO_KEY_VIBRATION_ENABLED": false,
    "RUNTIME_INFO_KEY_GPS_STATUS": 2,
    "26": true,
    "RUNTIME_INFO_KEY_USB_CONNECTED": {"error": "RUNTIME_INFO_ERROR_NOT_SUPPORTED"}
  }
})";

}  // namespace

TEST(RuntimeInfo, KeysKeepTheAppliancesNumbers)
{
    EXPECT_EQ(2, RUNTIME_INFO_KEY_BLUETOOTH_ENABLED);
    EXPECT_EQ(3, RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED);
    EXPECT_EQ(12, RUNTIME_INFO_KEY_VIBRATION_ENABLED);
    EXPECT_EQ(18, RUNTIME_INFO_KEY_GPS_STATUS);
    EXPECT_EQ(26, RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED);
}

TEST(RuntimeInfo, SwitchesComeFromTheDescriptionByEnumName)
{
    TestDevice dev(kDescription);
    bool bluetooth = false, hotspot = true, vibration = true;
    EXPECT_EQ(RUNTIME_INFO_ERROR_NONE, runtime_info_get_value_bool(RUNTIME_INFO_KEY_BLUETOOTH_ENABLED, &bluetooth));
    EXPECT_EQ(RUNTIME_INFO_ERROR_NONE, runtime_info_get_value_bool(RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED, &hotspot));
    EXPECT_EQ(RUNTIME_INFO_ERROR_NONE, runtime_info_get_value_bool(RUNTIME_INFO_KEY_VIBRATION_ENABLED, &vibration));
    EXPECT_TRUE(bluetooth);
    EXPECT_FALSE(hotspot);
    EXPECT_FALSE(vibration);
}

TEST(RuntimeInfo, GpsStatusIsAnInt)
{
    TestDevice dev(kDescription);
    int gps = -1;
    EXPECT_EQ(RUNTIME_INFO_ERROR_NONE, runtime_info_get_value_int(RUNTIME_INFO_KEY_GPS_STATUS, &gps));
    EXPECT_EQ(RUNTIME_INFO_GPS_STATUS_CONNECTED, gps);
}

TEST(RuntimeInfo, KeyMayBeGivenByItsNumber)
{
    TestDevice dev(kDescription);
    bool rotation = false;
    EXPECT_EQ(RUNTIME_INFO_ERROR_NONE, runtime_info_get_value_bool(RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED, &rotation));
    EXPECT_TRUE(rotation);
}

TEST(RuntimeInfo, EnumNameWinsOverTheNumber)
{
    TestDevice dev(R"({"runtime_info": {"RUNTIME_INFO_KEY_GPS_STATUS": 1, "18": 0}})");
    int gps = -1;
    EXPECT_EQ(RUNTIME_INFO_ERROR_NONE, runtime_info_get_value_int(RUNTIME_INFO_KEY_GPS_STATUS, &gps));
    EXPECT_EQ(1, gps);
}

TEST(RuntimeInfo, KeyMissingFromTheDescriptionIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    bool charging = true;
    EXPECT_EQ(RUNTIME_INFO_ERROR_INVALID_PARAMETER,
              runtime_info_get_value_bool(RUNTIME_INFO_KEY_BATTERY_IS_CHARGING, &charging));
    EXPECT_TRUE(charging);
}

TEST(RuntimeInfo, ReadingAKeyWithTheGetterOfAnotherTypeIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    bool flag = false;
    int number = 0;
    EXPECT_EQ(RUNTIME_INFO_ERROR_INVALID_PARAMETER, runtime_info_get_value_bool(RUNTIME_INFO_KEY_GPS_STATUS, &flag));
    EXPECT_EQ(RUNTIME_INFO_ERROR_INVALID_PARAMETER,
              runtime_info_get_value_int(RUNTIME_INFO_KEY_BLUETOOTH_ENABLED, &number));
}

TEST(RuntimeInfo, ErrorInPlaceOfAValueIsAnswered)
{
    TestDevice dev(kDescription);
    bool usb = false;
    EXPECT_EQ(RUNTIME_INFO_ERROR_NOT_SUPPORTED, runtime_info_get_value_bool(RUNTIME_INFO_KEY_USB_CONNECTED, &usb));
}

TEST(RuntimeInfo, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(kDescription);
    dev.apply(R"({"errors": {"runtime_info_get_value_int": "RUNTIME_INFO_ERROR_IO_ERROR"}})");
    int gps = -1;
    bool bluetooth = false;
    EXPECT_EQ(RUNTIME_INFO_ERROR_IO_ERROR, runtime_info_get_value_int(RUNTIME_INFO_KEY_GPS_STATUS, &gps));
    EXPECT_EQ(-1, gps);
    EXPECT_EQ(RUNTIME_INFO_ERROR_NONE, runtime_info_get_value_bool(RUNTIME_INFO_KEY_BLUETOOTH_ENABLED, &bluetooth));
}

TEST(RuntimeInfo, MissingDeviceDirectoryIsAnIoError)
{
    TestDevice dev(kDescription);
    marltest::removeDevice(dev);
    bool bluetooth = false;
    EXPECT_EQ(RUNTIME_INFO_ERROR_IO_ERROR, runtime_info_get_value_bool(RUNTIME_INFO_KEY_BLUETOOTH_ENABLED, &bluetooth));
}

TEST(RuntimeInfo, MalformedDescriptionIsAnIoError)
{
    TestDevice dev(kDescription);
    marltest::breakDescription(dev);
    int gps = -1;
    EXPECT_EQ(RUNTIME_INFO_ERROR_IO_ERROR, runtime_info_get_value_int(RUNTIME_INFO_KEY_GPS_STATUS, &gps));
}

TEST(RuntimeInfo, NullValueIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    EXPECT_EQ(RUNTIME_INFO_ERROR_INVALID_PARAMETER, runtime_info_get_value_bool(RUNTIME_INFO_KEY_BLUETOOTH_ENABLED, nullptr));
}
