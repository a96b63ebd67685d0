// The recognition state chosen from the app in front: morning brief, recipe
// and commerce generators asked in that order, the first that applies wins.
#include "PluginFixture.h"

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImpl.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGen.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenCommerce.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenMorningBrief.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenRecipe.h"
#include "RetrieveImpl/DA/DaCustomizedRecognitionModeRetriever.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/VcEngineJsonConverter.h"

#include <json/json.h>

#include <string>

using marltest::TestDevice;

namespace {

// The retriever's state as text, or "<null>"; the object is released.
std::string recognitionMode()
{
    _JsonObject* state = DaCustomizedRecognitionModeRetriever().getRecognitionMode();
    if (!state)
        return "<null>";
    const std::string text = VcEngineJsonConverter().jsonToString(state);
    json_object_unref(state);
    return text;
}

Json::Value parse(const std::string& text)
{
    Json::Value value;
    Json::Reader().parse(text, value);
    return value;
}

// What one generator hands over after the retriever's two runs.
template <typename Generator>
std::string stateOf()
{
    Generator generator;
    if (!generator.isValid())
        return "<not valid>";
    return generator.getRecognitionMode();
}

std::string describe(const std::string& region, const std::string& foreground, const std::string& tables)
{
    return R"({"vconf": {"db/setting/region_code": ")" + region + R"("},
               "apps": {"installed": [], "foreground": ")" + foreground + R"("},
               "datastore": )" + tables + "}";
}

const char* const kMorningBriefApp = "org.tizen.morningBrief";
const char* const kPlaying = R"({"MorningBrief": [{"isMorningBriefPlaying": "Play"}]})";

const char* const kMorningBriefState =
    "{\"context\":[{\"agent\":\"Morning Brief\",\"name\":\"Morning Brief Control\"},"
    "{\"agent\":\"Morning Brief\",\"name\":\"Morning Brief Control\"}],\"name\":\"DA Global\"}\n";
const char* const kRecipeState =
    "{\"context\":[{\"agent\":\"Recipe\",\"name\":\"Recipe Control\"},"
    "{\"agent\":\"Recipe\",\"name\":\"Recipe Control\"}],\"name\":\"DA Global\"}\n";
const char* const kCartState =
    "{\"context\":[{\"agent\":\"Commerce\",\"name\":\"Cart Control\"}],\"name\":\"DA Global\"}\n";
const char* const kKoreanShoppingState =
    "{\"context\":[{\"agent\":\"Commerce\",\"name\":\"Cart Control\"},"
    "{\"agent\":\"Commerce\",\"name\":\"Product Control\"},"
    "{\"agent\":\"Commerce\",\"name\":\"Shopping App Control\"}],\"name\":\"DA Global\"}\n";

}  // namespace

// ---------------------------------------------------------------- the frame

TEST(RecognitionModeFrame, TheBaseGeneratorNeverApplies)
{
    DARecognitionModeGen generator;
    EXPECT_FALSE(generator.isValid());
    EXPECT_EQ(generator.getRecognitionMode(), "");
}

TEST(RecognitionModeFrame, WithNoDeviceDataNoStateApplies)
{
    TestDevice bare;
    EXPECT_EQ(recognitionMode(), "<null>");
}

TEST(RecognitionModeFrame, AGeneratorThatDoesNotApplyHandsOverNothing)
{
    TestDevice bare(describe("US", "", kPlaying));
    DARecognitionModeGenMorningBrief generator;
    EXPECT_EQ(generator.getRecognitionMode(), "");
}

TEST(RecognitionModeFrame, TheRetrieverHandsOverAJsonGlibObjectOfTheState)
{
    TestDevice bare(describe("US", kMorningBriefApp, kPlaying));
    _JsonObject* state = DaCustomizedRecognitionModeRetriever().getRecognitionMode();
    ASSERT_NE(state, nullptr);
    EXPECT_STREQ(json_object_get_string_member(state, "name"), "DA Global");
    JsonArray* context = json_object_get_array_member(state, "context");
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(json_array_get_length(context), 2u);
    json_object_unref(state);
}

TEST(RecognitionModeFrame, TheMorningBriefWinsOverARecipeThatIsInFrontToo)
{
    // The recipe row names the app in front, so the recipe generator applies as well.
    TestDevice bare(describe("US", kMorningBriefApp,
                           R"({"MorningBrief": [{"isMorningBriefPlaying": "Play"}],
                               "Recipe": [{"appName": "org.tizen.morningBrief"}]})"));
    ASSERT_EQ(stateOf<DARecognitionModeGenRecipe>(), kRecipeState);
    EXPECT_EQ(parse(recognitionMode()), parse(kMorningBriefState));
}

