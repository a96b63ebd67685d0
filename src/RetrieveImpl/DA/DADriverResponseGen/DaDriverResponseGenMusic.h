#ifndef DA_DRIVER_RESPONSE_GEN_MUSIC_H
#define DA_DRIVER_RESPONSE_GEN_MUSIC_H

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

// Answers whether a named music app is usable, and whether the song playing
// in Pandora can be rated, from the "Music" rows of the appliance's music
// retriever, one row per app.
class DaDriverResponseGenMusic : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenMusic(Json::Value request);

    void makeMusicAppReply();
    void makeSongRatingStatusCheckReply();
};

#endif
