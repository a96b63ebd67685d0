// The appliance data store: named tables that the appliance's apps publish,
// here one SQLite database in the device directory with one SQL table per
// appliance table. Rows are walked in the order they were written; each column
// of a row reaches the callback with its type: text, or integer. A handle keeps
// its connection and statements; every walk still sees the latest rows.
#include <orvane-da-db/odb_manager.h>

#include "vappliance/Device.h"

#include <sqlite3.h>

#include <sys/stat.h>

#include <climits>
#include <map>
#include <memory>
#include <mutex>
#include <cstdio>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

const bool gNames = [] {
    vapp::registerErrorNames({{"ODB_ERROR_NONE", ODB_ERROR_NONE},
                              {"ODB_ERROR_INVALID_PARAMETER", ODB_ERROR_INVALID_PARAMETER},
                              {"ODB_ERROR_IO", ODB_ERROR_IO},
                              {"ODB_ERROR_NO_SUCH_TABLE", ODB_ERROR_NO_SUCH_TABLE},
                              {"ODB_ERROR_NOT_A_DATABASE", ODB_ERROR_NOT_A_DATABASE}});
    return true;
}();

// At most this many tables keep a prepared walk; more are prepared per walk.
const size_t kKeptWalks = 64;

int storeError(sqlite3* db)
{
    const int code = db ? sqlite3_errcode(db) : SQLITE_CANTOPEN;
    return code == SQLITE_NOTADB ? ODB_ERROR_NOT_A_DATABASE : ODB_ERROR_IO;
}

// A statement handed back reset, so that no read transaction stays open
// between walks (a writer would wait for it).
class Step {
public:
    explicit Step(sqlite3_stmt* stmt) : mStmt(stmt) {}
    ~Step()
    {
        sqlite3_reset(mStmt);
        sqlite3_clear_bindings(mStmt);
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

private:
    sqlite3_stmt* mStmt;
};

// One read-only connection to the device's store with its prepared
// statements.
struct Connection {
    sqlite3* db = nullptr;
    std::string path;
    dev_t dev = 0;
    ino_t ino = 0;
    sqlite3_stmt* exists = nullptr;
    std::map<std::string, sqlite3_stmt*> walks;

