#include "voice/Dialogue.h"

#include <gtest/gtest.h>

namespace {

using voice::Dialogue;
using voice::Heard;
using voice::Step;

Heard request(const std::string& text)
{
    Heard h;
    h.speech = true;
    h.text = text;
    return h;
}

// The driver response of the plug-in, as the frame writes it.
std::string reply(const std::string& agent, const std::string& action, const std::string& data)
{
    return "{\"userComposedDriverResponse\":{\"action\":\"" + action + "\",\"agent\":\"" + agent +
           "\",\"data\":" + data + "}}\n";
}

std::vector<std::string> types(const Step& step)
{
    std::vector<std::string> out;
    for (const Json::Value& e : step.events)
        out.push_back(e["type"].asString());
    return out;
}

const Json::Value& last(const Step& step)
{
    return step.events[step.events.size() - 1];
}

// The final step's action and its spoken answer.
void expectAnswer(const Step& step, const std::string& agent, const std::string& actionName,
                  const std::string& answer)
{
    ASSERT_EQ(types(step), (std::vector<std::string>{"action", "nlu"}));
    EXPECT_FALSE(step.awaitsReply);
    const Json::Value& action = step.events[0];
    EXPECT_EQ(action["agent"], agent);
    EXPECT_EQ(action["actionName"], actionName);
    EXPECT_EQ(action["spokenText"], answer);
    const Json::Value& nlu = step.events[1];
    EXPECT_EQ(nlu["speak"], answer);
    EXPECT_EQ(nlu["last"], true);
    EXPECT_EQ(nlu["engineType"], "CLOUD");
}

TEST(Dialogue, RequestGivesTheTextTheIntentAndTheDriverRequestOfItsAgent)
{
    Dialogue d;
    const Step first = d.begin(request("set a timer for ten minutes"));
    EXPECT_EQ(types(first), (std::vector<std::string>{"asr", "nlu", "driverRequest"}));
    EXPECT_TRUE(first.awaitsReply);
    EXPECT_EQ(first.events[0]["text"], "set a timer for ten minutes");
    EXPECT_EQ(first.events[0]["engineType"], "CLOUD");
    EXPECT_EQ(first.events[0]["confidence"], 1);
    EXPECT_EQ(first.events[1]["last"], false);
    EXPECT_EQ(first.events[1]["text"], R"({"domain":"Timer","intent":"SetTimer","slots":{"duration":"600"}})");
    EXPECT_EQ(last(first)["request"], Json::Value([] {
                  Json::Value r;
                  r["Server Reqeust"]["agent"] = "Timer";
                  r["Server Reqeust"]["action"]["name"] = "Information Timer Request";
                  r["Server Reqeust"]["data"] = Json::Value(Json::objectValue);
                  return r;
              }()));

    const Step second = d.reply(reply("Timer", "Information Timer Reply",
                                      R"({"Timers":[{"id":"1","isRinging":"False","isRunning":"True","time":"00:05:00"}],"status":"Found"})"));
    expectAnswer(second, "Timer", "Set Timer", "Timer set for 10 minutes. You now have 2 timers.");
    EXPECT_EQ(second.events[0]["rawJson"]["duration"], 600);
    EXPECT_EQ(second.events[0]["commandName"], "SetTimer");
}

TEST(Dialogue, ExtendTimeIsSentAsYearsMonthsDaysHoursMinutesSeconds)
{
    Dialogue d;
    const Step first = d.begin(request("add one hour and thirty minutes to the timer"));
    const Json::Value& asked = last(first)["request"]["Server Reqeust"];
    EXPECT_EQ(asked["action"]["name"], "Extend Timer Request");
    EXPECT_EQ(asked["data"]["extendTime"]["value"], "0, 0, 0, 1, 30, 0");
    expectAnswer(d.reply(reply("Timer", "Extend Timer Reply", R"({"id":"2","status":"Single Found Valid"})")),
                 "Timer", "Extend Timer", "Added 1 hour and 30 minutes to your timer.");

    Dialogue tooLong;
    tooLong.begin(request("add ninety hours to the timer"));
    expectAnswer(tooLong.reply(reply("Timer", "Extend Timer Reply", R"({"status":"Single Found InValid"})")), "Timer",
                 "Show Timer", "A timer cannot run longer than 99 hours, 59 minutes and 59 seconds.");
}

TEST(Dialogue, TimeLeftTellsRunningAndPausedTimersApart)
{
    Dialogue running;
    EXPECT_EQ(last(running.begin(request("how much time is left on the timer")))["request"]["Server Reqeust"]["action"]
                  ["name"],
              "Timer Request");
    expectAnswer(running.reply(reply("Timer", "Timer Reply",
                                     R"({"id":"1","isRinging":"False","isRunning":"True","status":"Single Found","time":"00:04:30"})")),
                 "Timer", "Show Timer", "4 minutes and 30 seconds left on your timer.");

    Dialogue paused;
    paused.begin(request("how long is left on my timer"));
    expectAnswer(paused.reply(reply("Timer", "Timer Reply",
                                    R"({"id":"1","isRinging":"False","isRunning":"False","status":"Single Found","time":"01:00:00"})")),
                 "Timer", "Show Timer", "Your timer is paused with 1 hour left.");

    Dialogue expired;
    expired.begin(request("how long is left on my timer"));
    expectAnswer(expired.reply(reply("Timer", "Timer Reply",
                                     R"({"id":"1","isRunning":"True","status":"Single Found","time":"00:00:-5"})")),
                 "Timer", "Show Timer", "Your timer has run out.");

    Dialogue none;
    none.begin(request("how long is left on my timer"));
    expectAnswer(none.reply(reply("Timer", "Timer Reply", R"({"status":"Not Found"})")), "Timer", "Show Timer",
                 "You have no timers.");
}

TEST(Dialogue, CancelWithSeveralRunningTimersAsksWhichOne)
{
    Dialogue d;
    d.begin(request("cancel the timer"));
    const Step answer = d.reply(reply("Timer", "Cancel Timer Reply",
                                      R"({"Timers":[{"id":"1"},{"id":"2"}],"status":"Multiple Running"})"));
    expectAnswer(answer, "Timer", "Choose Timer", "You have 2 timers. Which one should I cancel?");
    EXPECT_EQ(answer.events[0]["actionType"], "Follow-Up");

    Dialogue one;
    one.begin(request("stop my timer"));
    expectAnswer(one.reply(reply("Timer", "Cancel Timer Reply", R"({"id":"1","status":"Single Found"})")), "Timer",
                 "Cancel Timer", "Timer cancelled.");
}

TEST(Dialogue, MusicAppRequestNamesTheAppAndTheAnswerFollowsTheLogin)
{
    Dialogue d;
    const Step first = d.begin(request("play music on tune in"));
    const Json::Value& asked = last(first)["request"]["Server Reqeust"];
    EXPECT_EQ(asked["agent"], "Music App Control");
    EXPECT_EQ(asked["action"]["name"], "Music App Request");
    EXPECT_EQ(asked["data"]["music_app"]["value"], "TuneIn");
    expectAnswer(d.reply(reply("Music App Control", "Music App Reply",
                               R"({"available":"Yes","is_login":"True","last_station":"Found","music_app":"TuneIn"})")),
                 "Music App Control", "Play Music", "Playing your last station on TuneIn.");

    Dialogue loggedOut;
    EXPECT_EQ(last(loggedOut.begin(request("play music")))["request"]["Server Reqeust"]["data"]["music_app"]["value"],
              "Spotify");
    expectAnswer(loggedOut.reply(reply("Music App Control", "Music App Reply",
                                       R"({"available":"Yes","is_login":"False","last_station":"Not Found","music_app":"Spotify"})")),
                 "Music App Control", "Sign In", "Please sign in to Spotify first.");
}

TEST(Dialogue, ItemSearchCarriesMerchantAndItemAndCountsTheResults)
{
    Dialogue d;
    const Step first = d.begin(request("search for bread on tesco"));
    const Json::Value& asked = last(first)["request"]["Server Reqeust"];
    EXPECT_EQ(asked["agent"], "Commerce");
    EXPECT_EQ(asked["action"]["name"], "Search Items Request");
    EXPECT_EQ(asked["data"]["merchantName"]["value"], "Tesco");
    EXPECT_EQ(asked["data"]["itemName"]["value"], "bread");
    expectAnswer(d.reply(reply("Commerce", "Search Items Reply", R"({"items":[{"id":"1"},{"id":"2"}],"status":"Multiple Items"})")),
                 "Commerce", "Show Items", "I found 2 results for bread.");

    Dialogue signedOut;
    signedOut.begin(request("find milk"));
    expectAnswer(signedOut.reply(reply("Commerce", "Search Items Reply", R"({"status":"NotLoggedIn"})")), "Commerce",
                 "Sign In", "Please sign in to your shopping account first.");
}

TEST(Dialogue, ViewInsideAsksWhetherTheAppIsInFrontThenWhetherTheCompartmentExists)
{
    Dialogue d;
    const Step first = d.begin(request("show me inside the flex zone"));
    EXPECT_EQ(last(first)["request"]["Server Reqeust"]["action"]["name"], "View Inside Status Check Request");
    const Step second = d.reply(reply("View Inside App Control", "View Inside Status Check Reply", R"({"status":"Success"})"));
    ASSERT_EQ(types(second), (std::vector<std::string>{"driverRequest"}));
    EXPECT_TRUE(second.awaitsReply);
    const Json::Value& asked = second.events[0]["request"]["Server Reqeust"];
    EXPECT_EQ(asked["action"]["name"], "View Inside Item Check Request");
    EXPECT_EQ(asked["data"]["locationName"]["value"], "Flex Zone");
    const Step third = d.reply(reply("View Inside App Control", "View Inside Item Check Reply",
                                     R"({"isExistence":"False","viewinsidecheck":"True"})"));
    expectAnswer(third, "View Inside App Control", "Show View Inside", "This refrigerator has no flex zone.");
    EXPECT_EQ(third.events[0]["rawJson"]["launched"], false);
}

TEST(Dialogue, WeatherUsesTheSavedCityAndAsksForOneWhenThereIsNone)
{
    Dialogue d;
    EXPECT_EQ(last(d.begin(request("what's the weather today")))["request"]["Server Reqeust"]["action"]["name"],
              "Location Request");
    expectAnswer(d.reply(reply("Weather", "Location Reply", R"({"currentLocationName":"Paris","locationID":"615702"})")),
                 "Weather", "Show Weather", "Here is the weather for Paris.");

    Dialogue noCity;
    noCity.begin(request("how's the weather"));
    expectAnswer(noCity.reply(reply("Weather", "Location Reply", R"({"currentLocationName":null,"locationID":null})")),
                 "Weather", "Set Location", "Please set your location first.");
}

TEST(Dialogue, OpeningAnAppDependsOnWhetherItIsInFrontOrAvailable)
{
    Dialogue d;
    const Step first = d.begin(request("open recipes"));
    EXPECT_EQ(last(first)["request"]["Server Reqeust"]["agent"], "Launch Apps");
    EXPECT_EQ(last(first)["request"]["Server Reqeust"]["data"]["package"]["value"], "1K3CsGDv16.Recipes");
    const Step opened = d.reply(reply("Launch Apps", "App Reply", R"({"launched":"False"})"));
    expectAnswer(opened, "Launch Apps", "Launch App", "Opening recipes.");
    EXPECT_EQ(opened.events[0]["rawJson"]["package"], "1K3CsGDv16.Recipes");

    Dialogue elsewhere;
    elsewhere.begin(request("open recipes"));
    expectAnswer(elsewhere.reply(reply("Launch Apps", "App Reply", R"({"launched":"OtherCountry"})")), "Launch Apps",
                 "Show App", "Recipes is not available in your country.");
}

TEST(Dialogue, NoAnswerFromTheApplianceIsSaid)
{
    for (const std::string& bad : {std::string(), std::string("not json"), std::string("{\"other\":1}")}) {
        Dialogue d;
        d.begin(request("what timers do i have"));
        expectAnswer(d.reply(bad), "Timer", "Report Failure", "Sorry, the appliance did not answer.");
    }
}

TEST(Dialogue, CommandIsHandedToTheApplianceWithoutSpeech)
{
    Heard heard = request("show recipes");
    heard.command = true;
    Dialogue d;
    const Step step = d.begin(heard);
    EXPECT_EQ(types(step), (std::vector<std::string>{"asr", "action"}));
    EXPECT_FALSE(step.awaitsReply);
    EXPECT_EQ(step.events[1]["agent"], "");
    EXPECT_EQ(step.events[1]["spokenText"], "");
    EXPECT_EQ(step.events[1]["rawJson"]["command"], "show recipes");
}

TEST(Dialogue, SilenceAndUnrecognizedSpeechAreErrorsWithTheirReason)
{
    Dialogue silence;
    Step step = silence.begin(Heard());
    ASSERT_EQ(types(step), (std::vector<std::string>{"error"}));
    EXPECT_EQ(step.events[0]["code"], 5);
    EXPECT_EQ(step.events[0]["message"], "no speech was heard");

    Heard rejected;
    rejected.speech = true;
    Dialogue d;
    step = d.begin(rejected);
    ASSERT_EQ(types(step), (std::vector<std::string>{"error"}));
    EXPECT_EQ(step.events[0]["code"], 1);
    EXPECT_EQ(step.events[0]["message"], "the request was not understood");

    Dialogue other;
    step = other.begin(request("set the fridge to three"));
    ASSERT_EQ(types(step), (std::vector<std::string>{"error"}));
    EXPECT_EQ(step.events[0]["message"], "the request was not understood: \"set the fridge to three\"");
}

TEST(Dialogue, TheActionTellsTheAppWhatToDoWithTheValuesItNeeds)
{
    Dialogue set;
    set.begin(request("set a timer for ten minutes"));
    const Step made = set.reply(reply("Timer", "Information Timer Reply", R"({"status":"Not Found"})"));
    EXPECT_EQ(made.events[0]["rawJson"], voice::replyData(reply("", "", R"({"action":"Set Timer","duration":600})")));

    Dialogue extend;
    extend.begin(request("add five minutes to the timer"));
    const Step added = extend.reply(reply("Timer", "Extend Timer Reply", R"({"id":"2","status":"Single Found Valid"})"));
    EXPECT_EQ(added.events[0]["rawJson"]["action"], "Extend Timer");
    EXPECT_EQ(added.events[0]["rawJson"]["id"], "2");
    EXPECT_EQ(added.events[0]["rawJson"]["duration"], 300);

    // An answer that asks nothing of the app names an action that changes nothing.
    Dialogue none;
    none.begin(request("cancel the timer"));
    const Step told = none.reply(reply("Timer", "Cancel Timer Reply", R"({"status":"No Timer"})"));
    expectAnswer(told, "Timer", "Show Timers", "You have no timers.");
    EXPECT_EQ(told.events[0]["rawJson"]["action"], "Show Timers");
}

TEST(Dialogue, ListingTimersAsksForThemThenForTheTimeLeftOnEach)
{
    Dialogue one;
    one.begin(request("what timers do i have"));
    const Step next = one.reply(reply("Timer", "Information Timer Reply",
                                      R"({"Timers":[{"id":"1","isRunning":"True","time":"00:10:00"}],"status":"Found"})"));
    ASSERT_TRUE(next.awaitsReply);
    EXPECT_EQ(last(next)["request"]["Server Reqeust"]["action"]["name"], "Timer Request");
    expectAnswer(one.reply(reply("Timer", "Timer Reply",
                                 R"({"id":"1","isRinging":"False","isRunning":"True","status":"Single Found","time":"00:09:58"})")),
                 "Timer", "Show Timers", "You have one timer, with 9 minutes and 58 seconds left.");

    Dialogue three;
    three.begin(request("what timers do i have"));
    three.reply(reply("Timer", "Information Timer Reply", R"({"Timers":[{"id":"1"},{"id":"2"},{"id":"3"}],"status":"Found"})"));
    expectAnswer(
        three.reply(reply("Timer", "Timer Reply",
                          R"({"Timers":[{"id":"1","isRinging":"False","isRunning":"True","time":"00:01:00"},
                                        {"id":"2","isRinging":"True","isRunning":"True","time":"00:00:-3"},
                                        {"id":"3","isRinging":"False","isRunning":"False","time":"01:00:05"}],
                              "status":"Multiple Found"})")),
        "Timer", "Show Timers",
        "You have 3 timers: timer 1 with 1 minute left, timer 2 ringing, and timer 3 paused with 1 hour and 5 seconds left.");

