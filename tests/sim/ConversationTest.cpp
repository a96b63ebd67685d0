// The spoken conversations of scenarios/ (spoken-*-conversation), replayed
// under the platform's daemon with the device's clock pinned, for the values
// each exists for: the apps act on what the plug-in reports, and the
// plug-in's next driver responses follow the rows they changed. The
// transcripts themselves are checked by the scenario replay.
#include "SimRun.h"

#include <json/json.h>
#include <sqlite3.h>

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using namespace simtest;

using Row = std::map<std::string, std::string>;

struct Turn {
    size_t samples = 0;                 // the audio spoken
    std::vector<Json::Value> replies;   // the "data" of each driver response of the plug-in
    std::string answer;                 // the service's spoken answer
    std::vector<std::string> apps;      // what the apps did
    std::vector<std::string> outcomes;  // the daemon's result and error callbacks ("result", "error")
    int requestsHeard = 0;              // recognitions accepted
};

struct Conversation {
    int exitCode = -1;
    std::string err;
    std::vector<Turn> turns;
    std::string device;
};

Json::Value parse(const std::string& text)
{
    Json::CharReaderBuilder builder;
    std::istringstream in(text);
    Json::Value value;
    std::string errors;
    Json::parseFromStream(builder, in, &value, &errors);
    return value;
}

Conversation converse(const Scratch& scratch, const std::string& name)
{
    Conversation c;
    c.device = scratch.path("device").string();
    const std::string json = scratch.path("transcript.json").string();
    const SimResult run = runSim(scratch, {"run", std::string(MARL_SCENARIO_DIR) + "/" + name + ".json", "--fast",
                                           "--daemon", "platform", "--json", json, "--device", c.device});
    c.exitCode = run.exitCode;
    c.err = run.err;
    const Json::Value transcript = parse(readText(json));
    for (const Json::Value& e : transcript["entries"]) {
        if (e["kind"] == "turn") {
            c.turns.emplace_back();
            c.turns.back().samples = e["samples"].asUInt64();
        }
        if (c.turns.empty())
            continue;
        Turn& turn = c.turns.back();
        const Json::Value& obs = e["obs"];
        if (e["kind"] == "speech" && obs["what"] == "driverRequest")
            turn.replies.push_back(parse(obs["response"].asString())["userComposedDriverResponse"]["data"]);
        else if (e["kind"] == "speech" && obs["what"] == "executeOVAction")
            turn.answer = obs["spokenText"].asString();
        else if (e["kind"] == "note" && e["text"].asString().rfind("app ", 0) == 0)
            turn.apps.push_back(e["text"].asString());
        else if (e["kind"] == "callback" && (e["fn"] == "result" || e["fn"] == "error"))
            turn.outcomes.push_back(e["fn"].asString());
        else if (e["kind"] == "speech" && obs["what"] == "recognition" && obs["accepted"].asBool())
            ++turn.requestsHeard;
    }
    return c;
}

// A table of the device's data store after the session.
std::vector<Row> table(const std::string& device, const std::string& name)
{
    std::vector<Row> rows;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2((device + "/datastore.db").c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, ("SELECT * FROM \"" + name + "\" ORDER BY rowid").c_str(), -1, &statement,
                               nullptr) == SQLITE_OK) {
            while (sqlite3_step(statement) == SQLITE_ROW) {
                Row row;
                for (int i = 0; i < sqlite3_column_count(statement); ++i)
                    if (const unsigned char* text = sqlite3_column_text(statement, i))
                        row[sqlite3_column_name(statement, i)] = reinterpret_cast<const char*>(text);
                rows.push_back(row);
            }
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return rows;
}

// "00:09:58" -> 598.
long clockSeconds(const Json::Value& text)
{
    int h = 0, m = 0, s = 0;
    return std::sscanf(text.asCString(), "%d:%d:%d", &h, &m, &s) == 3 ? h * 3600L + m * 60L + s : -1;
}

// The device's clock moves on between turns by each turn's audio: the
// whole seconds that have gone by when turn `n` (from 0) begins.
long secondsBefore(const Conversation& c, size_t n)
{
    size_t samples = 0;
    for (size_t i = 0; i < n; ++i)
        samples += c.turns[i].samples;
    return static_cast<long>(samples / 16000);
}

TEST(Conversations, ATimerIsSetFoundExtendedListedAndCancelled)
{
    Scratch scratch;
    const Conversation c = converse(scratch, "spoken-timer-conversation");
    ASSERT_EQ(c.exitCode, 0) << c.err;
    ASSERT_EQ(c.turns.size(), 6u);

    // Set: the plug-in finds no timer, the timer app makes timer 1 of 10 minutes.
    ASSERT_EQ(c.turns[0].replies.size(), 1u);
    EXPECT_EQ(c.turns[0].replies[0]["status"], "Not Found");
    EXPECT_EQ(c.turns[0].answer, "Timer set for 10 minutes.");
    ASSERT_EQ(c.turns[0].apps.size(), 1u);
    EXPECT_EQ(c.turns[0].apps[0], "app org.tizen.fridge-timer: timer 1 set for 10 minutes; it runs");

    // The time left is counted on the device's clock: ten minutes less the
    // seconds the first request took.
    ASSERT_EQ(c.turns[1].replies.size(), 1u);
    const Json::Value& left = c.turns[1].replies[0];
    EXPECT_EQ(left["status"], "Single Found");
    EXPECT_EQ(left["id"], "1");
    EXPECT_EQ(left["isRunning"], "True");
    EXPECT_EQ(clockSeconds(left["time"]), 600 - secondsBefore(c, 1));
    EXPECT_GT(secondsBefore(c, 1), 0);

    // Five minutes more fit: the extension is valid, and the app adds them.
    ASSERT_EQ(c.turns[2].replies.size(), 1u);
    EXPECT_EQ(c.turns[2].replies[0]["status"], "Single Found Valid");
    EXPECT_EQ(c.turns[2].replies[0]["time"], "00:10:00");
    EXPECT_EQ(c.turns[2].answer, "Added 5 minutes to your timer.");

    // The list: one timer of 15 minutes, then what is left of it.
    ASSERT_EQ(c.turns[3].replies.size(), 2u);
    EXPECT_EQ(c.turns[3].replies[0]["status"], "Found");
    ASSERT_EQ(c.turns[3].replies[0]["Timers"].size(), 1u);
    EXPECT_EQ(c.turns[3].replies[0]["Timers"][0]["time"], "00:15:00");
    EXPECT_EQ(clockSeconds(c.turns[3].replies[1]["time"]), 900 - secondsBefore(c, 3));

    // Cancel finds the one running timer; then there are none.
    EXPECT_EQ(c.turns[4].replies[0]["status"], "Single Found");
    EXPECT_EQ(c.turns[4].replies[0]["id"], "1");
    EXPECT_EQ(c.turns[4].answer, "Timer cancelled.");
    EXPECT_EQ(c.turns[5].replies[0]["status"], "Not Found");
    EXPECT_EQ(c.turns[5].answer, "You have no timers.");
    EXPECT_TRUE(table(c.device, "Timer").empty());
}

