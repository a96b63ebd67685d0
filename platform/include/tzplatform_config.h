/* The platform's path variables: where the appliance keeps what. */
#ifndef _TZPLATFORM_CONFIG_H
#define _TZPLATFORM_CONFIG_H

#ifdef __cplusplus
extern "C" {
#endif

/* Only the variables that this appliance names, with their numbers. */
enum tzplatform_variable {
    _TZPLATFORM_VARIABLES_INVALID_ = -1,
    TZ_SYS_HOME = 1,
    TZ_SYS_SHARE = 8,
    TZ_SYS_DATA = 14,
    TZ_SYS_RO_SHARE = 28,
    TZ_SYS_RO_APP = 29,
    TZ_USER_HOME = 48,
    TZ_USER_APP = 50,
    TZ_USER_CONTENT = 52,
    TZ_USER_DATA = 59,
    TZ_USER_SOUNDS = 66,
    TZ_USER_SHARE = 71
};

/* The variable's id for its name, _TZPLATFORM_VARIABLES_INVALID_ if unknown. */
enum tzplatform_variable tzplatform_getid(const char *name);
/* The variable's name, NULL if the id is unknown. */
const char *tzplatform_getname(enum tzplatform_variable id);

/* The variable's directory; the string stays valid and must not be freed.
 * NULL if the id is unknown. */
const char *tzplatform_getenv(enum tzplatform_variable id);

/* The variable's directory joined with the given parts by single slashes.
 * The result lives in a buffer of the calling thread, valid until its next
 * call of a tzplatform_mkpath function; NULL if the id is unknown. */
const char *tzplatform_mkpath(enum tzplatform_variable id, const char *path);
const char *tzplatform_mkpath3(enum tzplatform_variable id, const char *path,
                               const char *path2);
const char *tzplatform_mkpath4(enum tzplatform_variable id, const char *path,
                               const char *path2, const char *path3);

#ifdef __cplusplus
}
#endif

#endif
