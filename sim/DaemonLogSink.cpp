// The lines follow those of the platform's public voice-control daemon
// (server/vcd_*.c) where it has them: its engine agent, client data, server
// and D-Bus server. The asr, error and private-data lines, which that code
// has not got, are written in the same manner.
#include "DaemonLogSink.h"

#include <unistd.h>

#include <cstdio>
#include <ctime>

namespace sim
{

namespace
{

// A text argument as the daemon's printf shows it.
std::string shown(const Json::Value& v)
{
    return v.isString() ? v.asString() : v.isNull() ? std::string("(null)") : v.toStyledString();
}

const char* group(int type)
{
    switch (type) {
    case 2: return "Background";
    case 3: return "Widget";
    case 4: return "System";
    case 5: return "Exclusive system";
    default: return "Foreground";
    }
}

}  // namespace

bool DaemonLogSink::open(const std::string& path, const Scenario& scenario, DaemonProfile daemon,
                         long long startEpochMs, std::string& error)
{
    mOut.open(path, std::ios::binary | std::ios::trunc);
    if (!mOut) {
        error = "cannot write " + path;
        return false;
    }
    mCommands = scenario.commands;
    mPlatform = daemon == DaemonProfile::Platform;
    mRestartAfterReject = scenario.restartAfterReject;
    mStartEpochMs = startEpochMs;
    mPid = static_cast<int>(::getpid());
    return true;
}

void DaemonLogSink::line(long long t, char level, const char* source, const char* function, int number,
                         const std::string& text)
{
    const long long ms = mStartEpochMs + t;
    const std::time_t seconds = static_cast<std::time_t>(ms / 1000);
    std::tm tm{};
    localtime_r(&seconds, &tm);
    char stamp[64];
    std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &tm);
    char prefix[160];
    std::snprintf(prefix, sizeof prefix, "%s.%03lld %c/vcd(%5d): %s: %s(%d) > ", stamp, ms % 1000, level, mPid, source,
                  function, number);
    mOut << prefix << text << '\n';
}

void DaemonLogSink::commands(long long t, const Json::Value& entry)
{
    line(t, 'D', "vcd_engine_agent.c", "__foreach_command", 448, "[Engine Agent] Request foreach command from engine");
    const Json::ArrayIndex walked = entry["visitorAnswers"].size();
    for (Json::ArrayIndex i = 0; i < walked && i < mCommands.size(); ++i) {
        const Command& c = mCommands[i];
        const std::string param = c.param.set ? c.param.text : "(null)";
        char head[160];
        if (c.type == 4) {
            std::snprintf(head, sizeof head, "[Client Data] System : id(%d) index(%u) format(%d) domain(%d) command(", c.id,
                          i, c.format, c.domain);
            line(t, 'D', "vcd_client_data.c", "vcd_client_foreach_command", 554,
                 head + c.command + ") param(" + param + ")");
        } else {
            std::snprintf(head, sizeof head, "[Client Data] %s : id(%d) index(%u) format(%d) command(", group(c.type), c.id, i,
                          c.format);
            line(t, 'D', "vcd_client_data.c", "vcd_client_foreach_command", 535,
                 head + c.command + ") param(" + param + ") domain(" + std::to_string(c.domain) + ")");
        }
    }
}

