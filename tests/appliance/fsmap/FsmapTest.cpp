#include "TestDevice.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace {

// Whether a path exists on the host itself, asked of the kernel directly so
// that the map cannot answer.
bool existsOnTheHost(const std::string& path)
{
    return ::syscall(SYS_faccessat, AT_FDCWD, path.c_str(), F_OK) == 0;
}

using Translate = int (*)(const char*, char*, size_t);

Translate translate()
{
    return reinterpret_cast<Translate>(::dlsym(RTLD_DEFAULT, "vappliance_fsmap_translate"));
}

// A path under a mapped prefix, before main and before any device is named.
const int gEarlyAccess = ::access("/opt/usr/no-such-file-before-main", F_OK);
const int gEarlyErrno = errno;

class Fsmap : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(nullptr, translate()) << "libvappliance-fsmap.so is not preloaded";
        ASSERT_FALSE(existsOnTheHost("/home/owner/share/x.pcm"));
    }
};

TEST_F(Fsmap, IsPreloadedWithoutBeingLinked)
{
    const char* preload = std::getenv("LD_PRELOAD");
    ASSERT_NE(nullptr, preload);
    EXPECT_NE(nullptr, std::strstr(preload, "libvappliance-fsmap.so"));
}

TEST_F(Fsmap, IsSafeBeforeMain)
{
    EXPECT_EQ(-1, gEarlyAccess);
    EXPECT_EQ(ENOENT, gEarlyErrno);
}

TEST_F(Fsmap, FopenWritesIntoTheDeviceRootAndNotTheHost)
{
    marltest::TestDevice dev;
    FILE* out = std::fopen("/home/owner/share/x.pcm", "wb");
    ASSERT_NE(nullptr, out) << std::strerror(errno);
    const char pcm[] = {1, 2, 3, 4};
    EXPECT_EQ(4u, std::fwrite(pcm, 1, 4, out));
    EXPECT_EQ(0, std::fclose(out));
    EXPECT_TRUE(existsOnTheHost(dev.path("root/home/owner/share/x.pcm")));
    EXPECT_FALSE(existsOnTheHost("/home/owner/share/x.pcm"));
    EXPECT_FALSE(existsOnTheHost("/home/owner"));
}

TEST_F(Fsmap, IfstreamAccessAndUnlinkSeeTheMappedFile)
{
    marltest::TestDevice dev;
    {
        std::ofstream out("/home/owner/share/x.pcm", std::ios::binary);
        out << "pcm data";
    }
    std::ifstream in("/home/owner/share/x.pcm", std::ios::binary);
    std::string text;
    std::getline(in, text);
    EXPECT_EQ("pcm data", text);
    EXPECT_EQ(0, ::access("/home/owner/share/x.pcm", R_OK));
    EXPECT_EQ(0, ::unlink("/home/owner/share/x.pcm"));
    EXPECT_EQ(-1, ::access("/home/owner/share/x.pcm", F_OK));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_FALSE(existsOnTheHost(dev.path("root/home/owner/share/x.pcm")));
}

TEST_F(Fsmap, SqliteDatabaseAtAnAppliancePathLivesInTheDevice)
{
    marltest::TestDevice dev;
    for (const char* dir : {"/home/owner/apps_rw/test", "/home/owner/apps_rw/test/shared",
                            "/home/owner/apps_rw/test/shared/trusted"})
        ASSERT_EQ(0, ::mkdir(dir, 0755)) << dir << ": " << std::strerror(errno);
    const char* path = "/home/owner/apps_rw/test/shared/trusted/Recipe.db";
    sqlite3* db = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open(path, &db));
    ASSERT_EQ(SQLITE_OK, sqlite3_exec(db,
                                      "CREATE TABLE foodMinderTable (name TEXT);"
                                      "INSERT INTO foodMinderTable VALUES ('milk'), ('eggs');",
                                      nullptr, nullptr, nullptr))
        << sqlite3_errmsg(db);
    sqlite3_close(db);

    db = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open_v2(path, &db, SQLITE_OPEN_READONLY, nullptr));
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_prepare_v2(db, "SELECT count(*) FROM foodMinderTable", -1, &stmt, nullptr));
    ASSERT_EQ(SQLITE_ROW, sqlite3_step(stmt));
    EXPECT_EQ(2, sqlite3_column_int(stmt, 0));
    sqlite3_finalize(stmt);
    sqlite3_close(db);

    EXPECT_TRUE(existsOnTheHost(dev.path("root/home/owner/apps_rw/test/shared/trusted/Recipe.db")));
    // The rollback journal came and went beside it.
    EXPECT_FALSE(existsOnTheHost(dev.path("root/home/owner/apps_rw/test/shared/trusted/Recipe.db-journal")));
    EXPECT_EQ(-1, ::access("/home/owner/apps_rw/test/shared/trusted/Recipe.db-journal", F_OK));
    EXPECT_FALSE(existsOnTheHost("/home/owner"));
}

