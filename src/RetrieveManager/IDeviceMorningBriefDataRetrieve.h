#ifndef I_DEVICE_MORNING_BRIEF_DATA_RETRIEVE_H
#define I_DEVICE_MORNING_BRIEF_DATA_RETRIEVE_H

class IDeviceMorningBriefDataRetrieve {
public:
    virtual ~IDeviceMorningBriefDataRetrieve() {}
    virtual bool appInstalled() { return false; }
    virtual bool appRunning() { return false; }
};

#endif