TEST(RecognitionModeFrame, TheRecipeWinsOverTheShoppingAppInFront)
{
    TestDevice bare(describe("US", "com.mastercard.tizen",
                           R"({"Commerce": [{"currentViewType": "2"}],
                               "Recipe": [{"appName": "com.mastercard.tizen"}]})"));
    ASSERT_EQ(stateOf<DARecognitionModeGenCommerce>(), kCartState);
    EXPECT_EQ(parse(recognitionMode()), parse(kRecipeState));
}

TEST(RecognitionModeFrame, TheShoppingAppAppliesWhenNothingElseDoes)
{
    TestDevice bare(describe("US", "com.mastercard.tizen", R"({"Commerce": [{"currentViewType": "2"}]})"));
    EXPECT_EQ(parse(recognitionMode()), parse(kCartState));
}

TEST(RecognitionModeFrame, AFailingKeyStoreCountsAsTheUS)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "GB"},
                        "apps": {"installed": [], "foreground": "com.mastercard.tizen"},
                        "datastore": {"Commerce": [{"currentViewType": "2"}]},
                        "errors": {"vconf_get_str": -1}})");
    EXPECT_EQ(parse(recognitionMode()), parse(kCartState));
}

class RecognitionModeEngine : public marltest::EngineTest {
};

TEST_F(RecognitionModeEngine, TheCustomDataFacetHandsTheStateToTheSpeechLibrary)
{
    IEngineRetrieveDeviceCustomData* custom = wrapper()->getEngineDeviceDataRetriever()->getDeviceCustomData();
    EXPECT_EQ(custom->getCustomRecoStateData(), nullptr);

    device.apply(describe("US", "com.mastercard.tizen", R"({"Commerce": [{"currentViewType": "1"}]})"));
    _JsonObject* state = custom->getCustomRecoStateData();
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(parse(VcEngineJsonConverter().jsonToString(state)),
              parse(R"({"context":[{"agent":"Commerce","name":"Product Control"}],"name":"DA Global"})"));
    json_object_unref(state);
}

// ---------------------------------------------------------------- morning brief

TEST(MorningBriefRecoState, APlayingMorningBriefInFrontCarriesItsMemberTwice)
{
    for (const char* region : {"US", "KR", "EU"}) {
        TestDevice bare(describe(region, kMorningBriefApp, kPlaying));
        EXPECT_EQ(stateOf<DARecognitionModeGenMorningBrief>(), kMorningBriefState) << region;
    }
}

TEST(MorningBriefRecoState, AnyWordButFalseOrNothingCountsAsPlaying)
{
    for (const char* word : {"True", "1", "Play", "no"}) {
        TestDevice bare(describe("US", kMorningBriefApp,
                               std::string(R"({"MorningBrief": [{"isMorningBriefPlaying": ")") + word + "\"}]}"));
        EXPECT_EQ(stateOf<DARecognitionModeGenMorningBrief>(), kMorningBriefState) << word;
    }
}

TEST(MorningBriefRecoState, AnIntegerOneCountsAsPlaying)
{
    TestDevice bare(describe("US", kMorningBriefApp, R"({"MorningBrief": [{"isMorningBriefPlaying": 1}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenMorningBrief>(), kMorningBriefState);
}

TEST(MorningBriefRecoState, FalseOrNothingIsNotPlaying)
{
    for (const char* tables : {R"({"MorningBrief": [{"isMorningBriefPlaying": "False"}]})",
                               R"({"MorningBrief": [{"isMorningBriefPlaying": ""}]})",
                               R"({"MorningBrief": [{"other": "Play"}]})", R"({"MorningBrief": []})"}) {
        TestDevice bare(describe("US", kMorningBriefApp, tables));
        EXPECT_EQ(stateOf<DARecognitionModeGenMorningBrief>(), "<not valid>") << tables;
    }
}

TEST(MorningBriefRecoState, OnlyTheFirstRowCounts)
{
    TestDevice bare(describe("US", kMorningBriefApp,
                           R"({"MorningBrief": [{"isMorningBriefPlaying": "False"},
                                                {"isMorningBriefPlaying": "Play"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenMorningBrief>(), "<not valid>");
}

TEST(MorningBriefRecoState, TheMorningBriefMustBeInFront)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "US"},
                        "apps": {"installed": [], "running": ["org.tizen.morningBrief"],
                                 "foreground": "org.tizen.fridge-timer"},
                        "datastore": {"MorningBrief": [{"isMorningBriefPlaying": "Play"}]}})");
    EXPECT_EQ(stateOf<DARecognitionModeGenMorningBrief>(), "<not valid>");
}

