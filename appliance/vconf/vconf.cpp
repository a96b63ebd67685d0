// vconf over the device directory's key store (DIR/vconf/<key>, shared by
// every process on the same device), with change notification by inotify.
#include <vconf.h>

#include "vappliance/Device.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

const bool kNamesRegistered = (vapp::registerErrorNames({
                                   {"VCONF_OK", VCONF_OK},
                                   {"VCONF_ERROR", VCONF_ERROR},
                                   {"VCONF_ERROR_WRONG_PREFIX", VCONF_ERROR_WRONG_PREFIX},
                                   {"VCONF_ERROR_WRONG_TYPE", VCONF_ERROR_WRONG_TYPE},
                                   {"VCONF_ERROR_WRONG_VALUE", VCONF_ERROR_WRONG_VALUE},
                                   {"VCONF_ERROR_NOT_INITIALIZED", VCONF_ERROR_NOT_INITIALIZED},
                                   {"VCONF_ERROR_NO_MEM", VCONF_ERROR_NO_MEM},
                                   {"VCONF_ERROR_FILE_PERM", VCONF_ERROR_FILE_PERM},
                                   {"VCONF_ERROR_FILE_BUSY", VCONF_ERROR_FILE_BUSY},
                                   {"VCONF_ERROR_FILE_NO_MEM", VCONF_ERROR_FILE_NO_MEM},
                                   {"VCONF_ERROR_FILE_NO_ENT", VCONF_ERROR_FILE_NO_ENT},
                                   {"VCONF_ERROR_FILE_OPEN", VCONF_ERROR_FILE_OPEN},
                                   {"VCONF_ERROR_FILE_FREAD", VCONF_ERROR_FILE_FREAD},
                                   {"VCONF_ERROR_FILE_WRITE", VCONF_ERROR_FILE_WRITE},
                                   {"VCONF_ERROR_FILE_REMOVE", VCONF_ERROR_FILE_REMOVE},
                                   {"VCONF_ERROR_NOT_SUPPORTED", VCONF_ERROR_NOT_SUPPORTED},
                               }),
                               true);

thread_local int tLastError = VCONF_OK;

int failWith(int reason)
{
    tLastError = reason;
    return VCONF_ERROR;
}

// The key store's rule for key names: relative, no "..", no empty component.
bool goodKey(const char* key)
{
    if (!key || !*key || key[0] == '/')
        return false;
    const std::string k = key;
    return k.find("..") == std::string::npos && k.find("//") == std::string::npos &&
           k.back() != '/';
}

// An injected failure answers its code as it is.
bool injected(const char* function, int* code)
{
    if (!vapp::injectedError(function, code))
        return false;
    tLastError = *code;
    return true;
}

int readKey(const char* function, const char* key, vapp::VconfValue::Type type,
            vapp::VconfValue& value)
{
    int code;
    if (injected(function, &code))
        return code;
    if (!goodKey(key))
        return failWith(VCONF_ERROR_WRONG_PREFIX);
    if (!vapp::vconfRead(key, value))
        return failWith(::access(vapp::vconfKeyFile(key).c_str(), F_OK) == 0
                            ? VCONF_ERROR_FILE_FREAD
                            : VCONF_ERROR_FILE_NO_ENT);
    if (value.type != type)
        return failWith(VCONF_ERROR_WRONG_TYPE);
    tLastError = VCONF_OK;
    return VCONF_OK;
}

int writeKey(const char* function, const char* key, const vapp::VconfValue& value)
{
    int code;
    if (injected(function, &code))
        return code;
    if (!goodKey(key))
        return failWith(VCONF_ERROR_WRONG_PREFIX);
    if (!vapp::deviceExists())
        return failWith(VCONF_ERROR_FILE_NO_ENT);
    if (!vapp::vconfWrite(key, value))
        return failWith(VCONF_ERROR_FILE_WRITE);
    tLastError = VCONF_OK;
    return VCONF_OK;
}

// --- change notification -----------------------------------------------------

struct Registration {
    uint64_t id;
    std::string key;
    std::string dir;  // the host directory of the key file, watched by inotify
    std::string name; // the key file's name in it
    vconf_callback_fn cb;
    void* data;
};

// One per process, never destroyed: its thread may be blocked in read() while
// the process exits.
class Watcher {
public:
    static Watcher& instance()
    {
        static Watcher* watcher = new Watcher;
        return *watcher;
    }

