/* The battery of the device. */
#ifndef __TIZEN_SYSTEM_BATTERY_H__
#define __TIZEN_SYSTEM_BATTERY_H__

#include <stdbool.h>

#include "device-error.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The remaining charge, 0 to 100. */
int device_battery_get_percent(int *percent);
int device_battery_is_charging(bool *charging);

#ifdef __cplusplus
}
#endif

#endif