TEST(Conversations, WhatTheKitchenCannotAnswerGetsNoRequestAndItsTimerQuestionIsStillAnswered)
{
    Scratch scratch;
    const Conversation c = converse(scratch, "spoken-outside");
    ASSERT_EQ(c.exitCode, 0) << c.err;
    ASSERT_EQ(c.turns.size(), 4u);

    // A general-knowledge question, a reminder and another appliance's
    // command: nothing is accepted, no driver request, the daemon's error.
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(c.turns[i].requestsHeard, 0) << "turn " << i + 1;
        EXPECT_TRUE(c.turns[i].replies.empty()) << "turn " << i + 1;
        EXPECT_EQ(c.turns[i].answer, "") << "turn " << i + 1;
        EXPECT_EQ(c.turns[i].outcomes, std::vector<std::string>{"error"}) << "turn " << i + 1;
    }

    // The paused timer's time left.
    EXPECT_EQ(c.turns[3].requestsHeard, 1);
    ASSERT_EQ(c.turns[3].replies.size(), 1u);
    EXPECT_EQ(c.turns[3].replies[0]["status"], "Single Found");
    EXPECT_EQ(c.turns[3].replies[0]["time"], "00:04:30");
    EXPECT_EQ(c.turns[3].answer, "Your timer is paused with 4 minutes and 30 seconds left.");
    EXPECT_EQ(c.turns[3].outcomes, std::vector<std::string>{"result"});
}

TEST(Conversations, MusicPlaysIsRatedAndStops)
{
    Scratch scratch;
    const Conversation c = converse(scratch, "spoken-music-conversation");
    ASSERT_EQ(c.exitCode, 0) << c.err;
    ASSERT_EQ(c.turns.size(), 5u);
    EXPECT_EQ(c.turns[0].replies[0]["is_login"], "True");
    EXPECT_EQ(c.turns[0].replies[0]["last_station"], "Found");
    // Pandora plays: its song can be rated, not yet liked; then liked.
    EXPECT_EQ(c.turns[1].replies[0]["status"], "Enabled");
    EXPECT_EQ(c.turns[1].replies[0]["ratingStatus"], "None");
    EXPECT_EQ(c.turns[3].replies[0]["ratingStatus"], "Liked");
    EXPECT_EQ(c.turns[3].answer, "Yes, you like this song.");
    const std::vector<Row> music = table(c.device, "Music");
    ASSERT_EQ(music.size(), 2u);
    EXPECT_EQ(music[1].at("appName"), "Pandora");
    EXPECT_EQ(music[1].at("currentSongRating"), "1");
    EXPECT_EQ(music[1].at("musicPlaying"), "0");
    EXPECT_EQ(music[0].at("musicPlaying"), "0");
}

TEST(Conversations, ShoppingFillsTheListTheSearchAndTheCart)
{
    Scratch scratch;
    const Conversation c = converse(scratch, "spoken-shopping-conversation");
    ASSERT_EQ(c.exitCode, 0) << c.err;
    ASSERT_EQ(c.turns.size(), 7u);
    EXPECT_EQ(table(c.device, "ShoppingListItems").size(), 2u);
    EXPECT_EQ(table(c.device, "ShoppingList").at(0).at("currentShoppingListSize"), "2");
    // The search runs in the commerce service app, launched by the plug-in.
    EXPECT_EQ(c.turns[2].replies[0]["status"], "Multiple Items");
    EXPECT_EQ(c.turns[2].replies[0]["items"].size(), 3u);
    EXPECT_EQ(c.turns[3].replies[0]["status"], "Multiple Items");
    // One product in the cart: not empty, and it opens from the shop's view.
    EXPECT_EQ(c.turns[4].replies[0]["status"], "Not Empty");
    EXPECT_EQ(c.turns[5].replies[0]["status"], "Success");
    EXPECT_EQ(table(c.device, "CommerceCart").size(), 1u);
    const Row commerce = table(c.device, "Commerce").at(0);
    EXPECT_EQ(commerce.at("productCountInCart"), "1");
    EXPECT_EQ(commerce.at("currentViewType"), "2");
    ASSERT_EQ(c.turns[6].apps.size(), 1u);
    EXPECT_EQ(c.turns[6].apps[0], "app UNduJ5y0UH.ShoppingList: comes to the front for \"show the shopping list\"");
}

}  // namespace
