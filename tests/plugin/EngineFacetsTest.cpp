// The engine data facade as a whole, its static tables and its facets that
// answer with constants or the clock.
#include "PluginFixture.h"

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImpl.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>
#include <vector>

using marltest::EngineTest;

namespace {

typedef std::map<std::string, std::string> Table;

const std::vector<std::string> kFacetNames = {
    "Alarm", "Clock", "Config", "Contacts", "Custom", "Location", "Memo", "MorningBrief", "Music",
    "Navigation", "News", "ServerTts", "Settings", "ShoppingList", "SoftWare", "Static", "System", "Timer"};

// Position of `text` in the platform log, npos when absent.
size_t logPosition(const std::string& text)
{
    return marltest::platformLog().find(text);
}

// Sets TZ for one scope and puts the old value back.
class TimeZone {
public:
    explicit TimeZone(const char* zone)
    {
        const char* old = std::getenv("TZ");
        mHadOld = old != nullptr;
        if (old)
            mOld = old;
        ::setenv("TZ", zone, 1);
        ::tzset();
    }
    ~TimeZone()
    {
        if (mHadOld)
            ::setenv("TZ", mOld.c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }

private:
    bool mHadOld = false;
    std::string mOld;
};

// Shows the members that a static facet fills only when asked.
class ExposedStatic : public RetrieveDeviceDataEngineImplStatic {
public:
    const Table& memoMember() const { return mMemoStaticData; }
    const Table& systemMember() const { return mSystemStaticData; }
};

}  // namespace

// The root

TEST(EngineFacadeInterface, ABareRootHasNoFacets)
{
    IEngineRetrieveDeviceData root;
    EXPECT_EQ(root.getDeviceAlarmData(), nullptr);
    EXPECT_EQ(root.getDeviceClockData(), nullptr);
    EXPECT_EQ(root.getDeviceConfigData(), nullptr);
    EXPECT_EQ(root.getDeviceContactsData(), nullptr);
    EXPECT_EQ(root.getDeviceDependentStaticData(), nullptr);
    EXPECT_EQ(root.getDeviceLocationData(), nullptr);
    EXPECT_EQ(root.getDeviceMemoData(), nullptr);
    EXPECT_EQ(root.getDeviceMorningBriefData(), nullptr);
    EXPECT_EQ(root.getDeviceMusicData(), nullptr);
    EXPECT_EQ(root.getDeviceNavigationData(), nullptr);
    EXPECT_EQ(root.getDeviceNewsData(), nullptr);
    EXPECT_EQ(root.getDeviceServerTtsData(), nullptr);
    EXPECT_EQ(root.getDeviceSettingsData(), nullptr);
    EXPECT_EQ(root.getDeviceShoppingListData(), nullptr);
    EXPECT_EQ(root.getDeviceSoftwareData(), nullptr);
    EXPECT_EQ(root.getDeviceSystemData(), nullptr);
    EXPECT_EQ(root.getDeviceTimerData(), nullptr);
    EXPECT_EQ(root.getDeviceCustomData(), nullptr);
}

class EngineFacade : public EngineTest {
protected:
    IEngineRetrieveDeviceData* root() { return wrapper()->getEngineDeviceDataRetriever(); }
};

TEST_F(EngineFacade, TheWrapperHandsOutItsOwnFacadeMember)
{
    EXPECT_EQ(root(), static_cast<IEngineRetrieveDeviceData*>(&wrapper()->retrieveDeviceDataEngineImpl));
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImpl*>(root()), nullptr);
}

