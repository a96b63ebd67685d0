// The installed engine description, read as the platform's voice-control
// configuration reads it, against what the installed plug-in reports.
#include "StagedEngine.h"
#include "TestDevice.h"

#include <voice_control_plugin_engine.h>

#include <Ecore.h>
#include <json/json.h>
#include <libxml/parser.h>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Description {
    bool parsed = false;
    std::string root;
    std::string name;
    std::string id;
    std::vector<std::string> languages;
    std::string nonFixedSupport;
};

std::string content(xmlNodePtr node)
{
    xmlChar* key = xmlNodeGetContent(node);
    std::string text = key ? reinterpret_cast<const char*>(key) : "";
    xmlFree(key);
    return text;
}

bool named(xmlNodePtr node, const char* name)
{
    return xmlStrcmp(node->name, reinterpret_cast<const xmlChar*>(name)) == 0;
}

// The platform's way: the root's children by tag, the languages as the "lang"
// children of "languages"; other tags are passed over.
Description readAsThePlatformDoes(const std::string& path)
{
    Description description;
    xmlDocPtr doc = xmlParseFile(path.c_str());
    if (!doc)
        return description;
    description.parsed = true;
    if (xmlNodePtr root = xmlDocGetRootElement(doc)) {
        description.root = reinterpret_cast<const char*>(root->name);
        for (xmlNodePtr node = root->xmlChildrenNode; node; node = node->next) {
            if (named(node, "name"))
                description.name = content(node);
            else if (named(node, "id"))
                description.id = content(node);
            else if (named(node, "non-fixed-support"))
                description.nonFixedSupport = content(node);
            else if (named(node, "languages"))
                for (xmlNodePtr lang = node->xmlChildrenNode; lang; lang = lang->next)
                    if (named(lang, "lang"))
                        description.languages.push_back(content(lang));
        }
    }
    xmlFreeDoc(doc);
    return description;
}

// The description and the plug-in, installed into the root of a fresh device.
class EngineDescription : public ::testing::Test {
protected:
    void SetUp() override
    {
        root = device.path("root");
        const std::string error = packaging::installEngine(root);
        ASSERT_TRUE(error.empty()) << error;
        description = readAsThePlatformDoes(root + packaging::kDescription);
        ASSERT_TRUE(description.parsed) << root + packaging::kDescription;
    }

    marltest::TestDevice device;
    std::string root;
    Description description;
};

struct Identity {
    std::string uuid;
    std::string name;
};

void keepIdentity(const char* uuid, const char* name, const char*, bool, void* userData)
{
    auto* identity = static_cast<Identity*>(userData);
    identity->uuid = uuid ? uuid : "";
    identity->name = name ? name : "";
}

bool keepLanguage(const char* language, void* userData)
{
    static_cast<std::vector<std::string>*>(userData)->push_back(language ? language : "<null>");
    return true;
}

}  // namespace

TEST_F(EngineDescription, ThePlatformsParserTakesItForAnEngine)
{
    EXPECT_EQ(description.root, "voice-control-engine");
    // The platform drops a description without an id or without languages.
    EXPECT_FALSE(description.id.empty());
    EXPECT_FALSE(description.languages.empty());
    // Any other text is logged as an error and read as false.
    EXPECT_TRUE(description.nonFixedSupport == "true" || description.nonFixedSupport == "false")
        << description.nonFixedSupport;
}

TEST_F(EngineDescription, NameAndIdAreThoseThatThePluginReports)
{
    packaging::OpenedPlugin plugin(root + packaging::kPlugin);
    ASSERT_TRUE(plugin.opened()) << plugin.error();
    const auto getEngineInfo = plugin.symbol<int (*)(vcpe_engine_info_cb, void*)>("vcp_get_engine_info");
    ASSERT_NE(getEngineInfo, nullptr);
    Identity identity;
    ASSERT_EQ(getEngineInfo(keepIdentity, &identity), 0);
    EXPECT_EQ(description.id, identity.uuid);
    EXPECT_EQ(description.name, identity.name);
}

