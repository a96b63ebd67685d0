// The facets that translate the retrievers' answers: music, timer, morning
// brief, shopping list, server speech and the product's custom data. Each
// test installs retrievers of its own in the engine's managers.
#include "PluginFixture.h"

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImpl.h"
#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedNluParams.h"
#include "RetrieveManager/ICustomizedRecognitionMode.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "RetrieveManager/IDeviceMorningBriefDataRetrieve.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "RetrieveManager/IDeviceShoppingListDataRetrieve.h"
#include "RetrieveManager/IDeviceTimerDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <json-glib/json-glib.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <map>
#include <new>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// The global allocation functions of this program, replaced so that a test can
// tell whether one particular block is ever released.
namespace {
std::atomic<const void*> gWatchedBlock{nullptr};
std::atomic<bool> gWatchedBlockReleased{false};
}  // namespace

void* operator new(std::size_t size)
{
    void* block = std::malloc(size ? size : 1);
    if (!block)
        throw std::bad_alloc();
    return block;
}

// The non-throwing form too (the data-store stand-in allocates with it), so
// that every block of the program comes from the same allocator as the
// operator delete below releases it to.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return std::malloc(size ? size : 1);
}

namespace {
void release(void* block) noexcept
{
    if (block && block == gWatchedBlock.load())
        gWatchedBlockReleased = true;
    std::free(block);
}
}  // namespace

