#include "voice/Dialogue.h"

#include <memory>
#include <sstream>

namespace voice {
namespace {

// Error codes of the speech library's listener.
const int kErrorUnknown = 1;
const int kErrorAudio = 5;

Json::Value event(const char* type)
{
    Json::Value e(Json::objectValue);
    e["type"] = type;
    return e;
}

Json::Value parsed(const std::string& text)
{
    Json::CharReaderBuilder builder;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    std::string errors;
    if (!reader->parse(text.data(), text.data() + text.size(), &root, &errors))
        return Json::Value();
    return root;
}

std::string compact(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value);
}

std::string agentOf(const std::string& intent)
{
    if (intent.find("Timer") != std::string::npos || intent == "TimeLeft")
        return "Timer";
    if (intent == "PlayMusic" || intent == "SongRating" || intent == "StopMusic" || intent == "LikeSong")
        return "Music App Control";
    if (intent == "SearchItems" || intent == "CartStatus" || intent == "OpenCart" || intent == "AddToCart")
        return "Commerce";
    if (intent == "AddToList")
        return "ShoppingList";
    if (intent == "ViewInside")
        return "View Inside App Control";
    if (intent == "Weather")
        return "Weather";
    return "Launch Apps";
}

// "00:04:30" -> 270; negative or unreadable parts give -1.
long clockSeconds(const std::string& clock)
{
    long total = 0;
    int parts = 0;
    std::istringstream in(clock);
    std::string part;
    while (std::getline(in, part, ':')) {
        if (part.empty() || part.find_first_not_of("0123456789") != std::string::npos)
            return -1;
        total = total * 60 + std::stol(part);
        ++parts;
    }
    return parts == 3 ? total : -1;
}

std::string text(const Json::Value& data, const char* key)
{
    const Json::Value& v = data[key];
    return v.isString() ? v.asString() : "";
}

std::string capitalized(std::string words)
{
    if (!words.empty() && words[0] >= 'a' && words[0] <= 'z')
        words[0] = static_cast<char>(words[0] - 'a' + 'A');
    return words;
}

std::string count(size_t n, const std::string& noun)
{
    return (n == 1 ? std::string("one") : std::to_string(n)) + " " + noun + (n == 1 ? "" : "s");
}

// A timer of a "Timer Reply" (its time is what is left): "with 9 minutes
// and 58 seconds left", "paused with ...", "ringing".
std::string timerState(const Json::Value& timer)
{
    const long left = clockSeconds(text(timer, "time"));
    if (text(timer, "isRinging") == "True" || left <= 0)
        return "ringing";
    return (text(timer, "isRunning") == "True" ? "with " : "paused with ") + spokenDuration(left) + " left";
}

const long kLongestTimer = 359999;  // 99:59:59
const size_t kMostTimers = 20;

}  // namespace

Json::Value replyData(const std::string& driverResponse)
{
    const Json::Value root = parsed(driverResponse);
    if (!root.isObject() || !root["userComposedDriverResponse"].isObject())
        return Json::Value();
    const Json::Value& data = root["userComposedDriverResponse"]["data"];
    return data.isObject() ? data : Json::Value();
}

