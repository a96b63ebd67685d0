// The observation channel of the speech and parser stand-ins (host only).
// Both libraries report what they are told and what they do through the
// observer that speech_standin_set_observer installs.
#ifndef STANDIN_OBSERVATION_H
#define STANDIN_OBSERVATION_H

#include <json/json.h>

#include <string>
#include <thread>

namespace standin {

// Adds "thread" ("library" on the speech library's own thread, "caller" on
// any other) and hands the object, as one line of JSON, to the observer.
void observe(Json::Value observation);

// Whether an observer is installed: an observation that is costly to build
// is built only then.
bool observing();

// True when called on the speech library's own thread.
bool onLibraryThread();
void setLibraryThread(std::thread::id id);

// Compact one-line JSON text of a value.
std::string toText(const Json::Value& value);

}  // namespace standin

#endif
