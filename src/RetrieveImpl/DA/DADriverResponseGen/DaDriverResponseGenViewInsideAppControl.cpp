#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenViewInsideAppControl.h"

#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/MarlLog.h"

#include <sqlite3.h>
#include <vconf.h>

namespace {

const char* const VIEW_INSIDE_APP = "LAykghKXQw.FoodMinder";
const char* const RECIPE_DATABASE = "/home/owner/apps_rw/org.tizen.webdatabaseserviceapp/shared/trusted/Recipe.db";
const char* const ROOM_KEY = "db/orvane/ref_room";
const int ITEM_LIMIT = 150;
// Steps that keep failing are counted like rows; past this many the list is
// full whatever else happens, so the walk ends.
const int STEP_LIMIT = 100000;

const struct {
    const char* name;
    int bit;
} ROOMS[] = {{"Fridge", 0}, {"Freezer", 1}, {"Flex Zone", 2}, {"Pantry", 3}};

// The database is opened in a frame of its own: a handle whose opening failed
// is kept, and the leak check's suppression names this frame alone.
int openRecipeDatabase(sqlite3** db)
{
    return sqlite3_open(RECIPE_DATABASE, db);
}

}  // namespace

DaDriverResponseGenViewInsideAppControl::DaDriverResponseGenViewInsideAppControl(Json::Value request)
    : DaDriverResponseGen(request)
{
    const std::string actionName = getActionName();
    const std::string locationName = getParameter("locationName");
    if (actionName == "View Inside Status Check Request")
        makeViewInsideStatusCheckReply();
    else if (actionName == "View Inside Item Check Request")
        makeViewInsideItemCheckReply(locationName);
    else
        dataNode.clear();
}

void DaDriverResponseGenViewInsideAppControl::makeViewInsideStatusCheckReply()
{
    dataNode["status"] = Util::AppControl::isForeground(VIEW_INSIDE_APP) ? "Already Launched" : "Success";
}

void DaDriverResponseGenViewInsideAppControl::makeViewInsideItemCheckReply(std::string locationName)
{
    dataNode["viewinsidecheck"] = checkItemCount() < ITEM_LIMIT ? "True" : "False";
    dataNode["isExistence"] = isExistRoom(locationName) ? "True" : "False";
}

int DaDriverResponseGenViewInsideAppControl::checkItemCount()
{
    int count = 0;
    sqlite3* db = nullptr;
    if (openRecipeDatabase(&db) != SQLITE_OK) {
        LOGE("Can't open database: %s", sqlite3_errmsg(db));
        return 0;
    }
    sqlite3_busy_timeout(db, 5);
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, "select * from foodMinderTable", -1, &stmt, nullptr) != SQLITE_OK) {
        LOGE("Can't prepare stmt: %s", sqlite3_errmsg(db));
    } else {
        while (sqlite3_step(stmt) != SQLITE_DONE && count < STEP_LIMIT)
            ++count;
        LOGD("View Inside Item Count : %d", count);
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return count;
}

bool DaDriverResponseGenViewInsideAppControl::isExistRoom(std::string locationName)
{
    int mask = -1;
    vconf_get_int(ROOM_KEY, &mask);
    if (mask == -1)
        LOGE("vconf read fail %s", ROOM_KEY);
    for (const auto& room : ROOMS) {
        if (locationName == room.name)
            return (mask >> room.bit) & 1;
    }
    return false;
}
