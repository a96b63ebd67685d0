// Shopping: the commerce service app, which searches a merchant's products
// when the plug-in launches it and keeps the cart, and the shopping list app.
#include "App.h"

#include "apps/DeviceClock.h"

#include <vconf.h>

#include <algorithm>
#include <cctype>

namespace apps {
namespace {

// The one row of the "Commerce" table that the plug-in reads: the account,
// the last search's count, the cart's count and the app's view.
const char* const kCommerce = "Commerce";
// The last search's products, and the cart.
const char* const kResults = "CommerceSearch";
const char* const kCart = "CommerceCart";
const char* const kResponseKey = "db/orvane/e-commerce/response";

// The merchants' products, by what a person asks for.
const std::vector<std::pair<const char*, std::vector<const char*>>>& catalogue()
{
    static const std::vector<std::pair<const char*, std::vector<const char*>>> table = {
        {"bread", {"White sliced loaf 800g", "Wholemeal loaf 800g", "Sourdough bloomer"}},
        {"milk", {"Semi-skimmed milk 2 pints", "Whole milk 1 litre"}},
        {"eggs", {"Free range eggs x6", "Free range eggs x12"}},
        {"butter", {"Salted butter 250g"}},
        {"cheese", {"Mature cheddar 400g", "Red Leicester 200g", "Brie 200g"}},
        {"apples", {"Braeburn apples x6", "Pink Lady apples x4"}},
        {"bananas", {"Bananas x5"}},
        {"coffee", {"Ground coffee 227g", "Coffee beans 1kg", "Instant coffee 200g", "Coffee pods x10"}},
        {"orange juice", {"Orange juice 1 litre"}},
        {"tomatoes", {"Vine tomatoes x6", "Cherry tomatoes 250g"}},
    };
    return table;
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::vector<std::string> productsFor(const std::string& term)
{
    std::vector<std::string> out;
    const std::string wanted = lower(term);
    if (wanted.empty())
        return out;
    for (const auto& item : catalogue())
        for (const char* product : item.second)
            if (wanted == item.first || lower(product).find(wanted) != std::string::npos)
                out.push_back(product);
    return out;
}

// Sets columns of the "Commerce" row, made when missing.
bool setAccount(Store& store, const Row& values)
{
    std::vector<std::string> names = {"isLoggedIn", "isLinked", "totalCount", "productCountInCart", "currentViewType"};
    if (!store.ensure(kCommerce, names))
        return false;
    const std::vector<StoredRow> rows = store.rows(kCommerce);
    return rows.empty() ? store.insert(kCommerce, values) : store.update(kCommerce, rows[0].rowid, values);
}

std::string extra(const Json::Value& launch, const char* key)
{
    return textOf(launch["extras"][key]);
}

class CommerceApp : public App {
public:
    CommerceApp() : App("org.tizen.e-commerce-card-service", "#org.tizen.Commerce") {}

    Report act(const std::string& action, const Json::Value& raw) override
    {
        if (action == "Add To Cart")
            return addToCart(textOf(raw["item"]), textOf(raw["merchant"]));
        if (action == "Open Cart")
            return openCart();
        if (action == "Show Items" || action == "Show Cart" || action == "Sign In")
            return done("shows \"" + action + "\"; nothing changes");
        return refused("unknown action \"" + action + "\"; nothing changes");
    }

    // A search request: the products found go to the store, then the
    // answer key tells the app that asked.
    std::vector<Report> launched(const Json::Value& launch) override
    {
        const std::string operation = textOf(launch["operation"]);
        const std::string term = extra(launch, "key_search_term");
        const std::string merchant = extra(launch, "key_merchant");
        if (operation.size() < 7 || operation.compare(operation.size() - 7, 7, "/search") != 0)
            return {done("launched for \"" + operation + "\"; nothing to search")};
        Report report = withStore([&](Store& store) {
            const std::vector<StoredRow> account = store.rows(kCommerce);
            if (!account.empty() && column(account[0].values, "isLoggedIn") == "0")
                return done("not signed in: searches nothing for \"" + term + "\"");
            const std::vector<std::string> products = productsFor(term);
            if (!store.ensure(kResults, {"id", "product", "merchant"}) || !store.clear(kResults))
                return refused("cannot keep the search's products: " + store.error());
            for (size_t i = 0; i < products.size(); ++i)
                if (!store.insert(kResults, {{"id", std::to_string(i + 1)}, {"product", products[i]}, {"merchant", merchant}}))
                    return refused("cannot keep the search's products: " + store.error());
            if (!setAccount(store, {{"totalCount", std::to_string(products.size())}}))
                return refused("cannot publish the search: " + store.error());
            return done("searched " + (merchant.empty() ? std::string("the shop") : merchant) + " for \"" + term +
                        "\": " + std::to_string(products.size()) + " products");
        });
        // The answer goes even when the search failed: the app that asked
        // then reads what the store holds instead of waiting in vain.
        report.then = [] {
            vconf_set_str(kResponseKey, std::to_string(clockNowSeconds()).c_str());
        };
        return {report};
    }

private:
    Report addToCart(const std::string& item, const std::string& merchant)
    {
        const std::vector<std::string> products = productsFor(item);
        if (products.empty())
            return refused("no product for \"" + item + "\" to put in the cart; nothing changes");
        return withStore([&](Store& store) {
            if (!store.ensure(kCart, {"product", "merchant"}) ||
                !store.insert(kCart, {{"product", products[0]}, {"merchant", merchant}}))
                return refused("cannot keep the cart: " + store.error());
            const size_t count = store.rows(kCart).size();
            if (!setAccount(store, {{"productCountInCart", std::to_string(count)}}))
                return refused("cannot publish the cart: " + store.error());
            return done("\"" + products[0] + "\" put in the cart; " + std::to_string(count) + " in the cart");
        });
    }

    Report openCart()
    {
        return withStore([&](Store& store) {
            if (!setAccount(store, {{"currentViewType", "2"}}))
                return refused("cannot open the cart: " + store.error());
            return done("shows the cart (view 2)");
        });
    }
};

// The shopping list: its items are the rows of "ShoppingListItems"; the
// one row of "ShoppingList" tells how many there are.
class ShoppingListApp : public App {
public:
    ShoppingListApp() : App("UNduJ5y0UH.ShoppingList", "#org.tizen.ShoppingList") {}

    Report act(const std::string& action, const Json::Value& raw) override
    {
        if (action == "Add To Shopping List")
            return add(textOf(raw["item"]));
        if (action == "Show Shopping List")
            return done("shows \"" + action + "\"; nothing changes");
        return refused("unknown action \"" + action + "\"; nothing changes");
    }

private:
    Report add(const std::string& item)
    {
        if (item.empty())
            return refused("no item to add; nothing changes");
        return withStore([&](Store& store) {
            if (!store.ensure("ShoppingListItems", {"item"}) || !store.insert("ShoppingListItems", {{"item", item}}))
                return refused("cannot keep the list: " + store.error());
            const size_t count = store.rows("ShoppingListItems").size();
            const Row summary = {{"currentShoppingListSize", std::to_string(count)}, {"isDefaultListExisted", "1"}};
            if (!store.ensure("ShoppingList", {"currentShoppingListSize", "isDefaultListExisted"}))
                return refused("cannot publish the list: " + store.error());
            const std::vector<StoredRow> rows = store.rows("ShoppingList");
            if (!(rows.empty() ? store.insert("ShoppingList", summary) : store.update("ShoppingList", rows[0].rowid, summary)))
                return refused("cannot publish the list: " + store.error());
            return done("\"" + item + "\" added; " + std::to_string(count) + " on the list");
        });
    }
};

}  // namespace

std::unique_ptr<App> makeCommerceApp()
{
    return std::make_unique<CommerceApp>();
}

std::unique_ptr<App> makeShoppingListApp()
{
    return std::make_unique<ShoppingListApp>();
}

}  // namespace apps
