#include <orvane-parser/IParserRetrieveDeviceData.h>
#include <orvane-parser/OrvaneEmbeddedParser.h>
#include <orvane-parser/OrvaneParser.h>
#include <orvane-parser/OrvaneParserListener.h>

#include <dlog.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <string>
#include <type_traits>
#include <vector>

#include "VtableSlot.h"

namespace {

struct LogLine {
    log_priority prio;
    std::string tag;
    std::string text;
};

std::vector<LogLine> gLog;

} // namespace

// Records what the interface bodies log instead of writing it anywhere.
int dlog_print(log_priority prio, const char* tag, const char* fmt, ...)
{
    char text[512];
    va_list ap;
    va_start(ap, fmt);
    int n = std::vsnprintf(text, sizeof text, fmt, ap);
    va_end(ap);
    gLog.push_back({prio, tag, text});
    return n;
}

namespace {

// Asserts that exactly one debug line was logged since the last call, with
// the entry form "<file>: <function>(<line>) > ", and forgets it.
void expectOneEntryLine(const std::string& file, const std::string& function)
{
    ASSERT_EQ(gLog.size(), 1u) << function;
    const LogLine& line = gLog.front();
    EXPECT_EQ(line.prio, DLOG_DEBUG);
    EXPECT_EQ(line.tag, "VoiceEnginePlugIn");
    std::string prefix = file + ": " + function + "(";
    EXPECT_EQ(line.text.compare(0, prefix.size(), prefix), 0) << line.text;
    ASSERT_GT(line.text.size(), prefix.size() + 4) << line.text;
    EXPECT_EQ(line.text.substr(line.text.size() - 4), ") > ") << line.text;
    gLog.clear();
}

class ParserInterfaces : public ::testing::Test {
protected:
    void SetUp() override { gLog.clear(); }
};

} // namespace

TEST_F(ParserInterfaces, BareRootAnswersNullForEveryFacet)
{
    IParserRetrieveDeviceData root;
    EXPECT_EQ(root.getParserRetrieveDeviceAlarmData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceCalendarData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceCallData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceClockData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceContextualData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceExerciseData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceHfdData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceLocaleData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceLocationData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceMessageData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceMusicData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceSettingsData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceStatusData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceSystemData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceTimerData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveUserCustomizedData(), nullptr);
    EXPECT_TRUE(gLog.empty());
}

TEST_F(ParserInterfaces, AlarmDefaultsAnswerNothingAfterADebugLine)
{
    IParserRetrieveDeviceAlarmData facet;
    std::vector<AlarmData*> alarms;
    AlarmData alarm;
    AlarmQueryData query;
    const std::string file = "IParserRetrieveDeviceAlarmData.h";

    EXPECT_FALSE(facet.getAlarmList(&alarms, &query));
    expectOneEntryLine(file, "getAlarmList");
    EXPECT_TRUE(alarms.empty());
    EXPECT_FALSE(facet.getSingleAlarm(&alarm, &query));
    expectOneEntryLine(file, "getSingleAlarm");
    EXPECT_EQ(facet.getAllAlarmsStatus(), 0);
    expectOneEntryLine(file, "getAllAlarmsStatus");
}

TEST_F(ParserInterfaces, CalendarDefaultsAnswerFalseAfterADebugLine)
{
    IParserRetrieveDeviceCalendarData facet;
    OrganizerData organizer;
    CalendarData item;
    CalendarQueryData query;
    std::vector<CalendarData*> items;
    const std::string file = "IParserRetrieveDeviceCalendarData.h";

    EXPECT_FALSE(facet.getCalendarItemOrganizer(&organizer, "17"));
    expectOneEntryLine(file, "getCalendarItemOrganizer");
    EXPECT_FALSE(facet.getCalendarItemParticipants(&item, "17"));
    expectOneEntryLine(file, "getCalendarItemParticipants");
    EXPECT_FALSE(facet.getSingleCalendarItem(&item, &query));
    expectOneEntryLine(file, "getSingleCalendarItem");
    EXPECT_FALSE(facet.getMultipleCalendarItems(&items, &query));
    expectOneEntryLine(file, "getMultipleCalendarItems");
    EXPECT_FALSE(facet.removeCalendarItemParticipant(&item));
    expectOneEntryLine(file, "removeCalendarItemParticipant");
    EXPECT_FALSE(facet.getFreeTime(&item, &query));
    expectOneEntryLine(file, "getFreeTime");
}

