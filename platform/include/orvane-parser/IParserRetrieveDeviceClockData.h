#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CLOCK_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CLOCK_DATA_H

#include <vector>

#include <dlog.h>

#include "ClockData.h"

// What the parser asks the device about clocks. Each body is the answer of an
// implementation that doesn't override it (some after one debug log line).
class IParserRetrieveDeviceClockData {
public:
    virtual ~IParserRetrieveDeviceClockData() {}
    virtual bool getAllUserSetClockData(std::vector<ClockData*>* /*clockList*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceClockData.h", __func__, __LINE__);
        return false;
    }
};

#endif
