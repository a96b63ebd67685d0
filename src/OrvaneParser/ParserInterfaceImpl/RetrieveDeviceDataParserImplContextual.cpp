#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplContextual.h"

std::string RetrieveDeviceDataParserImplContextual::getContextualSinglePhoneNumber()
{
    return std::string();
}
