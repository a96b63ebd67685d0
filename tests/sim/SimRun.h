// Runs marl-sim as a user would and collects what it printed.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace simtest
{

namespace fs = std::filesystem;

struct SimResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

inline std::string quoteArg(const std::string& arg)
{
    std::string quoted = "'";
    for (char c : arg)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

inline std::string readText(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

inline void writeText(const fs::path& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary);
    out << text;
}

// A scratch folder for one test, under the build's test folder; removed at
// the end unless MARL_KEEP_TEST_DEVICES is set.
class Scratch
{
public:
    Scratch()
    {
        const char* tmp = std::getenv("MARL_TEST_TMP");
        const fs::path base = tmp && *tmp ? fs::path(tmp) : fs::temp_directory_path();
        fs::create_directories(base);
        std::string pattern = (base / "sim-XXXXXX").string();
        mDir = ::mkdtemp(pattern.data()) ? pattern : std::string();
    }
    ~Scratch()
    {
        std::error_code ec;
        if (!mDir.empty() && !std::getenv("MARL_KEEP_TEST_DEVICES"))
            fs::remove_all(mDir, ec);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    fs::path path(const std::string& name) const { return fs::path(mDir) / name; }
    const std::string& dir() const { return mDir; }

private:
    std::string mDir;
};

// Runs marl-sim with `args`, the environment of the test plus `env`
// ("NAME=value" each; a bare "NAME" takes NAME away), from a scratch folder.
inline SimResult runSim(const Scratch& scratch, const std::vector<std::string>& args,
                        const std::vector<std::string>& env = {})
{
    std::string command = "env -u MARL_DEVICE_DIR -u MARL_PLUGIN";
    for (const auto& e : env)
        if (e.find('=') == std::string::npos)
            command += " -u " + quoteArg(e);
    for (const auto& e : env)
        if (e.find('=') != std::string::npos)
            command += " " + quoteArg(e);
    command += " " + quoteArg(MARL_SIM);
    for (const auto& a : args)
        command += " " + quoteArg(a);
    const fs::path out = scratch.path("stdout.txt");
    const fs::path err = scratch.path("stderr.txt");
    command += " >" + quoteArg(out.string()) + " 2>" + quoteArg(err.string()) + " </dev/null";
    const int status = std::system(command.c_str());
    SimResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = readText(out);
    result.err = readText(err);
    return result;
}

}  // namespace simtest
