// The soak: one long marl-sim session against the plug-in, measuring how the
// daemon's process grows per turn. Run on demand, not under ctest:
//
//   build/bin/marl-soak [TURNS] [--keep DIR]
//
// The session cycles through the turns of the checked scenarios (every kind
// of driver request, server speech written for the appliance's player and
// played by the plug-in, cancels, errors, rejections), with a session reset
// and a MediaVolume change each cycle and the speech language key switched
// between written and played speech. marl-sim runs with --memory, which adds
// the process's resident size and heap in use after each turn, and writes its
// transcript as the session goes, holding one turn. After a warm-up of a
// tenth of the turns (at least 100), the growth per turn is the least-squares
// slope of each figure; the plug-in's goal is 0 bytes per turn of heap.
#include <json/json.h>
#include <unistd.h>

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

bool usable(const Json::Value& scenario, const Json::Value& turn)
{
    // Sessions that wait on purpose, and turns recognized from speech (slow,
    // and not what is measured here), are left out.
    if (scenario.isMember("timeout") || !turn.isMember("server") ||
        (turn["audio"].isObject() && turn["audio"].isMember("say")))
        return false;
    for (const auto& event : turn["server"])
        if (event["type"] == "wait")
            return false;
    for (const auto& pair : turn["privateData"])
        if (pair["data"] == "reloadEngine")
            return false;
    return true;
}

struct Fit {
    double slope = 0;
    double first = 0, last = 0, max = 0;
};

Fit fit(const std::vector<std::pair<double, double>>& points)
{
    Fit f;
    if (points.size() < 2)
        return f;
    double sx = 0, sy = 0, sxx = 0, sxy = 0;
    for (const auto& p : points) {
        sx += p.first;
        sy += p.second;
        sxx += p.first * p.first;
        sxy += p.first * p.second;
        f.max = std::max(f.max, p.second);
    }
    const double n = double(points.size());
    f.slope = (n * sxy - sx * sy) / (n * sxx - sx * sx);
    f.first = points.front().second;
    f.last = points.back().second;
    return f;
}

}  // namespace

int main(int argc, char** argv)
{
    long turns = 10000;
    std::string keep;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--keep" && i + 1 < argc) {
            keep = argv[++i];
        } else if (!a.empty() && a[0] != '-' && std::atol(a.c_str()) > 0) {
            turns = std::atol(a.c_str());
        } else {
            std::cerr << "usage: marl-soak [TURNS] [--keep DIR]\n";
            return 2;
        }
    }
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
    soak["engine"]["language"] = "en_US";
    soak["engine"]["commands"] = commands;
    Json::Value& list = soak["turns"] = Json::Value(Json::arrayValue);
    for (long i = 0; i < turns; ++i) {
        const size_t k = size_t(i) % pool.size();
        const size_t cycle = size_t(i) / pool.size();
        Json::Value turn = pool[k];
        if (k == 0) {
            // Each cycle: played (6) or written (5) speech, a session reset
            // and another media volume.
            turn["device"]["vconf"]["db/orvane/setting/lang"] = cycle % 2 ? 6 : 5;
            Json::Value reset, volume;
            reset["key"] = "Request";
            reset["data"] = "resetSession";
            volume["key"] = "MediaVolume";
            volume["data"] = std::to_string(cycle % 16);
            turn["privateData"].append(reset);
            turn["privateData"].append(volume);
        }
        list.append(turn);
    }

    const fs::path dir = keep.empty() ? fs::temp_directory_path() / ("marl-soak-" + std::to_string(::getpid()))
                                      : fs::path(keep);
    fs::create_directories(dir);
    const fs::path file = dir / "soak.json";
    {
        std::ofstream out(file);
        Json::StreamWriterBuilder builder;
        out << Json::writeString(builder, soak) << "\n";
    }
    const fs::path sim = fs::read_symlink("/proc/self/exe").parent_path() / "marl-sim";
    const std::string command = sim.string() + " run '" + file.string() + "' --fast --memory --device '" +
                                (dir / "device").string() + "' 2>'" + (dir / "stderr.txt").string() + "'";
    std::cerr << "marl-soak: " << turns << " turns from " << pool.size() << " scenario turns; " << command << "\n";
    std::FILE* in = ::popen(command.c_str(), "r");
    if (!in) {
        std::cerr << "marl-soak: cannot run marl-sim\n";
        return 1;
    }
    std::vector<std::pair<double, double>> rss, heap;
    char buffer[1 << 16];
    std::string line;
    const std::string marker = "memory   ";
    while (std::fgets(buffer, sizeof buffer, in)) {
        line += buffer;
        if (line.empty() || line.back() != '\n')
            continue;
        const size_t at = line.find(marker);
        if (at != std::string::npos) {
            std::istringstream text(line.substr(at + marker.size()));
            Json::CharReaderBuilder builder;
            Json::Value m;
            std::string errors;
            if (Json::parseFromStream(builder, text, &m, &errors)) {
                const double turn = m["turn"].asDouble();
                rss.emplace_back(turn, m["rssBytes"].asDouble());
                heap.emplace_back(turn, m["heapBytes"].asDouble());
                if (long(turn) % 500 == 0)
                    std::cerr << "marl-soak: turn " << long(turn) << ", rss " << long(m["rssBytes"].asDouble() / 1024)
                              << " KiB, heap " << long(m["heapBytes"].asDouble() / 1024) << " KiB\n";
            }
        }
        line.clear();
    }
    const int status = ::pclose(in);
    const size_t warmUp = std::max<size_t>(100, rss.size() / 10);
    if (rss.size() <= warmUp + 1) {
        std::cerr << "marl-soak: marl-sim ended after " << rss.size() << " turns (status " << status << "); see "
                  << dir / "stderr.txt" << "\n";
        return 1;
    }
    const std::vector<std::pair<double, double>> rssAfter(rss.begin() + long(warmUp), rss.end());
    const std::vector<std::pair<double, double>> heapAfter(heap.begin() + long(warmUp), heap.end());
    const Fit r = fit(rssAfter), h = fit(heapAfter);
    double maxRss = 0;
    for (const auto& p : rss)
        maxRss = std::max(maxRss, p.second);
    std::printf("turns %zu (warm-up %zu), marl-sim exit %d\n", rss.size(), warmUp,
                WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    std::printf("heap in use: %.1f bytes per turn after warm-up (%.0f KiB -> %.0f KiB)\n", h.slope, h.first / 1024,
                h.last / 1024);
    std::printf("resident:    %.1f bytes per turn after warm-up (%.0f KiB -> %.0f KiB), at most %.1f MiB\n",
                r.slope, r.first / 1024, r.last / 1024, maxRss / 1048576);
    if (keep.empty())
        fs::remove_all(dir);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : 1;
}
