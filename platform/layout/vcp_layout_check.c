/* Compiled for the appliance's 32-bit target: the tables keep the daemon's sizes. */
#include <stddef.h>
#include <voice_control_plugin_engine.h>

#ifdef MARL_LAYOUT_32BIT_TARGET
_Static_assert(sizeof(void*) == 4, "compiled for the 32-bit target");
#endif

_Static_assert(sizeof(void*) != 4 || sizeof(vcpe_funcs_s) == 96, "engine table is 96 bytes");
_Static_assert(sizeof(void*) != 4 || sizeof(vcpd_funcs_s) == 20, "daemon table is 20 bytes");
_Static_assert(offsetof(vcpe_funcs_s, set_result_cb) == 2 * sizeof(int) + 5 * sizeof(void*),
               "the result-callback setter is word 7");
_Static_assert(offsetof(vcpe_funcs_s, process_haptic_event) ==
                   2 * sizeof(int) + 21 * sizeof(void*),
               "the haptic event operation is the last word");
_Static_assert(offsetof(vcpd_funcs_s, get_audio_type) == 2 * sizeof(int) + 2 * sizeof(void*),
               "the audio type callback is word 4");
_Static_assert(sizeof(void*) != 4 || sizeof(int) == 4, "32-bit words");
