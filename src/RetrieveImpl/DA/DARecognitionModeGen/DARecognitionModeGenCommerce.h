#ifndef DA_RECOGNITION_MODE_GEN_COMMERCE_H
#define DA_RECOGNITION_MODE_GEN_COMMERCE_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGen.h"

#include <map>
#include <string>
#include <vector>

// Applies while one of the region's shopping apps is in front. Each run
// replaces the context: in "KR" with all three commerce controls, elsewhere
// with the control of the view that the "Commerce" table names.
class DARecognitionModeGenCommerce : public DARecognitionModeGen {
public:
    DARecognitionModeGenCommerce();

    bool makeRecoState() override;
    bool implMakeRecoStateUS();
    bool implMakeRecoStateKR();

    // The shopping apps of each region, in the order they are asked.
    static const std::map<std::string, std::vector<std::string>> gShoppingApps;

private:
    DADeviceDataAutoRefresher mRefresher;
    std::string mRegion;
};

#endif
