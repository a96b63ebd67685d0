#ifndef RETRIEVER_CHOICE_H
#define RETRIEVER_CHOICE_H

#include "utils/MarlLog.h"

// Asks both sets of a two-slot manager for one retriever, logs the three
// pointers under the calling operation's name and prefers the user set's
// retriever.
#define CHOOSE_RETRIEVER(...) chooseRetrieverAt(MARL_LOG_SITE, __VA_ARGS__)

template <typename Set, typename Retriever>
Retriever* chooseRetrieverAt(const MarlLogSite& site, Set* user, Set* internal, Retriever* (Set::*get)(),
                             const char* userLabel, const char* internalLabel, const char* retLabel)
{
    Retriever* userRetriever = user ? (user->*get)() : nullptr;
    Retriever* internalRetriever = internal ? (internal->*get)() : nullptr;
    Retriever* ret = userRetriever ? userRetriever : internalRetriever;
    LOGD_AT(site, "%s[%p]", userLabel, static_cast<void*>(userRetriever));
    LOGD_AT(site, "%s[%p]", internalLabel, static_cast<void*>(internalRetriever));
    LOGD_AT(site, "%s[%p]", retLabel, static_cast<void*>(ret));
    return ret;
}

#endif
