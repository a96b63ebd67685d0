// The profile facet. Its lookups remember, for the life of the process, the
// last profile each of them found; the tests that need a fresh memory come
// first, so that they also hold when the whole program runs in one process.
#include "PluginFixture.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplConfig.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceStatusDataRetrieve.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <string>

namespace {

size_t countLogged(const std::string& text)
{
    const std::string log = marltest::platformLog();
    size_t count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1))
        ++count;
    return count;
}

int gStatusFetches = 0;

class CountedStatusSet : public IDeviceDataRetrieve {
public:
    IDeviceStatusDataRetrieve* getDeviceStatusDataRetriever() override
    {
        ++gStatusFetches;
        return &mStatus;
    }

private:
    IDeviceStatusDataRetrieve mStatus;
};

}  // namespace

class ConfigFacet : public marltest::EngineTest {
protected:
    IEngineRetrieveDeviceConfigData* facet()
    {
        return wrapper()->getEngineDeviceDataRetriever()->getDeviceConfigData();
    }
    void setProfile(const char* profile) { ASSERT_EQ(MarlEngine_set_domain(profile), 0); }
};

TEST_F(ConfigFacet, AnEmptyOrUnknownProfileAsTheFirstLookupGivesMarlGlobal)
{
    setProfile("");
    EXPECT_EQ(facet()->getRecoStateName(), "Marl Global");
    EXPECT_EQ(facet()->getAsrRampCode(), "Marl Global");
    EXPECT_EQ(facet()->getNluRampCode(), "Marl Global");
    EXPECT_EQ(countLogged("[] is not defined"), 3u);
    EXPECT_EQ(countLogged("profile Not found"), 3u);
    EXPECT_FALSE(marltest::logged("Reco State["));

    setProfile("Halden Toaster");
    EXPECT_EQ(facet()->getRecoStateName(), "Marl Global");
    EXPECT_EQ(facet()->getAsrRampCode(), "Marl Global");
    EXPECT_EQ(facet()->getNluRampCode(), "Marl Global");
    EXPECT_EQ(countLogged("[Halden Toaster] is not defined"), 3u);
    EXPECT_EQ(countLogged("profile Not found"), 6u);
}

TEST_F(ConfigFacet, EachLookupRemembersOnlyWhatItFoundItself)
{
    setProfile(DeviceProfileNames::REFRIGERATOR);
    EXPECT_EQ(facet()->getRecoStateName(), "DA Global");

    setProfile("Halden Toaster");
    EXPECT_EQ(facet()->getRecoStateName(), "DA Global");
    EXPECT_EQ(countLogged("[Halden Toaster] is not defined"), 1u);
    EXPECT_TRUE(marltest::logged("Reco State[DA Global]"));
    EXPECT_EQ(facet()->getAsrRampCode(), "Marl Global");
    EXPECT_EQ(facet()->getNluRampCode(), "Marl Global");
    EXPECT_EQ(countLogged("profile Not found"), 2u);
}

TEST_F(ConfigFacet, TheCommonProfileGivesMarlGlobalAndDash)
{
    EXPECT_EQ(facet()->getDeviceProfileName(), "Common");
    EXPECT_EQ(facet()->getRecoStateName(), "Marl Global");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash");
    EXPECT_EQ(facet()->getNluRampCode(), "dash");
    EXPECT_TRUE(marltest::logged("asr rampcode[dash]"));
    EXPECT_TRUE(marltest::logged("nlu rampcode[dash]"));
}

TEST_F(ConfigFacet, TheRefrigeratorProfileGivesDaGlobalAndItsOwnRampCodes)
{
    setProfile(DeviceProfileNames::REFRIGERATOR);
    EXPECT_EQ(facet()->getDeviceProfileName(), DeviceProfileNames::REFRIGERATOR);
    EXPECT_EQ(facet()->getRecoStateName(), "DA Global");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash_da");
    EXPECT_EQ(facet()->getNluRampCode(), "vbt_da");
}

TEST_F(ConfigFacet, AFoundProfileStaysAfterTheDomainTurnsUnknown)
{
    setProfile(DeviceProfileNames::REFRIGERATOR);
    EXPECT_EQ(facet()->getRecoStateName(), "DA Global");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash_da");
    EXPECT_EQ(facet()->getNluRampCode(), "vbt_da");

    setProfile("Halden Toaster");
    EXPECT_EQ(facet()->getDeviceProfileName(), "Halden Toaster");
    EXPECT_EQ(facet()->getRecoStateName(), "DA Global");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash_da");
    EXPECT_EQ(facet()->getNluRampCode(), "vbt_da");
    EXPECT_EQ(countLogged("[Halden Toaster] is not defined"), 3u);

    setProfile("");
    EXPECT_EQ(facet()->getRecoStateName(), "DA Global");
}

TEST_F(ConfigFacet, EveryProfileOfTheTableGivesItsDefines)
{
    setProfile(DeviceProfileNames::HUB_HEARTHLINK);
    EXPECT_EQ(facet()->getRecoStateName(), "Sorrel RecoState");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash");
    EXPECT_EQ(facet()->getNluRampCode(), "dash");

    setProfile(DeviceProfileNames::WEARABLE_1_0);
    EXPECT_EQ(facet()->getRecoStateName(), "Quoin Mode");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash");
    EXPECT_EQ(facet()->getNluRampCode(), "dash");

    setProfile(DeviceProfileNames::WEARABLE_1_1);
    EXPECT_EQ(facet()->getRecoStateName(), "Quoin Mode");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash");
    EXPECT_EQ(facet()->getNluRampCode(), "dash");

    setProfile("Common");
    EXPECT_EQ(facet()->getRecoStateName(), "Marl Global");
    EXPECT_EQ(facet()->getAsrRampCode(), "dash");
    EXPECT_EQ(facet()->getNluRampCode(), "dash");
}

TEST_F(ConfigFacet, TheProfileNameIsTheDomainAsTheDaemonSetIt)
{
    EXPECT_EQ(facet()->getDeviceProfileName(), "Common");
    setProfile("anything at all");
    EXPECT_EQ(facet()->getDeviceProfileName(), "anything at all");
    EXPECT_TRUE(marltest::logged("Profile Name[anything at all]"));
}

TEST_F(ConfigFacet, VerbosityIsZeroAndTheLanguagePackPathIsTheInterfaces)
{
    EXPECT_EQ(facet()->getCurrentVerbosity(), "0");
    EXPECT_EQ(facet()->getLanguagePackPath(), "/home/owner/share/.voice/vc/engine/shared/data/");
}

TEST_F(ConfigFacet, ClientDialogueProcessingIsOffWhateverTheRetrieversSay)
{
    wrapper()->getDeviceDataRetrieveManager()->setUserDeviceDataRetriever(new CountedStatusSet);
    gStatusFetches = 0;
    EXPECT_FALSE(facet()->useClientDP());
    EXPECT_EQ(gStatusFetches, 1);
    EXPECT_TRUE(marltest::logged("useClientDP[0]"));
}
