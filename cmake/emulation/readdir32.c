/* Preloaded into every program that runs under qemu-user from the armhf
 * sysroot (its /etc/ld.so.preload). A 32-bit program's readdir() reads 64-bit
 * entries and fails with EOVERFLOW when their offset does not fit 32 bits.
 * A 32-bit kernel gives 32-bit directory offsets to 32-bit programs; under
 * qemu-user the host's 64-bit kernel gives ext4's 64-bit hashes, and every
 * directory walk of a program built without large-file support (espeak-ng's
 * voice list among them) ends at its first entry. This readdir() converts the
 * 64-bit entry in place, as the C library does, keeping the offset's low bits:
 * the offset is only a cookie for seekdir(), which nothing here uses. */
#define _GNU_SOURCE
#include <dirent.h>
#include <stddef.h>
#include <sys/types.h>
#include <stdint.h>
#include <string.h>

struct dirent* readdir(DIR* dir)
{
    struct dirent64* wide = readdir64(dir);
    if (!wide)
        return NULL;
    const uint64_t ino = wide->d_ino;
    const int64_t off = wide->d_off;
    const unsigned short reclen = wide->d_reclen;
    const unsigned char type = wide->d_type;
    struct dirent* narrow = (struct dirent*)wide;
    /* The name moves down to its place in the narrow entry, which is shorter. */
    memmove(narrow->d_name, wide->d_name, strlen(wide->d_name) + 1);
    narrow->d_ino = (ino_t)ino;
    narrow->d_off = (off_t)off;
    narrow->d_reclen = reclen;
    narrow->d_type = type;
    return narrow;
}
