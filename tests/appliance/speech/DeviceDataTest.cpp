// The device data that the speech library pulls at each start. The json-glib
// objects handed to the library are tracked through json_object_ref and
// json_object_unref, which this program interposes, so that the test sees
// their reference count reach zero.
#include "SpeechFixture.h"

#include <dlfcn.h>
#include <json-glib/json-glib.h>

#include <map>
#include <set>

using namespace marltest;

namespace {

std::mutex gRefMutex;
std::map<JsonObject*, int> gRefs;   // references held on each tracked object
std::set<JsonObject*> gFreed;       // tracked objects whose count reached zero

JsonObject* trackedObject(std::initializer_list<std::pair<const char*, const char*>> members)
{
    JsonObject* object = json_object_new();
    for (const auto& member : members)
        json_object_set_string_member(object, member.first, member.second);
    std::lock_guard<std::mutex> lock(gRefMutex);
    gRefs[object] = 1;
    gFreed.erase(object);
    return object;
}

bool freed(JsonObject* object)
{
    std::lock_guard<std::mutex> lock(gRefMutex);
    return gFreed.count(object) == 1;
}

}  // namespace

extern "C" JsonObject* json_object_ref(JsonObject* object)
{
    using Fn = JsonObject* (*)(JsonObject*);
    static const Fn real = reinterpret_cast<Fn>(dlsym(RTLD_NEXT, "json_object_ref"));
    {
        std::lock_guard<std::mutex> lock(gRefMutex);
        auto found = gRefs.find(object);
        if (found != gRefs.end())
            ++found->second;
    }
    return real(object);
}

extern "C" void json_object_unref(JsonObject* object)
{
    using Fn = void (*)(JsonObject*);
    static const Fn real = reinterpret_cast<Fn>(dlsym(RTLD_NEXT, "json_object_unref"));
    {
        std::lock_guard<std::mutex> lock(gRefMutex);
        auto found = gRefs.find(object);
        if (found != gRefs.end() && --found->second == 0) {
            gRefs.erase(found);
            gFreed.insert(object);
        }
    }
    real(object);
}

namespace {

class CountingTimer : public IEngineRetrieveDeviceTimerData {
public:
    int getTimerMaxCount() override
    {
        ++calls;
        return 7;
    }
    std::atomic<int> calls{0};
};

class TrackedCustom : public IEngineRetrieveDeviceCustomData {
public:
    std::map<std::string, _JsonObject*>* getCustomDomainData() override
    {
        auto* params = new std::map<std::string, _JsonObject*>();
        JsonObject* system = trackedObject({{"isRecipeOpen", "False"}});
        JsonObject* shopping = trackedObject({{"currentShoppingListSize", "0"}, {"existDefaultList", "True"}});
        (*params)["System"] = system;
        (*params)["Recipe"] = nullptr;
        (*params)["ShoppingList"] = shopping;
        std::lock_guard<std::mutex> lock(mutex);
        given.push_back(system);
        given.push_back(shopping);
        return params;
    }

    _JsonObject* getCustomRecoStateData() override
    {
        JsonObject* state = trackedObject({{"name", "DA Global"}});
        std::lock_guard<std::mutex> lock(mutex);
        given.push_back(state);
        return state;
    }

    std::mutex mutex;
    std::vector<JsonObject*> given;
};

// Real facet objects (the interfaces' own answers, a counting timer and a
// custom facet with tracked objects) behind a root that counts its calls.
class CountingDeviceData : public IEngineRetrieveDeviceData {
public:
    IEngineRetrieveDeviceAlarmData* getDeviceAlarmData() override { return note("Alarm", &alarm); }
    IEngineRetrieveDeviceClockData* getDeviceClockData() override { return note("Clock", &clock); }
    IEngineRetrieveDeviceConfigData* getDeviceConfigData() override { return note("Config", &config); }
    IEngineRetrieveDeviceContactsData* getDeviceContactsData() override { return note("Contacts", &contacts); }
    IEngineRetrieveDeviceDependentStaticData* getDeviceDependentStaticData() override
    {
        return note("DependentStatic", &staticData);
    }
    IEngineRetrieveDeviceLocationData* getDeviceLocationData() override { return note("Location", &location); }
    IEngineRetrieveDeviceMemoData* getDeviceMemoData() override { return note("Memo", &memo); }
    IEngineRetrieveDeviceMorningBriefData* getDeviceMorningBriefData() override
    {
        return note("MorningBrief", &morningBrief);
    }
    IEngineRetrieveDeviceMusicData* getDeviceMusicData() override { return note("Music", &music); }
    IEngineRetrieveDeviceNavigationData* getDeviceNavigationData() override
    {
        return note("Navigation", &navigation);
    }
    IEngineRetrieveDeviceNewsData* getDeviceNewsData() override { return note("News", &news); }
    IEngineRetrieveDeviceServerTtsData* getDeviceServerTtsData() override { return note("ServerTts", &serverTts); }
    IEngineRetrieveDeviceSettingsData* getDeviceSettingsData() override { return note("Settings", &settings); }
    IEngineRetrieveDeviceShoppingListData* getDeviceShoppingListData() override
    {
        return note("ShoppingList", &shoppingList);
    }
    IEngineRetrieveDeviceSoftwareData* getDeviceSoftwareData() override { return note("Software", &software); }
    IEngineRetrieveDeviceSystemData* getDeviceSystemData() override { return note("System", &system); }
    IEngineRetrieveDeviceTimerData* getDeviceTimerData() override { return note("Timer", &timer); }
    IEngineRetrieveDeviceCustomData* getDeviceCustomData() override { return note("Custom", &custom); }