TEST_F(ParserInterfaces, CallClockAndExerciseDefaultsAnswerFalseAfterADebugLine)
{
    IParserRetrieveDeviceCallData call;
    HfdData callLog;
    EXPECT_FALSE(call.getLastCallLog(&callLog));
    expectOneEntryLine("IParserRetrieveDeviceCallData.h", "getLastCallLog");

    IParserRetrieveDeviceClockData clock;
    std::vector<ClockData*> clocks;
    EXPECT_FALSE(clock.getAllUserSetClockData(&clocks));
    expectOneEntryLine("IParserRetrieveDeviceClockData.h", "getAllUserSetClockData");

    IParserRetrieveDeviceExerciseData exercise;
    ExerciseData record;
    EXPECT_FALSE(exercise.getStartExerciseStatus(&record, "running"));
    expectOneEntryLine("IParserRetrieveDeviceExerciseData.h", "getStartExerciseStatus");
    EXPECT_FALSE(exercise.getFinishExerciseStatus(&record));
    expectOneEntryLine("IParserRetrieveDeviceExerciseData.h", "getFinishExerciseStatus");
}

TEST_F(ParserInterfaces, MessageDefaultsAreTheInterfaceBodies)
{
    IParserRetrieveDeviceMessageData facet;
    std::vector<HfdData*> messages;
    MessageQueryData query;

    EXPECT_FALSE(facet.getNewMessages(&messages, &query));
    expectOneEntryLine("IParserRetrieveDeviceMessageData.h", "getNewMessages");
    EXPECT_EQ(facet.getPhoneNumberFromMessageId("3"), "");
    EXPECT_TRUE(gLog.empty());
}

TEST_F(ParserInterfaces, SilentDefaultsAreTheInterfaceBodies)
{
    IParserRetrieveDeviceContextualData contextual;
    EXPECT_EQ(contextual.getContextualSinglePhoneNumber(), "");

    IParserRetrieveDeviceLocationData location;
    EXPECT_EQ(location.getLatitude(), "0.0");
    EXPECT_EQ(location.getLongitude(), "0.0");

    IParserRetrieveDeviceMusicData music;
    EXPECT_EQ(music.getPlayDevice(), 100);
    EXPECT_FALSE(music.getMusicAppStatus(nullptr));

    IParserRetrieveDeviceStatusData status;
    EXPECT_FALSE(status.isChineseCustomer());
    EXPECT_TRUE(status.isContactPlmSyncDone());
    EXPECT_FALSE(status.useCustomDriverReply());
    EXPECT_EQ(status.getOneWordCallMode(), "False");

    IParserRetrieveDeviceTimerData timer;
    std::vector<TimerData*> timers;
    EXPECT_FALSE(timer.getActivatedTimerList(&timers));
    EXPECT_TRUE(timers.empty());

    IParserRetrieveUserCustomizedData customized;
    EXPECT_EQ(customized.getDriverResponse("{\"driverRequest\":{}}"), "");

    EXPECT_TRUE(gLog.empty());
}

namespace {

// Sets its flag when destroyed, to see a delete through the interface.
template <typename Interface>
class Dying : public Interface {
public:
    explicit Dying(bool* died) : mDied(died) {}
    ~Dying() override { *mDied = true; }

private:
    bool* mDied;
};

template <typename Interface>
bool diesThroughInterface()
{
    bool died = false;
    Interface* facet = new Dying<Interface>(&died);
    delete facet;
    return died;
}

} // namespace

TEST_F(ParserInterfaces, EmptyFacetsOnlyHaveAVirtualDestructor)
{
    EXPECT_TRUE(diesThroughInterface<IParserRetrieveDeviceHfdData>());
    EXPECT_TRUE(diesThroughInterface<IParserRetrieveDeviceLocaleData>());
    EXPECT_TRUE(diesThroughInterface<IParserRetrieveDeviceSettingsData>());
    EXPECT_TRUE(diesThroughInterface<IParserRetrieveDeviceSystemData>());
    // A vtable pointer and nothing else.
    EXPECT_EQ(sizeof(IParserRetrieveDeviceHfdData), sizeof(void*));
    EXPECT_EQ(sizeof(IParserRetrieveDeviceLocaleData), sizeof(void*));
    EXPECT_EQ(sizeof(IParserRetrieveDeviceSettingsData), sizeof(void*));
    EXPECT_EQ(sizeof(IParserRetrieveDeviceSystemData), sizeof(void*));
}