TEST_F(EngineFacade, EveryRootGetterAnswersItsImplementationFacet)
{
    IEngineRetrieveDeviceData* r = root();
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplAlarm*>(r->getDeviceAlarmData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplClock*>(r->getDeviceClockData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplConfig*>(r->getDeviceConfigData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplContacts*>(r->getDeviceContactsData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplStatic*>(r->getDeviceDependentStaticData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplLocation*>(r->getDeviceLocationData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplMemo*>(r->getDeviceMemoData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplMorningBrief*>(r->getDeviceMorningBriefData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplMusic*>(r->getDeviceMusicData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplNavigation*>(r->getDeviceNavigationData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplNews*>(r->getDeviceNewsData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplServerTts*>(r->getDeviceServerTtsData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplSettings*>(r->getDeviceSettingsData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplShoppingList*>(r->getDeviceShoppingListData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplSoftWare*>(r->getDeviceSoftwareData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplSystem*>(r->getDeviceSystemData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplTimer*>(r->getDeviceTimerData()), nullptr);
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataEngineImplCustom*>(r->getDeviceCustomData()), nullptr);
}

TEST_F(EngineFacade, TheFacetsLieInsideTheFacadeInAlphabeticalOrder)
{
    IEngineRetrieveDeviceData* r = root();
    const std::vector<const void*> inOrder = {
        dynamic_cast<const void*>(r->getDeviceAlarmData()),
        dynamic_cast<const void*>(r->getDeviceClockData()),
        dynamic_cast<const void*>(r->getDeviceConfigData()),
        dynamic_cast<const void*>(r->getDeviceContactsData()),
        dynamic_cast<const void*>(r->getDeviceCustomData()),
        dynamic_cast<const void*>(r->getDeviceLocationData()),
        dynamic_cast<const void*>(r->getDeviceMemoData()),
        dynamic_cast<const void*>(r->getDeviceMorningBriefData()),
        dynamic_cast<const void*>(r->getDeviceMusicData()),
        dynamic_cast<const void*>(r->getDeviceNavigationData()),
        dynamic_cast<const void*>(r->getDeviceNewsData()),
        dynamic_cast<const void*>(r->getDeviceServerTtsData()),
        dynamic_cast<const void*>(r->getDeviceSettingsData()),
        dynamic_cast<const void*>(r->getDeviceShoppingListData()),
        dynamic_cast<const void*>(r->getDeviceSoftwareData()),
        dynamic_cast<const void*>(r->getDeviceDependentStaticData()),
        dynamic_cast<const void*>(r->getDeviceSystemData()),
        dynamic_cast<const void*>(r->getDeviceTimerData()),
    };
    const auto begin = reinterpret_cast<std::uintptr_t>(&wrapper()->retrieveDeviceDataEngineImpl);
    const auto end = begin + sizeof(RetrieveDeviceDataEngineImpl);
    std::uintptr_t previous = begin;
    for (size_t i = 0; i < inOrder.size(); ++i) {
        const auto at = reinterpret_cast<std::uintptr_t>(inOrder[i]);
        EXPECT_GT(at, previous) << kFacetNames[i];
        EXPECT_LT(at, end) << kFacetNames[i];
        previous = at;
    }
}

TEST_F(EngineFacade, TwoCallsGiveTheSameFacetHeldInsideTheWrapper)
{
    IEngineRetrieveDeviceMusicData* first = root()->getDeviceMusicData();
    IEngineRetrieveDeviceMusicData* second = root()->getDeviceMusicData();
    EXPECT_EQ(first, second);
    const auto begin = reinterpret_cast<std::uintptr_t>(wrapper());
    const auto at = reinterpret_cast<std::uintptr_t>(dynamic_cast<void*>(first));
    EXPECT_GE(at, begin);
    EXPECT_LT(at, begin + sizeof(MarlEngineWrapper));
    EXPECT_EQ(first->getMusicPlayStatus(), "False");
}

TEST_F(EngineFacade, TheConfigFacetIsHandedOutAsItsInterfacePart)
{
    IEngineRetrieveDeviceConfigData* facet = root()->getDeviceConfigData();
    auto* config = dynamic_cast<RetrieveDeviceDataEngineImplConfig*>(facet);
    ASSERT_NE(config, nullptr);
    // The interface is the first base: its part starts the object.
    EXPECT_EQ(static_cast<const void*>(facet), static_cast<const void*>(config));
    EXPECT_EQ(dynamic_cast<void*>(facet), static_cast<void*>(facet));
    OrvaneMaster* master = config;
    EXPECT_NE(static_cast<const void*>(master), static_cast<const void*>(facet));
}

TEST_F(EngineFacade, TheRetrieverBackedFacetsHaveTheMasterAsSecondBase)
{
    IEngineRetrieveDeviceData* r = root();
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceConfigData()), nullptr);
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceCustomData()), nullptr);
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceMorningBriefData()), nullptr);
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceMusicData()), nullptr);
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceServerTtsData()), nullptr);
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceShoppingListData()), nullptr);
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceSystemData()), nullptr);
    EXPECT_NE(dynamic_cast<OrvaneMaster*>(r->getDeviceTimerData()), nullptr);

    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceAlarmData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceClockData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceContactsData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceDependentStaticData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceLocationData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceMemoData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceNavigationData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceNewsData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceSettingsData()), nullptr);
    EXPECT_EQ(dynamic_cast<OrvaneMaster*>(r->getDeviceSoftwareData()), nullptr);
}

