// Sessions: the plug-in's lines cut at each load of the engine, and the
// daemon's lines of the same session laid beside its turns.
#include "Model.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

namespace marlcase
{

void readSession(Session& s);

const char* const kPluginTag = "VoiceEnginePlugIn";
const char* const kDaemonTag = "vcd";

bool loadLine(const LogLine& l)
{
    return l.function == "vcp_load_engine" || l.function == "__make_dir" || l.function == "copyResources";
}

bool pluginTag(const std::string& tag)
{
    return tag == kPluginTag || tag == "VCPE";
}


namespace
{

const long long kDayMs = 86400000LL;

bool startsWith(const std::string& s, const char* prefix)
{
    return s.rfind(prefix, 0) == 0;
}

int toInt(const std::string& s)
{
    return static_cast<int>(std::strtol(s.c_str(), nullptr, 10));
}

// The daemon's text of a null argument.
Json::Value nullable(const std::string& text)
{
    return text == "(null)" ? Json::Value() : Json::Value(text);
}

// "[Client Data] Foreground : id(%d) index(%d) format(%d) command(%s) param(%s) domain(%d)", and the
// system commands' "id(%d) index(%d) format(%d) domain(%d) command(%s) param(%s)".
bool daemonCommand(const std::string& text, Command& c)
{
    static const std::pair<const char*, int> groups[] = {{"[Client Data] Widget : ", 3},
                                                         {"[Client Data] Foreground : ", 1},
                                                         {"[Client Data] System : ", 4},
                                                         {"[Client Data] Exclusive system : ", 5},
                                                         {"[Client Data] Background : ", 2}};
    for (const auto& group : groups) {
        if (!startsWith(text, group.first))
            continue;
        c = Command();
        c.type = group.second;
        const std::string body = text.substr(std::string(group.first).size());
        std::string id, format, domain, command, param;
        if (!between(body, "id(", ") index(", id) || !between(body, "format(", ")", format))
            return false;
        format = format.substr(0, format.find(')'));
        if (c.type == 4) {
            // id(..) index(..) format(..) domain(..) command(..) param(..)
            const size_t d = body.find(" domain(");
            const size_t k = body.find(") command(");
            const size_t p = body.rfind(") param(");
            if (d == std::string::npos || k == std::string::npos || p == std::string::npos || p < k || body.back() != ')')
                return false;
            domain = body.substr(d + 8, k - d - 8);
            command = body.substr(k + 10, p - k - 10);
            param = body.substr(p + 8, body.size() - p - 9);
        } else {
            const size_t k = body.find(" command(");
            const size_t d = body.rfind(") domain(");
            const size_t p = body.rfind(") param(", d);
            if (k == std::string::npos || d == std::string::npos || p == std::string::npos || p < k ||
                body.back() != ')')
                return false;
            command = body.substr(k + 9, p - k - 9);
            param = body.substr(p + 8, d - p - 8);
            domain = body.substr(d + 9, body.size() - d - 10);
        }
        c.id = toInt(id);
        c.format = toInt(format);
        c.domain = toInt(domain);
        c.text = command;
        c.param = nullable(param);
        return true;
    }
    return false;
}

// What the daemon's lines of one session say, in order.
struct DaemonTurn {
    const LogLine* start = nullptr;
    int mode = -1;
    std::string end;
    std::vector<Callback> callbacks;
    std::vector<Json::Value> privateData;
};

struct DaemonSession {
    std::vector<std::vector<Command>> lists;
    std::vector<Json::Value> privateData;  // before the first start
    std::vector<DaemonTurn> turns;
};

// "[Engine agent] Event(%d), Count(%d) Text(%s) Nonfixed(%s) Msg(%s)" or
// "[Server] Event(%d), Text(%s) Nonfixed(%s) Msg(%s) Result count(%d)".
bool resultLine(const std::string& text, bool server, Json::Value& out)
{
    std::string event, count;
    const size_t tx = text.find(server ? "), Text(" : ") Text(");
    const size_t nf = text.rfind(") Nonfixed(");
    const size_t ms = text.rfind(") Msg(");
    const size_t rc = server ? text.rfind(") Result count(") : text.size() - 1;
    if (!between(text, "Event(", server ? "), Text(" : "), Count(", event) || tx == std::string::npos ||
        nf == std::string::npos || ms == std::string::npos || rc == std::string::npos || nf < tx || ms < nf ||
        rc < ms || text.back() != ')')
        return false;
    if (server)
        count = text.substr(rc + 15, text.size() - rc - 16);
    else
        between(text, "), Count(", ") Text(", count);
    const size_t textAt = tx + (server ? 8 : 7);
    out["kind"] = "result";
    out["event"] = toInt(event);
    out["count"] = toInt(count);
    out["allResult"] = nullable(text.substr(textAt, nf - textAt));
    out["nonFixedResult"] = nullable(text.substr(nf + 11, ms - nf - 11));
    out["message"] = nullable(text.substr(ms + 6, rc - ms - 6));
    out["ids"] = Json::Value(Json::arrayValue);
    return true;
}

void readDaemon(const std::vector<const LogLine*>& lines, DaemonSession& d)
{
    std::vector<Json::Value> pending;
    bool agentResult = false;  // a result told by the engine agent, whose server line is to come
    Json::Value nlu;           // the NLU text told before a result's server line
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string& text = lines[i]->text;
        std::string a, b;
        DaemonTurn* t = d.turns.empty() ? nullptr : &d.turns.back();
        Command c;
        if (text == "[Engine Agent] Request foreach command from engine") {
            d.lists.emplace_back();
        } else if (daemonCommand(text, c)) {
            if (d.lists.empty())
                d.lists.emplace_back();
            d.lists.back().push_back(c);
        } else if (startsWith(text, "[Engine Agent] Set private data : key(") &&
                   between(text, "key(", ") data(", a) && between(text, ") data(", ")", b)) {
            Json::Value pair;
            pair["key"] = nullable(a);
            pair["data"] = nullable(b);
            pending.push_back(pair);
        } else if (startsWith(text, "[Server] set recognition mode = ")) {
            if (d.turns.empty())
                d.privateData = pending;
            d.turns.emplace_back();
            d.turns.back().start = lines[i];
            d.turns.back().mode = toInt(text.substr(32));
            if (d.turns.size() > 1)
                d.turns.back().privateData = pending;
            pending.clear();
            // An agent's result whose server line never came stays in its turn.
            agentResult = false;
        } else if (!t) {
            continue;
        } else if (startsWith(text, "[IN] vcd mgr stop") || startsWith(text, "===== Silence Detected") ||
                   startsWith(text, "[Server] Stop engine only by silence") || startsWith(text, "[IN] vcd request stop")) {
            if (t->end.empty())
                t->end = "stop";
        } else if (startsWith(text, "[IN] vcd mgr cancel") || startsWith(text, "===== Cancel by") ||
                   startsWith(text, "[IN] vcd request cancel") ||
                   (startsWith(text, "[Server] Foreground pid(") && text.find("Cancel recognition") != std::string::npos)) {
            if (t->end.empty())
                t->end = "cancel";
        } else if (startsWith(text, "[Engine agent] ASR result - Event(") && between(text, "Event(", "), Text(", a) &&
                   between(text, "), Text(", ")", b)) {
            Callback cb;
            cb.json["kind"] = "asr";
            cb.json["event"] = toInt(a);
            cb.json["text"] = b;
            cb.line = i;
            t->callbacks.push_back(cb);
        } else if (startsWith(text, "[Engine agent] Event(") || startsWith(text, "[Server] Event(")) {
            // The engine agent's line and the server's tell the same result; the
            // server's alone (a daemon that has not the other) tells it too.
            const bool server = startsWith(text, "[Server]");
            if (server && agentResult) {
                agentResult = false;
                continue;
            }
            Callback cb;
            if (!resultLine(text, server, cb.json))
                continue;
            if (server && nlu.isString())
                cb.json["nluResult"] = nlu;
            nlu = Json::Value(Json::nullValue);
            cb.line = i;
            t->callbacks.push_back(cb);
            agentResult = !server;
        } else if (startsWith(text, "[Engine Agent SUCCESS] Get nlp info : ")) {
            if (agentResult)
                t->callbacks.back().json["nluResult"] = nullable(text.substr(38));
            else
                nlu = nullable(text.substr(38));
        } else if (startsWith(text, "[Server]   [") && between(text, "Result ID(", ")", a) && !t->callbacks.empty() &&
                   t->callbacks.back().json["kind"] == "result") {
            t->callbacks.back().json["ids"].append(toInt(a));
        } else if (startsWith(text, "[Server ERROR] Current state is not 'Processing'") && !t->callbacks.empty() &&
                   t->callbacks.back().json["kind"] == "result") {
            t->callbacks.back().json["dropped"] = true;
        } else if (startsWith(text, "[Engine agent] Error callback - error(") && between(text, "error(", "), msg(", a) &&
                   between(text, "), msg(", ")", b)) {
            Callback cb;
            cb.json["kind"] = "error";
            cb.json["code"] = toInt(a);
            cb.json["message"] = b;
            cb.line = i;
            t->callbacks.push_back(cb);
        }
    }
}

// Lays a daemon session beside the plug-in's session it belongs to.
void merge(Session& s, const DaemonSession& d)
{
    if (!d.lists.empty() && !d.lists.front().empty()) {
        const std::vector<Command>& list = d.lists.front();
        bool fits = list.size() == s.commands.size();
        for (size_t i = 0; fits && i < list.size(); ++i)
            fits = list[i].format == s.commands[i].format &&
                   (!s.commands[i].textKnown || list[i].text == s.commands[i].text);
        if (!fits && !s.commands.empty())
            s.notes.push_back("commands: the daemon's list and the plug-in's differ; the daemon's taken");
        s.commands = list;
        s.commandsFromDaemon = true;
    }
    if (!d.privateData.empty())
        s.privateData = d.privateData;
    // Each turn's start in the daemon's lines: the same count in order; a
    // plug-in's log whose beginning is lost, from the end; else, when both
    // have times of one clock, the daemon's start nearest in time.
    std::vector<long> match(s.turns.size(), -1);
    const bool timed = !d.turns.empty() && !s.turns.empty() && d.turns.front().start->clock != LogLine::None &&
                       d.turns.front().start->clock == s.lines[s.turns.front().firstLine]->clock;
    std::string how = "in order";
    if (d.turns.size() > s.turns.size() && !s.loaded) {
        for (size_t i = 0; i < s.turns.size(); ++i)
            match[i] = static_cast<long>(d.turns.size() - s.turns.size() + i);
        how = "from the last";
    } else if (d.turns.size() != s.turns.size() && timed) {
        size_t next = 0;
        for (size_t i = 0; i < s.turns.size() && next < d.turns.size(); ++i) {
            const long long at = s.lines[s.turns[i].firstLine]->ms;
            size_t best = next;
            for (size_t j = next; j < d.turns.size(); ++j)
                if (std::llabs(d.turns[j].start->ms - at) < std::llabs(d.turns[best].start->ms - at))
                    best = j;
            match[i] = static_cast<long>(best);
            next = best + 1;
        }
        how = "by their times";
    } else {
        for (size_t i = 0; i < s.turns.size() && i < d.turns.size(); ++i)
            match[i] = static_cast<long>(i);
    }
    if (d.turns.size() != s.turns.size())
        s.notes.push_back("the daemon's log has " + std::to_string(d.turns.size()) + " start(s) where the plug-in's has " +
                          std::to_string(s.turns.size()) + "; they were matched " + how);
    for (size_t i = 0; i < s.turns.size(); ++i) {
        if (match[i] < 0) {
            s.turns[i].notes.push_back("the daemon's log has not got this turn");
            continue;
        }
        Turn& t = s.turns[i];
        const DaemonTurn& dt = d.turns[static_cast<size_t>(match[i])];
        if (i == 0)
            s.recognitionMode = dt.mode;
        t.end = dt.end;
        if (match[i] > 0)
            t.privateData = dt.privateData;
        // The daemon saw the callbacks as they came: its lines replace what the plug-in's suggest.
        t.callbacks = dt.callbacks;
        t.resultsKnown = true;
    }
}

}  // namespace

