#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_MUSIC_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_MUSIC_H

#include "ClientManager/OrvaneMaster.h"

#include <orvane-parser/IParserRetrieveDeviceMusicData.h>

// The music app's state for the parser, taken from the device's music
// retriever.
class RetrieveDeviceDataParserImplMusic : public IParserRetrieveDeviceMusicData, public OrvaneMaster {
public:
    bool getMusicAppStatus(MusicData* musicData) override;
};

#endif
