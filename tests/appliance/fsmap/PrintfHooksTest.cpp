#include "SkipOutsideCi.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <printf.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace {

int gHandlerCalls = 0;

int printW(FILE* stream, const struct printf_info*, const void* const*)
{
    ++gHandlerCalls;
    return std::fputs("W", stream) < 0 ? -1 : 1;
}

int argumentsOfW(const struct printf_info*, size_t, int*, int*)
{
    return 0;
}

// The file that defines the function a symbol resolves to in this process.
std::string definingFile(const char* symbol)
{
    void* address = ::dlsym(RTLD_DEFAULT, symbol);
    Dl_info info{};
    if (!address || !::dladdr(address, &info) || !info.dli_fname)
        return "";
    return info.dli_fname;
}

TEST(PrintfHooks, RegistrationsResolveToThePreloadedMap)
{
    for (const char* symbol : {"register_printf_type", "register_printf_modifier", "register_printf_specifier",
                               "register_printf_function"})
        EXPECT_NE(std::string::npos, definingFile(symbol).find("libvappliance-fsmap.so")) << symbol;
}

TEST(PrintfHooks, ARegistrationIsDeclinedAndPrintfNeverCallsTheHandler)
{
    errno = 0;
    EXPECT_EQ(-1, register_printf_specifier('W', printW, argumentsOfW));
    EXPECT_EQ(ENOSYS, errno);
    EXPECT_EQ(-1, register_printf_modifier(L"Q"));
    char text[32];
    std::snprintf(text, sizeof text, "a %d b", 7);
    EXPECT_EQ(std::string("a 7 b"), text);
    EXPECT_EQ(0, gHandlerCalls);
}

#ifdef __SIZEOF_FLOAT128__
TEST(PrintfHooks, LibquadmathCannotTeachPrintfItsQModifier)
{
    // Registered, "%Qf" would print the number; declined, the conversion is
    // unknown to glibc, which prints it as it stands.
    void* quadmath = ::dlopen("libquadmath.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!quadmath)
        MARL_SKIP_OUTSIDE_CI("no libquadmath.so.0 here");
    const __float128 half = 0.5;
    const char* format = "%Qf";
    char text[32];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(text, sizeof text, format, half);
#pragma GCC diagnostic pop
    EXPECT_STREQ("%Qf", text);
    ::dlclose(quadmath);
}
#endif

}  // namespace
