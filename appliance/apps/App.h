// One virtual app: what it does with the actions that the daemon hands it,
// with the launches that reach it and as the clock moves on.
#pragma once

#include "Store.h"
#include "apps/Apps.h"

#include <json/json.h>

#include <functional>
#include <string>
#include <vector>

namespace apps {

class App {
public:
    App(const char* id, const char* actionKey) : mId(id), mActionKey(actionKey) {}
    virtual ~App() = default;

    const std::string& id() const { return mId; }
    const std::string& actionKey() const { return mActionKey; }

    // An action of the NLU data ("action" names it; `raw` is the whole object).
    virtual Report act(const std::string& action, const Json::Value& raw) = 0;
    // A launch request that reached this app.
    virtual std::vector<Report> launched(const Json::Value&) { return {}; }
    virtual std::vector<Report> tick() { return {}; }
    // A plain voice command of the app: it comes to the front.
    Report show(const std::string& command);

protected:
    Report done(const std::string& text) const { return {mId, text, false, nullptr}; }
    Report refused(const std::string& text) const { return {mId, text, true, nullptr}; }
    // Launches an app through the app framework, as an app does; empty on
    // success, else why not.
    static std::string launch(const std::string& app, const std::vector<std::pair<std::string, std::string>>& extras = {});
    // Runs `change` in one transaction of the data store; its report, or
    // the store's failure (nothing changed).
    Report withStore(const std::function<Report(Store&)>& change) const;

private:
    std::string mId;
    std::string mActionKey;
};

// A column of a row, empty when the row has none.
std::string column(const Row& row, const char* name);
// A member of the NLU data as text: strings as they are, integers in
// decimal; empty for anything else.
std::string textOf(const Json::Value& value);
// A member as a whole number of seconds from 1 to 359999 (99:59:59), or -1.
long long secondsOf(const Json::Value& value);
// 630 -> "10 minutes 30 seconds".
std::string durationText(long long seconds);

std::unique_ptr<App> makeTimerApp();
std::unique_ptr<App> makeMusicApp();
std::unique_ptr<App> makeCommerceApp();
std::unique_ptr<App> makeShoppingListApp();
std::unique_ptr<App> makeLauncherApp();
std::unique_ptr<App> makeViewInsideApp();
std::unique_ptr<App> makeWeatherApp();

}  // namespace apps
