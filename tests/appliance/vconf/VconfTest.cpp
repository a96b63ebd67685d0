#include <vconf.h>

#include "TestDevice.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

extern "C" int vconfStringTypeInC(void);
extern "C" size_t vconfKeynodeSizeInC(void);
std::size_t vconfKeynodeSizeInCxx14();

namespace {

std::string fileText(const std::string& path)
{
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string takeStr(char* value)
{
    std::string text = value ? value : "(null)";
    std::free(value);
    return text;
}

TEST(Vconf, ConstantsHaveThePlatformValues)
{
    EXPECT_EQ(0, VCONF_OK);
    EXPECT_EQ(-1, VCONF_ERROR);
    EXPECT_EQ(-3, VCONF_ERROR_WRONG_TYPE);
    EXPECT_EQ(-14, VCONF_ERROR_FILE_NO_ENT);
    EXPECT_EQ(40, VCONF_TYPE_STRING);
    EXPECT_EQ(41, VCONF_TYPE_INT);
    EXPECT_EQ(42, VCONF_TYPE_DOUBLE);
    EXPECT_EQ(43, VCONF_TYPE_BOOL);
}

TEST(Vconf, HeaderCompilesAsCAndAsCxx14)
{
    EXPECT_EQ(VCONF_TYPE_STRING, vconfStringTypeInC());
    EXPECT_EQ(sizeof(keynode_t), vconfKeynodeSizeInC());
    EXPECT_EQ(sizeof(keynode_t), vconfKeynodeSizeInCxx14());
}

TEST(Vconf, ValuesFromTheDescriptionAreRead)
{
    marltest::TestDevice dev(R"({"vconf": {"db/setting/region_code": "KR", "db/orvane/ref_room": 5,
                                          "db/t/flag": true, "db/t/ratio": 1.5, "db/t/whole": 2.0}})");
    EXPECT_EQ("KR", takeStr(vconf_get_str("db/setting/region_code")));
    int number = -1;
    EXPECT_EQ(VCONF_OK, vconf_get_int("db/orvane/ref_room", &number));
    EXPECT_EQ(5, number);
    int flag = -1;
    EXPECT_EQ(VCONF_OK, vconf_get_bool("db/t/flag", &flag));
    EXPECT_EQ(1, flag);
    double ratio = 0;
    EXPECT_EQ(VCONF_OK, vconf_get_dbl("db/t/ratio", &ratio));
    EXPECT_DOUBLE_EQ(1.5, ratio);
    // 2.0 in the description stays a double.
    EXPECT_EQ(VCONF_OK, vconf_get_dbl("db/t/whole", &ratio));
    EXPECT_DOUBLE_EQ(2.0, ratio);
}

TEST(Vconf, EveryTypeRoundTrips)
{
    marltest::TestDevice dev;
    EXPECT_EQ(VCONF_OK, vconf_set_str("db/a/s", "line one\nline two"));
    EXPECT_EQ(VCONF_OK, vconf_set_int("db/a/i", -2147483647 - 1));
    EXPECT_EQ(VCONF_OK, vconf_set_bool("db/a/b", 7));
    EXPECT_EQ(VCONF_OK, vconf_set_dbl("db/a/d", 0.1));
    EXPECT_EQ(VCONF_OK, vconf_set_str("db/a/empty", ""));
    EXPECT_EQ("line one\nline two", takeStr(vconf_get_str("db/a/s")));
    EXPECT_EQ("", takeStr(vconf_get_str("db/a/empty")));
    int i = 0, b = 0;
    double d = 0;
    EXPECT_EQ(VCONF_OK, vconf_get_int("db/a/i", &i));
    EXPECT_EQ(-2147483647 - 1, i);
    EXPECT_EQ(VCONF_OK, vconf_get_bool("db/a/b", &b));
    EXPECT_EQ(1, b);
    EXPECT_EQ(VCONF_OK, vconf_get_dbl("db/a/d", &d));
    EXPECT_EQ(0.1, d);
    EXPECT_EQ(VCONF_OK, vconf_get_ext_errno());
}

