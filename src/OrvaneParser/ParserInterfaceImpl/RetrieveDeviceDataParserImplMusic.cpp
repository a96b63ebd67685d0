#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplMusic.h"

#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplMusic::getMusicAppStatus(MusicData* musicData)
{
    if (!musicData) {
        LOGE("musicData is NULL");
        return false;
    }
    IDeviceMusicDataRetrieve* retriever = getWrapper()->getDeviceDataRetrieveManager()->getMusicRetriever();
    if (!retriever)
        return false;
    musicData->setCurrentStation(retriever->getCurrentStationName());
    musicData->setLastStation(retriever->getLastStationName());
    musicData->setMusicAppName(retriever->getCurrentMusicPlayerName());
    LOGD("retrieve succedded");
    return true;
}
