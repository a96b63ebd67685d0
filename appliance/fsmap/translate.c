/* Which host path an appliance path stands for, as the file-system map sees it.
 *
 * The map runs inside every call that names a path, from the first call of a
 * process (a sanitizer's runtime starting up, constructors before main) to its
 * last (handlers at exit, after static objects are gone). So this code holds no
 * object with a destructor and allocates nothing: the prefixes are constant
 * text, the device directory is read from the environment at each call and the
 * host path is put together in the caller's buffer. */
#include <stddef.h>
#include <stdlib.h>
#include <string.h>

/* The same prefixes as vapp::mappedPrefixes(), with their lengths. */
#define PREFIX(text) {text, sizeof text - 1}
static const struct {
    const char *text;
    size_t length;
} kPrefixes[] = {
    PREFIX("/home/owner/"), PREFIX("/opt/usr/"), PREFIX("/opt/share/"), PREFIX("/opt/var/"), PREFIX("/opt/etc/"),
};
#undef PREFIX

/* The device directory as two pieces, `first` followed by `second`: the value
 * of MARL_DEVICE_DIR, or $HOME (or /tmp) followed by "/.marl-device". */
static void device_dir(const char **first, const char **second)
{
    const char *dir = getenv("MARL_DEVICE_DIR");
    if (dir && *dir) {
        *first = dir;
        *second = "";
        return;
    }
    const char *home = getenv("HOME");
    *first = home && *home ? home : "/tmp";
    *second = "/.marl-device";
}

/* Whether `path` is the device directory or lies inside it. */
static int inside_device(const char *path, const char *first, const char *second)
{
    const size_t firstLength = strlen(first);
    const size_t secondLength = strlen(second);
    if (strncmp(path, first, firstLength) != 0)
        return 0;
    path += firstLength;
    if (strncmp(path, second, secondLength) != 0)
        return 0;
    path += secondLength;
    return *path == '/' || *path == '\0';
}

/* 1 with the host path in `out` when `path` is an absolute appliance path under
 * a mapped prefix (or the prefix itself without its slash), 0 when it passes
 * through as it is, -1 when the host path does not fit into `size` bytes. */
int vappliance_fsmap_translate(const char *path, char *out, size_t size)
{
    if (!path || path[0] != '/')
        return 0;
    /* The prefixes' second characters: most paths ("/tmp/...", "/usr/...")
     * are told apart by them alone. */
    if (path[1] != 'h' && path[1] != 'o')
        return 0;
    for (size_t i = 0; i < sizeof kPrefixes / sizeof kPrefixes[0]; ++i) {
        const char *prefix = kPrefixes[i].text;
        const size_t prefixLength = kPrefixes[i].length;
        /* Under the prefix, or the prefix itself without its final slash. */
        if (strncmp(path, prefix, prefixLength - 1) != 0)
            continue;
        if (path[prefixLength - 1] != '/' && path[prefixLength - 1] != '\0')
            continue;
        /* The environment is read only for mapped paths: most calls name
         * other paths, and getenv walks the whole environment. */
        const char *first;
        const char *second;
        device_dir(&first, &second);
        if (inside_device(path, first, second))
            return 0;
        static const char kRoot[] = "/root";
        const char *pieces[] = {first, second, kRoot, path};
        size_t used = 0;
        for (size_t p = 0; p < sizeof pieces / sizeof pieces[0]; ++p) {
            const size_t pieceLength = strlen(pieces[p]);
            if (used + pieceLength + 1 > size)
                return -1;
            memcpy(out + used, pieces[p], pieceLength);
            used += pieceLength;
        }
        out[used] = '\0';
        return 1;
    }
    return 0;
}
