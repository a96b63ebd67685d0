#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplAlarm.h"

#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplAlarm::RetrieveDeviceDataEngineImplAlarm()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplAlarm::~RetrieveDeviceDataEngineImplAlarm()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplAlarm::getDefaultAlarmName()
{
    return "Alarm";
}

std::string RetrieveDeviceDataEngineImplAlarm::getAlarmPageSize()
{
    return "5";
}