TEST(Vconf, AWriteReplacesTheValueAndItsType)
{
    marltest::TestDevice dev(R"({"vconf": {"db/k": "text"}})");
    EXPECT_EQ(VCONF_OK, vconf_set_int("db/k", 3));
    int value = 0;
    EXPECT_EQ(VCONF_OK, vconf_get_int("db/k", &value));
    EXPECT_EQ(3, value);
    EXPECT_EQ(nullptr, vconf_get_str("db/k"));
}

TEST(Vconf, KeyFileHoldsTheTypeWordAndTheValue)
{
    marltest::TestDevice dev;
    ASSERT_EQ(VCONF_OK, vconf_set_int("db/orvane/setting/lang", 12));
    EXPECT_EQ("int\n12", fileText(dev.path("vconf/db/orvane/setting/lang")));
    ASSERT_EQ(VCONF_OK, vconf_set_bool("db/b", 0));
    EXPECT_EQ("bool\n0", fileText(dev.path("vconf/db/b")));
    // A file written by hand with a final newline reads as well.
    std::ofstream(dev.path("vconf/db/hand")) << "int\n41\n";
    int value = 0;
    EXPECT_EQ(VCONF_OK, vconf_get_int("db/hand", &value));
    EXPECT_EQ(41, value);
}

TEST(Vconf, GetStrAnswersACopyOwnedByTheCaller)
{
    marltest::TestDevice dev(R"({"vconf": {"db/s": "abc"}})");
    char* first = vconf_get_str("db/s");
    ASSERT_NE(nullptr, first);
    first[0] = 'X';
    EXPECT_EQ("abc", takeStr(vconf_get_str("db/s")));
    std::free(first);
}

TEST(Vconf, ReadOfTheWrongTypeFailsAndLeavesTheOutputAlone)
{
    marltest::TestDevice dev(R"({"vconf": {"db/s": "5", "db/i": 5}})");
    int value = 99;
    EXPECT_EQ(VCONF_ERROR, vconf_get_int("db/s", &value));
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
    EXPECT_EQ(99, value);
    EXPECT_EQ(VCONF_ERROR, vconf_get_bool("db/i", &value));
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
    double d = 9;
    EXPECT_EQ(VCONF_ERROR, vconf_get_dbl("db/i", &d));
    EXPECT_EQ(9, d);
    EXPECT_EQ(nullptr, vconf_get_str("db/i"));
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
}

TEST(Vconf, UnknownKeyFails)
{
    marltest::TestDevice dev;
    int value = 99;
    EXPECT_EQ(VCONF_ERROR, vconf_get_int("db/none", &value));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
    EXPECT_EQ(99, value);
    EXPECT_EQ(nullptr, vconf_get_str("db/none"));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
}

TEST(Vconf, BadKeysAndArgumentsAreRefused)
{
    marltest::TestDevice dev;
    int value = 0;
    for (const char* key : {"", "/db/abs", "db/../x", "db//x", "db/x/"}) {
        EXPECT_EQ(VCONF_ERROR, vconf_set_int(key, 1)) << key;
        EXPECT_EQ(VCONF_ERROR_WRONG_PREFIX, vconf_get_ext_errno()) << key;
        EXPECT_EQ(VCONF_ERROR, vconf_get_int(key, &value)) << key;
    }
    EXPECT_EQ(VCONF_ERROR, vconf_set_int(nullptr, 1));
    EXPECT_EQ(nullptr, vconf_get_str(nullptr));
    EXPECT_EQ(VCONF_ERROR, vconf_get_int("db/x", nullptr));
    EXPECT_EQ(VCONF_ERROR, vconf_set_str("db/x", nullptr));
    EXPECT_EQ(VCONF_ERROR_WRONG_VALUE, vconf_get_ext_errno());
    EXPECT_NE(0, ::access(dev.path("vconf/db/x").c_str(), F_OK));
}

