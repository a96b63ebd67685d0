#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImpl.h"

IParserRetrieveDeviceAlarmData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceAlarmData()
{
    return &mAlarm;
}

IParserRetrieveDeviceCalendarData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceCalendarData()
{
    return &mCalendar;
}

IParserRetrieveDeviceCallData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceCallData()
{
    return &mCall;
}

IParserRetrieveDeviceClockData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceClockData()
{
    return &mClock;
}

IParserRetrieveDeviceContextualData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceContextualData()
{
    return &mContextual;
}

IParserRetrieveDeviceExerciseData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceExerciseData()
{
    return &mExercise;
}

IParserRetrieveDeviceLocationData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceLocationData()
{
    return &mLocation;
}

IParserRetrieveDeviceMessageData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceMessageData()
{
    return &mMessage;
}

IParserRetrieveDeviceMusicData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceMusicData()
{
    return &mMusic;
}

IParserRetrieveDeviceStatusData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceStatusData()
{
    return &mStatus;
}

IParserRetrieveDeviceTimerData* RetrieveDeviceDataParserImpl::getParserRetrieveDeviceTimerData()
{
    return &mTimer;
}

IParserRetrieveUserCustomizedData* RetrieveDeviceDataParserImpl::getParserRetrieveUserCustomizedData()
{
    return &mCustomized;
}
