#ifndef DA_DRIVER_RESPONSE_GEN_COMMERCE_H
#define DA_DRIVER_RESPONSE_GEN_COMMERCE_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

#include <vconf.h>

#include <atomic>
#include <condition_variable>

// Answers the shopping questions: the cart's state from the "Commerce" row,
// and an item search, which the commerce service app carries out. For a
// search the generator launches that app and blocks its caller until the app
// signals its answer through "db/orvane/e-commerce/response", for at most
// 28 seconds.
class DaDriverResponseGenCommerce : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenCommerce(Json::Value request);
    ~DaDriverResponseGenCommerce() override;

    // The vconf callback: marks the answer as come and wakes the waiter.
    // It takes no lock.
    static void cbFunction(keynode_t* node, void* self);

    // True when the launch request reached the app.
    bool requestToCommerceServiceApp();
    // True when the app answered; waits once, for at most 28 seconds.
    bool waitResponseFromCommerceServiceApp();
    // False when the search could not be carried out.
    bool makeSearchItemReply();

protected:
    DADeviceDataAutoRefresher mRefresher;
    std::condition_variable mCondition;
    std::atomic<bool> mResponded;
};

#endif
