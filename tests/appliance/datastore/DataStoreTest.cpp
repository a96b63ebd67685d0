#include "TestDevice.h"

#include <orvane-da-db/odb_manager.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

struct Cell {
    int row;
    int type;
    std::string column;
    std::string text;
    int value;
};

void collect(int row, int type, const char* column, const char* text, int value, void* data)
{
    static_cast<std::vector<Cell>*>(data)->push_back({row, type, column, text ? text : "", value});
}

int walk(const char* table, std::vector<Cell>& cells)
{
    odb_manager_h handle = nullptr;
    const int created = odb_manager_create(&handle, "PRIVATE Orvane");
    if (created != ODB_ERROR_NONE)
        return created;
    const int walked = odb_manager_foreach_table(handle, table, collect, &cells);
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
    return walked;
}

int sqlite3Cli(const std::string& sql)
{
    // No busy wait: a handle that kept the store locked would make this fail.
    return std::system(("sqlite3 -cmd '.timeout 0' " + vapp::datastorePath() + " \"" + sql + "\" >/dev/null 2>&1").c_str());
}

std::string textsOf(const std::vector<Cell>& cells)
{
    std::string texts;
    for (const auto& cell : cells)
        texts += std::to_string(cell.row) + ":" + cell.column + "=" +
                 (cell.type == ODB_VALUE_TYPE_TEXT ? cell.text : std::to_string(cell.value)) + " ";
    return texts;
}

struct Nested {
    odb_manager_h handle;
    std::vector<Cell> outer;
    std::vector<Cell> inner;
    int innerResult = -100;
};

void walkAgain(int row, int type, const char* column, const char* text, int value, void* data)
{
    Nested* nested = static_cast<Nested*>(data);
    nested->outer.push_back({row, type, column, text ? text : "", value});
    if (nested->innerResult == -100)
        nested->innerResult = odb_manager_foreach_table(nested->handle, "Timer", collect, &nested->inner);
}

}  // namespace

TEST(DataStore, RowsAreWalkedInWrittenOrderWithTheirTypes)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [
        {"id": "7", "delayTime": 300},
        {"id": "2", "isrunning": "1"}]}})");
    std::vector<Cell> cells;
    ASSERT_EQ(walk("Timer", cells), ODB_ERROR_NONE);
    ASSERT_EQ(cells.size(), 4u);
    EXPECT_EQ(cells[0].row, 0);
    EXPECT_EQ(cells[0].column, "delayTime");
    EXPECT_EQ(cells[0].type, ODB_VALUE_TYPE_INTEGER);
    EXPECT_EQ(cells[0].value, 300);
    EXPECT_EQ(cells[1].row, 0);
    EXPECT_EQ(cells[1].column, "id");
    EXPECT_EQ(cells[1].type, ODB_VALUE_TYPE_TEXT);
    EXPECT_EQ(cells[1].text, "7");
    // The second row lacks "delayTime": that column is not handed out for it.
    EXPECT_EQ(cells[2].row, 1);
    EXPECT_EQ(cells[2].column, "id");
    EXPECT_EQ(cells[2].text, "2");
    EXPECT_EQ(cells[3].row, 1);
    EXPECT_EQ(cells[3].column, "isrunning");
    EXPECT_EQ(cells[3].text, "1");
}

TEST(DataStore, NegativeAndHugeIntegersKeepTheirValue)
{
    marltest::TestDevice dev(R"({"datastore": {"Music": [{"a": -5, "b": 9000000000}]}})");
    std::vector<Cell> cells;
    ASSERT_EQ(walk("Music", cells), ODB_ERROR_NONE);
    ASSERT_EQ(cells.size(), 2u);
    EXPECT_EQ(cells[0].type, ODB_VALUE_TYPE_INTEGER);
    EXPECT_EQ(cells[0].value, -5);
    EXPECT_EQ(cells[1].type, ODB_VALUE_TYPE_TEXT);
    EXPECT_EQ(cells[1].text, "9000000000");
}

