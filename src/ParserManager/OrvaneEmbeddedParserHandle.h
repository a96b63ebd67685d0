#ifndef ORVANE_EMBEDDED_PARSER_HANDLE_H
#define ORVANE_EMBEDDED_PARSER_HANDLE_H

#include <orvane-parser/OrvaneParserListener.h>

#include <string>

class OrvaneEmbeddedParser;
class ResponseData;

// Owns the embedded parser. Its listener operations only log: embedded
// results are not routed through a parser.
class OrvaneEmbeddedParserHandle : public OrvaneParserListener {
public:
    OrvaneEmbeddedParserHandle();
    virtual ~OrvaneEmbeddedParserHandle();

    OrvaneEmbeddedParser* getParser();

    void executeOVAction(ResponseData* data) override;
    void executeDriverResponse(std::string driverResponse) override;

private:
    void _removeParser();

    OrvaneEmbeddedParser* mParser;
};

#endif