void operator delete(void* block) noexcept
{
    release(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
    release(block);
}

using marltest::EngineTest;

namespace {

// The private fallback slot of a manager, reached through an explicit
// instantiation (where access is not checked), so that a test can leave a
// manager with no retriever at all.
template <typename Slot, typename Slot::Member member>
struct SlotOpener {
    friend typename Slot::Member slotOf(Slot) { return member; }
};

struct DeviceFallbackSlot {
    typedef IDeviceDataRetrieve* DeviceDataRetrieveManager::*Member;
    friend Member slotOf(DeviceFallbackSlot);
};

struct CustomizedFallbackSlot {
    typedef ICustomizedDataRetrieve* CustomizedDataRetrieveManager::*Member;
    friend Member slotOf(CustomizedFallbackSlot);
};

template struct SlotOpener<DeviceFallbackSlot, &DeviceDataRetrieveManager::mInternalRetriever>;
template struct SlotOpener<CustomizedFallbackSlot, &CustomizedDataRetrieveManager::mInternalRetriever>;

// The messages that `function` of `file` logged, in order, without the prefix.
std::vector<std::string> messagesOf(const std::string& file, const std::string& function)
{
    std::istringstream log(marltest::platformLog());
    const std::string key = file + ": " + function + "(";
    std::vector<std::string> messages;
    std::string line;
    while (std::getline(log, line)) {
        const size_t at = line.find(key);
        if (at == std::string::npos)
            continue;
        const size_t text = line.find(") > ", at);
        if (text != std::string::npos)
            messages.push_back(line.substr(text + 4));
    }
    return messages;
}

typedef std::vector<std::string> Messages;

class TestMusic : public IDeviceMusicDataRetrieve {
public:
    std::set<std::string> on;  // the operations that answer true
    int status = 0;
    int volume = 0;
    int maxVolume = 0;
    std::string player, song, genre, album, artist;

    bool support() override { return on.count("support"); }
    bool supportGenre() override { return on.count("supportGenre"); }
    bool supportTuneCove() override { return on.count("supportTuneCove"); }
    bool supportRepeat() override { return on.count("supportRepeat"); }
    bool getMoodGridCataloged() override { return on.count("getMoodGridCataloged"); }
    bool currentMusicAppLoggedIn() override { return on.count("currentMusicAppLoggedIn"); }
    bool getCurrentSongFavoriteMark() override { return on.count("getCurrentSongFavoriteMark"); }
    bool getCurrentRadioFavoriteMark() override { return on.count("getCurrentRadioFavoriteMark"); }
    bool getCurrentMusicAppSlept() override { return on.count("getCurrentMusicAppSlept"); }
    bool getCurrentMusicAppMute() override { return on.count("getCurrentMusicAppMute"); }
    int getCurrentMusicPlayerVolumeMaxLevel() override { return maxVolume; }
    int getCurrentMusicPlayerVolumeLevel() override { return volume; }
    std::string getCurrentMusicPlayerName() override { return player; }
    std::string getCurrentSongAlbumName() override { return album; }
    std::string getCurrentSongArtistName() override { return artist; }
    std::string getCurrentSongGenreName() override { return genre; }
    std::string getCurrentSongName() override { return song; }
    int getCurrentMusicPlayerStatus() override { return status; }
};

class TestTimer : public IDeviceTimerDataRetrieve {
public:
    std::set<std::string> on;  // the operations that answer true
    int current = 0;
    int max = 0;
    int running = 0;
    std::string creatableId, currentId, time;

    bool appInstalled() override { return on.count("appInstalled"); }
    bool support() override { return on.count("support"); }
    bool supportByAppControl() override { return on.count("supportByAppControl"); }
    bool supportCancel() override { return on.count("supportCancel"); }
    bool supportConfirm() override { return on.count("supportConfirm"); }
    bool supportCreate() override { return on.count("supportCreate"); }
    bool supportOwnWidgetControl() override { return on.count("supportOwnWidgetControl"); }
    bool supportReset() override { return on.count("supportReset"); }
    bool supportShow() override { return on.count("supportShow"); }
    bool supportStart() override { return on.count("supportStart"); }
    bool supportStop() override { return on.count("supportStop"); }
    bool supportTask() override { return on.count("supportTask"); }
    bool supportMultipleControl() override { return on.count("supportMultipleControl"); }
    std::string getTimerTime() override { return time; }
    int getCurrentTimerCount() override { return current; }
    int getMaxTimerCount() override { return max; }
    int getRunningTimerCount() override { return running; }
    std::string getCreatableTimerId() override { return creatableId; }
    std::string getCurrentTimerId() override { return currentId; }
};

class TestMorningBrief : public IDeviceMorningBriefDataRetrieve {
public:
    bool installed = false;
    bool running = false;
    bool appInstalled() override { return installed; }
    bool appRunning() override { return running; }
};

class TestShoppingList : public IDeviceShoppingListDataRetrieve {
public:
    int size = 0;
    int currentShoppingListSize() override { return size; }
};

class TestDeviceSet : public IDeviceDataRetrieve {
public:
    TestMusic music;
    TestTimer timer;
    TestMorningBrief morningBrief;
    TestShoppingList shoppingList;

    IDeviceMorningBriefDataRetrieve* getDeviceMorningBriefDataRetriever() override { return &morningBrief; }
    IDeviceMusicDataRetrieve* getDeviceMusicDataRetriever() override { return &music; }
    IDeviceShoppingListDataRetrieve* getDeviceShoppingListDataRetriever() override { return &shoppingList; }
    IDeviceTimerDataRetrieve* getDeviceTimerDataRetriever() override { return &timer; }
};

class TestNluParams : public ICustomizedNluParams {
public:
    bool answer = true;
    std::map<std::string, _JsonObject*>* given = nullptr;
    bool givenEmpty = false;

    // Records the map it is given and has the allocator watch it.
    bool getNluParams(std::map<std::string, _JsonObject*>* list) override
    {
        given = list;
        gWatchedBlock = list;
        gWatchedBlockReleased = false;
        givenEmpty = list->empty();
        (*list)["System"] = json_object_new();
        return answer;
    }
};

class TestRecognitionMode : public ICustomizedRecognitionMode {
public:
    _JsonObject* state = nullptr;
    _JsonObject* getRecognitionMode() override { return state; }
};

class TestServerDefines : public ICustomizedServerDefines {
public:
    bool serverTts = false;
    int teller = 0;
    bool useServerTts() override { return serverTts; }
    int getServerTtsTeller() override { return teller; }
};

class TestCustomizedSet : public ICustomizedDataRetrieve {
public:
    TestNluParams nluParams;
    TestRecognitionMode recognitionMode;
    TestServerDefines serverDefines;

    ICustomizedNluParams* getNluParamsRetriever() override { return &nluParams; }
    ICustomizedRecognitionMode* getRecognitionModeRetriever() override { return &recognitionMode; }
    ICustomizedServerDefines* getServerDefineRetriever() override { return &serverDefines; }
};

void releaseParams(std::map<std::string, _JsonObject*>* params)
{
    for (auto& entry : *params)
        if (entry.second)
            json_object_unref(entry.second);
    delete params;
}

}  // namespace

// Installs test retrievers in the engine's managers, or leaves the managers
// with none at all.
class RetrieverFacets : public EngineTest {
protected:
    IEngineRetrieveDeviceData* root() { return wrapper()->getEngineDeviceDataRetriever(); }

    TestDeviceSet* installDeviceSet()
    {
        auto* set = new TestDeviceSet;
        wrapper()->getDeviceDataRetrieveManager()->setUserDeviceDataRetriever(set);
        return set;
    }

    TestCustomizedSet* installCustomizedSet()
    {
        auto* set = new TestCustomizedSet;
        wrapper()->getCustomizedDataRetrieveManager()->setUserRetriever(set);
        return set;
    }

    void emptyDeviceSlots()
    {
        DeviceDataRetrieveManager* manager = wrapper()->getDeviceDataRetrieveManager();
        manager->setUserDeviceDataRetriever(new IDeviceDataRetrieve);
        IDeviceDataRetrieve*& fallback = manager->*slotOf(DeviceFallbackSlot());
        delete fallback;
        fallback = new IDeviceDataRetrieve;
        ASSERT_EQ(manager->getMusicRetriever(), nullptr);
        ASSERT_EQ(manager->getTimerRetriever(), nullptr);
        ASSERT_EQ(manager->getMorningBriefRetriever(), nullptr);
        ASSERT_EQ(manager->getShoppingListRetriever(), nullptr);
    }

    void emptyCustomizedSlots()
    {
        CustomizedDataRetrieveManager* manager = wrapper()->getCustomizedDataRetrieveManager();
        manager->setUserRetriever(new ICustomizedDataRetrieve);
        ICustomizedDataRetrieve*& fallback = manager->*slotOf(CustomizedFallbackSlot());
        delete fallback;
        fallback = new ICustomizedDataRetrieve;
        ASSERT_EQ(manager->getNluParamsRetriever(), nullptr);
        ASSERT_EQ(manager->getRecognitionModeRetriever(), nullptr);
        ASSERT_EQ(manager->getServerDefineRetriever(), nullptr);
    }
};

// Music

class MusicFacet : public RetrieverFacets {
protected:
    IEngineRetrieveDeviceMusicData* music() { return root()->getDeviceMusicData(); }
};

namespace {

typedef std::function<std::string(IEngineRetrieveDeviceMusicData*)> MusicText;
typedef std::function<bool(IEngineRetrieveDeviceMusicData*)> MusicBool;

const std::vector<std::pair<std::string, MusicText>> kMusicFlags = {
    {"supportTuneCove", [](IEngineRetrieveDeviceMusicData* m) { return m->getTuneCoveAvailableStatus(); }},
    {"getMoodGridCataloged", [](IEngineRetrieveDeviceMusicData* m) { return m->getMoodGridCatalogedStatus(); }},
    {"supportGenre", [](IEngineRetrieveDeviceMusicData* m) { return m->isGenreSupported(); }},
    {"supportRepeat", [](IEngineRetrieveDeviceMusicData* m) { return m->isRepeatSupported(); }},
    {"support", [](IEngineRetrieveDeviceMusicData* m) { return m->isMusicSupported(); }},
};

const std::vector<std::pair<std::string, MusicBool>> kMusicBools = {
    {"getCurrentSongFavoriteMark", [](IEngineRetrieveDeviceMusicData* m) { return m->getCurrentSongStarMarked(); }},
    {"getCurrentRadioFavoriteMark", [](IEngineRetrieveDeviceMusicData* m) { return m->getCurrentRadioStarMarked(); }},
    {"getCurrentMusicAppSlept", [](IEngineRetrieveDeviceMusicData* m) { return m->isSleepMode(); }},
    {"getCurrentMusicAppMute", [](IEngineRetrieveDeviceMusicData* m) { return m->isMute(); }},
    {"currentMusicAppLoggedIn", [](IEngineRetrieveDeviceMusicData* m) { return m->getCurMusicAppLoggedIn(); }},
};

}  // namespace

TEST_F(MusicFacet, EachCapabilityReadsItsOwnRetrieverOperation)
{
    TestDeviceSet* set = installDeviceSet();
    for (const auto& row : kMusicFlags) {
        set->music.on = {row.first};
        for (const auto& other : kMusicFlags)
            EXPECT_EQ(other.second(music()), other.first == row.first ? "True" : "False")
                << row.first << " on, asking " << other.first;
    }
    set->music.on.clear();
    for (const auto& row : kMusicFlags)
        EXPECT_EQ(row.second(music()), "False") << row.first;
}

TEST_F(MusicFacet, EachStateFlagPassesThroughAsBool)
{
    TestDeviceSet* set = installDeviceSet();
    for (const auto& row : kMusicBools) {
        set->music.on = {row.first};
        for (const auto& other : kMusicBools)
            EXPECT_EQ(other.second(music()), other.first == row.first) << row.first << " on, asking " << other.first;
    }
}

TEST_F(MusicFacet, OnlyStatusTenCountsAsPlaying)
{
    TestDeviceSet* set = installDeviceSet();
    set->music.status = 10;
    EXPECT_EQ(music()->isMusicPlaying(), "True");
    set->music.status = 12;
    EXPECT_EQ(music()->isMusicPlaying(), "False");
    set->music.status = 0;
    EXPECT_EQ(music()->isMusicPlaying(), "False");
    set->music.status = 11;
    EXPECT_EQ(music()->isMusicPlaying(), "False");
}

TEST_F(MusicFacet, ThePlayStatusAndMoodUriKeepTheInterfaceAnswers)
{
    TestDeviceSet* set = installDeviceSet();
    set->music.status = 10;
    set->music.on = {"supportTuneCove", "support"};
    EXPECT_EQ(music()->getMusicPlayStatus(), "False");
    EXPECT_EQ(music()->getMusicMoodUri("calm"), "");
}

TEST_F(MusicFacet, NamesPassThroughAsTheRetrieverGivesThem)
{
    TestDeviceSet* set = installDeviceSet();
    set->music.player = "TuneIn";
    set->music.song = "Blue in Green";
    set->music.genre = "Jazz";
    set->music.album = "Kind of Blue";
    set->music.artist = "Miles Davis";
    EXPECT_EQ(music()->getCurrentMusicAppName(), "TuneIn");
    EXPECT_EQ(music()->getSongName(), "Blue in Green");
    EXPECT_EQ(music()->getGenreName(), "Jazz");
    EXPECT_EQ(music()->getAlbumName(), "Kind of Blue");
    EXPECT_EQ(music()->getArtistName(), "Miles Davis");

    set->music.player.clear();
    set->music.song.clear();
    set->music.genre.clear();
    set->music.album.clear();
    set->music.artist.clear();
    EXPECT_EQ(music()->getCurrentMusicAppName(), "");
    EXPECT_EQ(music()->getSongName(), "");
    EXPECT_EQ(music()->getGenreName(), "");
    EXPECT_EQ(music()->getAlbumName(), "");
    EXPECT_EQ(music()->getArtistName(), "");
}

TEST_F(MusicFacet, VolumesPassThroughAsTheRetrieverGivesThem)
{
    TestDeviceSet* set = installDeviceSet();
    set->music.volume = 7;
    set->music.maxVolume = 30;
    EXPECT_EQ(music()->getCurMusicAppVolume(), 7);
    EXPECT_EQ(music()->getCurMusicAppMaxVolume(), 30);
    set->music.volume = -1;
    EXPECT_EQ(music()->getCurMusicAppVolume(), -1);
}

TEST_F(MusicFacet, TheRetrieverIsFetchedAnewOnEveryCall)
{
    installDeviceSet()->music.song = "first";
    EXPECT_EQ(music()->getSongName(), "first");
    installDeviceSet()->music.song = "second";
    EXPECT_EQ(music()->getSongName(), "second");
}

TEST_F(MusicFacet, ResultsAreLoggedWithoutAnEntryLine)
{
    TestDeviceSet* set = installDeviceSet();
    set->music.status = 10;
    set->music.maxVolume = 15;
    music()->isMusicPlaying();
    music()->getCurMusicAppMaxVolume();
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplMusic.cpp", "isMusicPlaying"), Messages{"retv[True]"});
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplMusic.cpp", "getCurMusicAppMaxVolume"), Messages{"retv[15]"});
}

TEST_F(MusicFacet, WithoutARetrieverEveryAnswerIsTheSafeValue)
{
    emptyDeviceSlots();
    for (const auto& row : kMusicFlags)
        EXPECT_EQ(row.second(music()), "False") << row.first;
    for (const auto& row : kMusicBools)
        EXPECT_FALSE(row.second(music())) << row.first;
    EXPECT_EQ(music()->isMusicPlaying(), "False");
    EXPECT_EQ(music()->getSongName(), "");
    EXPECT_EQ(music()->getGenreName(), "");
    EXPECT_EQ(music()->getAlbumName(), "");
    EXPECT_EQ(music()->getArtistName(), "");
    EXPECT_EQ(music()->getCurrentMusicAppName(), "");
    EXPECT_EQ(music()->getCurMusicAppVolume(), 0);
    EXPECT_EQ(music()->getCurMusicAppMaxVolume(), 0);
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplMusic.cpp", "getCurMusicAppMaxVolume"), Messages{"retv[0]"});
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplMusic.cpp", "getCurrentMusicAppName"), Messages{"retv[]"});
}

TEST(MusicFacetInterface, TheBareInterfaceAnswersNoneAndFiveOfFifteen)
{
    IEngineRetrieveDeviceMusicData bare;
    EXPECT_EQ(bare.getCurrentMusicAppName(), "None");
    EXPECT_EQ(bare.getCurMusicAppVolume(), 5);
    EXPECT_EQ(bare.getCurMusicAppMaxVolume(), 15);
}

// Timer

class TimerFacet : public RetrieverFacets {
protected:
    IEngineRetrieveDeviceTimerData* timer() { return root()->getDeviceTimerData(); }
};

namespace {

typedef std::function<std::string(IEngineRetrieveDeviceTimerData*)> TimerText;

const std::vector<std::pair<std::string, TimerText>> kTimerFlags = {
    {"supportCancel", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerCancelEnabled(); }},
    {"supportConfirm", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerConfirmationEnabled(); }},
    {"supportCreate", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerCreateEnabled(); }},
    {"support", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerEnabled(); }},
    {"supportReset", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerResetEnabled(); }},
    {"supportShow", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerShowEnabled(); }},
    {"supportStart", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerStartEnabled(); }},
    {"supportStop", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerStopEnabled(); }},
    {"supportTask", [](IEngineRetrieveDeviceTimerData* t) { return t->getTimerTaskEnabled(); }},
    {"supportOwnWidgetControl", [](IEngineRetrieveDeviceTimerData* t) { return t->isTimerWidgetActive(); }},
    {"supportByAppControl", [](IEngineRetrieveDeviceTimerData* t) { return t->setTimerSetFromApp(); }},
};

}  // namespace

