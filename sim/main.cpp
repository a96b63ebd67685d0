// marl-sim: the voice-control daemon's side of a session with the engine
// plug-in, on the virtual appliance. See README.md beside this file.
//
//   marl-sim run SCENARIO.json [--device DIR] [--plugin PATH] [--json FILE]
//                              [--trace FILE] [--html FILE]
//                              [--fast] [--normalized] [--timeout SECONDS]
//                              [--daemon gentle|platform] [--memory] [--clock TIME]
//                              [--daemon-log FILE]
//   marl-sim say TEXT... [--voice NAME] [--rate WPM] [--scenario FILE] [run's options]
//   marl-sim listen FILE.wav... [--scenario FILE] [run's options]
//   marl-sim talk [--voice NAME] [--rate WPM] [--scenario FILE] [run's options]
//   marl-sim info [--plugin PATH]
#include "DaemonLogSink.h"
#include "HtmlPage.h"
#include "Scenario.h"
#include "Session.h"
#include "Talk.h"
#include "TraceWriter.h"
#include "Transcript.h"
#include "TranscriptSinks.h"

#include "apps/Apps.h"
#include "apps/DeviceClock.h"
#include "vappliance/Device.h"

#include <Ecore.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{

const char* const kFsmap = "libvappliance-fsmap.so";

int usage(const std::string& problem = "")
{
    if (!problem.empty())
        std::fprintf(stderr, "marl-sim: %s\n", problem.c_str());
    std::fprintf(stderr,
                 "usage: marl-sim run SCENARIO.json [--device DIR] [--plugin PATH] [--json FILE]\n"
                 "                                  [--trace FILE] [--html FILE]\n"
                 "                                  [--fast] [--normalized] [--timeout SECONDS]\n"
                 "                                  [--daemon gentle|platform] [--memory] [--clock TIME]\n"
                 "                                  [--daemon-log FILE]\n"
                 "       marl-sim say TEXT... [--voice NAME] [--rate WORDS_A_MINUTE] [--scenario FILE]\n"
                 "                            [run's options]\n"
                 "       marl-sim listen FILE.wav... [--scenario FILE] [run's options]\n"
                 "       marl-sim talk [--voice NAME] [--rate WORDS_A_MINUTE] [--scenario FILE] [run's options]\n"
                 "       marl-sim info [--plugin PATH]\n");
    return sim::kExitUsage;
}

int fail(const std::string& message)
{
    std::fprintf(stderr, "marl-sim: %s\n", message.c_str());
    return sim::kExitFailed;
}

fs::path executableDir()
{
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? fs::path(".") : self.parent_path();
}

// The process hosts the plug-in, which writes to absolute appliance paths:
// the file-system map must be preloaded. Re-executes itself with it when it
// isn't; returns only when it is in place or cannot be.
std::string ensureFsmap(char** argv)
{
    const char* preload = std::getenv("LD_PRELOAD");
    if (preload && std::string(preload).find(kFsmap) != std::string::npos)
        return "";
    const fs::path fsmap = executableDir() / ".." / "lib" / kFsmap;
    std::error_code ec;
    if (!fs::is_regular_file(fsmap, ec))
        return "cannot find " + fsmap.lexically_normal().string() +
               "; set LD_PRELOAD to the file-system map of the virtual appliance";
    std::string value = fsmap.lexically_normal().string();
    if (preload && *preload)
        value += std::string(":") + preload;
    ::setenv("LD_PRELOAD", value.c_str(), 1);
    ::execv("/proc/self/exe", argv);
    return "cannot re-execute with the file-system map preloaded";
}

std::string isoNow()
{
    char buffer[64];
    const std::time_t now = std::time(nullptr);
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%S%z", std::localtime(&now));
    return buffer;
}

struct Args {
    std::string command, scenario, device, plugin, json, trace, html, clock, daemonLog;
    bool fast = false, normalized = false, memory = false;
    std::string daemon;  // empty: the scenario's, else gentle
    double timeout = 15.0;
    bool timeoutGiven = false;
    std::vector<std::string> spoken;  // say: the texts; listen: the WAV files; one turn each
    std::string voice = "en-us";
    int rate = 175;
};

