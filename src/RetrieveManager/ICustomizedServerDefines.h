#ifndef I_CUSTOMIZED_SERVER_DEFINES_H
#define I_CUSTOMIZED_SERVER_DEFINES_H

#include <string>

// Which server to reach, under which ramp codes, and how server speech is handled.
class ICustomizedServerDefines {
public:
    virtual ~ICustomizedServerDefines() {}
    virtual bool useServerTts() { return false; }
    virtual bool userPlayServerTts() { return false; }
    virtual std::string getServerTtsAudioPath() { return "/opt/usr/home/owner/media/Sounds/ServerTTS.pcm"; }
    virtual std::string getAsrRampcode() { return "dash"; }
    virtual std::string getNluRampcode() { return "dash"; }
    virtual int getServerTtsTeller() { return 0; }
    virtual int getTargetServerIndex() { return 0; }
};

#endif