TEST_F(TimerFacet, EachCapabilityReadsItsOwnRetrieverOperation)
{
    TestDeviceSet* set = installDeviceSet();
    for (const auto& row : kTimerFlags) {
        set->timer.on = {row.first};
        for (const auto& other : kTimerFlags)
            EXPECT_EQ(other.second(timer()), other.first == row.first ? "True" : "False")
                << row.first << " on, asking " << other.first;
    }
}

TEST_F(TimerFacet, TimerSupportIsNotTheInstalledApp)
{
    TestDeviceSet* set = installDeviceSet();
    set->timer.on = {"appInstalled"};
    EXPECT_EQ(timer()->getTimerEnabled(), "False");
    set->timer.on = {"support"};
    EXPECT_EQ(timer()->getTimerEnabled(), "True");
}

TEST_F(TimerFacet, ATimerRunsFromACountOfOne)
{
    TestDeviceSet* set = installDeviceSet();
    set->timer.running = -1;
    EXPECT_EQ(timer()->isTimerRunning(), "False");
    set->timer.running = 0;
    EXPECT_EQ(timer()->isTimerRunning(), "False");
    set->timer.running = 1;
    EXPECT_EQ(timer()->isTimerRunning(), "True");
    set->timer.running = 3;
    EXPECT_EQ(timer()->isTimerRunning(), "True");
}

