/* The file-system map: preloaded into a process, it sends every absolute
 * appliance path under a mapped prefix ("/home/owner/", "/opt/usr/", ...) to
 * the same path inside the device's root, DIR/root. Each wrapper translates
 * its path arguments and calls the next definition of the same function. */
#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "real.h"

int vappliance_fsmap_translate(const char *path, char *out, size_t size);

/* `var` becomes the host path of `path`, or `path` itself; a host path too
 * long for the buffer fails the call with ENAMETOOLONG. */
#define MAP(var, path, fail)                                                 \
    char var##_buffer[PATH_MAX];                                             \
    const char *var = (path);                                                \
    switch (vappliance_fsmap_translate(var, var##_buffer, sizeof var##_buffer)) { \
    case 1: var = var##_buffer; break;                                       \
    case -1: errno = ENAMETOOLONG; return fail;                              \
    default: break;                                                          \
    }

static int needs_mode(int flags)
{
    return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
}

/* --- open ------------------------------------------------------------- */

#define OPEN_LIKE(name)                                                      \
    int name(const char *path, int flags, ...)                               \
    {                                                                        \
        mode_t mode = 0;                                                     \
        if (needs_mode(flags)) {                                             \
            va_list ap;                                                      \
            va_start(ap, flags);                                             \
            mode = va_arg(ap, mode_t);                                       \
            va_end(ap);                                                      \
        }                                                                    \
        REAL(#name, int (*)(const char *, int, ...))                         \
        NOT_FOUND(-1)                                                        \
        MAP(mapped, path, -1)                                                \
        return real(mapped, flags, mode);                                    \
    }
OPEN_LIKE(open)
OPEN_LIKE(open64)

#define OPENAT_LIKE(name)                                                    \
    int name(int dirfd, const char *path, int flags, ...)                    \
    {                                                                        \
        mode_t mode = 0;                                                     \
        if (needs_mode(flags)) {                                             \
            va_list ap;                                                      \
            va_start(ap, flags);                                             \
            mode = va_arg(ap, mode_t);                                       \
            va_end(ap);                                                      \
        }                                                                    \
        REAL(#name, int (*)(int, const char *, int, ...))                    \
        NOT_FOUND(-1)                                                        \
        MAP(mapped, path, -1)                                                \
        return real(dirfd, mapped, flags, mode);                             \
    }
OPENAT_LIKE(openat)
OPENAT_LIKE(openat64)

/* The checked forms that fortified programs call. */
int __open_2(const char *path, int flags)
{
    REAL("__open_2", int (*)(const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, flags);
}

int __open64_2(const char *path, int flags)
{
    REAL("__open64_2", int (*)(const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, flags);
}

int __openat_2(int dirfd, const char *path, int flags)
{
    REAL("__openat_2", int (*)(int, const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, flags);
}

int __openat64_2(int dirfd, const char *path, int flags)
{
    REAL("__openat64_2", int (*)(int, const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, flags);
}

int creat(const char *path, mode_t mode)
{
    REAL("creat", int (*)(const char *, mode_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, mode);
}

int creat64(const char *path, mode_t mode)
{
    REAL("creat64", int (*)(const char *, mode_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, mode);
}

/* --- stdio --------------------------------------------------------------- */

FILE *fopen(const char *path, const char *mode)
{
    REAL("fopen", FILE *(*)(const char *, const char *))
    NOT_FOUND(NULL)
    MAP(mapped, path, NULL)
    return real(mapped, mode);
}

FILE *fopen64(const char *path, const char *mode)
{
    REAL("fopen64", FILE *(*)(const char *, const char *))
    NOT_FOUND(NULL)
    MAP(mapped, path, NULL)
    return real(mapped, mode);
}

FILE *freopen(const char *path, const char *mode, FILE *stream)
{
    REAL("freopen", FILE *(*)(const char *, const char *, FILE *))
    NOT_FOUND(NULL)
    MAP(mapped, path, NULL)
    return real(mapped, mode, stream);
}

FILE *freopen64(const char *path, const char *mode, FILE *stream)
{
    REAL("freopen64", FILE *(*)(const char *, const char *, FILE *))
    NOT_FOUND(NULL)
    MAP(mapped, path, NULL)
    return real(mapped, mode, stream);
}

int remove(const char *path)
{
    REAL("remove", int (*)(const char *))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped);
}

int rename(const char *from, const char *to)
{
    REAL("rename", int (*)(const char *, const char *))
    NOT_FOUND(-1)
    MAP(mappedFrom, from, -1)
    MAP(mappedTo, to, -1)
    return real(mappedFrom, mappedTo);
}

int renameat(int fromfd, const char *from, int tofd, const char *to)
{
    REAL("renameat", int (*)(int, const char *, int, const char *))
    NOT_FOUND(-1)
    MAP(mappedFrom, from, -1)
    MAP(mappedTo, to, -1)
    return real(fromfd, mappedFrom, tofd, mappedTo);
}

int renameat2(int fromfd, const char *from, int tofd, const char *to, unsigned int flags)
{
    REAL("renameat2", int (*)(int, const char *, int, const char *, unsigned int))
    NOT_FOUND(-1)
    MAP(mappedFrom, from, -1)
    MAP(mappedTo, to, -1)
    return real(fromfd, mappedFrom, tofd, mappedTo, flags);
}

/* --- access and stat ----------------------------------------------------------- */

int access(const char *path, int how)
{
    REAL("access", int (*)(const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, how);
}

int euidaccess(const char *path, int how)
{
    REAL("euidaccess", int (*)(const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, how);
}

int eaccess(const char *path, int how)
{
    REAL("eaccess", int (*)(const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, how);
}

int faccessat(int dirfd, const char *path, int how, int flags)
{
    REAL("faccessat", int (*)(int, const char *, int, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, how, flags);
}

#define STAT_LIKE(name, type)                                                \
    int name(const char *path, type *buf)                                    \
    {                                                                        \
        REAL(#name, int (*)(const char *, type *))                           \
        NOT_FOUND(-1)                                                        \
        MAP(mapped, path, -1)                                                \
        return real(mapped, buf);                                            \
    }
STAT_LIKE(stat, struct stat)
STAT_LIKE(lstat, struct stat)
STAT_LIKE(stat64, struct stat64)
STAT_LIKE(lstat64, struct stat64)

int fstatat(int dirfd, const char *path, struct stat *buf, int flags)
{
    REAL("fstatat", int (*)(int, const char *, struct stat *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, buf, flags);
}

int fstatat64(int dirfd, const char *path, struct stat64 *buf, int flags)
{
    REAL("fstatat64", int (*)(int, const char *, struct stat64 *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, buf, flags);
}

int statx(int dirfd, const char *path, int flags, unsigned int mask, struct statx *buf)
{
    REAL("statx", int (*)(int, const char *, int, unsigned int, struct statx *))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, flags, mask, buf);
}

/* glibc before 2.33 routes stat through these; later ones keep them only for
 * old programs, and then the plain functions stand in for them. */
int __xstat(int version, const char *path, struct stat *buf);
int __lxstat(int version, const char *path, struct stat *buf);
int __xstat64(int version, const char *path, struct stat64 *buf);
int __lxstat64(int version, const char *path, struct stat64 *buf);
int __fxstatat(int version, int dirfd, const char *path, struct stat *buf, int flags);
int __fxstatat64(int version, int dirfd, const char *path, struct stat64 *buf, int flags);

#define XSTAT_LIKE(name, type, plain)                                        \
    int name(int version, const char *path, type *buf)                       \
    {                                                                        \
        REAL(#name, int (*)(int, const char *, type *))                      \
        MAP(mapped, path, -1)                                                \
        if (real)                                                            \
            return real(version, mapped, buf);                               \
        return plain(mapped, buf);                                           \
    }
XSTAT_LIKE(__xstat, struct stat, stat)
XSTAT_LIKE(__lxstat, struct stat, lstat)
XSTAT_LIKE(__xstat64, struct stat64, stat64)
XSTAT_LIKE(__lxstat64, struct stat64, lstat64)

int __fxstatat(int version, int dirfd, const char *path, struct stat *buf, int flags)
{
    REAL("__fxstatat", int (*)(int, int, const char *, struct stat *, int))
    MAP(mapped, path, -1)
    if (real)
        return real(version, dirfd, mapped, buf, flags);
    return fstatat(dirfd, mapped, buf, flags);
}

int __fxstatat64(int version, int dirfd, const char *path, struct stat64 *buf, int flags)
{
    REAL("__fxstatat64", int (*)(int, int, const char *, struct stat64 *, int))
    MAP(mapped, path, -1)
    if (real)
        return real(version, dirfd, mapped, buf, flags);
    return fstatat64(dirfd, mapped, buf, flags);
}

/* --- directories and links --------------------------------------------------- */

int mkdir(const char *path, mode_t mode)
{
    REAL("mkdir", int (*)(const char *, mode_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, mode);
}

int mkdirat(int dirfd, const char *path, mode_t mode)
{
    REAL("mkdirat", int (*)(int, const char *, mode_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, mode);
}

int rmdir(const char *path)
{
    REAL("rmdir", int (*)(const char *))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped);
}

int unlink(const char *path)
{
    REAL("unlink", int (*)(const char *))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped);
}

int unlinkat(int dirfd, const char *path, int flags)
{
    REAL("unlinkat", int (*)(int, const char *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, flags);
}

DIR *opendir(const char *path)
{
    REAL("opendir", DIR *(*)(const char *))
    NOT_FOUND(NULL)
    MAP(mapped, path, NULL)
    return real(mapped);
}

int chdir(const char *path)
{
    REAL("chdir", int (*)(const char *))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped);
}

ssize_t readlink(const char *path, char *buf, size_t size)
{
    REAL("readlink", ssize_t (*)(const char *, char *, size_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, buf, size);
}

ssize_t readlinkat(int dirfd, const char *path, char *buf, size_t size)
{
    REAL("readlinkat", ssize_t (*)(int, const char *, char *, size_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, buf, size);
}

char *realpath(const char *path, char *resolved)
{
    REAL("realpath", char *(*)(const char *, char *))
    NOT_FOUND(NULL)
    MAP(mapped, path, NULL)
    return real(mapped, resolved);
}

/* --- changing files -------------------------------------------------------------- */

int truncate(const char *path, off_t length)
{
    REAL("truncate", int (*)(const char *, off_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, length);
}

int truncate64(const char *path, off64_t length)
{
    REAL("truncate64", int (*)(const char *, off64_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, length);
}

int chmod(const char *path, mode_t mode)
{
    REAL("chmod", int (*)(const char *, mode_t))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(mapped, mode);
}

int fchmodat(int dirfd, const char *path, mode_t mode, int flags)
{
    REAL("fchmodat", int (*)(int, const char *, mode_t, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, mode, flags);
}

int utimensat(int dirfd, const char *path, const struct timespec times[2], int flags)
{
    REAL("utimensat", int (*)(int, const char *, const struct timespec *, int))
    NOT_FOUND(-1)
    MAP(mapped, path, -1)
    return real(dirfd, mapped, times, flags);
}

/* Settles the map's lazily made tables before any thread or fork can race. */
__attribute__((constructor)) static void fsmap_init(void)
{
    char buffer[PATH_MAX];
    vappliance_fsmap_translate("/", buffer, sizeof buffer);
}
