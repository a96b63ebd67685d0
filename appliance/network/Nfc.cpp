// NFC: whether NFC is on, from the "nfc" section of device.json. The query
// answers a bool; its result code goes to the thread's last result.
#include "PlatformSection.h"

#include <nfc.h>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"NFC_ERROR_NONE", NFC_ERROR_NONE},
                         {"NFC_ERROR_IO_ERROR", NFC_ERROR_IO_ERROR},
                         {"NFC_ERROR_INVALID_PARAMETER", NFC_ERROR_INVALID_PARAMETER},
                         {"NFC_ERROR_OUT_OF_MEMORY", NFC_ERROR_OUT_OF_MEMORY},
                         {"NFC_ERROR_TIMED_OUT", NFC_ERROR_TIMED_OUT},
                         {"NFC_ERROR_DEVICE_BUSY", NFC_ERROR_DEVICE_BUSY},
                         {"NFC_ERROR_NOT_SUPPORTED", NFC_ERROR_NOT_SUPPORTED},
                         {"NFC_ERROR_PERMISSION_DENIED", NFC_ERROR_PERMISSION_DENIED},
                         {"NFC_ERROR_OPERATION_FAILED", NFC_ERROR_OPERATION_FAILED},
                         {"NFC_ERROR_NOT_ACTIVATED", NFC_ERROR_NOT_ACTIVATED},
                         {"NFC_ERROR_ILLEGAL_STATE", NFC_ERROR_ILLEGAL_STATE},
                         {"NFC_ERROR_NOT_INITIALIZED", NFC_ERROR_NOT_INITIALIZED},
                     }),
                     true);

thread_local int gLastResult = TIZEN_ERROR_NONE;

bool answer(bool activated, int code)
{
    gLastResult = code;
    return activated;
}

}  // namespace

extern "C" {

int get_last_result(void)
{
    return gLastResult;
}

void set_last_result(int err)
{
    gLastResult = err;
}

// An appliance without "nfc.activated" has no NFC: false, NFC_ERROR_NOT_SUPPORTED.
bool nfc_manager_is_activated(void)
{
    vapp::PlatformRead read(__func__, "nfc", NFC_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return answer(false, read.code());
    const Json::Value& value = read.member("activated");
    int code = 0;
    if (vapp::errorInPlace(value, read.where("activated"), &code))
        return answer(false, code);
    if (value.isNull())
        return answer(false, NFC_ERROR_NOT_SUPPORTED);
    if (!value.isBool()) {
        vapp::platformWarning("device.json: nfc.activated must be true or false");
        return answer(false, NFC_ERROR_OPERATION_FAILED);
    }
    return answer(value.asBool(), NFC_ERROR_NONE);
}

}  // extern "C"