TEST_F(TimerFacet, IdentifiersAndTimePassThrough)
{
    TestDeviceSet* set = installDeviceSet();
    set->timer.creatableId = "3";
    set->timer.currentId = "2";
    set->timer.time = "00:05:00";
    EXPECT_EQ(timer()->getTimerCreatableId(), "3");
    EXPECT_EQ(timer()->getTimerCurrentId(), "2");
    EXPECT_EQ(timer()->setTimerTime(), "00:05:00");
    set->timer.creatableId = "-1";
    set->timer.time = "";
    EXPECT_EQ(timer()->getTimerCreatableId(), "-1");
    EXPECT_EQ(timer()->setTimerTime(), "");
}

TEST_F(TimerFacet, CountsAndMultipleControlPassThrough)
{
    TestDeviceSet* set = installDeviceSet();
    set->timer.current = 2;
    set->timer.max = 5;
    set->timer.on = {"supportMultipleControl"};
    EXPECT_EQ(timer()->getTimerActivatedCount(), 2);
    EXPECT_EQ(timer()->getTimerMaxCount(), 5);
    EXPECT_TRUE(timer()->supportMultipleControl());
    set->timer.on.clear();
    set->timer.current = -3;
    EXPECT_FALSE(timer()->supportMultipleControl());
    EXPECT_EQ(timer()->getTimerActivatedCount(), -3);
}

