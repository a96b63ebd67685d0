#include "PluginFixture.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "fwWrapper/MarlEngineWrapper.h"

namespace {

std::string respond(const std::string& request)
{
    return DaCustomizedDriverResponseRetriever().getDriverResponse(request);
}

std::string musicAppRequest(const std::string& app)
{
    return R"({"Server Reqeust": {"agent": "Music App Control", "action": {"name": "Music App Request"},)"
           R"( "data": {"music_app": {"value": ")" +
           app + R"("}}}})";
}

const char* const kRatingRequest =
    R"({"Server Reqeust": {"agent": "Music App Control", "action": {"name": "Song Rating Status Check Request"}}})";

// One row of the "Music" table.
std::string app(const std::string& name, const std::string& loggedIn, const std::string& station,
                const std::string& playing = "0", const std::string& rating = "0")
{
    return R"({"appName": ")" + name + R"(", "isLoggedIn": ")" + loggedIn + R"(", "stationName": ")" + station +
           R"(", "musicPlaying": ")" + playing + R"(", "currentSongRating": ")" + rating + R"("})";
}

std::string envelope(const std::string& action, const std::string& data)
{
    return R"({"userComposedDriverResponse":{"action":")" + action + R"(","agent":"Music App Control","data":)" +
           data + "}}\n";
}

std::string appReply(const std::string& app, const std::string& login, const std::string& station)
{
    return envelope("Music App Reply", R"({"available":"Yes","is_login":")" + login + R"(","last_station":")" +
                                           station + R"(","music_app":")" + app + R"("})");
}

std::string ratingReply(const std::string& status, const std::string& rating)
{
    return envelope("Song Rating Status Check Reply",
                    R"({"ratingStatus":")" + rating + R"(","status":")" + status + R"("})");
}

}  // namespace

class MusicReplies : public marltest::EngineTest {
protected:
    // Publishes the rows and makes the music retriever read them at once.
    void setApps(const std::string& rows)
    {
        device.apply(R"({"datastore": {"Music": [)" + rows + "]}}");
        dynamic_cast<DaDeviceMusicDataRetrieverImpl*>(wrapper()->getDeviceDataRetrieveManager()->getMusicRetriever())
            ->refreshData();
    }
};

// --- music app --------------------------------------------------------------------------

TEST_F(MusicReplies, TuneInWithAStationIsLoggedInAndHasALastStation)
{
    setApps(app("TuneIn", "1", "Radio Paradise"));
    EXPECT_EQ(respond(musicAppRequest("TuneIn")),
              "{\"userComposedDriverResponse\":{\"action\":\"Music App Reply\",\"agent\":\"Music App Control\","
              "\"data\":{\"available\":\"Yes\",\"is_login\":\"True\",\"last_station\":\"Found\",\"music_app\":"
              "\"TuneIn\"}}}\n");
}

TEST_F(MusicReplies, TuneInCountsAsLoggedInWhateverItsRowSays)
{
    setApps(app("TuneIn", "0", "Jazz24"));
    EXPECT_EQ(respond(musicAppRequest("TuneIn")), appReply("TuneIn", "True", "Found"));
    setApps(app("TuneIn", "0", ""));
    EXPECT_EQ(respond(musicAppRequest("TuneIn")), appReply("TuneIn", "True", "Not Found"));
}

TEST_F(MusicReplies, AnAppThatIsNotLoggedInHasNoLastStation)
{
    setApps(app("Spotify", "0", "Discover Weekly") + "," + app("TuneIn", "1", "Jazz24"));
    EXPECT_EQ(respond(musicAppRequest("Spotify")), appReply("Spotify", "False", "Not Found"));
}

TEST_F(MusicReplies, ALoggedInAppWithoutAStationHasNoLastStation)
{
    setApps(app("Spotify", "1", ""));
    EXPECT_EQ(respond(musicAppRequest("Spotify")), appReply("Spotify", "True", "Not Found"));
    setApps(app("Spotify", "1", "Daily Mix"));
    EXPECT_EQ(respond(musicAppRequest("Spotify")), appReply("Spotify", "True", "Found"));
}

TEST_F(MusicReplies, AnAppWithoutARowIsAvailableWithTheDefaults)
{
    setApps(app("Pandora", "1", "Today's Hits"));
    EXPECT_EQ(respond(musicAppRequest("Deezer")), appReply("Deezer", "False", "Not Found"));
    setApps("");
    EXPECT_EQ(respond(musicAppRequest("TuneIn")), appReply("TuneIn", "False", "Not Found"));
    EXPECT_TRUE(marltest::logged("music app count[0]"));
}

