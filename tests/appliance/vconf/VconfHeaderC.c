/* vconf.h seen from C. */
#include <stddef.h>
#include <vconf.h>

int vconfStringTypeInC(void)
{
    return VCONF_TYPE_STRING;
}

size_t vconfKeynodeSizeInC(void)
{
    return sizeof(keynode_t);
}
