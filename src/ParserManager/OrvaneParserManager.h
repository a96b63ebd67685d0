#ifndef ORVANE_PARSER_MANAGER_H
#define ORVANE_PARSER_MANAGER_H

class OrvaneCloudParserHandle;
class OrvaneEmbeddedParserHandle;

// Owns the cloud and the embedded parser handle, each made when first asked for.
class OrvaneParserManager {
public:
    OrvaneParserManager();
    ~OrvaneParserManager();

    OrvaneCloudParserHandle* getCloudParserHandle();
    OrvaneEmbeddedParserHandle* getEmbeddedParserHandle();

private:
    void _removeCloudParserHandle();
    void _removeEmbeddedParserHandle();

    OrvaneCloudParserHandle* mCloudParserHandle;
    OrvaneEmbeddedParserHandle* mEmbeddedParserHandle;
};

#endif
