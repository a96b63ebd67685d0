#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_ALARM_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_ALARM_DATA_H

#include <vector>

#include <dlog.h>

#include "AlarmData.h"
#include "AlarmQueryData.h"

// What the parser asks the device about alarms. Each body is the answer of an
// implementation that doesn't override it (some after one debug log line).
class IParserRetrieveDeviceAlarmData {
public:
    virtual ~IParserRetrieveDeviceAlarmData() {}
    virtual bool getAlarmList(std::vector<AlarmData*>* /*alarmList*/, AlarmQueryData* /*query*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceAlarmData.h", __func__, __LINE__);
        return false;
    }
    virtual bool getSingleAlarm(AlarmData* /*alarm*/, AlarmQueryData* /*query*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceAlarmData.h", __func__, __LINE__);
        return false;
    }
    virtual int getAllAlarmsStatus()
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceAlarmData.h", __func__, __LINE__);
        return 0;
    }
};

#endif
