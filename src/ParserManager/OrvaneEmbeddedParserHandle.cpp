#include "ParserManager/OrvaneEmbeddedParserHandle.h"

#include "utils/MarlLog.h"

#include <orvane-parser/OrvaneEmbeddedParser.h>

OrvaneEmbeddedParserHandle::OrvaneEmbeddedParserHandle() : mParser(nullptr)
{
}

OrvaneEmbeddedParserHandle::~OrvaneEmbeddedParserHandle()
{
    _removeParser();
}

OrvaneEmbeddedParser* OrvaneEmbeddedParserHandle::getParser()
{
    if (!mParser)
        mParser = new OrvaneEmbeddedParser();
    return mParser;
}

void OrvaneEmbeddedParserHandle::_removeParser()
{
    delete mParser;
    mParser = nullptr;
}

void OrvaneEmbeddedParserHandle::executeOVAction(ResponseData* /*data*/)
{
    LOGD("executeOVAction");
}

void OrvaneEmbeddedParserHandle::executeDriverResponse(std::string /*driverResponse*/)
{
    LOGD("executeDriverResponse");
}
