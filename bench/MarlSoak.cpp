// The soak: one long marl-sim session against the plug-in, measuring how the
// daemon's process grows per turn. Run on demand, not under ctest:
//
//   build/bin/marl-soak [TURNS] [--daemon gentle|platform] [--keep DIR]
//
// --keep DIR keeps the session (soak.json), the device and marl-sim's
// readable transcript (transcript.txt) in DIR.
// The session cycles through the turns of the checked scenarios (every kind
// of driver request, server speech played by the plug-in, cancels, errors,
// rejections) in a period of 100 turns: a session reset, a MediaVolume change
// and the speech language key (5, then 6: with either, the plug-in plays the
// server speech itself) at the start and the middle of each period.
// marl-sim runs with --memory, which adds the process's resident size and
// heap in use after each turn, and writes its transcript as the session goes,
// holding one turn. After a warm-up of a tenth of the turns (at least one
// period), the growth per turn is the least-squares slope of each figure
// within each phase of the period (the turns that play the same scenario
// turn), so that what a kind of turn holds while it runs does not pass for
// growth. The plug-in's goal is 0 bytes per turn of heap, and the soak fails
// when the heap grows more than 64 bytes a turn.
//
// The gentle daemon is fed as fast as it goes (--fast). The platform daemon
// is fed at the recorder's pace, starts each turn as soon as the last one has
// its result, so that a new turn starts while the plug-in still plays the
// previous answer (played answers last 1 s here), and unloads and reloads the
// plug-in at the start of every period, each time from a fresh dlopen. Each
// load keeps its command list when it goes, on purpose: the soak measures
// that first (20 reloads between turns that do nothing) and counts it apart.
#include <json/json.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{

Json::Value readJson(const fs::path& file)
{
    std::ifstream in(file);
    Json::CharReaderBuilder builder;
    Json::Value value;
    std::string errors;
    if (!Json::parseFromStream(builder, in, &value, &errors))
        return Json::Value();
    return value;
}

// File names in a scenario's turn made absolute, so that the soak's own
// scenario can live elsewhere.
void absolutize(Json::Value& turn, const fs::path& dir)
{
    if (turn.isMember("audio") && turn["audio"].isString())
        turn["audio"] = (dir / turn["audio"].asString()).string();
    if (!turn.isMember("server"))
        return;
    for (auto& event : turn["server"])
        if (event.isMember("speechFile") && event["speechFile"].isString())
            event["speechFile"] = (dir / event["speechFile"].asString()).string();
}

// Driver requests whose replies, on the soak's bare device, take a failure
// path that keeps an allocation on purpose (as the leak check's suppressions
// leave it out): the item check without the recipe database keeps the
// database handle, and the search launches a service app that this device
// has not got, which keeps the app-control handle.
const char* const kKeptOnPurpose[] = {"View Inside Item Check Request", "Search Items Request"};

bool keepsOnPurpose(const Json::Value& event)
{
    const std::string name = event["request"]["Server Reqeust"]["action"]["name"].asString();
    return std::find(std::begin(kKeptOnPurpose), std::end(kKeptOnPurpose), name) != std::end(kKeptOnPurpose);
}

bool usable(const Json::Value& scenario, const Json::Value& turn)
{
    // Sessions that wait on purpose, and turns recognized from speech (slow,
    // and not what is measured here), are left out.
    if (scenario.isMember("timeout") || !turn.isMember("server") ||
        (turn["audio"].isObject() && turn["audio"].isMember("say")))
        return false;
    for (const auto& event : turn["server"])
        if (event["type"] == "wait" || (event["type"] == "driverRequest" && keepsOnPurpose(event)))
            return false;
    for (const auto& pair : turn["privateData"])
        if (pair["data"] == "reloadEngine")
            return false;
    return true;
}

const double kMaxHeapGrowthPerTurn = 64;
const size_t kPeriod = 100;  // turns; the platform daemon reloads the plug-in at each
const int kCalibrationReloads = 20;
const unsigned kPlayedSpeechBytes = 48000;  // 1 s at 24 kHz

Json::Value parse(const std::string& text)
{
    std::istringstream in(text);
    Json::CharReaderBuilder builder;
    Json::Value value;
    std::string errors;
    return Json::parseFromStream(builder, in, &value, &errors) ? value : Json::Value();
}

// Played answers long enough to outlive their turn.
void lengthenSpeech(Json::Value& turn)
{
    for (auto& event : turn["server"])
        if (event.isMember("speechBytes"))
            event["speechBytes"] = kPlayedSpeechBytes;
}

// The starts that came while an answer played: a playback's journal line
// comes at its end, and its bytes tell how long it played.
struct Overlaps {
    std::vector<double> starts;
    std::vector<std::pair<double, double>> playbacks;  // from, to (seconds)
    long count() const
    {
        long n = 0;
        for (const auto& p : playbacks)
            for (double start : starts)
                n += start > p.first && start < p.second;
        return n;
    }
};

