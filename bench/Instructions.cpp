#include "Instructions.h"

#include <valgrind/callgrind.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace bench {

namespace {

const char* kOutVariable = "MARL_BENCH_CALLGRIND_OUT";
int gDumps = 0;

}  // namespace

bool underValgrind()
{
    return RUNNING_ON_VALGRIND != 0;
}

void runUnderCallgrind(int argc, char** argv)
{
    char pattern[] = "/tmp/marl-bench-XXXXXX";
    if (!::mkdtemp(pattern)) {
        std::fprintf(stderr, "bench: cannot make a folder for callgrind's dumps: %s\n", std::strerror(errno));
        return;
    }
    const std::string out = std::string(pattern) + "/callgrind.out";
    ::setenv(kOutVariable, out.c_str(), 1);
    const std::string outOption = "--callgrind-out-file=" + out;
    std::vector<char*> args = {const_cast<char*>("valgrind"), const_cast<char*>("--tool=callgrind"),
                               const_cast<char*>("--collect-atstart=yes"), const_cast<char*>("--quiet"),
                               const_cast<char*>(outOption.c_str())};
    for (int i = 0; i < argc; ++i)
        args.push_back(argv[i]);
    args.push_back(nullptr);
    const pid_t child = ::fork();
    if (child < 0) {
        std::fprintf(stderr, "bench: cannot start valgrind: %s\n", std::strerror(errno));
        return;
    }
    if (child == 0) {
        ::execvp("valgrind", args.data());
        std::fprintf(stderr, "bench: cannot run valgrind (%s); install it with bash scripts/setup-bench.sh\n",
                     std::strerror(errno));
        ::_exit(127);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    // The dumps are read and removed as they come (unless kept); the one made
    // at exit is left.
    ::unlink(out.c_str());
    ::rmdir(pattern);
    std::exit(WIFEXITED(status) ? WEXITSTATUS(status) : 1);
}

namespace {

// The file of dump `number`: <out>.1, <out>.2, ...
std::string dumpFile(int number)
{
    const char* out = std::getenv(kOutVariable);
    return std::string(out ? out : "") + "." + std::to_string(number);
}

// The instructions in a dump: its "totals:" line, the sum of what it holds
// (its "summary:" line can also hold what a thread that was waiting ran
// before the counters were last zeroed).
uint64_t totalOf(const std::string& file)
{
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);)
        if (line.compare(0, 8, "totals: ") == 0)
            return std::strtoull(line.c_str() + 8, nullptr, 10);
    return 0;
}

// MARL_BENCH_KEEP_DUMPS=1 keeps each dump for callgrind_annotate.
void dropDump(const std::string& file, const std::string& label)
{
    const char* keep = std::getenv("MARL_BENCH_KEEP_DUMPS");
    if (keep && std::strcmp(keep, "1") == 0)
        std::fprintf(stderr, "bench: %s kept in %s\n", label.c_str(), file.c_str());
    else
        ::unlink(file.c_str());
}

}  // namespace

InstructionCount::InstructionCount(std::string label)
    : mLabel(std::move(label)),
      mBeforeLabel(mLabel + " (before)"),
      mCounting(underValgrind() && std::getenv(kOutVariable))
{
    mDumps.reserve(4096);
}

// Between two stretches nothing is read or written on the heap: what the
// measured code allocates would otherwise meet another heap (reading the dumps
// as they came made a 1,000-command list's floor 14 % dearer).
void InstructionCount::resume()
{
    if (mOn)
        return;
    mOn = true;
    if (!mCounting)
        return;
    // A dump rather than a zeroing: after a zeroing alone the next dump still
    // held some of what a waiting thread had run before (about 40,000
    // instructions in a chunk's stretch). Its figures are dropped.
    gDumps += 1;
    CALLGRIND_DUMP_STATS_AT(mBeforeLabel.c_str());
}

void InstructionCount::pause()
{
    if (!mOn)
        return;
    mOn = false;
    if (!mCounting)
        return;
    CALLGRIND_DUMP_STATS_AT(mLabel.c_str());
    mDumps.push_back(++gDumps);
}

uint64_t InstructionCount::read()
{
    pause();
    uint64_t total = 0;
    for (const int number : mDumps) {
        total += totalOf(dumpFile(number));
        dropDump(dumpFile(number - 1), mBeforeLabel);
        dropDump(dumpFile(number), mLabel);
    }
    mDumps.clear();
    return total;
}

}  // namespace bench
