// What the speech library sends about the device with a recognition request.
#ifndef SPEECH_DEVICE_DATA_PULL_H
#define SPEECH_DEVICE_DATA_PULL_H

#include <json/json.h>

class IEngineRetrieveDeviceData;

namespace standin {

// Asks every getter of every facet, the NLU parameter map and the recognition
// state, and returns the "deviceData" observation. Frees the map, its objects
// and the state object, which the library owns once they are returned.
Json::Value pullDeviceData(IEngineRetrieveDeviceData* data);

}  // namespace standin

#endif