TEST_F(TimerFacet, TextGettersLogEntryAndResultCountsOnlyTheirResult)
{
    TestDeviceSet* set = installDeviceSet();
    set->timer.running = 1;
    set->timer.current = 2;
    set->timer.max = 5;
    timer()->isTimerRunning();
    timer()->getTimerActivatedCount();
    timer()->getTimerMaxCount();
    timer()->supportMultipleControl();
    const std::string file = "RetrieveDeviceDataEngineImplTimer.cpp";
    EXPECT_EQ(messagesOf(file, "isTimerRunning"), (Messages{"", "retv[True]"}));
    EXPECT_EQ(messagesOf(file, "getTimerActivatedCount"), Messages{"timerCount[2]"});
    EXPECT_EQ(messagesOf(file, "getTimerMaxCount"), Messages{"maxTimerCount[5]"});
    EXPECT_EQ(messagesOf(file, "supportMultipleControl"), Messages{"retv[0]"});
}

TEST_F(TimerFacet, WithoutARetrieverIdentifiersSayFalseAndTheTimeIsZero)
{
    emptyDeviceSlots();
    EXPECT_EQ(timer()->getTimerCreatableId(), "False");
    EXPECT_EQ(timer()->getTimerCurrentId(), "False");
    EXPECT_EQ(timer()->setTimerTime(), "00:00:00");
    IEngineRetrieveDeviceTimerData bare;
    EXPECT_EQ(bare.getTimerCreatableId(), "");
    EXPECT_EQ(bare.getTimerCurrentId(), "");
    EXPECT_EQ(bare.setTimerTime(), "");
}

