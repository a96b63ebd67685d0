#include "Scenario.h"

#include "voice/Voice.h"

#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace fs = std::filesystem;

namespace sim
{

namespace
{

enum class Kind { Text, TextOrNull, Int, UInt, Bool, Object, Array, Json, File };

struct Member {
    const char* name;
    Kind kind;
    bool required;
};

const char* kindName(Kind kind)
{
    switch (kind) {
        case Kind::Text:
            return "text";
        case Kind::TextOrNull:
            return "text or null";
        case Kind::Int:
            return "an integer";
        case Kind::UInt:
            return "a non-negative integer";
        case Kind::Bool:
            return "true or false";
        case Kind::Object:
            return "an object";
        case Kind::Array:
            return "a list";
        case Kind::Json:
            return "text, an object or a list";
        case Kind::File:
            return "the path of a file";
    }
    return "?";
}

bool fits(const Json::Value& value, Kind kind)
{
    switch (kind) {
        case Kind::Text:
        case Kind::File:
            return value.isString();
        case Kind::TextOrNull:
            return value.isString() || value.isNull();
        case Kind::Int:
            return value.isInt();
        case Kind::UInt:
            return value.isInt() && value.asInt() >= 0;
        case Kind::Bool:
            return value.isBool();
        case Kind::Object:
            return value.isObject();
        case Kind::Array:
            return value.isArray();
        case Kind::Json:
            return value.isString() || value.isObject() || value.isArray();
    }
    return false;
}

// The server events of a turn and their members, as the speech stand-in
// takes them.
const std::map<std::string, std::vector<Member>>& eventMembers()
{
    static const std::map<std::string, std::vector<Member>> table = {
        {"partial", {{"text", Kind::Text, true}}},
        {"asr",
         {{"text", Kind::Text, true},
          {"engineType", Kind::Text, false},
          {"confidence", Kind::Int, false}}},
        {"nlu",
         {{"text", Kind::Text, true},
          {"engineType", Kind::Text, false},
          {"confidence", Kind::Int, false},
          {"speechFile", Kind::File, false},
          {"speechBytes", Kind::UInt, false},
          {"pieces", Kind::UInt, false},
          {"last", Kind::Bool, false}}},
        {"action",
         {{"agent", Kind::Text, false},
          {"actionType", Kind::Text, false},
          {"commandName", Kind::Text, false},
          {"actionName", Kind::Text, false},
          {"spokenText", Kind::Text, false},
          {"rawJson", Kind::Json, false},
          {"responseType", Kind::Int, false}}},
        {"driverRequest", {{"request", Kind::Object, true}, {"responseType", Kind::Int, false}}},
        {"error", {{"code", Kind::Int, true}, {"message", Kind::Text, false}}},
        {"wait", {{"ms", Kind::UInt, true}}},
    };
    return table;
}

class Checker
{
public:
    explicit Checker(std::string dir) : mDir(std::move(dir)) {}

    bool fail(const std::string& path, const std::string& message)
    {
        if (mError.empty())
            mError = path + ": " + message;
        return false;
    }
    const std::string& error() const { return mError; }

    // `value` is an object whose members are all among `members`, each of its kind,
    // and the required ones present.
    bool object(const Json::Value& value, const std::string& path,
                const std::vector<Member>& members)
    {
        if (!value.isObject())
            return fail(path, "must be an object");
        for (const auto& name : value.getMemberNames()) {
            const Member* member = find(members, name);
            const std::string at = join(path, name);
            if (!member) {
                std::string known;
                for (const auto& m : members)
                    known += std::string(known.empty() ? "" : ", ") + m.name;
                return fail(at, "unknown member (known here: " + known + ")");
            }
            if (!fits(value[name], member->kind))
                return fail(at, std::string("must be ") + kindName(member->kind));
            if (member->kind == Kind::File && !isFile(value[name].asString()))
                return fail(at, "no such file: " + resolve(value[name].asString()));
        }
        for (const auto& member : members)
            if (member.required && !value.isMember(member.name))
                return fail(join(path, member.name), "missing");
        return true;
    }

    std::string resolve(const std::string& file) const
    {
        if (!file.empty() && file[0] == '/')
            return file;
        return (fs::path(mDir) / file).lexically_normal().string();
    }

    bool isFile(const std::string& file) const
    {
        std::error_code ec;
        return fs::is_regular_file(resolve(file), ec);
    }

