#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_H

#include "OrvaneParser/ParserInterfaceImpl/RetrieveCustomizedDataParserImpl.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplAlarm.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplCalendar.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplCall.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplClock.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplContextual.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplExercise.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplLocation.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplMessage.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplMusic.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplStatus.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplTimer.h"

#include <orvane-parser/IParserRetrieveDeviceData.h>

// The device data facade handed to the closed parser. It holds its facets and
// hands out their addresses; the hands-free, locale, settings and system
// domains have no facet on this device.
class RetrieveDeviceDataParserImpl : public IParserRetrieveDeviceData {
public:
    IParserRetrieveDeviceAlarmData* getParserRetrieveDeviceAlarmData() override;
    IParserRetrieveDeviceCalendarData* getParserRetrieveDeviceCalendarData() override;
    IParserRetrieveDeviceCallData* getParserRetrieveDeviceCallData() override;
    IParserRetrieveDeviceClockData* getParserRetrieveDeviceClockData() override;
    IParserRetrieveDeviceContextualData* getParserRetrieveDeviceContextualData() override;
    IParserRetrieveDeviceExerciseData* getParserRetrieveDeviceExerciseData() override;
    IParserRetrieveDeviceLocationData* getParserRetrieveDeviceLocationData() override;
    IParserRetrieveDeviceMessageData* getParserRetrieveDeviceMessageData() override;
    IParserRetrieveDeviceMusicData* getParserRetrieveDeviceMusicData() override;
    IParserRetrieveDeviceStatusData* getParserRetrieveDeviceStatusData() override;
    IParserRetrieveDeviceTimerData* getParserRetrieveDeviceTimerData() override;
    IParserRetrieveUserCustomizedData* getParserRetrieveUserCustomizedData() override;

private:
    RetrieveCustomizedDataParserImpl mCustomized;
    RetrieveDeviceDataParserImplAlarm mAlarm;
    RetrieveDeviceDataParserImplCalendar mCalendar;
    RetrieveDeviceDataParserImplCall mCall;
    RetrieveDeviceDataParserImplClock mClock;
    RetrieveDeviceDataParserImplContextual mContextual;
    RetrieveDeviceDataParserImplExercise mExercise;
    RetrieveDeviceDataParserImplLocation mLocation;
    RetrieveDeviceDataParserImplMessage mMessage;
    RetrieveDeviceDataParserImplMusic mMusic;
    RetrieveDeviceDataParserImplStatus mStatus;
    RetrieveDeviceDataParserImplTimer mTimer;
};

#endif
