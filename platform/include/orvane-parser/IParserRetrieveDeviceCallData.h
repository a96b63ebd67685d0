#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CALL_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CALL_DATA_H

#include <dlog.h>

#include "HfdData.h"

// What the parser asks the device about calls. Each body is the answer of an
// implementation that doesn't override it (some after one debug log line).
class IParserRetrieveDeviceCallData {
public:
    virtual ~IParserRetrieveDeviceCallData() {}
    virtual bool getLastCallLog(HfdData* /*callLog*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceCallData.h", __func__, __LINE__);
        return false;
    }
};

#endif
