/* The data store header built as C, with a callback written in C. */
#include <orvane-da-db/odb_manager.h>

#include <stddef.h>

struct odb_seen_column {
    int row;
    int type;
    const char *column;
    const char *text_value;
    int int_value;
};

static void store_column(int row, int type, const char *column, const char *text_value, int int_value,
                         void *user_data)
{
    struct odb_seen_column *seen = (struct odb_seen_column *)user_data;
    seen->row = row;
    seen->type = type;
    seen->column = column;
    seen->text_value = text_value;
    seen->int_value = int_value;
}

odb_manager_foreach_cb odb_check_callback_from_c(void)
{
    return store_column;
}

const int odb_check_codes_in_c[7] = {
    ODB_ERROR_NONE, ODB_ERROR_INVALID_PARAMETER, ODB_ERROR_IO, ODB_ERROR_NO_SUCH_TABLE,
    ODB_ERROR_NOT_A_DATABASE, ODB_VALUE_TYPE_INTEGER, ODB_VALUE_TYPE_TEXT,
};

