#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplCall.h"

#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplCall::getLastCallLog(HfdData* /*callLog*/)
{
    LOGD("");
    return false;
}
