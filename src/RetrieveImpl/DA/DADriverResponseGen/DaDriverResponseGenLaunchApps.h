#ifndef DA_DRIVER_RESPONSE_GEN_LAUNCH_APPS_H
#define DA_DRIVER_RESPONSE_GEN_LAUNCH_APPS_H

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

// Answers whether the app that the server names is in front, mapping the
// recipe app to the one of the device's market.
class DaDriverResponseGenLaunchApps : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenLaunchApps(Json::Value request);
};

#endif
