// Which host path an appliance path stands for, as the file-system map sees it.
#include "vappliance/Device.h"

#include <cstddef>
#include <cstring>
#include <string>

namespace {

bool startsWith(const char* path, size_t length, const std::string& prefix)
{
    return length >= prefix.size() && std::memcmp(path, prefix.data(), prefix.size()) == 0;
}

}  // namespace

// 1 with the host path in `out` when `path` is an absolute appliance path under
// a mapped prefix (or the prefix itself without its slash), 0 when it passes
// through as it is, -1 when the host path does not fit into `size` bytes.
extern "C" int vappliance_fsmap_translate(const char* path, char* out, size_t size)
{
    if (!path || path[0] != '/')
        return 0;
    const size_t length = std::strlen(path);
    const std::string device = vapp::deviceDir();
    if (startsWith(path, length, device) &&
        (path[device.size()] == '/' || path[device.size()] == '\0'))
        return 0;
    for (const auto& prefix : vapp::mappedPrefixes()) {
        const bool under = startsWith(path, length, prefix);
        const bool itself = length + 1 == prefix.size() &&
                            std::memcmp(path, prefix.data(), length) == 0;
        if (under || itself) {
            const std::string host = vapp::hostPath(path);
            if (host.size() + 1 > size)
                return -1;
            std::memcpy(out, host.c_str(), host.size() + 1);
            return 1;
        }
    }
    return 0;
}
