// The key store under DIR/vconf, as the core reads and writes it.
#include "TestDevice.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string fileText(const std::string& path)
{
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

vapp::VconfValue intValue(int i)
{
    vapp::VconfValue value;
    value.type = vapp::VconfValue::Int;
    value.i = i;
    return value;
}

TEST(KeyStore, OneFilePerKeyWithTheTypeWordFirst)
{
    marltest::TestDevice dev;
    ASSERT_TRUE(vapp::vconfWrite("db/setting/region_code", [] {
        vapp::VconfValue value;
        value.s = "KR";
        return value;
    }()));
    EXPECT_EQ("string\nKR", fileText(dev.path("vconf/db/setting/region_code")));
    ASSERT_TRUE(vapp::vconfWrite("db/i", intValue(7)));
    EXPECT_EQ("int\n7", fileText(dev.path("vconf/db/i")));
    EXPECT_EQ(dev.path("vconf/db/i"), vapp::vconfKeyFile("db/i"));
}

TEST(KeyStore, DoublesRoundTripExactly)
{
    marltest::TestDevice dev;
    vapp::VconfValue value;
    value.type = vapp::VconfValue::Double;
    value.d = 0.1 + 0.2;
    ASSERT_TRUE(vapp::vconfWrite("db/d", value));
    vapp::VconfValue read;
    ASSERT_TRUE(vapp::vconfRead("db/d", read));
    EXPECT_EQ(value.d, read.d);
}

TEST(KeyStore, MalformedFilesAreNotRead)
{
    marltest::TestDevice dev;
    vapp::makeDirs(dev.path("vconf/db"));
    vapp::VconfValue value;
    for (const char* text : {"int", "int\n", "int\n12abc", "int\n99999999999", "bool\n2",
                             "double\nx", "float\n1.0", ""}) {
        std::ofstream(dev.path("vconf/db/bad")) << text;
        EXPECT_FALSE(vapp::vconfRead("db/bad", value)) << text;
    }
    // A final newline after a number or flag is fine; in a string it is kept.
    std::ofstream(dev.path("vconf/db/ok")) << "bool\n1\n";
    ASSERT_TRUE(vapp::vconfRead("db/ok", value));
    EXPECT_TRUE(value.b);
    std::ofstream(dev.path("vconf/db/ok")) << "string\nline\n";
    ASSERT_TRUE(vapp::vconfRead("db/ok", value));
    EXPECT_EQ("line\n", value.s);
}

TEST(KeyStore, BadKeysAreRefused)
{
    marltest::TestDevice dev;
    vapp::VconfValue value;
    for (const char* key : {"", "/db/a", "db/../a", "db//a", "db/a/", ".."}) {
        EXPECT_FALSE(vapp::vconfWrite(key, intValue(1))) << key;
        EXPECT_FALSE(vapp::vconfRead(key, value)) << key;
        EXPECT_FALSE(vapp::vconfUnset(key)) << key;
    }
}

TEST(KeyStore, UnsetRemovesTheFile)
{
    marltest::TestDevice dev(R"({"vconf": {"db/k": 1}})");
    EXPECT_TRUE(vapp::vconfUnset("db/k"));
    EXPECT_FALSE(vapp::vconfUnset("db/k"));
    vapp::VconfValue value;
    EXPECT_FALSE(vapp::vconfRead("db/k", value));
}

TEST(KeyStore, JsonConversionKeepsTypes)
{
    vapp::VconfValue value;
    ASSERT_TRUE(vapp::vconfFromJson(Json::Value(true), value));
    EXPECT_EQ(vapp::VconfValue::Bool, value.type);
    ASSERT_TRUE(vapp::vconfFromJson(Json::Value(5), value));
    EXPECT_EQ(vapp::VconfValue::Int, value.type);
    ASSERT_TRUE(vapp::vconfFromJson(Json::Value(5.0), value));
    EXPECT_EQ(vapp::VconfValue::Double, value.type);
    ASSERT_TRUE(vapp::vconfFromJson(Json::Value("x"), value));
    EXPECT_EQ(vapp::VconfValue::String, value.type);
    EXPECT_FALSE(vapp::vconfFromJson(Json::Value(Json::UInt64(1) << 40), value));
    EXPECT_FALSE(vapp::vconfFromJson(Json::Value(Json::objectValue), value));
    EXPECT_EQ(Json::Value(5), vapp::vconfToJson(intValue(5)));
}

}  // namespace
