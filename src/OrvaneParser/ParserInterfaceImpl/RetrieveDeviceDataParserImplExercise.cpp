#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplExercise.h"

#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplExercise::getStartExerciseStatus(ExerciseData* /*exercise*/, std::string /*exerciseName*/)
{
    LOGD("");
    return false;
}

bool RetrieveDeviceDataParserImplExercise::getFinishExerciseStatus(ExerciseData* /*exercise*/)
{
    LOGD("");
    return false;
}
