#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_TIMER_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_TIMER_H

#include "ClientManager/OrvaneMaster.h"

#include <orvane-parser/IParserRetrieveDeviceTimerData.h>

// The device's timers for the parser, as the device's timer retriever lists
// them.
class RetrieveDeviceDataParserImplTimer : public IParserRetrieveDeviceTimerData, public OrvaneMaster {
public:
    bool getActivatedTimerList(std::vector<TimerData*>* timerList) override;
};

#endif
