#include "TestDevice.h"

#include <orvane-da-db/odb_manager.h>

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
