// The words on which the whole client agrees. They travel to the server and to
// the closed libraries and are compared exactly: spelling, blanks and case are
// part of each value.
#ifndef ORVANE_VOCABULARY_H
#define ORVANE_VOCABULARY_H

namespace DeviceProfileNames {
static const char* const HUB_HEARTHLINK = "Halden Hub Hearthlink Version 1.0 - Tizen SDK 2.3.0";
static const char* const REFRIGERATOR = "Halden Refrigerator Smart Home Version 1.0 - Tizen SDK 3.0.0";
static const char* const WEARABLE_1_0 = "Halden Wearable Version 1.0 - Tizen SDK 2.3.1";
static const char* const WEARABLE_1_1 = "Halden Wearable Version 1.1 - Tizen SDK 2.3.2";
}  // namespace DeviceProfileNames

namespace RecognitionStateNames {
static const char* const COMMON = "Common";
static const char* const DA_GLOBAL = "DA Global";
static const char* const QUOIN_MODE = "Quoin Mode";
static const char* const SORREL_RECO_STATE = "Sorrel RecoState";
static const char* const MARL_GLOBAL = "Marl Global";
static const char* const ONE_WORD_CALL = "One Word Call";
}  // namespace RecognitionStateNames

namespace AgentNames {
static const char* const ALARM = "Alarm";
static const char* const BROWSER = "Browser";
static const char* const BUTTON = "Button";
static const char* const CALCULATOR = "Calculator";
static const char* const CALENDAR = "Calendar";
static const char* const CALLING = "Calling";
static const char* const CAMERA = "Camera";
static const char* const CHATBOT = "Chatbot";
static const char* const CLOCK = "Clock";
static const char* const CONTACTS = "Contacts";
static const char* const DRIVING_MODE = "Drivingmode";
static const char* const EXERCISE = "Exercise";
static const char* const FIND_MY_THING = "FindMyThing";
static const char* const FLIGHT = "Flight";
static const char* const FRIDGE_MANAGER = "Fridge Manager";
static const char* const GALLERY = "Gallery";
static const char* const HFD = "HFD";
static const char* const INSTANT_MESSAGE = "Instant Message";
static const char* const LAUNCH_ALL = "LaunchAll";
static const char* const LAUNCH_APPS = "Launch Apps";
static const char* const LOCAL_SEARCH = "LocalSearch";
static const char* const MAP = "Map";
static const char* const MEMO = "Memo";
static const char* const MESSAGE = "Message";
static const char* const FENNEL = "Fennel";
static const char* const MUSIC = "Music";
static const char* const MUSIC_APP_CONTROL = "Music App Control";
static const char* const NAVER = "Naver";
static const char* const NAVIGATION = "Navigation";
static const char* const NEWS = "News";
static const char* const NOTE = "Note";
static const char* const NOTIFICATION = "Notification";
static const char* const OWC = "OWC";
static const char* const POI = "POI";
static const char* const SETTINGS = "Settings";
static const char* const HEARTHLINK = "Hearthlink";
static const char* const SOCIAL_MEDIA = "SocialMedia";
static const char* const SYSTEM = "System";
static const char* const TASK = "Task";
static const char* const TIMER = "Timer";
static const char* const TIMER_DA = "Timer_DA";
static const char* const TWITTER = "Twitter";
static const char* const VIDEO_PLAYER = "Video player";
static const char* const VOICE_RECORDER = "VoiceRecorder";
static const char* const WEATHER = "Weather";
static const char* const WEB_SEARCH = "WebSearch";
static const char* const WEBPAGE = "Webpage";
static const char* const WOLFRAM_ALPHA = "WolframAlpha";
static const char* const YAHOO = "Yahoo";
}  // namespace AgentNames

namespace StatusWords {
static const char* const ERROR = "Error";
static const char* const UNKNOWN = "Unknown";
static const char* const SAMPLE = "Sample";
static const char* const FAIL = "Fail";
static const char* const SUCCESS = "Success";
}  // namespace StatusWords

namespace PageKeys {
static const char* const CURRENT_PAGE_INDEX = "currentPageIndex";
static const char* const PAGE_END_INDEX = "pageEndIndex";
static const char* const PAGE_START_INDEX = "pageStartIndex";
static const char* const LIST_COUNT = "listCount";
static const char* const SEARCH_TERM = "searchTerm";
static const char* const SEARCH_TYPE = "searchType";
static const char* const RESERVED_1 = "  ";
static const char* const RESERVED_2 = "  ";
}  // namespace PageKeys

namespace ActionTypes {
static const char* const AGENT_RESPONSE = "Agent Response";
static const char* const AGENT_RESPONSE_ERROR = "Agent Response Error";
static const char* const DRIVER_REQUEST = "Driver Request";
static const char* const DRIVER_REQUEST_ERROR = "Driver Request Error";
static const char* const TASK_COMPLETE = "Task Complete";
static const char* const FOLLOW_UP = "Follow-Up";
static const char* const KEEP_CONTEXT = "Keep Context";
static const char* const SERVER_REQUEST = "Server Reqeust";
static const char* const SERVER_RESPONSE = "Server Response";
}  // namespace ActionTypes

namespace ResponseKeys {
static const char* const USER_COMPOSED_DRIVER_RESPONSE = "userComposedDriverResponse";
}  // namespace ResponseKeys

namespace ServerNames {
static const char* const ASR_RAMPCODE_DEFAULT = "dash";
static const char* const ASR_RAMPCODE_DA = "dash_da";
static const char* const NLU_RAMPCODE_DEFAULT = "dash";
static const char* const NLU_RAMPCODE_DA = "vbt_da";
}  // namespace ServerNames

#endif
