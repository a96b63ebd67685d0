// What `cmake --install` of the engine component puts where, as the package
// installs it.
#include "ElfDynamic.h"
#include "StagedEngine.h"
#include "TestDevice.h"

#include <voice_control_plugin_engine.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace fs = std::filesystem;

TEST(InstalledFiles, AreThePluginItsDescriptionItsDataFolderAndItsLicense)
{
    packaging::Scratch staging;
    ASSERT_FALSE(staging.dir().empty());
    const std::string root = staging.dir() + "/root";
    const std::string error = packaging::installEngine(root);
    ASSERT_TRUE(error.empty()) << error;

    // Folders end in a slash. The data folder's content is the speech
    // library's, whatever it is.
    std::set<std::string> installed;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string path = "/" + fs::relative(entry.path(), root).generic_string();
        if (path.compare(0, packaging::kDataDir.size() + 1, packaging::kDataDir + "/") == 0)
            continue;
        installed.insert(path + (entry.is_directory() && !entry.is_symlink() ? "/" : ""));
    }
    const std::string& vc = packaging::kVoiceDir;
    const std::set<std::string> expected = {
        "/usr/",
        "/usr/share/",
        "/usr/share/license/",
        packaging::kLicense,
        "/usr/share/voice/",
        "/usr/share/voice/vc/",
        vc + "/",
        vc + "/engine/",
        packaging::kPlugin,
        vc + "/engine-info/",
        packaging::kDescription,
        vc + "/engine-data/",
        vc + "/engine-data/marl/",
        vc + "/engine-data/marl/shared/",
        vc + "/engine-data/marl/shared/res/",
        packaging::kDataDir + "/",
    };
    EXPECT_EQ(installed, expected);
    EXPECT_TRUE(fs::is_regular_file(root + packaging::kPlugin));
    EXPECT_GT(fs::file_size(root + packaging::kLicense), 0u);
}

TEST(InstalledFiles, ThePluginKeepsNoSearchPathOfTheBuildMachine)
{
    packaging::Scratch staging;
    const std::string root = staging.dir() + "/root";
    const std::string error = packaging::installEngine(root);
    ASSERT_TRUE(error.empty()) << error;
    packaging::ElfDynamic plugin;
    ASSERT_TRUE(packaging::readElfDynamic(root + packaging::kPlugin, plugin));
    EXPECT_EQ(plugin.runpath, "");
}

TEST(InstalledFiles, ThePluginsFirstLoadCopiesTheInstalledDataFolder)
{
    marltest::TestDevice device;
    const std::string root = device.path("root");
    const std::string error = packaging::installEngine(root);
    ASSERT_TRUE(error.empty()) << error;
    std::ofstream(root + packaging::kDataDir + "/model.bin") << "resource";

    packaging::OpenedPlugin plugin(root + packaging::kPlugin);
    ASSERT_TRUE(plugin.opened()) << plugin.error();
    vcpd_funcs_s daemon{};
    vcpe_funcs_s engine{};
    ASSERT_EQ(plugin.load(daemon, engine), 0);

    std::ifstream copied(root + "/home/owner/share/.voice/vc/engine/shared/data/en_US/model.bin");
    ASSERT_TRUE(copied.good()) << "the load did not copy the installed data folder";
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(copied), {}), "resource");
}
