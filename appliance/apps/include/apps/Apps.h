// The virtual apps of the virtual appliance: the appliance's own apps, as
// clients of the voice-control daemon's results. The daemon (marl-sim)
// hands each result to the app that registered a matched command or action
// key ("#org.tizen.Timer"), and the app changes the device as the
// appliance's app would, through the device directory that the plug-in
// reads: rows of the data store, the running and foreground apps, keys.
// What each app reads and changes: README.md beside this file.
#pragma once

#include <json/json.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace apps {

// A result as the daemon hands it to one app.
struct Result {
    std::vector<std::string> commands;  // the app's own commands that matched, as registered
    std::string text;                   // the recognized text; empty when there is none
    bool hasNlu = false;                // whether the result carries NLU data
    std::string nlu;                    // the NLU data: the action's raw JSON
};

// One line of an app's log: what it did, or why it did nothing.
struct Report {
    std::string app;
    std::string text;
    bool error = false;  // the app could not act on what it was given; nothing changed
    // What the app does once its report is told (the commerce service's
    // answer to the app that asked), or empty.
    std::function<void()> then;
};

class App;

class Apps {
public:
    Apps();
    ~Apps();

    // The virtual apps' ids, and the action key each registers on a
    // built-in device ("#org.tizen.Timer" for "org.tizen.fridge-timer").
    static std::vector<std::string> ids();
    static bool known(const std::string& id);
    static std::string actionKeyOf(const std::string& id);

    // Hands a result to the app `id`. Each report is also written to the
    // platform log under the app's id.
    Report deliver(const std::string& id, const Result& result);
    // A launch request that the app framework accepted (an "app_launch"
    // entry of the journal): the reports of the apps that act on it.
    std::vector<Report> launched(const Json::Value& launch);
    // What the apps do as the device's clock moves on: timers ring.
    std::vector<Report> tick();

private:
    std::vector<std::unique_ptr<App>> mApps;
};

// The device of marl-sim's built-in kitchen: the virtual apps installed,
// signed in to its music and shopping services, with a location.
Json::Value kitchenDevice();

}  // namespace apps
