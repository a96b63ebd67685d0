// Instruction counts of chosen stretches of code, measured with callgrind.
//
// This machine's virtual processor exposes no hardware counters to
// perf_event_open (`perf stat -e instructions` answers "not supported"), so
// the counts come from valgrind's callgrind: the program runs itself under
//   valgrind --tool=callgrind --collect-atstart=no
// and turns collection on only around the code being measured; a count is
// read back by dumping the statistics (a client request that writes the dump
// before it returns) and reading the dump's "summary:" line. Instructions of
// every thread count, so work that the code hands to another thread is in the
// count when the caller waits for it inside the stretch.
#pragma once

#include <cstdint>
#include <string>

namespace bench {

// True when the program runs under valgrind.
bool underValgrind();

// Runs this program again under callgrind, with its arguments, and exits with
// its exit status; returns only when valgrind cannot be started (the reason
// on stderr).
void runUnderCallgrind(int argc, char** argv);

// Collection on and off around the measured stretches; read() answers the
// instructions executed while on since the last read() and starts again.
class InstructionCount {
public:
    InstructionCount();
    void resume();
    void pause();
    uint64_t read(const std::string& label);

private:
    bool mOn = false;
};

}  // namespace bench
