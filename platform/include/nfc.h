/* NFC: whether NFC is switched on. */
#ifndef __NFC_H__
#define __NFC_H__

#include <stdbool.h>

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    NFC_ERROR_NONE = TIZEN_ERROR_NONE,
    NFC_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR,
    NFC_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    NFC_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    NFC_ERROR_TIMED_OUT = TIZEN_ERROR_TIMED_OUT,
    NFC_ERROR_DEVICE_BUSY = TIZEN_ERROR_RESOURCE_BUSY,
    NFC_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED,
    NFC_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    NFC_ERROR_OPERATION_FAILED = TIZEN_ERROR_NFC | 0x01,
    NFC_ERROR_INVALID_NDEF_MESSAGE = TIZEN_ERROR_NFC | 0x02,
    NFC_ERROR_INVALID_RECORD_TYPE = TIZEN_ERROR_NFC | 0x03,
    NFC_ERROR_NO_DEVICE = TIZEN_ERROR_NFC | 0x04,
    NFC_ERROR_NOT_ACTIVATED = TIZEN_ERROR_NFC | 0x05,
    NFC_ERROR_ALREADY_ACTIVATED = TIZEN_ERROR_NFC | 0x06,
    NFC_ERROR_ALREADY_DEACTIVATED = TIZEN_ERROR_NFC | 0x07,
    NFC_ERROR_READ_ONLY_NDEF = TIZEN_ERROR_NFC | 0x08,
    NFC_ERROR_NO_SPACE_ON_NDEF = TIZEN_ERROR_NFC | 0x09,
    NFC_ERROR_NO_NDEF_MESSAGE = TIZEN_ERROR_NFC | 0x0a,
    NFC_ERROR_NOT_NDEF_FORMAT = TIZEN_ERROR_NFC | 0x0b,
    NFC_ERROR_SECURITY_RESTRICTED = TIZEN_ERROR_NFC | 0x0c,
    NFC_ERROR_ILLEGAL_STATE = TIZEN_ERROR_NFC | 0x0d,
    NFC_ERROR_NOT_INITIALIZED = TIZEN_ERROR_NFC | 0x0e,
    NFC_ERROR_TAG_NOT_SUPPORTED = TIZEN_ERROR_NFC | 0x0f
} nfc_error_e;

/* True when NFC is on. A failed query answers false; get_last_result() then
 * gives its nfc_error_e code, and NFC_ERROR_NONE after a successful query. */
bool nfc_manager_is_activated(void);

/* The platform's last-result code of the calling thread (declared by the
 * platform's common error header). */
int get_last_result(void);
void set_last_result(int err);

#ifdef __cplusplus
}
#endif

#endif
