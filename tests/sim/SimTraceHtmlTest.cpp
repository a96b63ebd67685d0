// marl-sim --trace and --html: the session as a trace for chrome://tracing and
// Perfetto, and as one self-contained page, checked on sessions of the
// scenarios and, for the page, as headless Chromium shows it.
#include "SimRun.h"

#include "../../sim/HtmlPage.h"
#include "../../sim/TraceWriter.h"

#include "SkipOutsideCi.h"

#include <gtest/gtest.h>
#include <json/json.h>
#include <openssl/evp.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <tuple>

namespace
{

using namespace simtest;

std::string compactForTest(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value);
}

Json::Value parse(const std::string& text, std::string* errors)
{
    Json::CharReaderBuilder builder;
    builder["failIfExtra"] = true;
    builder["rejectDupKeys"] = true;
    std::istringstream in(text);
    Json::Value value;
    if (!Json::parseFromStream(builder, in, &value, errors))
        return Json::Value();
    return value;
}

// A session of a checked scenario with --trace and --html.
struct Session {
    Scratch scratch;
    SimResult run;
    fs::path trace, html, device;

    explicit Session(const std::string& scenario, std::vector<std::string> extra = {})
    {
        trace = scratch.path("session.trace.json");
        html = scratch.path("session.html");
        device = scratch.path("device");
        std::vector<std::string> args = {"run", std::string(MARL_SCENARIO_DIR) + "/" + scenario + ".json",
                                         "--fast", "--device", device.string(), "--trace", trace.string(),
                                         "--html", html.string()};
        args.insert(args.end(), extra.begin(), extra.end());
        run = runSim(scratch, args);
    }
};

struct Span {
    long long ts, end;
    std::string name;
};

// Checks what makes a trace loadable and readable: every event has the
// members, every track is named, "X" spans on a track nest or follow each
// other, every async span that begins ends once, no earlier than it began.
// Returns the names of the tracks by tid.
std::map<int, std::string> checkTrace(const Json::Value& trace)
{
    std::map<int, std::string> names;
    std::set<int> used;
    std::map<int, std::vector<Span>> spans;
    std::map<std::tuple<std::string, long long>, long long> open;
    const Json::Value& events = trace["traceEvents"];
    EXPECT_TRUE(events.isArray());
    for (const auto& e : events) {
        EXPECT_TRUE(e["name"].isString()) << compactForTest(e);
        EXPECT_TRUE(e["ph"].isString()) << compactForTest(e);
        EXPECT_TRUE(e["ts"].isNumeric()) << compactForTest(e);
        EXPECT_TRUE(e["pid"].isInt()) << compactForTest(e);
        EXPECT_TRUE(e["tid"].isInt()) << compactForTest(e);
        const std::string ph = e["ph"].asString();
        const int tid = e["tid"].asInt();
        if (ph == "M") {
            if (e["name"] == "thread_name")
                names[tid] = e["args"]["name"].asString();
            continue;
        }
        used.insert(tid);
        if (ph == "X") {
            EXPECT_TRUE(e["dur"].isNumeric() && e["dur"].asInt64() >= 0) << compactForTest(e);
            spans[tid].push_back({e["ts"].asInt64(), e["ts"].asInt64() + e["dur"].asInt64(), e["name"].asString()});
        } else if (ph == "b") {
            const auto key = std::make_tuple(e["cat"].asString(), e["id"].asInt64());
            EXPECT_EQ(open.count(key), 0u) << "began twice: " << compactForTest(e);
            open[key] = e["ts"].asInt64();
        } else if (ph == "e") {
            const auto key = std::make_tuple(e["cat"].asString(), e["id"].asInt64());
            EXPECT_EQ(open.count(key), 1u) << "ends without a beginning: " << compactForTest(e);
            if (!open.count(key))
                continue;
            EXPECT_GE(e["ts"].asInt64(), open[key]) << compactForTest(e);
            open.erase(key);
        } else {
            EXPECT_EQ(ph, "i") << compactForTest(e);
        }
    }
    EXPECT_TRUE(open.empty()) << open.size() << " async span(s) never end";
    for (int tid : used)
        EXPECT_FALSE(names[tid].empty()) << "track " << tid << " has no name";
    for (auto& track : spans) {
        auto& list = track.second;
        std::stable_sort(list.begin(), list.end(), [](const Span& a, const Span& b) {
            return a.ts < b.ts || (a.ts == b.ts && a.end > b.end);
        });
        std::vector<Span> stack;
        for (const auto& s : list) {
            while (!stack.empty() && stack.back().end <= s.ts)
                stack.pop_back();
            if (!stack.empty()) {
                EXPECT_LE(s.end, stack.back().end)
                    << s.name << " overlaps " << stack.back().name << " on track " << names[track.first];
            }
            stack.push_back(s);
        }
    }
    return names;
}

