#ifndef RETRIEVER_CHOICE_H
#define RETRIEVER_CHOICE_H

#include "utils/MarlLog.h"

// Asks both sets of a two-slot manager for one retriever, logs the three
// pointers and prefers the user set's retriever.
template <typename Set, typename Retriever>
Retriever* chooseRetriever(Set* user, Set* internal, Retriever* (Set::*get)(), const char* userLabel,
                           const char* internalLabel, const char* retLabel)
{
    Retriever* userRetriever = user ? (user->*get)() : nullptr;
    Retriever* internalRetriever = internal ? (internal->*get)() : nullptr;
    Retriever* ret = userRetriever ? userRetriever : internalRetriever;
    LOGD("%s[%p]", userLabel, static_cast<void*>(userRetriever));
    LOGD("%s[%p]", internalLabel, static_cast<void*>(internalRetriever));
    LOGD("%s[%p]", retLabel, static_cast<void*>(ret));
    return ret;
}

#endif