Step Dialogue::begin(const Heard& heard)
{
    Step step;
    if (!heard.speech || heard.text.empty()) {
        Json::Value e = event("error");
        e["code"] = heard.speech ? kErrorUnknown : kErrorAudio;
        e["message"] = heard.speech ? "the request was not understood" : "no speech was heard";
        step.events.append(e);
        return step;
    }
    const bool request = parseRequest(heard.text, mRequest);
    if (!request && !heard.command) {
        Json::Value e = event("error");
        e["code"] = kErrorUnknown;
        e["message"] = "the request was not understood: \"" + heard.text + "\"";
        step.events.append(e);
        return step;
    }
    Json::Value asr = event("asr");
    asr["text"] = heard.text;
    asr["engineType"] = "CLOUD";
    asr["confidence"] = 1;
    step.events.append(asr);
    if (!request) {
        // A device command: the appliance runs it; the service has nothing to add.
        Json::Value action = event("action");
        action["agent"] = "";
        action["actionType"] = "None";
        action["commandName"] = "Command";
        action["actionName"] = "Run Command";
        action["spokenText"] = "";
        action["rawJson"]["command"] = heard.text;
        step.events.append(action);
        return step;
    }
    mAgent = agentOf(mRequest.intent);
    Json::Value nlu = event("nlu");
    Json::Value intent;
    intent["domain"] = mAgent;
    intent["intent"] = mRequest.intent;
    intent["slots"] = Json::Value(Json::objectValue);
    for (const auto& slot : mRequest.value)
        intent["slots"][slot.first] = slot.second;
    nlu["text"] = compact(intent);
    nlu["engineType"] = "CLOUD";
    nlu["confidence"] = 1;
    nlu["last"] = false;
    step.events.append(nlu);

    const std::string& intentName = mRequest.intent;
    Json::Value data(Json::objectValue);
    auto value = [&](const char* key, const std::string& v) { data[key]["value"] = v; };
    Step next;
    if (intentName == "SetTimer" || intentName == "ListTimers") {
        next = ask("Information Timer Request", data);
    } else if (intentName == "StopMusic") {
        next = finish("Stop Music", "Stopping the music.", Json::Value());
    } else if (intentName == "AddToList") {
        Json::Value raw;
        raw["item"] = mRequest.value["item"];
        next = finish("Add To Shopping List", "Added " + mRequest.heard["item"] + " to your shopping list.", raw);
    } else if (intentName == "CancelTimer") {
        next = ask("Cancel Timer Request", data);
    } else if (intentName == "ExtendTimer") {
        const long s = std::stol(mRequest.value["duration"]);
        value("extendTime", "0, 0, 0, " + std::to_string(s / 3600) + ", " + std::to_string(s / 60 % 60) + ", " +
                                std::to_string(s % 60));
        next = ask("Extend Timer Request", data);
    } else if (intentName == "TimeLeft") {
        next = ask("Timer Request", data);
    } else if (intentName == "PlayMusic") {
        value("music_app", mRequest.value.count("musicApp") ? mRequest.value["musicApp"] : "Spotify");
        next = ask("Music App Request", data);
    } else if (intentName == "SongRating" || intentName == "LikeSong") {
        next = ask("Song Rating Status Check Request", data);
    } else if (intentName == "SearchItems" || intentName == "AddToCart") {
        value("merchantName", mRequest.value.count("merchant") ? mRequest.value["merchant"] : "");
        value("itemName", mRequest.value["item"]);
        next = ask("Search Items Request", data);
    } else if (intentName == "CartStatus") {
        next = ask("Cart Status Request", data);
    } else if (intentName == "OpenCart") {
        next = ask("Open Cart Request", data);
    } else if (intentName == "ViewInside") {
        next = ask("View Inside Status Check Request", data);
    } else if (intentName == "Weather") {
        next = ask("Location Request", data);
    } else {
        value("package", mRequest.value["app"]);
        next = ask("App Request", data);
    }
    for (const Json::Value& e : next.events)
        step.events.append(e);
    step.awaitsReply = next.awaitsReply;
    return step;
}

Step Dialogue::ask(const std::string& action, const Json::Value& data)
{
    Step step;
    Json::Value e = event("driverRequest");
    Json::Value& request = e["request"]["Server Reqeust"];
    request["agent"] = mAgent;
    request["action"]["name"] = action;
    request["data"] = data;
    step.events.append(e);
    step.awaitsReply = true;
    ++mAsked;
    return step;
}

Step Dialogue::finish(const std::string& actionName, const std::string& answer, const Json::Value& rawJson,
                      const std::string& actionType)
{
    Step step;
    Json::Value action = event("action");
    action["agent"] = mAgent;
    action["actionType"] = actionType;
    action["commandName"] = mRequest.intent;
    action["actionName"] = actionName;
    action["spokenText"] = answer;
    // The raw JSON says what the app that takes the result is to do.
    Json::Value raw = rawJson.isObject() ? rawJson : Json::Value(Json::objectValue);
    raw["action"] = actionName;
    action["rawJson"] = raw;
    step.events.append(action);
    Json::Value nlu = event("nlu");
    Json::Value said;
    said["domain"] = mAgent;
    said["intent"] = mRequest.intent;
    said["answer"] = answer;
    nlu["text"] = compact(said);
    nlu["engineType"] = "CLOUD";
    nlu["confidence"] = 1;
    nlu["last"] = true;
    nlu["speak"] = answer;
    step.events.append(nlu);
    return step;
}