std::vector<Json::Value> eventsNamed(const Json::Value& trace, const std::string& name, const std::string& ph)
{
    std::vector<Json::Value> found;
    for (const auto& e : trace["traceEvents"])
        if (e["name"] == name && e["ph"] == ph)
            found.push_back(e);
    return found;
}

// The trace of made-up entries, written through a TraceWriter.
Json::Value traceOf(std::initializer_list<const char*> entries)
{
    Scratch scratch;
    const fs::path path = scratch.path("t.json");
    sim::TraceWriter writer(path.string());
    std::string error;
    for (const char* json : entries)
        writer.entry(parse(json, &error));
    EXPECT_TRUE(writer.finish(Json::Value(Json::objectValue), &error)) << error;
    const Json::Value trace = parse(readText(path), &error);
    EXPECT_TRUE(trace.isObject()) << error;
    return trace;
}

int tidOf(const std::map<int, std::string>& names, const std::string& name)
{
    for (const auto& n : names)
        if (n.second == name)
            return n.first;
    return -1;
}

std::string base64(const std::string& bytes)
{
    std::string out(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    const int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(&out[0]),
                                  reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    out.resize(static_cast<size_t>(n));
    return out;
}

// Nothing that a browser would fetch: no script, no address outside the page.
void expectSelfContained(const std::string& page)
{
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_EQ(page.find("<link"), std::string::npos);
    EXPECT_EQ(page.find("url("), std::string::npos);
    static const std::regex reference("(src|href)=\"([^\"#][^\"]*)\"");
    for (auto it = std::sregex_iterator(page.begin(), page.end(), reference); it != std::sregex_iterator(); ++it)
        EXPECT_EQ((*it)[2].str().rfind("data:", 0), 0u) << "refers to " << (*it)[2].str().substr(0, 80);
}

// The page as headless Chromium has it after loading, or "" with a reason.
std::string chromiumDom(const Scratch& scratch, const fs::path& page, std::string* why)
{
    if (std::system("command -v chromium >/dev/null 2>&1") != 0) {
        *why = "chromium is not installed (scripts/setup.sh installs it)";
        return "";
    }
    const fs::path dom = scratch.path("dom.html");
    // The test runs with the appliance's file-system map preloaded, which
    // is not for the browser.
    const std::string command = "env -u LD_PRELOAD chromium --headless --no-sandbox --disable-gpu "
                                "--user-data-dir=" +
                                quoteArg(scratch.path("chromium").string()) + " --dump-dom " +
                                quoteArg("file://" + page.string()) + " >" + quoteArg(dom.string()) +
                                " 2>" + quoteArg(scratch.path("chromium.err").string());
    if (std::system(command.c_str()) != 0) {
        *why = "chromium failed: " + readText(scratch.path("chromium.err"));
        return "";
    }
    return readText(dom);
}

}  // namespace

