#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_TIMER_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_TIMER_DATA_H

#include <vector>

#include "TimerData.h"

// What the parser asks the device about timers. Each body is the answer of an
// implementation that doesn't override it.
class IParserRetrieveDeviceTimerData {
public:
    virtual ~IParserRetrieveDeviceTimerData() {}
    virtual bool getActivatedTimerList(std::vector<TimerData*>* /*timerList*/) { return false; }
};

#endif
