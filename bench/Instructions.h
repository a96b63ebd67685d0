// Instruction counts of chosen stretches of code, measured with callgrind.
//
// This machine's virtual processor exposes no hardware counters to
// perf_event_open (`perf stat -e instructions` answers "not supported"), so
// the counts come from valgrind's callgrind: the program runs itself under
//   valgrind --tool=callgrind --collect-atstart=yes
// Callgrind switches collection per thread (a toggle request turns it on or
// off for the calling thread only), so collection stays on in every thread,
// those that the measured code starts included, from their first
// instruction. A stretch starts and ends with a dump of every thread's
// counters (a client request that writes the file before it returns and
// zeroes the counters; the first dump's figures are dropped); the second
// dump's "totals:" line is the stretch's instructions, every thread's summed.
// Work that the code hands to another thread is in the count when the caller
// waits for it inside the stretch; whatever any thread runs between two
// stretches is in none.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

// True when the program runs under valgrind.
bool underValgrind();

// Runs this program again under callgrind, with its arguments, and exits with
// its exit status; returns only when valgrind cannot be started (the reason
// on stderr).
void runUnderCallgrind(int argc, char** argv);

// The instructions of every thread during the stretches between resume() and
// pause(); read() answers their sum since the last read() and starts again.
// Each stretch is one dump, named `label` (MARL_BENCH_KEEP_DUMPS=1 keeps them).
class InstructionCount {
public:
    explicit InstructionCount(std::string label);
    void resume();
    void pause();
    uint64_t read();

private:
    bool mOn = false;
    const std::string mLabel;
    const std::string mBeforeLabel;
    const bool mCounting;    // under callgrind
    std::vector<int> mDumps;  // the numbers of the dumps that ended a stretch
};

}  // namespace bench
