// The daemon's private data: a key and a value, set, then read back and read
// by those who use what it set (the music app's volume in the music getters
// and, for the one key that sets it, in the system group of NLU parameters).
// The input is the key, a line "--", and the value.
#include "FuzzSupport.h"

#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenSystem.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <cstdlib>

namespace {
MarlEngineWrapper* gWrapper = nullptr;
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    gWrapper = marlfuzz::loadEngineOnTheFuzzDevice();
    marlfuzz::runEmptyInput(LLVMFuzzerTestOneInput);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::vector<std::string> p = marlfuzz::pieces(data, size, 2);
    MarlEngine_set_private_data(p[0].c_str(), p[1].c_str());
    char* value = nullptr;
    if (MarlEngine_get_private_data(p[0].c_str(), &value) == 0)
        std::free(value);
    if (IDeviceMusicDataRetrieve* music = gWrapper->getDeviceDataRetrieveManager()->getMusicRetriever()) {
        music->getCurrentMusicAppMute();
        music->getCurrentMusicPlayerVolumeLevel();
    }
    // The system group reads the whole device: it runs only when the media
    // volume, the one value of it that private data sets, may have changed.
    if (p[0] == "MediaVolume")
        DANluParamsGenSystem().getNluParams();
    return 0;
}
