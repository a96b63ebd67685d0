// tzplatform_config.h seen from C++14, the plug-in's language level.
#include <tzplatform_config.h>

#if __cplusplus != 201402L
#error "this unit is meant to be built as C++14"
#endif

int tzUserDataIdInCxx14()
{
    return TZ_USER_DATA;
}
