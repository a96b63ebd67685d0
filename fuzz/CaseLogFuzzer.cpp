// The platform log as marl-case reads it: any text, cut at a line "--" into
// the plug-in's log and the daemon's, is read into sessions, each written as
// a case, and each session compared with itself must be the same.
#include "CaseWriter.h"
#include "LineDiff.h"
#include "Model.h"

#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    marlcase::Logs logs;
    size_t from = 0;
    for (size_t i = 0; i < 2 && from <= text.size(); ++i) {
        size_t cut = i == 0 ? text.find("\n--\n", from) : std::string::npos;
        const std::string piece = text.substr(from, cut == std::string::npos ? std::string::npos : cut - from);
        logs.names.push_back("log" + std::to_string(i));
        logs.reads.emplace_back();
        marlcase::readLog(piece, logs.names.back(), i, logs.reads.back());
        if (cut == std::string::npos)
            break;
        from = cut + 4;
    }
    std::vector<std::string> problems, warnings;
    const std::vector<marlcase::Session> sessions = marlcase::sessionsOf(logs, problems, warnings);
    for (size_t k = 0; k < sessions.size(); ++k) {
        marlcase::CaseInput in;
        in.session = &sessions[k];
        in.index = k + 1;
        in.sessions = sessions.size();
        in.logs = logs.names;
        in.nowEpochSeconds = 1795600000;
        const Json::Value scenario = marlcase::writeCase(in);
        Json::StreamWriterBuilder builder;
        const std::string written = Json::writeString(builder, scenario);
        const marlcase::Verdict verdict = marlcase::compareSessions(sessions[k], sessions[k]);
        if (verdict.different || written.empty()) {
            std::fprintf(stderr, "a session differs from itself:\n%s", verdict.report.c_str());
            std::abort();
        }
    }
    return 0;
}
