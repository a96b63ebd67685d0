// Commerce replies: the cart questions answered from the "Commerce" row, and
// the item search that the commerce service app of the virtual appliance
// (appliance/handlers/commerce-service.sh) carries out while the generator
// waits for its signal.
#include "TestDevice.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenCommerce.h"

#include <vconf.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

const char* const kServiceApp = "org.tizen.e-commerce-card-service";
const char* const kResponseKey = "db/orvane/e-commerce/response";

std::string respond(const std::string& request)
{
    return DaCustomizedDriverResponseRetriever().getDriverResponse(request);
}

std::string request(const std::string& action, const std::string& data = "{}")
{
    return "{\"Server Reqeust\": {\"agent\": \"Commerce\", \"action\": {\"name\": \"" + action +
           "\"}, \"data\": " + data + "}}";
}

const std::string kBreadAtTesco = R"({"merchantName": {"value": "Tesco"}, "itemName": {"value": "bread"}})";

std::string search()
{
    return respond(request("Search Items Request", kBreadAtTesco));
}

Json::Value parse(const std::string& text)
{
    Json::Value value;
    Json::Reader().parse(text, value);
    return value;
}

std::string readFile(const std::string& path)
{
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string platformLog()
{
    return readFile(vapp::devicePath("log/dlog.log"));
}

std::string serviceLog()
{
    return readFile(vapp::devicePath(std::string("log/handler-") + kServiceApp + ".log"));
}

std::vector<Json::Value> launches()
{
    std::vector<Json::Value> found;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == "app_launch")
            found.push_back(entry);
    return found;
}

std::string handlerSource()
{
    const std::string test = __FILE__;
    return test.substr(0, test.rfind("/tests/plugin/")) + "/appliance/handlers/commerce-service.sh";
}

// A refrigerator in `region` (empty: the key is unset) with the commerce
// service app installed, one "Commerce" row, and the app's answer file
// (empty: none, so the app never answers).
std::string fridge(const std::string& region, const Json::Value& row, const std::string& answer = "")
{
    Json::Value description;
    if (!region.empty())
        description["vconf"]["db/setting/region_code"] = region;
    Json::Value app;
    app["id"] = kServiceApp;
    app["service"] = true;
    app["handler"] = "handlers/commerce-service.sh";
    description["apps"]["installed"].append(app);
    description["datastore"]["Commerce"].append(row);
    Json::Value handler;
    handler["device"] = "handlers/commerce-service.sh";
    handler["from"] = handlerSource();
    handler["executable"] = true;
    description["files"].append(handler);
    if (!answer.empty()) {
        Json::Value file;
        file["device"] = "commerce-service/answer";
        file["text"] = answer;
        description["files"].append(file);
    }
    return Json::FastWriter().write(description);
}

Json::Value row(const std::string& totalCount, const std::string& isLoggedIn = "1", const std::string& isLinked = "1")
{
    Json::Value value;
    value["isLoggedIn"] = isLoggedIn;
    value["isLinked"] = isLinked;
    value["totalCount"] = totalCount;
    value["productCountInCart"] = "0";
    value["currentViewType"] = "1";
    return value;
}

Json::Value cart(const std::string& productCountInCart, const std::string& currentViewType = "3",
                 const std::string& isLoggedIn = "1")
{
    Json::Value value;
    value["isLoggedIn"] = isLoggedIn;
    value["isLinked"] = "1";
    value["totalCount"] = "0";
    value["productCountInCart"] = productCountInCart;
    value["currentViewType"] = currentViewType;
    return value;
}

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

Json::Value cartStatusRequest()
{
    Json::Value value;
    value["agent"] = "Commerce";
    value["action"]["name"] = "Cart Status Request";
    return value;
}

// Reaches the generator's condition and flag, to wake it without a signal.
class CommerceProbe : public DaDriverResponseGenCommerce {
public:
    explicit CommerceProbe(Json::Value request) : DaDriverResponseGenCommerce(request) {}
    void wakeWithoutSignal() { mCondition.notify_all(); }
    bool responded() const { return mResponded; }
};

}  // namespace

