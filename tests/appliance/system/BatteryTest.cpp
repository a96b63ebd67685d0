#include "DeviceFaults.h"

#include <device/battery.h>

using marltest::TestDevice;

TEST(Battery, PercentComesFromTheDescription)
{
    TestDevice dev(R"({"battery": {"percent": 73, "charging": true}})");
    int percent = 0;
    bool charging = false;
    EXPECT_EQ(DEVICE_ERROR_NONE, device_battery_get_percent(&percent));
    EXPECT_EQ(73, percent);
    EXPECT_EQ(DEVICE_ERROR_NONE, device_battery_is_charging(&charging));
    EXPECT_TRUE(charging);
}

TEST(Battery, ApplianceWithoutABatteryAnswersNotSupported)
{
    TestDevice dev(R"({})");
    int percent = 55;
    EXPECT_EQ(DEVICE_ERROR_NOT_SUPPORTED, device_battery_get_percent(&percent));
    EXPECT_EQ(55, percent);
}

TEST(Battery, ErrorInPlaceOfThePercentIsAnswered)
{
    TestDevice dev(R"({"battery": {"percent": {"error": "DEVICE_ERROR_PERMISSION_DENIED"}}})");
    int percent = 55;
    EXPECT_EQ(DEVICE_ERROR_PERMISSION_DENIED, device_battery_get_percent(&percent));
    EXPECT_EQ(55, percent);
}

TEST(Battery, PercentOutsideZeroToHundredIsAnOperationFailure)
{
    TestDevice dev(R"({"battery": {"percent": 140}})");
    int percent = 55;
    EXPECT_EQ(DEVICE_ERROR_OPERATION_FAILED, device_battery_get_percent(&percent));
    EXPECT_EQ(55, percent);
}

TEST(Battery, PercentOfTheWrongTypeIsAnOperationFailure)
{
    TestDevice dev(R"({"battery": {"percent": "73"}})");
    int percent = 55;
    EXPECT_EQ(DEVICE_ERROR_OPERATION_FAILED, device_battery_get_percent(&percent));
}

TEST(Battery, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(R"({"battery": {"percent": 73}, "errors": {"device_battery_get_percent": "DEVICE_ERROR_NOT_INITIALIZED"}})");
    int percent = 0;
    EXPECT_EQ(DEVICE_ERROR_NOT_INITIALIZED, device_battery_get_percent(&percent));
    EXPECT_EQ(0, percent);
}

TEST(Battery, MissingDeviceDirectoryIsAnOperationFailure)
{
    TestDevice dev(R"({"battery": {"percent": 73}})");
    marltest::removeDevice(dev);
    int percent = 0;
    EXPECT_EQ(DEVICE_ERROR_OPERATION_FAILED, device_battery_get_percent(&percent));
}

TEST(Battery, MalformedDescriptionIsAnOperationFailure)
{
    TestDevice dev(R"({"battery": {"percent": 73}})");
    marltest::breakDescription(dev);
    int percent = 0;
    EXPECT_EQ(DEVICE_ERROR_OPERATION_FAILED, device_battery_get_percent(&percent));
}

TEST(Battery, NullPercentIsAnInvalidParameter)
{
    TestDevice dev(R"({"battery": {"percent": 73}})");
    EXPECT_EQ(DEVICE_ERROR_INVALID_PARAMETER, device_battery_get_percent(nullptr));
}