Step Dialogue::reply(const std::string& driverResponse)
{
    const Json::Value data = replyData(driverResponse);
    const std::string status = text(data, "status");
    const std::string& intent = mRequest.intent;
    if (data.isNull() && intent != "Weather")
        return finish("Report Failure", "Sorry, the appliance did not answer.", Json::Value());

    if (intent == "SetTimer") {
        const long seconds = std::stol(mRequest.value["duration"]);
        const size_t timers = data["Timers"].isArray() ? data["Timers"].size() : 0;
        if (seconds > kLongestTimer)
            return finish("Show Timers", "A timer cannot run longer than 99 hours, 59 minutes and 59 seconds.", data);
        if (timers >= kMostTimers)
            return finish("Show Timers", "You already have " + count(timers, "timer") + ".", data);
        Json::Value raw;
        raw["duration"] = Json::Int64(seconds);
        std::string answer = "Timer set for " + spokenDuration(seconds) + ".";
        if (timers > 0)
            answer += " You now have " + count(timers + 1, "timer") + ".";
        return finish("Set Timer", answer, raw);
    }
    if (intent == "ListTimers") {
        if (mAsked == 1) {
            if (status != "Found" || !data["Timers"].isArray() || data["Timers"].empty())
                return finish("Show Timers", "You have no timers.", data);
            // There are timers; next, what is left on each.
            return ask("Timer Request", Json::Value(Json::objectValue));
        }
        if (status == "Single Found")
            return finish("Show Timers", "You have one timer, " + timerState(data) + ".", data);
        if (status == "Multiple Found" && data["Timers"].isArray() && !data["Timers"].empty()) {
            std::string each;
            for (Json::ArrayIndex i = 0; i < data["Timers"].size(); ++i) {
                const Json::Value& timer = data["Timers"][i];
                each += std::string(i == 0 ? "" : i + 1 == data["Timers"].size() ? ", and " : ", ") + "timer " +
                        text(timer, "id") + " " + timerState(timer);
            }
            return finish("Show Timers", "You have " + count(data["Timers"].size(), "timer") + ": " + each + ".", data);
        }
        return finish("Show Timers", "You have no timers.", data);
    }
    if (intent == "CancelTimer") {
        if (status == "Single Found")
            return finish("Cancel Timer", "Timer cancelled.", data);
        if (status == "Multiple Ringing" || status == "Multiple Running")
            return finish("Choose Timer",
                          "You have " + count(data["Timers"].size(), "timer") + ". Which one should I cancel?",
                          data, "Follow-Up");
        if (status == "No Running Timers")
            return finish("Show Timers", "None of your timers is running.", data);
        return finish("Show Timers", "You have no timers.", data);
    }
    if (intent == "ExtendTimer") {
        const long seconds = std::stol(mRequest.value["duration"]);
        const std::string added = spokenDuration(seconds);
        if (status == "Single Found Valid") {
            Json::Value raw = data;
            raw["duration"] = Json::Int64(seconds);
            return finish("Extend Timer", "Added " + added + " to your timer.", raw);
        }
        if (status == "Single Found InValid")
            return finish("Show Timer", "A timer cannot run longer than 99 hours, 59 minutes and 59 seconds.",
                          data);
        if (status == "Multiple Found")
            return finish("Choose Timer", "Which timer should I extend?", data, "Follow-Up");
        if (status == "Not Found")
            return finish("Show Timer", "I could not find that timer.", data);
        return finish("Show Timer", "You have no timers.", data);
    }
    if (intent == "TimeLeft") {
        if (status == "Single Found") {
            const long left = clockSeconds(text(data, "time"));
            if (left <= 0)
                return finish("Show Timer", "Your timer has run out.", data);
            const bool running = text(data, "isRunning") == "True";
            return finish("Show Timer",
                          running ? spokenDuration(left) + " left on your timer."
                                  : "Your timer is paused with " + spokenDuration(left) + " left.",
                          data);
        }
        if (status == "Multiple Found")
            return finish("Show Timers", "You have " + count(data["Timers"].size(), "timer") + " running.", data);
        return finish("Show Timer", "You have no timers.", data);
    }
    if (intent == "PlayMusic") {
        const std::string app = text(data, "music_app");
        if (text(data, "is_login") != "True")
            return finish("Sign In", "Please sign in to " + app + " first.", data);
        if (text(data, "last_station") == "Found")
            return finish("Play Music", "Playing your last station on " + app + ".", data);
        return finish("Play Music", "Playing music on " + app + ".", data);
    }
    if (intent == "SongRating" || intent == "LikeSong") {
        if (status != "Enabled")
            return finish("Rate Song", "Songs can be rated only in Pandora, while it plays.", data);
        if (intent == "LikeSong")
            return finish("Like Song", "I'll remember that you love this song.", data);
        if (text(data, "ratingStatus") == "Liked")
            return finish("Rate Song", "Yes, you like this song.", data);
        return finish("Rate Song", "You have not rated this song.", data);
    }
    if (intent == "SearchItems" || intent == "AddToCart") {
        const std::string item = mRequest.heard["item"];
        Json::Value raw = data;
        raw["item"] = mRequest.value["item"];
        raw["merchant"] = mRequest.value.count("merchant") ? mRequest.value["merchant"] : "";
        if (intent == "AddToCart" && (status == "Multiple Items" || status == "One Item"))
            return finish("Add To Cart", "Added " + item + " to your cart.", raw);
        if (status == "Multiple Items")
            return finish("Show Items", "I found " + std::to_string(data["items"].size()) + " results for " + item + ".",
                          data);
        if (status == "One Item")
            return finish("Show Items", "I found one result for " + item + ".", data);
        if (status == "No Items")
            return finish("Show Items", "I found nothing for " + item + ".", data);
        if (status == "NotLinked")
            return finish("Sign In", "Please link your shopping account first.", data);
        return finish("Sign In", "Please sign in to your shopping account first.", data);
    }
    if (intent == "CartStatus") {
        if (status == "Empty")
            return finish("Show Cart", "Your cart is empty.", data);
        return finish("Show Cart", "There are items in your cart.", data);
    }
    if (intent == "OpenCart") {
        if (status == "Success")
            return finish("Open Cart", "Opening your cart.", data);
        if (status == "No Items")
            return finish("Show Cart", "Your cart is empty.", data);
        if (status == "Cannot Access")
            return finish("Show Cart", "The cart cannot be opened from this screen.", data);
        return finish("Sign In", "Please sign in to your shopping account first.", data);
    }
    if (intent == "ViewInside") {
        const std::string place = mRequest.heard["compartment"];
        if (mAsked == 1) {
            // The app is in front or not; next, whether that compartment exists.
            mEarlier = data;
            Json::Value ask2(Json::objectValue);
            ask2["locationName"]["value"] = mRequest.value["compartment"];
            return ask("View Inside Item Check Request", ask2);
        }
        Json::Value raw = data;
        raw["launched"] = text(mEarlier, "status") == "Already Launched";
        raw["locationName"] = mRequest.value["compartment"];
        if (text(data, "isExistence") != "True")
            return finish("Show View Inside", "This refrigerator has no " + place + ".", raw);
        if (text(data, "viewinsidecheck") != "True")
            return finish("Show View Inside", "There are too many items to show.", raw);
        return finish("View Inside", "Here is the inside of your " + place + ".", raw);
    }
    if (intent == "Weather") {
        const std::string city = data.isObject() ? text(data, "currentLocationName") : "";
        if (city.empty())
            return finish("Set Location", "Please set your location first.", data);
        return finish("Show Weather", "Here is the weather for " + city + ".", data);
    }
    // OpenApp
    const std::string app = capitalized(mRequest.heard["app"]);
    const std::string launched = text(data, "launched");
    if (launched == "True")
        return finish("Show App", app + " is already open.", data);
    if (launched == "OtherCountry")
        return finish("Show App", app + " is not available in your country.", data);
    Json::Value raw = data;
    raw["package"] = mRequest.value["app"];
    return finish("Launch App", "Opening " + mRequest.heard["app"] + ".", raw);
}

}  // namespace voice
