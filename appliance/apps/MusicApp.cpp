// The music app: plays in the appliance's music apps. Each music app has a
// row of the "Music" table, named by "appName"; the one that plays has
// "musicPlaying" "1" and is launched into the front.
#include "App.h"

#include <map>

namespace apps {
namespace {

const char* const kTable = "Music";

const std::map<std::string, std::string>& packages()
{
    static const std::map<std::string, std::string> table = {
        {"Spotify", "9DZ9Lnbtx0.spotifylarder"},
        {"Pandora", "g5kOHeKOMQ.Pandora"},
        {"TuneIn", "nn7Wgp14c8.LarderTuneIn"},
    };
    return table;
}

class MusicApp : public App {
public:
    MusicApp() : App("org.tizen.music-control", "#org.tizen.Music App Control") {}

    Report act(const std::string& action, const Json::Value& raw) override
    {
        if (action == "Play Music")
            return play(textOf(raw["music_app"]));
        if (action == "Stop Music")
            return stop();
        if (action == "Like Song")
            return like();
        if (action == "Rate Song" || action == "Sign In")
            return done("shows \"" + action + "\"; nothing changes");
        return refused("unknown action \"" + action + "\"; nothing changes");
    }

private:
    static const std::vector<std::string>& columns()
    {
        static const std::vector<std::string> names = {"appName",   "isLoggedIn",  "musicPlaying", "currentSongRating",
                                                       "sleepMode", "isFollowing", "stationName"};
        return names;
    }

    Report play(const std::string& name)
    {
        const auto package = packages().find(name);
        if (package == packages().end())
            return refused("no music app named \"" + name + "\"; nothing changes");
        const std::string why = launch(package->second);
        if (!why.empty())
            return refused("cannot play " + name + ": " + why);
        return withStore([&](Store& store) {
            if (!store.ensure(kTable, columns()))
                return refused("cannot publish what plays: " + store.error());
            bool found = false;
            for (const StoredRow& row : store.rows(kTable)) {
                const bool mine = column(row.values, "appName") == name;
                found = found || mine;
                // A new song has no rating yet.
                Row changes = {{"musicPlaying", mine ? "1" : "0"}};
                if (mine)
                    changes["currentSongRating"] = "0";
                if (!store.update(kTable, row.rowid, changes))
                    return refused("cannot publish what plays: " + store.error());
            }
            if (!found && !store.insert(kTable, {{"appName", name},
                                                 {"isLoggedIn", "0"},
                                                 {"musicPlaying", "1"},
                                                 {"currentSongRating", "0"},
                                                 {"sleepMode", "0"},
                                                 {"isFollowing", "0"},
                                                 {"stationName", ""}}))
                return refused("cannot publish what plays: " + store.error());
            return done(name + " plays, " + package->second + " in front");
        });
    }

    Report stop()
    {
        return withStore([&](Store& store) {
            std::string stopped;
            for (const StoredRow& row : store.rows(kTable)) {
                if (column(row.values, "musicPlaying") != "1")
                    continue;
                if (!store.update(kTable, row.rowid, {{"musicPlaying", "0"}}))
                    return refused("cannot stop: " + store.error());
                stopped += (stopped.empty() ? "" : ", ") + column(row.values, "appName");
            }
            return stopped.empty() ? done("nothing was playing") : done(stopped + " stopped");
        });
    }

    Report like()
    {
        return withStore([&](Store& store) {
            for (const StoredRow& row : store.rows(kTable)) {
                if (column(row.values, "musicPlaying") != "1")
                    continue;
                if (!store.ensure(kTable, columns()) ||
                    !store.update(kTable, row.rowid, {{"currentSongRating", "1"}}))
                    return refused("cannot rate the song: " + store.error());
                return done("the song in " + column(row.values, "appName") + " is rated up");
            }
            return refused("no song is playing to rate; nothing changes");
        });
    }
};

}  // namespace

std::unique_ptr<App> makeMusicApp()
{
    return std::make_unique<MusicApp>();
}

}  // namespace apps
