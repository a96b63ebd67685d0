// --daemon-log FILE: the daemon's side of the session as the platform's
// voice-control daemon logs it (tag "vcd"), in the virtual appliance's log
// form, so that a case can be built from the plug-in's log and the daemon's
// together (marl-case, case/README.md).
#pragma once

#include "Scenario.h"
#include "Transcript.h"

#include <fstream>
#include <string>
#include <vector>

namespace sim
{

class DaemonLogSink : public TranscriptSink
{
public:
    // False with `error` when the file cannot be written.
    bool open(const std::string& path, const Scenario& scenario, DaemonProfile daemon, long long startEpochMs,
              std::string& error);
    void entry(const Json::Value& entry) override;
    void finish(const Json::Value& header) override;
    bool good() const { return mOut.good(); }

private:
    void line(long long t, char level, const char* source, const char* function, int number, const std::string& text);
    void commands(long long t, const Json::Value& entry);

    std::ofstream mOut;
    std::vector<Command> mCommands;
    std::string mPluginPath;
    Json::Value mSetCommands;  // a command list whose outcome is not written yet
    bool mPlatform = false;
    bool mRestartAfterReject = false;
    long long mStartEpochMs = 0;
    int mPid = 0;
};

}  // namespace sim
