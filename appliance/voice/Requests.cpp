#include "voice/Requests.h"

#include "voice/Grammar.h"

#include <regex>
#include <set>
#include <sstream>

namespace voice {
namespace {

struct Phrase {
    const char* words;
    const char* value;
};

const std::map<std::string, std::vector<Phrase>>& slots()
{
    static const std::map<std::string, std::vector<Phrase>> table = {
        {"amount",
         {{"a", "1"},         {"an", "1"},        {"one", "1"},       {"two", "2"},       {"three", "3"},
          {"four", "4"},      {"five", "5"},      {"six", "6"},       {"seven", "7"},     {"eight", "8"},
          {"nine", "9"},      {"ten", "10"},      {"eleven", "11"},   {"twelve", "12"},   {"fifteen", "15"},
          {"twenty", "20"},   {"twenty five", "25"}, {"thirty", "30"}, {"forty", "40"},   {"forty five", "45"},
          {"fifty", "50"},    {"sixty", "60"},    {"ninety", "90"}}},
        {"unit",
         {{"second", "1"},
          {"seconds", "1"},
          {"minute", "60"},
          {"minutes", "60"},
          {"hour", "3600"},
          {"hours", "3600"}}},
        {"musicApp", {{"spotify", "Spotify"}, {"pandora", "Pandora"}, {"tune in", "TuneIn"}}},
        {"item",
         {{"bread", "bread"},
          {"milk", "milk"},
          {"eggs", "eggs"},
          {"butter", "butter"},
          {"cheese", "cheese"},
          {"apples", "apples"},
          {"bananas", "bananas"},
          {"coffee", "coffee"},
          {"orange juice", "orange juice"},
          {"tomatoes", "tomatoes"}}},
        {"merchant", {{"tesco", "Tesco"}, {"amazon", "Amazon"}, {"walmart", "Walmart"}}},
        {"compartment",
         {{"fridge", "Fridge"}, {"freezer", "Freezer"}, {"flex zone", "Flex Zone"}, {"pantry", "Pantry"}}},
        {"app",
         {{"recipes", "1K3CsGDv16.Recipes"},
          {"the browser", "org.tizen.browser"},
          {"the calendar", "9zWvGSYU8Z.calendar"},
          {"the photo album", "org.tizen.photoalbum"},
          {"the settings", "org.tizen.setting"},
          {"smart home", "kzOK54sYx0.SmartHome"},
          {"the shopping list", "UNduJ5y0UH.ShoppingList"},
          {"view inside", "LAykghKXQw.FoodMinder"}}},
    };
    return table;
}

// A duration is one or two amounts of a unit.
const char* const kDuration = "{amount} {unit} [and {amount} {unit}]";

// Splits a pattern into words, brackets, bars and {slots}.
std::vector<std::string> tokens(const std::string& pattern)
{
    std::vector<std::string> out;
    for (size_t i = 0; i < pattern.size();) {
        const char c = pattern[i];
        if (c == ' ') {
            ++i;
        } else if (c == '[' || c == ']' || c == '(' || c == ')' || c == '|') {
            out.emplace_back(1, c);
            ++i;
        } else if (c == '{') {
            const size_t end = pattern.find('}', i);
            out.push_back(pattern.substr(i, end - i + 1));
            i = end + 1;
        } else {
            const size_t end = pattern.find_first_of(" []()|{", i);
            out.push_back(pattern.substr(i, end - i));
            i = end == std::string::npos ? pattern.size() : end;
        }
    }
    return out;
}

// The pattern as a JSGF rule body: a {slot} is the rule <slot>.
std::string jsgf(const std::string& pattern)
{
    static const std::regex slot("\\{(\\w+)\\}");
    return std::regex_replace(pattern, slot, "<$1>");
}

// A regular expression over words that each end in a blank. Slots are
// captured; `names` receives their names in the order of their groups.
std::string regexOf(const std::string& pattern, std::vector<std::string>& names, bool capture)
{
    std::string out;
    for (const std::string& token : tokens(pattern)) {
        if (token == "[" || token == "(")
            out += "(?:";
        else if (token == "]")
            out += ")?";
        else if (token == ")")
            out += ")";
        else if (token == "|")
            out += "|";
        else if (token[0] == '{') {
            const std::string name = token.substr(1, token.size() - 2);
            std::string inner;
            if (name == "duration") {
                std::vector<std::string> none;
                inner = regexOf(kDuration, none, false);
            } else {
                for (const Phrase& phrase : slots().at(name))
                    inner += std::string(inner.empty() ? "" : "|") + phrase.words + " ";
            }
            if (capture)
                names.push_back(name);
            out += (capture ? "(" : "(?:") + std::string("(?:") + inner + "))";
        } else {
            out += token + " ";
        }
    }
    return out;
}

std::string trimmed(std::string text)
{
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

}  // namespace

const std::vector<RequestPattern>& requestPatterns()
{
    static const std::vector<RequestPattern> table = {
        {"SetTimer", "(set | start) [a] timer for {duration}"},
        {"CancelTimer", "(cancel | stop | delete) [the | my] timer"},
        {"ExtendTimer", "add {duration} to [the | my] timer"},
        {"ExtendTimer", "extend [the | my] timer by {duration}"},
        {"TimeLeft", "how (long | much time) is left on [the | my] timer"},
        {"ListTimers", "what timers do i have"},
        {"PlayMusic", "play music [on {musicApp}]"},
        {"PlayMusic", "play {musicApp}"},
        {"StopMusic", "(stop | pause) the music"},
        {"SongRating", "do i like this song"},
        {"LikeSong", "i love this song"},
        {"SearchItems", "(search for | find) {item} [on {merchant}]"},
        {"CartStatus", "what's in my [shopping] cart"},
        {"OpenCart", "open my [shopping] cart"},
        {"AddToCart", "add {item} to my [shopping] cart"},
        {"AddToList", "add {item} to my shopping list"},
        {"ViewInside", "show me inside the {compartment}"},
        {"ViewInside", "what's in the {compartment}"},
        {"Weather", "(what's | how's) the weather [today]"},
        {"OpenApp", "(open | launch) {app}"},
    };
    return table;
}

std::string requestRules()
{
    std::ostringstream out;
    for (const auto& slot : slots()) {
        out << "<" << slot.first << "> = ";
        bool first = true;
        for (const Phrase& phrase : slot.second) {
            out << (first ? "" : " | ") << phrase.words;
            first = false;
        }
        out << ";\n";
    }
    out << "<duration> = " << jsgf(kDuration) << ";\n";
    out << "<request> = ";
    bool first = true;
    for (const RequestPattern& p : requestPatterns()) {
        out << (first ? "" : "\n    | ") << "(" << jsgf(p.pattern) << ")";
        first = false;
    }
    out << ";\n";
    return out.str();
}

std::vector<std::string> requestWords()
{
    std::set<std::string> all;
    auto add = [&](const std::string& text) {
        for (const std::string& token : tokens(text))
            if (std::isalpha(static_cast<unsigned char>(token[0])))
                all.insert(token);
    };
    for (const RequestPattern& p : requestPatterns())
        add(p.pattern);
    add(kDuration);
    for (const auto& slot : slots())
        for (const Phrase& phrase : slot.second)
            add(phrase.words);
    return {all.begin(), all.end()};
}

bool parseRequest(const std::string& text, Request& out)
{
    std::string line;
    for (const std::string& word : words(text))
        line += word + " ";
    for (const RequestPattern& p : requestPatterns()) {
        std::vector<std::string> names;
        const std::regex re(regexOf(p.pattern, names, true));
        std::smatch match;
        if (!std::regex_match(line, match, re))
            continue;
        out = Request();
        out.intent = p.intent;
        for (size_t i = 0; i < names.size(); ++i) {
            if (!match[i + 1].matched)
                continue;
            const std::string heard = trimmed(match[i + 1].str());
            out.heard[names[i]] = heard;
            if (names[i] == "duration") {
                out.value[names[i]] = std::to_string(durationSeconds(heard));
                continue;
            }
            for (const Phrase& phrase : slots().at(names[i]))
                if (heard == phrase.words)
                    out.value[names[i]] = phrase.value;
        }
        return true;
    }
    return false;
}

int durationSeconds(const std::string& text)
{
    const std::vector<std::string> list = words(text);
    long total = 0;
    size_t i = 0;
    bool any = false;
    while (i < list.size()) {
        if (any) {
            if (list[i] != "and")
                return -1;
            ++i;
        }
        // An amount is one or two words ("forty five").
        long amount = -1;
        for (size_t n : {2u, 1u}) {
            if (amount >= 0 || i + n > list.size())
                continue;
            std::string phrase = list[i];
            if (n == 2)
                phrase += " " + list[i + 1];
            for (const Phrase& p : slots().at("amount"))
                if (phrase == p.words) {
                    amount = std::stol(p.value);
                    i += n;
                    break;
                }
        }
        if (amount < 0 || i >= list.size())
            return -1;
        long unit = -1;
        for (const Phrase& p : slots().at("unit"))
            if (list[i] == p.words)
                unit = std::stol(p.value);
        if (unit < 0)
            return -1;
        ++i;
        total += amount * unit;
        any = true;
    }
    return any ? static_cast<int>(total) : -1;
}

std::string spokenDuration(long seconds)
{
    if (seconds < 0)
        seconds = 0;
    const long parts[] = {seconds / 3600, seconds / 60 % 60, seconds % 60};
    const char* names[] = {"hour", "minute", "second"};
    std::vector<std::string> said;
    for (int i = 0; i < 3; ++i)
        if (parts[i] > 0)
            said.push_back(std::to_string(parts[i]) + " " + names[i] + (parts[i] == 1 ? "" : "s"));
    if (said.empty())
        return "0 seconds";
    std::string out = said[0];
    for (size_t i = 1; i < said.size(); ++i)
        out += (i + 1 == said.size() ? " and " : ", ") + said[i];
    return out;
}

}  // namespace voice