TEST(DataStore, AnEmptyTableIsAGoodWalk)
{
    marltest::TestDevice dev(R"({"datastore": {"Music": []}})");
    std::vector<Cell> cells;
    EXPECT_EQ(walk("Music", cells), ODB_ERROR_NONE);
    EXPECT_TRUE(cells.empty());
}

TEST(DataStore, AnUnknownTableIsReported)
{
    marltest::TestDevice dev(R"({"datastore": {"Music": []}})");
    std::vector<Cell> cells;
    EXPECT_EQ(walk("Timer", cells), ODB_ERROR_NO_SUCH_TABLE);
}

TEST(DataStore, AStoreThatWasNeverWrittenIsAnIoError)
{
    marltest::TestDevice dev;
    std::vector<Cell> cells;
    EXPECT_EQ(walk("Timer", cells), ODB_ERROR_IO);
}

TEST(DataStore, AFileThatIsNoDatabaseIsReported)
{
    marltest::TestDevice dev;
    std::ofstream(dev.path("datastore.db")) << "this is not a database, just some text that is long enough";
    std::vector<Cell> cells;
    EXPECT_EQ(walk("Timer", cells), ODB_ERROR_NOT_A_DATABASE);
    EXPECT_TRUE(cells.empty());
}

TEST(DataStore, WalksSeeWhatWasPublishedSinceTheHandleWasMade)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": []}})");
    odb_manager_h handle = nullptr;
    ASSERT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), ODB_ERROR_NONE);
    dev.apply(R"({"datastore": {"Timer": [{"id": "1"}]}})");
    std::vector<Cell> cells;
    EXPECT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    EXPECT_EQ(cells.size(), 1u);
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
}

TEST(DataStore, InjectedErrorsAreReturned)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [{"id": "1"}]},
                                 "errors": {"odb_manager_foreach_table": "ODB_ERROR_IO", "odb_manager_create": -9}})");
    odb_manager_h handle = nullptr;
    EXPECT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), -9);
    dev.apply(R"({"errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    ASSERT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), ODB_ERROR_NONE);
    std::vector<Cell> cells;
    EXPECT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_IO);
    EXPECT_TRUE(cells.empty());
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
}

TEST(DataStore, NoDeviceDirectoryRefusesTheStore)
{
    ::setenv("MARL_DEVICE_DIR", "/nonexistent/marl-device", 1);
    odb_manager_h handle = nullptr;
    EXPECT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), ODB_ERROR_IO);
}

TEST(DataStore, NullArgumentsAreInvalid)
{
    marltest::TestDevice dev;
    odb_manager_h handle = nullptr;
    EXPECT_EQ(odb_manager_create(nullptr, "x"), ODB_ERROR_INVALID_PARAMETER);
    ASSERT_EQ(odb_manager_create(&handle, "x"), ODB_ERROR_NONE);
    EXPECT_EQ(odb_manager_foreach_table(handle, nullptr, collect, nullptr), ODB_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(odb_manager_foreach_table(handle, "Timer", nullptr, nullptr), ODB_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
    EXPECT_EQ(odb_manager_destroy(nullptr), ODB_ERROR_INVALID_PARAMETER);
}

TEST(DataStore, AKeptHandleSeesEveryRowThatAnotherProcessWrites)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [{"id": "1"}]}})");
    odb_manager_h handle = nullptr;
    ASSERT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), ODB_ERROR_NONE);
    std::vector<Cell> cells;
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:id=1 ");
    // Two writes within the same second, each seen by the next walk.
    for (const char* id : {"2", "3"}) {
        ASSERT_EQ(sqlite3Cli(std::string("UPDATE Timer SET id = '") + id + "'"), 0);
        cells.clear();
        ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
        EXPECT_EQ(textsOf(cells), std::string("0:id=") + id + " ");
    }
    ASSERT_EQ(sqlite3Cli("INSERT INTO Timer VALUES ('4')"), 0);
    cells.clear();
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:id=3 1:id=4 ");
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
}

