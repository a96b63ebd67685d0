#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenCommerce.h"
#include "utils/VconfText.h"

#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/MarlLog.h"

#include <chrono>
#include <mutex>
#include <sstream>

#include <stdlib.h>

namespace {

const char* const RESPONSE_KEY = "db/orvane/e-commerce/response";
const char* const COMMERCE_SERVICE_APP = "org.tizen.e-commerce-card-service";
// The platform's search operation; the commerce service app takes its search
// requests under it.
const char* const SEARCH_OPERATION = "http://tizen.org/appcontrol/operation/search";
const int MAX_LISTED_ITEMS = 20;

typedef std::map<std::string, std::string> Row;

// The products in the cart; text that is no number counts as none.
int countInCart(Row& row)
{
    int count = 0;
    std::stringstream(row["productCountInCart"]) >> count;
    return count;
}

}  // namespace

DaDriverResponseGenCommerce::DaDriverResponseGenCommerce(Json::Value request)
    : DaDriverResponseGen(request), mRefresher("Commerce"), mCondition(), mResponded(false)
{
    vconf_notify_key_changed(RESPONSE_KEY, cbFunction, this);
    Row row = mRefresher.getDataMap()[0];

    const std::string actionName = getActionName();
    LOGD("action[%s]", actionName.c_str());
    if (actionName == "Search Items Request") {
        if (!makeSearchItemReply())
            dataNode["status"] = "NotLoggedIn";
    } else if (actionName == "Cart Status Request") {
        dataNode["status"] = countInCart(row) < 1 ? "Empty" : "Not Empty";
    } else if (actionName == "Open Cart Request") {
        if (row["isLoggedIn"] == "0")
            dataNode["status"] = "NotLoggedIn";
        else if (row["currentViewType"] != "3")
            dataNode["status"] = "Cannot Access";
        else if (countInCart(row) < 1)
            dataNode["status"] = "No Items";
        else
            dataNode["status"] = "Success";
    }
}

DaDriverResponseGenCommerce::~DaDriverResponseGenCommerce()
{
    vconf_ignore_key_changed(RESPONSE_KEY, cbFunction);
}

void DaDriverResponseGenCommerce::cbFunction(keynode_t* node, void* self)
{
    (void)node;
    DaDriverResponseGenCommerce* generator = static_cast<DaDriverResponseGenCommerce*>(self);
    generator->mResponded = true;
    generator->mCondition.notify_all();
}

bool DaDriverResponseGenCommerce::makeSearchItemReply()
{
    const std::string region = readVconfText("db/setting/region_code", "");
    LOGD("region[%s]", region.c_str());

    // In the US the search result is taken from the store as it stands.
    if (region != "US") {
        if (!requestToCommerceServiceApp()) {
            LOGE("the commerce service app could not be launched");
            return false;
        }
        if (!waitResponseFromCommerceServiceApp()) {
            LOGE("the commerce service app did not answer");
            return false;
        }
    }

    mRefresher.refreshData();
    Row row = mRefresher.getDataMap()[0];
    int count = -1;
    if (row["isLoggedIn"] == "0")
        dataNode["status"] = "NotLoggedIn";
    else if (row["isLinked"] == "0")
        dataNode["status"] = "NotLinked";
    else
        count = atoi(row["totalCount"].c_str());
    LOGD("totalCount[%d]", count);

    if (count >= 2 && count <= MAX_LISTED_ITEMS) {
        dataNode["status"] = "Multiple Items";
        Json::Value items(Json::arrayValue);
        for (int id = 1; id <= count; ++id) {
            Json::Value item;
            item["id"] = std::to_string(id);
            items.append(item);
        }
        dataNode["items"] = items;
    } else if (count == 1) {
        dataNode["status"] = "One Item";
        dataNode["id"] = "1";
    } else if (count == 0) {
        dataNode["status"] = "No Items";
    }
    return true;
}

bool DaDriverResponseGenCommerce::requestToCommerceServiceApp()
{
    mResponded = false;
    Util::AppControlData data;
    data.setPackageName(COMMERCE_SERVICE_APP)
        .setOperation(SEARCH_OPERATION)
        .addExtraData("key_merchant", getParameter("merchantName"))
        .addExtraData("key_search_term", getParameter("itemName"));
    return Util::AppControl::performAppControl(data) == 0;
}

bool DaDriverResponseGenCommerce::waitResponseFromCommerceServiceApp()
{
    // The callback takes no lock: the flag is read before the wait, and a
    // signal that lands between that read and the wait wakes nobody; the
    // wait then runs out and the flag is found set. One wait, no predicate:
    // any wake-up ends it.
    std::mutex mutex;
    std::unique_lock<std::mutex> lock(mutex);
    if (!mResponded)
        mCondition.wait_for(lock, std::chrono::seconds(28));
    return mResponded;
}
