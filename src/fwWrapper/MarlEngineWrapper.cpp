#include "fwWrapper/MarlEngineWrapper.h"

#include "ParserManager/OrvaneCloudParserHandle.h"
#include "ParserManager/OrvaneParserManager.h"
#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "ServerTts/ServerTtsManager.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "utils/MarlLog.h"

#include <asr-nlu/RecognitionAgentResponse.h>
#include <asr-nlu/RecognitionManager.h>
#include <asr-nlu/Tessel.h>
#include <orvane-parser/OrvaneParser.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

int resultList[RESULT_LIST_SIZE + 1];

namespace {

const char* const LOCALE_ROWS[][2] = {
    {"en_US", "en-US"}, {"ko_KR", "ko-KR"}, {"zh_CN", "zh-CN"}, {"en_GB", "en-GB"},
    {"fr_FR", "fr-FR"}, {"de_DE", "de-DE"}, {"it_IT", "it-IT"},
};

const int SPEECH_DETECT_BEGIN = 1;
const int SPEECH_DETECT_END = 2;

const int FORMAT_PREFIX = 3;
const int FORMAT_SUFFIX = 4;
const int FORMAT_ACTION = 5;

// Host names of the speech service's endpoints, per deployment.
const char* const HOST_SANDBOX = "sandbox.orvane-voice.halden.net";
const char* const HOST_KR_QA = "qa-kr.orvane-voice.halden.net";
const char* const HOST_KR_QA_HTTP = "qa-kr-http.orvane-voice.halden.net";
const char* const HOST_US_OPERATING = "us.da.orvane-voice.halden.net";
const char* const HOST_US_RELEASE_HTTP = "release-us-http.orvane-voice.halden.net";
const char* const HOST_KR_OPERATING = "kr.da.orvane-voice.halden.net";
const char* const HOST_KR_RELEASE_HTTP = "release-kr-http.orvane-voice.halden.net";

void addResult(JsonObject* element)
{
    const char* id = json_object_has_member(element, "_id") ? json_object_get_string_member(element, "_id") : nullptr;
    const int count = resultList[RESULT_LIST_SIZE];
    resultList[count] = id ? atoi(id) : 0;
    resultList[RESULT_LIST_SIZE] = count + 1;
}

// The element's "meta_data" with its "command" text and "format"; false when
// the element lacks them.
bool readCommand(JsonNode* node, JsonObject** element, const char** command, gint64* format)
{
    if (!node || !JSON_NODE_HOLDS_OBJECT(node))
        return false;
    *element = json_node_get_object(node);
    if (!*element || !json_object_has_member(*element, "meta_data"))
        return false;
    JsonNode* metaNode = json_object_get_member(*element, "meta_data");
    if (!JSON_NODE_HOLDS_OBJECT(metaNode))
        return false;
    JsonObject* meta = json_node_get_object(metaNode);
    if (!json_object_has_member(meta, "command"))
        return false;
    *command = json_object_get_string_member(meta, "command");
    *format = json_object_has_member(meta, "format") ? json_object_get_int_member(meta, "format") : -1;
    return *command != nullptr;
}

}  // namespace

// Matches the recognised text against one command of the list.
void find_matched_cmd(JsonArray* /*array*/, guint /*index*/, JsonNode* node, gpointer userData)
{
    const char* text = static_cast<const char*>(userData);
    JsonObject* element = nullptr;
    const char* command = nullptr;
    gint64 format = -1;
    if (!text || !readCommand(node, &element, &command, &format))
        return;
    const size_t commandLength = strlen(command);
    const size_t textLength = strlen(text);
    bool matched = false;
    if (format >= 0 && format < FORMAT_PREFIX)
        matched = strcasecmp(text, command) == 0;
    else if (format == FORMAT_PREFIX)
        matched = strncasecmp(text, command, commandLength) == 0;
    else if (format == FORMAT_SUFFIX)
        matched = textLength >= commandLength && strcasecmp(text + textLength - commandLength, command) == 0;
    if (matched)
        addResult(element);
}

// Matches the action key "#org.tizen.<agent>" against the action commands.
void find_matched_action(JsonArray* /*array*/, guint /*index*/, JsonNode* node, gpointer userData)
{
    const char* key = static_cast<const char*>(userData);
    JsonObject* element = nullptr;
    const char* command = nullptr;
    gint64 format = -1;
    if (!key || !readCommand(node, &element, &command, &format) || format != FORMAT_ACTION)
        return;
    if (strcasecmp(command, key) == 0)
        addResult(element);
}

