#include "DeviceFaults.h"

#include <system_info.h>

#include <cstdlib>
#include <string>

using marltest::TestDevice;

namespace {

const char* kDescription = R"({
  "system_info": {
    "tizen.org/feature/screen.width": 1080,
    "tizen.org/feature/screen.height": 1920,
    "tizen.org/feature/network.telephony": false,
    "tizen.org/feature/network.telephony.sms": true,
    "tizen.org/feature/platform.version": "3.0",
    "tizen.org/system/model_name": "LD2.0",
    "tizen.org/feature/screen.dpi": 160.5,
    "tizen.org/system/platform.name": {"error": "SYSTEM_INFO_ERROR_PERMISSION_DENIED"},
    "tizen.org/system/manufacturer": {"error": -1234}
  }
})";

std::string takeString(char* value)
{
    std::string text = value ? value : "(null)";
    std::free(value);
    return text;
}

}  // namespace

TEST(SystemInfo, ScreenSizeComesFromTheDescription)
{
    TestDevice dev(kDescription);
    int width = 0, height = 0;
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_int("tizen.org/feature/screen.width", &width));
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_int("tizen.org/feature/screen.height", &height));
    EXPECT_EQ(1080, width);
    EXPECT_EQ(1920, height);
}

TEST(SystemInfo, TelephonyFeaturesComeFromTheDescription)
{
    TestDevice dev(kDescription);
    bool telephony = true, sms = false;
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_bool("tizen.org/feature/network.telephony", &telephony));
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_bool("tizen.org/feature/network.telephony.sms", &sms));
    EXPECT_FALSE(telephony);
    EXPECT_TRUE(sms);
}

TEST(SystemInfo, StringsAreAllocatedCopiesOfTheDescription)
{
    TestDevice dev(kDescription);
    char* version = nullptr;
    char* model = nullptr;
    ASSERT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_string("tizen.org/feature/platform.version", &version));
    ASSERT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_string("tizen.org/system/model_name", &model));
    EXPECT_EQ("3.0", takeString(version));
    EXPECT_EQ("LD2.0", takeString(model));
}

TEST(SystemInfo, DoubleFeaturesComeFromTheDescription)
{
    TestDevice dev(kDescription);
    double dpi = 0, width = 0;
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_double("tizen.org/feature/screen.dpi", &dpi));
    EXPECT_DOUBLE_EQ(160.5, dpi);
    // A whole number is a double too.
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_double("tizen.org/feature/screen.width", &width));
    EXPECT_DOUBLE_EQ(1080.0, width);
}

TEST(SystemInfo, KeyMissingFromTheDescriptionIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    int value = 77;
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_platform_int("tizen.org/feature/no.such.key", &value));
    EXPECT_EQ(77, value);
}

TEST(SystemInfo, ReadingAKeyWithTheGetterOfAnotherTypeIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    bool flag = false;
    int number = 0;
    char* text = nullptr;
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_platform_bool("tizen.org/feature/screen.width", &flag));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_platform_int("tizen.org/system/model_name", &number));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_platform_int("tizen.org/feature/screen.dpi", &number));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_platform_string("tizen.org/feature/screen.width", &text));
    EXPECT_EQ(nullptr, text);
}

TEST(SystemInfo, ErrorInPlaceOfAValueIsAnswered)
{
    TestDevice dev(kDescription);
    char* text = nullptr;
    EXPECT_EQ(SYSTEM_INFO_ERROR_PERMISSION_DENIED, system_info_get_platform_string("tizen.org/system/platform.name", &text));
    EXPECT_EQ(-1234, system_info_get_platform_string("tizen.org/system/manufacturer", &text));
    EXPECT_EQ(nullptr, text);
}

TEST(SystemInfo, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(kDescription);
    dev.apply(R"({"errors": {"system_info_get_platform_int": "SYSTEM_INFO_ERROR_IO_ERROR"}})");
    int width = 0;
    bool sms = false;
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_platform_int("tizen.org/feature/screen.width", &width));
    EXPECT_EQ(0, width);
    // Only the named function fails.
    EXPECT_EQ(SYSTEM_INFO_ERROR_NONE, system_info_get_platform_bool("tizen.org/feature/network.telephony.sms", &sms));
}

TEST(SystemInfo, MissingDeviceDirectoryIsAnIoError)
{
    TestDevice dev(kDescription);
    marltest::removeDevice(dev);
    int width = 0;
    char* text = nullptr;
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_platform_int("tizen.org/feature/screen.width", &width));
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_platform_string("tizen.org/system/model_name", &text));
    EXPECT_EQ(nullptr, text);
}

TEST(SystemInfo, MalformedDescriptionIsAnIoError)
{
    TestDevice dev(kDescription);
    marltest::breakDescription(dev);
    bool sms = false;
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_platform_bool("tizen.org/feature/network.telephony.sms", &sms));
}

TEST(SystemInfo, SectionThatIsNotAnObjectIsAnIoError)
{
    TestDevice dev(R"({"system_info": ["tizen.org/feature/screen.width", 1080]})");
    int width = 0;
    EXPECT_EQ(SYSTEM_INFO_ERROR_IO_ERROR, system_info_get_platform_int("tizen.org/feature/screen.width", &width));
}

TEST(SystemInfo, NullArgumentsAreInvalidParameters)
{
    TestDevice dev(kDescription);
    int width = 0;
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_platform_int(nullptr, &width));
    EXPECT_EQ(SYSTEM_INFO_ERROR_INVALID_PARAMETER, system_info_get_platform_int("tizen.org/feature/screen.width", nullptr));
}

TEST(SystemInfo, UnknownErrorNameInPlaceOfAValueIsAnUnknownError)
{
    TestDevice dev(R"({"system_info": {"tizen.org/feature/screen.width": {"error": "NO_SUCH_ERROR"}}})");
    int width = 0;
    EXPECT_EQ(TIZEN_ERROR_UNKNOWN, system_info_get_platform_int("tizen.org/feature/screen.width", &width));
    EXPECT_EQ(0, width);
}
