#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_USER_CUSTOMIZED_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_USER_CUSTOMIZED_DATA_H

#include <string>

// Where the parser takes the answer to a driver request of the server: the
// request and the answer are JSON text, and an empty answer means none.
class IParserRetrieveUserCustomizedData {
public:
    virtual ~IParserRetrieveUserCustomizedData() {}
    virtual std::string getDriverResponse(std::string /*driverRequest*/) { return ""; }
};

#endif
