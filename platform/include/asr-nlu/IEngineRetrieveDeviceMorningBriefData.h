#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_MORNING_BRIEF_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_MORNING_BRIEF_DATA_H

// What the speech library asks the device about the morning brief app. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes first.
class IEngineRetrieveDeviceMorningBriefData {
public:
    virtual ~IEngineRetrieveDeviceMorningBriefData() {}
    virtual bool appInstalled() { return false; }
    virtual bool appRunning() { return false; }
};

#endif
