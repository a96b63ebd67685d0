#include "voice/Grammar.h"
#include "voice/Requests.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using voice::buildGrammar;
using voice::Command;
using voice::Grammar;

// A dictionary of the request words and a few more.
bool knows(const std::string& word)
{
    static const std::set<std::string> extra = {"show", "recipes", "bluetooth", "off", "go", "back",
                                                "fridge", "camera", "the", "to", "open", "please"};
    if (extra.count(word))
        return true;
    for (const std::string& w : voice::requestWords())
        if (w == word)
            return true;
    return false;
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(CommandDocument, CommandsAndFormatsAreReadFromTheDocsList)
{
    std::vector<Command> commands;
    std::string error;
    ASSERT_TRUE(voice::readCommands(
        R"({"docs":[{"_id":"2","meta_data":{"format":0,"command":"show recipes","domain":"Domain String"}},
                    {"_id":"3","meta_data":{"format":3,"command":"set the fridge to"}},
                    {"_id":"4","meta_data":{"command":"no format"}}]})",
        commands, error))
        << error;
    ASSERT_EQ(commands.size(), 2u) << "an element without a format is skipped";
    EXPECT_EQ(commands[0].text, "show recipes");
    EXPECT_EQ(commands[0].format, 0);
    EXPECT_EQ(commands[1].text, "set the fridge to");
    EXPECT_EQ(commands[1].format, 3);
}

TEST(CommandDocument, TextThatIsNoDocumentIsRefusedWithItsReason)
{
    std::vector<Command> commands;
    std::string error;
    EXPECT_FALSE(voice::readCommands("show recipes", commands, error));
    EXPECT_EQ(error, "the command document is not JSON");
    EXPECT_FALSE(voice::readCommands(R"({"documents":[]})", commands, error));
    EXPECT_EQ(error, "the command document has no \"docs\" list");
    EXPECT_TRUE(voice::readCommands(R"({"docs":[]})", commands, error));
    EXPECT_TRUE(commands.empty());
}

TEST(Words, AreLowerCaseWithInnerApostrophesAndAnythingElseSeparates)
{
    EXPECT_EQ(voice::words("Bluetooth Off!"), (std::vector<std::string>{"bluetooth", "off"}));
    EXPECT_EQ(voice::words("What's  the-weather?"), (std::vector<std::string>{"what's", "the", "weather"}));
    EXPECT_EQ(voice::words("'quoted' set 5"), (std::vector<std::string>{"quoted", "set", "5"}));
    EXPECT_TRUE(voice::words(" .,;!? ").empty());
}

TEST(Grammar, ExactCommandsAreAlternativesBesideTheRequests)
{
    const Grammar g = buildGrammar({{"Show Recipes", 0}, {"bluetooth off", 1}, {"go back", 2}}, knows);
    EXPECT_TRUE(contains(g.jsgf, "#JSGF V1.0;")) << g.jsgf;
    EXPECT_TRUE(contains(g.jsgf, "<command> = (show recipes)\n    | (bluetooth off)\n    | (go back);")) << g.jsgf;
    EXPECT_TRUE(contains(g.jsgf, "public <utterance> = <command> | <request>;")) << g.jsgf;
    EXPECT_TRUE(contains(g.jsgf, "<request> = ")) << g.jsgf;
    ASSERT_EQ(g.commands.size(), 3u);
    EXPECT_EQ(g.commands[0].text, "Show Recipes");
    EXPECT_TRUE(g.unknownWords.empty());
    EXPECT_TRUE(g.leftOut.empty());
}

TEST(Grammar, PrefixCommandsTakeUpToThreeWordsAfterThemAndSuffixCommandsBefore)
{
    const Grammar g = buildGrammar({{"set the fridge to", 3}, {"please", 4}}, knows);
    EXPECT_TRUE(contains(g.jsgf, "(set the fridge to [<free> [<free> [<free>]]])")) << g.jsgf;
    EXPECT_TRUE(contains(g.jsgf, "([<free> [<free> [<free>]]] please)")) << g.jsgf;
    EXPECT_TRUE(contains(g.jsgf, "<free> = ")) << g.jsgf;
    EXPECT_TRUE(contains(g.jsgf, " | fridge | ")) << "the commands' words are free words too";
}

TEST(Grammar, ActionKeysAndUnknownFormatsAreLeftOutWithTheReason)
{
    const Grammar g = buildGrammar({{"#org.tizen.Timer", 5}, {"show recipes", 9}, {"#not spoken", 0}}, knows);
    EXPECT_TRUE(g.commands.empty());
    EXPECT_EQ(g.leftOut, (std::vector<std::string>{"\"#org.tizen.Timer\": an action key is not spoken",
                                                   "\"show recipes\": format 9 matches nothing",
                                                   "\"#not spoken\": an action key is not spoken"}));
    EXPECT_TRUE(contains(g.jsgf, "public <utterance> = <request>;")) << g.jsgf;
    EXPECT_FALSE(contains(g.jsgf, "<command>")) << g.jsgf;
}

TEST(Grammar, EmptyCommandListLeavesTheRequestsOnly)
{
    const Grammar g = buildGrammar({}, knows);
    EXPECT_TRUE(g.commands.empty());
    EXPECT_TRUE(contains(g.jsgf, "public <utterance> = <request>;")) << g.jsgf;
}

TEST(Grammar, UnknownWordIsReportedOnceAndLeftOutOfItsCommands)
{
    const Grammar g = buildGrammar(
        {{"open the fridgecam", 0}, {"show the fridgecam please", 0}, {"café", 0}, {"go back 5", 0}}, knows);
    EXPECT_EQ(g.unknownWords, (std::vector<std::string>{"fridgecam", "café", "5"}));
    ASSERT_EQ(g.commands.size(), 3u);
    EXPECT_EQ(g.commands[0].words, (std::vector<std::string>{"open", "the"}));
    EXPECT_EQ(g.commands[1].words, (std::vector<std::string>{"show", "the", "please"}));
    EXPECT_EQ(g.commands[2].words, (std::vector<std::string>{"go", "back"}));
    EXPECT_EQ(g.leftOut, (std::vector<std::string>{"\"café\": no word of it is in the dictionary"}));
    EXPECT_FALSE(contains(g.jsgf, "fridgecam")) << g.jsgf;
    EXPECT_FALSE(contains(g.jsgf, "café")) << g.jsgf;
}

TEST(Grammar, RecognizedWordsAreGivenBackAsTheRegisteredCommand)
{
    const Grammar g = buildGrammar(
        {{"Show Recipes", 0}, {"open the fridgecam", 0}, {"set the fridge to", 3}, {"please", 4}}, knows);
    std::string command;
    EXPECT_EQ(voice::matchCommand(g, "show recipes", &command), "Show Recipes");
    EXPECT_EQ(command, "Show Recipes");
    EXPECT_EQ(voice::matchCommand(g, "open the"), "open the fridgecam")
        << "the words heard of a command with an unknown word stand for the whole command";
    EXPECT_EQ(voice::matchCommand(g, "set the fridge to three", &command), "set the fridge to three");
    EXPECT_EQ(command, "set the fridge to");
    EXPECT_EQ(voice::matchCommand(g, "set the fridge to"), "set the fridge to");
    EXPECT_EQ(voice::matchCommand(g, "open the fridge please"), "open the fridge please");
    EXPECT_EQ(voice::matchCommand(g, "show recipes now", &command), "");
    EXPECT_EQ(command, "");
    EXPECT_EQ(voice::matchCommand(g, "set a timer for ten minutes"), "");
}

}  // namespace
