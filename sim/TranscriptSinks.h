// The transcript's own sinks: the text forms on a stream and the JSON file.
// Each writes as the entries come, holding at most one turn.
#pragma once

#include "Render.h"
#include "Transcript.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace sim
{

// The readable or normalized form, one turn at a time. The header is printed
// before the first entries, so it must be complete by the first flush.
class TextSink : public TranscriptSink
{
public:
    TextSink(std::FILE* out, const Json::Value& header, RenderOptions options);
    void entry(const Json::Value& entry) override;
    void finish(const Json::Value& header) override;

private:
    void writeSection();

    std::FILE* mOut;
    const Json::Value& mHeader;
    RenderOptions mOptions;
    std::vector<Json::Value> mSection;
    long long mPreviousT = -1;
    bool mHeaderWritten = false;
};

// {"entries": [...], "header": {...}}: the entries as they come, the header
// at the end, when it is complete.
class JsonFileSink : public TranscriptSink
{
public:
    // False with `error` when the file cannot be written.
    bool open(const std::string& path, std::string& error);
    void entry(const Json::Value& entry) override;
    void finish(const Json::Value& header) override;
    // After finish(): whether everything reached the file.
    bool good() const { return mOut.good(); }

private:
    std::ofstream mOut;
    bool mFirst = true;
};

// A writer with entry() and bool finish(header, error) (the trace, the page)
// as a sink; its verdict is kept for after the session.
template <class Writer>
class WriterSink : public TranscriptSink
{
public:
    explicit WriterSink(const std::string& path) : mWriter(path) {}
    void entry(const Json::Value& entry) override { mWriter.entry(entry); }
    void finish(const Json::Value& header) override { mGood = mWriter.finish(header, &mError); }
    // After finish(): false, with the writer's message, when the file was not written.
    bool good(std::string* error) const
    {
        if (!mGood)
            *error = mError;
        return mGood;
    }

private:
    Writer mWriter;
    bool mGood = true;
    std::string mError;
};

}  // namespace sim