    int add(const char* key, vconf_callback_fn cb, void* data)
    {
        const std::string file = vapp::vconfKeyFile(key);
        const auto slash = file.rfind('/');
        Registration reg{0, key, file.substr(0, slash), file.substr(slash + 1), cb, data};
        if (!vapp::deviceExists() || !vapp::makeDirs(reg.dir))
            return failWith(VCONF_ERROR_FILE_NO_ENT);

        std::lock_guard<std::mutex> lock(mMutex);
        if (mFd < 0 && (mFd = ::inotify_init1(IN_CLOEXEC)) < 0)
            return failWith(VCONF_ERROR);
        auto dir = mDirs.find(reg.dir);
        if (dir == mDirs.end()) {
            const int wd = ::inotify_add_watch(mFd, reg.dir.c_str(), IN_MOVED_TO | IN_CLOSE_WRITE);
            if (wd < 0)
                return failWith(VCONF_ERROR_FILE_OPEN);
            dir = mDirs.emplace(reg.dir, Watch{wd, 0}).first;
        }
        ++dir->second.users;
        reg.id = mNextId++;
        mRegs.push_back(reg);
        if (!mStarted) {
            mStarted = true;
            std::thread thread([this] { run(); });
            mThread = thread.get_id();
            thread.detach();
        }
        return VCONF_OK;
    }

    int remove(const char* key, vconf_callback_fn cb)
    {
        std::unique_lock<std::mutex> lock(mMutex);
        std::set<uint64_t> removed;
        for (auto it = mRegs.begin(); it != mRegs.end();) {
            if (it->key == key && it->cb == cb) {
                removed.insert(it->id);
                release(it->dir);
                it = mRegs.erase(it);
            } else {
                ++it;
            }
        }
        if (removed.empty())
            return failWith(VCONF_ERROR);
        // A callback of a removed registration may be running right now on
        // the watcher thread: wait for it, unless this is that thread.
        if (std::this_thread::get_id() != mThread)
            mIdle.wait(lock, [&] { return removed.count(mRunning) == 0; });
        return VCONF_OK;
    }

private:
    struct Watch {
        int wd;
        int users;
    };

    void release(const std::string& dir)
    {
        auto found = mDirs.find(dir);
        if (found != mDirs.end() && --found->second.users == 0) {
            ::inotify_rm_watch(mFd, found->second.wd);
            mDirs.erase(found);
        }
    }

    void run()
    {
        alignas(struct inotify_event) char buffer[16 * 1024];
        for (;;) {
            const ssize_t length = ::read(mFd, buffer, sizeof buffer);
            if (length < 0 && errno == EINTR)
                continue;
            if (length <= 0)
                return;
            for (ssize_t offset = 0; offset < length;) {
                const auto* event = reinterpret_cast<const struct inotify_event*>(buffer + offset);
                offset += static_cast<ssize_t>(sizeof(struct inotify_event) + event->len);
                if (event->mask & IN_IGNORED)
                    forget(event->wd);
                else if (event->len > 0)
                    deliver(event->wd, event->name);
            }
        }
    }

    // The watch is gone with its directory (the device was removed).
    void forget(int wd)
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (auto it = mDirs.begin(); it != mDirs.end(); ++it) {
            if (it->second.wd == wd) {
                mDirs.erase(it);
                return;
            }
        }
    }

    void deliver(int wd, const char* name)
    {
        std::vector<uint64_t> ids;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            for (const auto& reg : mRegs) {
                auto dir = mDirs.find(reg.dir);
                if (dir != mDirs.end() && dir->second.wd == wd && reg.name == name)
                    ids.push_back(reg.id);
            }
        }
        for (uint64_t id : ids) {
            std::unique_lock<std::mutex> lock(mMutex);
            const Registration* reg = nullptr;
            for (const auto& r : mRegs)
                if (r.id == id)
                    reg = &r;
            if (!reg)
                continue;  // ignored meanwhile
            const Registration call = *reg;
            mRunning = id;
            lock.unlock();

            vapp::VconfValue value;
            keynode_t node;
            std::memset(&node, 0, sizeof node);
            node.keyname = const_cast<char*>(call.key.c_str());
            node.type = VCONF_TYPE_NONE;
            if (vapp::vconfRead(call.key, value)) {
                switch (value.type) {
                case vapp::VconfValue::Int: node.type = VCONF_TYPE_INT; node.value.i = value.i; break;
                case vapp::VconfValue::Bool: node.type = VCONF_TYPE_BOOL; node.value.b = value.b; break;
                case vapp::VconfValue::Double: node.type = VCONF_TYPE_DOUBLE; node.value.d = value.d; break;
                case vapp::VconfValue::String:
                    node.type = VCONF_TYPE_STRING;
                    node.value.s = const_cast<char*>(value.s.c_str());
                    break;
                }
            }
            call.cb(&node, call.data);

            lock.lock();
            mRunning = 0;
            mIdle.notify_all();
        }
    }

    std::mutex mMutex;
    std::condition_variable mIdle;
    int mFd = -1;
    bool mStarted = false;
    std::thread::id mThread;
    std::map<std::string, Watch> mDirs;
    std::vector<Registration> mRegs;
    uint64_t mNextId = 1;
    uint64_t mRunning = 0;  // the registration whose callback runs now, 0 for none
};

}  // namespace