TEST(Vconf, UnsetRemovesTheKey)
{
    marltest::TestDevice dev(R"({"vconf": {"db/gone": 1}})");
    EXPECT_EQ(VCONF_OK, vconf_unset("db/gone"));
    int value = 0;
    EXPECT_EQ(VCONF_ERROR, vconf_get_int("db/gone", &value));
    EXPECT_EQ(VCONF_ERROR, vconf_unset("db/gone"));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
}

TEST(Vconf, WritesAreJournaled)
{
    marltest::TestDevice dev;
    const size_t before = vapp::readJournal().size();
    vconf_set_str("db/j", "v");
    vconf_unset("db/j");
    const auto entries = vapp::readJournal(before);
    ASSERT_EQ(2u, entries.size());
    EXPECT_EQ("vconf_set", entries[0]["event"].asString());
    EXPECT_EQ("db/j", entries[0]["key"].asString());
    EXPECT_EQ("v", entries[0]["value"].asString());
    EXPECT_EQ("vconf_unset", entries[1]["event"].asString());
}

TEST(Vconf, InjectedErrorIsReturnedAsIs)
{
    marltest::TestDevice dev(R"({"vconf": {"db/i": 1, "db/s": "x"},
                                 "errors": {"vconf_get_int": "VCONF_ERROR_FILE_BUSY",
                                            "vconf_set_int": -21,
                                            "vconf_get_str": "VCONF_ERROR_FILE_PERM",
                                            "vconf_unset": "VCONF_ERROR_FILE_REMOVE"}})");
    int value = 7;
    EXPECT_EQ(VCONF_ERROR_FILE_BUSY, vconf_get_int("db/i", &value));
    EXPECT_EQ(7, value);
    EXPECT_EQ(VCONF_ERROR_FILE_OPEN, vconf_set_int("db/i", 2));
    EXPECT_EQ(nullptr, vconf_get_str("db/s"));
    EXPECT_EQ(VCONF_ERROR_FILE_PERM, vconf_get_ext_errno());
    EXPECT_EQ(VCONF_ERROR_FILE_REMOVE, vconf_unset("db/i"));
    // Functions without an injection still work, and nothing was changed.
    int flag = 0;
    EXPECT_EQ(VCONF_OK, vconf_set_bool("db/b", 1));
    EXPECT_EQ(VCONF_OK, vconf_get_bool("db/b", &flag));
    dev.apply(R"({"errors": {}})");
    EXPECT_EQ(VCONF_OK, vconf_get_int("db/i", &value));
    EXPECT_EQ(1, value);
}

TEST(Vconf, MissingDeviceDirectoryFailsReadsAndWritesWithoutMakingIt)
{
    std::string missing;
    {
        marltest::TestDevice dev(R"({"vconf": {"db/i": 1}})");
        missing = dev.dir();
    }
    ::setenv("MARL_DEVICE_DIR", missing.c_str(), 1);
    int value = 0;
    EXPECT_EQ(VCONF_ERROR, vconf_get_int("db/i", &value));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
    EXPECT_EQ(VCONF_ERROR, vconf_set_int("db/i", 2));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
    EXPECT_EQ(nullptr, vconf_get_str("db/s"));
    EXPECT_NE(0, ::access(missing.c_str(), F_OK));
}

TEST(Vconf, MalformedDescriptionLeavesTheKeyStoreWorking)
{
    marltest::TestDevice dev(R"({"vconf": {"db/i": 4}})");
    std::ofstream(dev.path("device.json")) << "[1,";
    int value = 0;
    EXPECT_EQ(VCONF_OK, vconf_get_int("db/i", &value));
    EXPECT_EQ(4, value);
    EXPECT_EQ(VCONF_OK, vconf_set_int("db/i", 5));
}

TEST(Vconf, UnreadableKeyFileFailsWithAReadError)
{
    marltest::TestDevice dev;
    vapp::makeDirs(dev.path("vconf/db"));
    std::ofstream(dev.path("vconf/db/broken")) << "int\nnot a number";
    int value = 0;
    EXPECT_EQ(VCONF_ERROR, vconf_get_int("db/broken", &value));
    EXPECT_EQ(VCONF_ERROR_FILE_FREAD, vconf_get_ext_errno());
}

}  // namespace
