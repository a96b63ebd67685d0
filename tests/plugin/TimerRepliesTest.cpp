#include "PluginFixture.h"

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenTimer.h"
#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <climits>
#include <ctime>
#include <stdexcept>

namespace {

std::string respond(const std::string& request)
{
    return DaCustomizedDriverResponseRetriever().getDriverResponse(request);
}

std::string timerRequest(const std::string& action, const std::string& data = "{}")
{
    return R"({"Server Reqeust": {"agent": "Timer", "action": {"name": ")" + action + R"("}, "data": )" + data +
           "}}";
}

std::string withId(const std::string& id)
{
    return R"({"id": {"value": ")" + id + R"("}})";
}

std::string extendData(const std::string& id, const std::string& extendTime)
{
    return R"({"id": {"value": ")" + id + R"("}, "extendTime": {"value": ")" + extendTime + R"("}})";
}

// One row of the "Timer" table with every column that the replies read.
std::string timer(const std::string& id, const std::string& running, const std::string& ringing,
                  const std::string& delay, const std::string& expected = "0", const std::string& lastUpdate = "0")
{
    return R"({"id": ")" + id + R"(", "isrunning": ")" + running + R"(", "isringing": ")" + ringing +
           R"(", "delayTime": ")" + delay + R"(", "expectedRingingTimeStamp": ")" + expected +
           R"(", "lastUpdateTimeStamp": ")" + lastUpdate + R"("})";
}

std::string envelope(const std::string& action, const std::string& data)
{
    return R"({"userComposedDriverResponse":{"action":")" + action + R"(","agent":"Timer","data":)" + data + "}}\n";
}

}  // namespace

class TimerReplies : public marltest::EngineTest {
protected:
    // Publishes the rows and makes the timer retriever read them at once.
    void setTimers(const std::string& rows)
    {
        device.apply(R"({"datastore": {"Timer": [)" + rows + "]}}");
        timerRetriever()->refreshData();
    }

    DaDeviceTimerDataRetrieverImpl* timerRetriever()
    {
        return dynamic_cast<DaDeviceTimerDataRetrieverImpl*>(
            wrapper()->getDeviceDataRetrieveManager()->getTimerRetriever());
    }
};

// --- durations -----------------------------------------------------------------

TEST(TimerDuration, FieldsArePositionalFromTheYearDown)
{
    EXPECT_EQ(strTimeToInt("0, 0, 0, 1, 30, 0"), 5400);
    EXPECT_EQ(strTimeToInt("1"), 31536000);
    EXPECT_EQ(strTimeToInt("0, 1"), 2592000);
    EXPECT_EQ(strTimeToInt("0, 0, 2"), 172800);
    EXPECT_EQ(strTimeToInt("0, 0, 0, 0, 0, 45"), 45);
}

TEST(TimerDuration, CommasAndBlanksEachSeparateFields)
{
    EXPECT_EQ(strTimeToInt("0,0,0,0,2,5"), 125);
    EXPECT_EQ(strTimeToInt("0 0 0 0 2 5"), 125);
    EXPECT_EQ(strTimeToInt("  0 ,, 0, 0, 0, 2, 5 "), 125);
}

TEST(TimerDuration, OnlyTheFirstSixFieldsCount)
{
    EXPECT_EQ(strTimeToInt("0, 0, 0, 0, 5, 0, 7"), 300);
    EXPECT_EQ(strTimeToInt("0, 0, 0, 0, 5, 0, 7, 8, 9"), 300);
}

TEST(TimerDuration, EmptyMissingAndNonNumericTextsAreZero)
{
    EXPECT_EQ(strTimeToInt(""), 0);
    EXPECT_EQ(strTimeToInt(nullptr), 0);
    EXPECT_EQ(strTimeToInt("soon"), 0);
    EXPECT_EQ(strTimeToInt("x, 0, 0, 0, 0, 5"), 5);
}

TEST(TimerDuration, ASumBeyondIntIsHeldAtTheLimit)
{
    EXPECT_EQ(strTimeToInt("90"), INT_MAX);
    EXPECT_EQ(strTimeToInt("-90"), INT_MIN);
    EXPECT_EQ(strTimeToInt("68"), 68 * 31536000);
}

// --- information -------------------------------------------------------------------

