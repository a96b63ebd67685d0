/* The platform log: dlog_print and its priorities. */
#ifndef __TIZEN_SYSTEM_DLOG_H__
#define __TIZEN_SYSTEM_DLOG_H__

#include <stdarg.h>

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    DLOG_ERROR_NONE = TIZEN_ERROR_NONE,
    DLOG_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    DLOG_ERROR_NOT_PERMITTED = TIZEN_ERROR_NOT_PERMITTED
} dlog_error_e;

/* Priorities in ascending order. */
typedef enum {
    DLOG_UNKNOWN = 0,
    DLOG_DEFAULT,
    DLOG_VERBOSE,
    DLOG_DEBUG,
    DLOG_INFO,
    DLOG_WARN,
    DLOG_ERROR,
    DLOG_FATAL,
    DLOG_SILENT,
    DLOG_PRIO_MAX
} log_priority;

/* Both return the number of bytes written, or a negative dlog_error_e. */
int dlog_print(log_priority prio, const char *tag, const char *fmt, ...)
#ifdef __GNUC__
    __attribute__((format(printf, 3, 4)))
#endif
    ;
int dlog_vprint(log_priority prio, const char *tag, const char *fmt, va_list ap);

#ifdef __cplusplus
}
#endif

#endif
