#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_ALARM_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_ALARM_H

#include <asr-nlu/IEngineRetrieveDeviceAlarmData.h>

#include <string>

// The alarm facet: the default alarm name and the page size, both constant.
class RetrieveDeviceDataEngineImplAlarm : public IEngineRetrieveDeviceAlarmData {
public:
    RetrieveDeviceDataEngineImplAlarm();
    ~RetrieveDeviceDataEngineImplAlarm() override;

    std::string getDefaultAlarmName() override;
    std::string getAlarmPageSize() override;
};

#endif
