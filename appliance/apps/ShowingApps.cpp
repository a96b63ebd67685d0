// Apps that answer by coming to the front: the launcher opens the app that
// was asked for, the view-inside app shows a compartment, the weather app
// the forecast of the saved city.
#include "App.h"

namespace apps {
namespace {

class LauncherApp : public App {
public:
    LauncherApp() : App("org.tizen.app-launcher", "#org.tizen.Launch Apps") {}

    Report act(const std::string& action, const Json::Value& raw) override
    {
        if (action == "Show App")
            return done("shows \"" + action + "\"; nothing changes");
        if (action != "Launch App")
            return refused("unknown action \"" + action + "\"; nothing changes");
        const std::string package = textOf(raw["package"]);
        if (package.empty())
            return refused("no app named to launch; nothing changes");
        const std::string why = launch(package);
        return why.empty() ? done("launched " + package) : refused(why);
    }
};

class ViewInsideApp : public App {
public:
    ViewInsideApp() : App("LAykghKXQw.FoodMinder", "#org.tizen.View Inside App Control") {}

    Report act(const std::string& action, const Json::Value& raw) override
    {
        if (action == "Show View Inside")
            return done("shows \"" + action + "\"; nothing changes");
        if (action != "View Inside")
            return refused("unknown action \"" + action + "\"; nothing changes");
        const std::string place = textOf(raw["locationName"]);
        if (place.empty())
            return refused("no compartment named to show; nothing changes");
        const std::string why = launch(id(), {{"locationName", place}});
        return why.empty() ? done("shows the inside of the " + place + " in front") : refused(why);
    }
};

class WeatherApp : public App {
public:
    WeatherApp() : App("Snr7si7XV1.AccuWeather", "#org.tizen.Weather") {}

    Report act(const std::string& action, const Json::Value& raw) override
    {
        if (action == "Set Location")
            return done("shows \"" + action + "\"; nothing changes");
        if (action != "Show Weather")
            return refused("unknown action \"" + action + "\"; nothing changes");
        const std::string city = textOf(raw["currentLocationName"]);
        const std::string why = launch(id(), {{"locationID", textOf(raw["locationID"])}});
        return why.empty() ? done("shows the weather for " + (city.empty() ? std::string("no city") : city) + " in front")
                           : refused(why);
    }
};

}  // namespace

std::unique_ptr<App> makeLauncherApp()
{
    return std::make_unique<LauncherApp>();
}

std::unique_ptr<App> makeViewInsideApp()
{
    return std::make_unique<ViewInsideApp>();
}

std::unique_ptr<App> makeWeatherApp()
{
    return std::make_unique<WeatherApp>();
}

}  // namespace apps
