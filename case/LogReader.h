// Reads the platform log as its reader prints it, in any of these forms:
//
//   appliance   2024-05-02 14:03:07.512 D/VoiceEnginePlugIn( 4711): message
//   time        05-02 14:03:07.512+0900 D/vcd     ( 4711): message          (zone optional)
//   threadtime  05-02 14:03:07.512+0900 D/vcd     (P 4711, T 4712): message (zone optional)
//               05-02 14:03:07.512  4711  4712 D vcd     : message          (the older threadtime)
//   kerneltime  12345.512+0900 D/vcd     (P 4711, T 4712): message          (seconds since boot)
//   brief       D/vcd     ( 4711): message                                  (no time)
//
// A message that holds a newline goes on in the lines after it: in the
// appliance's form as lines without a prefix (taken as such while a "[" of
// the message is open), in the reader's forms as lines with the same prefix
// and no location; both are put back together.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace marlcase
{

struct LogLine {
    size_t file = 0;    // which of the logs read
    size_t number = 0;  // its line number there (of the first line of a message)
    // Milliseconds of the line's clock: since the epoch (the appliance's form,
    // local time taken as it stands), since the start of a year (the forms
    // without a year) or since boot (kerneltime). 0 when the form has no time.
    long long ms = 0;
    enum Clock { None, Dated, YearLess, Boot } clock = None;
    int zoneMinutes = 0;  // the zone the line gives, if any
    bool zoned = false;
    int pid = -1;
    int tid = -1;
    char level = 'D';
    std::string tag;
    std::string message;
    // "%s: %s(%d) > " at the start of the message: source file, function and
    // line; text is what follows. Empty source when the message has none.
    std::string source;
    std::string function;
    int sourceLine = 0;
    std::string text;
};

struct LogRead {
    std::vector<LogLine> lines;      // of every tag, in the order read
    std::vector<std::string> problems;  // "LOG:12: ..." for each line that could not be read
    size_t otherLines = 0;           // banners and blank lines passed over
};

// Reads one log's text; `name` names it in problems, `index` goes into each
// line's `file`. Never fails as a whole: what cannot be read is in problems.
void readLog(const std::string& text, const std::string& name, size_t index, LogRead& out);

// Splits "%s: %s(%d) > text" off a message.
bool splitLocation(const std::string& message, std::string& source, std::string& function, int& line,
                   std::string& text);

}  // namespace marlcase
