// Touches an appliance path at the very end of the process, after main has
// returned and the static objects of every library are destroyed, and says
// what the map made of it. Run by FsmapAtExit with the map preloaded.
#include "vappliance/Device.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void touchAtExit()
{
    using Translate = int (*)(const char*, char*, size_t);
    auto translate = reinterpret_cast<Translate>(::dlsym(RTLD_DEFAULT, "vappliance_fsmap_translate"));
    char out[PATH_MAX];
    const int mapped = translate ? translate("/opt/usr/at-exit", out, sizeof out) : -2;
    const int found = ::access("/opt/usr/at-exit", F_OK);
    std::printf("at exit: translate %d access %d\n", mapped, found);
    std::fflush(stdout);
}

}  // namespace

int main()
{
    // Registered first, so it runs last, after the destructors of the statics
    // made below on the way to the device's root.
    std::atexit(touchAtExit);
    if (!vapp::makeDirs(vapp::hostPath("/opt/usr")))
        return 2;
    std::FILE* file = std::fopen("/opt/usr/at-exit", "w");
    if (!file)
        return 3;
    std::fclose(file);
    std::printf("in main: %s\n", vapp::mappedPrefixes().front().c_str());
    return 0;
}
