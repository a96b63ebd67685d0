#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplClock.h"

#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplClock::getAllUserSetClockData(std::vector<ClockData*>* /*clockList*/)
{
    LOGD("");
    return false;
}
