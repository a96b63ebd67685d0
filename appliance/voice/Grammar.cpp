#include "voice/Grammar.h"

#include "voice/Requests.h"

#include <json/json.h>

#include <cctype>
#include <memory>
#include <set>
#include <sstream>

namespace voice {
namespace {

// Words that prefix and suffix commands may have around them, at most this many.
const size_t kMaxFreeWords = 3;

std::string joined(const std::vector<std::string>& list, size_t from = 0, size_t to = std::string::npos)
{
    std::string out;
    for (size_t i = from; i < list.size() && i < to; ++i)
        out += (out.empty() ? "" : " ") + list[i];
    return out;
}

// Up to kMaxFreeWords of <free>: "[<free> [<free> [<free>]]]".
std::string freeWords()
{
    std::string out = "[<free>]";
    for (size_t i = 1; i < kMaxFreeWords; ++i)
        out = "[<free> " + out + "]";
    return out;
}

}  // namespace

std::vector<std::string> words(const std::string& text)
{
    std::vector<std::string> out;
    std::string word;
    auto flush = [&] {
        while (!word.empty() && word.back() == '\'')
            word.pop_back();
        if (!word.empty())
            out.push_back(word);
        word.clear();
    };
    for (const char raw : text) {
        const unsigned char c = static_cast<unsigned char>(raw);
        if (std::isalnum(c) || c >= 0x80)
            word += static_cast<char>(std::tolower(c));
        else if (c == '\'' && !word.empty())
            word += '\'';
        else
            flush();
    }
    flush();
    return out;
}

bool readCommands(const std::string& document, std::vector<Command>& out, std::string& error)
{
    out.clear();
    Json::CharReaderBuilder builder;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    std::string errors;
    if (!reader->parse(document.data(), document.data() + document.size(), &root, &errors)) {
        error = "the command document is not JSON";
        return false;
    }
    if (!root.isObject() || !root["docs"].isArray()) {
        error = "the command document has no \"docs\" list";
        return false;
    }
    for (const Json::Value& doc : root["docs"]) {
        const Json::Value& meta = doc.isObject() ? doc["meta_data"] : Json::Value();
        if (!meta.isObject() || !meta["command"].isString() || !meta["format"].isInt())
            continue;
        out.push_back({meta["command"].asString(), meta["format"].asInt()});
    }
    return true;
}

Grammar buildGrammar(const std::vector<Command>& commands, const std::function<bool(const std::string&)>& knows)
{
    Grammar grammar;
    std::set<std::string> unknown;
    std::set<std::string> vocabulary;
    for (const std::string& word : requestWords())
        vocabulary.insert(word);
    for (const Command& command : commands) {
        if (command.format == kAction || (!command.text.empty() && command.text[0] == '#')) {
            grammar.leftOut.push_back("\"" + command.text + "\": an action key is not spoken");
            continue;
        }
        if (command.format < kExact0 || command.format > kSuffix) {
            grammar.leftOut.push_back("\"" + command.text + "\": format " + std::to_string(command.format) +
                                      " matches nothing");
            continue;
        }
        GrammarCommand kept{command.text, command.format, {}};
        for (const std::string& word : words(command.text)) {
            if (knows(word)) {
                kept.words.push_back(word);
            } else if (unknown.insert(word).second) {
                grammar.unknownWords.push_back(word);
            }
        }
        if (kept.words.empty()) {
            grammar.leftOut.push_back("\"" + command.text + "\": no word of it is in the dictionary");
            continue;
        }
        for (const std::string& word : kept.words)
            vocabulary.insert(word);
        grammar.commands.push_back(kept);
    }

    std::string anyWord;
    for (const std::string& word : vocabulary)
        anyWord += (anyWord.empty() ? "" : " | ") + word;
    std::ostringstream all;
    all << "#JSGF V1.0;\ngrammar appliance;\n" << requestRules() << "<free> = " << anyWord << ";\n";
    if (!grammar.commands.empty()) {
        all << "<command> = ";
        for (size_t i = 0; i < grammar.commands.size(); ++i) {
            const GrammarCommand& c = grammar.commands[i];
            const std::string phrase = joined(c.words);
            all << (i ? "\n    | " : "") << "(";
            if (c.format == kPrefix)
                all << phrase << " " << freeWords();
            else if (c.format == kSuffix)
                all << freeWords() << " " << phrase;
            else
                all << phrase;
            all << ")";
        }
        all << ";\npublic <utterance> = <command> | <request>;\n";
    } else {
        all << "public <utterance> = <request>;\n";
    }
    grammar.jsgf = all.str();
    return grammar;
}

std::string matchCommand(const Grammar& grammar, const std::string& text, std::string* command)
{
    const std::vector<std::string> heard = words(text);
    for (const GrammarCommand& c : grammar.commands) {
        if (command)
            *command = c.text;
        const size_t n = c.words.size();
        if (heard.size() < n)
            continue;
        if (c.format == kPrefix) {
            if (std::equal(c.words.begin(), c.words.end(), heard.begin()) && heard.size() - n <= kMaxFreeWords) {
                const std::string rest = joined(heard, n);
                return c.text + (rest.empty() ? "" : " " + rest);
            }
        } else if (c.format == kSuffix) {
            if (std::equal(c.words.begin(), c.words.end(), heard.end() - n) && heard.size() - n <= kMaxFreeWords) {
                const std::string rest = joined(heard, 0, heard.size() - n);
                return (rest.empty() ? "" : rest + " ") + c.text;
            }
        } else if (heard == c.words) {
            return c.text;
        }
    }
    if (command)
        command->clear();
    return "";
}

}  // namespace voice