    ~Connection()
    {
        sqlite3_finalize(exists);
        for (auto& walk : walks)
            sqlite3_finalize(walk.second);
        sqlite3_close(db);
    }
};

// Connections of destroyed handles, for the next handle: a reader that makes
// a handle per read still reads through a prepared connection.
const size_t kPooled = 4;
std::mutex gPoolMutex;
std::vector<std::unique_ptr<Connection>> gPool;

std::unique_ptr<Connection> takePooled(const std::string& path)
{
    std::lock_guard<std::mutex> lock(gPoolMutex);
    for (auto it = gPool.begin(); it != gPool.end(); ++it) {
        if ((*it)->path == path) {
            std::unique_ptr<Connection> connection = std::move(*it);
            gPool.erase(it);
            return connection;
        }
    }
    return nullptr;
}

void givePooled(std::unique_ptr<Connection> connection)
{
    std::lock_guard<std::mutex> lock(gPoolMutex);
    if (connection && connection->db && gPool.size() < kPooled)
        gPool.push_back(std::move(connection));
}

// A handle: a read-only connection to the device's store and its prepared
// statements, kept for the life of the handle (and then kept for the next
// handle). Each walk is a read transaction of its own, so it sees what other
// processes committed before it; a statement whose table was dropped and made
// again is prepared again by SQLite itself. The connection is opened again
// when the database file is another file than the one it has open (a fresh
// device, a replaced file).
class Store {
public:
    explicit Store(std::string client) : mClient(std::move(client)) {}
    ~Store() { givePooled(std::move(mConnection)); }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    int walk(const char* table, odb_manager_foreach_cb cb, void* userData)
    {
        std::lock_guard<std::recursive_mutex> lock(mMutex);
        // A callback that walks again on the same handle gets statements of
        // its own: the kept ones are in use.
        if (mWalking)
            return walkOnce(table, cb, userData);
        const int code = connect();
        if (code != ODB_ERROR_NONE)
            return code;
        mWalking = true;
        const int result = walkWith(*mConnection, table, cb, userData);
        mWalking = false;
        // A failed walk may leave the connection in a state that a repaired
        // file would not clear: the next walk starts afresh.
        if (result != ODB_ERROR_NONE && result != ODB_ERROR_NO_SUCH_TABLE)
            mConnection.reset();
        return result;
    }

private:
    int connect()
    {
        const std::string path = vapp::datastorePath();
        struct stat st;
        if (::stat(path.c_str(), &st) != 0) {
            mConnection.reset();
            return ODB_ERROR_IO;
        }
        if (!mConnection || mConnection->path != path)
            mConnection = takePooled(path);
        if (mConnection && mConnection->dev == st.st_dev && mConnection->ino == st.st_ino)
            return ODB_ERROR_NONE;
        mConnection.reset(new (std::nothrow) Connection());
        if (!mConnection)
            return ODB_ERROR_IO;
        if (sqlite3_open_v2(path.c_str(), &mConnection->db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
            mConnection.reset();
            return ODB_ERROR_IO;
        }
        sqlite3_busy_timeout(mConnection->db, 1000);
        mConnection->path = path;
        mConnection->dev = st.st_dev;
        mConnection->ino = st.st_ino;
        return ODB_ERROR_NONE;
    }

    static int walkWith(Connection& c, const char* table, odb_manager_foreach_cb cb, void* userData)
    {
        if (!c.exists && sqlite3_prepare_v2(c.db, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?",
                                            -1, &c.exists, nullptr) != SQLITE_OK)
            return storeError(c.db);
        int found;
        {
            Step step(c.exists);
            sqlite3_bind_text(c.exists, 1, table, -1, SQLITE_TRANSIENT);
            found = sqlite3_step(c.exists);
        }
        if (found == SQLITE_DONE)
            return ODB_ERROR_NO_SUCH_TABLE;
        if (found != SQLITE_ROW)
            return storeError(c.db);

        auto kept = c.walks.find(table);
        sqlite3_stmt* rows = kept == c.walks.end() ? nullptr : kept->second;
        if (!rows) {
            const std::string sql = "SELECT * FROM " + vapp::quoteSqlIdentifier(table) + " ORDER BY rowid";
            if (sqlite3_prepare_v2(c.db, sql.c_str(), -1, &rows, nullptr) != SQLITE_OK)
                return storeError(c.db);
            if (c.walks.size() >= kKeptWalks) {
                const int result = walkRows(c.db, rows, cb, userData);
                sqlite3_finalize(rows);
                return result;
            }
            c.walks.emplace(table, rows);
        }
        Step step(rows);
        return walkRows(c.db, rows, cb, userData);
    }

    // A walk on a connection of its own, as a nested walk needs.
    int walkOnce(const char* table, odb_manager_foreach_cb cb, void* userData)
    {
        Store once(mClient);
        return once.walk(table, cb, userData);
    }

    // Walks the rows in rowid order and hands out every column that holds a value.
    static int walkRows(sqlite3* db, sqlite3_stmt* rows, odb_manager_foreach_cb cb, void* userData)
    {
        int row = 0;
        for (int step = sqlite3_step(rows); step != SQLITE_DONE; step = sqlite3_step(rows), ++row) {
            if (step != SQLITE_ROW)
                return storeError(db);
            const int columns = sqlite3_column_count(rows);
            for (int column = 0; column < columns; ++column) {
                const char* name = sqlite3_column_name(rows, column);
                const int type = sqlite3_column_type(rows, column);
                if (type == SQLITE_NULL)
                    continue;
                const sqlite3_int64 value = sqlite3_column_int64(rows, column);
                if (type == SQLITE_INTEGER && value >= INT_MIN && value <= INT_MAX) {
                    cb(row, ODB_VALUE_TYPE_INTEGER, name, nullptr, static_cast<int>(value), userData);
                } else {
                    // Text, and whatever does not fit an int, travels as text.
                    const unsigned char* text = sqlite3_column_text(rows, column);
                    cb(row, ODB_VALUE_TYPE_TEXT, name, text ? reinterpret_cast<const char*>(text) : "", 0,
                       userData);
                }
            }
        }
        return ODB_ERROR_NONE;
    }

    std::recursive_mutex mMutex;
    std::string mClient;
    bool mWalking = false;
    std::unique_ptr<Connection> mConnection;
};

}  // namespace

extern "C" {

int odb_manager_create(odb_manager_h* handle, const char* client_name)
{
    if (!handle)
        return ODB_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError("odb_manager_create", &code))
        return code;
    if (!vapp::deviceExists())
        return ODB_ERROR_IO;
    Store* store = new (std::nothrow) Store(client_name ? client_name : "");
    if (!store)
        return ODB_ERROR_IO;
    *handle = store;
    return ODB_ERROR_NONE;
}

int odb_manager_foreach_table(odb_manager_h handle, const char* table, odb_manager_foreach_cb cb, void* user_data)
{
    if (!handle || !table || !cb)
        return ODB_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError("odb_manager_foreach_table", &code))
        return code;
    return static_cast<Store*>(handle)->walk(table, cb, user_data);
}

int odb_manager_destroy(odb_manager_h handle)
{
    if (!handle)
        return ODB_ERROR_INVALID_PARAMETER;
    delete static_cast<Store*>(handle);
    int code = 0;
    if (vapp::injectedError("odb_manager_destroy", &code))
        return code;
    return ODB_ERROR_NONE;
}

}  // extern "C"
