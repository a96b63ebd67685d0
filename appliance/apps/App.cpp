#include "App.h"

#include <app_control.h>
#include <dlog.h>

#include <memory>
#include <sstream>

namespace apps {

std::string column(const Row& row, const char* name)
{
    const auto it = row.find(name);
    return it == row.end() ? "" : it->second;
}

std::string textOf(const Json::Value& value)
{
    if (value.isString())
        return value.asString();
    if (value.isIntegral())
        return value.isInt64() ? std::to_string(value.asInt64()) : std::to_string(value.asUInt64());
    return "";
}

long long secondsOf(const Json::Value& value)
{
    const std::string text = textOf(value);
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos)
        return -1;
    const long long seconds = std::stoll(text);
    return seconds >= 1 && seconds <= 359999 ? seconds : -1;
}

std::string durationText(long long seconds)
{
    const long long parts[] = {seconds / 3600, seconds / 60 % 60, seconds % 60};
    const char* names[] = {"hour", "minute", "second"};
    std::string out;
    for (int i = 0; i < 3; ++i)
        if (parts[i] > 0)
            out += (out.empty() ? "" : " ") + std::to_string(parts[i]) + " " + names[i] + (parts[i] == 1 ? "" : "s");
    return out.empty() ? "0 seconds" : out;
}

std::string App::launch(const std::string& app, const std::vector<std::pair<std::string, std::string>>& extras)
{
    app_control_h handle = nullptr;
    if (app_control_create(&handle) != APP_CONTROL_ERROR_NONE || !handle)
        return "cannot make an app control";
    int code = app_control_set_app_id(handle, app.c_str());
    for (const auto& extra : extras)
        if (code == APP_CONTROL_ERROR_NONE && !extra.first.empty() && !extra.second.empty())
            code = app_control_add_extra_data(handle, extra.first.c_str(), extra.second.c_str());
    if (code == APP_CONTROL_ERROR_NONE)
        code = app_control_send_launch_request(handle, nullptr, nullptr);
    app_control_destroy(handle);
    if (code == APP_CONTROL_ERROR_NONE)
        return "";
    return "the app framework did not launch " + app + " (" +
           (code == APP_CONTROL_ERROR_APP_NOT_FOUND ? std::string("not installed") : "error " + std::to_string(code)) +
           ")";
}

Report App::withStore(const std::function<Report(Store&)>& change) const
{
    Store store;
    std::string error;
    if (!store.open(error))
        return refused(error);
    if (!store.begin())
        return refused("the data store is busy: " + store.error());
    Report report = change(store);
    if (report.error) {
        store.rollback();
        return report;
    }
    if (!store.commit()) {
        store.rollback();
        return refused("the data store did not take the change: " + store.error());
    }
    return report;
}

Report App::show(const std::string& command)
{
    const std::string why = launch(mId);
    if (!why.empty())
        return refused("cannot come to the front for \"" + command + "\": " + why);
    return done("comes to the front for \"" + command + "\"");
}

namespace {

Json::Value parseObject(const std::string& text, std::string& error)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    if (!reader->parse(text.data(), text.data() + text.size(), &root, &error)) {
        // The reader's message spans lines ("* Line 1, Column 25\n  Missing '}'...").
        std::string line;
        for (char c : error)
            if (c != '*' && !(c == ' ' && (line.empty() || line.back() == ' ')))
                line += c == '\n' ? ' ' : c;
        while (!line.empty() && line.back() == ' ')
            line.pop_back();
        error = line;
        return Json::Value();
    }
    if (!root.isObject())
        error = "it is JSON but not an object";
    return root.isObject() ? root : Json::Value();
}

std::string excerpt(const std::string& text)
{
    return text.size() > 60 ? text.substr(0, 60) + "..." : text;
}

void log(const Report& report)
{
    dlog_print(report.error ? DLOG_ERROR : DLOG_INFO, report.app.c_str(), "%s", report.text.c_str());
}

}  // namespace

Apps::Apps()
{
    mApps.push_back(makeTimerApp());
    mApps.push_back(makeMusicApp());
    mApps.push_back(makeCommerceApp());
    mApps.push_back(makeShoppingListApp());
    mApps.push_back(makeLauncherApp());
    mApps.push_back(makeViewInsideApp());
    mApps.push_back(makeWeatherApp());
}

Apps::~Apps() = default;

std::vector<std::string> Apps::ids()
{
    std::vector<std::string> out;
    for (const auto& app : Apps().mApps)
        out.push_back(app->id());
    return out;
}

bool Apps::known(const std::string& id)
{
    return !actionKeyOf(id).empty();
}

std::string Apps::actionKeyOf(const std::string& id)
{
    for (const auto& app : Apps().mApps)
        if (app->id() == id)
            return app->actionKey();
    return "";
}

Report Apps::deliver(const std::string& id, const Result& result)
{
    App* app = nullptr;
    for (const auto& candidate : mApps)
        if (candidate->id() == id)
            app = candidate.get();
    if (!app)
        return {id, "no such app", true, nullptr};
    Report report;
    bool key = false;
    std::string command;
    for (const std::string& c : result.commands) {
        key = key || (!c.empty() && c[0] == '#');
        if (command.empty() && (c.empty() || c[0] != '#'))
            command = c;
    }
    if (!key && !command.empty()) {
        report = app->show(command);
    } else if (!result.hasNlu || result.nlu.empty()) {
        report = {id, "nothing to act on: the result carries no NLU data", true, nullptr};
    } else {
        std::string error;
        const Json::Value raw = parseObject(result.nlu, error);
        if (raw.isNull())
            report = {id, "cannot read the NLU data (" + error + "): " + excerpt(result.nlu), true, nullptr};
        else if (!raw["action"].isString() || raw["action"].asString().empty())
            report = {id, "the NLU data names no action: " + excerpt(result.nlu), true, nullptr};
        else
            report = app->act(raw["action"].asString(), raw);
    }
    log(report);
    return report;
}

std::vector<Report> Apps::launched(const Json::Value& launch)
{
    std::vector<Report> out;
    for (const auto& app : mApps)
        if (launch["app_id"].isString() && launch["app_id"].asString() == app->id())
            for (Report& report : app->launched(launch)) {
                log(report);
                out.push_back(std::move(report));
            }
    return out;
}

std::vector<Report> Apps::tick()
{
    std::vector<Report> out;
    for (const auto& app : mApps)
        for (Report& report : app->tick()) {
            log(report);
            out.push_back(std::move(report));
        }
    return out;
}

}  // namespace apps
