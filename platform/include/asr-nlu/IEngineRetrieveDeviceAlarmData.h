#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_ALARM_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_ALARM_DATA_H

#include <string>

// What the speech library asks the device about alarm facts. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceAlarmData {
public:
    virtual std::string getDefaultAlarmName() { return "Alarm"; }
    virtual std::string getAlarmPageSize() { return "5"; }
    virtual ~IEngineRetrieveDeviceAlarmData() {}
};

#endif
