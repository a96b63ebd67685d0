// Runs marl-sim, marl-device and marl-case as a user would, in a scratch
// folder of the test.
#pragma once

#include "SimRun.h"

#include <json/json.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace casetest
{

namespace fs = std::filesystem;

struct ToolRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

using simtest::quoteArg;
using simtest::readText;
using simtest::writeText;

inline Json::Value readJson(const fs::path& path)
{
    Json::Value json;
    Json::CharReaderBuilder builder;
    std::string errors;
    std::ifstream in(path, std::ios::binary);
    Json::parseFromStream(builder, in, &json, &errors);
    return json;
}

// A scratch folder of the test, its paths as text.
class Scratch : public simtest::Scratch
{
public:
    std::string path(const std::string& name) const { return simtest::Scratch::path(name).string(); }
};

// Runs `program` with `args` from the test's environment, without a device.
inline ToolRun run(const Scratch& scratch, const std::string& program, const std::vector<std::string>& args)
{
    std::string command = "env -u MARL_DEVICE_DIR -u MARL_PLUGIN " + quoteArg(program);
    for (const auto& a : args)
        command += " " + quoteArg(a);
    const std::string out = scratch.path("stdout.txt"), err = scratch.path("stderr.txt");
    command += " >" + quoteArg(out) + " 2>" + quoteArg(err) + " </dev/null";
    const int status = std::system(command.c_str());
    ToolRun r;
    r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    r.out = readText(out);
    r.err = readText(err);
    return r;
}

inline ToolRun marlCase(const Scratch& scratch, const std::vector<std::string>& args)
{
    return run(scratch, MARL_CASE, args);
}

// Plays a scenario as the field would have: the plug-in's log, the daemon's
// log and an export of the device after the session, in `dir` of the scratch
// folder ("dir/dev/log/dlog.log", "dir/daemon.log", "dir/export.json").
// `transcript` keeps the session's transcript as JSON.
inline ToolRun field(const Scratch& scratch, const std::string& scenario, const std::string& dir,
                 const std::vector<std::string>& more = {})
{
    const std::string at = scratch.path(dir);
    fs::create_directories(at);
    std::vector<std::string> args = {"run", scenario, "--fast", "--device", at + "/dev", "--daemon-log",
                                     at + "/daemon.log", "--json", at + "/transcript.json"};
    args.insert(args.end(), more.begin(), more.end());
    ToolRun r = run(scratch, MARL_SIM, args);
    if (r.exitCode != 0)
        return r;
    const ToolRun exported = run(scratch, MARL_DEVICE, {"export", at + "/dev"});
    writeText(at + "/export.json", exported.out);
    return exported;
}

// What the plug-in answered in a transcript: its calls back to the daemon
// (asr, result, error, without the user data) and each driver request with
// the response it composed, in order, one per line.
inline std::string answers(const fs::path& transcript)
{
    const Json::Value t = readJson(transcript);
    std::string out;
    Json::StreamWriterBuilder w;
    w["indentation"] = "";
    for (const Json::Value& e : t["entries"]) {
        const std::string kind = e["kind"].asString();
        if (kind == "turn") {
            out += "turn\n";
        } else if (kind == "callback" && (e["fn"] == "asr" || e["fn"] == "result" || e["fn"] == "error")) {
            Json::Value c = e;
            for (const char* member : {"t", "thread", "userData", "tEnd", "matched"})
                c.removeMember(member);
            out += Json::writeString(w, c) + "\n";
        } else if (kind == "speech" && e["obs"]["what"] == "driverRequest") {
            out += "driver request " + e["obs"]["request"].asString() + " -> " + e["obs"]["response"].asString() + "\n";
        }
    }
    return out;
}

}  // namespace casetest
