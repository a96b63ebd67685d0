#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_MEMO_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_MEMO_H

#include <asr-nlu/IEngineRetrieveDeviceMemoData.h>

#include <string>

// The memo facet: voice memos are supported, stored and installed.
class RetrieveDeviceDataEngineImplMemo : public IEngineRetrieveDeviceMemoData {
public:
    RetrieveDeviceDataEngineImplMemo();
    ~RetrieveDeviceDataEngineImplMemo() override;

    std::string isVoiceMemoSupported() override;
    std::string isMemoStorageAvailable() override;
    std::string isMemoInstalled() override;
};

#endif
