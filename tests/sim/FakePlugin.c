/* A plug-in that only knows the daemon's three exported functions. */
#include "voice_control_plugin_engine.h"

#include <string.h>

int vcp_get_engine_info(vcpe_engine_info_cb callback, void* user_data)
{
    if (!callback)
        return VCP_ERROR_INVALID_PARAMETER;
    callback("00000000-0000-0000-0000-000000000000", "Fake Engine", "libfake.so", false, user_data);
    return 0;
}

int vcp_load_engine(vcpd_funcs_s* pdfuncs, vcpe_funcs_s* pefuncs)
{
    memset(pefuncs, 0, sizeof(*pefuncs));
#ifdef FAKE_BAD_SIZES
    /* The sizes of the appliance's 32-bit build. */
    pdfuncs->size = 20;
    pefuncs->size = 96;
#else
    pdfuncs->size = sizeof(vcpd_funcs_s);
    pefuncs->size = sizeof(vcpe_funcs_s);
#endif
    pdfuncs->version = 1;
    pefuncs->version = 1;
    return 0;
}

void vcp_unload_engine(void) {}