// (turn, figure) points: the least-squares slope pooled over the phases of
// the period, each phase with its own level.
double growth(const std::vector<std::pair<double, double>>& points)
{
    std::vector<double> n(kPeriod), sx(kPeriod), sy(kPeriod);
    for (const auto& p : points) {
        const size_t phase = size_t(p.first - 1) % kPeriod;
        n[phase] += 1;
        sx[phase] += p.first;
        sy[phase] += p.second;
    }
    double sxy = 0, sxx = 0;
    for (const auto& p : points) {
        const size_t phase = size_t(p.first - 1) % kPeriod;
        const double dx = p.first - sx[phase] / n[phase];
        sxy += dx * (p.second - sy[phase] / n[phase]);
        sxx += dx * dx;
    }
    return sxx > 0 ? sxy / sxx : 0;
}

// What marl-sim printed: its figures after each turn and what the soak counts.
struct Run {
    int status = -1;
    std::vector<std::pair<double, double>> rss, heap;  // (turn, bytes)
    Overlaps overlaps;
    long loads = 0;
};

Run runSim(const fs::path& file, const fs::path& dir, const std::string& daemon, std::ofstream* transcript)
{
    const fs::path sim = fs::read_symlink("/proc/self/exe").parent_path() / "marl-sim";
    // A thread's malloc cache (tcache) holds freed chunks that mallinfo2
    // counts as in use, and it fills slowly over a session: without it, the
    // heap in use is what the process holds.
    const std::string command = "GLIBC_TUNABLES=glibc.malloc.tcache_count=0 " + sim.string() + " run '" +
                                file.string() + "' --daemon " + daemon +
                                (daemon == "platform" ? "" : " --fast") + " --memory --device '" +
                                (dir / "device").string() + "' 2>'" + (dir / "stderr.txt").string() + "'";
    std::cerr << "marl-soak: " << command << "\n";
    Run run;
    std::FILE* in = ::popen(command.c_str(), "r");
    if (!in)
        return run;
    char buffer[1 << 16];
    std::string line;
    const std::string marker = "memory   ";
    while (std::fgets(buffer, sizeof buffer, in)) {
        line += buffer;
        if (line.empty() || line.back() != '\n')
            continue;
        if (transcript)
            *transcript << line;
        const double seconds = std::atof(line.c_str());
        if (line.find("  call     MarlEngine_start(") != std::string::npos)
            run.overlaps.starts.push_back(seconds);
        if (line.find("  call     vcp_load_engine(") != std::string::npos)
            ++run.loads;
        const size_t playback = line.find("  device   audio_playback: ");
        if (playback != std::string::npos) {
            const Json::Value p = parse(line.substr(playback + 27));
            if (p["rate"].asDouble() > 0)
                run.overlaps.playbacks.emplace_back(
                    seconds - p["bytes"].asDouble() / (p["rate"].asDouble() * p["channels"].asDouble() * 2), seconds);
        }
        const size_t at = line.find(marker);
        if (at != std::string::npos) {
            const Json::Value m = parse(line.substr(at + marker.size()));
            const double turn = m["turn"].asDouble();
            run.rss.emplace_back(turn, m["rssBytes"].asDouble());
            run.heap.emplace_back(turn, m["heapBytes"].asDouble());
            if (long(turn) % 500 == 0)
                std::cerr << "marl-soak: turn " << long(turn) << ", rss " << long(m["rssBytes"].asDouble() / 1024)
                          << " KiB, heap " << long(m["heapBytes"].asDouble() / 1024) << " KiB\n";
        }
        line.clear();
    }
    run.status = ::pclose(in);
    return run;
}

void writeJson(const fs::path& file, const Json::Value& value)
{
    std::ofstream out(file);
    Json::StreamWriterBuilder builder;
    out << Json::writeString(builder, value) << "\n";
}

// The heap that one reload keeps: the median growth over reloads between
// turns that do nothing.
double keptPerReload(const Json::Value& soak, const fs::path& dir)
{
    Json::Value calibration = soak;
    Json::Value& turns = calibration["turns"] = Json::Value(Json::arrayValue);
    Json::Value idle;
    idle["server"] = Json::Value(Json::arrayValue);
    turns.append(idle);
    idle["reload"] = true;
    for (int i = 0; i < kCalibrationReloads; ++i)
        turns.append(idle);
    const fs::path file = dir / "reloads.json";
    writeJson(file, calibration);
    const Run run = runSim(file, dir, "platform", nullptr);
    std::vector<double> steps;
    for (size_t i = 3; i < run.heap.size(); ++i)
        steps.push_back(run.heap[i].second - run.heap[i - 1].second);
    if (steps.empty())
        return 0;
    std::sort(steps.begin(), steps.end());
    return steps[steps.size() / 2];
}

}  // namespace

