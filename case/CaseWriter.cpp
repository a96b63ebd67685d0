#include "CaseWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace fs = std::filesystem;

namespace marlcase
{

namespace
{

// The speech stand-in hears speech after 60 ms of loud audio and its end
// after 300 ms of quiet, at 16 kHz.
const int kBeginSamples = 960;
const int kEndSamples = 4800;
// Time stamps are within this many seconds of the time they were read.
const long long kStampWindow = 20LL * 366 * 86400;

int chunksFor(int samples, int chunk)
{
    return (samples + chunk - 1) / chunk;
}

// A tone and silence that the stand-in hears as the log says: as many
// chunks, the end of speech after as many of them.
Json::Value audioFor(const Turn& t, int chunk, std::vector<std::string>& notes, const std::string& where)
{
    Json::Value audio(Json::objectValue);
    const long long total = static_cast<long long>(t.chunks) * chunk;
    long long tone;
    const int begin = chunksFor(kBeginSamples, chunk);
    if (t.beginAfter < 0) {
        tone = 0;
    } else if (t.endAfter < 0) {
        tone = total;
    } else {
        tone = static_cast<long long>(t.endAfter - chunksFor(kEndSamples, chunk)) * chunk;
        if (tone < static_cast<long long>(begin) * chunk) {
            tone = static_cast<long long>(begin) * chunk;
            notes.push_back(where + ": the end of speech came after " + std::to_string(t.endAfter) +
                            " chunk(s), sooner than a tone can give it; the tone is " + std::to_string(tone / 16) + " ms");
        }
    }
    if (tone > total)
        tone = total;
    audio["speechMs"] = static_cast<Json::UInt>(tone / 16);
    audio["silenceMs"] = static_cast<Json::UInt>((total - tone) / 16);
    std::string heard = t.beginAfter < 0 ? "no speech heard"
                                         : "speech begun after chunk " + std::to_string(t.beginAfter) +
                                               (t.endAfter < 0 ? ", no end heard" : ", ended after chunk " + std::to_string(t.endAfter));
    notes.push_back(where + ": audio approximate: " + std::to_string(t.chunks) + " chunk(s) of " +
                    std::to_string(chunk * 2) + " bytes, " + heard + " in the log; replayed as a 440 Hz tone of " +
                    std::to_string(tone / 16) + " ms and " + std::to_string((total - tone) / 16) + " ms of silence");
    if (t.beginAfter >= 0 && t.beginAfter != begin)
        notes.push_back(where + ": the tone's speech begins after chunk " + std::to_string(begin) + ", not " +
                        std::to_string(t.beginAfter));
    return audio;
}

// How long the turn ran after its last chunk, in the log's time.
long long settleMs(const Session& s, const Turn& t)
{
    long long from = -1, to = -1;
    for (size_t i = t.firstLine; i < t.endLine && i < s.lines.size(); ++i) {
        const LogLine& l = *s.lines[i];
        if (l.clock == LogLine::None)
            return 0;
        if (l.function == "processAudio" || from < 0)
            from = l.ms;
        to = l.ms;
    }
    return from < 0 ? 0 : to - from;
}

bool digitsValue(const Json::Value& v, long long& out)
{
    if (v.isIntegral()) {
        out = v.asInt64();
        return true;
    }
    if (!v.isString())
        return false;
    const std::string s = v.asString();
    if (s.empty() || s.size() > 11 || s.find_first_not_of("0123456789") != std::string::npos)
        return false;
    out = std::atoll(s.c_str());
    return true;
}

}  // namespace

bool epochSeconds(const LogLine& line, long long nowEpochSeconds, long long& out)
{
    if (line.clock != LogLine::Dated && line.clock != LogLine::YearLess)
        return false;
    long long naive = line.ms / 1000;  // seconds since 1970-01-01 of the line's own clock
    if (line.clock == LogLine::YearLess) {
        // The year the log does not give: this one, or the one before when
        // that would put the line in the future.
        std::time_t now = static_cast<std::time_t>(nowEpochSeconds);
        std::tm tm{};
        gmtime_r(&now, &tm);
        const int year = tm.tm_year + 1900;
        auto daysFromCivil = [](long long y, unsigned m, unsigned d) {
            y -= m <= 2;
            const long long era = (y >= 0 ? y : y - 399) / 400;
            const unsigned yoe = static_cast<unsigned>(y - era * 400);
            const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
            return era * 146097 + static_cast<long long>(yoe * 365 + yoe / 4 - yoe / 100 + doy) - 719468;
        };
        const long long sinceYear2000 = naive - daysFromCivil(2000, 1, 1) * 86400;
        naive = daysFromCivil(year, 1, 1) * 86400 + sinceYear2000;
        if (naive > nowEpochSeconds + 86400)
            naive = daysFromCivil(year - 1, 1, 1) * 86400 + sinceYear2000;
    }
    if (line.zoned) {
        out = naive - line.zoneMinutes * 60LL;
        return true;
    }
    std::time_t t = static_cast<std::time_t>(naive);
    std::tm tm{};
    gmtime_r(&t, &tm);
    tm.tm_isdst = -1;
    out = static_cast<long long>(std::mktime(&tm));
    return true;
}

long long shiftTimeStamps(Json::Value& scenario, long long nowEpochSeconds)
{
    const Json::Value& constant = scenario;
    const Json::Value& stamps = constant["case"]["timeStamps"];
    if (!stamps.isObject() || !stamps["readAt"].isIntegral())
        return 0;
    const long long delta = nowEpochSeconds - stamps["readAt"].asInt64();
    for (const Json::Value& cell : stamps["cells"]) {
        const std::string table = cell["table"].asString();
        const Json::ArrayIndex row = cell["row"].asUInt();
        const std::string column = cell["column"].asString();
        Json::Value& rows = scenario["device"]["datastore"][table];
        if (!rows.isArray() || row >= rows.size() || !rows[row].isObject())
            continue;
        long long original;
        if (!digitsValue(cell["value"], original))
            continue;
        rows[row][column] = cell["value"].isString() ? Json::Value(std::to_string(original + delta))
                                                     : Json::Value(static_cast<Json::Int64>(original + delta));
    }
    return delta;
}

Json::Value writeCase(const CaseInput& in)
{
    const Session& s = *in.session;
    std::vector<std::string> notes;
    Json::Value out(Json::objectValue);

    // The device.
    Json::Value device = in.device;
    if (device.isObject()) {
        // Files given by name are found from wherever the case is played.
        if (device.isMember("files") && device["files"].isArray())
            for (Json::Value& file : device["files"])
                if (file.isObject() && file["from"].isString() && !file["from"].asString().empty() &&
                    file["from"].asString()[0] != '/')
                    file["from"] = fs::absolute(fs::path(in.deviceFile).parent_path() / file["from"].asString())
                                       .lexically_normal()
                                       .string();
    } else {
        device = deviceFromLog(s, notes);
    }

    // The data store's time stamps, moved to the time of the replay.
    long long readAt = 0;
    if (device.isMember("datastore") && device["datastore"].isObject() && !s.turns.empty() &&
        epochSeconds(*s.lines[s.turns.front().firstLine], in.nowEpochSeconds, readAt)) {
        Json::Value cells(Json::arrayValue);
        std::vector<std::string> columns;
        for (const auto& table : device["datastore"].getMemberNames()) {
            const Json::Value& rows = device["datastore"][table];
            for (Json::ArrayIndex r = 0; rows.isArray() && r < rows.size(); ++r) {
                if (!rows[r].isObject())
                    continue;
                for (const auto& column : rows[r].getMemberNames()) {
                    long long v;
                    if (!digitsValue(rows[r][column], v) || v <= 0 || std::llabs(v - readAt) > kStampWindow)
                        continue;
                    Json::Value cell;
                    cell["table"] = table;
                    cell["row"] = r;
                    cell["column"] = column;
                    cell["value"] = rows[r][column];
                    cells.append(cell);
                    const std::string name = table + "." + column;
                    if (std::find(columns.begin(), columns.end(), name) == columns.end())
                        columns.push_back(name);
                }
            }
        }
        if (!cells.empty()) {
            out["case"]["timeStamps"]["readAt"] = static_cast<Json::Int64>(readAt);
            out["case"]["timeStamps"]["cells"] = cells;
            std::string list;
            for (const auto& c : columns)
                list += (list.empty() ? "" : ", ") + c;
            notes.push_back("device: time stamps in the data store (" + list +
                            ") moved by the time from when the log's first turn read them to when the case was built"
                            " (marl-case compare moves them to the replay's start)");
        }
    }
    if (!device.empty())
        out["device"] = device;

    // The engine.
    Json::Value engine(Json::objectValue);
    engine["language"] = s.language;
    if (!s.domain.empty() && s.domain != "Common")
        engine["domain"] = s.domain;
    Json::Value commands(Json::arrayValue);
    bool unknownText = false;
    for (const Command& c : s.commands) {
        Json::Value j;
        j["id"] = c.id;
        j["type"] = c.type;
        j["format"] = c.format;
        j["command"] = c.textKnown ? c.text : std::string();
        j["param"] = c.param;
        j["domain"] = c.domain;
        commands.append(j);
        unknownText = unknownText || !c.textKnown;
    }
    engine["commands"] = commands;
    if (!s.commands.empty() && !s.commandsFromDaemon)
        notes.push_back("commands: ids numbered 1 to " + std::to_string(s.commands.size()) +
                        " in the order given, parameters null and domains 0: the plug-in's log has not got them");
    if (unknownText)
        notes.push_back("commands: a command with empty text took a random text in the plug-in; left empty");
    if (s.commands.empty())
        notes.push_back("commands: no command list in the log");
    Json::Value pairs(Json::arrayValue);
    for (const auto& p : s.privateData)
        pairs.append(p);
    if (!pairs.empty())
        engine["privateData"] = pairs;
    out["engine"] = engine;
    if (s.platformDaemon)
        out["daemon"] = "platform";
    if (s.recognitionMode == 1)
        out["recognitionMode"] = "restartAfterReject";
    else if (s.recognitionMode > 1)
        notes.push_back("the daemon's recognition mode " + std::to_string(s.recognitionMode) +
                        " is not one marl-sim plays; the default taken");

    // The turns.
    const int chunk = s.platformDaemon ? 160 : 320;
    Json::Value turns(Json::arrayValue);
    long long longest = 0;
    Json::Value caseTurns(Json::arrayValue);
    for (size_t k = 0; k < s.turns.size(); ++k) {
        const Turn& t = s.turns[k];
        const std::string where = "turn " + std::to_string(k + 1);
        Json::Value turn(Json::objectValue);
        if (t.chunks > 0)
            turn["audio"] = audioFor(t, chunk, notes, where);
        if (t.end == "cancel")
            turn["end"] = "cancel";
        else if (t.end.empty() && t.events.empty() && s.debug)
            notes.push_back(where + ": the server did not answer and the log does not say whether the turn was stopped "
                                    "or cancelled; stopped");
        Json::Value server(Json::arrayValue);
        bool speech = false;
        for (const ServerEvent& e : t.events) {
            server.append(e.json);
            speech = speech || e.json.isMember("speechBytes");
        }
        turn["server"] = server;
        if (speech)
            notes.push_back(where + ": the server's speech is a quiet tone of the logged sizes (approximate)");
        Json::Value privateData(Json::arrayValue);
        for (const auto& p : t.privateData)
            privateData.append(p);
        if (!privateData.empty())
            turn["privateData"] = privateData;
        for (const auto& n : t.notes)
            notes.push_back(where + ": " + n);
        turns.append(turn);
        longest = std::max(longest, settleMs(s, t));
        Json::Value ct;
        const LogLine& first = *s.lines[t.firstLine];
        ct["line"] = in.logs.size() > first.file ? in.logs[first.file] + ":" + std::to_string(first.number)
                                                : std::to_string(first.number);
        caseTurns.append(ct);
    }
    out["turns"] = turns;
    if (longest > 10000)
        out["timeout"] = static_cast<Json::UInt>(longest / 1000 + 15);
    for (const auto& n : s.notes)
        notes.push_back(n);
    for (const auto& g : s.gaps)
        notes.push_back("gap: " + g);

    Json::Value logs(Json::arrayValue);
    for (const auto& l : in.logs)
        logs.append(l);
    out["case"]["logs"] = logs;
    out["case"]["session"] = static_cast<Json::UInt>(in.index);
    out["case"]["sessions"] = static_cast<Json::UInt>(in.sessions);
    out["case"]["turns"] = caseTurns;
    if (!in.deviceFile.empty())
        out["case"]["device"] = in.deviceFile;
    Json::Value noteList(Json::arrayValue);
    for (const auto& n : notes)
        noteList.append(n);
    out["notes"] = noteList;
    shiftTimeStamps(out, in.nowEpochSeconds);
    return out;
}

}  // namespace marlcase