    static std::string join(const std::string& path, const std::string& name)
    {
        return path.empty() ? name : path + "." + name;
    }
    static std::string index(const std::string& path, Json::ArrayIndex i)
    {
        return path + "[" + std::to_string(i) + "]";
    }

private:
    static const Member* find(const std::vector<Member>& members, const std::string& name)
    {
        for (const auto& member : members)
            if (name == member.name)
                return &member;
        return nullptr;
    }

    std::string mDir;
    std::string mError;
};

OptText optText(const Json::Value& value)
{
    OptText text;
    if (value.isString()) {
        text.set = true;
        text.text = value.asString();
    }
    return text;
}

bool privateDataList(Checker& check, const Json::Value& list, const std::string& path,
                     std::vector<PrivateData>& out)
{
    if (!list.isArray())
        return check.fail(path, "must be a list of {\"key\", \"data\"} objects");
    for (Json::ArrayIndex i = 0; i < list.size(); ++i) {
        const std::string at = Checker::index(path, i);
        if (!check.object(list[i], at,
                          {{"key", Kind::TextOrNull, true}, {"data", Kind::TextOrNull, true}}))
            return false;
        out.push_back({optText(list[i]["key"]), optText(list[i]["data"])});
    }
    return true;
}

bool serverEvents(Checker& check, const Json::Value& list, const std::string& path,
                  Json::Value& out)
{
    if (!list.isArray())
        return check.fail(path, "must be a list of event objects");
    out = Json::Value(Json::arrayValue);
    for (Json::ArrayIndex i = 0; i < list.size(); ++i) {
        const std::string at = Checker::index(path, i);
        const Json::Value& event = list[i];
        if (!event.isObject())
            return check.fail(at, "must be an object with \"type\"");
        if (!event["type"].isString())
            return check.fail(Checker::join(at, "type"), "missing or not text");
        const auto& table = eventMembers();
        const auto found = table.find(event["type"].asString());
        if (found == table.end()) {
            std::string known;
            for (const auto& entry : table)
                known += std::string(known.empty() ? "" : ", ") + entry.first;
            return check.fail(
                Checker::join(at, "type"),
                "unknown event \"" + event["type"].asString() + "\" (known: " + known + ")");
        }
        std::vector<Member> members = found->second;
        members.push_back({"type", Kind::Text, true});
        if (!check.object(event, at, members))
            return false;
        Json::Value copy = event;
        if (copy.isMember("speechFile")) {
            if (copy.isMember("speechBytes"))
                return check.fail(Checker::join(at, "speechBytes"),
                                  "give either \"speechFile\" or \"speechBytes\", not both");
            copy["speechFile"] = check.resolve(copy["speechFile"].asString());
        }
        out.append(copy);
    }
    return true;
}

bool turnAudio(Checker& check, const Json::Value& audio, const std::string& path, Turn& turn)
{
    if (audio.isString()) {
        const std::string file = check.resolve(audio.asString());
        if (!check.isFile(audio.asString()))
            return check.fail(path, "no such file: " + file);
        std::string error;
        if (!readWav(file, turn.audio, error))
            return check.fail(path, error);
        turn.audioSource = fs::path(file).filename().string();
        return true;
    }
    if (audio.isObject() && audio.isMember("say")) {
        if (!check.object(audio, path,
                          {{"say", Kind::Text, true}, {"voice", Kind::Text, false}, {"rate", Kind::UInt, false}}))
            return false;
        std::string error;
        if (!sayAudio(audio["say"].asString(), audio.get("voice", "en-us").asString(),
                      audio.get("rate", 175).asInt(), turn.audio, turn.audioSource, error))
            return check.fail(path, error);
        turn.wordsEndSample = turn.audio.size() - 700 * 16;
        return true;
    }
    if (audio.isObject()) {
        if (!check.object(audio, path,
                          {{"speechMs", Kind::UInt, true}, {"silenceMs", Kind::UInt, false}}))
            return false;
        const unsigned speech = audio["speechMs"].asUInt();
        const unsigned silence = audio["silenceMs"].asUInt();
        turn.audio = synthesize(speech, silence);
        turn.wordsEndSample = size_t(speech) * 16;
        turn.audioSource =
            "tone " + std::to_string(speech) + " ms, silence " + std::to_string(silence) + " ms";
        return true;
    }
    return check.fail(path, "must be a WAV file name, {\"speechMs\", \"silenceMs\"} or {\"say\", \"voice\", \"rate\"}");
}

bool parseText(const std::string& text, Json::Value& out, std::string& error)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    builder["rejectDupKeys"] = true;
    std::istringstream in(text);
    std::string errors;
    if (!Json::parseFromStream(builder, in, &out, &errors)) {
        error = errors;
        while (!error.empty() && (error.back() == '\n' || error.back() == ' '))
            error.pop_back();
        return false;
    }
    return true;
}

}  // namespace