    std::map<std::string, int> calls()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return mCalls;
    }

    std::set<std::thread::id> threads()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return mThreads;
    }

    IEngineRetrieveDeviceAlarmData alarm;
    IEngineRetrieveDeviceClockData clock;
    IEngineRetrieveDeviceConfigData config;
    IEngineRetrieveDeviceContactsData contacts;
    IEngineRetrieveDeviceDependentStaticData staticData;
    IEngineRetrieveDeviceLocationData location;
    IEngineRetrieveDeviceMemoData memo;
    IEngineRetrieveDeviceMorningBriefData morningBrief;
    IEngineRetrieveDeviceMusicData music;
    IEngineRetrieveDeviceNavigationData navigation;
    IEngineRetrieveDeviceNewsData news;
    IEngineRetrieveDeviceServerTtsData serverTts;
    IEngineRetrieveDeviceSettingsData settings;
    IEngineRetrieveDeviceShoppingListData shoppingList;
    IEngineRetrieveDeviceSoftwareData software;
    IEngineRetrieveDeviceSystemData system;
    CountingTimer timer;
    TrackedCustom custom;

private:
    template <typename Facet>
    Facet* note(const std::string& name, Facet* facet)
    {
        std::lock_guard<std::mutex> lock(mutex);
        ++mCalls[name];
        mThreads.insert(std::this_thread::get_id());
        return facet;
    }

    std::mutex mutex;
    std::map<std::string, int> mCalls;
    std::set<std::thread::id> mThreads;
};

const std::map<std::string, unsigned> kOperations = {
    {"Alarm", 2},        {"Clock", 1},       {"Config", 7},        {"Contacts", 1},  {"DependentStatic", 17},
    {"Location", 6},     {"Memo", 3},        {"MorningBrief", 2},  {"Music", 20},    {"Navigation", 2},
    {"News", 1},         {"ServerTts", 2},   {"Settings", 31},     {"ShoppingList", 1}, {"Software", 7},
    {"System", 20},      {"Timer", 18},      {"Custom", 2},
};

class SpeechDeviceDataTest : public SpeechLibraryTest {
protected:
    IEngineRetrieveDeviceData* deviceData() override { return &counting; }

    Json::Value pullOnce()
    {
        const size_t before = observations.of("deviceData").size();
        EXPECT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
        waitIdle();
        const auto pulls = observations.of("deviceData");
        EXPECT_EQ(pulls.size(), before + 1);
        return pulls.empty() ? Json::Value() : pulls.back();
    }

    CountingDeviceData counting;
};

TEST_F(SpeechDeviceDataTest, EveryOperationOfEveryFacetIsAskedOnTheLibraryThread)
{
    const Json::Value pull = pullOnce();
    EXPECT_EQ(pull["thread"], "library");
    const Json::Value& facets = pull["facets"];
    ASSERT_TRUE(facets.isObject());
    EXPECT_EQ(facets.size(), kOperations.size());
    for (const auto& facet : kOperations) {
        EXPECT_EQ(counting.calls()[facet.first], 1) << facet.first;
        ASSERT_TRUE(facets[facet.first].isObject()) << facet.first;
        EXPECT_EQ(facets[facet.first].size(), facet.second) << facet.first;
    }
    EXPECT_EQ(counting.threads().size(), 1u);
    EXPECT_EQ(counting.threads().count(std::this_thread::get_id()), 0u);
    EXPECT_EQ(counting.timer.calls, 1);

    EXPECT_EQ(facets["Alarm"]["getDefaultAlarmName"], "Alarm");
    EXPECT_EQ(facets["Clock"]["getTimezone"], "-0800");
    EXPECT_EQ(facets["Config"]["getRecoStateName"], "Marl Global");
    EXPECT_EQ(facets["Config"]["useClientDP"], false);
    EXPECT_EQ(facets["Location"]["getLocale"], "en-US");
    EXPECT_EQ(facets["Music"]["getCurrentMusicAppName"], "None");
    EXPECT_EQ(facets["Music"]["getCurMusicAppMaxVolume"], 15);
    EXPECT_EQ(facets["Music"]["getMusicMoodUri"], "");
    EXPECT_EQ(facets["Settings"]["getSoundOnOffState"], "On");
    EXPECT_EQ(facets["Software"]["getOS_Ver"], "3.0");
    EXPECT_EQ(facets["System"]["IsTemperatureTypeFahrenheit"], "False");
    EXPECT_EQ(facets["Timer"]["getTimerMaxCount"], 7);
    EXPECT_EQ(facets["Timer"]["supportMultipleControl"], false);
    EXPECT_EQ(facets["ShoppingList"]["getCurrentShoppingListSize"], 0);
    const Json::Value& tables = facets["DependentStatic"];
    EXPECT_EQ(tables["getSystemStaticDeviceData"]["isOneShotMode"], "FALSE");
    EXPECT_EQ(tables["getMemoStaticDeviceData"]["memoSearchTitleContentDisabled "], "True");
    EXPECT_EQ(tables["getSettingsStaticDeviceData"].size(), 26u);
}

