#include "vappliance/EnvironmentValue.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// The value as a string; "<unset>" for none.
std::string valueOf(vapp::EnvironmentValue& variable)
{
    const char* value = variable.get();
    return value ? value : "<unset>";
}

class EnvironmentValueTest : public ::testing::Test {
protected:
    void TearDown() override
    {
        for (const char* name : {"MARL_ENV_TEST_A", "MARL_ENV_TEST_B", "MARL_ENV_TEST_C"})
            ::unsetenv(name);
    }
};

TEST_F(EnvironmentValueTest, TheMapCountsEveryChangeWhenPreloaded)
{
    const char* preload = std::getenv("LD_PRELOAD");
    const auto* counter =
        static_cast<const unsigned long*>(::dlsym(RTLD_DEFAULT, "vappliance_environment_changes"));
    if (!preload || !std::strstr(preload, "libvappliance-fsmap.so")) {
        EXPECT_EQ(nullptr, counter);
        return;
    }
    ASSERT_NE(nullptr, counter);
    const unsigned long before = *counter;
    ::setenv("MARL_ENV_TEST_A", "one", 1);
    ::unsetenv("MARL_ENV_TEST_A");
    static char entry[] = "MARL_ENV_TEST_B=b";
    ::putenv(entry);
    EXPECT_EQ(before + 3, *counter);
}

TEST_F(EnvironmentValueTest, ReadsWhatGetenvReads)
{
    ::setenv("MARL_ENV_TEST_A", "one", 1);
    vapp::EnvironmentValue a("MARL_ENV_TEST_A");
    vapp::EnvironmentValue prefix("MARL_ENV_TEST");
    EXPECT_EQ("one", valueOf(a));
    EXPECT_EQ("one", valueOf(a));
    EXPECT_EQ("<unset>", valueOf(prefix));
}

TEST_F(EnvironmentValueTest, FollowsANewValueOfTheSameVariable)
{
    vapp::EnvironmentValue a("MARL_ENV_TEST_A");
    ::setenv("MARL_ENV_TEST_A", "one", 1);
    EXPECT_EQ("one", valueOf(a));
    ::setenv("MARL_ENV_TEST_A", "two", 1);
    EXPECT_EQ("two", valueOf(a));
    ::setenv("MARL_ENV_TEST_A", "", 1);
    EXPECT_EQ("", valueOf(a));
}

TEST_F(EnvironmentValueTest, FollowsUnsetAndSetAgain)
{
    vapp::EnvironmentValue a("MARL_ENV_TEST_A");
    ::setenv("MARL_ENV_TEST_A", "one", 1);
    EXPECT_EQ("one", valueOf(a));
    ::unsetenv("MARL_ENV_TEST_A");
    EXPECT_EQ("<unset>", valueOf(a));
    EXPECT_EQ("<unset>", valueOf(a));
    ::setenv("MARL_ENV_TEST_A", "three", 1);
    EXPECT_EQ("three", valueOf(a));
}

TEST_F(EnvironmentValueTest, FollowsTheVariableWhenAnEarlierOneIsRemoved)
{
    ::setenv("MARL_ENV_TEST_B", "b", 1);
    ::setenv("MARL_ENV_TEST_A", "a", 1);
    vapp::EnvironmentValue a("MARL_ENV_TEST_A");
    EXPECT_EQ("a", valueOf(a));
    ::unsetenv("MARL_ENV_TEST_B");
    EXPECT_EQ("a", valueOf(a));
    ::unsetenv("MARL_ENV_TEST_A");
    EXPECT_EQ("<unset>", valueOf(a));
}

TEST_F(EnvironmentValueTest, SeesAVariableSetInThePlaceOfOneRemoved)
{
    // The environment keeps its length: one variable goes, the other comes.
    ::setenv("MARL_ENV_TEST_B", "b", 1);
    vapp::EnvironmentValue a("MARL_ENV_TEST_A");
    EXPECT_EQ("<unset>", valueOf(a));
    ::unsetenv("MARL_ENV_TEST_B");
    ::setenv("MARL_ENV_TEST_A", "a", 1);
    EXPECT_EQ("a", valueOf(a));
}

TEST_F(EnvironmentValueTest, SeesPutenvAndAWholeNewEnvironment)
{
    vapp::EnvironmentValue a("MARL_ENV_TEST_A");
    EXPECT_EQ("<unset>", valueOf(a));
    static char entry[] = "MARL_ENV_TEST_A=put";
    ::putenv(entry);
    EXPECT_EQ("put", valueOf(a));
    // The string given to putenv is the environment's own: changed in place,
    // the variable changes.
    entry[16] = 'c';
    EXPECT_EQ("cut", valueOf(a));
    entry[16] = 'p';

    char first[] = "MARL_ENV_TEST_C=c";
    char second[] = "MARL_ENV_TEST_A=other";
    char* replacement[] = {first, second, nullptr};
    char** saved = environ;
    environ = replacement;
    const std::string seen = valueOf(a);
    environ = saved;
    EXPECT_EQ("other", seen);
    EXPECT_EQ("put", valueOf(a));
    ::unsetenv("MARL_ENV_TEST_A");
}

TEST_F(EnvironmentValueTest, AnEmptyOrMissingEnvironmentHasNoValue)
{
    vapp::EnvironmentValue a("MARL_ENV_TEST_A");
    char* empty[] = {nullptr};
    char** saved = environ;
    environ = empty;
    const std::string inEmpty = valueOf(a);
    environ = nullptr;
    const std::string inNone = valueOf(a);
    environ = saved;
    EXPECT_EQ("<unset>", inEmpty);
    EXPECT_EQ("<unset>", inNone);
}

}  // namespace