TEST_F(EngineDescription, LanguagesAreThoseThatThePluginWalksInItsOrder)
{
    ::setenv("ECORE_NO_SYSTEM_MODULES", "1", 0);  // they want a system bus
    ecore_init();
    std::vector<std::string> walked;
    {
        packaging::OpenedPlugin plugin(root + packaging::kPlugin);
        ASSERT_TRUE(plugin.opened()) << plugin.error();
        vcpd_funcs_s daemon{};
        vcpe_funcs_s engine{};
        ASSERT_EQ(plugin.load(daemon, engine), 0);
        ASSERT_EQ(engine.initialize(), 0);
        EXPECT_EQ(engine.foreach_langs(keepLanguage, &walked), 0);
        for (const std::string& language : description.languages)
            EXPECT_TRUE(engine.is_lang_supported(language.c_str())) << language;
        EXPECT_EQ(engine.deinitialize(), 0);
    }
    ecore_shutdown();
    EXPECT_EQ(description.languages, walked);
}

TEST_F(EngineDescription, NonFixedSupportIsWhatThePluginsResultsShow)
{
    // A command of the fixed-and-extra format (1), said once with extra words
    // and once alone.
    const std::string scenario = device.path("non-fixed.json");
    std::ofstream(scenario) << R"({
  "engine": {"language": "en_US",
             "commands": [{"id": 7, "type": 1, "format": 1, "command": "open", "domain": 0}]},
  "turns": [
    {"audio": {"speechMs": 300, "silenceMs": 200}, "end": "stop", "server": [
      {"type": "asr", "text": "open the door", "engineType": "CLOUD", "confidence": 1},
      {"type": "nlu", "text": "{}", "engineType": "CLOUD", "confidence": 1, "last": true},
      {"type": "action", "agent": "Door", "actionType": "None", "commandName": "Open",
       "actionName": "Open", "spokenText": "", "rawJson": {}}]},
    {"audio": {"speechMs": 300, "silenceMs": 200}, "end": "stop", "server": [
      {"type": "asr", "text": "open", "engineType": "CLOUD", "confidence": 1},
      {"type": "nlu", "text": "{}", "engineType": "CLOUD", "confidence": 1, "last": true},
      {"type": "action", "agent": "Door", "actionType": "None", "commandName": "Open",
       "actionName": "Open", "spokenText": "", "rawJson": {}}]}]
})";
    const std::string transcript = device.path("non-fixed.transcript.json");
    const std::string command = "env -u MARL_PLUGIN " + packaging::quoted(MARL_SIM) + " run " +
                                packaging::quoted(scenario) + " --device " + packaging::quoted(device.dir()) +
                                " --plugin " + packaging::quoted(root + packaging::kPlugin) + " --fast --json " +
                                packaging::quoted(transcript) + " > " + packaging::quoted(transcript + ".txt") +
                                " 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;

    Json::Value json;
    std::ifstream in(transcript);
    ASSERT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), in, &json, nullptr)) << transcript;
    std::vector<Json::Value> results;
    for (const Json::Value& entry : json["entries"])
        if (entry["kind"] == "callback" && entry["fn"] == "result")
            results.push_back(entry);
    ASSERT_EQ(results.size(), 2u);
    ASSERT_TRUE(description.nonFixedSupport == "true" || description.nonFixedSupport == "false");
    if (description.nonFixedSupport == "true") {
        EXPECT_EQ(results[0]["event"], 0) << "the command with extra words was not recognised";
        EXPECT_EQ(results[0]["nonFixedResult"], "the door");
    } else {
        EXPECT_EQ(results[0]["event"], 1) << "the command matched with extra words: " << results[0];
        EXPECT_TRUE(results[0]["nonFixedResult"].isNull()) << results[0];
    }
    EXPECT_EQ(results[1]["event"], 0) << results[1];
    Json::Value ids(Json::arrayValue);
    ids.append(7);
    EXPECT_EQ(results[1]["ids"], ids) << results[1];
    EXPECT_TRUE(results[1]["nonFixedResult"].isNull()) << results[1];
}
