#ifndef I_CUSTOMIZED_DRIVER_RESPONSE_H
#define I_CUSTOMIZED_DRIVER_RESPONSE_H

#include <string>

// Answers a server's driver request (JSON text) with a driver response (JSON
// text, or empty when nothing was composed).
class ICustomizedDriverResponse {
public:
    virtual ~ICustomizedDriverResponse() {}
    virtual std::string getDriverResponse(std::string /*driverRequest*/) { return std::string(); }
};

#endif