TEST(SimTrace, TimerDialogueIsAWellFormedTraceWithATrackPerThread)
{
    Session session("timer-dialogue");
    ASSERT_EQ(session.run.exitCode, 0) << session.run.err;
    std::string errors;
    const Json::Value trace = parse(readText(session.trace), &errors);
    ASSERT_TRUE(trace.isObject()) << errors;
    const auto names = checkTrace(trace);
    const int main = tidOf(names, "daemon main loop"), speech = tidOf(names, "speech library");
    EXPECT_NE(main, -1);
    EXPECT_NE(speech, -1);
    EXPECT_NE(tidOf(names, "play worker"), -1);
    EXPECT_NE(tidOf(names, "appliance journal"), -1);

    const auto starts = eventsNamed(trace, "MarlEngine_start", "X");
    ASSERT_EQ(starts.size(), 1u);
    EXPECT_EQ(starts[0]["tid"].asInt(), main);
    EXPECT_EQ(eventsNamed(trace, "MarlEngine_stop", "X").size(), 1u);
    // set_commands walks the commands through the daemon's callbacks while it runs.
    const auto setCommands = eventsNamed(trace, "MarlEngine_set_commands", "X");
    ASSERT_EQ(setCommands.size(), 1u);
    const auto foreach = eventsNamed(trace, "foreach_command", "i");
    ASSERT_EQ(foreach.size(), 1u);
    EXPECT_GE(foreach[0]["ts"].asInt64(), setCommands[0]["ts"].asInt64());
    EXPECT_LE(foreach[0]["ts"].asInt64(), setCommands[0]["ts"].asInt64() + setCommands[0]["dur"].asInt64());

    // The voice turn and the driver-response turn each pull device data.
    const auto pulls = eventsNamed(trace, "device-data pull", "X");
    ASSERT_EQ(pulls.size(), 2u);
    for (const auto& pull : pulls)
        EXPECT_EQ(pull["tid"].asInt(), speech);
    const auto driver = eventsNamed(trace, "driver response", "e");
    ASSERT_EQ(driver.size(), 1u);
    EXPECT_NE(driver[0]["args"]["request"].asString().find("Information Timer Request"), std::string::npos);
    EXPECT_NE(driver[0]["args"]["response"].asString().find("Information Timer Reply"), std::string::npos);
    EXPECT_EQ(eventsNamed(trace, "turn 1", "b").size(), 1u);
    EXPECT_EQ(eventsNamed(trace, "server-speech wait", "b").size(), 1u);
    const auto result = eventsNamed(trace, "result", "i");
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0]["args"]["allResult"], "what timers do I have");
    EXPECT_EQ(trace["otherData"]["scenario"].asString().find("timer-dialogue.json") != std::string::npos, true);
}

TEST(SimTrace, PlaybackIsASpanOnThePlayWorkerEndingAtTheJournalEntry)
{
    Session session("speech-played-by-plugin");
    ASSERT_EQ(session.run.exitCode, 0) << session.run.err;
    std::string errors;
    const Json::Value trace = parse(readText(session.trace), &errors);
    ASSERT_TRUE(trace.isObject()) << errors;
    const auto names = checkTrace(trace);
    const auto playbacks = eventsNamed(trace, "playback", "X");
    ASSERT_EQ(playbacks.size(), 1u);
    EXPECT_EQ(playbacks[0]["tid"].asInt(), tidOf(names, "play worker"));
    EXPECT_EQ(playbacks[0]["args"]["bytes"].asInt(), 9600);
    const auto journal = eventsNamed(trace, "audio_playback", "i");
    ASSERT_EQ(journal.size(), 1u);
    EXPECT_EQ(journal[0]["tid"].asInt(), tidOf(names, "appliance journal"));
    EXPECT_EQ(playbacks[0]["ts"].asInt64() + playbacks[0]["dur"].asInt64(), journal[0]["ts"].asInt64());
}

TEST(SimTrace, EntriesGoToTheTrackOfTheirThread)
{
    const Json::Value trace = traceOf({
        R"({"kind":"turn","turn":1,"t":10,"thread":"main"})",
        R"({"kind":"call","fn":"MarlEngine_stop","args":[],"ret":0,"t":20,"tEnd":23,"thread":"main"})",
        R"({"kind":"callback","fn":"result","event":0,"t":30,"thread":"speech"})",
        R"({"kind":"note","text":"retry","t":31,"thread":"ecore worker"})",
        R"({"kind":"note","text":"unnamed","t":32,"thread":"worker"})",
        R"({"kind":"device","event":"app_launch","t":33,"thread":"journal"})",
        R"({"kind":"latency","turn":1,"t":40,"stages":{"endOfSpeech":5,"result":20},"endOfSpeechToResultMs":15})",
    });
    const auto names = checkTrace(trace);
    const auto stop = eventsNamed(trace, "MarlEngine_stop", "X");
    ASSERT_EQ(stop.size(), 1u);
    EXPECT_EQ(stop[0]["dur"].asInt64(), 3000) << "tEnd gives the call's end";
    EXPECT_EQ(eventsNamed(trace, "result", "i").at(0)["tid"].asInt(), tidOf(names, "speech library"));
    EXPECT_EQ(eventsNamed(trace, "retry", "i").at(0)["tid"].asInt(), tidOf(names, "ecore worker"));
    EXPECT_EQ(eventsNamed(trace, "unnamed", "i").at(0)["tid"].asInt(), tidOf(names, "other threads of the plug-in"));
    EXPECT_EQ(eventsNamed(trace, "app_launch", "i").at(0)["tid"].asInt(), tidOf(names, "appliance journal"));
    const auto latency = eventsNamed(trace, "end of speech to result", "b");
    ASSERT_EQ(latency.size(), 1u);
    EXPECT_EQ(latency[0]["ts"].asInt64(), 15000) << "the turn's start plus its end of speech";
    EXPECT_EQ(eventsNamed(trace, "end of speech to result", "e").at(0)["ts"].asInt64(), 30000);
}

