// The plug-in's one logging form: dlog with the tag "VoiceEnginePlugIn" and the
// prefix "file: function(line) > ". An empty message marks entry into an operation.
#ifndef MARL_LOG_H
#define MARL_LOG_H

#include <dlog.h>
#include <string.h>

#define MARL_LOG_TAG "VoiceEnginePlugIn"

// The file name without its folders.
inline const char* marlFileName(const char* path)
{
    const char* slash = strrchr(path, '/');
    return slash ? slash + 1 : path;
}

#define MARL_LOG_WITH_TAG(prio, tag, fmt, ...)                                              \
    dlog_print(prio, tag, "%s: %s(%d) > " fmt, marlFileName(__FILE__), __func__, __LINE__, ##__VA_ARGS__)

#define LOGD(fmt, ...) MARL_LOG_WITH_TAG(DLOG_DEBUG, MARL_LOG_TAG, fmt, ##__VA_ARGS__)
#define LOGI(fmt, ...) MARL_LOG_WITH_TAG(DLOG_INFO, MARL_LOG_TAG, fmt, ##__VA_ARGS__)
#define LOGE(fmt, ...) MARL_LOG_WITH_TAG(DLOG_ERROR, MARL_LOG_TAG, fmt, ##__VA_ARGS__)

// The place of the operation that logs, for shared helpers that log on their
// caller's behalf: the line carries the caller's file, function and line.
struct MarlLogSite {
    const char* file;
    const char* function;
    int line;
};

#define MARL_LOG_SITE (MarlLogSite{__FILE__, __func__, __LINE__})

#define LOGD_AT(site, fmt, ...)                                                                 \
    dlog_print(DLOG_DEBUG, MARL_LOG_TAG, "%s: %s(%d) > " fmt, marlFileName((site).file), (site).function, \
               (site).line, ##__VA_ARGS__)

#endif