bool readWav(const std::string& file, std::vector<int16_t>& samples, std::string& error)
{
    const std::string name = fs::path(file).filename().string();
    SF_INFO info = {};
    SNDFILE* sound = sf_open(file.c_str(), SFM_READ, &info);
    if (!sound) {
        error = name + " is not a sound file that can be read: " + sf_strerror(nullptr);
        return false;
    }
    const int major = info.format & SF_FORMAT_TYPEMASK;
    const int minor = info.format & SF_FORMAT_SUBMASK;
    const bool pcm16 = minor == SF_FORMAT_PCM_16;
    if (major != SF_FORMAT_WAV || !pcm16 || info.channels != 1 || info.samplerate != 16000) {
        SF_FORMAT_INFO what = {};
        what.format = minor;
        sf_command(nullptr, SFC_GET_FORMAT_INFO, &what, sizeof what);
        const int bits = minor == SF_FORMAT_PCM_16 ? 16 : minor == SF_FORMAT_PCM_24 ? 24
                         : minor == SF_FORMAT_PCM_32 ? 32 : minor == SF_FORMAT_PCM_U8 || minor == SF_FORMAT_PCM_S8 ? 8 : 0;
        error = name + (major == SF_FORMAT_WAV ? " holds " : " is no WAV file; it holds ") +
                (bits ? std::string("PCM") : std::string(what.name ? what.name : "an unknown encoding")) + ", " +
                std::to_string(info.samplerate) + " Hz, " + std::to_string(info.channels) + " channel(s)" +
                (bits ? ", " + std::to_string(bits) + " bit" : std::string()) +
                "; the engine takes 16000 Hz mono 16-bit PCM";
        sf_close(sound);
        return false;
    }
    samples.resize(static_cast<size_t>(info.frames));
    const sf_count_t got = sf_readf_short(sound, samples.data(), info.frames);
    sf_close(sound);
    if (got < 0) {
        error = "cannot read the samples of " + name;
        return false;
    }
    samples.resize(static_cast<size_t>(got));
    return true;
}

std::vector<int16_t> synthesize(unsigned speechMs, unsigned silenceMs)
{
    const size_t speech = size_t(speechMs) * 16;
    std::vector<int16_t> samples(speech + size_t(silenceMs) * 16, 0);
    const double step = 2.0 * M_PI * 440.0 / 16000.0;
    for (size_t i = 0; i < speech; ++i)
        samples[i] = static_cast<int16_t>(std::lround(12000.0 * std::sin(step * double(i))));
    return samples;
}

bool sayAudio(const std::string& text, const std::string& voiceName, int wordsPerMinute, std::vector<int16_t>& samples,
              std::string& source, std::string& error)
{
    voice::SpeechOptions options;
    options.voice = voiceName;
    options.wordsPerMinute = wordsPerMinute;
    std::vector<int16_t> speech;
    if (!voice::synthesize(text, options, speech, error))
        return false;
    samples.assign(300 * 16, 0);
    samples.insert(samples.end(), speech.begin(), speech.end());
    samples.insert(samples.end(), 700 * 16, 0);
    Json::Value said(text);
    Json::StreamWriterBuilder builder;
    builder["emitUTF8"] = true;
    source = "speech " + Json::writeString(builder, said) + " (" + voiceName + ", " + std::to_string(wordsPerMinute) +
             " words a minute, " + std::to_string(speech.size() / 16) + " ms)";
    return true;
}

bool spokenTurn(const std::string& text, const std::string& voiceName, int wordsPerMinute, Turn& turn,
                std::string& error)
{
    turn = Turn();
    turn.listen = true;
    turn.server = Json::Value(Json::arrayValue);
    if (!sayAudio(text, voiceName, wordsPerMinute, turn.audio, turn.audioSource, error))
        return false;
    turn.wordsEndSample = turn.audio.size() - 700 * 16;
    return true;
}