bool between(const std::string& text, const std::string& open, const std::string& close, std::string& out,
             size_t* after)
{
    const size_t a = text.find(open);
    if (a == std::string::npos)
        return false;
    const size_t b = text.rfind(close);
    if (b == std::string::npos || b < a + open.size())
        return false;
    out = text.substr(a + open.size(), b - a - open.size());
    if (after)
        *after = b + close.size();
    return true;
}

void readLogs(const std::vector<std::string>& files, Logs& logs)
{
    for (size_t i = 0; i < files.size(); ++i) {
        std::ifstream in(files[i], std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        logs.names.push_back(files[i]);
        logs.reads.emplace_back();
        if (!in) {
            logs.problems.push_back("cannot read " + files[i]);
            continue;
        }
        readLog(text.str(), files[i], i, logs.reads.back());
        // The forms without a year: a line half a year before the one above
        // it is in the next year.
        long long shift = 0, previous = 0;
        bool any = false;
        for (LogLine& l : logs.reads.back().lines) {
            if (l.clock != LogLine::YearLess)
                continue;
            if (any && l.ms + shift < previous - 180 * kDayMs)
                shift += 366 * kDayMs;
            l.ms += shift;
            previous = l.ms;
            any = true;
        }
        for (const auto& p : logs.reads.back().problems)
            logs.problems.push_back(p);
    }
}

std::vector<Session> sessionsOf(const Logs& logs, std::vector<std::string>& problems, std::vector<std::string>& warnings)
{
    // The lines of each process, per tag.
    std::map<int, std::vector<const LogLine*>> plugin, daemon;
    std::vector<int> order;  // processes of the plug-in, in the order first seen
    size_t others = 0;
    for (const LogRead& read : logs.reads) {
        for (const LogLine& l : read.lines) {
            if (pluginTag(l.tag)) {
                if (!plugin.count(l.pid))
                    order.push_back(l.pid);
                plugin[l.pid].push_back(&l);
            } else if (l.tag == kDaemonTag) {
                daemon[l.pid].push_back(&l);
            } else {
                ++others;
            }
        }
    }
    if (plugin.empty()) {
        problems.push_back(others ? "no line of the plug-in (tag \"" + std::string(kPluginTag) + "\") among " +
                                        std::to_string(others) + " line(s) of other tags: nothing to build from"
                                  : "no line of the plug-in (tag \"" + std::string(kPluginTag) + "\"): nothing to build from");
        return {};
    }
    auto byTime = [](std::vector<const LogLine*>& lines) {
        // Lines of several files with the same clock are put in time order.
        bool timed = !lines.empty();
        for (const LogLine* l : lines)
            timed = timed && l->clock != LogLine::None && l->clock == lines.front()->clock;
        bool several = false;
        for (const LogLine* l : lines)
            several = several || l->file != lines.front()->file;
        if (timed && several)
            std::stable_sort(lines.begin(), lines.end(), [](const LogLine* a, const LogLine* b) { return a->ms < b->ms; });
    };
    if (order.size() > 1) {
        std::string pids;
        for (int pid : order)
            pids += (pids.empty() ? "" : ", ") + std::to_string(pid);
        warnings.push_back("the plug-in's lines come from " + std::to_string(order.size()) + " processes (" + pids +
                           "): each process's lines were taken apart, one session after another");
    }

    std::vector<Session> sessions;
    for (int pid : order) {
        std::vector<const LogLine*>& lines = plugin[pid];
        byTime(lines);
        // The daemon of this process, else the only daemon there is.
        std::vector<const LogLine*> daemonLines;
        if (daemon.count(pid))
            daemonLines = daemon[pid];
        else if (daemon.size() == 1 && order.size() == 1)
            daemonLines = daemon.begin()->second;
        byTime(daemonLines);

        std::vector<size_t> cuts;
        for (size_t i = 0; i < lines.size(); ++i)
            if (loadLine(*lines[i]) && (i == 0 || !loadLine(*lines[i - 1])))
                cuts.push_back(i);
        // Lines before the first load that hold no call of the daemon (the
        // probe of the engine's identity) go with the load.
        bool prologue = !cuts.empty() && cuts.front() != 0;
        for (size_t i = 0; prologue && i < cuts.front(); ++i)
            prologue = lines[i]->function.rfind("MarlEngine_", 0) != 0;
        if (prologue)
            cuts.front() = 0;
        if (cuts.empty() || cuts.front() != 0)
            cuts.insert(cuts.begin(), 0);
        std::vector<size_t> daemonCuts;
        for (size_t i = 0; i < daemonLines.size(); ++i)
            if (startsWith(daemonLines[i]->text, "[Engine Agent] Current engine path : "))
                daemonCuts.push_back(i);
        if (daemonCuts.empty() || daemonCuts.front() != 0)
            daemonCuts.insert(daemonCuts.begin(), 0);
        // A log that begins within a session has lines before its first load.
        const bool headless = !lines.empty() && !loadLine(*lines[0]) && !prologue;
        const bool daemonHeadless = !daemonLines.empty() &&
                                    !startsWith(daemonLines[0]->text, "[Engine Agent] Current engine path : ");
        for (size_t k = 0; k < cuts.size(); ++k) {
            Session s;
            const size_t end = k + 1 < cuts.size() ? cuts[k + 1] : lines.size();
            s.lines.assign(lines.begin() + cuts[k], lines.begin() + end);
            // The daemon's session of the same time, when both logs have one clock;
            // else the one in the same place.
            long long dk = static_cast<long long>(k);
            if (daemonCuts.size() != cuts.size() && headless != daemonHeadless)
                dk += headless ? -1 : 1;
            const bool timed = !daemonLines.empty() && !s.lines.empty() && s.lines.front()->clock != LogLine::None &&
                               s.lines.front()->clock == daemonLines.front()->clock;
            if (timed) {
                dk = -1;
                long long best = 0;
                for (size_t j = 0; j < daemonCuts.size(); ++j) {
                    const size_t dend = j + 1 < daemonCuts.size() ? daemonCuts[j + 1] : daemonLines.size();
                    const long long overlap =
                        std::min(s.lines.back()->ms, daemonLines[dend - 1]->ms) -
                        std::max(s.lines.front()->ms, daemonLines[daemonCuts[j]]->ms);
                    if (overlap >= 0 && (dk < 0 || overlap > best)) {
                        dk = static_cast<long long>(j);
                        best = overlap;
                    }
                }
            }
            if (!daemonLines.empty() && dk >= 0 && dk < static_cast<long long>(daemonCuts.size())) {
                const size_t dend = dk + 1 < static_cast<long long>(daemonCuts.size()) ? daemonCuts[dk + 1] : daemonLines.size();
                s.daemon.assign(daemonLines.begin() + daemonCuts[dk], daemonLines.begin() + dend);
            }
            readSession(s);
            if (!s.daemon.empty()) {
                DaemonSession d;
                readDaemon(s.daemon, d);
                merge(s, d);
            }
            if (s.lines.size() > 0)
                sessions.push_back(std::move(s));
        }
    }
    return sessions;
}

}  // namespace marlcase
