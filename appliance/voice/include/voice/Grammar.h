// The grammar that the recognizer of the virtual appliance listens for: the
// registered voice commands of the command document, and the requests of
// the appliance's speech service (Requests.h).
#ifndef VOICE_GRAMMAR_H
#define VOICE_GRAMMAR_H

#include <functional>
#include <string>
#include <vector>

namespace voice {

// How a command matches a recognized text; the values of the document's
// "format" member.
enum CommandFormat { kExact0 = 0, kExact1 = 1, kExact2 = 2, kPrefix = 3, kSuffix = 4, kAction = 5 };

struct Command {
    std::string text;
    int format = 0;
};

// A command as the grammar holds it: its text and the words of it that the
// recognizer knows.
struct GrammarCommand {
    std::string text;
    int format = 0;
    std::vector<std::string> words;
};

struct Grammar {
    std::string jsgf;                       // the whole grammar
    std::vector<GrammarCommand> commands;   // the commands it holds
    std::vector<std::string> unknownWords;  // words of commands that the dictionary lacks, once each
    std::vector<std::string> leftOut;       // commands it does not hold, each with the reason
};

// The lower-case words of a text: letters, digits and inner apostrophes;
// anything else separates words.
std::vector<std::string> words(const std::string& text);

// Reads the commands of the document that the plug-in gives the speech
// library: {"docs": [{"meta_data": {"command": "...", "format": 0}}, ...]}.
// False, with the reason in `error`, when the text is not such a document.
bool readCommands(const std::string& document, std::vector<Command>& out, std::string& error);

// Builds the grammar of the commands and the service's requests. A word
// that `knows` refuses is left out of its command; a command without any
// known word, an action key ("#org.tizen...") and an unknown format are
// left out whole.
Grammar buildGrammar(const std::vector<Command>& commands, const std::function<bool(const std::string&)>& knows);

// The command that a recognized text says, as the command list has it: the
// command's own text, with the words heard before or after it for suffix
// and prefix commands. Empty when the text is no command. `command`, when
// given, receives the command's own text alone.
std::string matchCommand(const Grammar& grammar, const std::string& text, std::string* command = nullptr);

}  // namespace voice

#endif