namespace {

class CustomizedAnswer : public IParserRetrieveUserCustomizedData {
public:
    std::string getDriverResponse(std::string driverRequest) override { return "answer to " + driverRequest; }
};

class FacadeWithCustomized : public IParserRetrieveDeviceData {
public:
    IParserRetrieveUserCustomizedData* getParserRetrieveUserCustomizedData() override { return &mCustomized; }

private:
    CustomizedAnswer mCustomized;
};

} // namespace

TEST_F(ParserInterfaces, OverridesAreReachedThroughTheRoot)
{
    IParserRetrieveDeviceData* root = new FacadeWithCustomized;
    ASSERT_NE(root->getParserRetrieveUserCustomizedData(), nullptr);
    EXPECT_EQ(root->getParserRetrieveUserCustomizedData()->getDriverResponse("x"), "answer to x");
    EXPECT_EQ(root->getParserRetrieveDeviceTimerData(), nullptr);
    delete root;
}

TEST_F(ParserInterfaces, RootSlotsFollowTheLibraryOrder)
{
    typedef IParserRetrieveDeviceData R;
    static_assert(std::has_virtual_destructor<R>::value, "virtual destructor");
    EXPECT_EQ(vtableSlots(&R::getParserRetrieveDeviceAlarmData, &R::getParserRetrieveDeviceCalendarData,
                          &R::getParserRetrieveDeviceCallData, &R::getParserRetrieveDeviceClockData,
                          &R::getParserRetrieveDeviceContextualData, &R::getParserRetrieveDeviceExerciseData,
                          &R::getParserRetrieveDeviceHfdData, &R::getParserRetrieveDeviceLocaleData,
                          &R::getParserRetrieveDeviceLocationData, &R::getParserRetrieveDeviceMessageData,
                          &R::getParserRetrieveDeviceMusicData, &R::getParserRetrieveDeviceSettingsData,
                          &R::getParserRetrieveDeviceStatusData, &R::getParserRetrieveDeviceSystemData,
                          &R::getParserRetrieveDeviceTimerData, &R::getParserRetrieveUserCustomizedData),
              consecutiveSlots(0, 16));
}

// Every facet starts with its destructor's two entries.
TEST_F(ParserInterfaces, FacetSlotsFollowTheLibraryOrder)
{
    typedef IParserRetrieveDeviceAlarmData Alarm;
    EXPECT_EQ(vtableSlots(&Alarm::getAlarmList, &Alarm::getSingleAlarm, &Alarm::getAllAlarmsStatus),
              consecutiveSlots(2, 3));
    typedef IParserRetrieveDeviceCalendarData Calendar;
    EXPECT_EQ(vtableSlots(&Calendar::getCalendarItemOrganizer, &Calendar::getCalendarItemParticipants,
                          &Calendar::getSingleCalendarItem, &Calendar::getMultipleCalendarItems,
                          &Calendar::removeCalendarItemParticipant, &Calendar::getFreeTime),
              consecutiveSlots(2, 6));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceCallData::getLastCallLog), consecutiveSlots(2, 1));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceClockData::getAllUserSetClockData), consecutiveSlots(2, 1));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceContextualData::getContextualSinglePhoneNumber),
              consecutiveSlots(2, 1));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceExerciseData::getStartExerciseStatus,
                          &IParserRetrieveDeviceExerciseData::getFinishExerciseStatus),
              consecutiveSlots(2, 2));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceLocationData::getLatitude,
                          &IParserRetrieveDeviceLocationData::getLongitude),
              consecutiveSlots(2, 2));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceMessageData::getNewMessages,
                          &IParserRetrieveDeviceMessageData::getPhoneNumberFromMessageId),
              consecutiveSlots(2, 2));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceMusicData::getPlayDevice,
                          &IParserRetrieveDeviceMusicData::getMusicAppStatus),
              consecutiveSlots(2, 2));
    typedef IParserRetrieveDeviceStatusData Status;
    EXPECT_EQ(vtableSlots(&Status::isChineseCustomer, &Status::isContactPlmSyncDone,
                          &Status::useCustomDriverReply, &Status::getOneWordCallMode),
              consecutiveSlots(2, 4));
    EXPECT_EQ(vtableSlots(&IParserRetrieveDeviceTimerData::getActivatedTimerList), consecutiveSlots(2, 1));
    EXPECT_EQ(vtableSlots(&IParserRetrieveUserCustomizedData::getDriverResponse), consecutiveSlots(2, 1));
}

