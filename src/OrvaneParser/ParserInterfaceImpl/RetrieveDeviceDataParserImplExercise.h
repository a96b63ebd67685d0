#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_EXERCISE_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_EXERCISE_H

#include <orvane-parser/IParserRetrieveDeviceExerciseData.h>

// The appliance tracks no exercise.
class RetrieveDeviceDataParserImplExercise : public IParserRetrieveDeviceExerciseData {
public:
    bool getStartExerciseStatus(ExerciseData* exercise, std::string exerciseName) override;
    bool getFinishExerciseStatus(ExerciseData* exercise) override;
};

#endif