TEST(EngineFacadeLifecycle, FacetsAreBuiltInMemberOrderAndDestroyedInReverse)
{
    marltest::TestDevice device;
    { RetrieveDeviceDataEngineImpl facade; }
    const std::string log = marltest::platformLog();
    size_t previous = 0;
    for (const auto& name : kFacetNames) {
        const std::string cls = "RetrieveDeviceDataEngineImpl" + name;
        const size_t at = log.find(cls + ".cpp: " + cls + "(");
        ASSERT_NE(at, std::string::npos) << name;
        EXPECT_GT(at, previous) << name;
        previous = at;
    }
    const size_t rootBuilt = log.find("RetrieveDeviceDataEngineImpl.cpp: RetrieveDeviceDataEngineImpl(");
    ASSERT_NE(rootBuilt, std::string::npos);
    EXPECT_GT(rootBuilt, previous);

    const size_t rootGone = log.find("RetrieveDeviceDataEngineImpl.cpp: ~RetrieveDeviceDataEngineImpl(");
    ASSERT_NE(rootGone, std::string::npos);
    previous = rootGone;
    for (auto name = kFacetNames.rbegin(); name != kFacetNames.rend(); ++name) {
        const std::string cls = "RetrieveDeviceDataEngineImpl" + *name;
        const size_t at = log.find(cls + ".cpp: ~" + cls + "(");
        ASSERT_NE(at, std::string::npos) << *name;
        EXPECT_GT(at, previous) << *name;
        previous = at;
    }
}

// The static tables

class StaticFacet : public EngineTest {
protected:
    IEngineRetrieveDeviceDependentStaticData* facet()
    {
        return wrapper()->getEngineDeviceDataRetriever()->getDeviceDependentStaticData();
    }
};

TEST_F(StaticFacet, TheMemoKeyKeepsItsTrailingBlank)
{
    const Table* memo = facet()->getMemoStaticDeviceData();
    ASSERT_EQ(memo->count("memoSearchTitleContentDisabled "), 1u);
    EXPECT_EQ(memo->at("memoSearchTitleContentDisabled "), "True");
    EXPECT_EQ(memo->count("memoSearchTitleContentDisabled"), 0u);
}

TEST_F(StaticFacet, OddValueStylesAreNotNormalised)
{
    const Table* system = facet()->getSystemStaticDeviceData();
    EXPECT_EQ(system->at("isOneShotMode"), "FALSE");
    EXPECT_EQ(system->at("hideOffensiveWords"), "true");
}

TEST_F(StaticFacet, PageSizesDifferBetweenSystemAndTheLists)
{
    EXPECT_EQ(facet()->getSystemStaticDeviceData()->at("pageSize"), "6");
    EXPECT_EQ(facet()->getHfdStaticDeviceData()->at("pageSize"), "5");
    EXPECT_EQ(facet()->getContactsStaticDeviceData()->at("pageSize"), "5");
}

TEST_F(StaticFacet, TableSizesAreFixed)
{
    EXPECT_EQ(facet()->getSettingsStaticDeviceData()->size(), 26u);
    EXPECT_EQ(facet()->getMusicStaticDeviceData()->size(), 9u);
    EXPECT_EQ(facet()->getCalendarStaticDeviceData()->size(), 10u);
}

TEST_F(StaticFacet, ASecondCallGivesTheSameAddressAndUndoesChanges)
{
    Table* memo = facet()->getMemoStaticDeviceData();
    (*memo)["memoDeleteTextEnabled"] = "True";
    (*memo)["added"] = "x";
    memo->erase("memoSearchTypeEnabled");
    Table* again = facet()->getMemoStaticDeviceData();
    EXPECT_EQ(again, memo);
    EXPECT_EQ(again->at("memoDeleteTextEnabled"), "False");
    EXPECT_EQ(again->count("added"), 0u);
    EXPECT_EQ(again->at("memoSearchTypeEnabled"), "False");
    EXPECT_EQ(again->size(), 4u);
}

TEST(StaticFacetAlone, TablesAreEmptyUntilTheirOperationRuns)
{
    marltest::TestDevice device;
    ExposedStatic facet;
    EXPECT_TRUE(facet.memoMember().empty());
    EXPECT_TRUE(facet.systemMember().empty());
    EXPECT_EQ(facet.getMemoStaticDeviceData(), &facet.memoMember());
    EXPECT_EQ(facet.memoMember().size(), 4u);
    EXPECT_TRUE(facet.systemMember().empty());
}

