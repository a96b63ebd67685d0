#include "vappliance/Device.h"
#include "Internal.h"

#include <fstream>

namespace vapp {

using namespace internal;

// --- the journal ---------------------------------------------------------------

void journal(const char* event, Json::Value entry)
{
    if (!deviceExists())
        return;
    entry["time"] = Json::Int64(nowMs());
    entry["event"] = event;
    const std::string line = writeJson(entry, false) + "\n";
    const int fd = ::open(devicePath("journal.jsonl").c_str(),
                          O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return;
    ::flock(fd, LOCK_EX);
    const ssize_t written = ::write(fd, line.data(), line.size());
    (void)written;
    ::close(fd);
}

std::vector<Json::Value> readJournal(size_t from)
{
    std::vector<Json::Value> entries;
    std::ifstream in(devicePath("journal.jsonl"));
    std::string line;
    for (size_t index = 0; std::getline(in, line); ++index) {
        Json::Value entry;
        if (index >= from && parseJson(line, entry, nullptr))
            entries.push_back(entry);
    }
    return entries;
}

}  // namespace vapp