// The driver request, the server-speech wait and the end of speech to the
// result are spans of the turn's stages, as its latency entry tells them,
// counted from the start call.
TEST(SimTrace, TheTurnsSpansComeFromItsStages)
{
    const Json::Value trace = traceOf({
        R"({"kind":"turn","turn":1,"t":10,"thread":"main"})",
        R"({"kind":"call","fn":"MarlEngine_start","args":[true],"ret":0,"t":12,"thread":"main"})",
        R"({"kind":"speech","obs":{"what":"driverRequest","request":"timers?","response":"none"},"t":40,"thread":"speech"})",
        R"({"kind":"speech","obs":{"what":"executeOVAction","agent":"Timer","spokenText":"Done."},"t":60,"thread":"speech"})",
        R"({"kind":"latency","turn":1,"t":90,"startT":12,"stages":{"endOfSpeech":5,"driverRequests":[{"request":20,"response":30}],)"
        R"("action":48,"result":70},"endOfSpeechToResultMs":65})",
    });
    checkTrace(trace);
    const auto request = eventsNamed(trace, "driver response", "b"), response = eventsNamed(trace, "driver response", "e");
    ASSERT_EQ(request.size(), 1u);
    ASSERT_EQ(response.size(), 1u);
    EXPECT_EQ(request[0]["ts"].asInt64(), 32000);
    EXPECT_EQ(response[0]["ts"].asInt64(), 42000);
    EXPECT_EQ(response[0]["args"]["request"], "timers?");
    const auto wait = eventsNamed(trace, "server-speech wait", "b"), waited = eventsNamed(trace, "server-speech wait", "e");
    ASSERT_EQ(wait.size(), 1u);
    ASSERT_EQ(waited.size(), 1u);
    EXPECT_EQ(wait[0]["ts"].asInt64(), 60000);
    EXPECT_EQ(wait[0]["args"]["agent"], "Timer");
    EXPECT_EQ(waited[0]["ts"].asInt64(), 82000);
    EXPECT_EQ(waited[0]["args"]["by"], "result");
    EXPECT_EQ(eventsNamed(trace, "end of speech to result", "b").at(0)["ts"].asInt64(), 17000);
}

TEST(SimTrace, AnUnwritableFileIsAnError)
{
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", std::string(MARL_SCENARIO_DIR) + "/cancelled-turn.json", "--fast",
                                           "--device", scratch.path("device").string(), "--trace",
                                           scratch.path("no/such/folder/t.json").string()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot write " + scratch.path("no/such/folder/t.json").string()), std::string::npos)
        << run.err;
}

TEST(SimHtml, PageTellsTheTimerDialogueTurnByTurn)
{
    Session session("timer-dialogue");
    ASSERT_EQ(session.run.exitCode, 0) << session.run.err;
    const std::string page = readText(session.html);
    expectSelfContained(page);
    EXPECT_NE(page.find("<h1>marl-sim session: timer-dialogue.json</h1>"), std::string::npos);
    EXPECT_NE(page.find("<h2>Turn 1</h2>"), std::string::npos);
    EXPECT_NE(page.find("<dt>final</dt><dd class=\"text\">what timers do I have</dd>"), std::string::npos);
    // The request and the response, pretty-printed.
    EXPECT_NE(page.find("<pre>{\n  &quot;Server Reqeust&quot; : \n  {\n    &quot;action&quot; : \n    {\n"
                        "      &quot;name&quot; : &quot;Information Timer Request&quot;"),
              std::string::npos)
        << page;
    EXPECT_NE(page.find("&quot;action&quot; : &quot;Information Timer Reply&quot;"), std::string::npos);
    EXPECT_NE(page.find("<dd class=\"outcome-SUCCESS\">SUCCESS</dd>"), std::string::npos);
    EXPECT_NE(page.find("&quot;spokenText&quot; : &quot;You have one timer of five minutes.&quot;"),
              std::string::npos);
    // The timeline, in the order the stages came.
    const size_t stop = page.find("<td>stop</td>"), request = page.find("<td>driver request 1</td>"),
                 response = page.find("<td>driver response 1</td>"), action = page.find("<td>action</td>"),
                 result = page.find("<td>result callback</td>");
    ASSERT_NE(result, std::string::npos);
    EXPECT_LT(stop, request);
    EXPECT_LT(request, response);
    EXPECT_LT(response, action);
    EXPECT_LT(action, result);
    EXPECT_NE(page.find("<p class=\"latency\">end of speech to result: "), std::string::npos);
    EXPECT_NE(page.find("<li>MarlEngine_set_commands(1) \u2192 0</li>"), std::string::npos) << "the set-up";
}

