// vconftool: reads, writes and watches keys of a device's key store.
//
//   vconftool set -t <string|int|bool|double> KEY VALUE [--device DIR]
//   vconftool get KEY [--device DIR]
//   vconftool unset KEY [--device DIR]
//   vconftool watch KEY [--count N] [--timeout SECONDS] [--device DIR]
#include <vconf.h>

#include "vappliance/Device.h"

#include <cerrno>
#include <chrono>
#include <climits>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

namespace {

int usage(const std::string& problem = std::string())
{
    if (!problem.empty())
        std::fprintf(stderr, "vconftool: %s\n", problem.c_str());
    std::fprintf(stderr,
                 "usage: vconftool set -t <string|int|bool|double> KEY VALUE [--device DIR]\n"
                 "       vconftool get KEY [--device DIR]\n"
                 "       vconftool unset KEY [--device DIR]\n"
                 "       vconftool watch KEY [--count N] [--timeout SECONDS] [--device DIR]\n");
    return 2;
}

int fail(const std::string& message)
{
    std::fprintf(stderr, "vconftool: %s\n", message.c_str());
    return 1;
}

bool parseLong(const std::string& text, long& out)
{
    char* end = nullptr;
    errno = 0;
    out = std::strtol(text.c_str(), &end, 10);
    return !text.empty() && *end == '\0' && errno == 0;
}

std::string formatDouble(double value)
{
    // The shortest text that reads back as the same number.
    char text[64];
    for (int precision = 15; precision <= 17; ++precision) {
        std::snprintf(text, sizeof text, "%.*g", precision, value);
        if (std::strtod(text, nullptr) == value)
            break;
    }
    return text;
}

std::string formatValue(const vapp::VconfValue& value)
{
    switch (value.type) {
    case vapp::VconfValue::Int: return std::to_string(value.i);
    case vapp::VconfValue::Bool: return value.b ? "1" : "0";
    case vapp::VconfValue::Double: return formatDouble(value.d);
    default: return value.s;
    }
}

std::string formatNode(keynode_t* node)
{
    switch (vconf_keynode_get_type(node)) {
    case VCONF_TYPE_INT: return std::to_string(vconf_keynode_get_int(node));
    case VCONF_TYPE_BOOL: return vconf_keynode_get_bool(node) ? "1" : "0";
    case VCONF_TYPE_DOUBLE: return formatDouble(vconf_keynode_get_dbl(node));
    case VCONF_TYPE_STRING: return vconf_keynode_get_str(node);
    default: return "(unset)";
    }
}

bool noDevice(int& status)
{
    if (vapp::deviceExists())
        return false;
    status = fail("no device directory " + vapp::deviceDir());
    return true;
}

int set(const std::vector<std::string>& args)
{
    // set -t TYPE KEY VALUE
    if (args.size() != 5 || args[1] != "-t")
        return usage();
    const std::string& type = args[2];
    const char* key = args[3].c_str();
    const std::string& text = args[4];
    long number = 0;
    double real = 0.0;
    if (type == "int") {
        if (!parseLong(text, number) || number < INT_MIN || number > INT_MAX)
            return usage("\"" + text + "\" is not an int");
    } else if (type == "bool") {
        if (text == "1" || text == "true")
            number = 1;
        else if (text != "0" && text != "false")
            return usage("\"" + text + "\" is not a bool (1, 0, true or false)");
    } else if (type == "double") {
        char* end = nullptr;
        real = std::strtod(text.c_str(), &end);
        if (text.empty() || *end)
            return usage("\"" + text + "\" is not a double");
    } else if (type != "string") {
        return usage("unknown type \"" + type + "\"");
    }
    int result;
    if (noDevice(result))
        return result;
    if (type == "int")
        result = vconf_set_int(key, static_cast<int>(number));
    else if (type == "bool")
        result = vconf_set_bool(key, static_cast<int>(number));
    else if (type == "double")
        result = vconf_set_dbl(key, real);
    else
        result = vconf_set_str(key, text.c_str());
    if (result != VCONF_OK)
        return fail("cannot set " + args[3] + " in " + vapp::deviceDir() + " (error " +
                    std::to_string(vconf_get_ext_errno()) + ")");
    return 0;
}

int get(const std::string& key)
{
    int status;
    if (noDevice(status))
        return status;
    vapp::VconfValue value;
    if (!vapp::vconfRead(key, value))
        return fail(key + " is not set in " + vapp::deviceDir());
    std::printf("%s\n", formatValue(value).c_str());
    return 0;
}

int unset(const std::string& key)
{
    int status;
    if (noDevice(status))
        return status;
    if (vconf_unset(key.c_str()) != VCONF_OK)
        return fail(key + " is not set in " + vapp::deviceDir());
    return 0;
}

struct WatchState {
    std::mutex mutex;
    std::condition_variable changed;
    long seen = 0;
};

void onChange(keynode_t* node, void* data)
{
    auto* state = static_cast<WatchState*>(data);
    std::printf("%s=%s\n", vconf_keynode_get_name(node), formatNode(node).c_str());
    std::fflush(stdout);
    std::lock_guard<std::mutex> lock(state->mutex);
    ++state->seen;
    state->changed.notify_all();
}

int watch(std::vector<std::string> args)
{
    // watch KEY [--count N] [--timeout SECONDS]
    if (args.size() < 2)
        return usage();
    const std::string key = args[1];
    long count = -1;
    long timeout = -1;
    for (size_t i = 2; i < args.size(); i += 2) {
        if (i + 1 >= args.size())
            return usage("missing value for " + args[i]);
        long* target = args[i] == "--count" ? &count : args[i] == "--timeout" ? &timeout : nullptr;
        if (!target)
            return usage("unknown option " + args[i]);
        if (!parseLong(args[i + 1], *target) || *target < 0)
            return usage(args[i] + " takes a number, not \"" + args[i + 1] + "\"");
    }
    int status;
    if (noDevice(status))
        return status;
    static WatchState state;
    if (vconf_notify_key_changed(key.c_str(), onChange, &state) != VCONF_OK)
        return fail("cannot watch " + key + " in " + vapp::deviceDir());
    // Tells a reader on the other end of a pipe that changes from now on are seen.
    std::printf("watching %s\n", key.c_str());
    std::fflush(stdout);

    std::unique_lock<std::mutex> lock(state.mutex);
    auto done = [&] { return count >= 0 && state.seen >= count; };
    if (timeout < 0) {
        state.changed.wait(lock, done);
    } else if (!state.changed.wait_for(lock, std::chrono::seconds(timeout), done)) {
        if (count >= 0)
            return fail("timed out after " + std::to_string(state.seen) + " of " +
                        std::to_string(count) + " changes of " + key);
    }
    lock.unlock();
    vconf_ignore_key_changed(key.c_str(), onChange);
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--device") {
            if (i + 1 >= args.size())
                return usage("--device needs a directory");
            ::setenv("MARL_DEVICE_DIR", args[i + 1].c_str(), 1);
            args.erase(args.begin() + static_cast<long>(i), args.begin() + static_cast<long>(i) + 2);
            break;
        }
    }
    if (args.empty())
        return usage();
    if (args[0] == "set")
        return set(args);
    if (args[0] == "get" && args.size() == 2)
        return get(args[1]);
    if (args[0] == "unset" && args.size() == 2)
        return unset(args[1]);
    if (args[0] == "watch")
        return watch(args);
    return usage();
}