    Dialogue none;
    none.begin(request("what timers do i have"));
    expectAnswer(none.reply(reply("Timer", "Information Timer Reply", R"({"status":"Not Found"})")), "Timer",
                 "Show Timers", "You have no timers.");
}

TEST(Dialogue, ATimerOfTwentyOrTooLongIsNotSet)
{
    std::string twenty;
    for (int i = 1; i <= 20; ++i)
        twenty += std::string(i == 1 ? "" : ",") + "{\"id\":\"" + std::to_string(i) + "\"}";
    Dialogue full;
    full.begin(request("set a timer for ten minutes"));
    expectAnswer(full.reply(reply("Timer", "Information Timer Reply", "{\"Timers\":[" + twenty + "],\"status\":\"Found\"}")),
                 "Timer", "Show Timers", "You already have 20 timers.");
}

TEST(Dialogue, MusicStopsWithoutAskingAndASongIsLikedOnlyWhereItCanBeRated)
{
    Dialogue stop;
    const Step stopped = stop.begin(request("stop the music"));
    EXPECT_EQ(types(stopped), (std::vector<std::string>{"asr", "nlu", "action", "nlu"}));
    EXPECT_FALSE(stopped.awaitsReply);
    EXPECT_EQ(stopped.events[2]["actionName"], "Stop Music");
    EXPECT_EQ(stopped.events[2]["agent"], "Music App Control");

    Dialogue like;
    EXPECT_EQ(last(like.begin(request("i love this song")))["request"]["Server Reqeust"]["action"]["name"],
              "Song Rating Status Check Request");
    expectAnswer(like.reply(reply("Music App Control", "Song Rating Status Check Reply",
                                  R"({"ratingStatus":"None","status":"Enabled"})")),
                 "Music App Control", "Like Song", "I'll remember that you love this song.");
    Dialogue elsewhere;
    elsewhere.begin(request("i love this song"));
    expectAnswer(elsewhere.reply(reply("Music App Control", "Song Rating Status Check Reply",
                                       R"({"ratingStatus":"None","status":"Disabled"})")),
                 "Music App Control", "Rate Song", "Songs can be rated only in Pandora, while it plays.");
}

