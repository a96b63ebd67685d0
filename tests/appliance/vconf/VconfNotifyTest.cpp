#include <vconf.h>

#include "TestDevice.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

// What a callback saw, one record per call.
struct Seen {
    std::string name;
    int type = 0;
    int i = 0;
    int b = 0;
    double d = 0;
    std::string s;
    std::thread::id thread;
};

struct Recorder {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Seen> calls;

    bool waitFor(size_t count, std::chrono::milliseconds limit = 5000ms)
    {
        std::unique_lock<std::mutex> lock(mutex);
        return changed.wait_for(lock, limit, [&] { return calls.size() >= count; });
    }
    size_t count()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return calls.size();
    }
};

void record(keynode_t* node, void* data)
{
    auto* recorder = static_cast<Recorder*>(data);
    Seen seen;
    seen.name = vconf_keynode_get_name(node);
    seen.type = vconf_keynode_get_type(node);
    seen.i = vconf_keynode_get_int(node);
    seen.b = vconf_keynode_get_bool(node);
    seen.d = vconf_keynode_get_dbl(node);
    const char* s = vconf_keynode_get_str(node);
    seen.s = s ? s : "(null)";
    seen.thread = std::this_thread::get_id();
    std::lock_guard<std::mutex> lock(recorder->mutex);
    recorder->calls.push_back(seen);
    recorder->changed.notify_all();
}

TEST(VconfNotify, ChangeArrivesOnAnotherThreadOfTheWritingProcess)
{
    marltest::TestDevice dev;
    Recorder recorder;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/orvane/e-commerce/response", record, &recorder));
    ASSERT_EQ(VCONF_OK, vconf_set_int("db/orvane/e-commerce/response", 3));
    ASSERT_TRUE(recorder.waitFor(1));
    EXPECT_EQ("db/orvane/e-commerce/response", recorder.calls[0].name);
    EXPECT_EQ(VCONF_TYPE_INT, recorder.calls[0].type);
    EXPECT_EQ(3, recorder.calls[0].i);
    EXPECT_NE(std::this_thread::get_id(), recorder.calls[0].thread);
    EXPECT_EQ(VCONF_OK, vconf_ignore_key_changed("db/orvane/e-commerce/response", record));
}

TEST(VconfNotify, TheNodeCarriesEachType)
{
    marltest::TestDevice dev;
    Recorder recorder;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/k", record, &recorder));
    vconf_set_str("db/k", "text");
    ASSERT_TRUE(recorder.waitFor(1));
    vconf_set_bool("db/k", 1);
    ASSERT_TRUE(recorder.waitFor(2));
    vconf_set_dbl("db/k", 2.5);
    ASSERT_TRUE(recorder.waitFor(3));
    vconf_ignore_key_changed("db/k", record);

    EXPECT_EQ(VCONF_TYPE_STRING, recorder.calls[0].type);
    EXPECT_EQ("text", recorder.calls[0].s);
    EXPECT_EQ(0, recorder.calls[0].i);
    EXPECT_EQ(VCONF_TYPE_BOOL, recorder.calls[1].type);
    EXPECT_EQ(1, recorder.calls[1].b);
    EXPECT_EQ("(null)", recorder.calls[1].s);
    EXPECT_EQ(VCONF_TYPE_DOUBLE, recorder.calls[2].type);
    EXPECT_DOUBLE_EQ(2.5, recorder.calls[2].d);
    EXPECT_EQ(VCONF_ERROR, recorder.calls[2].b);
}

TEST(VconfNotify, EveryWriteNotifiesEveryRegistration)
{
    marltest::TestDevice dev;
    Recorder first, second;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/k", record, &first));
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/k", record, &second));
    for (int i = 1; i <= 3; ++i)
        vconf_set_int("db/k", i);
    EXPECT_TRUE(first.waitFor(3));
    EXPECT_TRUE(second.waitFor(3));
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(3u, first.count());
    EXPECT_EQ(3u, second.count());
    EXPECT_EQ(3, first.calls.back().i);
    vconf_ignore_key_changed("db/k", record);
}

TEST(VconfNotify, OtherKeysOfTheSameFolderDoNotNotify)
{
    marltest::TestDevice dev;
    Recorder recorder;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/setting/region_code", record, &recorder));
    vconf_set_str("db/setting/country_code", "US");
    vconf_set_str("db/setting/region_code_x", "US");
    vconf_set_str("db/setting/region_code", "KR");
    ASSERT_TRUE(recorder.waitFor(1));
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(1u, recorder.count());
    EXPECT_EQ("KR", recorder.calls[0].s);
    vconf_ignore_key_changed("db/setting/region_code", record);
}