MarlEngineWrapper::MarlEngineWrapper()
    : RecognitionListener(),
      SpeechDetectionListener(),
      OrvaneMaster(),
      pTessel(nullptr),
      pRecogMgr(nullptr),
      retrieveDeviceDataEngineImpl(),
      customizedDataRetrieveManager(nullptr),
      deviceDataRetrieveManager(nullptr),
      serverTtsManager(nullptr),
      userData(nullptr),
      localeList(),
      commandArray(nullptr),
      resultCallback(nullptr),
      asrResultCallback(nullptr),
      errorCallback(nullptr),
      speechDetectState(0),
      embeddedResults(),
      cloudResults(),
      sessionManager(nullptr),
      parserManager(nullptr),
      language(""),
      deviceProfile("Common")
{
    embeddedResults.confidence = 0;
    cloudResults.confidence = 0;
    OrvaneMaster::smWrapper = this;
    commandArray = nullptr;
    InitLocaleList();
}

MarlEngineWrapper::~MarlEngineWrapper()
{
    if (Tessel::getInstance()) {
        LOGD("SHUT DOWN OF THE Tessel ENGINE");
        Tessel::shutdown();
    }
    delete parserManager;
    parserManager = nullptr;
    delete sessionManager;
    sessionManager = nullptr;
    delete customizedDataRetrieveManager;
    customizedDataRetrieveManager = nullptr;
    delete deviceDataRetrieveManager;
    deviceDataRetrieveManager = nullptr;
    delete serverTtsManager;
    serverTtsManager = nullptr;
}

// --- configuration and locale -----------------------------------------------

int MarlEngineWrapper::configureMarlEngine()
{
    ICustomizedServerDefines* serverDefines = getCustomizedDataRetrieveManager()->getServerDefineRetriever();
    if (!serverDefines)
        return VCP_ERROR_OPERATION_FAILED;

    const int targetServer = serverDefines->getTargetServerIndex();
    LOGD("targetServer[%d]", targetServer);

    Config config;
    config.setLocale("en-US");
    config.setServerPort(443);
    config.setRecognitionPath(static_cast<recognitionpath>(3));
    config.useInternalSpeechDetector(true);
    config.useInternalRecorder(false);
    config.setAudioBufferFormat(static_cast<AudioBufferFormat>(0));
    config.enableRMSComputation(false);
    config.configureDuringInit(false);
    config.setServerIP(_getTargetServerAddress(static_cast<_orvaneServerIndex>(targetServer)));
    config.setEpdThreshold(750);

    Tessel::init(config, getEngineDeviceDataRetriever());
    pTessel = Tessel::getInstance();
    pRecogMgr = pTessel ? pTessel->getRecognitionManager() : nullptr;

    if (pRecogMgr) {
        pRecogMgr->setRecognitionListener(this);
        pRecogMgr->setSpeechDetectionListener(static_cast<SpeechDetectionListener*>(this), 0);
        if (pRecogMgr->getState() == 3)
            LOGD("MarlEngineWrapper is called. pRecogMgr->getState() [%d]", pRecogMgr->getState());
    }
    LOGD("END");
    return 0;
}

void MarlEngineWrapper::InitLocaleList()
{
    if (!localeList.empty())
        return;
    for (const auto& row : LOCALE_ROWS)
        localeList.insert(std::make_pair(row[0], row[1]));
}

bool MarlEngineWrapper::isSupported(const char* text)
{
    if (!text)
        return false;
    const bool speechForm = strchr(text, '-') != nullptr;
    for (const auto& entry : localeList) {
        if ((speechForm ? entry.second : entry.first) == text)
            return true;
    }
    return false;
}

void MarlEngineWrapper::setLanguage(std::string newLanguage)
{
    language = newLanguage;
    LOGD("Language changes is : %s ", language.c_str());
    const std::string locale = toOrvaneLocale(newLanguage);
    Tessel* tessel = Tessel::getInstance();
    if (!tessel) {
        LOGE("Tessel is not initialized");
        return;
    }
    tessel->changeLocale(locale);
}

std::string MarlEngineWrapper::getLanguage()
{
    return language;
}

