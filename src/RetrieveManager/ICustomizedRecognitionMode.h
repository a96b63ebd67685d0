#ifndef I_CUSTOMIZED_RECOGNITION_MODE_H
#define I_CUSTOMIZED_RECOGNITION_MODE_H

struct _JsonObject;

// The recognition state chosen from the foreground app: a new json-glib
// object owned by the caller, or null.
class ICustomizedRecognitionMode {
public:
    virtual ~ICustomizedRecognitionMode() {}
    virtual _JsonObject* getRecognitionMode() { return nullptr; }
};

#endif
