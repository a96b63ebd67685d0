#include "RetrieveImpl/Common/CustomizedNluParamsRetriever.h"

#include "utils/MarlLog.h"

bool CustomizedNluParamsRetriever::getNluParams(std::map<std::string, _JsonObject*>* list)
{
    if (!list)
        LOGE("list is NULL");
    return false;
}