std::string MarlEngineWrapper::toOrvaneLocale(std::string locale)
{
    std::string key = locale;
    for (auto& c : key) {
        if (c == '-')
            c = '_';
    }
    auto found = localeList.find(key);
    if (found == localeList.end()) {
        LOGD("MarlEngineWrapper::toOrvaneLocale() end : %s ", "");
        return std::string();
    }
    const std::string retv = found->second.length() != 0 ? found->second : locale;
    LOGD("MarlEngineWrapper::toOrvaneLocale() end : %s ", retv.c_str());
    return retv;
}

std::string MarlEngineWrapper::_getTargetServerAddress(_orvaneServerIndex index)
{
    std::string retv;
    switch (index) {
    case ORVANE_SERVER_SANDBOX: retv = HOST_SANDBOX; break;
    case ORVANE_SERVER_KR_QA:
    case ORVANE_SERVER_KR_QA_2: retv = HOST_KR_QA; break;
    case ORVANE_SERVER_KR_QA_HTTP: retv = HOST_KR_QA_HTTP; break;
    case ORVANE_SERVER_US_OPERATING:
    case ORVANE_SERVER_US_OPERATING_2: retv = HOST_US_OPERATING; break;
    case ORVANE_SERVER_US_RELEASE_HTTP: retv = HOST_US_RELEASE_HTTP; break;
    case ORVANE_SERVER_KR_OPERATING:
    case ORVANE_SERVER_KR_OPERATING_2: retv = HOST_KR_OPERATING; break;
    case ORVANE_SERVER_KR_RELEASE_HTTP: retv = HOST_KR_RELEASE_HTTP; break;
    default: LOGD("User set is empty or not allowed"); break;
    }
    if (retv.empty()) {
        LOGD("Using default's");
        retv = HOST_KR_QA;
    }
    LOGD("retv[%s]", retv.c_str());
    return retv;
}

VoiceContextActionType MarlEngineWrapper::getCurrentVoiceContext()
{
    return getSessionManager()->getContextType();
}

void MarlEngineWrapper::setCurrentVoiceContext(VoiceContextActionType contextType)
{
    getSessionManager()->setContextType(contextType);
}

SessionManager* MarlEngineWrapper::getSessionManager()
{
    if (!sessionManager)
        sessionManager = new SessionManager();
    return sessionManager;
}

OrvaneParserManager* MarlEngineWrapper::getParserManager()
{
    if (!parserManager)
        parserManager = new OrvaneParserManager();
    return parserManager;
}

CustomizedDataRetrieveManager* MarlEngineWrapper::getCustomizedDataRetrieveManager()
{
    if (!customizedDataRetrieveManager)
        customizedDataRetrieveManager = new CustomizedDataRetrieveManager();
    return customizedDataRetrieveManager;
}

DeviceDataRetrieveManager* MarlEngineWrapper::getDeviceDataRetrieveManager()
{
    if (!deviceDataRetrieveManager)
        deviceDataRetrieveManager = new DeviceDataRetrieveManager();
    return deviceDataRetrieveManager;
}

ServerTtsManager* MarlEngineWrapper::getServerTtsManager()
{
    if (!serverTtsManager)
        serverTtsManager = new ServerTtsManager();
    return serverTtsManager;
}

IEngineRetrieveDeviceData* MarlEngineWrapper::getEngineDeviceDataRetriever()
{
    return &retrieveDeviceDataEngineImpl;
}

std::string MarlEngineWrapper::getDeviceProfile()
{
    return deviceProfile;
}

void MarlEngineWrapper::setDeviceProfile(std::string profile)
{
    deviceProfile = profile;
}

// --- recognition control ------------------------------------------------------

bool MarlEngineWrapper::_hasRecognitionManager()
{
    if (!pRecogMgr)
        LOGE("There is no recognition Manager instantiated");
    return pRecogMgr != nullptr;
}

bool MarlEngineWrapper::startRecognition(bool flag, bool keepContext, recogtype type, devicemode mode)
{
    if (!_hasRecognitionManager())
        return false;
    getServerTtsManager()->init();
    return pRecogMgr->startRecognition(flag, keepContext, type, mode);
}

bool MarlEngineWrapper::stopRecognition()
{
    if (!_hasRecognitionManager())
        return false;
    pRecogMgr->stopRecognition();
    return true;
}

bool MarlEngineWrapper::cancelRecognition()
{
    if (!_hasRecognitionManager())
        return false;
    pRecogMgr->cancelRecognition();
    return true;
}