TEST_F(Fsmap, DirectoriesStatRenameAndRealpathWork)
{
    marltest::TestDevice dev;
    ASSERT_TRUE(std::filesystem::create_directories("/home/owner/media/a/b"));
    std::ofstream("/home/owner/media/a/one") << "1";
    struct stat st;
    ASSERT_EQ(0, ::stat("/home/owner/media/a/one", &st));
    EXPECT_EQ(1, st.st_size);
    ASSERT_EQ(0, ::lstat("/home/owner/media/a/b", &st));
    EXPECT_TRUE(S_ISDIR(st.st_mode));

    ASSERT_EQ(0, std::rename("/home/owner/media/a/one", "/home/owner/media/a/two"));
    std::set<std::string> names;
    DIR* dir = ::opendir("/home/owner/media/a");
    ASSERT_NE(nullptr, dir);
    while (const dirent* entry = ::readdir(dir))
        names.insert(entry->d_name);
    ::closedir(dir);
    EXPECT_EQ((std::set<std::string>{".", "..", "b", "two"}), names);

    char resolved[PATH_MAX];
    ASSERT_NE(nullptr, ::realpath("/home/owner/media/a/two", resolved));
    EXPECT_EQ(std::filesystem::canonical(dev.path("root/home/owner/media/a/two")).string(),
              std::string(resolved));
    ASSERT_EQ(0, ::truncate("/home/owner/media/a/two", 0));
    ASSERT_EQ(0, ::chmod("/home/owner/media/a/two", 0600));
    ASSERT_EQ(0, ::stat(dev.path("root/home/owner/media/a/two").c_str(), &st));
    EXPECT_EQ(0, st.st_size);
    EXPECT_EQ(0600u, st.st_mode & 0777);

    ASSERT_EQ(0, ::symlink("two", dev.path("root/home/owner/media/a/link").c_str()));
    char target[64] = {};
    EXPECT_EQ(3, ::readlink("/home/owner/media/a/link", target, sizeof target - 1));
    EXPECT_STREQ("two", target);

    EXPECT_EQ(0, ::rmdir("/home/owner/media/a/b"));
    EXPECT_EQ(0, std::remove("/home/owner/media/a/two"));
    EXPECT_EQ(2u, std::filesystem::remove_all("/home/owner/media/a"));  // "link" and "a"
    EXPECT_FALSE(existsOnTheHost(dev.path("root/home/owner/media/a")));
}

