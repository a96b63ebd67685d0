#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenShoppingList.h"

#include "utils/MarlLog.h"

#include <tzplatform_config.h>
#include <unistd.h>

#include <stdlib.h>

namespace {

// True while the recipe database has no journal file beside it.
bool isRecipeJournalMissing()
{
    const char* path =
        tzplatform_mkpath(TZ_USER_APP, "org.tizen.webdatabaseserviceapp/shared/trusted/Recipe.db-journal");
    return !path || access(path, F_OK) != 0;
}

}  // namespace

DANluParamsGenShoppingList::DANluParamsGenShoppingList()
    : DANluParamsGen("ShoppingList"), mRefresher("ShoppingList")
{
}

void DANluParamsGenShoppingList::makeParams()
{
    std::map<std::string, std::string> row = mRefresher.getDataMap()[0];

    // The stored count is one more than the size the server is told.
    const int count = atoi(row["currentShoppingListSize"].c_str());
    const int size = count > 0 ? count - 1 : 0;

    std::string existDefaultList = row["isDefaultListExisted"] == "0" ? "False" : "True";
    if (existDefaultList == "False" && isRecipeJournalMissing())
        existDefaultList = "True";

    LOGD("size[%d], existDefaultList[%s]", size, existDefaultList.c_str());
    dataNode["currentShoppingListSize"] = std::to_string(size);
    dataNode["existDefaultList"] = existDefaultList;
}
