// dlog.h seen from C++14, the plug-in's language level.
#include <dlog.h>

#if __cplusplus != 201402L
#error "this unit is meant to be built as C++14"
#endif

int dlogFatalPriorityInCxx14()
{
    return DLOG_FATAL;
}
