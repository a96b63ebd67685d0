/* dlog.h seen from C. */
#include <dlog.h>

int dlogErrorPriorityInC(void)
{
    return DLOG_ERROR;
}

int dlogPrintFromC(const char *text)
{
    return dlog_print(DLOG_WARN, "FromC", "%s", text);
}
