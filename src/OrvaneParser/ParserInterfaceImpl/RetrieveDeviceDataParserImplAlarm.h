#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_ALARM_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_ALARM_H

#include <orvane-parser/IParserRetrieveDeviceAlarmData.h>

// The appliance has no alarms.
class RetrieveDeviceDataParserImplAlarm : public IParserRetrieveDeviceAlarmData {
public:
    bool getAlarmList(std::vector<AlarmData*>* alarmList, AlarmQueryData* query) override;
    bool getSingleAlarm(AlarmData* alarm, AlarmQueryData* query) override;
    int getAllAlarmsStatus() override;
};

#endif
