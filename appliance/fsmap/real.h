/* The next definition of an interposed function. */
#pragma once

#include <dlfcn.h>
#include <errno.h>
#include <stddef.h>

/* `real`: the next definition of a function, looked up once. */
#define REAL(name, type)                                                     \
    typedef __typeof__(type) real_type;                                      \
    static real_type real_ = NULL;                                           \
    real_type real = __atomic_load_n(&real_, __ATOMIC_ACQUIRE);              \
    if (!real) {                                                             \
        real = (real_type)dlsym(RTLD_NEXT, name);                            \
        __atomic_store_n(&real_, real, __ATOMIC_RELEASE);                    \
    }

/* Fails the call when there is no next definition. */
#define NOT_FOUND(fail)                                                      \
    if (!real) {                                                             \
        errno = ENOSYS;                                                      \
        return fail;                                                         \
    }
