// marl-device: makes and changes device directories of the virtual appliance.
//
//   marl-device init DIR [DESCRIPTION.json]     a fresh device, optionally described
//   marl-device apply DESCRIPTION.json [--device DIR]
//   marl-device path APPLIANCE_PATH [--device DIR]   where an appliance path lives
//   marl-device export DIR                       the description of a device, on stdout
#include "vappliance/Device.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

int usage()
{
    std::fprintf(stderr,
                 "usage: marl-device init DIR [DESCRIPTION.json]\n"
                 "       marl-device apply DESCRIPTION.json [--device DIR]\n"
                 "       marl-device path APPLIANCE_PATH [--device DIR]\n"
                 "       marl-device export DIR\n");
    return 2;
}

int fail(const std::string& message)
{
    std::fprintf(stderr, "marl-device: %s\n", message.c_str());
    return 1;
}

bool readDescription(const std::string& file, Json::Value& description, std::string& error)
{
    std::string text;
    if (!vapp::readFile(file, text)) {
        error = "cannot read " + file;
        return false;
    }
    Json::CharReaderBuilder builder;
    std::string errs;
    std::istringstream in(text);
    if (!Json::parseFromStream(builder, in, &description, &errs)) {
        error = file + " is not valid JSON: " + errs;
        return false;
    }
    return true;
}

int apply(const std::string& file)
{
    Json::Value description;
    std::string error;
    if (!readDescription(file, description, error))
        return fail(error);
    const std::string base = fs::absolute(file).parent_path().string();
    if (!vapp::applyDescription(description, base, &error))
        return fail(file + ": " + error);
    return 0;
}

int exportDevice(const fs::path& dir)
{
    std::error_code ec;
    if (!fs::is_regular_file(dir / "device.json", ec))
        return fail(dir.string() + " is no device directory (it has no device.json)");
    ::setenv("MARL_DEVICE_DIR", fs::absolute(dir).c_str(), 1);
    Json::Value description;
    std::string error;
    if (!vapp::exportDescription(description, &error))
        return fail(dir.string() + ": " + error);
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    builder["emitUTF8"] = true;
    const std::string text = Json::writeString(builder, description) + "\n";
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        return fail("cannot write the description");
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    for (size_t i = 0; i + 1 < args.size(); ++i) {
        if (args[i] == "--device") {
            ::setenv("MARL_DEVICE_DIR", args[i + 1].c_str(), 1);
            args.erase(args.begin() + i, args.begin() + i + 2);
            break;
        }
    }
    if (args.empty())
        return usage();

    if (args[0] == "init" && (args.size() == 2 || args.size() == 3)) {
        const fs::path dir = args[1];
        std::error_code ec;
        if (fs::exists(dir, ec)) {
            if (!fs::is_directory(dir, ec))
                return fail(dir.string() + " exists and is not a directory");
            if (!fs::is_empty(dir, ec) && !fs::exists(dir / "device.json", ec))
                return fail(dir.string() + " is not empty and is no device directory; not touching it");
            for (const auto& entry : fs::directory_iterator(dir, ec))
                fs::remove_all(entry.path(), ec);
        }
        ::setenv("MARL_DEVICE_DIR", fs::absolute(dir).c_str(), 1);
        std::string error;
        if (!vapp::applyDescription(Json::Value(Json::objectValue), ".", &error))
            return fail(error);
        return args.size() == 3 ? apply(args[2]) : 0;
    }
    if (args[0] == "apply" && args.size() == 2)
        return apply(args[1]);
    if (args[0] == "export" && args.size() == 2)
        return exportDevice(args[1]);
    if (args[0] == "path" && args.size() == 2) {
        std::printf("%s\n", vapp::hostPath(args[1]).c_str());
        return 0;
    }
    return usage();
}
