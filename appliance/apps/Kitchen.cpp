#include "apps/Apps.h"

#include <sstream>

namespace apps {

Json::Value kitchenDevice()
{
    // A refrigerator in the United Kingdom: the virtual apps installed, the
    // launcher in front, signed in to Spotify, Pandora and a shop, and
    // London as its city.
    static const char* const text = R"({
  "vconf": {"db/setting/region_code": "EU", "db/setting/country_code": "GB"},
  "apps": {
    "installed": [
      "org.tizen.app-launcher", "org.tizen.fridge-timer",
      {"id": "org.tizen.music-control", "service": true},
      {"id": "org.tizen.e-commerce-card-service", "service": true},
      "UNduJ5y0UH.ShoppingList", "LAykghKXQw.FoodMinder", "Snr7si7XV1.AccuWeather",
      "9DZ9Lnbtx0.spotifylarder", "g5kOHeKOMQ.Pandora", "nn7Wgp14c8.LarderTuneIn",
      "1K3CsGDv16.Recipes", "org.tizen.WeblinkApps-Allrecipes", "org.tizen.browser", "9zWvGSYU8Z.calendar",
      "org.tizen.photoalbum", "org.tizen.setting", "kzOK54sYx0.SmartHome"
    ],
    "running": ["org.tizen.app-launcher"],
    "foreground": "org.tizen.app-launcher"
  },
  "datastore": {
    "Music": [
      {"appName": "Spotify", "isLoggedIn": "1", "musicPlaying": "0", "currentSongRating": "0", "sleepMode": "0",
       "isFollowing": "0", "stationName": ""},
      {"appName": "Pandora", "isLoggedIn": "1", "musicPlaying": "0", "currentSongRating": "0", "sleepMode": "0",
       "isFollowing": "0", "stationName": "Today's Hits"},
      {"appName": "TuneIn", "isLoggedIn": "0", "musicPlaying": "0", "currentSongRating": "0", "sleepMode": "0",
       "isFollowing": "1", "stationName": "BBC Radio 4"}
    ],
    "Commerce": [
      {"isLoggedIn": "1", "isLinked": "1", "totalCount": "0", "productCountInCart": "0", "currentViewType": "3"}
    ],
    "ShoppingList": [{"currentShoppingListSize": "0", "isDefaultListExisted": "1"}]
  },
  "files": [
    {"tzplatform": 59, "name": "AccInfoPrev.txt",
     "json": {"data": {"simple": {"cityName": "London", "cityId": "328328", "temperature": "14",
                                  "weatherText": "Light rain"}}}},
    {"tzplatform": 59, "name": "AccInfoData.txt", "json": [{"geo_la": 51.5074, "geo_lo": -0.1278}]}
  ]
})";
    Json::Value device;
    Json::CharReaderBuilder builder;
    std::istringstream in(text);
    std::string errors;
    Json::parseFromStream(builder, in, &device, &errors);
    return device;
}

}  // namespace apps
