#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_MUSIC_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_MUSIC_DATA_H

#include "MusicData.h"

// What the parser asks the device about the music player. Each body is the
// answer of an implementation that doesn't override it.
class IParserRetrieveDeviceMusicData {
public:
    virtual ~IParserRetrieveDeviceMusicData() {}
    virtual int getPlayDevice() { return 100; }
    virtual bool getMusicAppStatus(MusicData* /*musicData*/) { return false; }
};

#endif