bool MarlEngineWrapper::processDriverResponse(std::string driverResponse)
{
    if (!_hasRecognitionManager())
        return false;
    if (driverResponse.empty()) {
        LOGE("There is no string");
        return false;
    }
    pRecogMgr->processDriverResponse(driverResponse);
    return true;
}

bool MarlEngineWrapper::processAudio(short* buffer, int sampleCount, bool epd)
{
    if (!_hasRecognitionManager())
        return false;
    if (!buffer) {
        LOGE("buffer is NULL");
        return false;
    }
    if (sampleCount == 0) {
        LOGE("bufferlen is 0");
        return false;
    }
    LOGD("epd[%d]", epd);
    pRecogMgr->processAudio(buffer, sampleCount, epd);
    return true;
}

bool MarlEngineWrapper::processText(unsigned char* buffer, int length)
{
    if (!_hasRecognitionManager())
        return false;
    if (!buffer) {
        LOGE("buffer is NULL");
        return false;
    }
    if (length == 0) {
        LOGE("bufferlen is 0");
        return false;
    }
    pRecogMgr->processText(buffer, length);
    return true;
}

bool MarlEngineWrapper::processListEvent(std::string listEvent)
{
    if (!_hasRecognitionManager())
        return false;
    if (listEvent.empty()) {
        LOGE("listEvent has no length");
        return false;
    }
    pRecogMgr->processListEvent(listEvent);
    return true;
}

bool MarlEngineWrapper::processHepticEvent(std::string hapticEvent)
{
    if (!_hasRecognitionManager())
        return false;
    if (hapticEvent.empty()) {
        LOGE("hapticEvent has no length");
        return false;
    }
    pRecogMgr->processHepticEvent(hapticEvent);
    return true;
}

// --- listeners ------------------------------------------------------------------

void MarlEngineWrapper::onLoadingComplete()
{
    LOGD("");
}

void MarlEngineWrapper::onPartialResult(std::string result)
{
    LOGD("Partial asr_result[%s]", result.c_str());
    if (asrResultCallback)
        asrResultCallback(VCP_ASR_RESULT_EVENT_PARTIAL_RESULT, result.c_str(), userData);
}

void MarlEngineWrapper::onASRResult(std::string result, std::string engineType, int confidence)
{
    LOGD("asr_result[%s], engineType[%s], confidence[%d]", result.c_str(), engineType.c_str(), confidence);
    if (engineType == "EMBEDDED") {
        embeddedResults.asrResult = result;
        embeddedResults.confidence = confidence;
        LOGD("Embedded result");
        return;
    }
    cloudResults.asrResult = result;
    cloudResults.confidence = confidence;
    LOGD("Cloud result");
    if (asrResultCallback)
        asrResultCallback(VCP_ASR_RESULT_EVENT_FINAL_RESULT, result.c_str(), userData);
}

void MarlEngineWrapper::onNLUResult(std::string result, std::string engineType, int confidence,
                                    const char* ttsBuffer, unsigned int ttsBufferLen, bool isTTSLast)
{
    LOGD("nlu_result[%s], engineType[%s], confidence[%d]", result.c_str(), engineType.c_str(), confidence);
    LOGD("ttsBuffer[%p], ttsBufferLen[%d], isTTSLast[%d]", static_cast<const void*>(ttsBuffer),
         static_cast<int>(ttsBufferLen), isTTSLast);
    if (engineType == "EMBEDDED") {
        embeddedResults.nluResult = result;
        LOGD("Embedded result");
    } else {
        cloudResults.nluResult = result;
        LOGD("Cloud result");
    }
    if (ttsBuffer && ttsBufferLen != 0) {
        getServerTtsManager()->copyServerTts(ttsBuffer, ttsBufferLen);
        LOGD("serverTTS incoming");
    }
    if (isTTSLast) {
        LOGD("isTTSLast");
        getServerTtsManager()->serverTtsReceiveDone();
    }
}

void MarlEngineWrapper::onRecognitionStateChanged(State newState)
{
    LOGD("newState[%d]", static_cast<int>(newState));
}

void MarlEngineWrapper::onSpeechTimedOut()
{
    LOGD("");
}