bool recordedTurn(const std::string& file, Turn& turn, std::string& error)
{
    turn = Turn();
    turn.listen = true;
    turn.server = Json::Value(Json::arrayValue);
    if (!readWav(file, turn.audio, error))
        return false;
    turn.audioSource = fs::path(file).filename().string();
    return true;
}

const char* defaultSpokenScenario()
{
    return R"({
  "engine": {
    "language": "en_US",
    "commands": [
      {"id": 1, "format": 0, "command": "show recipes"},
      {"id": 2, "format": 0, "command": "open the fridge camera", "app": "LAykghKXQw.FoodMinder"},
      {"id": 3, "format": 0, "command": "show the shopping list", "app": "UNduJ5y0UH.ShoppingList"},
      {"id": 4, "format": 0, "command": "bluetooth off"},
      {"id": 5, "format": 3, "command": "set the fridge to"},
      {"id": 10, "type": 2, "format": 5, "command": "#org.tizen.Timer", "app": "org.tizen.fridge-timer"},
      {"id": 11, "type": 2, "format": 5, "command": "#org.tizen.Music App Control", "app": "org.tizen.music-control"},
      {"id": 12, "type": 2, "format": 5, "command": "#org.tizen.Commerce", "app": "org.tizen.e-commerce-card-service"},
      {"id": 13, "type": 2, "format": 5, "command": "#org.tizen.View Inside App Control", "app": "LAykghKXQw.FoodMinder"},
      {"id": 14, "type": 2, "format": 5, "command": "#org.tizen.Weather", "app": "Snr7si7XV1.AccuWeather"},
      {"id": 15, "type": 2, "format": 5, "command": "#org.tizen.Launch Apps", "app": "org.tizen.app-launcher"},
      {"id": 16, "type": 2, "format": 5, "command": "#org.tizen.ShoppingList", "app": "UNduJ5y0UH.ShoppingList"}
    ]
  }
})";
}

bool parseDaemonProfile(const std::string& name, DaemonProfile& profile)
{
    if (name == "gentle")
        profile = DaemonProfile::Gentle;
    else if (name == "platform")
        profile = DaemonProfile::Platform;
    else
        return false;
    return true;
}

const char* daemonProfileName(DaemonProfile profile)
{
    return profile == DaemonProfile::Platform ? "platform" : "gentle";
}

bool loadScenario(const std::string& path, Scenario& out, std::string& error)
{
    std::ifstream in(path);
    if (!in) {
        error = path + ": cannot read the file";
        return false;
    }
    std::stringstream text;
    text << in.rdbuf();
    return parseScenario(text.str(), path, out, error);
}

