// A voice session as the logs tell it: what the plug-in's lines show (tag
// "VoiceEnginePlugIn") and, when given, what the platform's daemon logged
// (tag "vcd"). Both the case builder and the comparison read logs into it.
#pragma once

#include "LogReader.h"

#include <json/json.h>

#include <string>
#include <vector>

namespace marlcase
{

extern const char* const kPluginTag;
extern const char* const kDaemonTag;
// The plug-in's tag, and the one its screen-size lines go under.
bool pluginTag(const std::string& tag);
// A line of the engine's load (vcp_load_engine and what it calls): a session begins with the first.
bool loadLine(const LogLine& line);

// One of the speech service's events, as a scenario gives it.
struct ServerEvent {
    Json::Value json;      // {"type": ..., ...}
    size_t line = 0;       // index in the session's lines of its first line
    std::string stage;     // "driver-response turn 1" when it came after a driver response
};

// What the plug-in told the daemon: "asr" (event, text), "result" (event,
// ids, text, nlu; from the daemon's lines), "error" (code, message).
struct Callback {
    Json::Value json;
    size_t line = 0;  // in the lines of its side (plug-in or daemon)
};

struct DriverExchange {
    std::string request;
    std::string response;
    bool answered = false;  // a response line was seen
    size_t line = 0;
};

struct Turn {
    size_t firstLine = 0;  // index in the session's plug-in lines
    size_t endLine = 0;    // one past its last line
    int context = -1;      // "Current Context[%d]"
    std::vector<Json::Value> privateData;  // pairs sent before it
    int chunks = 0;
    int beginAfter = -1;  // chunks fed when the beginning of speech was reported
    int endAfter = -1;
    int driverTurns = 0;
    std::vector<ServerEvent> events;
    std::vector<DriverExchange> driver;
    std::vector<Callback> callbacks;  // asr and error from the plug-in's lines; results only from the daemon's
    bool resultsKnown = false;        // the daemon's lines were there to give the results
    std::string end;                  // "stop", "cancel" or "" when the logs do not say
    bool commandsBefore = false;      // a command list was set since the turn before
    std::vector<std::string> notes;
};

struct Command {
    int id = 0;
    int type = 1;
    int format = 0;
    std::string text;
    bool textKnown = true;
    Json::Value param;  // text or null
    int domain = 0;
};

struct Session {
    std::vector<const LogLine*> lines;   // the plug-in's lines, in order
    std::vector<const LogLine*> daemon;  // the daemon's lines of this session
    bool loaded = false;                 // the engine's load is in the log
    std::string language;
    std::string domain;
    std::vector<Command> commands;
    bool commandsFromDaemon = false;
    std::vector<Json::Value> privateData;  // sent before the first turn
    std::vector<Turn> turns;
    bool platformDaemon = false;  // a command list before every start, or audio paced every 10 ms
    int recognitionMode = -1;     // from the daemon's lines
    bool debug = false;           // the plug-in's debug lines are there
    std::vector<std::string> notes;
    std::vector<std::string> gaps;  // what the log does not show
};

struct Logs {
    std::vector<std::string> names;
    std::vector<LogRead> reads;  // one per file
    std::vector<std::string> problems;
};

// Reads every file; a file that cannot be read is a problem.
void readLogs(const std::vector<std::string>& files, Logs& logs);

// The sessions of the plug-in's lines, with the daemon's lines matched to
// them. `problems` gets what makes the logs unusable; `warnings` what was
// passed over (other processes, lines cut short).
std::vector<Session> sessionsOf(const Logs& logs, std::vector<std::string>& problems,
                                std::vector<std::string>& warnings);

// The text between `open` and the last `close` of a message ("asr_result[", "], engineType[").
bool between(const std::string& text, const std::string& open, const std::string& close, std::string& out,
             size_t* after = nullptr);

}  // namespace marlcase
