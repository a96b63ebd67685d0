#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CALENDAR_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CALENDAR_DATA_H

#include <string>
#include <vector>

#include <dlog.h>

#include "CalendarData.h"
#include "CalendarQueryData.h"
#include "OrganizerData.h"

// What the parser asks the device about the calendar. Each body is the answer
// of an implementation that doesn't override it (some after one debug log
// line).
class IParserRetrieveDeviceCalendarData {
public:
    virtual ~IParserRetrieveDeviceCalendarData() {}
    virtual bool getCalendarItemOrganizer(OrganizerData* /*organizer*/, std::string /*itemId*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceCalendarData.h", __func__, __LINE__);
        return false;
    }
    virtual bool getCalendarItemParticipants(CalendarData* /*item*/, std::string /*itemId*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceCalendarData.h", __func__, __LINE__);
        return false;
    }
    virtual bool getSingleCalendarItem(CalendarData* /*item*/, CalendarQueryData* /*query*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceCalendarData.h", __func__, __LINE__);
        return false;
    }
    virtual bool getMultipleCalendarItems(std::vector<CalendarData*>* /*items*/, CalendarQueryData* /*query*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceCalendarData.h", __func__, __LINE__);
        return false;
    }
    virtual bool removeCalendarItemParticipant(CalendarData* /*item*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceCalendarData.h", __func__, __LINE__);
        return false;
    }
    virtual bool getFreeTime(CalendarData* /*item*/, CalendarQueryData* /*query*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceCalendarData.h", __func__, __LINE__);
        return false;
    }
};

#endif
