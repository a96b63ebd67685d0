// The appliance as the daemon's host sees it: the files under the device's
// root and the appliance's journal.
#include "SessionImpl.h"

#include "vappliance/Device.h"

#include <sndfile.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace fs = std::filesystem;

namespace sim
{
namespace session
{

bool writeSpeechWav(const std::string& pcm, const std::string& wav, std::string& error)
{
    SF_INFO format = {};
    format.samplerate = 24000;
    format.channels = 1;
    format.format = SF_FORMAT_RAW | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE;
    SNDFILE* in = sf_open(pcm.c_str(), SFM_READ, &format);
    if (!in) {
        error = std::string("cannot read it: ") + sf_strerror(nullptr);
        return false;
    }
    std::vector<short> samples(static_cast<size_t>(format.frames));
    samples.resize(static_cast<size_t>(std::max<sf_count_t>(0, sf_readf_short(in, samples.data(), format.frames))));
    sf_close(in);
    std::error_code ec;
    fs::create_directories(fs::path(wav).parent_path(), ec);
    SF_INFO info = {};
    info.samplerate = 24000;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* out = sf_open(wav.c_str(), SFM_WRITE, &info);
    if (!out) {
        error = "cannot write " + wav + ": " + sf_strerror(nullptr);
        return false;
    }
    const sf_count_t written = sf_writef_short(out, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(out);
    if (written != static_cast<sf_count_t>(samples.size())) {
        error = "cannot write " + wav;
        return false;
    }
    return true;
}

void Session::scanFiles()
{
    std::map<std::string, FileState> now;
    const fs::path root = vapp::rootDir();
    std::error_code ec;
    for (fs::recursive_directory_iterator it(root, ec), end; !ec && it != end; it.increment(ec)) {
        struct stat st;
        if (::lstat(it->path().c_str(), &st) != 0 || !S_ISREG(st.st_mode))
            continue;
        const std::string path = "/" + it->path().lexically_relative(root).string();
        now[path] = {static_cast<uintmax_t>(st.st_size),
                     st.st_mtim.tv_sec * 1000000000LL + st.st_mtim.tv_nsec,
                     static_cast<uintmax_t>(st.st_ino)};
    }
    for (const auto& file : now) {
        const auto before = mFiles.find(file.first);
        if (before != mFiles.end() && !(before->second != file.second))
            continue;
        Json::Value entry;
        entry["kind"] = "file";
        entry["change"] = before == mFiles.end() ? "new" : "changed";
        entry["path"] = file.first;
        entry["bytes"] = Json::UInt64(file.second.size);
        mTranscript.add(entry);
    }
    for (const auto& file : mFiles) {
        if (now.count(file.first))
            continue;
        Json::Value entry;
        entry["kind"] = "file";
        entry["change"] = "removed";
        entry["path"] = file.first;
        mTranscript.add(entry);
    }
    mFiles = std::move(now);
}

// Complete lines of the journal written since the last look.
std::vector<Json::Value> Session::pollJournal()
{
    std::vector<Json::Value> entries;
    std::ifstream in(vapp::devicePath("journal.jsonl"), std::ios::binary);
    if (!in)
        return entries;
    in.seekg(mJournalOffset);
    std::string rest((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    size_t start = 0;
    for (size_t end = rest.find('\n'); end != std::string::npos; end = rest.find('\n', start)) {
        const std::string text = rest.substr(start, end - start);
        start = end + 1;
        const Json::Value line = parseJson(text);
        Json::Value entry = line.isObject() ? line : Json::Value(Json::objectValue);
        if (!line.isObject())
            entry["unreadable"] = text;
        entry["kind"] = "device";
        entry["t"] = Json::Int64(line["time"].asInt64() - mTranscript.startEpochMs());
        entry["thread"] = "journal";
        entry.removeMember("time");
        entries.push_back(entry);
    }
    mJournalOffset += static_cast<std::streamoff>(start);
    return entries;
}


}  // namespace session
}  // namespace sim
