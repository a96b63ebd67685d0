#include "Store.h"

#include "vappliance/Device.h"

#include <sqlite3.h>

#include <set>

namespace apps {

bool Store::open(std::string& error)
{
    if (sqlite3_open(vapp::datastorePath().c_str(), &mDb) != SQLITE_OK) {
        error = "cannot open the data store: " + std::string(mDb ? sqlite3_errmsg(mDb) : "out of memory");
        return false;
    }
    // The plug-in's readers hold their read transactions only for a walk.
    sqlite3_busy_timeout(mDb, 2000);
    return true;
}

Store::~Store()
{
    sqlite3_close(mDb);
}

bool Store::exec(const std::string& sql)
{
    char* message = nullptr;
    if (sqlite3_exec(mDb, sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK)
        return true;
    mError = message ? message : sqlite3_errmsg(mDb);
    sqlite3_free(message);
    return false;
}

bool Store::run(const std::string& sql, const std::vector<std::string>& values)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(mDb, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        mError = sqlite3_errmsg(mDb);
        return false;
    }
    for (size_t i = 0; i < values.size(); ++i)
        sqlite3_bind_text(statement, static_cast<int>(i + 1), values[i].c_str(), -1, SQLITE_TRANSIENT);
    const bool ok = sqlite3_step(statement) == SQLITE_DONE;
    if (!ok)
        mError = sqlite3_errmsg(mDb);
    sqlite3_finalize(statement);
    return ok;
}

std::vector<StoredRow> Store::rows(const std::string& table)
{
    std::vector<StoredRow> out;
    sqlite3_stmt* statement = nullptr;
    const std::string sql = "SELECT rowid, * FROM " + vapp::quoteSqlIdentifier(table) + " ORDER BY rowid";
    if (sqlite3_prepare_v2(mDb, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        return out;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        StoredRow row;
        row.rowid = sqlite3_column_int64(statement, 0);
        for (int i = 1; i < sqlite3_column_count(statement); ++i) {
            const unsigned char* text = sqlite3_column_text(statement, i);
            if (text)
                row.values[sqlite3_column_name(statement, i)] = reinterpret_cast<const char*>(text);
        }
        out.push_back(std::move(row));
    }
    sqlite3_finalize(statement);
    return out;
}

bool Store::ensure(const std::string& table, const std::vector<std::string>& columns)
{
    std::set<std::string> present;
    sqlite3_stmt* statement = nullptr;
    const std::string info = "PRAGMA table_info(" + vapp::quoteSqlIdentifier(table) + ")";
    if (sqlite3_prepare_v2(mDb, info.c_str(), -1, &statement, nullptr) == SQLITE_OK) {
        while (sqlite3_step(statement) == SQLITE_ROW)
            present.insert(reinterpret_cast<const char*>(sqlite3_column_text(statement, 1)));
        sqlite3_finalize(statement);
    }
    if (present.empty()) {
        std::string create = "CREATE TABLE " + vapp::quoteSqlIdentifier(table) + " (";
        for (size_t i = 0; i < columns.size(); ++i)
            create += (i ? ", " : "") + vapp::quoteSqlIdentifier(columns[i]);
        return exec(create + ")");
    }
    for (const std::string& column : columns)
        if (!present.count(column) &&
            !exec("ALTER TABLE " + vapp::quoteSqlIdentifier(table) + " ADD COLUMN " + vapp::quoteSqlIdentifier(column)))
            return false;
    return true;
}

bool Store::insert(const std::string& table, const Row& row)
{
    std::string names, marks;
    std::vector<std::string> values;
    for (const auto& column : row) {
        names += (names.empty() ? "" : ", ") + vapp::quoteSqlIdentifier(column.first);
        marks += marks.empty() ? "?" : ", ?";
        values.push_back(column.second);
    }
    return run("INSERT INTO " + vapp::quoteSqlIdentifier(table) + " (" + names + ") VALUES (" + marks + ")", values);
}

bool Store::update(const std::string& table, long long rowid, const Row& changes)
{
    std::string set;
    std::vector<std::string> values;
    for (const auto& column : changes) {
        set += (set.empty() ? "" : ", ") + vapp::quoteSqlIdentifier(column.first) + " = ?";
        values.push_back(column.second);
    }
    return run("UPDATE " + vapp::quoteSqlIdentifier(table) + " SET " + set + " WHERE rowid = " +
                   std::to_string(rowid),
               values);
}

bool Store::remove(const std::string& table, long long rowid)
{
    return run("DELETE FROM " + vapp::quoteSqlIdentifier(table) + " WHERE rowid = " + std::to_string(rowid), {});
}

bool Store::clear(const std::string& table)
{
    return run("DELETE FROM " + vapp::quoteSqlIdentifier(table), {});
}

bool Store::begin()
{
    return exec("BEGIN IMMEDIATE");
}

bool Store::commit()
{
    return exec("COMMIT");
}

void Store::rollback()
{
    exec("ROLLBACK");
}

}  // namespace apps
