#include "ElfDynamic.h"
#include "PlatformLibraries.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <set>
#include <string>

namespace {

std::string buildLib(const std::string& file)
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    return std::string(build ? build : ".") + "/lib/" + file;
}

// "libjsoncpp.so.25" is the open library "libjsoncpp.so" at a version.
bool isOpenLibrary(const std::string& soname)
{
    for (const char* stem : packaging::kOpenLibraries) {
        const std::string prefix = std::string(stem) + ".";
        if (soname.compare(0, prefix.size(), prefix) == 0 && soname.size() > prefix.size() &&
            std::isdigit(static_cast<unsigned char>(soname[prefix.size()])))
            return true;
    }
    return false;
}

}  // namespace

TEST(PlatformLibraryNames, ThePluginNeedsEachPlatformAndClosedLibraryByItsName)
{
    packaging::ElfDynamic plugin;
    ASSERT_TRUE(packaging::readElfDynamic(buildLib("libvc-engine-marl.so"), plugin));
    const std::set<std::string> needed(plugin.needed.begin(), plugin.needed.end());
    for (const auto& library : packaging::kPlatformLibraries)
        EXPECT_EQ(needed.count(library.soname), 1u) << library.soname << " (" << library.source << ")";
    for (const auto& library : packaging::kClosedLibraries)
        EXPECT_EQ(needed.count(library.soname), 1u) << library.soname;
}

TEST(PlatformLibraryNames, EveryNeededEntryIsAPlatformClosedOrOpenLibrary)
{
    packaging::ElfDynamic plugin;
    ASSERT_TRUE(packaging::readElfDynamic(buildLib("libvc-engine-marl.so"), plugin));
    std::set<std::string> named;
    for (const auto& library : packaging::kPlatformLibraries)
        named.insert(library.soname);
    for (const auto& library : packaging::kClosedLibraries)
        named.insert(library.soname);
    ASSERT_FALSE(plugin.needed.empty());
    for (const std::string& soname : plugin.needed)
        EXPECT_TRUE(named.count(soname) || isOpenLibrary(soname))
            << soname << " is none of the platform's, closed or open libraries";
}

TEST(PlatformLibraryNames, TheStandInsAreBuiltUnderThePlatformsFileNamesAndSonames)
{
    auto check = [](const packaging::NamedLibrary& library) {
        packaging::ElfDynamic standIn;
        ASSERT_TRUE(packaging::readElfDynamic(buildLib(library.file), standIn))
            << "no shared object " << library.file << " in the build (" << library.source << ")";
        EXPECT_EQ(standIn.soname, library.soname) << library.file;
    };
    for (const auto& library : packaging::kPlatformLibraries)
        check(library);
    for (const auto& library : packaging::kClosedLibraries)
        check(library);
}
