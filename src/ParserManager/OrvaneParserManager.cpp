#include "ParserManager/OrvaneParserManager.h"

#include "ParserManager/OrvaneCloudParserHandle.h"
#include "ParserManager/OrvaneEmbeddedParserHandle.h"
#include "utils/MarlLog.h"

OrvaneParserManager::OrvaneParserManager() : mCloudParserHandle(nullptr), mEmbeddedParserHandle(nullptr)
{
}

OrvaneParserManager::~OrvaneParserManager()
{
    _removeCloudParserHandle();
    _removeEmbeddedParserHandle();
}

OrvaneCloudParserHandle* OrvaneParserManager::getCloudParserHandle()
{
    LOGD("");
    if (!mCloudParserHandle)
        mCloudParserHandle = new OrvaneCloudParserHandle();
    return mCloudParserHandle;
}

OrvaneEmbeddedParserHandle* OrvaneParserManager::getEmbeddedParserHandle()
{
    LOGD("");
    if (!mEmbeddedParserHandle)
        mEmbeddedParserHandle = new OrvaneEmbeddedParserHandle();
    return mEmbeddedParserHandle;
}

void OrvaneParserManager::_removeCloudParserHandle()
{
    delete mCloudParserHandle;
    mCloudParserHandle = nullptr;
}

void OrvaneParserManager::_removeEmbeddedParserHandle()
{
    delete mEmbeddedParserHandle;
    mEmbeddedParserHandle = nullptr;
}