void DaemonLogSink::entry(const Json::Value& e)
{
    const long long t = e["t"].asInt64();
    const std::string kind = e["kind"].asString();
    const std::string fn = e["fn"].asString();
    const Json::Value& args = e["args"];
    // The outcome of a command list follows the daemon's walk of it.
    if (!mSetCommands.isNull() && !(kind == "callback" && (fn == "get_command_count" || fn == "foreach_command"))) {
        const int ret = mSetCommands["ret"].asInt();
        if (ret == 0)
            line(mSetCommands["t"].asInt64(), 'D', "vcd_engine_agent.c", "vcd_engine_set_commands", 678,
                 "[Engine Agent SUCCESS] set command");
        else
            line(mSetCommands["t"].asInt64(), 'W', "vcd_engine_agent.c", "vcd_engine_set_commands", 672,
                 "[Engine Agent ERROR] Fail to set command of dynamic engine : error(" + std::to_string(ret) + ")");
        mSetCommands = Json::Value();
    }
    if (kind == "call" && fn == "dlopen") {
        mPluginPath = shown(args[0]);
    } else if (kind == "call" && fn == "vcp_load_engine") {
        line(t, 'D', "vcd_engine_agent.c", "__load_engine", 518, "[Engine Agent] Current engine path : " + mPluginPath);
    } else if (kind == "callback" && fn == "get_command_count") {
        line(t, 'D', "vcd_engine_agent.c", "__command_get_length", 454, "[Engine Agent] Request command length from engine");
    } else if (kind == "callback" && fn == "foreach_command") {
        commands(t, e);
    } else if (kind == "call" && fn == "MarlEngine_set_commands") {
        mSetCommands = e;
    } else if (kind == "call" && fn == "MarlEngine_set_private_data") {
        line(t, 'D', "vcd_engine_agent.c", "vcd_engine_set_private_data", 925,
             "[Engine Agent] Set private data : key(" + shown(args[0]) + ") data(" + shown(args[1]) + ")");
    } else if (kind == "call" && fn == "MarlEngine_start") {
        line(t, 'D', "vcd_server.c", "vcd_server_mgr_start", 1112,
             "[Server] set recognition mode = " + std::to_string(mRestartAfterReject ? 1 : 0));
        line(t, 'D', "vcd_engine_agent.c", "vcd_engine_recognize_start", 694,
             std::string("[Engine Agent] silence is ") + (args[0].asBool() ? "true" : "false"));
        if (e["ret"].asInt() == 0)
            line(t, 'D', "vcd_engine_agent.c", "vcd_engine_recognize_start", 707, "[Engine Agent SUCCESS] Engine start");
        else
            line(t, 'E', "vcd_engine_agent.c", "vcd_engine_recognize_start", 699,
                 "[Engine Agent] Fail to start engine error(" + std::to_string(e["ret"].asInt()) + ")");
    } else if (kind == "call" && fn == "MarlEngine_stop") {
        if (mPlatform && mRestartAfterReject)
            line(t, 'D', "vcd_server.c", "__server_recorder_callback", 139, "[Server] Stop engine only by silence");
        else if (mPlatform)
            line(t, 'D', "vcd_server.c", "__stop_by_silence", 46, "===== Silence Detected ");
        else
            line(t, 'D', "vcd_dbus_server.c", "vcd_dbus_server_mgr_stop", 593, "[IN] vcd mgr stop : pid(" + std::to_string(mPid) + ")");
    } else if (kind == "call" && fn == "MarlEngine_cancel") {
        line(t, 'D', "vcd_dbus_server.c", "vcd_dbus_server_mgr_cancel", 641, "[IN] vcd mgr cancel : pid(" + std::to_string(mPid) + ")");
    } else if (kind == "callback" && fn == "asr") {
        line(t, 'D', "vcd_engine_agent.c", "__asr_result_cb", 483,
             "[Engine agent] ASR result - Event(" + std::to_string(e["event"].asInt()) + "), Text(" + shown(e["text"]) + ")");
    } else if (kind == "callback" && fn == "error") {
        line(t, 'D', "vcd_engine_agent.c", "__error_cb", 512,
             "[Engine agent] Error callback - error(" + std::to_string(e["code"].asInt()) + "), msg(" + shown(e["message"]) + ")");
    } else if (kind == "callback" && fn == "result") {
        const std::string event = std::to_string(e["event"].asInt());
        const std::string count = std::to_string(e["count"].asInt());
        line(t, 'D', "vcd_engine_agent.c", "__result_cb", 479,
             "[Engine agent] Event(" + event + "), Count(" + count + ") Text(" + shown(e["allResult"]) + ") Nonfixed(" +
                 shown(e["nonFixedResult"]) + ") Msg(" + shown(e["message"]) + ")");
        line(t, 'D', "vcd_engine_agent.c", "__result_cb", 491, "[Engine Agent SUCCESS] Get nlp info : " + shown(e["nluResult"]));
        if (e.isMember("dropped")) {
            line(t, 'E', "vcd_server.c", "__vcd_server_result_cb", 282,
                 "[Server ERROR] Current state is not 'Processing' and mode is not 'Restart continuously'");
            return;
        }
        line(t, 'D', "vcd_server.c", "__vcd_server_result_cb", 296,
             "[Server] Event(" + event + "), Text(" + shown(e["allResult"]) + ") Nonfixed(" + shown(e["nonFixedResult"]) +
                 ") Msg(" + shown(e["message"]) + ") Result count(" + count + ")");
        line(t, 'D', "vcd_server.c", "__vcd_server_result_cb", 363, "[Server] === Get engine result ===");
        Json::ArrayIndex i = 0;
        for (const Json::Value& id : e["ids"])
            line(t, 'D', "vcd_server.c", "__vcd_server_result_cb", 380,
                 "[Server]   [" + std::to_string(i++) + "] Result ID(" + std::to_string(id.asInt()) + ")");
        line(t, 'D', "vcd_server.c", "__vcd_server_result_cb", 442, "[Server] =========================");
    }
    mOut.flush();
}

void DaemonLogSink::finish(const Json::Value&)
{
    mOut.flush();
}

}  // namespace sim