int main(int argc, char** argv)
{
    long turns = 10000;
    std::string keep;
    std::string daemon = "gentle";
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--keep" && i + 1 < argc) {
            keep = argv[++i];
        } else if (a == "--daemon" && i + 1 < argc && (std::string(argv[i + 1]) == "gentle" ||
                                                        std::string(argv[i + 1]) == "platform")) {
            daemon = argv[++i];
        } else if (!a.empty() && a[0] != '-' && std::atol(a.c_str()) > 0) {
            turns = std::atol(a.c_str());
        } else {
            std::cerr << "usage: marl-soak [TURNS] [--daemon gentle|platform] [--keep DIR]\n";
            return 2;
        }
    }
    const bool platform = daemon == "platform";
    const fs::path scenarios = MARL_SCENARIO_DIR;
    std::vector<Json::Value> pool;
    Json::Value commands(Json::arrayValue);
    for (const auto& entry : fs::directory_iterator(scenarios)) {
        if (entry.path().extension() != ".json")
            continue;
        const Json::Value scenario = readJson(entry.path());
        for (const auto& c : scenario["engine"]["commands"])
            commands.append(c);
        for (Json::Value turn : scenario["turns"]) {
            if (!usable(scenario, turn))
                continue;
            absolutize(turn, scenarios);
            pool.push_back(turn);
        }
    }
    if (pool.empty()) {
        std::cerr << "marl-soak: no usable turn in " << scenarios << "\n";
        return 1;
    }

    Json::Value soak;
    soak["device"]["vconf"]["db/orvane/setting/lang"] = 5;
    if (platform)
        soak["device"]["audio_out"]["write_returns"] = "zero";  // the plug-in plays its answers whole
    soak["engine"]["language"] = "en_US";
    soak["engine"]["commands"] = commands;
    Json::Value& list = soak["turns"] = Json::Value(Json::arrayValue);
    for (long i = 0; i < turns; ++i) {
        const size_t phase = size_t(i) % kPeriod;
        Json::Value turn = pool[phase % pool.size()];
        if (phase == 0 || phase == kPeriod / 2) {
            // Language 5, then 6, each with a session reset and another
            // media volume.
            turn["device"]["vconf"]["db/orvane/setting/lang"] = phase == 0 ? 5 : 6;
            Json::Value reset, volume;
            reset["key"] = "Request";
            reset["data"] = "resetSession";
            volume["key"] = "MediaVolume";
            volume["data"] = phase == 0 ? "3" : "11";
            turn["privateData"].append(reset);
            turn["privateData"].append(volume);
        }
        if (platform) {
            lengthenSpeech(turn);
            if (i > 0 && phase == 0)
                turn["reload"] = true;
        }
        list.append(turn);
    }

    const fs::path dir = keep.empty() ? fs::temp_directory_path() / ("marl-soak-" + std::to_string(::getpid()))
                                      : fs::path(keep);
    fs::create_directories(dir);
    const fs::path file = dir / "soak.json";
    writeJson(file, soak);
    const double kept = platform ? keptPerReload(soak, dir) : 0;
    std::cerr << "marl-soak: " << turns << " turns from " << pool.size() << " scenario turns\n";
    std::ofstream transcript;  // with --keep, marl-sim's readable transcript
    if (!keep.empty())
        transcript.open(dir / "transcript.txt");
    const Run run = runSim(file, dir, daemon, keep.empty() ? nullptr : &transcript);
    const std::vector<std::pair<double, double>>& rss = run.rss;
    const std::vector<std::pair<double, double>>& heap = run.heap;
    const int status = run.status;
    const size_t warmUp = std::max<size_t>(100, rss.size() / 10);
    if (rss.size() <= warmUp + 1) {
        std::cerr << "marl-soak: marl-sim ended after " << rss.size() << " turns (status " << status << "); see "
                  << dir / "stderr.txt" << "\n";
        return 1;
    }
    const std::vector<std::pair<double, double>> rssAfter(rss.begin() + long(warmUp), rss.end());
    const std::vector<std::pair<double, double>> heapAfter(heap.begin() + long(warmUp), heap.end());
    const double heapGrowth = growth(heapAfter), rssGrowth = growth(rssAfter);
    const double turnsGrowth = heapGrowth - kept / kPeriod;
    double maxRss = 0;
    for (const auto& p : rss)
        maxRss = std::max(maxRss, p.second);
    std::printf("turns %zu (warm-up %zu), daemon %s, marl-sim exit %d\n", rss.size(), warmUp, daemon.c_str(),
                WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    std::printf("loads of the plug-in %ld; answers played %zu, turns started while one played %ld\n", run.loads,
                run.overlaps.playbacks.size(), run.overlaps.count());
    std::printf("heap in use: %.1f bytes per turn after warm-up (%.0f KiB -> %.0f KiB)\n", heapGrowth,
                heapAfter.front().second / 1024, heapAfter.back().second / 1024);
    if (platform)
        std::printf("             of which %.1f the reloads keep (%.0f bytes each: the command list), %.1f the turns\n",
                    kept / kPeriod, kept, turnsGrowth);
    std::printf("resident:    %.1f bytes per turn after warm-up (%.0f KiB -> %.0f KiB), at most %.1f MiB\n",
                rssGrowth, rssAfter.front().second / 1024, rssAfter.back().second / 1024, maxRss / 1048576);
    const bool grew = turnsGrowth > kMaxHeapGrowthPerTurn;
    if (grew)
        std::printf("FAILED: the heap grows more than %.0f bytes per turn\n", kMaxHeapGrowthPerTurn);
    if (keep.empty())
        fs::remove_all(dir);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 && !grew ? 0 : 1;
}
