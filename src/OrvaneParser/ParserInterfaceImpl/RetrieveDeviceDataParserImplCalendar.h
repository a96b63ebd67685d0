#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_CALENDAR_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_CALENDAR_H

#include <orvane-parser/IParserRetrieveDeviceCalendarData.h>

// The appliance has no calendar of its own.
class RetrieveDeviceDataParserImplCalendar : public IParserRetrieveDeviceCalendarData {
public:
    bool getCalendarItemOrganizer(OrganizerData* organizer, std::string itemId) override;
    bool getCalendarItemParticipants(CalendarData* item, std::string itemId) override;
    bool getSingleCalendarItem(CalendarData* item, CalendarQueryData* query) override;
    bool getMultipleCalendarItems(std::vector<CalendarData*>* items, CalendarQueryData* query) override;
    bool removeCalendarItemParticipant(CalendarData* item) override;
    bool getFreeTime(CalendarData* item, CalendarQueryData* query) override;
};

#endif
