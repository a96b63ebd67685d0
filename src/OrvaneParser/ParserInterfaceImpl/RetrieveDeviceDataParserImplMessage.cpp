#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplMessage.h"

#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplMessage::getNewMessages(std::vector<HfdData*>* /*messages*/, MessageQueryData* /*query*/)
{
    LOGD("");
    return false;
}