TEST_F(StaticFacet, EveryTableHoldsItsRows)
{
    IEngineRetrieveDeviceDependentStaticData* s = facet();
    EXPECT_EQ(*s->getMusicStaticDeviceData(),
              (Table{{"addSongToPlaylistSupported", "False"}, {"musicEditPlaylistEnabled", "False"},
                     {"musicInOrderPlayEnabled", "False"}, {"musicMarkAsFavoritesEnabled", "False"},
                     {"musicMoodPlayEnabled", "False"}, {"musicMSPlayEnabled", "False"},
                     {"musicPlayAllEnabled", "False"}, {"musicSimilarPlayEnabled", "False"},
                     {"playAllMatchedEnable", "False"}}));
    EXPECT_EQ(*s->getTimerStaticDeviceData(), (Table{{"timerConfirmationEnabled", "False"}}));
    EXPECT_EQ(*s->getNavigationStaticDeviceData(),
              (Table{{"navigationCancelRouteEnabled", "False"},
                     {"navigationDestinationDistanceEnabled", "False"},
                     {"navigationDestinationETAEnabled", "False"},
                     {"REVERSERouteEnabled", "False"},
                     {"navigationDirectionsBetweenLocationsEnabled", "False"},
                     {"navigationPersonalDestinationEnabled", "False"}}));
    EXPECT_EQ(*s->getAlarmStaticDeviceData(), (Table{{"alarmSearchByNameEnabled", "False"}}));
    EXPECT_EQ(*s->getMemoStaticDeviceData(),
              (Table{{"memoDeleteTextEnabled", "False"}, {"memoSearchTypeEnabled", "False"},
                     {"memoSearchTextEnabled", "False"}, {"memoSearchTitleContentDisabled ", "True"}}));
    EXPECT_EQ(*s->getSystemStaticDeviceData(),
              (Table{{"isOneShotMode", "FALSE"}, {"usePLM", "False"}, {"maxGroupSMSSize", "25"},
                     {"hideOffensiveWords", "true"}, {"ampmRight", "True"}, {"pageSize", "6"},
                     {"userDeviceCategory", "Sorrel"}, {"enableServerTTS", "False"}, {"clientVersion", "2"}}));
    Table settings;
    for (const char* key :
         {"accessibilitySettings", "aboutDeviceSettings", "accountsSettings", "applicationsSettings",
          "backupResetSettings", "batterySettings", "datetimeSettings", "displaySettings", "easyModeSettings",
          "edgeScreenSettings", "globalRoamingSettings", "helpSettings", "languageInputSettings",
          "lockScreenSettings", "mobileNetworksSettings", "moreSettings", "motionsGesturesSettings",
          "nfcAndPaymentSettings", "privacyAndSafetySettings", "soundAndNotificationsSettings",
          "storageSettings", "mobileHotSpotSettings", "themeSettings", "userSettings", "wallPaperSettings"})
        settings[key] = "On";
    settings["wifiDisplayOnOff"] = "Off";
    EXPECT_EQ(*s->getSettingsStaticDeviceData(), settings);
    EXPECT_EQ(*s->getHfdStaticDeviceData(),
              (Table{{"RecentCallsEnabled", "False"}, {"enableConfirmCallNickname", "False"},
                     {"enableAutoDisambiguation", "False"}, {"enableCallConfirmation", "True"},
                     {"pageSize", "5"}, {"MissedCallsEnabled", "False"}, {"SMSForwardEnabled", "False"}}));
    EXPECT_EQ(*s->getNewsStaticDeviceData(),
              (Table{{"newsEnabled", "True"}, {"localNewsProvider", "NONE"}, {"keywordNewsProvider", "YHOO"},
                     {"categoryNewsProvider", "CNNMobile"}, {"clientNewsProvider", "False"},
                     {"useWebNews", "False"}}));
    EXPECT_EQ(*s->getContactsStaticDeviceData(),
              (Table{{"pageSize", "5"}, {"contactsContactAddressEnabled", "False"},
                     {"contactsContactDirectionsEnabled", "False"}, {"contactsContactEmailDataEnabled", "False"},
                     {"contactsContactEventDataEnabled", "False"}, {"contactsGroupsEnabled", "False"}}));
    EXPECT_EQ(*s->getCalendarStaticDeviceData(),
              (Table{{"calendarCreateEventEnabled", "False"}, {"calendarEditEventEnabled", "False"},
                     {"calendarDeleteEventEnabled", "False"}, {"calendarSearchEventEnabled", "True"},
                     {"calendarSearchRecurrentEventEnabled", "False"}, {"calendarCreateTaskEnabled", "False"},
                     {"calendarEditTaskEnabled", "False"}, {"calendarDeleteTaskEnabled", "False"},
                     {"calendarSearchTaskEnabled", "False"}, {"calendarSearchItemEnabled", "True"}}));
    EXPECT_EQ(*s->getOpenAppStaticDeviceData(),
              (Table{{"launchAppsEnabled", "True"}, {"launchAppsInstalledEnabled", "False"}}));
    EXPECT_EQ(*s->getWeatherStaticDeviceData(), (Table{{"webSearchEnabled", "True"}}));
    EXPECT_EQ(*s->getPoiStaticDeviceData(), (Table{{"poiEnabled", "True"}}));
    EXPECT_EQ(*s->getExcerciseStaticDeviceData(), (Table{{"currentExerciseName", "latest"}}));
    EXPECT_EQ(*s->getHearthlinkStaticDeviceData(),
              (Table{{"onDeviceHumidityTTS", "50 Percent"}, {"12HourTime", "10 AM"}, {"iAmBackRoutine", "True"},
                     {"goodByeRoutine", "True"}, {"goodNightRoutine", "True"}, {"overrideMode", "False"},
                     {"goodMorningRoutine", "True"}}));
    EXPECT_EQ(*s->getClientStaticDeviceData(), (Table{{"id", "VBTServerAPTest"}}));
}