TEST_F(TimerFacet, WithoutARetrieverEveryOtherAnswerIsFalseOrZeroWithoutAResultLine)
{
    emptyDeviceSlots();
    for (const auto& row : kTimerFlags)
        EXPECT_EQ(row.second(timer()), "False") << row.first;
    EXPECT_EQ(timer()->isTimerRunning(), "False");
    EXPECT_FALSE(timer()->supportMultipleControl());
    EXPECT_EQ(timer()->getTimerActivatedCount(), 0);
    EXPECT_EQ(timer()->getTimerMaxCount(), 0);
    const std::string file = "RetrieveDeviceDataEngineImplTimer.cpp";
    EXPECT_EQ(messagesOf(file, "isTimerRunning"), Messages{""});
    EXPECT_EQ(messagesOf(file, "setTimerTime"), Messages{});
    timer()->setTimerTime();
    EXPECT_EQ(messagesOf(file, "setTimerTime"), Messages{""});
    EXPECT_EQ(messagesOf(file, "getTimerActivatedCount"), Messages{});
    EXPECT_EQ(messagesOf(file, "getTimerMaxCount"), Messages{});
    EXPECT_EQ(messagesOf(file, "supportMultipleControl"), Messages{});
}

// Morning brief and shopping list

class MorningBriefFacet : public RetrieverFacets {};

