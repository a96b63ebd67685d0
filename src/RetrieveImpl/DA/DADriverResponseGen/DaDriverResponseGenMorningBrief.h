#ifndef DA_DRIVER_RESPONSE_GEN_MORNING_BRIEF_H
#define DA_DRIVER_RESPONSE_GEN_MORNING_BRIEF_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

// Answers that the morning brief has one profile, the common one.
class DaDriverResponseGenMorningBrief : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenMorningBrief(Json::Value request);

    void makeProfileInfoReply();

private:
    // Connected to the "Profile" table; the answer doesn't read it.
    DADeviceDataAutoRefresher mProfileData;
};

#endif
