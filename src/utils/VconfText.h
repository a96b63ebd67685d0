#ifndef VCONF_TEXT_H
#define VCONF_TEXT_H

#include <string>

// The text of a string key of the key store, or `fallback` when the store
// gives none. The store's copy is freed.
std::string readVconfText(const char* key, const std::string& fallback);

#endif
