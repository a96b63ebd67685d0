#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_DATA_H

#include "IParserRetrieveDeviceAlarmData.h"
#include "IParserRetrieveDeviceCalendarData.h"
#include "IParserRetrieveDeviceCallData.h"
#include "IParserRetrieveDeviceClockData.h"
#include "IParserRetrieveDeviceContextualData.h"
#include "IParserRetrieveDeviceExerciseData.h"
#include "IParserRetrieveDeviceHfdData.h"
#include "IParserRetrieveDeviceLocaleData.h"
#include "IParserRetrieveDeviceLocationData.h"
#include "IParserRetrieveDeviceMessageData.h"
#include "IParserRetrieveDeviceMusicData.h"
#include "IParserRetrieveDeviceSettingsData.h"
#include "IParserRetrieveDeviceStatusData.h"
#include "IParserRetrieveDeviceSystemData.h"
#include "IParserRetrieveDeviceTimerData.h"
#include "IParserRetrieveUserCustomizedData.h"

// The device data facade handed to the parser: one operation per domain, each
// returning that domain's facet, which the parser only borrows. A bare facade
// has no facets. The destructor comes after the operations.
class IParserRetrieveDeviceData {
public:
    virtual IParserRetrieveDeviceAlarmData* getParserRetrieveDeviceAlarmData() { return nullptr; }
    virtual IParserRetrieveDeviceCalendarData* getParserRetrieveDeviceCalendarData() { return nullptr; }
    virtual IParserRetrieveDeviceCallData* getParserRetrieveDeviceCallData() { return nullptr; }
    virtual IParserRetrieveDeviceClockData* getParserRetrieveDeviceClockData() { return nullptr; }
    virtual IParserRetrieveDeviceContextualData* getParserRetrieveDeviceContextualData() { return nullptr; }
    virtual IParserRetrieveDeviceExerciseData* getParserRetrieveDeviceExerciseData() { return nullptr; }
    virtual IParserRetrieveDeviceHfdData* getParserRetrieveDeviceHfdData() { return nullptr; }
    virtual IParserRetrieveDeviceLocaleData* getParserRetrieveDeviceLocaleData() { return nullptr; }
    virtual IParserRetrieveDeviceLocationData* getParserRetrieveDeviceLocationData() { return nullptr; }
    virtual IParserRetrieveDeviceMessageData* getParserRetrieveDeviceMessageData() { return nullptr; }
    virtual IParserRetrieveDeviceMusicData* getParserRetrieveDeviceMusicData() { return nullptr; }
    virtual IParserRetrieveDeviceSettingsData* getParserRetrieveDeviceSettingsData() { return nullptr; }
    virtual IParserRetrieveDeviceStatusData* getParserRetrieveDeviceStatusData() { return nullptr; }
    virtual IParserRetrieveDeviceSystemData* getParserRetrieveDeviceSystemData() { return nullptr; }
    virtual IParserRetrieveDeviceTimerData* getParserRetrieveDeviceTimerData() { return nullptr; }
    virtual IParserRetrieveUserCustomizedData* getParserRetrieveUserCustomizedData() { return nullptr; }
    virtual ~IParserRetrieveDeviceData() {}
};

#endif
