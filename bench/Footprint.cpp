// marl-footprint: what the plug-in costs on this build's target (the host, or
// the appliance's 32-bit ARM under qemu-user), on the virtual appliance:
//   - the plug-in's file as built and stripped, and its text, data and bss;
//   - the heap in use (mallinfo2 of the program's own C library, so 32-bit
//     sizes under emulation) after vcp_load_engine, after MarlEngine_initialize
//     and after a session of scripted turns, and the peak during a turn;
//   - the threads started by each step, named by the library that asked;
//   - the wall time and the instructions (every thread's) from dlopen to the
//     end of MarlEngine_set_commands.
// Run it through its build, which sets the emulator and the file-system map:
//   cmake --build BUILD --target footprint
// Instructions are counted by running this program again up to the end of
// MarlEngine_set_commands and once more only up to the dlopen, under
// callgrind on the host and under qemu-user, one instruction per block with
// each block's execution logged, on the target; the difference is the count.
// --no-instructions leaves that out; --turns N sets the session's turns.
#include "FootprintAccounting.h"

#include "vappliance/Device.h"

#include <voice_control_plugin_engine.h>

#include <Ecore.h>
#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

const char* const kCommands[] = {"show recipes", "open the fridge camera", "what is the weather",
                                 "set a timer",  "play music",             "stop the music",
                                 "show my shopping list", "turn on the light"};
const int kCommandCount = sizeof kCommands / sizeof kCommands[0];

int foreachCommand(int, vcpd_foreach_command_cb callback, void* userData)
{
    for (int i = 0; i < kCommandCount; ++i)
        if (!callback(i + 1, 1, 0, kCommands[i], nullptr, 0, userData))
            break;
    return 0;
}

int commandCount(int)
{
    return kCommandCount;
}

std::atomic<int> gResults{0};

void onResult(vcp_result_event_e, int*, int, const char*, const char*, const char*, const char*, void*)
{
    gResults.fetch_add(1);
}
void onAsrResult(vcp_asr_result_event_e, const char*, void*) {}
void onError(vcp_error_e, const char*, void*) {}
void onEngineInfo(const char*, const char*, const char*, bool, void*) {}

// One turn as the speech service answers a spoken request for recipes: a
// second of server speech in five pieces, the action before the last piece
// (speech that is complete before its action is dropped, and the action then
// waits 5 s).
const char* const kTurnScript = R"([
  {"type": "partial", "text": "show"},
  {"type": "asr", "text": "show recipes", "engineType": "CLOUD", "confidence": 1},
  {"type": "nlu", "text": "{\"domain\":\"Recipe\",\"intent\":\"ShowRecipes\"}", "engineType": "CLOUD",
   "confidence": 1, "speechBytes": 38400, "pieces": 4, "last": false},
  {"type": "action", "agent": "Recipe", "actionType": "None", "commandName": "ShowRecipes",
   "actionName": "Show Recipes", "spokenText": "Here are some recipes.", "rawJson": {"recipes": ["pancakes"]}},
  {"type": "nlu", "text": "{\"domain\":\"Recipe\",\"intent\":\"ShowRecipes\"}", "engineType": "CLOUD",
   "confidence": 1, "speechBytes": 9600, "last": true}
])";

struct Plugin {
    void* handle = nullptr;
    vcpd_funcs_s daemon{};
    vcpe_funcs_s engine{};
    int (*scriptTurn)(const char*) = nullptr;
    int (*waitIdle)(int) = nullptr;
};

[[noreturn]] void fail(const std::string& what)
{
    std::fprintf(stderr, "marl-footprint: %s\n", what.c_str());
    std::exit(1);
}

// A fresh device directory of the virtual appliance for this process.
void makeDevice(const std::string& base)
{
    std::string pattern = base + "/device-XXXXXX";
    if (!::mkdtemp(pattern.data()))
        fail("cannot make a device directory under " + base);
    ::setenv("MARL_DEVICE_DIR", pattern.c_str(), 1);
    std::string error;
    if (!vapp::applyDescription(Json::Value(Json::objectValue), pattern, &error))
        fail("cannot make the device: " + error);
}

// What the report reads between the steps of the start.
struct StartSteps {
    long long heapAfterLoad = 0;
    long long heapAfterInit = 0;
    footprint::Threads afterLoad;
    footprint::Threads afterInit;
};

