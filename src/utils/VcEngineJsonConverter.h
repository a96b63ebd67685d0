#ifndef VC_ENGINE_JSON_CONVERTER_H
#define VC_ENGINE_JSON_CONVERTER_H

#include <json-glib/json-glib.h>

#include <string>

// JSON text to a json-glib object and back.
class VcEngineJsonConverter {
public:
    VcEngineJsonConverter();
    ~VcEngineJsonConverter();

    // The object is not consumed; empty text on failure.
    std::string jsonToString(JsonObject* object);
    // A new object owned by the caller, or null when the text is not a JSON object.
    JsonObject* stringToJson(std::string text);
};

#endif
