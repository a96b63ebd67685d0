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
                               const_cast<char*>("--collect-atstart=no"), const_cast<char*>("--quiet"),
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

InstructionCount::InstructionCount()
{
    CALLGRIND_ZERO_STATS;
}

void InstructionCount::resume()
{
    if (!mOn) {
        CALLGRIND_TOGGLE_COLLECT;
        mOn = true;
    }
}

void InstructionCount::pause()
{
    if (mOn) {
        CALLGRIND_TOGGLE_COLLECT;
        mOn = false;
    }
}

uint64_t InstructionCount::read(const std::string& label)
{
    pause();
    const char* out = std::getenv(kOutVariable);
    if (!underValgrind() || !out)
        return 0;
    CALLGRIND_DUMP_STATS_AT(label.c_str());
    // Each dump is a file of its own: <out>.1, <out>.2, ...
    const std::string dump = std::string(out) + "." + std::to_string(++gDumps);
    std::ifstream in(dump);
    uint64_t total = 0;
    for (std::string line; std::getline(in, line);) {
        if (line.compare(0, 9, "summary: ") == 0) {
            total = std::strtoull(line.c_str() + 9, nullptr, 10);
            break;
        }
    }
    in.close();
    // MARL_BENCH_KEEP_DUMPS=1 keeps each dump for callgrind_annotate.
    const char* keep = std::getenv("MARL_BENCH_KEEP_DUMPS");
    if (keep && std::strcmp(keep, "1") == 0)
        std::fprintf(stderr, "bench: %s kept in %s\n", label.c_str(), dump.c_str());
    else
        ::unlink(dump.c_str());
    return total;
}

}  // namespace bench
