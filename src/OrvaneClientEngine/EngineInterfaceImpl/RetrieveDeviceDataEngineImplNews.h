#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_NEWS_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_NEWS_H

#include <asr-nlu/IEngineRetrieveDeviceNewsData.h>

#include <string>

// The news facet: the news reader counts as installed.
class RetrieveDeviceDataEngineImplNews : public IEngineRetrieveDeviceNewsData {
public:
    RetrieveDeviceDataEngineImplNews();
    ~RetrieveDeviceDataEngineImplNews() override;

    std::string isFlipboardInstalled() override;
};

#endif
