#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CLOCK_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CLOCK_H

#include <asr-nlu/IEngineRetrieveDeviceClockData.h>

#include <string>

// The clock facet: the local offset from UTC.
class RetrieveDeviceDataEngineImplClock : public IEngineRetrieveDeviceClockData {
public:
    RetrieveDeviceDataEngineImplClock();
    ~RetrieveDeviceDataEngineImplClock() override;

    std::string getTimezone() override;
};

#endif
