#include <orvane-da-db/odb_manager.h>

#include <gtest/gtest.h>

#include <type_traits>

extern "C" {
struct odb_seen_column {
    int row;
    int type;
    const char* column;
    const char* text_value;
    int int_value;
};
odb_manager_foreach_cb odb_check_callback_from_c(void);
extern const int odb_check_codes_in_c[7];
}

TEST(DataStoreInterface, ErrorCodesAndValueTypes)
{
    EXPECT_EQ(ODB_ERROR_NONE, 0);
    EXPECT_EQ(ODB_ERROR_INVALID_PARAMETER, -1);
    EXPECT_EQ(ODB_ERROR_IO, -2);
    EXPECT_EQ(ODB_ERROR_NO_SUCH_TABLE, -3);
    EXPECT_EQ(ODB_ERROR_NOT_A_DATABASE, -4);
    EXPECT_EQ(ODB_VALUE_TYPE_INTEGER, 0);
    EXPECT_EQ(ODB_VALUE_TYPE_TEXT, 1);
    // Negative codes stay negative inside expressions.
    EXPECT_EQ(10 - ODB_ERROR_IO, 12);
}

TEST(DataStoreInterface, CAndCppSeeTheSameValues)
{
    const int expected[7] = {ODB_ERROR_NONE, ODB_ERROR_INVALID_PARAMETER, ODB_ERROR_IO, ODB_ERROR_NO_SUCH_TABLE,
                             ODB_ERROR_NOT_A_DATABASE, ODB_VALUE_TYPE_INTEGER, ODB_VALUE_TYPE_TEXT};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(odb_check_codes_in_c[i], expected[i]) << i;
}

TEST(DataStoreInterface, CallbackWrittenInCTakesTheRowArgumentsInOrder)
{
    odb_manager_foreach_cb cb = odb_check_callback_from_c();
    odb_seen_column seen = {};
    cb(4, ODB_VALUE_TYPE_TEXT, "isrunning", "1", -7, &seen);
    EXPECT_EQ(seen.row, 4);
    EXPECT_EQ(seen.type, ODB_VALUE_TYPE_TEXT);
    EXPECT_STREQ(seen.column, "isrunning");
    EXPECT_STREQ(seen.text_value, "1");
    EXPECT_EQ(seen.int_value, -7);
}

static_assert(std::is_same<odb_manager_h, void*>::value, "the handle is an opaque pointer");
static_assert(std::is_same<decltype(&odb_manager_create), int (*)(odb_manager_h*, const char*)>::value,
              "odb_manager_create");
static_assert(std::is_same<decltype(&odb_manager_foreach_table),
                           int (*)(odb_manager_h, const char*, odb_manager_foreach_cb, void*)>::value,
              "odb_manager_foreach_table");
static_assert(std::is_same<decltype(&odb_manager_destroy), int (*)(odb_manager_h)>::value, "odb_manager_destroy");
static_assert(std::is_same<odb_manager_foreach_cb,
                           void (*)(int, int, const char*, const char*, int, void*)>::value,
              "row callback");