TEST(CommerceSearch, TheServiceAppIsLaunchedWaitedForAndItsItemsAreCounted)
{
    marltest::TestDevice device(fridge("GB", row("0"), "totalCount=2\ndelay=0.5\n"));
    const auto start = Clock::now();
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"items\":[{\"id\":\"1\"},{\"id\":\"2\"}],\"status\":\"Multiple Items\"}}}\n");
    const double waited = secondsSince(start);
    EXPECT_GE(waited, 0.5);
    EXPECT_LT(waited, 10.0);

    const auto launched = launches();
    ASSERT_EQ(launched.size(), 1u);
    EXPECT_EQ(launched[0]["app_id"].asString(), kServiceApp);
    EXPECT_EQ(launched[0]["operation"].asString(), "http://tizen.org/appcontrol/operation/search");
    EXPECT_EQ(launched[0]["uri"].asString(), "");
    EXPECT_EQ(Json::FastWriter().write(launched[0]["extra_keys"]), "[\"key_merchant\",\"key_search_term\"]\n");
    EXPECT_EQ(launched[0]["extras"]["key_merchant"].asString(), "Tesco");
    EXPECT_EQ(launched[0]["extras"]["key_search_term"].asString(), "bread");
    EXPECT_NE(serviceLog().find("search for \"bread\" at \"Tesco\""), std::string::npos) << serviceLog();
}

TEST(CommerceSearch, TwentyItemsAreListedAndTwentyOneGiveNoReply)
{
    marltest::TestDevice device(fridge("GB", row("0"), "totalCount=20\n"));
    const Json::Value reply = parse(search());
    const Json::Value& data = reply["userComposedDriverResponse"]["data"];
    EXPECT_EQ(data["status"].asString(), "Multiple Items");
    ASSERT_EQ(data["items"].size(), 20u);
    for (Json::ArrayIndex i = 0; i < 20; ++i)
        EXPECT_EQ(data["items"][i]["id"].asString(), std::to_string(i + 1));

    device.apply(R"({"files": [{"device": "commerce-service/answer", "text": "totalCount=21\n"}]})");
    const auto start = Clock::now();
    EXPECT_EQ(search(), "");
    EXPECT_LT(secondsSince(start), 10.0);
    EXPECT_EQ(launches().size(), 2u);
}

TEST(CommerceSearch, OneItemHasTheIdOneAndNoneSaysNoItems)
{
    marltest::TestDevice device(fridge("GB", row("5"), "totalCount=1\n"));
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"id\":\"1\",\"status\":\"One Item\"}}}\n");
    device.apply(R"({"files": [{"device": "commerce-service/answer", "text": "totalCount=0\n"}]})");
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"status\":\"No Items\"}}}\n");
}

TEST(CommerceSearch, ACountThatIsNoNumberReadsAsNoneAndANegativeOneGivesNoReply)
{
    marltest::TestDevice device(fridge("GB", row("5"), "totalCount=many\n"));
    EXPECT_NE(search().find("\"status\":\"No Items\""), std::string::npos);
    device.apply(R"({"files": [{"device": "commerce-service/answer", "text": "totalCount=-2\n"}]})");
    EXPECT_EQ(search(), "");
}

TEST(CommerceSearch, ALoggedOutUserIsToldSoAndTheCountIsNeverRead)
{
    marltest::TestDevice device(fridge("GB", row("3", "0", "0"), "totalCount=3\n"));
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"status\":\"NotLoggedIn\"}}}\n");
    EXPECT_NE(platformLog().find("totalCount[-1]"), std::string::npos);
    EXPECT_EQ(platformLog().find("totalCount[3]"), std::string::npos);
}

TEST(CommerceSearch, AnUnlinkedAccountIsToldSo)
{
    marltest::TestDevice device(fridge("GB", row("3", "1", "0"), "totalCount=3\n"));
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"status\":\"NotLinked\"}}}\n");
    EXPECT_NE(platformLog().find("totalCount[-1]"), std::string::npos);
}

TEST(CommerceSearch, InTheUsTheAppIsNotLaunchedAndTheStoredCountIsReported)
{
    // The app would answer 7; the row still holds 3 from an earlier search.
    marltest::TestDevice device(fridge("US", row("3"), "totalCount=7\n"));
    const auto start = Clock::now();
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"items\":[{\"id\":\"1\"},{\"id\":\"2\"},{\"id\":\"3\"}],"
                        "\"status\":\"Multiple Items\"}}}\n");
    EXPECT_LT(secondsSince(start), 2.0);
    EXPECT_TRUE(launches().empty());
    EXPECT_EQ(serviceLog(), "");
}

