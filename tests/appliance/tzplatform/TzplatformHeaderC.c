/* tzplatform_config.h seen from C. */
#include <tzplatform_config.h>

const char *tzUserShareFileInC(const char *name)
{
    return tzplatform_mkpath(TZ_USER_SHARE, name);
}