void MarlEngineWrapper::onError(RecognitionErrorCode errorCode, std::string errorMsg)
{
    LOGD("errorCode[%d], errorMsg[%s]", static_cast<int>(errorCode), errorMsg.c_str());
    if (!embeddedResults.asrResult.empty() || !cloudResults.asrResult.empty()) {
        // Text came before the failure: the daemon gets it as a result.
        determineResult("", "", "");
        return;
    }
    if (errorCallback)
        errorCallback(VCP_ERROR_OPERATION_FAILED, errorMsg.c_str(), userData);
    else
        LOGD("Error callback is not registered");
}

void MarlEngineWrapper::onBeginningOfSpeech()
{
    LOGD("");
    speechDetectState = SPEECH_DETECT_BEGIN;
}

void MarlEngineWrapper::onRmsChanged(int rms)
{
    LOGD("rms[%d]", rms);
}

void MarlEngineWrapper::onEndOfSpeech()
{
    LOGD("");
    speechDetectState = SPEECH_DETECT_END;
}

// --- result routing ---------------------------------------------------------------

void MarlEngineWrapper::onParseAction(RecognitionAgentResponse* response)
{
    if (!response)
        return;
    LOGD("engine Type[%s], response Type[%d], isLast[%d]", response->getEngineType().c_str(),
         response->getResponseType(), response->getIsLast());
    if (response->getResponseType() != 1) {
        LOGE("Not Nlu result");
        return;
    }
    OrvaneParser* parser = getParserManager()->getCloudParserHandle()->getParser();
    if (!parser) {
        LOGE("There is no Proper parser to parse");
        return;
    }
    parser->parse(response->getData(), response->getResponseType(), response->getIsLast());
}

void MarlEngineWrapper::delayingParserActionForServerTts(std::string nluResult, std::string agentName,
                                                         std::string commandName)
{
    LOGD("NLU result[%s] agentName[%s] commandName[%s]", nluResult.c_str(), agentName.c_str(),
         commandName.c_str());
    ServerTtsManager* tts = getServerTtsManager();
    const bool enabled = tts->getEnabled();
    const bool userPlay = tts->getUserPlay();
    const bool received = tts->getReceived();
    if (enabled && userPlay && !received) {
        LOGD("Wait for server TTS");
        _cloudParserResults* record = new _cloudParserResults();
        record->nluResult = nluResult;
        record->agentName = agentName;
        record->commandName = commandName;
        if (tts->requestServerTtsWait(record))
            return;
        delete record;
    }
    determineResult(nluResult, agentName, commandName);
}

void MarlEngineWrapper::executeParserAction(std::string nluResult, std::string agentName,
                                            std::string commandName)
{
    LOGD("NLU result[%s] agentName[%s] commandName[%s]", nluResult.c_str(), agentName.c_str(),
         commandName.c_str());
    determineResult(nluResult, agentName, commandName);
}

void MarlEngineWrapper::determineResult(std::string nluResult, std::string agentName,
                                        std::string /*commandName*/)
{
    if (!commandArray) {
        LOGE("No command list");
        return;
    }
    memset(resultList, 0, sizeof(resultList));

    char* text = nullptr;
    if (embeddedResults.confidence == 1) {
        if (!embeddedResults.asrResult.empty())
            text = strdup(embeddedResults.asrResult.c_str());
    } else if (cloudResults.confidence == 1 && !cloudResults.asrResult.empty()) {
        text = strdup(cloudResults.asrResult.c_str());
    }
    if (text)
        json_array_foreach_element(commandArray, find_matched_cmd, text);

    const char* nlu = nullptr;
    if (!nluResult.empty() && !agentName.empty()) {
        char actionKey[1024];
        memset(actionKey, 0, sizeof(actionKey));
        snprintf(actionKey, sizeof(actionKey), "#org.tizen.%s", agentName.c_str());
        json_array_foreach_element(commandArray, find_matched_action, actionKey);
        nlu = nluResult.c_str();
    }
    if (!resultCallback) {
        LOGE("Result callback registration is missed");
    } else {
        const int count = resultList[RESULT_LIST_SIZE];
        resultCallback(count != 0 ? VCP_RESULT_EVENT_SUCCESS : VCP_RESULT_EVENT_REJECTED, resultList, count,
                       text, nullptr, nlu, "vc.result.message.none", userData);
    }
    free(text);
}

void MarlEngineWrapper::sendDriverResponse(std::string driverResponse)
{
    LOGD("");
    getSessionManager()->setContextType(VOICE_CONTEXT_KEEP);
    startRecognition(false, false, static_cast<recogtype>(1), static_cast<devicemode>(0));
    processDriverResponse(driverResponse);
    stopRecognition();
}
