#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_EXERCISE_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_EXERCISE_DATA_H

#include <string>

#include <dlog.h>

#include "ExerciseData.h"

// What the parser asks the device about exercise. Each body is the answer of
// an implementation that doesn't override it (some after one debug log line).
class IParserRetrieveDeviceExerciseData {
public:
    virtual ~IParserRetrieveDeviceExerciseData() {}
    virtual bool getStartExerciseStatus(ExerciseData* /*exercise*/, std::string /*exerciseName*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceExerciseData.h", __func__, __LINE__);
        return false;
    }
    virtual bool getFinishExerciseStatus(ExerciseData* /*exercise*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceExerciseData.h", __func__, __LINE__);
        return false;
    }
};

#endif