TEST_F(TimerReplies, InformationOnOneStoppedTimerListsItWithItsDelay)
{
    setTimers(timer("1", "0", "0", "300"));
    EXPECT_EQ(respond(timerRequest("Information Timer Request")),
              "{\"userComposedDriverResponse\":{\"action\":\"Information Timer Reply\",\"agent\":\"Timer\","
              "\"data\":{\"Timers\":[{\"id\":\"1\",\"isRinging\":\"False\",\"isRunning\":\"False\",\"time\":"
              "\"00:05:00\"}],\"status\":\"Found\"}}}\n");
}

TEST_F(TimerReplies, InformationListsEveryTimerInRowOrderWithItsDelayNotItsRemainingTime)
{
    const std::string soon = std::to_string(time(nullptr) + 30);
    setTimers(timer("7", "1", "0", "3661", soon) + "," + timer("3", "0", "1", "60"));
    EXPECT_EQ(respond(timerRequest("Information Timer Request")),
              envelope("Information Timer Reply",
                       R"({"Timers":[{"id":"7","isRinging":"False","isRunning":"True","time":"01:01:01"},)"
                       R"({"id":"3","isRinging":"True","isRunning":"False","time":"00:01:00"}],"status":"Found"})"));
}

TEST_F(TimerReplies, InformationOnNoTimersIsNotFound)
{
    setTimers("");
    EXPECT_EQ(respond(timerRequest("Information Timer Request")),
              envelope("Information Timer Reply", R"({"status":"Not Found"})"));
    EXPECT_TRUE(marltest::logged("timer count[0]"));
}

TEST_F(TimerReplies, ADelayOfHundredHoursShowsAllItsHours)
{
    setTimers(timer("1", "0", "0", "360000") + "," + timer("2", "0", "0", "359999"));
    const std::string reply = respond(timerRequest("Information Timer Request"));
    EXPECT_NE(reply.find(R"("time":"100:00:00")"), std::string::npos) << reply;
    EXPECT_NE(reply.find(R"("time":"99:59:59")"), std::string::npos) << reply;
}

TEST_F(TimerReplies, AStoreThatCannotBeReadLooksLikeNoTimers)
{
    device.apply(R"({"errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    timerRetriever()->refreshData();
    EXPECT_EQ(respond(timerRequest("Information Timer Request")),
              envelope("Information Timer Reply", R"({"status":"Not Found"})"));
}

// --- extend -----------------------------------------------------------------------------

TEST_F(TimerReplies, ExtendNamingARunningTimerThatFitsIsSingleFoundValid)
{
    setTimers(timer("1", "0", "0", "60") + "," + timer("2", "1", "0", "600", "2000000000"));
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", extendData("2", "0, 0, 0, 0, 5, 0"))),
              "{\"userComposedDriverResponse\":{\"action\":\"Extend Timer Reply\",\"agent\":\"Timer\",\"data\":{"
              "\"id\":\"2\",\"isRinging\":\"False\",\"isRunning\":\"True\",\"status\":\"Single Found Valid\","
              "\"time\":\"00:10:00\"}}}\n");
    EXPECT_TRUE(marltest::logged("id[2], extendTime[0, 0, 0, 0, 5, 0]"));
}

TEST_F(TimerReplies, ExtendToExactlyNinetyNineHoursFitsAndOneSecondMoreDoesNot)
{
    setTimers(timer("1", "1", "0", "359699"));
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", extendData("1", "0, 0, 0, 0, 5, 0"))),
              envelope("Extend Timer Reply", R"({"id":"1","isRinging":"False","isRunning":"True",)"
                                             R"("status":"Single Found Valid","time":"99:54:59"})"));
    setTimers(timer("1", "1", "0", "359700"));
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", extendData("1", "0, 0, 0, 0, 5, 0"))),
              envelope("Extend Timer Reply", R"({"id":"1","isRinging":"False","isRunning":"True",)"
                                             R"("status":"Single Found InValid","time":"99:55:00"})"));
}

TEST_F(TimerReplies, ExtendByYearsThatOverflowAnIntIsInvalid)
{
    setTimers(timer("1", "1", "0", "60"));
    EXPECT_NE(respond(timerRequest("Extend Timer Request", extendData("1", "90"))).find("Single Found InValid"),
              std::string::npos);
}

