#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplCalendar.h"

#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplCalendar::getCalendarItemOrganizer(OrganizerData* /*organizer*/, std::string /*itemId*/)
{
    LOGD("");
    return false;
}

bool RetrieveDeviceDataParserImplCalendar::getCalendarItemParticipants(CalendarData* /*item*/, std::string /*itemId*/)
{
    LOGD("");
    return false;
}

bool RetrieveDeviceDataParserImplCalendar::getSingleCalendarItem(CalendarData* /*item*/, CalendarQueryData* /*query*/)
{
    LOGD("");
    return false;
}

bool RetrieveDeviceDataParserImplCalendar::getMultipleCalendarItems(std::vector<CalendarData*>* /*items*/,
                                                                    CalendarQueryData* /*query*/)
{
    LOGD("");
    return false;
}

bool RetrieveDeviceDataParserImplCalendar::removeCalendarItemParticipant(CalendarData* /*item*/)
{
    LOGD("");
    return false;
}

bool RetrieveDeviceDataParserImplCalendar::getFreeTime(CalendarData* /*item*/, CalendarQueryData* /*query*/)
{
    LOGD("");
    return false;
}
