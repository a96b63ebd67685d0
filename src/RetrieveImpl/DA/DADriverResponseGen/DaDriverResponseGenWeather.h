#ifndef DA_DRIVER_RESPONSE_GEN_WEATHER_H
#define DA_DRIVER_RESPONSE_GEN_WEATHER_H

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

// Tells the server the appliance's saved city.
class DaDriverResponseGenWeather : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenWeather(Json::Value request);

    void setLocationInfo();
};

#endif
