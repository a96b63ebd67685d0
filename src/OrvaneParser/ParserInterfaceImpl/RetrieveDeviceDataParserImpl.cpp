#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImpl.h"

IParserRetrieveUserCustomizedData* RetrieveDeviceDataParserImpl::getParserRetrieveUserCustomizedData()
{
    return &mCustomized;
}