TEST_F(SpeechDeviceDataTest, EachStartPullsAgainIncludingADriverResponseTurn)
{
    pullOnce();
    manager->stopRecognition();
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL));
    manager->stopRecognition();
    waitIdle();
    EXPECT_EQ(observations.of("deviceData").size(), 2u);
    for (const auto& facet : kOperations)
        EXPECT_EQ(counting.calls()[facet.first], 2) << facet.first;
}

TEST_F(SpeechDeviceDataTest, NluParametersAndRecognitionStateAreRenderedThenFreed)
{
    const Json::Value pull = pullOnce();
    const Json::Value& params = pull["nluParams"];
    ASSERT_TRUE(params.isObject());
    EXPECT_EQ(params.size(), 3u);
    EXPECT_EQ(parseJson(params["System"].asString()), parseJson(R"({"isRecipeOpen":"False"})"));
    EXPECT_EQ(parseJson(params["ShoppingList"].asString()),
              parseJson(R"({"currentShoppingListSize":"0","existDefaultList":"True"})"));
    EXPECT_TRUE(params.isMember("Recipe"));
    EXPECT_TRUE(params["Recipe"].isNull());
    EXPECT_EQ(parseJson(pull["recoState"].asString()), parseJson(R"({"name":"DA Global"})"));
    EXPECT_EQ(pull["facets"]["Custom"]["getCustomDomainData"], params);
    EXPECT_EQ(pull["facets"]["Custom"]["getCustomRecoStateData"], pull["recoState"]);

    std::lock_guard<std::mutex> lock(counting.custom.mutex);
    ASSERT_EQ(counting.custom.given.size(), 3u);
    for (JsonObject* object : counting.custom.given)
        EXPECT_TRUE(freed(object)) << "the library did not drop its reference";
}

class BareCustom : public IEngineRetrieveDeviceData {
public:
    IEngineRetrieveDeviceCustomData* getDeviceCustomData() override { return &custom; }
    IEngineRetrieveDeviceCustomData custom;
};

class SpeechDeviceDataBareTest : public SpeechLibraryTest {};

TEST_F(SpeechDeviceDataBareTest, ABareFacadeGivesNullForEveryFacet)
{
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    waitIdle();
    const auto pulls = observations.of("deviceData");
    ASSERT_EQ(pulls.size(), 1u);
    ASSERT_EQ(pulls[0]["facets"].size(), kOperations.size());
    for (const auto& facet : kOperations)
        EXPECT_TRUE(pulls[0]["facets"][facet.first].isNull()) << facet.first;
    EXPECT_TRUE(pulls[0]["nluParams"].isNull());
    EXPECT_TRUE(pulls[0]["recoState"].isNull());
}

TEST(SpeechDeviceData, ACustomFacetWithoutDataGivesNullParametersAndState)
{
    TestDevice device;
    Observations observations;
    BareCustom data;
    Tessel::init(Config(), &data);
    ASSERT_TRUE(Tessel::getInstance()->getRecognitionManager()->startRecognition(false, false, RECOG_TYPE_VOICE,
                                                                                   DEVICE_MODE_NORMAL));
    ASSERT_EQ(speech_standin_wait_idle(5000), 0);
    Tessel::shutdown();
    const auto pulls = observations.of("deviceData");
    ASSERT_EQ(pulls.size(), 1u);
    EXPECT_TRUE(pulls[0]["nluParams"].isNull());
    EXPECT_TRUE(pulls[0]["recoState"].isNull());
    EXPECT_TRUE(pulls[0]["facets"]["Custom"].isObject());
    EXPECT_TRUE(pulls[0]["facets"]["Alarm"].isNull());
}

}  // namespace
