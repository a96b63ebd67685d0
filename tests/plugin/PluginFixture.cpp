#include "PluginFixture.h"

#include "ParserManager/OrvaneCloudParserHandle.h"
#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <Ecore.h>
#include <standin/SpeechStandIn.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

namespace marltest {

namespace {

std::mutex gObservationMutex;
std::vector<std::string> gObservations;

void observe(const char* json, void*)
{
    std::lock_guard<std::mutex> lock(gObservationMutex);
    gObservations.push_back(json ? json : "");
}

void onResult(vcp_result_event_e event, int* ids, int count, const char* all, const char* nonFixed,
              const char* nlu, const char* message, void* userData)
{
    Daemon& d = daemon();
    std::lock_guard<std::mutex> lock(d.mutex);
    ResultCall call{event, {}, count, all == nullptr, all ? all : "", nonFixed == nullptr,
                    nlu == nullptr, nlu ? nlu : "", message ? message : "", userData};
    for (int i = 0; i < count && ids; ++i)
        call.ids.push_back(ids[i]);
    d.results.push_back(call);
}

void onAsr(vcp_asr_result_event_e event, const char* text, void*)
{
    Daemon& d = daemon();
    std::lock_guard<std::mutex> lock(d.mutex);
    d.asr.push_back({event, text ? text : ""});
}

void onError(vcp_error_e code, const char* message, void*)
{
    Daemon& d = daemon();
    std::lock_guard<std::mutex> lock(d.mutex);
    d.errors.push_back({code, message ? message : ""});
}

int foreachCommand(int, vcpd_foreach_command_cb callback, void* userData)
{
    for (const auto& c : daemon().commands) {
        const char* text = c.command == "<null>" ? nullptr : c.command.c_str();
        if (!callback(c.id, c.type, c.format, text, "param", 0, userData))
            break;
    }
    return 0;
}

int commandCountOf(int)
{
    const Daemon& d = daemon();
    return d.announcedCount >= 0 ? d.announcedCount : static_cast<int>(d.commands.size());
}

int audioType(char**)
{
    return 0;
}

}  // namespace

void Daemon::clear()
{
    std::lock_guard<std::mutex> lock(mutex);
    results.clear();
    asr.clear();
    errors.clear();
    commands.clear();
    announcedCount = -1;
}

Daemon& daemon()
{
    static Daemon d;
    return d;
}

std::vector<std::string> observations()
{
    std::lock_guard<std::mutex> lock(gObservationMutex);
    return gObservations;
}

void clearObservations()
{
    std::lock_guard<std::mutex> lock(gObservationMutex);
    gObservations.clear();
}

bool observed(const std::string& what)
{
    const std::string key = "\"what\":\"" + what + "\"";
    for (const auto& o : observations()) {
        std::string compact;
        for (char c : o)
            if (c != ' ' && c != '\n')
                compact += c;
        if (compact.find(key) != std::string::npos)
            return true;
    }
    return false;
}

std::vector<short> wavSamples(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<short> samples;
    for (size_t at = 12; at + 8 <= bytes.size();) {
        uint32_t size = 0;
        std::memcpy(&size, bytes.data() + at + 4, 4);
        if (bytes.compare(at, 4, "data") == 0) {
            samples.resize(size / 2);
            std::memcpy(samples.data(), bytes.data() + at + 8, samples.size() * 2);
            break;
        }
        at += 8 + size + (size & 1);
    }
    return samples;
}

std::string platformLog()
{
    std::ifstream in(vapp::devicePath("log/dlog.log"));
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool logged(const std::string& text)
{
    return platformLog().find(text) != std::string::npos;
}

bool runLoopUntil(const std::function<bool()>& done, int timeoutMs)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        ecore_main_loop_iterate();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

EngineTest::EngineTest(const std::string& description) : device(description), mDescription(description)
{
}

void EngineTest::SetUp()
{
    ecore_init();
    daemon().clear();
    clearObservations();
    speech_standin_set_observer(observe, nullptr);
    Daemon& d = daemon();
    d.table = vcpd_funcs_s{};
    d.table.foreach_command = foreachCommand;
    d.table.get_command_count = commandCountOf;
    d.table.get_audio_type = audioType;
    ASSERT_EQ(vcp_load_engine(&d.table, &d.engine), 0);
    ASSERT_EQ(MarlEngine_initialize(), 0);
    ASSERT_EQ(MarlEngine_set_result_cb(onResult, &d), 0);
    ASSERT_EQ(MarlEngine_set_asr_result_cb(onAsr, &d), 0);
    ASSERT_EQ(MarlEngine_set_error_cb(onError, &d), 0);
}

void EngineTest::TearDown()
{
    speech_standin_wait_idle(5000);
    MarlEngine_deinitialize();
    vcp_unload_engine();
    speech_standin_set_observer(nullptr, nullptr);
    speech_standin_set_start_result(1);
    speech_standin_set_state(0);
    speech_standin_set_without_manager(0);
    ecore_shutdown();
}

MarlEngineWrapper* EngineTest::wrapper()
{
    return marlEngineWrapper;
}

int EngineTest::setCommands(const std::vector<Command>& commands, int announced)
{
    daemon().commands = commands;
    daemon().announcedCount = announced;
    return MarlEngine_set_commands(1);
}

}  // namespace marltest

std::string PluginTestAccess::targetServerAddress(MarlEngineWrapper* wrapper, int index)
{
    return wrapper->_getTargetServerAddress(static_cast<_orvaneServerIndex>(index));
}

void PluginTestAccess::createParser(OrvaneCloudParserHandle* handle)
{
    handle->_createParser();
}

std::chrono::system_clock::time_point PluginTestAccess::lastUpdate(DADeviceDataAutoRefresher* refresher)
{
    return std::chrono::time_point_cast<std::chrono::system_clock::duration>(refresher->mLastUpdate);
}

void PluginTestAccess::setLastUpdateAgo(DADeviceDataAutoRefresher* refresher, std::chrono::milliseconds ago)
{
    refresher->mLastUpdate = std::chrono::system_clock::now() - ago;
}