TEST_F(MusicReplies, TheAppNameIsComparedExactly)
{
    setApps(app("Pandora", "1", "Today's Hits"));
    EXPECT_EQ(respond(musicAppRequest("pandora")), appReply("pandora", "False", "Not Found"));
}

// --- song rating ------------------------------------------------------------------------

TEST_F(MusicReplies, APlayingLoggedInPandoraStationCanBeRatedAndSaysWhetherTheSongIsLiked)
{
    setApps(app("Pandora", "1", "Today's Hits", "1", "1"));
    EXPECT_EQ(respond(kRatingRequest),
              "{\"userComposedDriverResponse\":{\"action\":\"Song Rating Status Check Reply\",\"agent\":"
              "\"Music App Control\",\"data\":{\"ratingStatus\":\"Liked\",\"status\":\"Enabled\"}}}\n");
    setApps(app("Pandora", "1", "Today's Hits", "1", "0"));
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Enabled", "None"));
}

TEST_F(MusicReplies, PandoraPausedInFrontCanBeRated)
{
    device.apply(R"({"apps": {"installed": ["g5kOHeKOMQ.Pandora"], "foreground": "g5kOHeKOMQ.Pandora"}})");
    setApps(app("Pandora", "1", "Today's Hits", "0", "1"));
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Enabled", "Liked"));
}

TEST_F(MusicReplies, PandoraPausedBehindAnotherAppCannotBeRated)
{
    device.apply(R"({"apps": {"installed": ["g5kOHeKOMQ.Pandora", "org.tizen.fridge-timer"],
                              "running": ["g5kOHeKOMQ.Pandora"], "foreground": "org.tizen.fridge-timer"}})");
    setApps(app("Pandora", "1", "Today's Hits", "0", "1"));
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Disabled", "None"));
}

TEST_F(MusicReplies, PandoraWithoutAStationCannotBeRatedWhateverItPlays)
{
    device.apply(R"({"apps": {"installed": ["g5kOHeKOMQ.Pandora"], "foreground": "g5kOHeKOMQ.Pandora"}})");
    setApps(app("Pandora", "1", "", "1", "1"));
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Disabled", "None"));
}

TEST_F(MusicReplies, PandoraThatIsNotLoggedInCannotBeRated)
{
    setApps(app("Pandora", "0", "Today's Hits", "1", "1"));
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Disabled", "None"));
}

TEST_F(MusicReplies, OnlyPandoraCanBeRated)
{
    device.apply(R"({"apps": {"installed": ["g5kOHeKOMQ.Pandora"], "foreground": "g5kOHeKOMQ.Pandora"}})");
    setApps(app("TuneIn", "1", "Jazz24", "1", "1") + "," + app("Spotify", "1", "Daily Mix", "1", "1"));
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Disabled", "None"));
    setApps(app("TuneIn", "1", "Jazz24", "1", "1") + "," + app("Pandora", "1", "Today's Hits", "1", "0"));
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Enabled", "None"));
}

TEST_F(MusicReplies, NoMusicAppsMeansRatingIsDisabled)
{
    setApps("");
    EXPECT_EQ(respond(kRatingRequest), ratingReply("Disabled", "None"));
}

// --- the request ---------------------------------------------------------------------------

TEST_F(MusicReplies, AnUnknownActionGivesTheEmptyResponse)
{
    setApps(app("TuneIn", "1", "Jazz24"));
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "Music App Control", "action": {"name": "Play Request"}}})"), "");
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "Music", "action": {"name": "Music App Request"}}})"), "");
}

TEST_F(MusicReplies, AnotherMusicRetrieverInForceGivesTheEmptyResponse)
{
    setApps(app("TuneIn", "1", "Jazz24"));
    wrapper()->getDeviceDataRetrieveManager()->setUserDeviceDataRetriever(new IDeviceDataRetrieve());
    EXPECT_EQ(respond(musicAppRequest("TuneIn")), "");
    EXPECT_TRUE(marltest::logged("music retriever is not the appliance's"));
}

// A music app that JsonCpp can't read as text gets the empty response; one it
// converts is answered with its text.
TEST_F(MusicReplies, AnAppOfTheWrongTypeGetsTheEmptyResponse)
{
    setApps(app("Spotify", "1", "Jazz"));
    const std::string start = R"({"Server Reqeust": {"agent": "Music App Control", "action": {"name": "Music App Request"},)";
    EXPECT_EQ(respond(start + R"( "data": {"music_app": {"value": {"name": "Spotify"}}}}})"), "");
    EXPECT_EQ(respond(start + R"( "data": {"music_app": "Spotify"}}})"), "");
    const std::string reply = respond(start + R"( "data": {"music_app": {"value": true}}}})");
    EXPECT_NE(reply.find(R"("music_app":"true")"), std::string::npos) << reply;
}
