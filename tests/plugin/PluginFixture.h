// A loaded engine on a fresh virtual appliance, driven through its entry points
// as the daemon drives it, with the daemon's callbacks recorded.
#pragma once

#include "TestDevice.h"

#include <voice_control_plugin_engine.h>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

class DADeviceDataAutoRefresher;
class MarlEngineWrapper;
class OrvaneCloudParserHandle;

namespace marltest {

struct ResultCall {
    int event;
    std::vector<int> ids;
    int count;
    bool allNull;
    std::string all;
    bool nonFixedNull;
    bool nluNull;
    std::string nlu;
    std::string message;
    void* userData;
};

struct AsrCall {
    int event;
    std::string text;
};

struct ErrorCall {
    int code;
    std::string message;
};

struct Command {
    int id;
    int type;
    int format;
    std::string command;  // "<null>" for a null text
};

// What the daemon saw, and the commands it hands out.
struct Daemon {
    std::vector<ResultCall> results;
    std::vector<AsrCall> asr;
    std::vector<ErrorCall> errors;
    std::vector<Command> commands;
    int announcedCount = -1;  // -1: the number of commands
    vcpd_funcs_s table{};
    vcpe_funcs_s engine{};
    std::mutex mutex;

    void clear();
};

Daemon& daemon();

// Observations of the speech library stand-in, as JSON texts.
std::vector<std::string> observations();
void clearObservations();
bool observed(const std::string& what);

// The platform log of the current device.
std::string platformLog();
bool logged(const std::string& text);

// The 16-bit samples of a WAV file's data chunk; none when there is none.
std::vector<short> wavSamples(const std::string& path);

// Runs the Ecore main loop until `done` holds or `timeoutMs` passes.
bool runLoopUntil(const std::function<bool()>& done, int timeoutMs);

// Loads the engine through vcp_load_engine and initializes it, with the three
// callbacks set; the command list is given with setCommands().
class EngineTest : public ::testing::Test {
protected:
    explicit EngineTest(const std::string& description = "{}");
    void SetUp() override;
    void TearDown() override;

    MarlEngineWrapper* wrapper();
    int setCommands(const std::vector<Command>& commands, int announced = -1);

    TestDevice device;
    std::string mDescription;
};

}  // namespace marltest

// Reaches the private operations that the tests pin.
class PluginTestAccess {
public:
    static std::string targetServerAddress(MarlEngineWrapper* wrapper, int index);
    static void createParser(OrvaneCloudParserHandle* handle);
    // The refresher's last good read, and moving it to `ago` before now.
    static std::chrono::system_clock::time_point lastUpdate(DADeviceDataAutoRefresher* refresher);
    static void setLastUpdateAgo(DADeviceDataAutoRefresher* refresher, std::chrono::milliseconds ago);
};