extern "C" {

char* vconf_keynode_get_name(keynode_t* keynode)
{
    return keynode ? keynode->keyname : nullptr;
}

int vconf_keynode_get_type(keynode_t* keynode)
{
    return keynode ? keynode->type : VCONF_ERROR;
}

int vconf_keynode_get_int(keynode_t* keynode)
{
    return keynode && keynode->type == VCONF_TYPE_INT ? keynode->value.i : 0;
}

double vconf_keynode_get_dbl(keynode_t* keynode)
{
    return keynode && keynode->type == VCONF_TYPE_DOUBLE ? keynode->value.d : 0.0;
}

int vconf_keynode_get_bool(keynode_t* keynode)
{
    return keynode && keynode->type == VCONF_TYPE_BOOL ? keynode->value.b : VCONF_ERROR;
}

char* vconf_keynode_get_str(keynode_t* keynode)
{
    return keynode && keynode->type == VCONF_TYPE_STRING ? keynode->value.s : nullptr;
}

int vconf_set_int(const char* in_key, const int intval)
{
    vapp::VconfValue value;
    value.type = vapp::VconfValue::Int;
    value.i = intval;
    return writeKey("vconf_set_int", in_key, value);
}

int vconf_set_bool(const char* in_key, const int boolval)
{
    vapp::VconfValue value;
    value.type = vapp::VconfValue::Bool;
    value.b = boolval != 0;
    return writeKey("vconf_set_bool", in_key, value);
}

int vconf_set_dbl(const char* in_key, const double dblval)
{
    vapp::VconfValue value;
    value.type = vapp::VconfValue::Double;
    value.d = dblval;
    return writeKey("vconf_set_dbl", in_key, value);
}

int vconf_set_str(const char* in_key, const char* strval)
{
    if (!strval)
        return failWith(VCONF_ERROR_WRONG_VALUE);
    vapp::VconfValue value;
    value.type = vapp::VconfValue::String;
    value.s = strval;
    return writeKey("vconf_set_str", in_key, value);
}

int vconf_get_int(const char* in_key, int* intval)
{
    if (!intval)
        return failWith(VCONF_ERROR_WRONG_VALUE);
    vapp::VconfValue value;
    const int result = readKey("vconf_get_int", in_key, vapp::VconfValue::Int, value);
    if (result == VCONF_OK)
        *intval = value.i;
    return result;
}

int vconf_get_bool(const char* in_key, int* boolval)
{
    if (!boolval)
        return failWith(VCONF_ERROR_WRONG_VALUE);
    vapp::VconfValue value;
    const int result = readKey("vconf_get_bool", in_key, vapp::VconfValue::Bool, value);
    if (result == VCONF_OK)
        *boolval = value.b ? 1 : 0;
    return result;
}

int vconf_get_dbl(const char* in_key, double* dblval)
{
    if (!dblval)
        return failWith(VCONF_ERROR_WRONG_VALUE);
    vapp::VconfValue value;
    const int result = readKey("vconf_get_dbl", in_key, vapp::VconfValue::Double, value);
    if (result == VCONF_OK)
        *dblval = value.d;
    return result;
}

char* vconf_get_str(const char* in_key)
{
    vapp::VconfValue value;
    if (readKey("vconf_get_str", in_key, vapp::VconfValue::String, value) != VCONF_OK)
        return nullptr;
    char* copy = ::strdup(value.s.c_str());
    if (!copy)
        failWith(VCONF_ERROR_NO_MEM);
    return copy;
}

int vconf_unset(const char* in_key)
{
    int code;
    if (injected("vconf_unset", &code))
        return code;
    if (!goodKey(in_key))
        return failWith(VCONF_ERROR_WRONG_PREFIX);
    if (::access(vapp::vconfKeyFile(in_key).c_str(), F_OK) != 0)
        return failWith(VCONF_ERROR_FILE_NO_ENT);
    if (!vapp::vconfUnset(in_key))
        return failWith(VCONF_ERROR_FILE_REMOVE);
    tLastError = VCONF_OK;
    return VCONF_OK;
}

int vconf_get_ext_errno(void)
{
    return tLastError;
}

int vconf_notify_key_changed(const char* in_key, vconf_callback_fn cb, void* user_data)
{
    int code;
    if (injected("vconf_notify_key_changed", &code))
        return code;
    if (!goodKey(in_key))
        return failWith(VCONF_ERROR_WRONG_PREFIX);
    if (!cb)
        return failWith(VCONF_ERROR_WRONG_VALUE);
    const int result = Watcher::instance().add(in_key, cb, user_data);
    if (result == VCONF_OK)
        tLastError = VCONF_OK;
    return result;
}

int vconf_ignore_key_changed(const char* in_key, vconf_callback_fn cb)
{
    int code;
    if (injected("vconf_ignore_key_changed", &code))
        return code;
    if (!goodKey(in_key) || !cb)
        return failWith(VCONF_ERROR_WRONG_VALUE);
    const int result = Watcher::instance().remove(in_key, cb);
    if (result == VCONF_OK)
        tLastError = VCONF_OK;
    return result;
}

}  // extern "C"
