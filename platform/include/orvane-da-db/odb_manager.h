/* C interface of the appliance's data store (liborvane-da-db.so): apps
 * publish their state as named tables, read here row by row. */
#ifndef ORVANE_DA_DB_ODB_MANAGER_H
#define ORVANE_DA_DB_ODB_MANAGER_H

#ifdef __cplusplus
extern "C" {
#endif

/* Return codes of the odb_manager_* functions. */
#define ODB_ERROR_NONE 0
#define ODB_ERROR_INVALID_PARAMETER (-1)
#define ODB_ERROR_IO (-2)
#define ODB_ERROR_NO_SUCH_TABLE (-3)
#define ODB_ERROR_NOT_A_DATABASE (-4)

/* The type argument of odb_manager_foreach_cb: which value argument holds
 * the column's value. */
#define ODB_VALUE_TYPE_INTEGER 0
#define ODB_VALUE_TYPE_TEXT 1

typedef void *odb_manager_h;

/* Called once per column of each row, synchronously, before
 * odb_manager_foreach_table returns. text_value holds the value when type
 * is ODB_VALUE_TYPE_TEXT, int_value otherwise. */
typedef void (*odb_manager_foreach_cb)(int row, int type, const char *column,
                                       const char *text_value, int int_value,
                                       void *user_data);

int odb_manager_create(odb_manager_h *handle, const char *client_name);
int odb_manager_foreach_table(odb_manager_h handle, const char *table,
                              odb_manager_foreach_cb cb, void *user_data);
int odb_manager_destroy(odb_manager_h handle);

#ifdef __cplusplus
}
#endif

#endif