TEST(MorningBriefRecoState, OtherRegionsNeverApply)
{
    for (const char* region : {"GB", "AU", "us"}) {
        TestDevice bare(describe(region, kMorningBriefApp, kPlaying));
        EXPECT_EQ(stateOf<DARecognitionModeGenMorningBrief>(), "<not valid>") << region;
        EXPECT_EQ(recognitionMode(), "<null>") << region;
    }
}

TEST(MorningBriefRecoState, AFailingDataStoreIsNotPlaying)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "US"},
                        "apps": {"installed": [], "foreground": "org.tizen.morningBrief"},
                        "datastore": {"MorningBrief": [{"isMorningBriefPlaying": "Play"}]},
                        "errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    EXPECT_EQ(recognitionMode(), "<null>");
}

// ---------------------------------------------------------------- recipe

TEST(RecipeRecoState, ARowsAppInFrontCarriesTheRecipeMemberTwice)
{
    TestDevice bare(describe("GB", "org.tizen.WeblinkApps-Allrecipes",
                           R"({"Recipe": [{"appName": "org.tizen.WeblinkApps-Allrecipes"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), kRecipeState);
    EXPECT_EQ(parse(recognitionMode()), parse(kRecipeState));
}

TEST(RecipeRecoState, AnUnknownAppIsTheRecipesAppInTheUSAndAustralia)
{
    for (const char* region : {"US", "AU"}) {
        TestDevice bare(describe(region, "1K3CsGDv16.Recipes", R"({"Recipe": [{"appName": "Unknown"}]})"));
        EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), kRecipeState) << region;
    }
}

TEST(RecipeRecoState, AnUnknownAppIsTheDeliCookAppInKorea)
{
    TestDevice bare(describe("KR", "Pt0hRTNBBa.RecipeDeliCook", R"({"Recipe": [{"appName": "Unknown"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), kRecipeState);
    bare.apply(R"({"apps": {"installed": [], "foreground": "1K3CsGDv16.Recipes"}})");
    EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), "<not valid>");
}

TEST(RecipeRecoState, AnUnknownAppInOtherRegionsIsAskedForByThatName)
{
    TestDevice bare(describe("GB", "1K3CsGDv16.Recipes", R"({"Recipe": [{"appName": "Unknown"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), "<not valid>");
    // Only an app with the very name "Unknown" in front would match.
    bare.apply(R"({"apps": {"installed": [], "foreground": "Unknown"}})");
    EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), kRecipeState);
}

TEST(RecipeRecoState, AnyRowMayMatch)
{
    TestDevice bare(describe("US", "1K3CsGDv16.Recipes",
                           R"({"Recipe": [{"appName": "a.other"}, {"other": "x"},
                                          {"appName": "1K3CsGDv16.Recipes"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), kRecipeState);
    EXPECT_TRUE(marltest::logged("Set recipe reco"));
}

TEST(RecipeRecoState, NoRowInFrontDoesNotApply)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "US"},
                        "apps": {"installed": [], "running": ["1K3CsGDv16.Recipes"], "foreground": "a.other"},
                        "datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes"}]}})");
    EXPECT_EQ(stateOf<DARecognitionModeGenRecipe>(), "<not valid>");
    EXPECT_FALSE(marltest::logged("Set recipe reco"));
}

TEST(RecipeRecoState, AFailingDataStoreDoesNotApply)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "US"},
                        "apps": {"installed": [], "foreground": "1K3CsGDv16.Recipes"},
                        "datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes"}]},
                        "errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    EXPECT_EQ(recognitionMode(), "<null>");
}

// ---------------------------------------------------------------- commerce

TEST(CommerceRecoState, TheRegionsShoppingAppsAreFixed)
{
    const auto& apps = DARecognitionModeGenCommerce::gShoppingApps;
    ASSERT_EQ(apps.size(), 2u);
    EXPECT_EQ(apps.at("US"), std::vector<std::string>({"com.mastercard.tizen"}));
    EXPECT_EQ(apps.at("KR"), std::vector<std::string>({"qLH6zwTE25.Emart", "org.tizen.WeblinkApps-LotteMart",
                                                       "org.tizen.WeblinkApps-HomePlus",
                                                       "org.tizen.WeblinkApps-thehyundai",
                                                       "org.tizen.WeblinkApps-NaverFoodWindow"}));
}

