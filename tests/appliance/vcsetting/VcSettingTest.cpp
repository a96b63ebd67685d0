#include "DeviceFaults.h"

#include <voice_control_setting.h>

#include <cstdlib>
#include <string>

using marltest::TestDevice;

namespace {

std::string takeString(char* value)
{
    std::string text = value ? value : "(null)";
    std::free(value);
    return text;
}

// The library's initialisation lives as long as the process; every test
// leaves it as it found it.
class VcSetting : public ::testing::Test {
protected:
    void TearDown() override { vc_setting_deinitialize(); }
};

}  // namespace

TEST_F(VcSetting, LanguageComesFromTheDescription)
{
    TestDevice dev(R"({"vc_setting": {"language": "ko_KR"}})");
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    char* language = nullptr;
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_get_language(&language));
    EXPECT_EQ("ko_KR", takeString(language));
    EXPECT_EQ(VC_ERROR_NONE, vc_setting_deinitialize());
}

TEST_F(VcSetting, LanguageBeforeInitializeIsAnInvalidState)
{
    TestDevice dev(R"({"vc_setting": {"language": "ko_KR"}})");
    char* language = nullptr;
    EXPECT_EQ(VC_ERROR_INVALID_STATE, vc_setting_get_language(&language));
    EXPECT_EQ(nullptr, language);
}

TEST_F(VcSetting, SecondInitializeSucceedsWithoutDoingAnything)
{
    TestDevice dev(R"({"vc_setting": {"language": "en_US"}})");
    EXPECT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    dev.apply(R"({"errors": {"vc_setting_initialize": "VC_ERROR_OPERATION_FAILED"}})");
    EXPECT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    char* language = nullptr;
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_get_language(&language));
    EXPECT_EQ("en_US", takeString(language));
}

TEST_F(VcSetting, LanguageMissingFromTheDescriptionIsAnOperationFailure)
{
    TestDevice dev(R"({})");
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    char* language = nullptr;
    EXPECT_EQ(VC_ERROR_OPERATION_FAILED, vc_setting_get_language(&language));
    EXPECT_EQ(nullptr, language);
    EXPECT_EQ(VC_ERROR_INVALID_PARAMETER, vc_setting_get_language(nullptr));
}

TEST_F(VcSetting, ErrorInPlaceOfTheLanguageIsAnswered)
{
    TestDevice dev(R"({"vc_setting": {"language": {"error": "VC_ERROR_ENGINE_NOT_FOUND"}}})");
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    char* language = nullptr;
    EXPECT_EQ(VC_ERROR_ENGINE_NOT_FOUND, vc_setting_get_language(&language));
    EXPECT_EQ(nullptr, language);
}

TEST_F(VcSetting, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(R"({"vc_setting": {"language": "ko_KR"}, "errors": {"vc_setting_initialize": "VC_ERROR_PERMISSION_DENIED"}})");
    EXPECT_EQ(VC_ERROR_PERMISSION_DENIED, vc_setting_initialize());
    char* language = nullptr;
    EXPECT_EQ(VC_ERROR_INVALID_STATE, vc_setting_get_language(&language));
    dev.apply(R"({"errors": {"vc_setting_get_language": "VC_ERROR_IO_ERROR"}})");
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    EXPECT_EQ(VC_ERROR_IO_ERROR, vc_setting_get_language(&language));
    EXPECT_EQ(nullptr, language);
}

TEST_F(VcSetting, MissingDeviceDirectoryIsAnOperationFailure)
{
    TestDevice dev(R"({"vc_setting": {"language": "ko_KR"}})");
    marltest::removeDevice(dev);
    EXPECT_EQ(VC_ERROR_OPERATION_FAILED, vc_setting_initialize());
    char* language = nullptr;
    EXPECT_EQ(VC_ERROR_INVALID_STATE, vc_setting_get_language(&language));
}

TEST_F(VcSetting, DeviceDirectoryGoneAfterInitializeIsAnOperationFailure)
{
    TestDevice dev(R"({"vc_setting": {"language": "ko_KR"}})");
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    marltest::removeDevice(dev);
    char* language = nullptr;
    EXPECT_EQ(VC_ERROR_OPERATION_FAILED, vc_setting_get_language(&language));
    EXPECT_EQ(nullptr, language);
}

TEST_F(VcSetting, MalformedDescriptionIsAnOperationFailure)
{
    TestDevice dev(R"({"vc_setting": {"language": "ko_KR"}})");
    ASSERT_EQ(VC_ERROR_NONE, vc_setting_initialize());
    marltest::breakDescription(dev);
    char* language = nullptr;
    EXPECT_EQ(VC_ERROR_OPERATION_FAILED, vc_setting_get_language(&language));
}