// dlopen to the end of MarlEngine_set_commands, as the daemon does it.
void openAndStart(Plugin& plugin, const std::string& path, StartSteps* steps = nullptr)
{
    plugin.handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!plugin.handle)
        fail(std::string("dlopen: ") + dlerror());
    auto getInfo = reinterpret_cast<int (*)(vcpe_engine_info_cb, void*)>(dlsym(plugin.handle, "vcp_get_engine_info"));
    auto load = reinterpret_cast<int (*)(vcpd_funcs_s*, vcpe_funcs_s*)>(dlsym(plugin.handle, "vcp_load_engine"));
    if (!getInfo || !load)
        fail("the plug-in's entry points are missing");
    getInfo(onEngineInfo, nullptr);
    plugin.daemon.foreach_command = foreachCommand;
    plugin.daemon.get_command_count = commandCount;
    if (load(&plugin.daemon, &plugin.engine) != 0)
        fail("vcp_load_engine failed");
    if (steps) {
        steps->heapAfterLoad = footprint::heapInUse();
        steps->afterLoad = footprint::threadsNow();
    }
    if (plugin.engine.initialize() != 0)
        fail("MarlEngine_initialize failed");
    if (steps) {
        steps->heapAfterInit = footprint::heapInUse();
        steps->afterInit = footprint::threadsNow();
    }
    plugin.engine.set_result_cb(onResult, nullptr);
    plugin.engine.set_asr_result_cb(onAsrResult, nullptr);
    plugin.engine.set_error_cb(onError, nullptr);
    plugin.engine.set_language("en_US");
    plugin.engine.set_commands(1);
}

bool runLoopUntil(const std::function<bool()>& done, int timeoutMs)
{
    const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done()) {
        if (Clock::now() > end)
            return false;
        ecore_main_loop_iterate();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// One turn: a second of audio in 20 ms chunks, the stop, and the scripted
// answer up to the result. Answers the turn's peak of accounted heap above
// its start.
long long runTurn(Plugin& plugin)
{
    const int resultsBefore = gResults.load();
    footprint::restartPeak();
    const long long start = footprint::accountedNow();
    if (plugin.scriptTurn(kTurnScript) != 0)
        fail("the speech stand-in refused the turn's script");
    plugin.engine.start(false);
    std::vector<short> chunk(320);
    for (int i = 0; i < 50; ++i) {
        for (size_t s = 0; s < chunk.size(); ++s)
            chunk[s] = static_cast<short>((s * 37 + i * 11) % 200 - 100);
        vcp_speech_detect_e detect = VCP_SPEECH_DETECT_NONE;
        plugin.engine.set_recording(chunk.data(), chunk.size() * sizeof(short), &detect);
        ecore_main_loop_iterate();
    }
    plugin.engine.stop();
    if (!runLoopUntil([&] { return gResults.load() > resultsBefore; }, 20000))
        fail("a turn gave no result within 20 s");
    // The library's thread may want the main loop before it is idle.
    runLoopUntil([&] { return plugin.waitIdle(0) == 0; }, 5000);
    return footprint::accountedPeak() - start;
}

std::string describeThreads(const footprint::Threads& threads)
{
    std::string text = std::to_string(threads.created);
    if (threads.creators.empty())
        return text;
    text += " (";
    const char* separator = "";
    for (const auto& [library, count] : threads.creators) {
        text += separator + library + ": " + std::to_string(count);
        separator = ", ";
    }
    return text + ")";
}

// The sizes that `size` reports: allocated read-only sections, allocated
// writable ones with content, allocated writable ones without.
struct Sections {
    unsigned long long text = 0, data = 0, bss = 0;
};

template <typename Ehdr, typename Shdr>
bool sumSections(const std::vector<char>& file, Sections& out)
{
    Ehdr header;
    if (file.size() < sizeof header)
        return false;
    std::memcpy(&header, file.data(), sizeof header);
    if (header.e_shentsize != sizeof(Shdr) || header.e_shoff + header.e_shnum * sizeof(Shdr) > file.size())
        return false;
    for (int i = 0; i < header.e_shnum; ++i) {
        Shdr section;
        std::memcpy(&section, file.data() + header.e_shoff + i * sizeof(Shdr), sizeof section);
        if (!(section.sh_flags & SHF_ALLOC))
            continue;
        if (!(section.sh_flags & SHF_WRITE))
            out.text += section.sh_size;
        else if (section.sh_type == SHT_NOBITS)
            out.bss += section.sh_size;
        else
            out.data += section.sh_size;
    }
    return true;
}

Sections sectionSizes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> file{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    Sections sections;
    const bool read = file.size() > EI_CLASS && (file[EI_CLASS] == ELFCLASS32
                                                    ? sumSections<Elf32_Ehdr, Elf32_Shdr>(file, sections)
                                                    : sumSections<Elf64_Ehdr, Elf64_Shdr>(file, sections));
    if (!read)
        fail(path + " is not an ELF file");
    return sections;
}

std::string kilobytes(long long bytes)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.1f KiB", bytes / 1024.0);
    return text;
}