TEST_F(TimerReplies, ExtendWithOneTimerAndAWrongIdStillAnswersForThatTimer)
{
    setTimers(timer("4", "0", "0", "120"));
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", extendData("9", "0, 0, 0, 0, 1, 0"))),
              envelope("Extend Timer Reply", R"({"id":"4","isRinging":"False","isRunning":"False",)"
                                             R"("status":"Single Found Valid","time":"00:02:00"})"));
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", extendData("", "0, 0, 0, 0, 1, 0"))),
              envelope("Extend Timer Reply", R"({"id":"4","isRinging":"False","isRunning":"False",)"
                                             R"("status":"Single Found Valid","time":"00:02:00"})"));
}

TEST_F(TimerReplies, ExtendWithTwoTimersAndAWrongIdIsOnlyNotFound)
{
    setTimers(timer("1", "1", "0", "60") + "," + timer("2", "1", "0", "60"));
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", extendData("3", "0, 0, 0, 0, 1, 0"))),
              envelope("Extend Timer Reply", R"({"status":"Not Found"})"));
}

TEST_F(TimerReplies, ExtendWithoutAnIdAmongSeveralTimersListsTheirIdsAsItems)
{
    setTimers(timer("5", "1", "0", "60") + "," + timer("6", "0", "1", "70") + "," + timer("8", "0", "0", "80"));
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", R"({"extendTime": {"value": "0, 0, 0, 0, 1, 0"}})")),
              envelope("Extend Timer Reply",
                       R"({"items":[{"id":"5"},{"id":"6"},{"id":"8"}],"status":"Multiple Found"})"));
}

TEST_F(TimerReplies, ExtendWithoutTimersIsNoTimer)
{
    setTimers("");
    EXPECT_EQ(respond(timerRequest("Extend Timer Request", extendData("1", "0, 0, 0, 0, 1, 0"))),
              envelope("Extend Timer Reply", R"({"status":"No Timer"})"));
}

TEST_F(TimerReplies, ExtendUsesOnlyTheFirstSixFieldsOfTheExtension)
{
    setTimers(timer("1", "1", "0", "100"));
    EXPECT_NE(respond(timerRequest("Extend Timer Request", extendData("1", "0, 0, 0, 0, 5, 0, 999999")))
                  .find("\"status\":\"Single Found Valid\""),
              std::string::npos);
}

TEST_F(TimerReplies, ExtendReadsMissingColumnsAsEmptyWhereItOnlyListsIds)
{
    device.apply(R"({"datastore": {"Timer": [{"id": "1"}, {"id": "2"}]}})");
    timerRetriever()->refreshData();
    EXPECT_EQ(respond(timerRequest("Extend Timer Request")),
              envelope("Extend Timer Reply", R"({"items":[{"id":"1"},{"id":"2"}],"status":"Multiple Found"})"));
}

// --- cancel -------------------------------------------------------------------------------

