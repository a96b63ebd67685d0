#include "TranscriptSinks.h"

namespace sim
{

TextSink::TextSink(std::FILE* out, const Json::Value& header, RenderOptions options)
    : mOut(out), mHeader(header), mOptions(std::move(options))
{
}

void TextSink::entry(const Json::Value& entry)
{
    // A section runs from one "turn" or "section" entry to the next: the
    // normalized form orders what the appliance saw within it.
    if ((entry["kind"] == "turn" || entry["kind"] == "section") && !mSection.empty())
        writeSection();
    mSection.push_back(entry);
}

void TextSink::writeSection()
{
    if (!mHeaderWritten) {
        std::fputs(renderHeader(mHeader, mOptions).c_str(), mOut);
        mHeaderWritten = true;
    }
    std::fputs(renderSection(mSection, mOptions, mPreviousT).c_str(), mOut);
    std::fflush(mOut);
    mSection.clear();
}

void TextSink::finish(const Json::Value&)
{
    writeSection();
}

bool JsonFileSink::open(const std::string& path, std::string& error)
{
    mOut.open(path, std::ios::binary | std::ios::trunc);
    mOut << "{\"entries\": [";
    if (!mOut.good()) {
        error = "cannot write " + path;
        return false;
    }
    return true;
}

void JsonFileSink::entry(const Json::Value& entry)
{
    if (!mOut.is_open())
        return;
    mOut << (mFirst ? "\n " : ",\n ") << compact(entry);
    mFirst = false;
}

void JsonFileSink::finish(const Json::Value& header)
{
    if (!mOut.is_open())
        return;
    Json::StreamWriterBuilder builder;
    builder["indentation"] = " ";
    builder["emitUTF8"] = true;
    mOut << "\n],\n\"header\": " << Json::writeString(builder, header) << "\n}\n";
    mOut.flush();
}

}  // namespace sim