TEST_F(Fsmap, AtFunctionsMapAbsolutePaths)
{
    marltest::TestDevice dev;
    ASSERT_EQ(0, ::mkdirat(AT_FDCWD, "/opt/usr/data/at", 0755));
    const int fd = ::openat(AT_FDCWD, "/opt/usr/data/at/f", O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ASSERT_GE(fd, 0);
    ::close(fd);
    EXPECT_EQ(0, ::faccessat(AT_FDCWD, "/opt/usr/data/at/f", F_OK, 0));
    struct stat st;
    EXPECT_EQ(0, ::fstatat(AT_FDCWD, "/opt/usr/data/at/f", &st, 0));
    EXPECT_EQ(0, ::renameat(AT_FDCWD, "/opt/usr/data/at/f", AT_FDCWD, "/opt/usr/data/at/g"));
    EXPECT_EQ(0, ::unlinkat(AT_FDCWD, "/opt/usr/data/at/g", 0));
    EXPECT_EQ(0, ::unlinkat(AT_FDCWD, "/opt/usr/data/at", AT_REMOVEDIR));
    EXPECT_TRUE(existsOnTheHost(dev.path("root/opt/usr/data")));
    EXPECT_FALSE(existsOnTheHost(dev.path("root/opt/usr/data/at")));
}

TEST_F(Fsmap, ChildProcessesAreMappedToo)
{
    marltest::TestDevice dev;
    ASSERT_EQ(0, std::system("echo from-the-shell > /home/owner/share/child.txt"));
    std::ifstream in(dev.path("root/home/owner/share/child.txt"));
    std::string text;
    std::getline(in, text);
    EXPECT_EQ("from-the-shell", text);
    EXPECT_FALSE(existsOnTheHost("/home/owner/share/child.txt"));
}

TEST_F(Fsmap, EveryMappedPrefixGoesToTheRoot)
{
    marltest::TestDevice dev;
    char out[PATH_MAX];
    for (const auto& prefix : vapp::mappedPrefixes()) {
        ASSERT_EQ(1, translate()((prefix + "f").c_str(), out, sizeof out)) << prefix;
        EXPECT_EQ(vapp::hostPath(prefix + "f"), std::string(out));
        const std::string bare = prefix.substr(0, prefix.size() - 1);
        ASSERT_EQ(1, translate()(bare.c_str(), out, sizeof out)) << bare;
        EXPECT_EQ(dev.path("root") + bare, std::string(out));
    }
}

TEST_F(Fsmap, OtherPathsPassThrough)
{
    marltest::TestDevice dev;
    char out[PATH_MAX];
    for (const char* path : {"/tmp/x", "/home/ownerx/y", "/home", "home/owner/x", "/usr/share/x",
                             "/optx/usr/y", ""})
        EXPECT_EQ(0, translate()(path, out, sizeof out)) << path;
    EXPECT_EQ(0, translate()(nullptr, out, sizeof out));
    EXPECT_EQ(0, translate()(dev.path("root/home/owner/x").c_str(), out, sizeof out));
}

TEST_F(Fsmap, PathsInsideTheDeviceDirectoryPassThroughEvenUnderAPrefix)
{
    marltest::TestDevice dev;
    ::setenv("MARL_DEVICE_DIR", "/home/owner/.marl-device", 1);
    char out[PATH_MAX];
    EXPECT_EQ(0, translate()("/home/owner/.marl-device/vconf/db/k", out, sizeof out));
    EXPECT_EQ(0, translate()("/home/owner/.marl-device", out, sizeof out));
    EXPECT_EQ(1, translate()("/home/owner/.marl-devicex", out, sizeof out));
    ::setenv("MARL_DEVICE_DIR", dev.dir().c_str(), 1);
}

TEST_F(Fsmap, TooLongAHostPathFailsWithNameTooLong)
{
    marltest::TestDevice dev;
    const std::string path = "/home/owner/" + std::string(PATH_MAX - 20, 'a');
    errno = 0;
    EXPECT_EQ(nullptr, std::fopen(path.c_str(), "w"));
    EXPECT_EQ(ENAMETOOLONG, errno);
    EXPECT_EQ(-1, ::access(path.c_str(), F_OK));
    EXPECT_EQ(ENAMETOOLONG, errno);
}

TEST_F(Fsmap, WithoutADeviceDirectoryMappedPathsFailAndTheHostIsUntouched)
{
    std::string missing;
    {
        marltest::TestDevice dev;
        missing = dev.dir();
    }
    ::setenv("MARL_DEVICE_DIR", missing.c_str(), 1);
    errno = 0;
    EXPECT_EQ(nullptr, std::fopen("/home/owner/share/x.pcm", "w"));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_NE(0, ::mkdir("/home/owner", 0755));
    EXPECT_FALSE(existsOnTheHost("/home/owner"));
    EXPECT_FALSE(existsOnTheHost(missing));
}

}  // namespace