TEST(CommerceSearch, AnUnreadableRegionLaunchesTheApp)
{
    marltest::TestDevice device(fridge("", row("0"), "totalCount=1\n"));
    EXPECT_NE(search().find("\"status\":\"One Item\""), std::string::npos);
    EXPECT_EQ(launches().size(), 1u);
    EXPECT_NE(platformLog().find("region[]"), std::string::npos);

    // A region key of another type cannot be read as text either.
    device.apply(R"({"vconf": {"db/setting/region_code": 1}})");
    EXPECT_NE(search().find("\"status\":\"One Item\""), std::string::npos);
    EXPECT_EQ(launches().size(), 2u);
}

TEST(CommerceSearch, AFailedLaunchAnswersNotLoggedInAtOnce)
{
    // The row would give one item, had the search been carried out.
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "GB"},
        "datastore": {"Commerce": [{"isLoggedIn": "1", "isLinked": "1", "totalCount": "1"}]}})");
    const auto start = Clock::now();
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"status\":\"NotLoggedIn\"}}}\n");
    EXPECT_LT(secondsSince(start), 2.0);
    EXPECT_NE(platformLog().find("Failed to launch request"), std::string::npos);
    EXPECT_NE(platformLog().find("the commerce service app could not be launched"), std::string::npos);
}

TEST(CommerceSearch, AnAppThatNeverAnswersGivesNotLoggedInAfterTwentyEightSeconds)
{
    // No answer file: the app is launched and stays silent.
    marltest::TestDevice device(fridge("GB", row("4")));
    const auto start = Clock::now();
    EXPECT_EQ(search(), "{\"userComposedDriverResponse\":{\"action\":\"Search Items Reply\",\"agent\":\"Commerce\","
                        "\"data\":{\"status\":\"NotLoggedIn\"}}}\n");
    const double waited = secondsSince(start);
    EXPECT_GE(waited, 28.0);
    EXPECT_LT(waited, 30.0);
    EXPECT_EQ(launches().size(), 1u);
    EXPECT_NE(serviceLog().find("not answering"), std::string::npos) << serviceLog();
    EXPECT_NE(platformLog().find("the commerce service app did not answer"), std::string::npos);
}

TEST(CommerceWait, ASignalBeforeTheWaitEndsItAtOnce)
{
    marltest::TestDevice device;
    DaDriverResponseGenCommerce generator(cartStatusRequest());
    DaDriverResponseGenCommerce::cbFunction(nullptr, &generator);
    const auto start = Clock::now();
    EXPECT_TRUE(generator.waitResponseFromCommerceServiceApp());
    EXPECT_LT(secondsSince(start), 1.0);
}

