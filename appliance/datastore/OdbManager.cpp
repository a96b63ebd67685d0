// The appliance data store: named tables that the appliance's apps publish,
// here one SQLite database in the device directory with one SQL table per
// appliance table. Rows are walked in the order they were written; each column
// of a row reaches the callback with its type: text, or integer.
#include <orvane-da-db/odb_manager.h>

#include "vappliance/Device.h"

#include <sqlite3.h>

#include <climits>
#include <cstdio>
#include <new>
#include <string>

namespace {

struct Store {
    std::string client;
};

const bool gNames = [] {
    vapp::registerErrorNames({{"ODB_ERROR_NONE", ODB_ERROR_NONE},
                              {"ODB_ERROR_INVALID_PARAMETER", ODB_ERROR_INVALID_PARAMETER},
                              {"ODB_ERROR_IO", ODB_ERROR_IO},
                              {"ODB_ERROR_NO_SUCH_TABLE", ODB_ERROR_NO_SUCH_TABLE},
                              {"ODB_ERROR_NOT_A_DATABASE", ODB_ERROR_NOT_A_DATABASE}});
    return true;
}();

int storeError(sqlite3* db)
{
    const int code = db ? sqlite3_errcode(db) : SQLITE_CANTOPEN;
    return code == SQLITE_NOTADB ? ODB_ERROR_NOT_A_DATABASE : ODB_ERROR_IO;
}

// Walks the table's rows in rowid order and hands out every column that holds a value.
int walkTable(sqlite3* db, const char* table, odb_manager_foreach_cb cb, void* userData)
{
    sqlite3_stmt* exists = nullptr;
    if (sqlite3_prepare_v2(db, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?", -1, &exists,
                           nullptr) != SQLITE_OK)
        return storeError(db);
    sqlite3_bind_text(exists, 1, table, -1, SQLITE_TRANSIENT);
    const int found = sqlite3_step(exists);
    sqlite3_finalize(exists);
    if (found == SQLITE_DONE)
        return ODB_ERROR_NO_SUCH_TABLE;
    if (found != SQLITE_ROW)
        return storeError(db);

    sqlite3_stmt* rows = nullptr;
    const std::string sql = "SELECT * FROM " + vapp::quoteSqlIdentifier(table) + " ORDER BY rowid";
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &rows, nullptr) != SQLITE_OK)
        return storeError(db);
    int result = ODB_ERROR_NONE;
    int row = 0;
    for (int step = sqlite3_step(rows); step != SQLITE_DONE; step = sqlite3_step(rows), ++row) {
        if (step != SQLITE_ROW) {
            result = storeError(db);
            break;
        }
        for (int column = 0; column < sqlite3_column_count(rows); ++column) {
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
                cb(row, ODB_VALUE_TYPE_TEXT, name, text ? reinterpret_cast<const char*>(text) : "", 0, userData);
            }
        }
    }
    sqlite3_finalize(rows);
    return result;
}

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
    Store* store = new (std::nothrow) Store();
    if (!store)
        return ODB_ERROR_IO;
    store->client = client_name ? client_name : "";
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
    // The store is opened for each walk, so every walk sees what the apps
    // published last.
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(vapp::datastorePath().c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return ODB_ERROR_IO;
    }
    sqlite3_busy_timeout(db, 1000);
    const int result = walkTable(db, table, cb, user_data);
    sqlite3_close(db);
    return result;
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
