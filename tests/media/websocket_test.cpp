#include "media/service_test.h"

namespace camcfg::tests {
namespace {

struct WebsocketModel {
  std::string strName;
  std::int32_t s32Id;
};

const std::string kWebsocketNoId = required("Id", "<WEBSOCKET><Channel>");
const std::string kWebsocketNoName = required("Name", "<WEBSOCKET><Channel>");

class WebsocketTest : public ServiceTest<WebsocketList> {
 protected:
  WebsocketTest()
      : ServiceTest("WEBSOCKET", CFG_LM_LoadWebsocketConfig, CFG_LM_DumpWebsocketConfig,
                    {{"old", 99}}) {}
};

TEST(WebsocketRecordTest, FieldsLieInTheOrderOfTheInterface) {
  EXPECT_EQ(layoutOf(&tag_CFG_WEBSOCKET_SESSION_T::strName, &tag_CFG_WEBSOCKET_SESSION_T::s32Id),
            layoutOf(&WebsocketModel::strName, &WebsocketModel::s32Id));
}

TEST_F(WebsocketTest, SessionsAreLoadedInDocumentOrder) {
  expectLoaded("<Channel Id='3' Name='c'/><Channel Id='1' Name='a'/><Channel Id='2' Name='b'/>",
               {{"c", 3}, {"a", 1}, {"b", 2}});
}

TEST_F(WebsocketTest, SessionsOfTheSameIdAndNameAreAllLoaded) {
  expectLoaded("<Channel Id='1' Name='a'/><Channel Id='1' Name='a'/>", {{"a", 1}, {"a", 1}});
}

TEST_F(WebsocketTest, ElementNameMatchesInAnyCase) {
  expectLoaded("<channel Id='1' Name='a'/><CHANNEL Id='2' Name='b'/><cHaNnEl Id='3' Name='c'/>",
               {{"a", 1}, {"b", 2}, {"c", 3}});
}

TEST_F(WebsocketTest, AttributeNamesMatchExactly) {
  expectRefused("<Channel id='1' Name='a'/>", kWebsocketNoId);
  expectRefused("<Channel ID='1' Name='a'/>", kWebsocketNoId);
  expectRefused("<Channel Id='1' name='a'/>", kWebsocketNoName);
  expectRefused("<Channel Id='1' Names='a'/>", kWebsocketNoName);
}

TEST_F(WebsocketTest, AttributesInAnyOrderAndUnknownOnesAndContentsAreAccepted) {
  expectLoaded("<Channel More='x' Name='a' Id='1'>text<Channel/><Foo/></Channel>", {{"a", 1}});
}

TEST_F(WebsocketTest, EmptyNameIsAccepted) {
  expectLoaded("<Channel Id='1' Name=''/>", {{"", 1}});
}

TEST_F(WebsocketTest, NameIsTakenAsItIs) {
  const std::string longName(5000, 'n');
  expectLoaded(
      "<Channel Id='1' Name='  100% %s &lt;&amp;&quot;&apos;&gt; \xC3\xA9 '/>"
      "<Channel Id='2' Name='" +
          longName + "'/>",
      {{"  100% %s <&\"'> \xC3\xA9 ", 1}, {longName, 2}});
}

TEST_F(WebsocketTest, IdIsReadAsAnInteger) {
  expectRequiredInteger([](const std::string& id) { return "<Channel Id='" + id + "' Name='a'/>"; },
                        [](int id) {
                          return WebsocketList{{"a", id}};
                        },
                        kWebsocketNoId);
}

TEST_F(WebsocketTest, MissingIdIsReportedBeforeMissingName) {
  expectRefused("<Channel/>", kWebsocketNoId);
  expectRefused("<Channel Name='a'/>", kWebsocketNoId);
  expectRefused("<Channel Id='2'/>", kWebsocketNoName);
}

TEST_F(WebsocketTest, AFaultKeepsTheSessionsBeforeIt) {
  expectRefused("<Channel Id='1' Name='a'/><Channel Name='b'/><Channel Id='3' Name='c'/>",
                kWebsocketNoId, {{"a", 1}});
  expectRefused("<Channel Id='1' Name='a'/><Channel Id='5' Name='e'/><Channel Id='2'/>",
                kWebsocketNoName, {{"a", 1}, {"e", 5}});
}

TEST_F(WebsocketTest, UnknownElementIsSkippedWithAWarning) {
  expectLoaded("<Channel Id='1' Name='a'/><Foo/><!-- silent --><Channel Id='2' Name='b'/>",
               {{"a", 1}, {"b", 2}}, unsupported("Foo", "<WEBSOCKET>"));
}

TEST_F(WebsocketTest, TheListIsEmptiedEvenWhereTheFileCannotBeOpened) {
  EXPECT_EQ(load().records, WebsocketList{});
}

TEST_F(WebsocketTest, SessionsAreDumpedInListOrderWithIdBeforeName) {
  expectDumped({{"second", 2}, {"first & <1>", 1}}, R"(<Channel Id="2" Name="second"/>
<Channel Id="1" Name="first &amp; &lt;1&gt;"/>)");
}

TEST_F(WebsocketTest, NoValueIsCheckedWhenDumping) {
  expectDumped({{"", -1}, {"a", 1}, {"a", 1}, {"%s%n", -2147483647 - 1}, {"b", 2147483647}},
               R"(<Channel Id="-1" Name=""/>
<Channel Id="1" Name="a"/>
<Channel Id="1" Name="a"/>
<Channel Id="-2147483648" Name="%s%n"/>
<Channel Id="2147483647" Name="b"/>)");
}

TEST_F(WebsocketTest, ADumpedMinusOneFailsTheNextLoad) {
  give("");
  dump({{"a", 1}, {"b", -1}});
  const Loaded loaded = load();
  EXPECT_EQ(loaded.outcome, (Outcome{CFG_LM_ERR, kWebsocketNoId}));
  EXPECT_EQ(loaded.records, (WebsocketList{{"a", 1}}));
}

TEST_F(WebsocketTest, LoadAfterDumpReturnsTheSameSessionsInTheSameOrder) {
  give("");
  const WebsocketList records{{"b", 2}, {"", 0}, {"a\tb\n'\"<>&", -7}, {"b", 2}};
  dump(records);
  EXPECT_EQ(load().records, records);
}

TEST_F(WebsocketTest, DumpingAnEmptyListLeavesTheSectionEmpty) {
  expectDumped({}, "");
}

}  // namespace
}  // namespace camcfg::tests