bool parseArgs(int argc, char** argv, Args& args, std::string& problem)
{
    std::vector<std::string> list(argv + 1, argv + argc);
    if (list.empty()) {
        problem = "no command";
        return false;
    }
    args.command = list[0];
    if (args.command != "run" && args.command != "info" && args.command != "say" && args.command != "listen" &&
        args.command != "talk") {
        problem = "unknown command \"" + args.command + "\"";
        return false;
    }
    const bool session = args.command != "info";
    const bool spoken = args.command == "say" || args.command == "listen" || args.command == "talk";
    const bool speaks = args.command == "say" || args.command == "talk";
    for (size_t i = 1; i < list.size(); ++i) {
        const std::string& a = list[i];
        auto value = [&](std::string& out) {
            if (i + 1 >= list.size()) {
                problem = a + " needs a value";
                return false;
            }
            out = list[++i];
            return true;
        };
        if (a == "--plugin") {
            if (!value(args.plugin))
                return false;
        } else if (session && a == "--device") {
            if (!value(args.device))
                return false;
        } else if (session && a == "--json") {
            if (!value(args.json))
                return false;
        } else if (session && a == "--trace") {
            if (!value(args.trace))
                return false;
        } else if (session && a == "--html") {
            if (!value(args.html))
                return false;
        } else if (session && a == "--daemon-log") {
            if (!value(args.daemonLog))
                return false;
        } else if (spoken && a == "--scenario") {
            if (!value(args.scenario))
                return false;
        } else if (speaks && a == "--voice") {
            if (!value(args.voice))
                return false;
        } else if (speaks && a == "--rate") {
            std::string text;
            if (!value(text))
                return false;
            char* end = nullptr;
            const long rate = std::strtol(text.c_str(), &end, 10);
            if (text.empty() || *end || rate < 80 || rate > 450) {
                problem = "--rate takes 80 to 450 words a minute, not \"" + text + "\"";
                return false;
            }
            args.rate = static_cast<int>(rate);
        } else if (session && a == "--timeout") {
            std::string text;
            if (!value(text))
                return false;
            char* end = nullptr;
            args.timeout = std::strtod(text.c_str(), &end);
            args.timeoutGiven = true;
            if (text.empty() || *end || !(args.timeout > 0)) {
                problem = "--timeout takes a number of seconds above 0, not \"" + text + "\"";
                return false;
            }
        } else if (session && a == "--daemon") {
            if (!value(args.daemon))
                return false;
            sim::DaemonProfile profile;
            if (!sim::parseDaemonProfile(args.daemon, profile)) {
                problem = "--daemon takes gentle or platform, not \"" + args.daemon + "\"";
                return false;
            }
        } else if (session && a == "--clock") {
            if (!value(args.clock))
                return false;
        } else if (session && a == "--memory") {
            args.memory = true;
        } else if (session && a == "--fast") {
            args.fast = true;
        } else if (session && a == "--normalized") {
            args.normalized = true;
        } else if (args.command == "run" && args.scenario.empty() && !a.empty() && a[0] != '-') {
            args.scenario = a;
        } else if (spoken && args.command != "talk" && !a.empty() && a[0] != '-') {
            args.spoken.push_back(a);
        } else {
            problem = "unexpected argument \"" + a + "\"";
            return false;
        }
    }
    if (args.command == "run" && args.scenario.empty()) {
        problem = "run needs a scenario file";
        return false;
    }
    if (args.command == "talk" && args.normalized) {
        problem = "talk tells what came of each turn; --normalized is for run, say and listen";
        return false;
    }
    if (spoken && args.command != "talk" && args.spoken.empty()) {
        problem = args.command == "say" ? "say needs the words to say" : "listen needs a WAV file";
        return false;
    }
    return true;
}

std::string pluginPath(const Args& args)
{
    if (!args.plugin.empty())
        return args.plugin;
    if (const char* env = std::getenv("MARL_PLUGIN"); env && *env)
        return env;
    return (executableDir() / ".." / "lib" / "libvc-engine-marl.so").lexically_normal().string();
}

// Quiet defaults for EFL on a host without system services.
void quietEfl()
{
    ::setenv("ECORE_NO_SYSTEM_MODULES", "1", 0);
    ::setenv("EINA_LOG_BACKTRACE", "-1", 0);
}

