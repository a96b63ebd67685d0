// The text forms of a transcript: the readable one (one line per entry, with
// times) and the normalized one that expected transcripts are kept in.
#pragma once

#include <json/json.h>

#include <string>
#include <utility>
#include <vector>

namespace sim
{

class TranscriptSink;

struct RenderOptions {
    // Without times, with the substitutions applied and with pointers and
    // present times masked: the form that expected transcripts are kept in.
    bool normalized = false;
    // Text replaced by a placeholder in the normalized form, e.g. the device
    // directory by "$DEVICE"; longest first.
    std::vector<std::pair<std::string, std::string>> substitutions;
    long long nowEpochMs = 0;  // for masking present times
    // The lines of pulled device data that the normalized form keeps, by the
    // names they begin with; the full form keeps all, unless briefDeviceData.
    std::vector<std::string> deviceDataKept;
    bool briefDeviceData = false;
};

// The header's lines.
std::string renderHeader(const Json::Value& header, const RenderOptions& options);

// One section of entries (a turn, from its "turn" entry to the next one).
// `previousT` carries the time of the last entry shown across sections, for
// the pauses of the normalized form.
std::string renderSection(const std::vector<Json::Value>& entries, const RenderOptions& options,
                          long long& previousT);

// The whole transcript at once.
std::string render(const Json::Value& header, const std::vector<Json::Value>& entries,
                   const RenderOptions& options);

// Compact one-line JSON.
std::string compact(const Json::Value& value);

// The daemon's name of a result event: "SUCCESS", "REJECTED", "ERROR".
std::string resultEventName(int event);

}  // namespace sim
