#ifndef DA_NLU_PARAMS_GEN_MORNING_BRIEF_H
#define DA_NLU_PARAMS_GEN_MORNING_BRIEF_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"

#include <string>

// The group "Morning Brief": whether the morning brief exists in this market
// and whether it plays, from the "MorningBrief" table.
class DANluParamsGenMorningBrief : public DANluParamsGen {
public:
    // Reads the region: the morning brief is installed in "KR", "EU" and "US".
    DANluParamsGenMorningBrief();

    void makeParams() override;

private:
    DADeviceDataAutoRefresher mRefresher;
    std::string mInstalled;
};

#endif