TEST_F(TimerReplies, CancelPrefersTheRingingTimer)
{
    setTimers(timer("1", "1", "0", "60") + "," + timer("2", "1", "0", "70") + "," + timer("3", "0", "1", "80") +
              "," + timer("4", "1", "0", "90"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request")),
              envelope("Cancel Timer Reply", R"({"id":"3","isRinging":"True","isRunning":"False",)"
                                             R"("status":"Single Found","time":"00:01:20"})"));
}

TEST_F(TimerReplies, CancelWithSeveralRingingTimersListsOnlyThoseThatRing)
{
    setTimers(timer("1", "0", "1", "60") + "," + timer("2", "1", "0", "70") + "," + timer("3", "0", "1", "80"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request")),
              envelope("Cancel Timer Reply",
                       R"({"Timers":[{"id":"1","isRinging":"True","isRunning":"False","time":"00:01:00"},)"
                       R"({"id":"3","isRinging":"True","isRunning":"False","time":"00:01:20"}],)"
                       R"("status":"Multiple Ringing"})"));
}

TEST_F(TimerReplies, CancelWithOneRunningTimerAnswersForIt)
{
    setTimers(timer("1", "0", "0", "60") + "," + timer("2", "1", "0", "70"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request")),
              envelope("Cancel Timer Reply", R"({"id":"2","isRinging":"False","isRunning":"True",)"
                                             R"("status":"Single Found","time":"00:01:10"})"));
}

TEST_F(TimerReplies, CancelWithSeveralRunningTimersListsThoseThatRun)
{
    setTimers(timer("1", "1", "0", "60") + "," + timer("2", "0", "0", "70") + "," + timer("3", "1", "0", "80"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request")),
              envelope("Cancel Timer Reply",
                       R"({"Timers":[{"id":"1","isRinging":"False","isRunning":"True","time":"00:01:00"},)"
                       R"({"id":"3","isRinging":"False","isRunning":"True","time":"00:01:20"}],)"
                       R"("status":"Multiple Running"})"));
}

TEST_F(TimerReplies, CancelWithTimersThatNeitherRunNorRingIsNoRunningTimers)
{
    setTimers(timer("1", "0", "0", "60") + "," + timer("2", "0", "0", "70"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request")),
              envelope("Cancel Timer Reply", R"({"status":"No Running Timers"})"));
}

TEST_F(TimerReplies, CancelWithoutTimersIsNoTimer)
{
    setTimers("");
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request")), envelope("Cancel Timer Reply", R"({"status":"No Timer"})"));
}

TEST_F(TimerReplies, CancelNamingATimerAnswersForThatOneWhateverRings)
{
    setTimers(timer("1", "0", "1", "60") + "," + timer("2", "0", "0", "70"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request", withId("2"))),
              envelope("Cancel Timer Reply", R"({"id":"2","isRinging":"False","isRunning":"False",)"
                                             R"("status":"Single Found","time":"00:01:10"})"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request", withId("5"))),
              envelope("Cancel Timer Reply", R"({"status":"Not Found"})"));
}

TEST_F(TimerReplies, CancelNamingATimerWithoutTimersIsNotFound)
{
    setTimers("");
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request", withId("1"))),
              envelope("Cancel Timer Reply", R"({"status":"Not Found"})"));
}

// --- plain timer ------------------------------------------------------------------------

TEST_F(TimerReplies, ARunningTimerShowsTheTimeUntilItRings)
{
    const time_t before = time(nullptr);
    setTimers(timer("1", "1", "0", "900", std::to_string(before + 600)));
    const std::string reply = respond(timerRequest("Timer Request"));
    const bool tenMinutes = reply == envelope("Timer Reply", R"({"id":"1","isRinging":"False","isRunning":"True",)"
                                                             R"("status":"Single Found","time":"00:10:00"})");
    const bool aSecondLater = reply == envelope("Timer Reply", R"({"id":"1","isRinging":"False","isRunning":"True",)"
                                                               R"("status":"Single Found","time":"00:09:59"})");
    EXPECT_TRUE(tenMinutes || aSecondLater) << reply;
}

TEST_F(TimerReplies, ARunningTimerPastItsRingingTimeShowsANegativeTime)
{
    setTimers(timer("1", "1", "1", "900", std::to_string(time(nullptr) - 65)));
    const std::string reply = respond(timerRequest("Timer Request"));
    EXPECT_TRUE(reply.find(R"("time":"00:-1:-5")") != std::string::npos ||
                reply.find(R"("time":"00:-1:-6")") != std::string::npos)
        << reply;
}

TEST_F(TimerReplies, APausedTimerShowsWhatWasLeftWhenItWasLastTouched)
{
    setTimers(timer("1", "0", "0", "900", "1700000450", "1700000000"));
    EXPECT_EQ(respond(timerRequest("Timer Request")),
              envelope("Timer Reply", R"({"id":"1","isRinging":"False","isRunning":"False",)"
                                      R"("status":"Single Found","time":"00:07:30"})"));
}

TEST_F(TimerReplies, APausedTimerTouchedAfterItsRingingTimePrintsTheMinusSignInTheSeconds)
{
    setTimers(timer("1", "0", "0", "900", "1700000000", "1700000005"));
    EXPECT_NE(respond(timerRequest("Timer Request")).find(R"("time":"00:00:-5")"), std::string::npos);
}

TEST_F(TimerReplies, AStoppedTimerWithoutARingingTimeShowsItsDelay)
{
    setTimers(timer("1", "0", "0", "7384", "0", "1700000005"));
    EXPECT_NE(respond(timerRequest("Timer Request")).find(R"("time":"02:03:04")"), std::string::npos);
}

TEST_F(TimerReplies, APlainTimerRequestOnSeveralTimersListsThemAll)
{
    setTimers(timer("1", "0", "0", "60") + "," + timer("2", "0", "0", "900", "1700000450", "1700000000"));
    EXPECT_EQ(respond(timerRequest("Timer Request")),
              envelope("Timer Reply",
                       R"({"Timers":[{"id":"1","isRinging":"False","isRunning":"False","time":"00:01:00"},)"
                       R"({"id":"2","isRinging":"False","isRunning":"False","time":"00:07:30"}],)"
                       R"("status":"Multiple Found"})"));
}

TEST_F(TimerReplies, APlainTimerRequestNamingATimerAnswersForThatOne)
{
    setTimers(timer("1", "0", "0", "60") + "," + timer("2", "0", "0", "120"));
    EXPECT_EQ(respond(timerRequest("Timer Request", withId("2"))),
              envelope("Timer Reply", R"({"id":"2","isRinging":"False","isRunning":"False",)"
                                      R"("status":"Single Found","time":"00:02:00"})"));
    EXPECT_EQ(respond(timerRequest("Timer Request", withId("3"))), envelope("Timer Reply", R"({"status":"Not Found"})"));
}

TEST_F(TimerReplies, APlainTimerRequestWithoutTimersIsNotFound)
{
    setTimers("");
    EXPECT_EQ(respond(timerRequest("Timer Request")), envelope("Timer Reply", R"({"status":"Not Found"})"));
}

// --- rows without a column that a block needs ----------------------------------------

TEST_F(TimerReplies, ARowWithoutItsDelayMakesTheGeneratorThrowAndTheResponseEmpty)
{
    device.apply(R"({"datastore": {"Timer": [{"id": "1", "isrunning": "0", "isringing": "0"}]}})");
    timerRetriever()->refreshData();
    Json::Value request;
    request["agent"] = "Timer";
    request["action"]["name"] = "Information Timer Request";
    EXPECT_THROW(DaDriverResponseGenTimer generator(request), std::out_of_range);
    EXPECT_EQ(respond(timerRequest("Information Timer Request")), "");
    EXPECT_TRUE(marltest::logged("driver request refused: "));
}

TEST_F(TimerReplies, ARowWithoutARingingTimeMakesTheRemainingTimeThrow)
{
    device.apply(R"({"datastore": {"Timer": [{"id": "1", "isrunning": "1", "isringing": "0", "delayTime": "60"}]}})");
    timerRetriever()->refreshData();
    Json::Value request;
    request["agent"] = "Timer";
    request["action"]["name"] = "Timer Request";
    EXPECT_THROW(DaDriverResponseGenTimer generator(request), std::out_of_range);
    EXPECT_EQ(respond(timerRequest("Timer Request")), "");
    // The delay block has no use for the ringing time.
    EXPECT_NE(respond(timerRequest("Information Timer Request")).find(R"("time":"00:01:00")"), std::string::npos);
}

// --- the request ---------------------------------------------------------------------------

TEST_F(TimerReplies, AnUnknownActionOrNoActionGivesTheEmptyResponse)
{
    setTimers(timer("1", "0", "0", "60"));
    EXPECT_EQ(respond(timerRequest("Pause Timer Request")), "");
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "Timer"}})"), "");
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "timer", "action": {"name": "Timer Request"}}})"), "");
}