int info(const Args& args)
{
    quietEfl();
    Json::Value identity;
    std::string error;
    if (!sim::probeEngine(pluginPath(args), identity, nullptr, error))
        return fail(error);
    std::printf("plugin %s\nuuid %s\nname %s\nsetting %s\nneeds network %s\n",
                pluginPath(args).c_str(), identity["uuid"].asCString(),
                identity["name"].asCString(), identity["setting"].asCString(),
                identity["needsNetwork"].asBool() ? "yes" : "no");
    return sim::kExitOk;
}

// The session of say, listen and talk: the device and commands of --scenario
// (its turns are not played), else the built-in kitchen; one turn per text or
// file (talk reads its turns as it goes).
bool spokenScenario(const Args& args, sim::Scenario& scenario, std::string& error)
{
    if (args.scenario.empty()) {
        if (!sim::parseScenario(sim::defaultSpokenScenario(), "kitchen.json", scenario, error))
            return false;
        scenario.device = apps::kitchenDevice();
    } else if (!sim::loadScenario(args.scenario, scenario, error)) {
        return false;
    }
    scenario.turns.clear();
    for (const std::string& item : args.spoken) {
        sim::Turn turn;
        const bool ok = args.command == "say" ? sim::spokenTurn(item, args.voice, args.rate, turn, error)
                                              : sim::recordedTurn(item, turn, error);
        if (!ok) {
            error = (args.command == "say" ? "cannot say \"" + item + "\": " : item + ": ") + error;
            return false;
        }
        scenario.turns.push_back(std::move(turn));
    }
    return true;
}