TEST(VconfNotify, AWriteFromAnotherProcessIsDelivered)
{
    marltest::TestDevice dev;
    Recorder recorder;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/orvane/e-commerce/response", record, &recorder));
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0)
        ::_exit(vconf_set_str("db/orvane/e-commerce/response", "done") == VCONF_OK ? 0 : 1);
    int status = 0;
    ASSERT_EQ(pid, ::waitpid(pid, &status, 0));
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    ASSERT_TRUE(recorder.waitFor(1));
    EXPECT_EQ("done", recorder.calls[0].s);
    vconf_ignore_key_changed("db/orvane/e-commerce/response", record);
}

TEST(VconfNotify, IgnoredRegistrationIsNeverCalledAgain)
{
    marltest::TestDevice dev;
    Recorder recorder;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/k", record, &recorder));
    vconf_set_int("db/k", 1);
    ASSERT_TRUE(recorder.waitFor(1));
    ASSERT_EQ(VCONF_OK, vconf_ignore_key_changed("db/k", record));
    vconf_set_int("db/k", 2);
    EXPECT_FALSE(recorder.waitFor(2, 300ms));
    // A second ignore finds nothing to remove.
    EXPECT_EQ(VCONF_ERROR, vconf_ignore_key_changed("db/k", record));
}

struct Slow {
    std::atomic<bool> entered{false};
    std::atomic<bool> left{false};
};

void slowCallback(keynode_t*, void* data)
{
    auto* slow = static_cast<Slow*>(data);
    slow->entered = true;
    std::this_thread::sleep_for(300ms);
    slow->left = true;
}

TEST(VconfNotify, IgnoreWaitsForARunningCallback)
{
    marltest::TestDevice dev;
    Slow slow;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/k", slowCallback, &slow));
    vconf_set_int("db/k", 1);
    for (int i = 0; i < 500 && !slow.entered; ++i)
        std::this_thread::sleep_for(10ms);
    ASSERT_TRUE(slow.entered);
    ASSERT_EQ(VCONF_OK, vconf_ignore_key_changed("db/k", slowCallback));
    EXPECT_TRUE(slow.left);
}

struct SelfRemoving {
    std::atomic<int> calls{0};
    std::atomic<int> ignoreResult{1};
};

void removeItself(keynode_t* node, void* data)
{
    auto* self = static_cast<SelfRemoving*>(data);
    ++self->calls;
    self->ignoreResult = vconf_ignore_key_changed(vconf_keynode_get_name(node), removeItself);
}

TEST(VconfNotify, IgnoreFromInsideTheCallbackDoesNotDeadlock)
{
    marltest::TestDevice dev;
    SelfRemoving self;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/k", removeItself, &self));
    vconf_set_int("db/k", 1);
    for (int i = 0; i < 500 && self.ignoreResult != VCONF_OK; ++i)
        std::this_thread::sleep_for(10ms);
    ASSERT_EQ(VCONF_OK, self.ignoreResult);
    vconf_set_int("db/k", 2);
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(1, self.calls);
    // Other registrations keep being served by the same thread.
    Recorder recorder;
    ASSERT_EQ(VCONF_OK, vconf_notify_key_changed("db/k", record, &recorder));
    vconf_set_int("db/k", 3);
    EXPECT_TRUE(recorder.waitFor(1));
    vconf_ignore_key_changed("db/k", record);
}

TEST(VconfNotify, BadRegistrationsAreRefused)
{
    marltest::TestDevice dev;
    Recorder recorder;
    EXPECT_EQ(VCONF_ERROR, vconf_notify_key_changed("db/k", nullptr, &recorder));
    EXPECT_EQ(VCONF_ERROR, vconf_notify_key_changed("../k", record, &recorder));
    EXPECT_EQ(VCONF_ERROR, vconf_notify_key_changed(nullptr, record, &recorder));
    EXPECT_EQ(VCONF_ERROR, vconf_ignore_key_changed("db/never", record));
}

TEST(VconfNotify, InjectedErrorIsReturnedAsIsAndRegistersNothing)
{
    marltest::TestDevice dev(R"({"errors": {"vconf_notify_key_changed": "VCONF_ERROR_FILE_BUSY"}})");
    Recorder recorder;
    EXPECT_EQ(VCONF_ERROR_FILE_BUSY, vconf_notify_key_changed("db/k", record, &recorder));
    vconf_set_int("db/k", 1);
    EXPECT_FALSE(recorder.waitFor(1, 300ms));
    EXPECT_EQ(VCONF_ERROR, vconf_ignore_key_changed("db/k", record));
}

TEST(VconfNotify, MissingDeviceDirectoryRefusesRegistrationWithoutMakingIt)
{
    std::string missing;
    {
        marltest::TestDevice dev;
        missing = dev.dir();
    }
    ::setenv("MARL_DEVICE_DIR", missing.c_str(), 1);
    Recorder recorder;
    EXPECT_EQ(VCONF_ERROR, vconf_notify_key_changed("db/k", record, &recorder));
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, vconf_get_ext_errno());
    EXPECT_NE(0, ::access(missing.c_str(), F_OK));
}

}  // namespace