// The three operations take the first entries, so the destructor pair takes
// the fourth and the fifth.
TEST_F(ParserInterfaces, ParserSlotsPutTheDeletingDestructorFifth)
{
    static_assert(std::has_virtual_destructor<OrvaneParser>::value, "virtual destructor");
    EXPECT_EQ(vtableSlots(&OrvaneParser::setParserListener, &OrvaneParser::setParserDataRetriever,
                          &OrvaneParser::parse),
              consecutiveSlots(0, 3));
    static_assert(std::has_virtual_destructor<OrvaneEmbeddedParser>::value, "virtual destructor");
    EXPECT_EQ(vtableSlots(&OrvaneEmbeddedParser::setParserListener,
                          &OrvaneEmbeddedParser::setParserDataRetriever, &OrvaneEmbeddedParser::parse),
              consecutiveSlots(0, 3));
    EXPECT_EQ(vtableSlots(&OrvaneParserListener::executeOVAction, &OrvaneParserListener::executeDriverResponse),
              consecutiveSlots(0, 2));
}

namespace {

class RecordingParserListener : public OrvaneParserListener {
public:
    void executeOVAction(ResponseData* data) override { actions.push_back(data); }
    void executeDriverResponse(std::string driverResponse) override { responses.push_back(driverResponse); }

    std::vector<ResponseData*> actions;
    std::vector<std::string> responses;
};

} // namespace

TEST_F(ParserInterfaces, ListenerCallsReachTheImplementation)
{
    RecordingParserListener recorder;
    OrvaneParserListener* listener = &recorder;
    listener->executeDriverResponse("{\"driverResponse\":{}}");
    listener->executeOVAction(nullptr);
    ASSERT_EQ(recorder.responses.size(), 1u);
    EXPECT_EQ(recorder.responses[0], "{\"driverResponse\":{}}");
    ASSERT_EQ(recorder.actions.size(), 1u);
    EXPECT_EQ(recorder.actions[0], nullptr);
}

// The parser library's own records: signatures as the plug-in calls them.
static_assert(std::is_empty<AlarmData>::value && std::is_empty<AlarmQueryData>::value &&
                  std::is_empty<CalendarData>::value && std::is_empty<CalendarQueryData>::value &&
                  std::is_empty<OrganizerData>::value && std::is_empty<HfdData>::value &&
                  std::is_empty<ClockData>::value && std::is_empty<ExerciseData>::value &&
                  std::is_empty<MessageQueryData>::value,
              "records this device never fills carry nothing");
static_assert(std::is_same<decltype(&MusicData::setCurrentStation), void (MusicData::*)(std::string)>::value &&
                  std::is_same<decltype(&MusicData::setLastStation), void (MusicData::*)(std::string)>::value &&
                  std::is_same<decltype(&MusicData::setMusicAppName), void (MusicData::*)(std::string)>::value &&
                  std::is_same<decltype(&MusicData::getMusicAppName), std::string (MusicData::*)()>::value,
              "MusicData setters and getters");
static_assert(std::is_same<decltype(&TimerData::setId), void (TimerData::*)(std::string)>::value &&
                  std::is_same<decltype(&TimerData::setIsRunning), void (TimerData::*)(std::string)>::value &&
                  std::is_same<decltype(&TimerData::setTimerTime), void (TimerData::*)(std::string)>::value &&
                  std::is_same<decltype(&TimerData::getTimerTime), std::string (TimerData::*)()>::value,
              "TimerData setters and getters");
static_assert(std::is_same<decltype(&OrvaneParser::parse), void (OrvaneParser::*)(std::string, int, bool)>::value,
              "parse takes the data, the response type and the last flag");
