#include "Transcript.h"

namespace sim
{

namespace
{

long long epochMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

Transcript::Transcript() : mStart(std::chrono::steady_clock::now()), mStartEpochMs(epochMs()) {}

void Transcript::setPoller(Poller poller)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mPoller = std::move(poller);
}

void Transcript::addSink(TranscriptSink* sink)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mSinks.push_back(sink);
}

void Transcript::nameThread(const std::string& name)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mThreadNames[std::this_thread::get_id()] = name;
}

bool Transcript::threadNamed() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mThreadNames.count(std::this_thread::get_id()) > 0;
}

size_t Transcript::add(Json::Value entry)
{
    std::lock_guard<std::mutex> lock(mMutex);
    pollLocked();
    if (!entry.isMember("t"))
        entry["t"] = Json::Int64(elapsedMs());
    const auto name = mThreadNames.find(std::this_thread::get_id());
    entry["thread"] = name == mThreadNames.end() ? std::string("worker") : name->second;
    push(std::move(entry));
    return mFirst + mEntries.size() - 1;
}

void Transcript::push(Json::Value entry)
{
    mEntries.push_back(std::move(entry));
}

void Transcript::set(size_t index, const char* member, Json::Value value)
{
    std::lock_guard<std::mutex> lock(mMutex);
    if (index >= mFirst && index - mFirst < mEntries.size())
        mEntries[index - mFirst][member] = std::move(value);
}

void Transcript::poll()
{
    std::lock_guard<std::mutex> lock(mMutex);
    pollLocked();
}

void Transcript::pollLocked()
{
    if (!mPoller)
        return;
    for (auto& entry : mPoller())
        push(std::move(entry));
}

std::vector<Json::Value> Transcript::entriesFrom(size_t index) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    const size_t from = index > mFirst ? index - mFirst : 0;
    std::vector<Json::Value> list;
    for (size_t i = from; i < mEntries.size(); ++i)
        list.push_back(mEntries[i]);
    return list;
}

void Transcript::flush()
{
    std::lock_guard<std::mutex> flushing(mFlushMutex);
    std::deque<Json::Value> done;
    std::vector<TranscriptSink*> sinks;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        pollLocked();
        done.swap(mEntries);
        mFirst += done.size();
        sinks = mSinks;
    }
    for (const auto& entry : done)
        for (auto* sink : sinks)
            sink->entry(entry);
}

void Transcript::finish()
{
    flush();
    std::vector<TranscriptSink*> sinks;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        sinks = mSinks;
    }
    for (auto* sink : sinks)
        sink->finish(header);
}

long long Transcript::elapsedMs() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 mStart)
        .count();
}

}  // namespace sim
