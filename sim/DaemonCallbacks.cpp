// What the daemon does when the plug-in calls it.
#include "SessionImpl.h"

#include <cstring>

namespace sim
{
namespace session
{

void resultCb(vcp_result_event_e event, int* ids, int count, const char* all, const char* nonFixed,
              const char* nlu, const char* msg, void* data)
{
    if (gSession)
        gSession->onResult(event, ids, count, all, nonFixed, nlu, msg, data);
}
void asrCb(vcp_asr_result_event_e event, const char* result, void* data)
{
    if (gSession)
        gSession->onAsr(event, result, data);
}
void errorCb(vcp_error_e code, const char* msg, void* data)
{
    if (gSession)
        gSession->onError(code, msg, data);
}
void observerCb(const char* json, void*)
{
    if (gSession)
        gSession->onObservation(json);
}
int foreachCommandCb(int handle, vcpd_foreach_command_cb callback, void* data)
{
    return gSession ? gSession->foreachCommand(handle, callback, data) : VCP_ERROR_INVALID_STATE;
}
int commandCountCb(int handle)
{
    return gSession ? gSession->commandCount(handle) : 0;
}
int audioTypeCb(char** type)
{
    return gSession ? gSession->audioType(type) : VCP_ERROR_INVALID_STATE;
}

void Session::onResult(vcp_result_event_e event, int* ids, int count, const char* all,
                       const char* nonFixed, const char* nlu, const char* msg, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "result";
    entry["event"] = static_cast<int>(event);
    entry["ids"] = Json::Value(Json::arrayValue);
    for (int i = 0; ids && i < count && i < 1000; ++i)
        entry["ids"].append(ids[i]);
    if (!ids)
        entry["ids"] = Json::Value();
    entry["count"] = count;
    entry["allResult"] = text(all);
    entry["nonFixedResult"] = text(nonFixed);
    entry["nluResult"] = text(nlu);
    entry["message"] = text(msg);
    entry["userData"] = tokenName(data);
    const Turn* turn = mTurn.load();
    if (turn && turn->listen && ids) {
        // What the ids stand for, in a turn that the stand-in recognized.
        Json::Value matched(Json::arrayValue);
        for (int i = 0; i < count && i < 1000; ++i)
            for (const auto& c : mScenario.commands)
                if (c.id == ids[i]) {
                    matched.append(c.command);
                    break;
                }
        entry["matched"] = matched;
    }
    // The platform's daemon takes a result only while it processes a request
    // (from its stop to the request's result or error) and drops any other.
    const bool taken = !platform() || mProcessing.exchange(false);
    if (!taken)
        entry["dropped"] = "the daemon is not processing a request";
    record(entry);
    ++mResults;
    if (taken)
        mAnswered = true;
}

void Session::onAsr(vcp_asr_result_event_e event, const char* result, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "asr";
    entry["event"] = static_cast<int>(event);
    entry["text"] = text(result);
    entry["userData"] = tokenName(data);
    record(entry);
}

void Session::onError(vcp_error_e code, const char* msg, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "error";
    entry["code"] = static_cast<int>(code);
    entry["message"] = text(msg);
    entry["userData"] = tokenName(data);
    if (platform())
        mProcessing = false;  // an error ends the request too
    record(entry);
    mAnswered = true;
}

void Session::onObservation(const char* json)
{
    Json::Value entry;
    entry["kind"] = "speech";
    Json::Value obs = parseJson(json ? json : "");
    if (obs.isObject()) {
        // The library's own thread (the parser stand-in runs on it too).
        if (obs["thread"] == "library" && !mTranscript.threadNamed())
            mTranscript.nameThread("speech");
        entry["obs"] = obs;
        if (obs["what"] == "executeOVAction")
            ++mActions;
    } else {
        entry["obs"]["what"] = "unreadable observation";
        entry["obs"]["text"] = text(json);
    }
    record(entry);
}

int Session::foreachCommand(int handle, vcpd_foreach_command_cb callback, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "foreach_command";
    entry["handle"] = handle;
    entry["userData"] = tokenName(data);
    Json::Value answers(Json::arrayValue);
    int result = 0;
    if (handle != mCommandHandle || !callback) {
        result = VCP_ERROR_INVALID_PARAMETER;
    } else {
        for (const auto& c : mScenario.commands) {
            const bool more = callback(c.id, c.type, c.format, c.command.c_str(), c.param.c_str(),
                                       c.domain, data);
            answers.append(more);
            // The platform's daemon walks on whatever the visitor answers.
            if (!more && !platform())
                break;
        }
    }
    entry["visitorAnswers"] = answers;
    entry["ret"] = result;
    record(entry);
    return result;
}

int Session::commandCount(int handle)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "get_command_count";
    entry["handle"] = handle;
    const int count = handle == mCommandHandle ? static_cast<int>(mScenario.commands.size()) : 0;
    entry["ret"] = count;
    record(entry);
    return count;
}

int Session::audioType(char** type)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "get_audio_type";
    int result = VCP_ERROR_INVALID_PARAMETER;
    if (type) {
        *type = strdup("default");
        result = 0;
    }
    entry["ret"] = result;
    record(entry);
    return result;
}


}  // namespace session
}  // namespace sim
