#include "Script.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

namespace standin {
namespace {

const int kToneRate = 24000;
const double kToneHz = 440.0;
const double kToneAmplitude = 1000.0;
const unsigned kMaxSpeechBytes = 64u << 20;

// Checks the members of one event; the first problem is kept in `error`.
class Checker {
public:
    Checker(const Json::Value& event, size_t index, std::string& error)
        : mEvent(event), mIndex(index), mError(error)
    {
    }

    bool fail(const std::string& why)
    {
        std::ostringstream out;
        out << "event " << mIndex;
        if (mEvent.isObject() && mEvent["type"].isString())
            out << " (" << mEvent["type"].asString() << ")";
        out << ": " << why;
        mError = out.str();
        return false;
    }

    bool has(const char* key) const { return mEvent.isMember(key); }

    bool string(const char* key, bool required)
    {
        if (!has(key))
            return !required || fail(std::string("\"") + key + "\" is missing");
        return mEvent[key].isString() || fail(std::string("\"") + key + "\" must be a string");
    }

    bool integer(const char* key, bool required, bool nonNegative)
    {
        if (!has(key))
            return !required || fail(std::string("\"") + key + "\" is missing");
        const Json::Value& v = mEvent[key];
        if (!v.isInt() || (nonNegative && v.asInt() < 0))
            return fail(std::string("\"") + key + "\" must be " +
                        (nonNegative ? "a non-negative integer" : "an integer"));
        return true;
    }

    bool boolean(const char* key)
    {
        return !has(key) || mEvent[key].isBool() || fail(std::string("\"") + key + "\" must be true or false");
    }

    bool object(const char* key)
    {
        if (!has(key))
            return fail(std::string("\"") + key + "\" is missing");
        return mEvent[key].isObject() || fail(std::string("\"") + key + "\" must be an object");
    }

private:
    const Json::Value& mEvent;
    size_t mIndex;
    std::string& mError;
};

bool readSpeech(Checker& check, const Json::Value& event, std::string& speech)
{
    if (event.isMember("speechFile") && event.isMember("speechBytes"))
        return check.fail("give \"speechFile\" or \"speechBytes\", not both");
    if (event.isMember("speechFile")) {
        if (!check.string("speechFile", true))
            return false;
        const std::string path = event["speechFile"].asString();
        std::ifstream in(path, std::ios::binary);
        if (!in)
            return check.fail("cannot read speech file \"" + path + "\"");
        speech.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (in.bad())
            return check.fail("cannot read speech file \"" + path + "\"");
        return true;
    }
    if (event.isMember("speechBytes")) {
        if (!check.integer("speechBytes", true, true))
            return false;
        if (event["speechBytes"].asUInt() > kMaxSpeechBytes)
            return check.fail("\"speechBytes\" must be at most " + std::to_string(kMaxSpeechBytes));
        speech = quietTone(event["speechBytes"].asUInt());
    }
    return true;
}

bool checkEvent(const Json::Value& event, size_t index, ScriptEvent& out, std::string& error)
{
    Checker check(event, index, error);
    if (!event.isObject())
        return check.fail("an event must be an object");
    if (!event["type"].isString())
        return check.fail("\"type\" must be a string");
    out.json = event;
    out.type = event["type"].asString();
    const std::string& type = out.type;
    if (type == "partial")
        return check.string("text", true);
    if (type == "asr")
        return check.string("text", true) && check.string("engineType", false) &&
               check.integer("confidence", false, false);
    if (type == "nlu")
        return check.string("text", true) && check.string("engineType", false) &&
               check.integer("confidence", false, false) && check.integer("pieces", false, true) &&
               check.boolean("last") && readSpeech(check, event, out.speech);
    if (type == "action") {
        for (const char* key : {"agent", "actionType", "commandName", "actionName", "spokenText"})
            if (!check.string(key, false))
                return false;
        if (event.isMember("rawJson") && !event["rawJson"].isString() && !event["rawJson"].isObject() &&
            !event["rawJson"].isArray())
            return check.fail("\"rawJson\" must be a string, an object or an array");
        return check.integer("responseType", false, false);
    }
    if (type == "driverRequest")
        return check.object("request") && check.integer("responseType", false, false);
    if (type == "error")
        return check.integer("code", true, false) && check.string("message", false);
    if (type == "wait")
        return check.integer("ms", true, true);
    return check.fail("unknown type \"" + type +
                      "\" (partial, asr, nlu, action, driverRequest, error or wait)");
}

}  // namespace

std::string quietTone(size_t bytes)
{
    std::string out;
    out.reserve(bytes + 1);
    for (size_t i = 0; out.size() < bytes; ++i) {
        const double phase = 2.0 * M_PI * kToneHz * static_cast<double>(i) / kToneRate;
        const int sample = static_cast<int>(std::lround(kToneAmplitude * std::sin(phase)));
        const unsigned value = static_cast<unsigned>(sample) & 0xffffu;
        out.push_back(static_cast<char>(value & 0xff));
        out.push_back(static_cast<char>(value >> 8));
    }
    out.resize(bytes);
    return out;
}

bool parseScript(const char* text, Script& out, std::string& error)
{
    out.clear();
    if (!text) {
        error = "no script text";
        return false;
    }
    Json::CharReaderBuilder builder;
    builder["failIfExtra"] = true;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    std::string parseErrors;
    const std::string source(text);
    if (!reader->parse(source.data(), source.data() + source.size(), &root, &parseErrors)) {
        // JsonCpp's report spans lines ("* Line 1, Column 4\n  Reason\n"): make it one.
        std::string reason;
        std::istringstream lines(parseErrors);
        for (std::string line; std::getline(lines, line);) {
            const size_t start = line.find_first_not_of("* ");
            if (start != std::string::npos)
                reason += (reason.empty() ? "" : ": ") + line.substr(start);
        }
        error = "not JSON: " + reason;
        return false;
    }
    if (!root.isArray()) {
        error = "the script must be a JSON array of events";
        return false;
    }
    Script script;
    for (Json::ArrayIndex i = 0; i < root.size(); ++i) {
        ScriptEvent event;
        if (!checkEvent(root[i], i, event, error))
            return false;
        script.push_back(std::move(event));
    }
    out = std::move(script);
    return true;
}

}  // namespace standin