int run(const Args& args)
{
    sim::Scenario scenario;
    std::string error;
    const bool loaded = args.command == "run" ? sim::loadScenario(args.scenario, scenario, error)
                                              : spokenScenario(args, scenario, error);
    if (!loaded)
        return fail(error);
    for (size_t i = 0; i < scenario.commands.size(); ++i) {
        const std::string& app = scenario.commands[i].app;
        if (!app.empty() && !apps::Apps::known(app)) {
            std::string ids;
            for (const std::string& id : apps::Apps::ids())
                ids += (ids.empty() ? "" : ", ") + id;
            return fail(scenario.path + ": engine.commands[" + std::to_string(i) + "].app: no app \"" + app +
                        "\" on the virtual appliance (its apps: " + ids + ")");
        }
    }
    // A pinned clock: the plug-in and the apps see the same times in every run.
    if (const std::string clock = args.clock.empty() ? scenario.clock : args.clock; !clock.empty()) {
        int64_t seconds = 0;
        if (!apps::parseClockTime(clock, seconds, error))
            return fail((args.clock.empty() ? scenario.path + ": clock: " : std::string("--clock: ")) + error);
        apps::pinClock(seconds * 1000000000);
    }

    // The device: --device, else MARL_DEVICE_DIR, else a fresh one for this run.
    std::string device = args.device;
    bool temporary = false;
    if (device.empty()) {
        if (const char* env = std::getenv("MARL_DEVICE_DIR"); env && *env)
            device = env;
    }
    if (device.empty()) {
        std::string pattern = (fs::temp_directory_path() / "marl-sim-XXXXXX").string();
        if (!::mkdtemp(pattern.data()))
            return fail("cannot make a temporary device directory in " +
                        fs::temp_directory_path().string());
        device = pattern;
        temporary = true;
    }
    device = fs::absolute(device).lexically_normal().string();
    ::setenv("MARL_DEVICE_DIR", device.c_str(), 1);
    const Json::Value description =
        scenario.device.isNull() ? Json::Value(Json::objectValue) : scenario.device;
    if (!vapp::applyDescription(description, scenario.dir, &error))
        return fail(args.scenario + ": device: " + error);

    sim::Options options;
    options.plugin = pluginPath(args);
    options.fast = args.fast;
    options.turnTimeout = args.timeoutGiven || scenario.timeout == 0 ? args.timeout : scenario.timeout;
    options.daemon = scenario.daemon;
    if (!args.daemon.empty())
        sim::parseDaemonProfile(args.daemon, options.daemon);
    options.memory = args.memory;
    if (args.command == "talk") {
        options.nextTurn = [&args](sim::Turn& turn) { return sim::readTalkTurn(args.voice, args.rate, turn); };
        options.turnDone = [](const std::vector<Json::Value>& entries) {
            std::printf("%s\n", sim::talkSummary(entries).c_str());
            std::fflush(stdout);
        };
    }

    // The transcript goes out as the session runs: a long session does not
    // grow in memory.
    sim::JsonFileSink jsonSink;
    if (!args.json.empty() && !jsonSink.open(args.json, error))
        return fail(error);
    std::unique_ptr<sim::WriterSink<sim::TraceWriter>> trace;
    if (!args.trace.empty())
        trace = std::make_unique<sim::WriterSink<sim::TraceWriter>>(args.trace);
    std::unique_ptr<sim::WriterSink<sim::HtmlPage>> page;
    if (!args.html.empty())
        page = std::make_unique<sim::WriterSink<sim::HtmlPage>>(args.html);

    quietEfl();
    ecore_init();
    sim::Transcript transcript;
    transcript.nameThread("main");
    Json::Value& header = transcript.header;
    const std::string scenarioFile = args.scenario.empty() ? std::string("(built in)") : args.scenario;
    header["scenario"]["file"] =
        args.scenario.empty() ? scenarioFile : fs::absolute(args.scenario).lexically_normal().string();
    header["scenario"]["name"] =
        args.scenario.empty() ? std::string("kitchen (built in)") : fs::path(args.scenario).filename().string();
    if (args.command != "run")
        header["spoken"] = args.command;
    header["plugin"] = options.plugin;
    header["device"]["dir"] = device;
    header["device"]["temporary"] = temporary;
    header["started"] = isoNow();
    header["options"]["fast"] = options.fast;
    header["options"]["turnTimeoutSeconds"] = options.turnTimeout;
    header["options"]["daemon"] = sim::daemonProfileName(options.daemon);

    sim::RenderOptions render;
    render.normalized = args.normalized;
    render.nowEpochMs = transcript.startEpochMs();
    render.deviceDataKept = scenario.compareDeviceData;
    render.briefDeviceData = args.command != "run";
    render.substitutions = {
        {device, "$DEVICE"}, {scenario.dir, "$SCENARIO"}, {options.plugin, "$PLUGIN"}};
    sim::TextSink textSink(stdout, header, render);
    // talk tells each turn by itself (options.turnDone).
    if (args.command == "talk")
        std::printf("device: %s\n\n", device.c_str());
    else
        transcript.addSink(&textSink);
    if (!args.json.empty())
        transcript.addSink(&jsonSink);
    if (trace)
        transcript.addSink(trace.get());
    if (page)
        transcript.addSink(page.get());
    sim::DaemonLogSink daemonLog;
    if (!args.daemonLog.empty()) {
        if (!daemonLog.open(args.daemonLog, scenario, options.daemon, transcript.startEpochMs(), error))
            return fail(error);
        transcript.addSink(&daemonLog);
    }

    Json::Value identity;
    int code = sim::kExitOk;
    if (!sim::probeEngine(options.plugin, identity, &transcript, error))
        code = sim::kExitFailed;
    header["engine"] = identity;
    if (code == sim::kExitOk)
        code = sim::runSession(scenario, options, transcript, error);
    ecore_shutdown();

    transcript.finish();
    std::fflush(stdout);
    if (!args.json.empty() && !jsonSink.good())
        return fail("cannot write " + args.json);
    if (!args.daemonLog.empty() && !daemonLog.good())
        return fail("cannot write " + args.daemonLog);
    if (std::string why; (trace && !trace->good(&why)) || (page && !page->good(&why)))
        return fail(why);
    if (!error.empty())
        std::fprintf(stderr, "marl-sim: %s\n", error.c_str());
    if (code == sim::kExitTimedOut)
        std::fprintf(stderr, "marl-sim: a turn timed out; see the transcript's notes\n");
    return code;
}

}  // namespace

int main(int argc, char** argv)
{
    Args args;
    std::string problem;
    if (!parseArgs(argc, argv, args, problem))
        return usage(problem);
    if (const std::string why = ensureFsmap(argv); !why.empty() && args.command != "info")
        return fail(why);
    return args.command == "info" ? info(args) : run(args);
}
