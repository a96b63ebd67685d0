#include "standin/Observation.h"
#include "standin/SpeechStandIn.h"

#include <atomic>
#include <mutex>

namespace {

// Held while the observer runs, so that observations arrive one at a time.
// Recursive: an observer may call back into the stand-in.
std::recursive_mutex gObserverMutex;
speech_standin_observer_cb gObserver = nullptr;
void* gObserverData = nullptr;

std::atomic<std::thread::id> gLibraryThread{std::thread::id()};

}  // namespace

namespace standin {

std::string toText(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

bool onLibraryThread()
{
    return gLibraryThread.load() == std::this_thread::get_id();
}

void setLibraryThread(std::thread::id id)
{
    gLibraryThread.store(id);
}

void observe(Json::Value observation)
{
    std::lock_guard<std::recursive_mutex> lock(gObserverMutex);
    if (!gObserver)
        return;
    observation["thread"] = onLibraryThread() ? "library" : "caller";
    const std::string text = toText(observation);
    gObserver(text.c_str(), gObserverData);
}

bool observing()
{
    std::lock_guard<std::recursive_mutex> lock(gObserverMutex);
    return gObserver != nullptr;
}

}  // namespace standin

extern "C" void speech_standin_set_observer(speech_standin_observer_cb observer, void* user_data)
{
    std::lock_guard<std::recursive_mutex> lock(gObserverMutex);
    gObserver = observer;
    gObserverData = user_data;
}