// Facets of constants

TEST(ConstantFacets, AlarmNamesItsAlarmAndPageSizeWithoutLogging)
{
    marltest::TestDevice device;
    RetrieveDeviceDataEngineImplAlarm alarm;
    EXPECT_EQ(alarm.getDefaultAlarmName(), "Alarm");
    EXPECT_EQ(alarm.getAlarmPageSize(), "5");
    EXPECT_EQ(logPosition("getDefaultAlarmName("), std::string::npos);
    EXPECT_EQ(logPosition("getAlarmPageSize("), std::string::npos);
}

TEST(ConstantFacets, ContactsMemoAndNewsAnswerTrueWhereTheInterfaceSaysFalse)
{
    marltest::TestDevice device;
    RetrieveDeviceDataEngineImplContacts contacts;
    RetrieveDeviceDataEngineImplMemo memo;
    RetrieveDeviceDataEngineImplNews news;
    EXPECT_EQ(contacts.isContactsSupported(), "True");
    EXPECT_EQ(memo.isVoiceMemoSupported(), "True");
    EXPECT_EQ(memo.isMemoStorageAvailable(), "True");
    EXPECT_EQ(memo.isMemoInstalled(), "True");
    EXPECT_EQ(news.isFlipboardInstalled(), "True");
    EXPECT_NE(logPosition("isContactsSupported("), std::string::npos);
    EXPECT_NE(logPosition("isMemoInstalled("), std::string::npos);
    EXPECT_NE(logPosition("isFlipboardInstalled("), std::string::npos);

    IEngineRetrieveDeviceContactsData bareContacts;
    IEngineRetrieveDeviceMemoData bareMemo;
    IEngineRetrieveDeviceNewsData bareNews;
    EXPECT_EQ(bareContacts.isContactsSupported(), "False");
    EXPECT_EQ(bareMemo.isVoiceMemoSupported(), "False");
    EXPECT_EQ(bareNews.isFlipboardInstalled(), "False");
}

class ConstantFacetsInFacade : public EngineTest {};

TEST_F(ConstantFacetsInFacade, NavigationIsUnsupportedWhileTheStaticMapHasItsKeys)
{
    IEngineRetrieveDeviceData* root = wrapper()->getEngineDeviceDataRetriever();
    EXPECT_EQ(root->getDeviceNavigationData()->isNavigationSupported(), "False");
    EXPECT_EQ(root->getDeviceNavigationData()->isNavigationInstalled(), "False");
    const Table* navigation = root->getDeviceDependentStaticData()->getNavigationStaticDeviceData();
    EXPECT_EQ(navigation->size(), 6u);
    EXPECT_EQ(navigation->count("navigationCancelRouteEnabled"), 1u);
}

// The clock

TEST(ClockFacet, ADeviceInUtcAnswersPlusZero)
{
    marltest::TestDevice device;
    TimeZone zone("UTC0");
    RetrieveDeviceDataEngineImplClock clock;
    EXPECT_EQ(clock.getTimezone(), "+0000");
    EXPECT_TRUE(marltest::logged("Timezone(+0000)"));
}

TEST(ClockFacet, TheOffsetFollowsTheLocalZone)
{
    marltest::TestDevice device;
    RetrieveDeviceDataEngineImplClock clock;
    {
        TimeZone zone("KST-9");
        EXPECT_EQ(clock.getTimezone(), "+0900");
    }
    {
        TimeZone zone("EST5");
        EXPECT_EQ(clock.getTimezone(), "-0500");
    }
    IEngineRetrieveDeviceClockData bare;
    EXPECT_EQ(bare.getTimezone(), "-0800");
}
