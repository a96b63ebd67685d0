/* vconf: the platform's key-value settings store, with change notification. */
#ifndef __VCONF_H__
#define __VCONF_H__

#ifdef __cplusplus
extern "C" {
#endif

/* Results. The getters and setters answer VCONF_OK or VCONF_ERROR, as the
 * platform does; vconf_get_ext_errno() then tells the reason. */
#define VCONF_OK 0
#define VCONF_ERROR -1
#define VCONF_ERROR_WRONG_PREFIX -2
#define VCONF_ERROR_WRONG_TYPE -3
#define VCONF_ERROR_WRONG_VALUE -4
#define VCONF_ERROR_NOT_INITIALIZED -5
#define VCONF_ERROR_NO_MEM -6
#define VCONF_ERROR_FILE_PERM -11
#define VCONF_ERROR_FILE_BUSY -12
#define VCONF_ERROR_FILE_NO_MEM -13
#define VCONF_ERROR_FILE_NO_ENT -14
#define VCONF_ERROR_FILE_OPEN -21
#define VCONF_ERROR_FILE_FREAD -22
#define VCONF_ERROR_FILE_FGETS -23
#define VCONF_ERROR_FILE_WRITE -24
#define VCONF_ERROR_FILE_SYNC -25
#define VCONF_ERROR_FILE_CLOSE -26
#define VCONF_ERROR_FILE_ACCESS -27
#define VCONF_ERROR_FILE_CHMOD -28
#define VCONF_ERROR_FILE_LOCK -29
#define VCONF_ERROR_FILE_REMOVE -30
#define VCONF_ERROR_FILE_SEEK -31
#define VCONF_ERROR_FILE_TRUNCATE -32
#define VCONF_ERROR_NOT_SUPPORTED -33

enum vconf_t {
    VCONF_TYPE_NONE = 0,
    VCONF_TYPE_STRING = 40,
    VCONF_TYPE_INT = 41,
    VCONF_TYPE_DOUBLE = 42,
    VCONF_TYPE_BOOL = 43,
    VCONF_TYPE_DIR
};

/* A key and its value, as a change callback receives it. Valid only during
 * the callback; read it with the vconf_keynode_get_* functions. */
typedef struct _keynode_t {
    char *keyname;
    int type;
    union {
        int i;
        int b;
        double d;
        char *s;
    } value;
    struct _keynode_t *next;
} keynode_t;

typedef void (*vconf_callback_fn)(keynode_t *node, void *user_data);

char *vconf_keynode_get_name(keynode_t *keynode);
int vconf_keynode_get_type(keynode_t *keynode);
int vconf_keynode_get_int(keynode_t *keynode);
double vconf_keynode_get_dbl(keynode_t *keynode);
int vconf_keynode_get_bool(keynode_t *keynode);
char *vconf_keynode_get_str(keynode_t *keynode);

int vconf_set_int(const char *in_key, const int intval);
int vconf_set_bool(const char *in_key, const int boolval);
int vconf_set_dbl(const char *in_key, const double dblval);
int vconf_set_str(const char *in_key, const char *strval);

int vconf_get_int(const char *in_key, int *intval);
int vconf_get_bool(const char *in_key, int *boolval);
int vconf_get_dbl(const char *in_key, double *dblval);
/* A copy to be released with free(), or NULL. */
char *vconf_get_str(const char *in_key);

int vconf_unset(const char *in_key);

/* The reason of the calling thread's last failed get, set or unset; VCONF_OK
 * after a success. */
int vconf_get_ext_errno(void);

/* The callback runs on a notification thread of this process, never on the
 * thread that changed the key, once for every write of the key. */
int vconf_notify_key_changed(const char *in_key, vconf_callback_fn cb, void *user_data);
/* Removes every registration of cb for the key. When it returns, cb is not
 * running for them (unless called from within cb) and is never called again. */
int vconf_ignore_key_changed(const char *in_key, vconf_callback_fn cb);

#ifdef __cplusplus
}
#endif

#endif
