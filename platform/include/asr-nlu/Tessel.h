#ifndef ASR_NLU_TESSEL_H
#define ASR_NLU_TESSEL_H

#include <string>

#include "Config.h"

class IEngineRetrieveDeviceData;
class RecognitionManager;

// Entry to the speech library: one process-wide instance, made by init and
// ended by shutdown. The device data facade is borrowed and must outlive it.
class Tessel {
public:
    static void init(Config config, IEngineRetrieveDeviceData* deviceData);
    static Tessel* getInstance();   // null before init and after shutdown
    static void shutdown();

    RecognitionManager* getRecognitionManager();
    void changeLocale(std::string locale);          // speech form, "en-US"
    void setCommandList(std::string commandList);   // the whole JSON document
    void syncUserData();

private:
    Tessel();
    ~Tessel();
    Tessel(const Tessel&) = delete;
    Tessel& operator=(const Tessel&) = delete;
};

#endif
