#ifndef DA_RECOGNITION_MODE_GEN_MORNING_BRIEF_H
#define DA_RECOGNITION_MODE_GEN_MORNING_BRIEF_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGen.h"

#include <string>

// Applies while the morning brief app is in front and plays, as the
// "MorningBrief" table tells. Each run appends its context member again.
class DARecognitionModeGenMorningBrief : public DARecognitionModeGen {
public:
    // Watches the morning brief app in the regions "KR", "EU" and "US" only.
    DARecognitionModeGenMorningBrief();

    bool makeRecoState() override;

private:
    DADeviceDataAutoRefresher mRefresher;
    std::string mAppId;
};

#endif
