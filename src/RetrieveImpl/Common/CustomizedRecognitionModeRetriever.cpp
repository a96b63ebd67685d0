#include "RetrieveImpl/Common/CustomizedRecognitionModeRetriever.h"

#include "utils/MarlLog.h"

_JsonObject* CustomizedRecognitionModeRetriever::getRecognitionMode()
{
    LOGD("");
    return nullptr;
}
