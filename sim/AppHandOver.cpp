// The appliance's apps as the daemon's clients: each result goes, once its
// turn has settled, to the apps that registered its matched commands (the
// scenario's "app" of a command), as the platform's daemon sends a result
// to the clients whose commands it holds. The apps act on the device; what
// they did is noted. The device's clock, when pinned, moves on between
// turns by each turn's audio. marl-sim talk adds its turns here as they come.
#include "SessionImpl.h"

#include "PluginClock.h"
#include "apps/DeviceClock.h"
#include "vappliance/Device.h"

#include <algorithm>

namespace sim
{
namespace session
{

namespace
{

const double kLaunchWatchSeconds = 0.05;
const double kTickSeconds = 1.0;

}  // namespace

Session::~Session()
{
    if (mLaunchWatch)
        ecore_timer_del(mLaunchWatch);
    if (mAppsTick)
        ecore_timer_del(mAppsTick);
}

bool Session::prepareAppliance(std::string& error)
{
    if (apps::clockPinned()) {
        std::vector<std::string> names;
        if (!pointPluginAtDeviceClock(mHandle, names, error))
            return false;
        std::sort(names.begin(), names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
        std::string list;
        for (const std::string& name : names)
            list += (list.empty() ? "" : ", ") + name;
        record(note("the device's clock is pinned at " + apps::clockTimeText(apps::clockNowSeconds()) +
                    " and moves on between turns by each turn's audio; the plug-in reads it through " +
                    (list.empty() ? std::string("none of its imports") : list)));
    }
    const bool served = std::any_of(mScenario.commands.begin(), mScenario.commands.end(),
                                    [](const Command& c) { return !c.app.empty(); });
    if (!served)
        return true;
    mApps = std::make_unique<apps::Apps>();
    std::ifstream journal(vapp::devicePath("journal.jsonl"), std::ios::binary | std::ios::ate);
    mLaunchOffset = journal ? static_cast<std::streamoff>(journal.tellg()) : 0;
    mLaunchWatch = ecore_timer_add(kLaunchWatchSeconds, onWatchLaunches, this);
    // A pinned clock moves only between turns, where the apps are told.
    if (!apps::clockPinned())
        mAppsTick = ecore_timer_add(kTickSeconds, onTickApps, this);
    return true;
}

void Session::tellApps(std::vector<apps::Report> reports)
{
    for (apps::Report& report : reports) {
        record(note("app " + report.app + (report.error ? ", not done: " : ": ") + report.text));
        if (report.then)
            report.then();
    }
}

void Session::handOverResults(const Turn& turn)
{
    if (mApps) {
        for (const Json::Value& e : mTranscript.entriesFrom(mTurnFirstEntry)) {
            if (e["kind"] != "callback" || e["fn"] != "result" || e.isMember("dropped") || !e["ids"].isArray())
                continue;
            // The apps that registered a matched command, each with its own.
            std::vector<std::pair<std::string, apps::Result>> owners;
            for (const Json::Value& id : e["ids"]) {
                const auto c = std::find_if(mScenario.commands.begin(), mScenario.commands.end(),
                                            [&](const Command& c) { return id.isInt() && c.id == id.asInt(); });
                if (c == mScenario.commands.end() || c->app.empty())
                    continue;
                auto owner = std::find_if(owners.begin(), owners.end(), [&](const auto& o) { return o.first == c->app; });
                if (owner == owners.end())
                    owner = owners.insert(owners.end(), {c->app, apps::Result()});
                owner->second.commands.push_back(c->command);
            }
            for (auto& owner : owners) {
                owner.second.text = e["allResult"].isString() ? e["allResult"].asString() : "";
                owner.second.hasNlu = e["nluResult"].isString();
                owner.second.nlu = owner.second.hasNlu ? e["nluResult"].asString() : "";
                tellApps({mApps->deliver(owner.first, owner.second)});
            }
        }
    }
    if (apps::clockPinned())
        apps::advanceClock(static_cast<int64_t>(turn.audio.size()) * 1000000000 / 16000);
    if (mApps)
        tellApps(mApps->tick());
}

Eina_Bool Session::onWatchLaunches(void* data)
{
    auto* self = static_cast<Session*>(data);
    std::ifstream in(vapp::devicePath("journal.jsonl"), std::ios::binary);
    in.seekg(0, std::ios::end);
    if (in && in.tellg() < self->mLaunchOffset)
        self->mLaunchOffset = 0;  // a journal made anew
    in.seekg(self->mLaunchOffset);
    std::string line;
    while (in && std::getline(in, line) && !in.eof()) {
        self->mLaunchOffset += static_cast<std::streamoff>(line.size()) + 1;
        const Json::Value entry = parseJson(line);
        if (entry["event"] == "app_launch")
            self->tellApps(self->mApps->launched(entry));
    }
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool Session::onTickApps(void* data)
{
    auto* self = static_cast<Session*>(data);
    self->tellApps(self->mApps->tick());
    return ECORE_CALLBACK_RENEW;
}

const Turn& Session::turnAt(size_t index) const
{
    return index < mScenario.turns.size() ? mScenario.turns[index] : mTalkTurns[index - mScenario.turns.size()];
}

bool Session::takeTalkTurn()
{
    if (!mOptions.nextTurn)
        return false;
    if (!mTalkTurns.empty() && mOptions.turnDone)
        mOptions.turnDone(mTranscript.entriesFrom(mTurnFirstEntry));
    Turn turn;
    if (!mOptions.nextTurn(turn))
        return false;
    // Time went by while the person spoke: the timers that are due ring first.
    if (mApps)
        tellApps(mApps->tick());
    mTalkTurns.push_back(std::move(turn));
    return true;
}

}  // namespace session
}  // namespace sim