TEST(DataStore, AKeptHandleSeesATableMadeAgainWithOtherColumns)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [{"id": "1"}]}})");
    odb_manager_h handle = nullptr;
    ASSERT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), ODB_ERROR_NONE);
    std::vector<Cell> cells;
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    ASSERT_EQ(sqlite3Cli("DROP TABLE Timer; CREATE TABLE Timer (id, delayTime); INSERT INTO Timer VALUES ('7', 60)"), 0);
    cells.clear();
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:id=7 0:delayTime=60 ");
    ASSERT_EQ(sqlite3Cli("DROP TABLE Timer"), 0);
    EXPECT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NO_SUCH_TABLE);
    dev.apply(R"({"datastore": {"Timer": [{"isrunning": "1"}]}})");
    cells.clear();
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:isrunning=1 ");
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
}

TEST(DataStore, AKeptHandleFollowsAStoreThatIsRemovedOrReplaced)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [{"id": "1"}]}})");
    odb_manager_h handle = nullptr;
    ASSERT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), ODB_ERROR_NONE);
    std::vector<Cell> cells;
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    ASSERT_EQ(::unlink(vapp::datastorePath().c_str()), 0);
    EXPECT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_IO);
    std::ofstream(vapp::datastorePath()) << "this is not a database, just some text that is long enough";
    EXPECT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NOT_A_DATABASE);
    ASSERT_EQ(::unlink(vapp::datastorePath().c_str()), 0);
    dev.apply(R"({"datastore": {"Timer": [{"id": "9"}]}})");
    cells.clear();
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:id=9 ");
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
}

TEST(DataStore, AKeptHandleLeavesTheStoreUnlockedBetweenWalks)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [{"id": "1"}, {"id": "2"}]}})");
    odb_manager_h handle = nullptr;
    ASSERT_EQ(odb_manager_create(&handle, "PRIVATE Orvane"), ODB_ERROR_NONE);
    std::vector<Cell> cells;
    ASSERT_EQ(odb_manager_foreach_table(handle, "Timer", collect, &cells), ODB_ERROR_NONE);
    EXPECT_EQ(odb_manager_foreach_table(handle, "Music", collect, &cells), ODB_ERROR_NO_SUCH_TABLE);
    EXPECT_EQ(sqlite3Cli("INSERT INTO Timer VALUES ('3')"), 0);
    EXPECT_EQ(odb_manager_destroy(handle), ODB_ERROR_NONE);
}

TEST(DataStore, ACallbackMayWalkAgainOnTheSameHandle)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [{"id": "1"}, {"id": "2"}]}})");
    Nested nested;
    ASSERT_EQ(odb_manager_create(&nested.handle, "PRIVATE Orvane"), ODB_ERROR_NONE);
    ASSERT_EQ(odb_manager_foreach_table(nested.handle, "Timer", walkAgain, &nested), ODB_ERROR_NONE);
    EXPECT_EQ(nested.innerResult, ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(nested.outer), "0:id=1 1:id=2 ");
    EXPECT_EQ(textsOf(nested.inner), "0:id=1 1:id=2 ");
    EXPECT_EQ(odb_manager_destroy(nested.handle), ODB_ERROR_NONE);
}

TEST(DataStore, TheNextHandleSeesWhatChangedAfterTheLastOneWasDestroyed)
{
    marltest::TestDevice dev(R"({"datastore": {"Timer": [{"id": "1"}]}})");
    std::vector<Cell> cells;
    ASSERT_EQ(walk("Timer", cells), ODB_ERROR_NONE);
    ASSERT_EQ(sqlite3Cli("UPDATE Timer SET id = '2'"), 0);
    cells.clear();
    ASSERT_EQ(walk("Timer", cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:id=2 ");
    ASSERT_EQ(::unlink(vapp::datastorePath().c_str()), 0);
    dev.apply(R"({"datastore": {"Timer": [{"id": "3"}]}})");
    cells.clear();
    ASSERT_EQ(walk("Timer", cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:id=3 ");
    marltest::TestDevice other(R"({"datastore": {"Timer": [{"id": "4"}]}})");
    cells.clear();
    ASSERT_EQ(walk("Timer", cells), ODB_ERROR_NONE);
    EXPECT_EQ(textsOf(cells), "0:id=4 ");
}
