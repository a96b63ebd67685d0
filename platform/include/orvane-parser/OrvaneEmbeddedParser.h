#ifndef ORVANE_PARSER_ORVANE_EMBEDDED_PARSER_H
#define ORVANE_PARSER_ORVANE_EMBEDDED_PARSER_H

#include <string>

class IParserRetrieveDeviceData;
class OrvaneParserListener;

// The embedded parser, of the same shape as the cloud one: turns NLU data
// into actions for its listener, asking its data retriever about the device
// meanwhile. Listener and retriever are borrowed. The destructor comes after
// the three operations, so deleting destructor is the fifth vtable entry.
class OrvaneEmbeddedParser {
public:
    OrvaneEmbeddedParser();
    virtual void setParserListener(OrvaneParserListener* listener);
    virtual void setParserDataRetriever(IParserRetrieveDeviceData* dataRetriever);
    virtual void parse(std::string data, int responseType, bool isLast);
    virtual ~OrvaneEmbeddedParser();

private:
    OrvaneEmbeddedParser(const OrvaneEmbeddedParser&) = delete;
    OrvaneEmbeddedParser& operator=(const OrvaneEmbeddedParser&) = delete;
};

#endif
