#include "DeviceFaults.h"

#include <net_connection.h>

#include <cstdlib>
#include <string>

using marltest::TestDevice;

namespace {

std::string takeString(char* value)
{
    std::string text = value ? value : "(null)";
    std::free(value);
    return text;
}

}  // namespace

TEST(Connection, ProxyComesFromTheDescription)
{
    TestDevice dev(R"({"connection": {"proxy": "http://10.0.0.1:8080"}})");
    connection_h connection = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_create(&connection));
    char* proxy = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy));
    EXPECT_EQ("http://10.0.0.1:8080", takeString(proxy));
    EXPECT_EQ(0, CONNECTION_ADDRESS_FAMILY_IPV4);
    EXPECT_EQ(CONNECTION_ERROR_NONE, connection_destroy(connection));
}

TEST(Connection, AbsentProxyIsEmptyText)
{
    TestDevice dev(R"({})");
    connection_h connection = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_create(&connection));
    char* proxy = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy));
    ASSERT_NE(nullptr, proxy);
    EXPECT_EQ("", takeString(proxy));
    EXPECT_EQ(CONNECTION_ERROR_NONE, connection_destroy(connection));
}

TEST(Connection, ErrorInPlaceOfTheProxyIsAnswered)
{
    TestDevice dev(R"({"connection": {"proxy": {"error": "CONNECTION_ERROR_NO_CONNECTION"}}})");
    connection_h connection = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_create(&connection));
    char* proxy = nullptr;
    EXPECT_EQ(CONNECTION_ERROR_NO_CONNECTION, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy));
    EXPECT_EQ(nullptr, proxy);
    EXPECT_EQ(CONNECTION_ERROR_NONE, connection_destroy(connection));
}

TEST(Connection, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(R"({"connection": {"proxy": "http://proxy"},
                       "errors": {"connection_create": "CONNECTION_ERROR_PERMISSION_DENIED"}})");
    connection_h connection = nullptr;
    EXPECT_EQ(CONNECTION_ERROR_PERMISSION_DENIED, connection_create(&connection));
    EXPECT_EQ(nullptr, connection);
    dev.apply(R"({"errors": {"connection_get_proxy": "CONNECTION_ERROR_OPERATION_FAILED"}})");
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_create(&connection));
    char* proxy = nullptr;
    EXPECT_EQ(CONNECTION_ERROR_OPERATION_FAILED, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy));
    EXPECT_EQ(nullptr, proxy);
    EXPECT_EQ(CONNECTION_ERROR_NONE, connection_destroy(connection));
}

TEST(Connection, MissingDeviceDirectoryFailsCreateAndProxy)
{
    TestDevice dev(R"({"connection": {"proxy": "http://proxy"}})");
    connection_h connection = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_create(&connection));
    marltest::removeDevice(dev);
    char* proxy = nullptr;
    EXPECT_EQ(CONNECTION_ERROR_OPERATION_FAILED, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy));
    connection_h another = nullptr;
    EXPECT_EQ(CONNECTION_ERROR_INVALID_OPERATION, connection_create(&another));
    EXPECT_EQ(nullptr, another);
    EXPECT_EQ(CONNECTION_ERROR_NONE, connection_destroy(connection));
}

TEST(Connection, MalformedDescriptionFailsTheProxy)
{
    TestDevice dev(R"({"connection": {"proxy": "http://proxy"}})");
    connection_h connection = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_create(&connection));
    marltest::breakDescription(dev);
    char* proxy = nullptr;
    EXPECT_EQ(CONNECTION_ERROR_OPERATION_FAILED, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy));
    EXPECT_EQ(CONNECTION_ERROR_NONE, connection_destroy(connection));
}

TEST(Connection, BadArgumentsAndDestroyedHandlesAreInvalidParameters)
{
    TestDevice dev(R"({"connection": {"proxy": "http://proxy"}})");
    connection_h connection = nullptr;
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_create(&connection));
    char* proxy = nullptr;
    EXPECT_EQ(CONNECTION_ERROR_INVALID_PARAMETER,
              connection_get_proxy(connection, static_cast<connection_address_family_e>(7), &proxy));
    EXPECT_EQ(CONNECTION_ERROR_INVALID_PARAMETER, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, nullptr));
    ASSERT_EQ(CONNECTION_ERROR_NONE, connection_destroy(connection));
    EXPECT_EQ(CONNECTION_ERROR_INVALID_PARAMETER, connection_get_proxy(connection, CONNECTION_ADDRESS_FAMILY_IPV4, &proxy));
    EXPECT_EQ(CONNECTION_ERROR_INVALID_PARAMETER, connection_destroy(connection));
    EXPECT_EQ(CONNECTION_ERROR_INVALID_PARAMETER, connection_create(nullptr));
    EXPECT_EQ(nullptr, proxy);
}
