#include "DeviceFaults.h"

#include <system_settings.h>

#include <cstdlib>
#include <string>

using marltest::TestDevice;

namespace {

const char* kDescription = R"({
  "system_settings": {
    "SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE": true,
    "SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED": false,
    "24": true,
    "SYSTEM_SETTINGS_KEY_SCREEN_BACKLIGHT_TIME": 30,
    "SYSTEM_SETTINGS_KEY_DEVICE_NAME": "Kitchen",
    "SYSTEM_SETTINGS_KEY_SOUND_TOUCH": {"error": "SYSTEM_SETTINGS_ERROR_NOT_SUPPORTED"}
  }
})";

}  // namespace

TEST(SystemSettings, KeysKeepTheAppliancesNumbers)
{
    EXPECT_EQ(8, SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED);
    EXPECT_EQ(18, SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE);
    EXPECT_EQ(24, SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE);
}

TEST(SystemSettings, SwitchesComeFromTheDescription)
{
    TestDevice dev(kDescription);
    bool silent = false, data = true;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_NONE, system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE, &silent));
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_NONE,
              system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED, &data));
    EXPECT_TRUE(silent);
    EXPECT_FALSE(data);
}

TEST(SystemSettings, KeyMayBeGivenByItsNumber)
{
    TestDevice dev(kDescription);
    bool flight = false;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_NONE, system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE, &flight));
    EXPECT_TRUE(flight);
}

TEST(SystemSettings, IntAndStringSettingsComeFromTheDescription)
{
    TestDevice dev(kDescription);
    int backlight = 0;
    char* name = nullptr;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_NONE,
              system_settings_get_value_int(SYSTEM_SETTINGS_KEY_SCREEN_BACKLIGHT_TIME, &backlight));
    EXPECT_EQ(30, backlight);
    ASSERT_EQ(SYSTEM_SETTINGS_ERROR_NONE, system_settings_get_value_string(SYSTEM_SETTINGS_KEY_DEVICE_NAME, &name));
    EXPECT_EQ(std::string("Kitchen"), name);
    std::free(name);
}

TEST(SystemSettings, KeyMissingFromTheDescriptionIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    bool value = true;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER,
              system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_MOTION_ENABLED, &value));
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER,
              system_settings_get_value_bool(static_cast<system_settings_key_e>(9), &value));
    EXPECT_TRUE(value);
}

TEST(SystemSettings, ReadingAKeyWithTheGetterOfAnotherTypeIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    int number = 0;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER,
              system_settings_get_value_int(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE, &number));
}

TEST(SystemSettings, ErrorInPlaceOfAValueIsAnswered)
{
    TestDevice dev(kDescription);
    bool touch = false;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_NOT_SUPPORTED, system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_SOUND_TOUCH, &touch));
}

TEST(SystemSettings, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(kDescription);
    dev.apply(R"({"errors": {"system_settings_get_value_bool": "SYSTEM_SETTINGS_ERROR_PERMISSION_DENIED"}})");
    bool silent = false;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_PERMISSION_DENIED,
              system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE, &silent));
    EXPECT_FALSE(silent);
}

TEST(SystemSettings, MissingDeviceDirectoryIsAnIoError)
{
    TestDevice dev(kDescription);
    marltest::removeDevice(dev);
    bool silent = false;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_IO_ERROR, system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE, &silent));
}

TEST(SystemSettings, MalformedDescriptionIsAnIoError)
{
    TestDevice dev(kDescription);
    marltest::breakDescription(dev);
    bool silent = false;
    EXPECT_EQ(SYSTEM_SETTINGS_ERROR_IO_ERROR, system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE, &silent));
}
