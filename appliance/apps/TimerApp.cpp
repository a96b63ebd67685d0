// The kitchen timer app: its timers are the rows of the "Timer" table. A
// running timer rings when the device's clock reaches its ringing time.
#include "App.h"

#include "apps/DeviceClock.h"

#include <set>

namespace apps {
namespace {

const char* const kTable = "Timer";
const size_t kMaxTimers = 20;
const long long kLongest = 359999;  // 99:59:59

long long number(const Row& row, const char* column)
{
    const auto it = row.find(column);
    if (it == row.end() || it->second.empty() || it->second.size() > 18 ||
        it->second.find_first_not_of("-0123456789") != std::string::npos)
        return 0;
    return std::stoll(it->second);
}

class TimerApp : public App {
public:
    TimerApp() : App("org.tizen.fridge-timer", "#org.tizen.Timer") {}

    Report act(const std::string& action, const Json::Value& raw) override
    {
        if (action == "Set Timer")
            return set(raw);
        if (action == "Extend Timer")
            return extend(raw);
        if (action == "Cancel Timer")
            return cancel(raw);
        if (action == "Show Timer" || action == "Show Timers" || action == "Choose Timer")
            return done("shows its timers (\"" + action + "\"); nothing changes");
        return refused("unknown action \"" + action + "\"; nothing changes");
    }

    std::vector<Report> tick() override
    {
        Store store;
        std::string error;
        if (!store.open(error))
            return {};
        const long long now = clockNowSeconds();
        bool due = false;
        for (const StoredRow& row : store.rows(kTable))
            due = due || dueToRing(row.values, now);
        if (!due)
            return {};
        std::vector<Report> out;
        const Report report = withStore([&](Store& s) {
            std::string rang;
            for (const StoredRow& row : s.rows(kTable)) {
                if (!dueToRing(row.values, now))
                    continue;
                const std::string at = std::to_string(number(row.values, "expectedRingingTimeStamp"));
                if (!s.update(kTable, row.rowid, {{"isringing", "1"}, {"lastUpdateTimeStamp", at}}))
                    return refused("cannot ring: " + s.error());
                rang += (rang.empty() ? "timer " : ", timer ") + column(row.values, "id");
            }
            return done(rang + " rings");
        });
        out.push_back(report);
        return out;
    }

private:
    static bool dueToRing(const Row& row, long long now)
    {
        return column(row, "isrunning") == "1" && column(row, "isringing") != "1" &&
               number(row, "expectedRingingTimeStamp") <= now;
    }

    static const std::vector<std::string>& columns()
    {
        static const std::vector<std::string> names = {"id",       "isrunning", "isringing", "delayTime",
                                                       "expectedRingingTimeStamp", "lastUpdateTimeStamp"};
        return names;
    }

    // The row of the timer `id`; without an id, the only timer there is.
    static const StoredRow* find(const std::vector<StoredRow>& rows, const std::string& id)
    {
        if (id.empty())
            return rows.size() == 1 ? &rows[0] : nullptr;
        for (const StoredRow& row : rows)
            if (column(row.values, "id") == id)
                return &row;
        return nullptr;
    }

    Report set(const Json::Value& raw)
    {
        const long long seconds = secondsOf(raw["duration"]);
        if (seconds < 0)
            return refused("refused a timer of \"" + textOf(raw["duration"]) +
                           "\" seconds: a timer runs from 1 second to 99:59:59; nothing changes");
        return withStore([&](Store& store) {
            if (!store.ensure(kTable, columns()))
                return refused("cannot keep timers: " + store.error());
            const std::vector<StoredRow> rows = store.rows(kTable);
            if (rows.size() >= kMaxTimers)
                return refused("refused a timer: there are " + std::to_string(rows.size()) + " timers already");
            std::set<long long> taken;
            for (const StoredRow& row : rows)
                taken.insert(number(row.values, "id"));
            long long id = 1;
            while (taken.count(id))
                ++id;
            const long long now = clockNowSeconds();
            const Row row = {{"id", std::to_string(id)},
                             {"isrunning", "1"},
                             {"isringing", "0"},
                             {"delayTime", std::to_string(seconds)},
                             {"expectedRingingTimeStamp", std::to_string(now + seconds)},
                             {"lastUpdateTimeStamp", std::to_string(now)}};
            if (!store.insert(kTable, row))
                return refused("cannot keep the timer: " + store.error());
            return done("timer " + std::to_string(id) + " set for " + durationText(seconds) + "; it runs");
        });
    }

    Report extend(const Json::Value& raw)
    {
        const long long seconds = secondsOf(raw["duration"]);
        if (seconds < 0)
            return refused("refused to extend a timer by \"" + textOf(raw["duration"]) + "\" seconds; nothing changes");
        const std::string id = textOf(raw["id"]);
        return withStore([&](Store& store) {
            const std::vector<StoredRow> rows = store.rows(kTable);
            const StoredRow* row = find(rows, id);
            if (!row)
                return refused("no timer \"" + id + "\" to extend; nothing changes");
            const Row& r = row->values;
            const long long delay = number(r, "delayTime") + seconds;
            if (delay > kLongest)
                return refused("refused to extend timer " + column(r, "id") + " past 99:59:59; nothing changes");
            const long long now = clockNowSeconds();
            Row changes = {{"delayTime", std::to_string(delay)}};
            if (column(r, "isringing") == "1") {
                // A ringing timer starts again for the time added.
                changes["isringing"] = "0";
                changes["isrunning"] = "1";
                changes["expectedRingingTimeStamp"] = std::to_string(now + seconds);
                changes["lastUpdateTimeStamp"] = std::to_string(now);
            } else {
                // Running or paused, it rings that much later; a paused one keeps its
                // last update, so that the time it has left grows as much (a paused
                // one without a ringing time has its time left in its delay).
                if (number(r, "expectedRingingTimeStamp") != 0)
                    changes["expectedRingingTimeStamp"] =
                        std::to_string(number(r, "expectedRingingTimeStamp") + seconds);
                if (column(r, "isrunning") == "1")
                    changes["lastUpdateTimeStamp"] = std::to_string(now);
            }
            if (!store.ensure(kTable, columns()) || !store.update(kTable, row->rowid, changes))
                return refused("cannot extend the timer: " + store.error());
            return done("timer " + column(r, "id") + " extended by " + durationText(seconds) + " to " +
                        durationText(delay));
        });
    }

    Report cancel(const Json::Value& raw)
    {
        const std::string id = textOf(raw["id"]);
        return withStore([&](Store& store) {
            const std::vector<StoredRow> rows = store.rows(kTable);
            const StoredRow* row = find(rows, id);
            if (!row)
                return refused("no timer \"" + id + "\" to cancel; nothing changes");
            if (!store.remove(kTable, row->rowid))
                return refused("cannot cancel the timer: " + store.error());
            return done("timer " + column(row->values, "id") + " cancelled; " + std::to_string(rows.size() - 1) +
                        " left");
        });
    }
};

}  // namespace

std::unique_ptr<App> makeTimerApp()
{
    return std::make_unique<TimerApp>();
}

}  // namespace apps
