/* Counts the changes made to the environment through libc, so that the
 * virtual appliance, which reads its settings from the environment at every
 * log line, needs to look through the environment again only after one
 * (vapp::EnvironmentValue). */
#define _GNU_SOURCE
#include <stdlib.h>

#include "real.h"

/* Raised after every setenv, unsetenv, putenv and clearenv of the process. */
unsigned long vappliance_environment_changes = 0;

static void changed(void)
{
    __atomic_add_fetch(&vappliance_environment_changes, 1, __ATOMIC_RELEASE);
}

int setenv(const char *name, const char *value, int overwrite)
{
    REAL("setenv", int (*)(const char *, const char *, int))
    NOT_FOUND(-1)
    const int result = real(name, value, overwrite);
    changed();
    return result;
}

int unsetenv(const char *name)
{
    REAL("unsetenv", int (*)(const char *))
    NOT_FOUND(-1)
    const int result = real(name);
    changed();
    return result;
}

int putenv(char *entry)
{
    REAL("putenv", int (*)(char *))
    NOT_FOUND(-1)
    const int result = real(entry);
    changed();
    return result;
}

int clearenv(void)
{
    REAL("clearenv", int (*)(void))
    NOT_FOUND(-1)
    const int result = real();
    changed();
    return result;
}
