#pragma once
// A test whose tool is missing here may skip on a developer's machine; under
// CI (CI=true) the same condition fails the test, so that a CI step never
// passes by skipping what it exists to check.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

inline bool marlUnderCi()
{
    const char* ci = std::getenv("CI");
    return ci && std::strcmp(ci, "true") == 0;
}

#define MARL_SKIP_OUTSIDE_CI(message)                                              \
    do {                                                                           \
        if (marlUnderCi())                                                         \
            GTEST_FAIL() << "cannot run, and under CI that is a failure: " << message; \
        else                                                                       \
            GTEST_SKIP() << message;                                               \
    } while (0)
