#ifndef DA_DRIVER_RESPONSE_GEN_WEATHER_H
#define DA_DRIVER_RESPONSE_GEN_WEATHER_H

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

#include <istream>

// Tells the server the appliance's saved city.
class DaDriverResponseGenWeather : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenWeather(Json::Value request);

    void setLocationInfo();

private:
    static bool parseLocationFile(Json::Reader& reader, std::istream& file, Json::Value& root);
};

#endif
