// Host-side control of the speech library stand-in (libasr-nlu.so on the
// virtual appliance). The plug-in never includes this header: only the daemon
// simulator and the tests do, to script what the speech service answers and to
// observe what the library is told.
//
// Observations are JSON objects, one per call of the observer, in the order the
// library saw them. Every object has "what" and "thread" ("caller" when the
// plug-in called in, "library" when the library's own thread acted; the
// parser's observations say "library" when the plug-in called the parser from
// a speech listener, as it normally does):
//   {"what":"init","config":{...all Config fields by name...},"recognitionManager":true}
//   {"what":"changeLocale","locale":"en-US"}
//   {"what":"setCommandList","document":"<text>"}
//   {"what":"syncUserData"}
//   {"what":"setRecognitionListener"} / {"what":"setSpeechDetectionListener","option":0}
//   {"what":"startRecognition","flag":false,"keepContext":true,"type":2,"mode":0,"accepted":true}
//   {"what":"deviceData","facets":{"Alarm":{"getDefaultAlarmName":"Alarm",...},...},
//        "nluParams":{"System":"{...}","Recipe":null,...} or null,
//        "recoState":"{...}" or null}
//        (pulled on the library's thread at each accepted start; one "facets"
//        member per facet, named as in getDevice<Name>Data, null for a null
//        facet; see appliance/speech/README.md)
//   {"what":"audio","samples":320,"total":3200,"epd":false}   (total: samples since the last start)
//   {"what":"speech","event":"begin"|"end"}
//   {"what":"processDriverResponse","text":"..."}
//   {"what":"processText","length":5} / {"what":"processListEvent","text":"..."}
//   {"what":"processHepticEvent","text":"..."}
//   {"what":"stopRecognition"} / {"what":"cancelRecognition"}
//   {"what":"deliver","event":{...the scripted server event...}}
//        (with "by":"recognizer" or "by":"service" in a listening turn: a
//        partial or embedded result, or an event of the appliance's service)
//   {"what":"grammar","commands":[...],"leftOut":[...],"unknownWords":[...],
//        "workMs":1200}                                                     (listening)
//   {"what":"recognition","text":"...","score":-3,"accepted":true,"command":false,
//        "speechDetected":true,"workMs":300} or {"what":"recognition","problem":"..."}
//        (listening; workMs: how long loading and the grammar, or the last
//        decoding, took)
//   {"what":"synthesis","problem":"..."}                                   (listening)
//   {"what":"parse","data":"...","responseType":1,"isLast":true}      (parser stand-in)
//   {"what":"driverRequest","request":"...","response":"..."}         (parser stand-in)
//   {"what":"executeOVAction","agent":"...","actionType":"...",...}   (parser stand-in)
//   {"what":"shutdown"}
#ifndef SPEECH_STAND_IN_H
#define SPEECH_STAND_IN_H

#ifdef __cplusplus
extern "C" {
#endif

typedef void (*speech_standin_observer_cb)(const char* json, void* user_data);

// Receives every observation; called on whichever thread made it, one at a
// time. The observer must not wait for the library (speech_standin_wait_idle)
// since the library's thread may be waiting to report. Null stops.
void speech_standin_set_observer(speech_standin_observer_cb observer, void* user_data);

// The server's events for the next voice turn: a JSON array of event objects as
// a scenario's "server" list (partial, asr, nlu, action, driverRequest, error,
// wait). They are delivered on the library's thread, in order, once the turn's
// recognition is stopped; a cancelled turn drops them. A driverRequest event
// pauses the list until the driver-response turn it opens is stopped. Returns 0,
// or -1 with a message on stderr when the text is not such a list.
int speech_standin_script_turn(const char* events_json);

// Waits until the library's thread has delivered every scripted event and has
// nothing queued. Returns 0 when idle, -1 on time-out. Scripts whose turn has
// not been stopped yet do not count; a delivery paused by a driverRequest
// does, so it times out until the driver-response turn is stopped. Returns 0
// at once when the library is not initialised, -1 at once on its own thread.
int speech_standin_wait_idle(int timeout_ms);

// Test hooks: the next startRecognition answers `accepted` (one start only; a
// refused start opens no turn and pulls no device data); getState answers
// `state`; Tessel::init makes no recognition manager when `without_manager`.
// Tessel::shutdown returns the hooks to their defaults and forgets the
// scripts not yet delivered.
void speech_standin_set_start_result(int accepted);
void speech_standin_set_state(int state);
void speech_standin_set_without_manager(int without_manager);

// Listening (1) or not (0, the default) for the voice turns started from now
// on. A listening turn's audio is recognized against the grammar of the
// command document and the speech service's requests (pocketsphinx, US
// English): partial results while speech goes on, and at the stop an
// "EMBEDDED" result, the command heard with confidence 1, or empty text with
// confidence 0. Then the turn's script is delivered if it has one; otherwise
// the appliance's speech service answers: it asks the plug-in its driver
// requests and speaks its answer (espeak-ng, 24 kHz) with the final NLU
// result. Tessel::shutdown turns listening off.
void speech_standin_listen(int listen);

#ifdef __cplusplus
}
#endif

#endif