bool parseScenario(const std::string& text, const std::string& path, Scenario& out, std::string& error)
{
    Json::Value root;
    std::string parseError;
    if (!parseText(text, root, parseError)) {
        error = path + ": not valid JSON: " + parseError;
        return false;
    }

    out = Scenario();
    out.path = path;
    out.dir = fs::absolute(path).parent_path().lexically_normal().string();
    Checker check(out.dir);
    auto done = [&](bool ok) {
        if (!ok)
            error = path + ": " + check.error();
        return ok;
    };

    if (!check.object(root, "",
                      {{"device", Kind::Object, false},
                       {"engine", Kind::Object, true},
                       {"turns", Kind::Array, false},
                       {"compare", Kind::Object, false},
                       {"timeout", Kind::UInt, false},
                       {"daemon", Kind::Text, false},
                       {"recognitionMode", Kind::Text, false},
                       {"clock", Kind::Text, false},
                       // A field case's notes and what marl-case keeps for itself.
                       {"notes", Kind::Array, false},
                       {"case", Kind::Object, false}}))
        return done(false);
    if (root.isMember("daemon")) {
        out.daemonGiven = true;
        if (!parseDaemonProfile(root["daemon"].asString(), out.daemon))
            return done(check.fail("daemon", "must be \"gentle\" or \"platform\""));
    }
    if (root.isMember("recognitionMode")) {
        const std::string mode = root["recognitionMode"].asString();
        if (mode != "restartAfterReject" && mode != "default")
            return done(check.fail("recognitionMode", "must be \"default\" or \"restartAfterReject\""));
        out.restartAfterReject = mode == "restartAfterReject";
    }
    out.clock = root["clock"].asString();
    out.device = root["device"];
    out.timeout = root.get("timeout", 0).asUInt();
    if (root.isMember("timeout") && out.timeout == 0)
        return done(check.fail("timeout", "must be a number of seconds above 0"));
    if (root.isMember("compare")) {
        const Json::Value& compare = root["compare"];
        if (!check.object(compare, "compare", {{"deviceData", Kind::Array, false}}))
            return done(false);
        const Json::Value& names = compare["deviceData"];
        for (Json::ArrayIndex i = 0; i < names.size(); ++i) {
            if (!names[i].isString())
                return done(check.fail(Checker::index("compare.deviceData", i), "must be text"));
            out.compareDeviceData.push_back(names[i].asString());
        }
    }

    const Json::Value& engine = root["engine"];
    if (!check.object(engine, "engine",
                      {{"domain", Kind::TextOrNull, false},
                       {"language", Kind::Text, true},
                       {"commands", Kind::Array, false},
                       {"privateData", Kind::Array, false}}))
        return done(false);
    out.domain = optText(engine["domain"]);
    out.language = engine["language"].asString();

    const Json::Value& commands = engine["commands"];
    for (Json::ArrayIndex i = 0; i < commands.size(); ++i) {
        const std::string at = Checker::index("engine.commands", i);
        const Json::Value& c = commands[i];
        if (!check.object(c, at,
                          {{"id", Kind::Int, true},
                           {"type", Kind::Int, false},
                           {"format", Kind::Int, true},
                           {"command", Kind::Text, true},
                           {"param", Kind::TextOrNull, false},
                           {"domain", Kind::Int, false},
                           {"app", Kind::Text, false}}))
            return done(false);
        Command command;
        command.id = c["id"].asInt();
        command.type = c.isMember("type") ? c["type"].asInt() : 1;
        command.format = c["format"].asInt();
        command.command = c["command"].asString();
        command.param = optText(c["param"]);
        command.domain = c["domain"].asInt();
        command.app = c["app"].asString();
        out.commands.push_back(command);
    }
    if (engine.isMember("privateData") &&
        !privateDataList(check, engine["privateData"], "engine.privateData", out.privateData))
        return done(false);

    const Json::Value& turns = root["turns"];
    for (Json::ArrayIndex i = 0; i < turns.size(); ++i) {
        const std::string at = Checker::index("turns", i);
        const Json::Value& t = turns[i];
        if (!t.isObject())
            return done(check.fail(at, "must be an object"));
        for (const auto& name : t.getMemberNames())
            if (name != "audio" && name != "end" && name != "server" && name != "privateData" &&
                name != "device" && name != "cancelAfterMs" && name != "reload")
                return done(check.fail(Checker::join(at, name),
                                       "unknown member (known here: audio, end, server, privateData, device, "
                                       "cancelAfterMs, reload)"));
        Turn turn;
        if (t.isMember("cancelAfterMs")) {
            if (!t["cancelAfterMs"].isUInt())
                return done(check.fail(Checker::join(at, "cancelAfterMs"), "must be a whole number of milliseconds"));
            turn.cancelAfterMs = t["cancelAfterMs"].asUInt();
        }
        if (t.isMember("reload")) {
            if (!t["reload"].isBool())
                return done(check.fail(Checker::join(at, "reload"), "must be true or false"));
            turn.reload = t["reload"].asBool();
        }
        if (t.isMember("audio") && !turnAudio(check, t["audio"], Checker::join(at, "audio"), turn))
            return done(false);
        if (t.isMember("end")) {
            const Json::Value& end = t["end"];
            if (!end.isString() || (end.asString() != "stop" && end.asString() != "cancel"))
                return done(check.fail(Checker::join(at, "end"), "must be \"stop\" or \"cancel\""));
            turn.cancel = end.asString() == "cancel";
        }
        turn.server = Json::Value(Json::arrayValue);
        turn.listen = !t.isMember("server");
        if (t.isMember("server") &&
            !serverEvents(check, t["server"], Checker::join(at, "server"), turn.server))
            return done(false);
        if (t.isMember("privateData") &&
            !privateDataList(check, t["privateData"], Checker::join(at, "privateData"),
                             turn.privateData))
            return done(false);
        if (t.isMember("device")) {
            if (!t["device"].isObject())
                return done(check.fail(Checker::join(at, "device"), "must be an object"));
            turn.device = t["device"];
        }
        out.turns.push_back(std::move(turn));
    }
    return true;
}

}  // namespace sim
