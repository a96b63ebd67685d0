#include "PluginClock.h"

#include "apps/DeviceClock.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <ctime>

namespace sim
{
namespace
{

time_t deviceTime(time_t* out)
{
    const time_t now = static_cast<time_t>(apps::clockNowSeconds());
    if (out)
        *out = now;
    return now;
}

// The same signature as std::chrono::system_clock::now(), a static member:
// the same calling convention.
std::chrono::system_clock::time_point deviceSystemNow() noexcept
{
    return std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(std::chrono::nanoseconds(apps::clockNowNs())));
}

// The symbol of a relocation, in this build's ELF class.
size_t symbolOf(uintptr_t info)
{
#if __ELF_NATIVE_CLASS == 64
    return ELF64_R_SYM(info);
#else
    return ELF32_R_SYM(info);
#endif
}

struct Redirect {
    const char* name;
    void* to;
};

const Redirect kRedirects[] = {
    {"time", reinterpret_cast<void*>(&deviceTime)},
    {"__time64", reinterpret_cast<void*>(&deviceTime)},  // a 32-bit build with a 64-bit time_t
    {"_ZNSt6chrono3_V212system_clock3nowEv", reinterpret_cast<void*>(&deviceSystemNow)},
};

// A dynamic-section address: the loader has relocated most of them already;
// one still relative to the object is made absolute.
uintptr_t absolute(uintptr_t value, uintptr_t base)
{
    return value < base ? value + base : value;
}

bool writeSlot(uintptr_t slot, void* value, std::string& error)
{
    const uintptr_t page = slot & ~(static_cast<uintptr_t>(sysconf(_SC_PAGESIZE)) - 1);
    // The slot may lie in the part that the loader made read-only after
    // relocating (RELRO); it is left writable.
    if (mprotect(reinterpret_cast<void*>(page), static_cast<size_t>(sysconf(_SC_PAGESIZE)), PROT_READ | PROT_WRITE) !=
        0) {
        error = std::string("cannot make a relocation slot writable: ") + std::strerror(errno);
        return false;
    }
    std::memcpy(reinterpret_cast<void*>(slot), &value, sizeof value);
    return true;
}

}  // namespace

bool pointPluginAtDeviceClock(void* handle, std::vector<std::string>& names, std::string& error)
{
    struct link_map* map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || !map) {
        error = "cannot find the plug-in's link map";
        return false;
    }
    const uintptr_t base = map->l_addr;
    const ElfW(Sym)* symbols = nullptr;
    const char* strings = nullptr;
    uintptr_t plt = 0, table = 0;
    size_t pltSize = 0, tableSize = 0;
    bool pltRela = false, tableRela = false;
    for (const ElfW(Dyn)* d = map->l_ld; d->d_tag != DT_NULL; ++d) {
        switch (d->d_tag) {
        case DT_SYMTAB: symbols = reinterpret_cast<const ElfW(Sym)*>(absolute(d->d_un.d_ptr, base)); break;
        case DT_STRTAB: strings = reinterpret_cast<const char*>(absolute(d->d_un.d_ptr, base)); break;
        case DT_JMPREL: plt = absolute(d->d_un.d_ptr, base); break;
        case DT_PLTRELSZ: pltSize = d->d_un.d_val; break;
        case DT_PLTREL: pltRela = d->d_un.d_val == DT_RELA; break;
        case DT_RELA:
        case DT_REL:
            table = absolute(d->d_un.d_ptr, base);
            tableRela = d->d_tag == DT_RELA;
            break;
        case DT_RELASZ:
        case DT_RELSZ: tableSize = d->d_un.d_val; break;
        default: break;
        }
    }
    if (!symbols || !strings) {
        error = "the plug-in has no dynamic symbol table";
        return false;
    }
    // Both the lazily bound calls and the slots bound at load (taken
    // addresses, -fno-plt) are pointed at the device's clock.
    auto walk = [&](uintptr_t start, size_t size, bool rela) {
        const size_t entry = rela ? sizeof(ElfW(Rela)) : sizeof(ElfW(Rel));
        for (uintptr_t at = start; start && at + entry <= start + size; at += entry) {
            const ElfW(Rel)* r = reinterpret_cast<const ElfW(Rel)*>(at);
            const size_t symbol = symbolOf(r->r_info);
            const char* name = strings + symbols[symbol].st_name;
            for (const Redirect& redirect : kRedirects) {
                if (symbol == 0 || std::strcmp(name, redirect.name) != 0)
                    continue;
                if (!writeSlot(base + r->r_offset, redirect.to, error))
                    return false;
                names.push_back(redirect.name);
            }
        }
        return true;
    };
    return walk(plt, pltSize, pltRela) && walk(table, tableSize, tableRela);
}

}  // namespace sim
