#ifndef TESTS_PLATFORM_VTABLE_SLOT_H
#define TESTS_PLATFORM_VTABLE_SLOT_H

#include <cstdint>
#include <cstring>
#include <vector>

// Index of a virtual member function's entry in its class's vtable, read from
// a pointer to member function as the Itanium C++ ABI lays it out: on x86 the
// first word is 1 + the entry's byte offset; on ARM it is the byte offset and
// the low bit of the second word marks a virtual function. -1 when the
// function isn't virtual. A virtual destructor takes two entries.
template <typename Member>
long vtableSlot(Member member)
{
    struct Raw {
        std::uintptr_t ptr;
        std::intptr_t adj;
    };
    static_assert(sizeof(Member) == sizeof(Raw), "unexpected member pointer size");
    Raw raw;
    std::memcpy(&raw, &member, sizeof raw);
#if defined(__arm__) || defined(__aarch64__)
    if ((raw.adj & 1) == 0)
        return -1;
    return static_cast<long>(raw.ptr / sizeof(void*));
#else
    if ((raw.ptr & 1) == 0)
        return -1;
    return static_cast<long>((raw.ptr - 1) / sizeof(void*));
#endif
}

template <typename... Members>
std::vector<long> vtableSlots(Members... members)
{
    return {vtableSlot(members)...};
}

// first, first + 1, ..., count entries.
inline std::vector<long> consecutiveSlots(long first, long count)
{
    std::vector<long> slots;
    for (long i = 0; i < count; ++i)
        slots.push_back(first + i);
    return slots;
}

#endif