TEST(CommerceRecoState, AUSCartViewHasOneCartMember)
{
    TestDevice bare(describe("US", "com.mastercard.tizen", R"({"Commerce": [{"currentViewType": "2"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(), kCartState);
}

TEST(CommerceRecoState, TheViewTypeNamesTheControl)
{
    const char* const cases[][2] = {{"1", "Product Control"},
                                    {"2", "Cart Control"},
                                    {"3", "Shopping App Control"},
                                    {"Cart", "Shopping App Control"}};
    for (const auto& c : cases) {
        TestDevice bare(describe("US", "com.mastercard.tizen",
                               std::string(R"({"Commerce": [{"currentViewType": ")") + c[0] + "\"}]}"));
        EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(),
                  std::string("{\"context\":[{\"agent\":\"Commerce\",\"name\":\"") + c[1] +
                      "\"}],\"name\":\"DA Global\"}\n")
            << c[0];
    }
}

TEST(CommerceRecoState, AnIntegerViewTypeIsReadToo)
{
    TestDevice bare(describe("US", "com.mastercard.tizen", R"({"Commerce": [{"currentViewType": 2}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(), kCartState);
}

TEST(CommerceRecoState, ViewTypeZeroOrNothingGivesNoState)
{
    for (const char* tables : {R"({"Commerce": [{"currentViewType": "0"}]})",
                               R"({"Commerce": [{"currentViewType": ""}]})",
                               R"({"Commerce": [{"totalCount": "2"}]})", R"({"Commerce": []})"}) {
        TestDevice bare(describe("US", "com.mastercard.tizen", tables));
        EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(), "<not valid>") << tables;
        EXPECT_EQ(recognitionMode(), "<null>") << tables;
    }
}

TEST(CommerceRecoState, KoreanShoppingAppsGiveTheThreeControlsInOrder)
{
    for (const char* app : {"qLH6zwTE25.Emart", "org.tizen.WeblinkApps-LotteMart", "org.tizen.WeblinkApps-HomePlus",
                            "org.tizen.WeblinkApps-thehyundai", "org.tizen.WeblinkApps-NaverFoodWindow"}) {
        TestDevice bare(describe("KR", app, R"({"Commerce": []})"));
        EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(), kKoreanShoppingState) << app;
    }
}

TEST(CommerceRecoState, KoreaDoesNotReadTheCommerceTable)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "KR"},
                        "apps": {"installed": [], "foreground": "org.tizen.WeblinkApps-HomePlus"},
                        "datastore": {"Commerce": [{"currentViewType": "0"}]},
                        "errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    EXPECT_EQ(parse(recognitionMode()), parse(kKoreanShoppingState));
}

TEST(CommerceRecoState, AShoppingAppOfAnotherRegionDoesNotApply)
{
    TestDevice bare(describe("US", "org.tizen.WeblinkApps-HomePlus", R"({"Commerce": [{"currentViewType": "2"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(), "<not valid>");
    bare.apply(describe("KR", "com.mastercard.tizen", R"({"Commerce": [{"currentViewType": "2"}]})"));
    EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(), "<not valid>");
}

TEST(CommerceRecoState, RegionsWithoutAListNeverApply)
{
    for (const char* region : {"GB", "EU", "AU", "us"}) {
        TestDevice bare(describe(region, "com.mastercard.tizen", R"({"Commerce": [{"currentViewType": "2"}]})"));
        EXPECT_EQ(stateOf<DARecognitionModeGenCommerce>(), "<not valid>") << region;
    }
}

TEST(CommerceRecoState, AShoppingAppRunningBehindDoesNotApply)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "US"},
                        "apps": {"installed": [], "running": ["com.mastercard.tizen"], "foreground": "a.other"},
                        "datastore": {"Commerce": [{"currentViewType": "2"}]}})");
    EXPECT_EQ(recognitionMode(), "<null>");
}

TEST(CommerceRecoState, AFailingAppManagerMeansNothingIsInFront)
{
    TestDevice bare(R"({"vconf": {"db/setting/region_code": "US"},
                        "apps": {"installed": [], "foreground": "com.mastercard.tizen"},
                        "datastore": {"Commerce": [{"currentViewType": "2"}],
                                      "Recipe": [{"appName": "com.mastercard.tizen"}]},
                        "errors": {"app_manager_get_app_context": "APP_MANAGER_ERROR_IO_ERROR"}})");
    EXPECT_EQ(recognitionMode(), "<null>");
}
