#include "voice/Requests.h"

#include <gtest/gtest.h>

namespace {

using voice::parseRequest;
using voice::Request;

Request parsed(const std::string& text)
{
    Request r;
    EXPECT_TRUE(parseRequest(text, r)) << text;
    return r;
}

TEST(Requests, TimerRequestsCarryTheirDurationInSeconds)
{
    Request r = parsed("set a timer for ten minutes");
    EXPECT_EQ(r.intent, "SetTimer");
    EXPECT_EQ(r.value["duration"], "600");
    EXPECT_EQ(r.heard["duration"], "ten minutes");

    r = parsed("Start timer for one hour and forty five seconds");
    EXPECT_EQ(r.intent, "SetTimer");
    EXPECT_EQ(r.value["duration"], "3645");

    r = parsed("add a minute to my timer");
    EXPECT_EQ(r.intent, "ExtendTimer");
    EXPECT_EQ(r.value["duration"], "60");
    EXPECT_EQ(parsed("extend the timer by two hours").value["duration"], "7200");
    EXPECT_EQ(parsed("cancel my timer").intent, "CancelTimer");
    EXPECT_EQ(parsed("how long is left on the timer").intent, "TimeLeft");
    EXPECT_EQ(parsed("what timers do I have").intent, "ListTimers");
}

TEST(Requests, SlotsGiveTheValuesThatTheDriverRequestsCarry)
{
    Request r = parsed("play music on tune in");
    EXPECT_EQ(r.intent, "PlayMusic");
    EXPECT_EQ(r.value["musicApp"], "TuneIn");
    EXPECT_EQ(parsed("play music").value.count("musicApp"), 0u);

    r = parsed("find orange juice on tesco");
    EXPECT_EQ(r.intent, "SearchItems");
    EXPECT_EQ(r.value["item"], "orange juice");
    EXPECT_EQ(r.value["merchant"], "Tesco");

    r = parsed("what's in the flex zone");
    EXPECT_EQ(r.intent, "ViewInside");
    EXPECT_EQ(r.value["compartment"], "Flex Zone");
    EXPECT_EQ(r.heard["compartment"], "flex zone");

    r = parsed("open recipes");
    EXPECT_EQ(r.intent, "OpenApp");
    EXPECT_EQ(r.value["app"], "1K3CsGDv16.Recipes");
    EXPECT_EQ(parsed("what's in my shopping cart").intent, "CartStatus");
    EXPECT_EQ(parsed("open my cart").intent, "OpenCart");
    EXPECT_EQ(parsed("how's the weather today").intent, "Weather");
    EXPECT_EQ(parsed("do I like this song").intent, "SongRating");
}

TEST(Requests, TextOutsideThePatternsIsNoRequest)
{
    Request r;
    EXPECT_FALSE(parseRequest("show recipes", r));
    EXPECT_FALSE(parseRequest("set a timer", r)) << "a timer needs its duration";
    EXPECT_FALSE(parseRequest("open the garage", r));
    EXPECT_FALSE(parseRequest("", r));
    EXPECT_FALSE(parseRequest("play music on the radio", r));
}

TEST(Requests, RulesNameEveryPatternAndSlot)
{
    const std::string rules = voice::requestRules();
    EXPECT_NE(rules.find("<request> = ((set | start) [a] timer for <duration>)"), std::string::npos) << rules;
    EXPECT_NE(rules.find("<duration> = <amount> <unit> [and <amount> <unit>];"), std::string::npos) << rules;
    EXPECT_NE(rules.find("<compartment> = fridge | freezer | flex zone | pantry;"), std::string::npos) << rules;
    EXPECT_NE(rules.find("\n    | (show me inside the <compartment>)\n"), std::string::npos) << rules;
}

TEST(Durations, WordsBecomeSecondsAndSecondsBecomeWords)
{
    EXPECT_EQ(voice::durationSeconds("ten minutes"), 600);
    EXPECT_EQ(voice::durationSeconds("an hour and twenty five minutes"), 5100);
    EXPECT_EQ(voice::durationSeconds("forty five seconds"), 45);
    EXPECT_EQ(voice::durationSeconds("minutes"), -1);
    EXPECT_EQ(voice::durationSeconds("ten"), -1);
    EXPECT_EQ(voice::durationSeconds("ten minutes five seconds"), -1);
    EXPECT_EQ(voice::durationSeconds(""), -1);

    EXPECT_EQ(voice::spokenDuration(630), "10 minutes and 30 seconds");
    EXPECT_EQ(voice::spokenDuration(3661), "1 hour, 1 minute and 1 second");
    EXPECT_EQ(voice::spokenDuration(7200), "2 hours");
    EXPECT_EQ(voice::spokenDuration(0), "0 seconds");
    EXPECT_EQ(voice::spokenDuration(-5), "0 seconds");
}

}  // namespace
