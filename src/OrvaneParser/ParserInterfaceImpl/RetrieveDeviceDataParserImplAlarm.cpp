#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplAlarm.h"

#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplAlarm::getAlarmList(std::vector<AlarmData*>* /*alarmList*/, AlarmQueryData* /*query*/)
{
    LOGD("");
    return false;
}

bool RetrieveDeviceDataParserImplAlarm::getSingleAlarm(AlarmData* /*alarm*/, AlarmQueryData* /*query*/)
{
    LOGD("");
    return false;
}

int RetrieveDeviceDataParserImplAlarm::getAllAlarmsStatus()
{
    LOGD("");
    return 0;
}
