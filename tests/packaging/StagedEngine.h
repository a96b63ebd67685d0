// The engine component of this build installed as its package installs it
// (DESTDIR under the prefix /usr), and the installed plug-in opened as the
// daemon opens it.
#pragma once

#include <voice_control_plugin_engine.h>

#include <dlfcn.h>
#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace packaging {

// Where the package puts its files on the appliance.
inline const std::string kVoiceDir = "/usr/share/voice/vc/1.0";
inline const std::string kPlugin = kVoiceDir + "/engine/libvc-engine-marl.so";
inline const std::string kDescription = kVoiceDir + "/engine-info/vc-engine-marl.xml";
inline const std::string kDataDir = kVoiceDir + "/engine-data/marl/shared/res/en_US";
inline const std::string kLicense = "/usr/share/license/vc-engine-marl";

inline std::string quoted(const std::string& text)
{
    std::string out = "'";
    for (char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

// A folder of its own under the tests' scratch folder, removed at the end.
class Scratch {
public:
    Scratch()
    {
        const char* tmp = std::getenv("MARL_TEST_TMP");
        std::filesystem::path base = tmp && *tmp ? tmp : std::filesystem::temp_directory_path();
        std::filesystem::create_directories(base);
        std::string pattern = (base / "staging-XXXXXX").string();
        mDir = ::mkdtemp(pattern.data()) ? pattern : std::string();
    }
    ~Scratch()
    {
        std::error_code ec;
        if (!mDir.empty())
            std::filesystem::remove_all(mDir, ec);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    const std::string& dir() const { return mDir; }

private:
    std::string mDir;
};

// `cmake --install` of the engine component into `destdir`; empty on
// success, else what went wrong. The file-system map is not preloaded into
// cmake: its paths are the host's.
inline std::string installEngine(const std::string& destdir)
{
    const char* build = std::getenv("MARL_BUILD_DIR");
    if (!build)
        return "MARL_BUILD_DIR is not set";
    const std::string log = destdir + ".install.log";
    const std::string command = "env -u LD_PRELOAD DESTDIR=" + quoted(destdir) + " " + quoted(MARL_CMAKE_COMMAND) +
                                " --install " + quoted(build) + " --component engine --prefix /usr > " +
                                quoted(log) + " 2>&1";
    const int status = std::system(command.c_str());
    std::ifstream in(log);
    std::stringstream text;
    text << in.rdbuf();
    std::filesystem::remove(log);
    return status == 0 ? std::string() : command + " failed:\n" + text.str();
}

// The installed plug-in, opened with dlopen as the daemon opens it.
class OpenedPlugin {
public:
    explicit OpenedPlugin(const std::string& path) : mHandle(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
    {
        if (!mHandle)
            mError = ::dlerror();
    }
    ~OpenedPlugin()
    {
        if (mHandle)
            ::dlclose(mHandle);
    }
    OpenedPlugin(const OpenedPlugin&) = delete;
    OpenedPlugin& operator=(const OpenedPlugin&) = delete;

    bool opened() const { return mHandle != nullptr; }
    const std::string& error() const { return mError; }
    // vcp_load_engine's result; -1 without the plug-in or its entry point.
    int load(vcpd_funcs_s& daemon, vcpe_funcs_s& engine) const
    {
        const auto entry = symbol<int (*)(vcpd_funcs_s*, vcpe_funcs_s*)>("vcp_load_engine");
        return entry ? entry(&daemon, &engine) : -1;
    }
    template <typename Function>
    Function symbol(const char* name) const
    {
        return mHandle ? reinterpret_cast<Function>(::dlsym(mHandle, name)) : nullptr;
    }

private:
    void* mHandle;
    std::string mError;
};

}  // namespace packaging
