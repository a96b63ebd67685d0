#include "utils/VconfText.h"

#include <vconf.h>

#include <stdlib.h>

std::string readVconfText(const char* key, const std::string& fallback)
{
    std::string text = fallback;
    char* value = vconf_get_str(key);
    if (value) {
        text = value;
        free(value);
    }
    return text;
}
