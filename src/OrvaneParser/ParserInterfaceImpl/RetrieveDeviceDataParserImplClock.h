#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_CLOCK_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_CLOCK_H

#include <orvane-parser/IParserRetrieveDeviceClockData.h>

// The appliance has no user-set clocks.
class RetrieveDeviceDataParserImplClock : public IParserRetrieveDeviceClockData {
public:
    bool getAllUserSetClockData(std::vector<ClockData*>* clockList) override;
};

#endif
