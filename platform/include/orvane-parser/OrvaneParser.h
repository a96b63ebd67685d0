#ifndef ORVANE_PARSER_ORVANE_PARSER_H
#define ORVANE_PARSER_ORVANE_PARSER_H

#include <string>

class IParserRetrieveDeviceData;
class OrvaneParserListener;

// The cloud parser: turns the speech library's NLU data into actions and
// reports them to its listener, asking its data retriever about the device
// meanwhile. Listener and retriever are borrowed. The destructor comes after
// the three operations, so deleting destructor is the fifth vtable entry.
class OrvaneParser {
public:
    OrvaneParser();
    virtual void setParserListener(OrvaneParserListener* listener);
    virtual void setParserDataRetriever(IParserRetrieveDeviceData* dataRetriever);
    virtual void parse(std::string data, int responseType, bool isLast);
    virtual ~OrvaneParser();

private:
    OrvaneParser(const OrvaneParser&) = delete;
    OrvaneParser& operator=(const OrvaneParser&) = delete;
};

#endif
