// marl-case: a field case from a device's log and state, played again.
//
//   marl-case build LOG... [--device DESCRIPTION.json] [--session N] -o CASE.json [--lenient]
//   marl-case compare CASE.json LOG... [marl-sim run's options]
//
// See case/README.md.
#include "CaseWriter.h"
#include "Compare.h"
#include "Model.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{

const int kUnusable = 2;

int usage(const std::string& problem = "")
{
    if (!problem.empty())
        std::fprintf(stderr, "marl-case: %s\n", problem.c_str());
    std::fprintf(stderr,
                 "usage: marl-case build LOG... [--device DESCRIPTION.json] [--session N] [--lenient] -o CASE.json\n"
                 "       marl-case compare CASE.json LOG... [--session N] [--lenient] [marl-sim run's options]\n");
    return kUnusable;
}

int unusable(const std::string& message)
{
    std::fprintf(stderr, "marl-case: %s\n", message.c_str());
    return kUnusable;
}

std::string writeJson(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value) + "\n";
}

bool readJsonFile(const std::string& path, Json::Value& out, std::string& error)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot read " + path;
        return false;
    }
    Json::CharReaderBuilder builder;
    std::string errors;
    if (!Json::parseFromStream(builder, in, &out, &errors)) {
        error = path + " is not valid JSON: " + errors;
        return false;
    }
    return true;
}

// The problems of the logs, said on stderr; false when they make the logs
// unusable (unless --lenient passes over the lines that could not be read).
bool sayProblems(const std::vector<std::string>& problems, bool lenient)
{
    const size_t shown = 10;
    for (size_t i = 0; i < problems.size() && i < shown; ++i)
        std::fprintf(stderr, "marl-case: %s\n", problems[i].c_str());
    if (problems.size() > shown)
        std::fprintf(stderr, "marl-case: ... and %zu more\n", problems.size() - shown);
    if (!problems.empty() && !lenient)
        std::fprintf(stderr, "marl-case: the log cannot be read as it stands (--lenient passes over such lines)\n");
    return problems.empty() || lenient;
}

struct Args {
    std::vector<std::string> logs;
    std::string device, output, caseFile;
    long session = 0;  // 0: all
    bool lenient = false;
    std::vector<std::string> simArgs;  // compare: passed to marl-sim run
};

bool parseArgs(const std::vector<std::string>& list, bool compare, Args& args, std::string& problem)
{
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
        if (!compare && a == "--device") {
            if (!value(args.device))
                return false;
        } else if (!compare && a == "-o") {
            if (!value(args.output))
                return false;
        } else if (a == "--session") {
            std::string text;
            if (!value(text))
                return false;
            char* end = nullptr;
            args.session = std::strtol(text.c_str(), &end, 10);
            if (text.empty() || *end || args.session < 1) {
                problem = "--session takes a session's number from 1, not \"" + text + "\"";
                return false;
            }
        } else if (a == "--lenient") {
            args.lenient = true;
        } else if (compare && !a.empty() && a[0] == '-') {
            // marl-sim run's options, with their values.
            args.simArgs.push_back(a);
            static const char* const valued[] = {"--device", "--plugin", "--json", "--trace", "--html", "--timeout",
                                                 "--daemon"};
            for (const char* v : valued)
                if (a == v && i + 1 < list.size())
                    args.simArgs.push_back(list[++i]);
        } else if (!a.empty() && a[0] == '-') {
            problem = "unexpected option \"" + a + "\"";
            return false;
        } else if (compare && args.caseFile.empty()) {
            args.caseFile = a;
        } else {
            args.logs.push_back(a);
        }
    }
    if (args.logs.empty()) {
        problem = "no log given";
        return false;
    }
    if (!compare && args.output.empty()) {
        problem = "build needs -o CASE.json";
        return false;
    }
    return true;
}

// CASE.json, or CASE-N.json for the n-th of several.
std::string outputName(const std::string& output, size_t n, size_t count)
{
    if (count == 1)
        return output;
    const fs::path p(output);
    return (p.parent_path() / (p.stem().string() + "-" + std::to_string(n) + p.extension().string())).string();
}

int build(const Args& args)
{
    Json::Value device;
    if (!args.device.empty()) {
        std::string error;
        if (!readJsonFile(args.device, device, error))
            return unusable(error);
        if (!device.isObject())
            return unusable(args.device + ": a device description is one JSON object");
    }
    marlcase::Logs logs;
    marlcase::readLogs(args.logs, logs);
    if (!sayProblems(logs.problems, args.lenient))
        return kUnusable;
    std::vector<std::string> problems, warnings;
    const std::vector<marlcase::Session> sessions = marlcase::sessionsOf(logs, problems, warnings);
    for (const auto& w : warnings)
        std::fprintf(stderr, "marl-case: %s\n", w.c_str());
    if (!problems.empty()) {
        for (const auto& p : problems)
            std::fprintf(stderr, "marl-case: %s\n", p.c_str());
        return kUnusable;
    }
    if (args.session > static_cast<long>(sessions.size()))
        return unusable("--session " + std::to_string(args.session) + ": the logs hold " +
                        std::to_string(sessions.size()) + " session(s)");
    const size_t first = args.session ? static_cast<size_t>(args.session - 1) : 0;
    const size_t last = args.session ? first + 1 : sessions.size();
    for (size_t k = first; k < last; ++k) {
        const marlcase::Session& s = sessions[k];
        if (s.turns.empty() && s.commands.empty())
            std::fprintf(stderr, "marl-case: session %zu has no turn and no command\n", k + 1);
        marlcase::CaseInput in;
        in.session = &s;
        in.index = k + 1;
        in.sessions = sessions.size();
        for (const auto& l : args.logs)
            in.logs.push_back(fs::absolute(l).lexically_normal().string());
        in.device = device;
        in.deviceFile = args.device.empty() ? std::string() : fs::absolute(args.device).lexically_normal().string();
        in.nowEpochSeconds = static_cast<long long>(std::time(nullptr));
        Json::Value scenario = marlcase::writeCase(in);
        for (const auto& w : warnings)
            scenario["notes"].append(w);
        for (const auto& p : logs.problems)
            scenario["notes"].append("passed over: " + p);
        const std::string name = outputName(args.output, k + 1, last - first);
        std::ofstream out(name, std::ios::binary | std::ios::trunc);
        out << writeJson(scenario);
        if (!out.flush())
            return unusable("cannot write " + name);
        std::printf("%s: session %zu of %zu, %u turn(s)\n", name.c_str(), k + 1, sessions.size(),
                    scenario["turns"].size());
        for (const auto& note : scenario["notes"])
            std::printf("  note: %s\n", note.asCString());
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> list(argv + 1, argv + argc);
    if (list.empty())
        return usage("no command");
    Args args;
    std::string problem;
    if (list[0] == "build") {
        if (!parseArgs(list, false, args, problem))
            return usage(problem);
        return build(args);
    }
    if (list[0] == "compare") {
        if (!parseArgs(list, true, args, problem))
            return usage(problem);
        if (args.caseFile.empty())
            return usage("compare needs the case and the field's log");
        return marlcase::compare(args.caseFile, args.logs, args.session, args.lenient, args.simArgs);
    }
    return usage("unknown command \"" + list[0] + "\"");
}