// An id that JsonCpp can't read as text gets the empty response.
TEST_F(TimerReplies, AnIdOfTheWrongTypeGetsTheEmptyResponse)
{
    setTimers(timer("1", "0", "0", "60") + "," + timer("2", "1", "0", "70"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request", R"({"id": "1"})")), "");
    EXPECT_EQ(respond(timerRequest("Timer Request", R"({"id": {"value": [2]}})")), "");
    EXPECT_EQ(respond(timerRequest("Timer Request", "[1]")), "");
}

// A number is the id JsonCpp writes for it.
TEST_F(TimerReplies, AnIdGivenAsANumberIsItsText)
{
    setTimers(timer("1", "0", "0", "60") + "," + timer("2", "1", "0", "70"));
    EXPECT_EQ(respond(timerRequest("Cancel Timer Request", R"({"id": {"value": 2}})")),
              respond(timerRequest("Cancel Timer Request", R"({"id": {"value": "2"}})")));
    EXPECT_NE(respond(timerRequest("Cancel Timer Request", R"({"id": {"value": 2}})")).find(R"("id":"2")"),
              std::string::npos);
}
TEST_F(TimerReplies, AnotherTimerRetrieverInForceGivesTheEmptyResponse)
{
    setTimers(timer("1", "0", "0", "60"));
    wrapper()->getDeviceDataRetrieveManager()->setUserDeviceDataRetriever(new IDeviceDataRetrieve());
    EXPECT_EQ(respond(timerRequest("Information Timer Request")), "");
    EXPECT_TRUE(marltest::logged("timer retriever is not the appliance's"));
}
