/* Application service aliases of the application utility library (aul). */
#ifndef __AUL_SVC_H__
#define __AUL_SVC_H__

#ifdef __cplusplus
extern "C" {
#endif

typedef enum _aul_svc_return_val {
    AUL_SVC_RET_ECANCELED = -8,
    AUL_SVC_RET_EREJECTED = -7,
    AUL_SVC_RET_ETERMINATING = -6,
    AUL_SVC_RET_EILLACC = -5,
    AUL_SVC_RET_ELAUNCH = -4,
    AUL_SVC_RET_ENOMATCH = -3,
    AUL_SVC_RET_EINVAL = -2,
    AUL_SVC_RET_ERROR = -1,
    AUL_SVC_RET_OK = 0
} aul_svc_return_val;

/* Calls `callback` once for each alias, with the alias and the application it names. */
int aul_svc_foreach_alias_info(void (*callback)(const char *alias_appid, const char *appid,
                                                void *data),
                               void *user_data);

#ifdef __cplusplus
}
#endif

#endif /* __AUL_SVC_H__ */
