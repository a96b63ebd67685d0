#ifndef I_CUSTOMIZED_NLU_PARAMS_H
#define I_CUSTOMIZED_NLU_PARAMS_H

#include <map>
#include <string>

struct _JsonObject;

// Fills the NLU parameter set: group name to a json-glib object, which the
// receiver of the map owns. True when the map is valid.
class ICustomizedNluParams {
public:
    virtual ~ICustomizedNluParams() {}
    virtual bool getNluParams(std::map<std::string, _JsonObject*>* /*list*/) { return false; }
};

#endif