TEST(SimHtml, PlayedSpeechIsEmbeddedInThePage)
{
    Session session("speech-played-by-plugin");
    ASSERT_EQ(session.run.exitCode, 0) << session.run.err;
    const std::string page = readText(session.html);
    expectSelfContained(page);
    const std::string wav = readText(session.device / "audio" / "playback-0001.wav");
    ASSERT_FALSE(wav.empty());
    EXPECT_NE(page.find("<audio controls preload=\"auto\" src=\"data:audio/wav;base64," + base64(wav) + "\">"),
              std::string::npos);
    EXPECT_NE(page.find("<li>audio_playback: {"), std::string::npos);
    EXPECT_NE(page.find("<td>spoken answer</td>"), std::string::npos);
}

TEST(SimHtml, TimelineComesFromTheTurnsLatencyEntry)
{
    Scratch scratch;
    const fs::path path = scratch.path("p.html");
    sim::HtmlPage html(path.string());
    auto entry = [&](const char* json) {
        std::string errors;
        html.entry(parse(json, &errors));
    };
    entry(R"({"kind":"turn","turn":1,"t":100,"audio":"tone","end":"stop","server":[]})");
    entry(R"({"kind":"call","fn":"MarlEngine_stop","args":[],"ret":0,"t":900})");
    entry(R"({"kind":"latency","turn":1,"t":1500,"stages":{"wordsEnd":300,"endOfSpeech":700,"stop":800,)"
          R"("driverRequests":[{"request":900,"response":950}],"result":1000},"endOfSpeechToResultMs":300})");
    std::string error;
    ASSERT_TRUE(html.finish(Json::Value(Json::objectValue), &error)) << error;
    const std::string page = readText(path);
    EXPECT_NE(page.find("<p class=\"latency\">end of speech to result: 300 ms</p>"), std::string::npos) << page;
    EXPECT_NE(page.find("<td>words end</td><td class=\"ms\">300 ms</td><td class=\"ms\">+300 ms</td>"),
              std::string::npos);
    EXPECT_NE(page.find("<td>driver response 1</td><td class=\"ms\">950 ms</td><td class=\"ms\">+50 ms</td>"),
              std::string::npos);
    EXPECT_NE(page.find("<td>result callback</td><td class=\"ms\">1000 ms</td>"), std::string::npos);
    EXPECT_NE(page.find("<td class=\"ms\">300 ms</td></tr>"), std::string::npos) << "the summary row";
}

TEST(SimHtml, ChromiumShowsTheSpokenTurnWithItsAnswer)
{
    Scratch scratch;
    const fs::path page = scratch.path("spoken.html"), device = scratch.path("device");
    const SimResult run = runSim(scratch, {"run", std::string(MARL_SCENARIO_DIR) + "/spoken-timer.json", "--fast",
                                           "--device", device.string(), "--html", page.string()});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    std::string why;
    const std::string dom = chromiumDom(scratch, page, &why);
    if (dom.empty())
        MARL_SKIP_OUTSIDE_CI(why);
    EXPECT_NE(dom.find("<title>marl-sim session: spoken-timer.json</title>"), std::string::npos) << dom;
    EXPECT_NE(dom.find("<dt>final</dt><dd class=\"text\">how much time is left on the timer</dd>"), std::string::npos);
    EXPECT_NE(dom.find("<dt>partial</dt>"), std::string::npos);
    EXPECT_NE(dom.find("<dt>matched commands</dt><dd>[\"#org.tizen.Timer\"]</dd>"), std::string::npos);
    EXPECT_NE(dom.find("Timer Request"), std::string::npos);
    EXPECT_NE(dom.find("Your timer is paused with 4 minutes and 30 seconds left."), std::string::npos);
    EXPECT_NE(dom.find("<li>file new /home/owner/share/ServerTTS.pcm"), std::string::npos);
    const std::string wav = readText(device / "answers" / "turn-1.wav");
    ASSERT_FALSE(wav.empty());
    EXPECT_NE(dom.find("src=\"data:audio/wav;base64," + base64(wav) + "\""), std::string::npos)
        << "the spoken answer's player";
}