TEST(Dialogue, ItemsGoIntoTheCartWhenTheShopHasThemAndOntoTheListAtOnce)
{
    Dialogue cart;
    const Step asked = cart.begin(request("add milk to my cart"));
    const Json::Value& search = last(asked)["request"]["Server Reqeust"];
    EXPECT_EQ(search["agent"], "Commerce");
    EXPECT_EQ(search["action"]["name"], "Search Items Request");
    EXPECT_EQ(search["data"]["itemName"]["value"], "milk");
    const Step added = cart.reply(reply("Commerce", "Search Items Reply", R"({"id":"1","status":"One Item"})"));
    expectAnswer(added, "Commerce", "Add To Cart", "Added milk to your cart.");
    EXPECT_EQ(added.events[0]["rawJson"]["item"], "milk");
    Dialogue missing;
    missing.begin(request("add coffee to my shopping cart"));
    expectAnswer(missing.reply(reply("Commerce", "Search Items Reply", R"({"status":"No Items"})")), "Commerce",
                 "Show Items", "I found nothing for coffee.");

    Dialogue list;
    const Step listed = list.begin(request("add orange juice to my shopping list"));
    EXPECT_FALSE(listed.awaitsReply);
    EXPECT_EQ(listed.events[2]["agent"], "ShoppingList");
    EXPECT_EQ(listed.events[2]["actionName"], "Add To Shopping List");
    EXPECT_EQ(listed.events[2]["rawJson"]["item"], "orange juice");
    EXPECT_EQ(listed.events[2]["spokenText"], "Added orange juice to your shopping list.");
}

}  // namespace