TEST_F(MorningBriefFacet, InstalledAndRunningPassThrough)
{
    TestDeviceSet* set = installDeviceSet();
    IEngineRetrieveDeviceMorningBriefData* brief = root()->getDeviceMorningBriefData();
    set->morningBrief.installed = true;
    EXPECT_TRUE(brief->appInstalled());
    EXPECT_FALSE(brief->appRunning());
    set->morningBrief.installed = false;
    set->morningBrief.running = true;
    EXPECT_FALSE(brief->appInstalled());
    EXPECT_TRUE(brief->appRunning());
    const std::string file = "RetrieveDeviceDataEngineImplMorningBrief.cpp";
    EXPECT_EQ(messagesOf(file, "appInstalled"), (Messages{"retv[1]", "retv[0]"}));
    EXPECT_EQ(messagesOf(file, "appRunning"), (Messages{"retv[0]", "retv[1]"}));
}

TEST_F(MorningBriefFacet, WithoutARetrieverNeitherHoldsAndNothingIsLogged)
{
    emptyDeviceSlots();
    IEngineRetrieveDeviceMorningBriefData* brief = root()->getDeviceMorningBriefData();
    EXPECT_FALSE(brief->appInstalled());
    EXPECT_FALSE(brief->appRunning());
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplMorningBrief.cpp", "appInstalled"), Messages{});
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplMorningBrief.cpp", "appRunning"), Messages{});
}

class ShoppingListFacet : public RetrieverFacets {};

TEST_F(ShoppingListFacet, TheSizePassesThrough)
{
    installDeviceSet()->shoppingList.size = 4;
    EXPECT_EQ(root()->getDeviceShoppingListData()->getCurrentShoppingListSize(), 4);
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplShoppingList.cpp", "getCurrentShoppingListSize"),
              Messages{"retv[4]"});
}

TEST_F(ShoppingListFacet, WithoutARetrieverTheSizeIsZeroAndNothingIsLogged)
{
    emptyDeviceSlots();
    EXPECT_EQ(root()->getDeviceShoppingListData()->getCurrentShoppingListSize(), 0);
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplShoppingList.cpp", "getCurrentShoppingListSize"),
              Messages{});
}

// Server speech

class ServerTtsFacet : public RetrieverFacets {
protected:
    IEngineRetrieveDeviceServerTtsData* serverTts() { return root()->getDeviceServerTtsData(); }
};

TEST_F(ServerTtsFacet, EnabledIsTheServerDefinesUseOfServerSpeech)
{
    TestCustomizedSet* set = installCustomizedSet();
    set->serverDefines.serverTts = true;
    EXPECT_TRUE(serverTts()->getEnalbed());
    set->serverDefines.serverTts = false;
    EXPECT_FALSE(serverTts()->getEnalbed());
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplServerTts.cpp", "getEnalbed"),
              (Messages{"retv[1]", "retv[0]"}));
}

