#include "Compare.h"

#include "CaseWriter.h"
#include "LineDiff.h"
#include "Model.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

extern char** environ;

namespace fs = std::filesystem;

namespace marlcase
{

namespace
{

const int kSame = 0;
const int kDifferent = 1;
const int kUnusable = 2;

int unusable(const std::string& message)
{
    std::fprintf(stderr, "marl-case: %s\n", message.c_str());
    return kUnusable;
}

std::string readText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

fs::path executableDir()
{
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? fs::path(".") : self.parent_path();
}

// Runs marl-sim with `args`, its standard output and error into files.
int runSim(const std::vector<std::string>& args, const std::string& out, const std::string& err)
{
    const char* env = std::getenv("MARL_SIM");
    const std::string sim = env && *env ? env : (executableDir() / "marl-sim").string();
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(sim.c_str()));
    for (const auto& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    pid_t pid;
    const int spawned = posix_spawn(&pid, sim.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        return -1;
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string oneLine(const Json::Value& v)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, v);
}

// A scratch folder, removed at the end unless MARL_CASE_KEEP is set.
struct Scratch {
    std::string dir;
    Scratch()
    {
        std::string pattern = (fs::temp_directory_path() / "marl-case-XXXXXX").string();
        if (::mkdtemp(pattern.data()))
            dir = pattern;
    }
    ~Scratch()
    {
        std::error_code ec;
        if (!dir.empty() && !std::getenv("MARL_CASE_KEEP"))
            fs::remove_all(dir, ec);
    }
};

}  // namespace

int compare(const std::string& caseFile, const std::vector<std::string>& logFiles, long session, bool lenient,
            const std::vector<std::string>& simArgs)
{
    Json::Value scenario;
    {
        std::ifstream in(caseFile, std::ios::binary);
        Json::CharReaderBuilder builder;
        std::string errors;
        if (!in)
            return unusable("cannot read " + caseFile);
        if (!Json::parseFromStream(builder, in, &scenario, &errors) || !scenario.isObject())
            return unusable(caseFile + " is no case: " + (errors.empty() ? "not a JSON object" : errors));
    }

    // The field's session.
    Logs field;
    readLogs(logFiles, field);
    for (size_t i = 0; i < field.problems.size() && i < 10; ++i)
        std::fprintf(stderr, "marl-case: %s\n", field.problems[i].c_str());
    if (!field.problems.empty() && !lenient)
        return unusable("the log cannot be read as it stands (--lenient passes over such lines)");
    std::vector<std::string> problems, warnings;
    std::vector<Session> fieldSessions = sessionsOf(field, problems, warnings);
    for (const auto& w : warnings)
        std::fprintf(stderr, "marl-case: %s\n", w.c_str());
    if (!problems.empty())
        return unusable(problems.front());
    const long wanted = session ? session : std::max<long>(1, scenario["case"]["session"].asInt());
    if (wanted > static_cast<long>(fieldSessions.size()))
        return unusable("the log holds " + std::to_string(fieldSessions.size()) + " session(s), not " +
                        std::to_string(wanted));
    const Session& fieldSession = fieldSessions[static_cast<size_t>(wanted - 1)];

    // The replay.
    Scratch scratch;
    if (scratch.dir.empty())
        return unusable("cannot make a scratch folder in " + fs::temp_directory_path().string());
    const long long moved = shiftTimeStamps(scenario, static_cast<long long>(std::time(nullptr)));
    const std::string replayCase = scratch.dir + "/case.json";
    {
        std::ofstream out(replayCase, std::ios::binary);
        out << oneLine(scenario) << "\n";
    }
    std::string device;
    for (size_t i = 0; i + 1 < simArgs.size(); ++i)
        if (simArgs[i] == "--device")
            device = simArgs[i + 1];
    std::vector<std::string> args = {"run", replayCase, "--daemon-log", scratch.dir + "/daemon.log"};
    if (device.empty()) {
        device = scratch.dir + "/device";
        args.push_back("--device");
        args.push_back(device);
    }
    args.insert(args.end(), simArgs.begin(), simArgs.end());
    const std::string out = scratch.dir + "/transcript.txt", err = scratch.dir + "/stderr.txt";
    const int code = runSim(args, out, err);
    if (code != 0 && code != 3) {
        std::string why = readText(err);
        while (!why.empty() && why.back() == '\n')
            why.pop_back();
        return unusable("the replay did not run (marl-sim exit " + std::to_string(code) + ")" +
                        (why.empty() ? std::string() : ": " + why));
    }
    if (code == 3)
        std::printf("note: a turn of the replay did not settle in time (marl-sim exit 3)\n");
    if (moved)
        std::printf("note: the data store's time stamps were moved by %+lld s to the replay's start\n", moved);

    // The replay's own logs: the plug-in's, and the daemon's when the field has one to set it beside.
    std::vector<std::string> replayFiles = {device + "/log/dlog.log"};
    if (!fieldSession.daemon.empty())
        replayFiles.push_back(scratch.dir + "/daemon.log");
    Logs replay;
    readLogs(replayFiles, replay);
    // A field log filtered to some levels is set beside the replay's lines of the same levels.
    static const std::string levels = "VDIWEF";
    size_t lowest = levels.size();
    for (const LogLine* l : fieldSession.lines)
        lowest = std::min(lowest, levels.find(l->level));
    if (lowest > levels.find('D') && lowest < levels.size()) {
        std::printf("note: the field's log holds no line below level %c: the replay's are left out too\n",
                    levels[lowest]);
        for (LogRead& read : replay.reads)
            read.lines.erase(std::remove_if(read.lines.begin(), read.lines.end(),
                                            [&](const LogLine& l) {
                                                return pluginTag(l.tag) && levels.find(l.level) < lowest;
                                            }),
                             read.lines.end());
    }
    std::vector<std::string> replayProblems, replayWarnings;
    std::vector<Session> replaySessions = sessionsOf(replay, replayProblems, replayWarnings);
    if (replaySessions.empty())
        return unusable("the replay left no log of the plug-in" +
                        (replayProblems.empty() ? std::string() : ": " + replayProblems.front()));
    const Session& rs = replaySessions.back();
    if (fieldSession.daemon.empty())
        std::printf("note: the field's log has not the daemon's lines: the results the plug-in sent are not compared\n");

    const Verdict verdict = compareSessions(fieldSession, rs);
    std::fputs(verdict.report.c_str(), stdout);
    return verdict.different ? kDifferent : kSame;
}

}  // namespace marlcase
