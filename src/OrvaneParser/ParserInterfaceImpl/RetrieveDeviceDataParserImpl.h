#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_H

#include "OrvaneParser/ParserInterfaceImpl/RetrieveCustomizedDataParserImpl.h"

#include <orvane-parser/IParserRetrieveDeviceData.h>

// The device data facade handed to the closed parser. The customized facet
// carries driver requests to the appliance; the device facets are not built
// yet and answer with the interface's null.
class RetrieveDeviceDataParserImpl : public IParserRetrieveDeviceData {
public:
    IParserRetrieveUserCustomizedData* getParserRetrieveUserCustomizedData() override;

private:
    RetrieveCustomizedDataParserImpl mCustomized;
};

#endif