TEST_F(ServerTtsFacet, TheTellerNamesTheVoice)
{
    TestCustomizedSet* set = installCustomizedSet();
    set->serverDefines.teller = 1;
    EXPECT_EQ(serverTts()->getTeller(), "M01");
    set->serverDefines.teller = 2;
    EXPECT_EQ(serverTts()->getTeller(), "F02");
    set->serverDefines.teller = 0;
    EXPECT_EQ(serverTts()->getTeller(), "F01");
    set->serverDefines.teller = 3;
    EXPECT_EQ(serverTts()->getTeller(), "F01");
    set->serverDefines.teller = -1;
    EXPECT_EQ(serverTts()->getTeller(), "F01");
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplServerTts.cpp", "getTeller"),
              (Messages{"retv[M01]", "retv[F02]", "retv[F01]", "retv[F01]", "retv[F01]"}));
}

TEST_F(ServerTtsFacet, WithoutARetrieverTheVoiceIsF01AndServerSpeechIsOff)
{
    emptyCustomizedSlots();
    EXPECT_EQ(serverTts()->getTeller(), "F01");
    EXPECT_FALSE(serverTts()->getEnalbed());
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplServerTts.cpp", "getEnalbed"), Messages{"retv[0]"});
    IEngineRetrieveDeviceServerTtsData bare;
    EXPECT_EQ(bare.getTeller(), "");
}

// Custom data

class CustomFacet : public RetrieverFacets {
protected:
    IEngineRetrieveDeviceCustomData* custom() { return root()->getDeviceCustomData(); }
    void TearDown() override
    {
        gWatchedBlock = nullptr;
        RetrieverFacets::TearDown();
    }
};

TEST_F(CustomFacet, TheFallbackSetGivesNeitherParametersNorState)
{
    wrapper()->getCustomizedDataRetrieveManager()->setUserRetriever(new ICustomizedDataRetrieve);
    EXPECT_EQ(custom()->getCustomDomainData(), nullptr);
    EXPECT_EQ(custom()->getCustomRecoStateData(), nullptr);
}

TEST_F(CustomFacet, AnAcceptedMapIsTheOneTheRetrieverFilled)
{
    TestCustomizedSet* set = installCustomizedSet();
    std::map<std::string, _JsonObject*>* params = custom()->getCustomDomainData();
    ASSERT_NE(params, nullptr);
    EXPECT_EQ(params, set->nluParams.given);
    EXPECT_TRUE(set->nluParams.givenEmpty);
    ASSERT_EQ(params->size(), 1u);
    EXPECT_NE(params->at("System"), nullptr);
    EXPECT_FALSE(gWatchedBlockReleased.load());
    releaseParams(params);
    EXPECT_TRUE(gWatchedBlockReleased.load());
}

TEST_F(CustomFacet, EveryCallMakesANewMap)
{
    installCustomizedSet();
    std::map<std::string, _JsonObject*>* first = custom()->getCustomDomainData();
    std::map<std::string, _JsonObject*>* second = custom()->getCustomDomainData();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    releaseParams(first);
    releaseParams(second);
}

TEST_F(CustomFacet, ARefusedMapIsNeitherReturnedNorReleased)
{
    TestCustomizedSet* set = installCustomizedSet();
    set->nluParams.answer = false;
    EXPECT_EQ(custom()->getCustomDomainData(), nullptr);
    ASSERT_NE(set->nluParams.given, nullptr);
    ASSERT_FALSE(gWatchedBlockReleased.load());
    EXPECT_EQ(set->nluParams.given->size(), 1u);
    releaseParams(set->nluParams.given);
}

TEST_F(CustomFacet, TheRecognitionStateIsPassedOnUnchanged)
{
    TestCustomizedSet* set = installCustomizedSet();
    JsonObject* state = json_object_new();
    set->recognitionMode.state = state;
    EXPECT_EQ(custom()->getCustomRecoStateData(), state);
    set->recognitionMode.state = nullptr;
    EXPECT_EQ(custom()->getCustomRecoStateData(), nullptr);
    json_object_unref(state);
}

TEST_F(CustomFacet, WithoutRetrieversBothAnswersAreNull)
{
    emptyCustomizedSlots();
    EXPECT_EQ(custom()->getCustomDomainData(), nullptr);
    EXPECT_EQ(custom()->getCustomRecoStateData(), nullptr);
    EXPECT_EQ(messagesOf("RetrieveDeviceDataEngineImplCustom.cpp", "getCustomDomainData"), Messages{""});
}
