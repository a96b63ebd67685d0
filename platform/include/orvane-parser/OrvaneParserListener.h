#ifndef ORVANE_PARSER_ORVANE_PARSER_LISTENER_H
#define ORVANE_PARSER_ORVANE_PARSER_LISTENER_H

#include <string>

class ResponseData;

// What the parser calls with its results: an action for the device, or the
// answer to a driver request that is to go back to the server.
class OrvaneParserListener {
public:
    virtual void executeOVAction(ResponseData* data) = 0;
    virtual void executeDriverResponse(std::string driverResponse) = 0;

protected:
    ~OrvaneParserListener() {}
};

#endif
