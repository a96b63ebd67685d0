#include "FuzzSupport.h"

#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "vappliance/Device.h"

#include <Ecore.h>
#include <json/json.h>
#include <voice_control_plugin_engine.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace marlfuzz {

namespace {

std::string gDeviceDir;

void removeDevice()
{
    std::error_code ec;
    if (!gDeviceDir.empty() && !std::getenv("MARL_KEEP_TEST_DEVICES"))
        std::filesystem::remove_all(gDeviceDir, ec);
}

void die(const std::string& message)
{
    std::fprintf(stderr, "fuzz set-up: %s\n", message.c_str());
    std::abort();
}

int foreachCommand(int, vcpd_foreach_command_cb callback, void* userData)
{
    for (const auto& c : commands()) {
        if (!callback(c.id, c.type, c.format, c.nullText ? nullptr : c.text.c_str(), c.param.c_str(), c.domain,
                      userData))
            break;
    }
    return 0;
}

int commandCount(int)
{
    return static_cast<int>(commands().size());
}

int audioType(char**)
{
    return 0;
}

void onResult(vcp_result_event_e, int*, int, const char*, const char*, const char*, const char*, void*) {}
void onAsr(vcp_asr_result_event_e, const char*, void*) {}
void onError(vcp_error_e, const char*, void*) {}

}  // namespace

void makeDevice(const std::string& description)
{
    const char* tmp = std::getenv("MARL_FUZZ_TMP");
    std::filesystem::path base = tmp && *tmp ? tmp : std::filesystem::temp_directory_path();
    std::error_code ec;
    std::filesystem::create_directories(base, ec);
    std::string pattern = (base / "fuzz-device-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        die("cannot make a device directory under " + base.string());
    gDeviceDir = pattern;
    std::atexit(removeDevice);
    ::setenv("MARL_DEVICE_DIR", gDeviceDir.c_str(), 1);
    // Every line is still formatted and written, and none is kept: a long run
    // logs gigabytes.
    const char* keepLog = std::getenv("MARL_FUZZ_KEEP_LOG");
    if (!(keepLog && std::strcmp(keepLog, "1") == 0)) {
        std::filesystem::create_directories(gDeviceDir + "/log", ec);
        std::filesystem::create_symlink("/dev/null", gDeviceDir + "/log/dlog.log", ec);
        if (ec)
            die("cannot send the device's log to /dev/null: " + ec.message());
    }
    Json::Value json;
    Json::CharReaderBuilder builder;
    std::string errors;
    std::istringstream in(description);
    if (!Json::parseFromStream(builder, in, &json, &errors))
        die("the device description is not JSON: " + errors);
    std::string error;
    if (!vapp::applyDescription(json, gDeviceDir, &error))
        die("the device description does not apply: " + error);
}

const std::string& deviceDir()
{
    return gDeviceDir;
}

std::vector<Command>& commands()
{
    static std::vector<Command>* list = new std::vector<Command>();  // kept to the end of the process
    return *list;
}

MarlEngineWrapper* loadEngine()
{
    if (!std::getenv("LD_PRELOAD"))
        die("run with LD_PRELOAD naming the file-system map (libvappliance-fsmap.so)");
    // Ecore's system modules talk to a system bus that a host build has not
    // got, and keep the error texts of those attempts.
    ::setenv("ECORE_NO_SYSTEM_MODULES", "1", 0);
    ecore_init();
    static vcpd_funcs_s daemon{};
    static vcpe_funcs_s engine{};
    daemon.foreach_command = foreachCommand;
    daemon.get_command_count = commandCount;
    daemon.get_audio_type = audioType;
    if (vcp_load_engine(&daemon, &engine) != 0 || MarlEngine_initialize() != 0)
        die("the engine does not load");
    MarlEngine_set_result_cb(onResult, nullptr);
    MarlEngine_set_asr_result_cb(onAsr, nullptr);
    MarlEngine_set_error_cb(onError, nullptr);
    MarlEngine_set_language("en_US");
    return marlEngineWrapper;
}

MarlEngineWrapper* loadEngineOnTheFuzzDevice()
{
    std::ifstream in(MARL_FUZZ_DEVICE);
    std::stringstream text;
    text << in.rdbuf();
    makeDevice(text.str());
    return loadEngine();
}

void runEmptyInput(int (*testOneInput)(const uint8_t*, size_t))
{
    static const uint8_t kNothing = 0;
    testOneInput(&kNothing, 0);
}

void pumpMainLoop(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        ecore_main_loop_iterate();
}

std::vector<std::string> pieces(const uint8_t* data, size_t size, size_t count)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> out;
    size_t start = 0;
    while (out.size() + 1 < count) {
        const size_t cut = text.find("\n--\n", start);
        if (cut == std::string::npos)
            break;
        out.push_back(text.substr(start, cut - start));
        start = cut + 4;
    }
    out.push_back(text.substr(start));
    out.resize(count);
    return out;
}

std::vector<std::string> splitOn(const std::string& text, char separator)
{
    std::vector<std::string> out;
    std::string::size_type start = 0;
    for (;;) {
        const auto cut = text.find(separator, start);
        out.push_back(text.substr(start, cut == std::string::npos ? std::string::npos : cut - start));
        if (cut == std::string::npos)
            return out;
        start = cut + 1;
    }
}

void writeApplianceFile(const std::string& appliancePath, const std::string& text)
{
    const std::string host = vapp::hostPath(appliancePath);
    std::ofstream out(host, std::ios::binary | std::ios::trunc);
    if (!out) {
        vapp::makeDirs(std::filesystem::path(host).parent_path().string());
        out.open(host, std::ios::binary | std::ios::trunc);
    }
    out << text;
}

}  // namespace marlfuzz
