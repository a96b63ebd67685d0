/* No printf hooks in the appliance's processes, as on the appliance.
 *
 * The speech stand-in's recognizer, pocketsphinx, brings in LAPACK and
 * gfortran's runtime, and with them libquadmath, whose constructor registers
 * printf handlers for __float128 ("%Qf"). While any handler is registered,
 * glibc sends every printf of the process down its slow positional path,
 * which makes each line of the platform log half as dear again. Nothing here
 * prints __float128 (quadmath_snprintf needs no handler), so the map, being
 * preloaded ahead of libc, declines every registration; libquadmath's
 * constructor stops at the first refusal. */
#define _GNU_SOURCE
#include <errno.h>
#include <printf.h>
#include <wchar.h>

static int declined(void)
{
    errno = ENOSYS;
    return -1;
}

int register_printf_type(printf_va_arg_function *function)
{
    (void)function;
    return declined();
}

int register_printf_modifier(const wchar_t *modifier)
{
    (void)modifier;
    return declined();
}

int register_printf_specifier(int specifier, printf_function *function, printf_arginfo_size_function *arginfo)
{
    (void)specifier;
    (void)function;
    (void)arginfo;
    return declined();
}

int register_printf_function(int specifier, printf_function *function, printf_arginfo_function *arginfo)
{
    (void)specifier;
    (void)function;
    (void)arginfo;
    return declined();
}
