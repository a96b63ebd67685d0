#include "RetrieveImpl/DA/DaCustomizedServerDefineRetriever.h"
#include "utils/VconfText.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "utils/MarlLog.h"

#include <vconf.h>

#include <cstdlib>

namespace {
const int SERVER_INDEX_US = 100;
const int SERVER_INDEX_KR = 200;
}  // namespace

bool DaCustomizedServerDefineRetriever::useServerTts()
{
    // Server speech is off for the two appliance languages 5 and 6.
    int language = -1;
    vconf_get_int("db/orvane/setting/lang", &language);
    return language != 5 && language != 6;
}

bool DaCustomizedServerDefineRetriever::userPlayServerTts()
{
    return useServerTts();
}

std::string DaCustomizedServerDefineRetriever::getServerTtsAudioPath()
{
    return "/home/owner/share/ServerTTS.pcm";
}

std::string DaCustomizedServerDefineRetriever::getAsrRampcode()
{
    return ServerNames::ASR_RAMPCODE_DA;
}

std::string DaCustomizedServerDefineRetriever::getNluRampcode()
{
    return ServerNames::NLU_RAMPCODE_DA;
}

int DaCustomizedServerDefineRetriever::getServerTtsTeller()
{
    return 0;
}

int DaCustomizedServerDefineRetriever::getTargetServerIndex()
{
    const std::string region = readVconfText("db/setting/region_code", "");
    LOGD("Region (%s)", region.c_str());
    return region == "KR" ? SERVER_INDEX_KR : SERVER_INDEX_US;
}
