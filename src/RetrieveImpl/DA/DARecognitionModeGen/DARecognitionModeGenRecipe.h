#ifndef DA_RECOGNITION_MODE_GEN_RECIPE_H
#define DA_RECOGNITION_MODE_GEN_RECIPE_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGen.h"

#include <string>

// Applies while the app of any "Recipe" row is in front. Each run appends its
// context member again.
class DARecognitionModeGenRecipe : public DARecognitionModeGen {
public:
    DARecognitionModeGenRecipe();

    bool makeRecoState() override;

private:
    DADeviceDataAutoRefresher mRefresher;
    std::string mRegion;
};

#endif
