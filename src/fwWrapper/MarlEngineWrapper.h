// The hub between the daemon's entry points and the speech library: owns the
// client's managers, holds the daemon's callbacks, listens to the speech
// library and routes a finished result back to the daemon.
#ifndef MARL_ENGINE_WRAPPER_H
#define MARL_ENGINE_WRAPPER_H

#include "ClientManager/OrvaneMaster.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImpl.h"
#include "SessionManager/SessionManager.h"

#include <asr-nlu/Config.h>
#include <asr-nlu/RecognitionListener.h>
#include <asr-nlu/SpeechDetectionListener.h>
#include <json-glib/json-glib.h>
#include <voice_control_plugin_engine.h>

#include <map>
#include <string>

class Tessel;
class RecognitionManager;
class CustomizedDataRetrieveManager;
class DeviceDataRetrieveManager;
class ServerTtsManager;
class OrvaneParserManager;

// Latest final result of one recognition path.
struct _embeddedResults {
    int confidence;  // only the value 1 counts; never cleared between requests
    std::string asrResult;
    std::string nluResult;
};

struct _cloudResults {
    int confidence;
    std::string asrResult;
    std::string nluResult;
};

// A parser action that waits for server speech.
struct _cloudParserResults {
    std::string nluResult;
    std::string agentName;
    std::string commandName;
};

// Endpoints of the speech service, chosen by index.
enum _orvaneServerIndex {
    ORVANE_SERVER_SANDBOX = 10,
    ORVANE_SERVER_KR_QA = 50,
    ORVANE_SERVER_KR_QA_2 = 51,
    ORVANE_SERVER_KR_QA_HTTP = 52,
    ORVANE_SERVER_US_OPERATING = 100,
    ORVANE_SERVER_US_OPERATING_2 = 101,
    ORVANE_SERVER_US_RELEASE_HTTP = 102,
    ORVANE_SERVER_KR_OPERATING = 200,
    ORVANE_SERVER_KR_OPERATING_2 = 201,
    ORVANE_SERVER_KR_RELEASE_HTTP = 202,
};

class MarlEngineWrapper : public RecognitionListener, public SpeechDetectionListener, public OrvaneMaster {
public:
    MarlEngineWrapper();
    virtual ~MarlEngineWrapper();

    // Configuration and locale.
    int configureMarlEngine();
    void InitLocaleList();
    bool isSupported(const char* language);
    void setLanguage(std::string language);
    std::string getLanguage();
    std::string toOrvaneLocale(std::string locale);
    VoiceContextActionType getCurrentVoiceContext();
    void setCurrentVoiceContext(VoiceContextActionType contextType);

    SessionManager* getSessionManager();
    OrvaneParserManager* getParserManager();
    CustomizedDataRetrieveManager* getCustomizedDataRetrieveManager();
    DeviceDataRetrieveManager* getDeviceDataRetrieveManager();
    ServerTtsManager* getServerTtsManager();
    IEngineRetrieveDeviceData* getEngineDeviceDataRetriever();
    std::string getDeviceProfile();
    void setDeviceProfile(std::string deviceProfile);

    // Recognition control.
    bool startRecognition(bool flag, bool keepContext, recogtype type, devicemode mode);
    bool stopRecognition();
    bool cancelRecognition();
    bool processDriverResponse(std::string driverResponse);
    bool processAudio(short* buffer, int sampleCount, bool epd);
    bool processText(unsigned char* buffer, int length);
    bool processListEvent(std::string listEvent);
    bool processHepticEvent(std::string hapticEvent);

    // RecognitionListener.
    void onLoadingComplete() override;
    void onPartialResult(std::string result) override;
    void onASRResult(std::string result, std::string engineType, int confidence) override;
    void onNLUResult(std::string result, std::string engineType, int confidence, const char* ttsBuffer,
                     unsigned int ttsBufferLen, bool isTTSLast) override;
    void onRecognitionStateChanged(State newState) override;
    void onSpeechTimedOut() override;
    void onError(RecognitionErrorCode errorCode, std::string errorMsg) override;
    void onParseAction(RecognitionAgentResponse* response) override;

    // SpeechDetectionListener.
    void onBeginningOfSpeech() override;
    void onRmsChanged(int rms) override;
    void onEndOfSpeech() override;

    // Result routing.
    void delayingParserActionForServerTts(std::string nluResult, std::string agentName,
                                          std::string commandName);
    void executeParserAction(std::string nluResult, std::string agentName, std::string commandName);
    void determineResult(std::string nluResult, std::string agentName, std::string commandName);
    void sendDriverResponse(std::string driverResponse);

    // Fields, in their order. The entry points of the plug-in reach several of
    // them directly.
    Tessel* pTessel;
    RecognitionManager* pRecogMgr;
    RetrieveDeviceDataEngineImpl retrieveDeviceDataEngineImpl;
    CustomizedDataRetrieveManager* customizedDataRetrieveManager;
    DeviceDataRetrieveManager* deviceDataRetrieveManager;
    ServerTtsManager* serverTtsManager;
    void* userData;
    std::map<std::string, std::string> localeList;
    JsonArray* commandArray;
    vcpe_result_cb resultCallback;
    vcpe_asr_result_cb asrResultCallback;
    vcpe_error_cb errorCallback;
    int speechDetectState;
    _embeddedResults embeddedResults;
    _cloudResults cloudResults;
    SessionManager* sessionManager;
    OrvaneParserManager* parserManager;
    std::string language;
    std::string deviceProfile;

private:
    friend class PluginTestAccess;
    std::string _getTargetServerAddress(_orvaneServerIndex index);
    bool _hasRecognitionManager();
};

#endif
