// A session's lines of the plug-in read into its set-up and its turns.
#include "Model.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace marlcase
{

namespace
{

// Gaps between the server's events above this become waits.
const long long kWaitThresholdMs = 200;

bool startsWith(const std::string& s, const char* prefix)
{
    return s.rfind(prefix, 0) == 0;
}

// A number of the log; 0 when the text is none.
int toInt(const std::string& s)
{
    char* end = nullptr;
    const long v = std::strtol(s.c_str(), &end, 10);
    const bool good = !s.empty() && end && *end == '\0' && v >= -2147483647L - 1 && v <= 2147483647L;
    return good ? static_cast<int>(v) : 0;
}

bool parseJson(const std::string& text, Json::Value& out)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errors;
    return reader->parse(text.data(), text.data() + text.size(), &out, &errors);
}

// The lines of one session and what they show.
class SessionReader
{
public:
    explicit SessionReader(Session& s) : mS(s) {}

    void read()
    {
        for (size_t i = 0; i < mS.lines.size(); ++i)
            line(i, *mS.lines[i]);
        closeTurn(mS.lines.size());
        if (!mS.debug)
            turnsFromPulls();
        else if (!mS.loaded)
            mS.notes.push_back("the log begins after the engine was loaded: what was set before is not in it");
        if (mLanguages.empty()) {
            mS.language = "en_US";
            mS.gaps.push_back("language: not in the log; en_US taken");
        } else {
            // The first line of a load is the engine's own start in en-US.
            mS.language = mLanguages.size() > 1 || !mS.loaded ? mLanguages.back() : mLanguages.front();
            if (mLanguages.size() == 1 && mS.loaded)
                mS.notes.push_back("language: the daemon did not set one; the engine's own " + mS.language +
                                   " taken");
        }
        int withCommands = 0;
        for (const Turn& t : mS.turns)
            withCommands += t.commandsBefore ? 1 : 0;
        mS.platformDaemon = !mS.turns.empty() && withCommands == static_cast<int>(mS.turns.size()) &&
                            mCommandLists > 1;
        // Audio fed in real time tells the daemon by its pace: the platform's
        // recorder gives a chunk every 10 ms, marl-sim's own daemon every 20 ms.
        std::vector<long long> gaps;
        for (size_t i = 1; i < mS.lines.size(); ++i) {
            const LogLine& a = *mS.lines[i - 1];
            const LogLine& b = *mS.lines[i];
            if (a.function == "processAudio" && b.function == "processAudio" && a.clock != LogLine::None &&
                a.clock == b.clock)
                gaps.push_back(b.ms - a.ms);
        }
        if (gaps.size() >= 10) {
            std::nth_element(gaps.begin(), gaps.begin() + gaps.size() / 2, gaps.end());
            const long long pace = gaps[gaps.size() / 2];
            if (pace >= 5)
                mS.platformDaemon = pace < 15;
        }
    }

private:
    // Without its debug lines the plug-in still logs the platform reads that
    // fail when a recognition starts and the speech library pulls the
    // device's data: each run of such lines is taken for a start.
    void turnsFromPulls()
    {
        bool inPull = false;
        size_t pulls = 0;
        std::string first;  // the first line of the pull in hand; seen again, it begins the next
        for (size_t i = 0; i < mS.lines.size(); ++i) {
            const LogLine& l = *mS.lines[i];
            const bool facet = (l.source.rfind("RetrieveDeviceDataEngineImpl", 0) == 0 || l.tag == "VCPE") &&
                               l.source != l.function + ".cpp";
            const std::string key = l.function + " > " + l.text;
            if (facet && (!inPull || key == first)) {
                first = key;
                if (turn())
                    closeTurn(i);
                mS.turns.emplace_back();
                mS.turns.back().firstLine = i;
                mTurnClosed = false;
                ++pulls;
            }
            inPull = facet;
        }
        closeTurn(mS.lines.size());
        mS.gaps.push_back("the log holds no debug line of the plug-in (filtered to info and above?): sessions, "
                          "commands, private data, texts, server events, audio, stops and cancels are not in it");
        mS.gaps.push_back(pulls ? std::to_string(pulls) + " recognition start(s) counted from the failed platform reads "
                                      "logged at each (a driver-response turn counts as one): one turn each, without "
                                      "audio or server events"
                                : "no recognition start can be told from the lines left: no turn");
    }

    Turn* turn() { return mS.turns.empty() || mTurnClosed ? nullptr : &mS.turns.back(); }

    void closeTurn(size_t end)
    {
        if (Turn* t = turn())
            t->endLine = end;
        mTurnClosed = true;
    }

    void addEvent(size_t i, Json::Value json)
    {
        Turn* t = turn();
        if (!t)
            return;
        const LogLine& l = *mS.lines[i];
        if (mLastTimed && l.clock != LogLine::None && l.clock == mLastClock && l.ms - mLastMs >= kWaitThresholdMs) {
            ServerEvent wait;
            wait.json["type"] = "wait";
            wait.json["ms"] = static_cast<Json::Int64>((l.ms - mLastMs + 5) / 10 * 10);
            wait.line = i;
            wait.stage = stage();
            t->events.push_back(wait);
        }
        ServerEvent e;
        e.json = std::move(json);
        e.line = i;
        e.stage = stage();
        t->events.push_back(std::move(e));
    }

    std::string stage() const
    {
        const Turn& t = mS.turns.back();
        return t.driverTurns > 0 ? "driver-response turn " + std::to_string(t.driverTurns) : "recognition";
    }

    void line(size_t i, const LogLine& l)
    {
        mCurrent = i;
        if (l.level == 'D' || l.level == 'V')
            mS.debug = true;
        const std::string& fn = l.function;
        const std::string& text = l.text;
        std::string value;
        if (loadLine(l))
            mS.loaded = true;
        if (fn == "setLanguage" && startsWith(text, "Language changes is : ")) {
            std::string lang = text.substr(22);
            while (!lang.empty() && lang.back() == ' ')
                lang.pop_back();
            if (!mS.turns.empty())
                mS.notes.push_back("language: set to " + lang + " before turn " +
                                   std::to_string(mS.turns.size() + 1) + "; a case has one language");
            else
                mLanguages.push_back(lang);
        } else if (fn == "getDeviceProfileName" && mS.domain.empty() && between(text, "Profile Name[", "]", value)) {
            mS.domain = value;
        } else if (fn == "MarlEngine_set_commands" || fn == "vcpd_foreach_command_cb_local") {
            commandLine(l);
        } else if (fn == "MarlEngine_set_private_data") {
            privateLine(text);
        } else if (fn == "setVolumeLevel" && between(text, "volumeLevel[", "]", value) && mPrivateOpen) {
            Json::Value& pair = mPendingPrivate.back();
            pair["key"] = "MediaVolume";
            pair["data"] = value;
            mPrivateUnknown = false;
        } else if (fn == "MarlEngine_start") {
            startLine(i, text);
        } else if (Turn* t = turn()) {
            turnLine(i, l, *t);
        }
        if (fn != "MarlEngine_set_private_data" && fn != "setVolumeLevel")
            closePrivate();
        if (l.clock != LogLine::None) {
            mLastTimed = true;
            mLastMs = l.ms;
            mLastClock = l.clock;
        }
    }

    void commandLine(const LogLine& l)
    {
        const std::string& text = l.text;
        std::string value;
        if (text == "====== MarlEngine_set_commands ======") {
            closeTurnBeforeCommands();
            mCommands.clear();
            mCommandOpen = true;
            ++mCommandLists;
        } else if (startsWith(text, "type (") && between(text, "format(", ")", value)) {
            mPending = Command();
            mPending.type = toInt(text.substr(6, text.find(')') - 6));
            mPending.format = toInt(value);
            mPendingOpen = true;
        } else if (startsWith(text, "current_count[") && text.find(',') == std::string::npos && mPendingOpen) {
            mPending.id = static_cast<int>(mCommands.size()) + 1;
            mPending.textKnown = false;
            mCommands.push_back(mPending);
            mPendingOpen = false;
        } else if (startsWith(text, "commandText[") && !mCommands.empty()) {
            std::string body;
            if (between(text, "commandText[", "], length of commandText[", body)) {
                mCommands.back().text = body;
                mCommands.back().textKnown = true;
            }
        } else if (text.find("completed all commands in list") != std::string::npos) {
            mPendingOpen = false;
        } else if (startsWith(text, "====== MarlEngine_set_commands END") ||
                   text == "MarlEngine_set_commands json array is ready...") {
            if (mCommandOpen) {
                if (mS.commands.empty() && mS.turns.empty())
                    mS.commands = mCommands;
                else if (!sameCommands(mS.commands, mCommands) && !mListNoted) {
                    mS.notes.push_back("commands: the daemon set another command list before turn " +
                                       std::to_string(mS.turns.size() + 1) + "; the case keeps the first");
                    mListNoted = true;
                }
                mCommandsSinceTurn = true;
            }
            mCommandOpen = false;
        }
    }

    static bool sameCommands(const std::vector<Command>& a, const std::vector<Command>& b)
    {
        if (a.size() != b.size())
            return false;
        for (size_t i = 0; i < a.size(); ++i)
            if (a[i].format != b[i].format || a[i].type != b[i].type || a[i].text != b[i].text)
                return false;
        return true;
    }

    void closeTurnBeforeCommands()
    {
        // A command list between turns ends the turn before.
        if (turn())
            closeTurn(mCurrent);
    }

    void privateLine(const std::string& text)
    {
        if (text == "====== Set private data ======") {
            closePrivate();
            Json::Value pair(Json::objectValue);
            pair["key"] = Json::Value();
            pair["data"] = Json::Value();
            mPendingPrivate.push_back(pair);
            mPrivateOpen = true;
            mPrivateUnknown = true;
        } else if (mPrivateOpen && (text == "Reset session" || text == "Reload engine")) {
            mPendingPrivate.back()["key"] = "Request";
            mPendingPrivate.back()["data"] = text == "Reset session" ? "resetSession" : "reloadEngine";
            mPrivateUnknown = false;
        }
    }

    void closePrivate()
    {
        if (!mPrivateOpen)
            return;
        mPrivateOpen = false;
        if (mPrivateUnknown)
            mS.notes.push_back("private data before turn " + std::to_string(mS.turns.size() + 1) +
                               ": a pair the log does not show (key and data unknown); sent as null and null");
    }

    void startLine(size_t i, const std::string& text)
    {
        if (!startsWith(text, "Current Context[") && text.find("is not set") == std::string::npos)
            return;
        if (turn())
            closeTurn(i);
        closePrivate();
        // The pairs sent before the first turn belong to the engine's set-up.
        if (mS.turns.empty())
            mS.privateData = mPendingPrivate;
        mS.turns.emplace_back();
        mTurnClosed = false;
        Turn& t = mS.turns.back();
        if (mS.turns.size() > 1)
            t.privateData = mPendingPrivate;
        mPendingPrivate.clear();
        t.firstLine = i;
        t.commandsBefore = mCommandsSinceTurn;
        mCommandsSinceTurn = false;
        std::string value;
        if (between(text, "Current Context[", "]", value))
            t.context = toInt(value);
        mFinalText = false;
        mAction = ParseState();
    }

    struct ParseState {
        bool open = false;
        size_t line = 0;
        int responseType = 1;
        Json::Value action;
        bool actionTyped = false;
        bool raw = false;
    };

    void finishParse(Turn& t)
    {
        if (!mAction.open)
            return;
        if (mAction.actionTyped) {
            Json::Value& a = mAction.action;
            a["type"] = "action";
            if (mAction.responseType != 1)
                a["responseType"] = mAction.responseType;
            if (!mAction.raw)
                t.notes.push_back("an action's raw JSON is not in the log; empty text taken");
            addEvent(mAction.line, a);
        } else if (mAction.responseType != 1) {
            Json::Value a(Json::objectValue);
            a["type"] = "action";
            a["responseType"] = mAction.responseType;
            t.notes.push_back("the server answered with response type " + std::to_string(mAction.responseType) +
                              ", which the plug-in does not parse; its content is unknown");
            addEvent(mAction.line, a);
        } else {
            t.notes.push_back("the parser took an answer of the server and did nothing the log shows; left out");
        }
        mAction = ParseState();
    }

    void turnLine(size_t i, const LogLine& l, Turn& t)
    {
        const std::string& fn = l.function;
        const std::string& text = l.text;
        std::string a, b, c;
        if (fn == "processAudio" && (startsWith(text, "epd[") || text == "buffer is NULL" || text == "bufferlen is 0")) {
            ++t.chunks;
        } else if (fn == "onBeginningOfSpeech") {
            if (t.beginAfter < 0)
                t.beginAfter = t.chunks;
        } else if (fn == "onEndOfSpeech") {
            if (t.endAfter < 0)
                t.endAfter = t.chunks;
        } else if (fn == "onPartialResult" && between(text, "Partial asr_result[", "]", a)) {
            finishParse(t);
            Json::Value e;
            e["type"] = "partial";
            e["text"] = a;
            addEvent(i, e);
            callback(t, i, "asr", 1, a);
        } else if (fn == "onASRResult" && asrFields(text, a, b, c)) {
            finishParse(t);
            Json::Value e;
            e["type"] = "asr";
            e["text"] = a;
            e["engineType"] = b;
            e["confidence"] = toInt(c);
            addEvent(i, e);
            if (!a.empty())
                mFinalText = true;
            if (b != "EMBEDDED")
                callback(t, i, "asr", 0, a);
        } else if (fn == "onNLUResult" && startsWith(text, "nlu_result[") && asrFields("asr_" + text.substr(4), a, b, c)) {
            finishParse(t);
            mNlu = Json::Value(Json::objectValue);
            mNlu["type"] = "nlu";
            mNlu["text"] = a;
            mNlu["engineType"] = b;
            mNlu["confidence"] = toInt(c);
            mNluLine = i;
            mNluOpen = true;
        } else if (fn == "onNLUResult" && startsWith(text, "ttsBuffer[") && mNluOpen) {
            std::string pointer, length, last;
            between(text, "ttsBuffer[", "], ttsBufferLen[", pointer);
            between(text, "ttsBufferLen[", "], isTTSLast[", length);
            between(text, "isTTSLast[", "]", last);
            const int bytes = toInt(length);
            if (bytes > 0 && pointer != "(nil)" && pointer != "0x0" && pointer != "0")
                mNlu["speechBytes"] = bytes;
            mNlu["last"] = last == "1";
            addEvent(mNluLine, mNlu);
            mNluOpen = false;
        } else if (fn == "onError" && between(text, "errorCode[", "], errorMsg[", a) && between(text, "errorMsg[", "]", b)) {
            finishParse(t);
            Json::Value e;
            e["type"] = "error";
            e["code"] = toInt(a);
            e["message"] = b;
            addEvent(i, e);
            if (!mFinalText) {
                Callback cb;
                cb.json["kind"] = "error";
                cb.json["code"] = -1048628;
                cb.json["message"] = b;
                cb.line = i;
                t.callbacks.push_back(cb);
            }
        } else if (fn == "onError" && text == "Error callback is not registered") {
            if (!t.callbacks.empty() && t.callbacks.back().json["kind"] == "error")
                t.callbacks.pop_back();
        } else if (fn == "onParseAction" && startsWith(text, "engine Type[")) {
            finishParse(t);
            mAction.open = true;
            mAction.line = i;
            if (between(text, "response Type[", "], isLast[", a))
                mAction.responseType = toInt(a);
        } else if (fn == "getDriverResponse" && l.source == "DaCustomizedDriverResponseRetriever.cpp") {
            driverLine(i, text, t);
        } else if (fn == "executeOVAction" && mAction.open) {
            if (between(text, "actionType[", "]", a)) {
                mAction.action["actionType"] = a;
                mAction.actionTyped = true;
            } else if (startsWith(text, "agentName[")) {
                actionNames(text, mAction.action);
            }
        } else if ((fn == "executeParserAction" || fn == "delayingParserActionForServerTts") && mAction.open &&
                   mAction.actionTyped && !mAction.raw && startsWith(text, "NLU result[")) {
            std::string raw;
            if (between(text, "NLU result[", "] agentName[", raw)) {
                mAction.action["rawJson"] = raw;
                mAction.raw = true;
            }
            finishParse(t);
        } else if (fn == "sendDriverResponse") {
            ++t.driverTurns;
        }
    }

    void driverLine(size_t i, const std::string& text, Turn& t)
    {
        std::string value;
        if (between(text, "driverRequest[", "]", value)) {
            DriverExchange d;
            d.request = value;
            d.line = i;
            t.driver.push_back(d);
            Json::Value request;
            Json::Value e;
            e["type"] = "driverRequest";
            if (parseJson(value, request) && request.isObject()) {
                e["request"] = request;
            } else {
                e["request"] = Json::Value(Json::objectValue);
                t.notes.push_back("a driver request that is no JSON object (" + value.substr(0, 60) +
                                  "): an empty object sent instead");
            }
            if (mAction.open && mAction.responseType != 1)
                e["responseType"] = mAction.responseType;
            mAction = ParseState();
            addEvent(i, e);
        } else if (between(text, "driverResponse[", "]", value) && !t.driver.empty() && !t.driver.back().answered) {
            t.driver.back().response = value;
            t.driver.back().answered = true;
        }
    }

    static void actionNames(const std::string& text, Json::Value& action)
    {
        // agentName[%s], commandName[%s], actionName[%s], spokenText[%s]
        std::string agent, command, name, spoken;
        const size_t c = text.find("], commandName[");
        const size_t n = text.find("], actionName[", c == std::string::npos ? 0 : c);
        const size_t s = text.rfind("], spokenText[");
        if (c == std::string::npos || n == std::string::npos || s == std::string::npos || s < n || text.back() != ']')
            return;
        action["agent"] = text.substr(10, c - 10);
        action["commandName"] = text.substr(c + 15, n - c - 15);
        action["actionName"] = text.substr(n + 14, s - n - 14);
        action["spokenText"] = text.substr(s + 14, text.size() - s - 15);
    }

    // "asr_result[%s], engineType[%s], confidence[%d]" (and the NLU line after its "nlu_").
    static bool asrFields(const std::string& text, std::string& result, std::string& engine, std::string& confidence)
    {
        const size_t e = text.rfind("], engineType[");
        const size_t c = text.rfind("], confidence[");
        if (!startsWith(text, "asr_result[") || e == std::string::npos || c == std::string::npos || c < e ||
            text.back() != ']')
            return false;
        result = text.substr(11, e - 11);
        engine = text.substr(e + 14, c - e - 14);
        confidence = text.substr(c + 14, text.size() - c - 15);
        return true;
    }

    void callback(Turn& t, size_t i, const char* kind, int event, const std::string& text)
    {
        Callback cb;
        cb.json["kind"] = kind;
        cb.json["event"] = event;
        cb.json["text"] = text;
        cb.line = i;
        t.callbacks.push_back(cb);
    }

    Session& mS;
    std::vector<std::string> mLanguages;
    std::vector<Command> mCommands;
    Command mPending;
    bool mPendingOpen = false;
    bool mCommandOpen = false;
    bool mCommandsSinceTurn = false;
    bool mListNoted = false;
    int mCommandLists = 0;
    std::vector<Json::Value> mPendingPrivate;
    bool mPrivateOpen = false;
    bool mPrivateUnknown = false;
    bool mTurnClosed = true;
    size_t mCurrent = 0;
    bool mFinalText = false;
    Json::Value mNlu;
    size_t mNluLine = 0;
    bool mNluOpen = false;
    ParseState mAction;
    bool mLastTimed = false;
    long long mLastMs = 0;
    LogLine::Clock mLastClock = LogLine::None;
};

}  // namespace

void readSession(Session& s)
{
    SessionReader(s).read();
}

}  // namespace marlcase