TEST(CommerceWait, TheCallbackFromAnotherThreadWakesTheWaiter)
{
    marltest::TestDevice device;
    DaDriverResponseGenCommerce generator(cartStatusRequest());
    bool answered = false;
    const auto start = Clock::now();
    std::thread waiter([&] { answered = generator.waitResponseFromCommerceServiceApp(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    DaDriverResponseGenCommerce::cbFunction(nullptr, &generator);
    waiter.join();
    EXPECT_TRUE(answered);
    EXPECT_LT(secondsSince(start), 5.0);
}

TEST(CommerceWait, AWakeUpWithoutTheSignalEndsTheOneWaitUnanswered)
{
    marltest::TestDevice device;
    CommerceProbe probe(cartStatusRequest());
    std::atomic<bool> done(false);
    bool answered = true;
    std::thread waiter([&] {
        answered = probe.waitResponseFromCommerceServiceApp();
        done = true;
    });
    const auto start = Clock::now();
    while (!done && secondsSince(start) < 5.0) {
        probe.wakeWithoutSignal();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const bool endedByTheWakeUp = done;
    if (!endedByTheWakeUp)
        DaDriverResponseGenCommerce::cbFunction(nullptr, &probe);  // release a waiter that waits on
    waiter.join();
    EXPECT_TRUE(endedByTheWakeUp);
    EXPECT_FALSE(answered);
}

TEST(CommerceWait, ALaunchRequestForgetsAnEarlierSignal)
{
    marltest::TestDevice device(R"({"apps": {"installed": [{"id": "org.tizen.e-commerce-card-service", "service": true}]}})");
    CommerceProbe probe(cartStatusRequest());
    DaDriverResponseGenCommerce::cbFunction(nullptr, &probe);
    ASSERT_TRUE(probe.responded());
    EXPECT_TRUE(probe.requestToCommerceServiceApp());
    EXPECT_FALSE(probe.responded());

    device.apply(R"({"apps": {"installed": []}})");
    DaDriverResponseGenCommerce::cbFunction(nullptr, &probe);
    EXPECT_FALSE(probe.requestToCommerceServiceApp());
    EXPECT_FALSE(probe.responded());
}

TEST(CommerceWait, TheResponseKeyIsWatchedForTheGeneratorsLifetime)
{
    marltest::TestDevice device;
    {
        DaDriverResponseGenCommerce generator(cartStatusRequest());
        // Taking the registration away here shows that there was one.
        EXPECT_EQ(vconf_ignore_key_changed(kResponseKey, DaDriverResponseGenCommerce::cbFunction), 0);
    }
    {
        DaDriverResponseGenCommerce generator(cartStatusRequest());
    }
    EXPECT_EQ(vconf_ignore_key_changed(kResponseKey, DaDriverResponseGenCommerce::cbFunction), -1);
}

TEST(CommerceWait, AWriteOfTheResponseKeyWakesTheWaiter)
{
    marltest::TestDevice device;
    DaDriverResponseGenCommerce generator(cartStatusRequest());
    bool answered = false;
    const auto start = Clock::now();
    std::thread waiter([&] { answered = generator.waitResponseFromCommerceServiceApp(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ASSERT_EQ(vconf_set_str(kResponseKey, "answered"), 0);
    waiter.join();
    EXPECT_TRUE(answered);
    EXPECT_LT(secondsSince(start), 5.0);
}

TEST(CommerceCart, TheCartIsEmptyBelowOneProduct)
{
    marltest::TestDevice device(fridge("GB", cart("2")));
    EXPECT_EQ(respond(request("Cart Status Request")),
              "{\"userComposedDriverResponse\":{\"action\":\"Cart Status Reply\",\"agent\":\"Commerce\","
              "\"data\":{\"status\":\"Not Empty\"}}}\n");
    for (const char* count : {"0", "-1", "", "none"}) {
        device.apply(fridge("GB", cart(count)));
        EXPECT_NE(respond(request("Cart Status Request")).find("\"status\":\"Empty\""), std::string::npos) << count;
    }
    device.apply(R"({"datastore": {"Commerce": []}})");
    EXPECT_NE(respond(request("Cart Status Request")).find("\"status\":\"Empty\""), std::string::npos);
    EXPECT_TRUE(launches().empty());
}

TEST(CommerceCart, OpenCartSucceedsLoggedInOnTheCartViewWithProducts)
{
    marltest::TestDevice device(fridge("GB", cart("2", "3")));
    EXPECT_EQ(respond(request("Open Cart Request")),
              "{\"userComposedDriverResponse\":{\"action\":\"Open Cart Reply\",\"agent\":\"Commerce\","
              "\"data\":{\"status\":\"Success\"}}}\n");
    EXPECT_TRUE(launches().empty());
}

TEST(CommerceCart, OpenCartTestsLoginThenViewThenProducts)
{
    marltest::TestDevice device;
    auto openCart = [&](const Json::Value& row) {
        device.apply(fridge("GB", row));
        return parse(respond(request("Open Cart Request")))["userComposedDriverResponse"]["data"]["status"].asString();
    };
    EXPECT_EQ(openCart(cart("0", "1", "0")), "NotLoggedIn");
    EXPECT_EQ(openCart(cart("2", "3", "0")), "NotLoggedIn");
    EXPECT_EQ(openCart(cart("0", "2")), "Cannot Access");
    EXPECT_EQ(openCart(cart("2", "")), "Cannot Access");
    EXPECT_EQ(openCart(cart("0", "3")), "No Items");
    EXPECT_EQ(openCart(cart("lots", "3")), "No Items");
    EXPECT_EQ(openCart(cart("1", "3", "")), "Success");
}

TEST(CommerceCart, AnUnknownActionGivesTheEmptyResponse)
{
    marltest::TestDevice device(fridge("GB", row("2"), "totalCount=2\n"));
    EXPECT_EQ(respond(request("Checkout Request", kBreadAtTesco)), "");
    EXPECT_TRUE(launches().empty());
}
