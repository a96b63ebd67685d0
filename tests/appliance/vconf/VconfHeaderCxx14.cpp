// vconf.h seen from C++14, the plug-in's language level.
#include <vconf.h>

#include <cstddef>

#if __cplusplus != 201402L
#error "this unit is meant to be built as C++14"
#endif

std::size_t vconfKeynodeSizeInCxx14()
{
    return sizeof(keynode_t);
}
