// The apps' side of the data store: they publish their state as rows of
// text, as the appliance's apps do, in the same SQLite database that the
// plug-in's readers walk (DIR/datastore.db). Each change is one transaction.
#pragma once

#include <map>
#include <string>
#include <vector>

struct sqlite3;

namespace apps {

using Row = std::map<std::string, std::string>;

struct StoredRow {
    long long rowid = 0;
    Row values;  // the columns that hold a value, as text
};

class Store {
public:
    // Opens the device's data store (made when missing); false, with the
    // reason, when it cannot be opened.
    bool open(std::string& error);
    ~Store();

    // The rows in the order they were written; none when the table is missing.
    std::vector<StoredRow> rows(const std::string& table);
    // Makes the table when missing and adds the columns it lacks.
    bool ensure(const std::string& table, const std::vector<std::string>& columns);
    bool insert(const std::string& table, const Row& row);
    bool update(const std::string& table, long long rowid, const Row& values);
    bool remove(const std::string& table, long long rowid);
    // Every row removed.
    bool clear(const std::string& table);

    bool begin();
    bool commit();
    void rollback();
    const std::string& error() const { return mError; }

private:
    bool exec(const std::string& sql);
    bool run(const std::string& sql, const std::vector<std::string>& values);

    sqlite3* mDb = nullptr;
    std::string mError;
};

}  // namespace apps
