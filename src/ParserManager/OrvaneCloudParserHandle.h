#ifndef ORVANE_CLOUD_PARSER_HANDLE_H
#define ORVANE_CLOUD_PARSER_HANDLE_H

#include "ClientManager/OrvaneMaster.h"

#include <orvane-parser/OrvaneParserListener.h>

#include <string>

class OrvaneParser;
class IParserRetrieveDeviceData;
class ResponseData;

// Owns the cloud parser, is its listener, and gives it the device data facade.
class OrvaneCloudParserHandle : public OrvaneMaster, public OrvaneParserListener {
public:
    OrvaneCloudParserHandle();
    virtual ~OrvaneCloudParserHandle();

    OrvaneParser* getParser();
    IParserRetrieveDeviceData* getParserDataRetriever();

    void executeOVAction(ResponseData* data) override;
    void executeDriverResponse(std::string driverResponse) override;

private:
    friend class PluginTestAccess;
    void _createParser();
    void _removeParser();

    OrvaneParser* mParser;
    IParserRetrieveDeviceData* mParserDataRetriever;
};

#endif
