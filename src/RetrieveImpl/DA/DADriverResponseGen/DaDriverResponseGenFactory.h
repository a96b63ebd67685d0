#ifndef DA_DRIVER_RESPONSE_GEN_FACTORY_H
#define DA_DRIVER_RESPONSE_GEN_FACTORY_H

#include <string>

class DaDriverResponseGen;

// Picks the generator of a driver request's agent.
class DaDriverResponseGenFactory {
public:
    // Never null; the caller owns the generator.
    static DaDriverResponseGen* CreateInstance(std::string driverRequest);
};

#endif
