#include "DeviceFaults.h"

#include <nfc.h>

using marltest::TestDevice;

TEST(Nfc, ActivationComesFromTheDescription)
{
    TestDevice dev(R"({"nfc": {"activated": true}})");
    set_last_result(NFC_ERROR_OPERATION_FAILED);
    EXPECT_TRUE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_NONE, get_last_result());
    dev.apply(R"({"nfc": {"activated": false}})");
    EXPECT_FALSE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_NONE, get_last_result());
}

TEST(Nfc, ApplianceWithoutNfcAnswersFalseAndNotSupported)
{
    TestDevice dev(R"({})");
    EXPECT_FALSE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_NOT_SUPPORTED, get_last_result());
}

TEST(Nfc, ErrorInPlaceOfTheActivationAnswersFalseWithThatCode)
{
    TestDevice dev(R"({"nfc": {"activated": {"error": "NFC_ERROR_PERMISSION_DENIED"}}})");
    EXPECT_FALSE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_PERMISSION_DENIED, get_last_result());
}

TEST(Nfc, InjectedErrorAnswersFalseWithThatCode)
{
    TestDevice dev(R"({"nfc": {"activated": true}, "errors": {"nfc_manager_is_activated": "NFC_ERROR_DEVICE_BUSY"}})");
    EXPECT_FALSE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_DEVICE_BUSY, get_last_result());
}

TEST(Nfc, MissingDeviceDirectoryAnswersFalseAndOperationFailed)
{
    TestDevice dev(R"({"nfc": {"activated": true}})");
    marltest::removeDevice(dev);
    EXPECT_FALSE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_OPERATION_FAILED, get_last_result());
}

TEST(Nfc, MalformedDescriptionAnswersFalseAndOperationFailed)
{
    TestDevice dev(R"({"nfc": {"activated": true}})");
    marltest::breakDescription(dev);
    EXPECT_FALSE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_OPERATION_FAILED, get_last_result());
}

TEST(Nfc, ActivationOfTheWrongTypeAnswersFalseAndOperationFailed)
{
    TestDevice dev(R"({"nfc": {"activated": "yes"}})");
    EXPECT_FALSE(nfc_manager_is_activated());
    EXPECT_EQ(NFC_ERROR_OPERATION_FAILED, get_last_result());
}