// Runs `argv`; answers its exit status (-1 when it did not end normally).
int runProgram(const std::vector<std::string>& argv, const std::string& output = "")
{
    const pid_t child = fork();
    if (child == 0) {
        if (!output.empty()) {
            const int fd = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (fd >= 0) {
                dup2(fd, 1);
                dup2(fd, 2);
            }
        }
        std::vector<char*> args;
        for (const std::string& arg : argv)
            args.push_back(const_cast<char*>(arg.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string self()
{
    return fs::read_symlink("/proc/self/exe").string();
}

// The instructions of this program run with `mode` (--window or --baseline).
long long countInstructions(const std::string& mode, const std::string& plugin, const std::string& tmp)
{
#ifdef MARL_FOOTPRINT_QEMU
    // Under qemu-user every guest instruction is a block of its own, and each
    // block's execution is one "Trace" line of the log, read from a pipe.
    const std::string fifo = tmp + "/trace" + mode;
    if (mkfifo(fifo.c_str(), 0600) != 0)
        fail("mkfifo " + fifo);
    const pid_t child = fork();
    if (child == 0) {
        const std::vector<std::string> argv = {MARL_FOOTPRINT_QEMU, "-L", MARL_FOOTPRINT_SYSROOT, "-singlestep",
                                               "-d", "exec,nochain", "-D", fifo, self(), mode, "--plugin", plugin};
        std::_Exit(runProgram(argv, tmp + "/run" + mode + ".txt"));
    }
    const int fd = ::open(fifo.c_str(), O_RDONLY);
    static const char kMark[] = "Trace ";
    const size_t markLength = sizeof kMark - 1;
    long long lines = 0;
    size_t column = 0;  // characters of the line that matched the mark; past it: decided
    std::vector<char> buffer(1 << 20);
    for (ssize_t got; fd >= 0 && (got = ::read(fd, buffer.data(), buffer.size())) > 0;)
        for (ssize_t i = 0; i < got; ++i) {
            if (buffer[i] == '\n')
                column = 0;
            else if (column < markLength)
                column = buffer[i] == kMark[column] ? column + 1 : markLength + 1;
            else
                continue;
            if (column == markLength)
                ++lines;
        }
    if (fd >= 0)
        ::close(fd);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        fail("the counted run " + mode + " failed (" + tmp + "/run" + mode + ".txt)");
    return lines;
#else
    const std::string out = tmp + "/callgrind" + mode;
    const std::vector<std::string> argv = {MARL_FOOTPRINT_VALGRIND, "--tool=callgrind", "--callgrind-out-file=" + out,
                                           self(), mode, "--plugin", plugin};
    if (runProgram(argv, tmp + "/run" + mode + ".txt") != 0)
        fail("the counted run " + mode + " failed (is valgrind installed? " + tmp + "/run" + mode + ".txt)");
    std::ifstream in(out);
    for (std::string line; std::getline(in, line);)
        if (line.rfind("summary: ", 0) == 0 || line.rfind("totals: ", 0) == 0)
            return std::stoll(line.substr(line.find(' ') + 1));
    fail("no total in " + out);
#endif
}

}  // namespace

int main(int argc, char** argv)
{
    std::string plugin = MARL_FOOTPRINT_PLUGIN;
    std::string mode;
    int turns = 10;
    bool instructions = true;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--plugin" && i + 1 < argc)
            plugin = argv[++i];
        else if (arg == "--turns" && i + 1 < argc)
            turns = std::atoi(argv[++i]);
        else if (arg == "--no-instructions")
            instructions = false;
        else if (arg == "--window" || arg == "--baseline")
            mode = arg;
        else {
            std::fprintf(stderr, "usage: marl-footprint [--plugin PATH] [--turns N] [--no-instructions]\n");
            return 2;
        }
    }
    const char* preload = std::getenv("LD_PRELOAD");
    if (!preload || !std::strstr(preload, "vappliance-fsmap"))
        fail("run me with the file-system map preloaded: cmake --build BUILD --target footprint");
    // The counted runs make their device in their caller's folder.
    const char* given = std::getenv(mode.empty() ? "TMPDIR" : "MARL_FOOTPRINT_TMP");
    std::string tmp = std::string(given && *given ? given : "/tmp");
    if (mode.empty()) {
        tmp += "/marl-footprint-XXXXXX";
        if (!::mkdtemp(tmp.data()))
            fail("cannot make " + tmp);
    }
    makeDevice(tmp);

    // As marl-sim: no system modules for Ecore (they want a system bus).
    ::setenv("ECORE_NO_SYSTEM_MODULES", "1", 0);
    ::setenv("EINA_LOG_BACKTRACE", "-1", 0);
    ecore_init();
    Plugin session;
    if (!mode.empty()) {
        // The counted runs: up to the end of MarlEngine_set_commands, or only
        // up to the dlopen; no teardown.
        if (mode == "--window")
            openAndStart(session, plugin);
        std::fflush(nullptr);
        _exit(0);
    }

    footprint::startAccounting();
    const footprint::Threads before = footprint::threadsNow();
    const long long heapBefore = footprint::heapInUse();
    StartSteps steps;
    const auto start = Clock::now();
    openAndStart(session, plugin, &steps);
    const double startupMs = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    const footprint::Threads afterStart = footprint::threadsNow();

    session.scriptTurn = reinterpret_cast<int (*)(const char*)>(dlsym(session.handle, "speech_standin_script_turn"));
    session.waitIdle = reinterpret_cast<int (*)(int)>(dlsym(session.handle, "speech_standin_wait_idle"));
    if (!session.scriptTurn || !session.waitIdle)
        fail("the speech stand-in's control functions are not there: is the plug-in linked against it?");
    long long turnPeak = 0;
    long long heapAfterFirstTurn = 0;
    for (int turn = 0; turn < turns; ++turn) {
        turnPeak = std::max(turnPeak, runTurn(session));
        if (turn == 0)
            heapAfterFirstTurn = footprint::heapInUse();
    }
    const long long heapAfterSession = footprint::heapInUse();
    const footprint::Threads afterSession = footprint::threadsNow();
    session.engine.deinitialize();
    dlclose(session.handle);
    ecore_shutdown();

    const Sections sections = sectionSizes(plugin);
    std::printf("footprint of %s\n", plugin.c_str());
    const bool built = plugin == MARL_FOOTPRINT_PLUGIN;
    std::printf("  file                  %s as built, %s stripped (strip --strip-unneeded)\n",
                kilobytes(static_cast<long long>(fs::file_size(plugin))).c_str(),
                built ? kilobytes(static_cast<long long>(fs::file_size(MARL_FOOTPRINT_STRIPPED))).c_str() : "?");
    std::printf("  sections              text %llu, data %llu, bss %llu bytes\n", sections.text, sections.data,
                sections.bss);
    std::printf("  heap in use           %s before dlopen; above that: %s after vcp_load_engine, %s after "
                "MarlEngine_initialize, %s after the first turn, %s after %d turns\n",
                kilobytes(heapBefore).c_str(), kilobytes(steps.heapAfterLoad - heapBefore).c_str(),
                kilobytes(steps.heapAfterInit - heapBefore).c_str(), kilobytes(heapAfterFirstTurn - heapBefore).c_str(),
                kilobytes(heapAfterSession - heapBefore).c_str(), turns);
    std::printf("  heap peak of a turn   %s above the turn's start (the most of %d turns)\n",
                kilobytes(turnPeak).c_str(), turns);
    std::printf("  threads started       %s by vcp_load_engine, %s by MarlEngine_initialize, %s by the "
                "callback setters, set_language and set_commands, %s in the %d turns; %d of them running at the "
                "end, %d at most at once\n",
                describeThreads(footprint::threadsBetween(before, steps.afterLoad)).c_str(),
                describeThreads(footprint::threadsBetween(steps.afterLoad, steps.afterInit)).c_str(),
                describeThreads(footprint::threadsBetween(steps.afterInit, afterStart)).c_str(),
                describeThreads(footprint::threadsBetween(afterStart, afterSession)).c_str(), turns,
                afterSession.alive - before.alive, afterSession.mostAlive - before.alive);
    std::printf("  dlopen to the end of MarlEngine_set_commands: %.1f ms wall time\n", startupMs);
    if (instructions) {
        ::setenv("MARL_FOOTPRINT_TMP", tmp.c_str(), 1);
        const long long window = countInstructions("--window", plugin, tmp);
        const long long baseline = countInstructions("--baseline", plugin, tmp);
        std::printf("  dlopen to the end of MarlEngine_set_commands: %lld instructions (%lld counted, %lld before "
                    "the dlopen)\n",
                    window - baseline, window, baseline);
    }
    std::error_code ec;
    fs::remove_all(tmp, ec);
    return 0;
}
