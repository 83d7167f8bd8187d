#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

TEST_F(ParametersTest, ListAlignsAllSectionsWithTheirValues) {
  EXPECT_EQ(run({"list"}), (ToolRun{0,
                                    "SECTION  NAME          VALUE\n"
                                    "System   Language      English\n"
                                    "System   DeviceAttr    -\n"
                                    "System   WebHttp       80\n"
                                    "System   WebHttps      443\n"
                                    "System   Rtsp          554\n"
                                    "System   RtspOverHttp  8080\n"
                                    "Image    Brightness    0\n"
                                    "Image    Mode          Auto\n"
                                    "NetWork  Eth0/IpAddr   192.0.2.7\n",
                                    ""}));
}

TEST_F(ParametersTest, ListOfOneSectionShowsNothingElse) {
  EXPECT_EQ(run({"list", "Image"}), (ToolRun{0,
                                             "SECTION  NAME        VALUE\n"
                                             "Image    Brightness  0\n"
                                             "Image    Mode        Auto\n",
                                             ""}));
}

TEST_F(ParametersTest, ListInJsonIsAnArrayOfRecords) {
  EXPECT_EQ(run({"list", "Image", "--json"}), (ToolRun{0,
                                                       "[\n"
                                                       "  {\n"
                                                       "    \"section\": \"Image\",\n"
                                                       "    \"name\": \"Brightness\",\n"
                                                       "    \"type\": \"integer\",\n"
                                                       "    \"value\": 0\n"
                                                       "  },\n"
                                                       "  {\n"
                                                       "    \"section\": \"Image\",\n"
                                                       "    \"name\": \"Mode\",\n"
                                                       "    \"type\": \"text\",\n"
                                                       "    \"value\": \"Auto\"\n"
                                                       "  }\n"
                                                       "]\n",
                                                       ""}));
}

TEST_F(ParametersTest, UnknownSectionIsRefusedWithTheNearestOne) {
  EXPECT_EQ(
      run({"list", "system"}),
      (ToolRun{1, "", "camcfg: list: there is no section 'system'; did you mean 'System'?\n"}));
}

TEST_F(ToolTest, IntegerThatIsNoneIsListedAsItIs) {
  device.write(kBusiness, R"(<A><B Cur="12abc" Min="1" Max="20"/></A>)");
  EXPECT_THAT(run({"list", "--json"}).out, testing::HasSubstr("\"value\": \"12abc\"\n"));
}

TEST_F(ToolTest, ControlCharactersInAValueStayOnItsLine) {
  device.write(kBusiness, "<A><B Cur=\"one&#10;two&#27;[2J\"/></A>");
  EXPECT_EQ(run({"get", "A", "B"}), (ToolRun{0, "one\\ntwo\\x1b[2J\n", ""}));
}

TEST_F(ParametersTest, GetPrintsOnlyTheValue) {
  EXPECT_EQ(run({"get", "System", "Rtsp"}), (ToolRun{0, "554\n", ""}));
  EXPECT_EQ(run({"get", "NetWork", "Eth0/IpAddr"}), (ToolRun{0, "192.0.2.7\n", ""}));
}

TEST_F(ParametersTest, GetInJsonShowsTypeAndWhoAnswers) {
  EXPECT_EQ(run({"--json", "get", "System", "Rtsp"}), (ToolRun{0,
                                                               "{\n"
                                                               "  \"section\": \"System\",\n"
                                                               "  \"name\": \"Rtsp\",\n"
                                                               "  \"type\": \"integer\",\n"
                                                               "  \"value\": 554,\n"
                                                               "  \"answeredBy\": \"System/Rtsp\"\n"
                                                               "}\n",
                                                               ""}));
}

TEST_F(ParametersTest, BeginningOfANameIsNoName) {
  EXPECT_EQ(
      run({"get", "System", "Rts"}),
      (ToolRun{1, "",
               "camcfg: get: section System has no parameter 'Rts'; did you mean 'Rtsp'?\n"}));
}

TEST_F(ParametersTest, ParameterWithoutCurrentValueIsNotFound) {
  EXPECT_EQ(run({"get", "System", "DeviceAttr"}),
            (ToolRun{1, "", "camcfg: get: System/DeviceAttr: it has no current value\n"}));
}

constexpr char kShadowedParameters[] =
    "<System>\n"
    "    <RtspOverHttp Cur=\"8080\" Def=\"8080\" Min=\"1\" Max=\"65535\"/>\n"
    "    <Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"65535\"/>\n"
    "</System>\n";

TEST_F(ToolTest, GetReadsTheNamedParameterAndSaysThatApplicationsGetAnother) {
  writeBoth(kShadowedParameters);
  EXPECT_EQ(run({"get", "System", "Rtsp"}),
            (ToolRun{0, "554\n",
                     "camcfg: get: note: applications that ask for System/Rtsp get "
                     "System/RtspOverHttp, since another name that begins with it comes first\n"}));
}

TEST_F(ToolTest, SetRefusesWhereTheLibraryWouldHitAnotherParameter) {
  writeBoth(kShadowedParameters);
  EXPECT_EQ(run({"set", "System", "Rtsp", "555"}),
            (ToolRun{1, "",
                     "camcfg: set: System/Rtsp: the library would set RtspOverHttp, which begins "
                     "with this name and comes before it in /cfg0/business_param.xml\n"}));
  EXPECT_EQ(device.read(kBusiness), kShadowedParameters);
}

TEST_F(ParametersTest, SetStoresAnIntegerInBothCopies) {
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554"}), (ToolRun{0, "System/Rtsp: 554 -> 8554\n", ""}));
  const std::string expected = with(kParameters, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  EXPECT_EQ(device.read(kBusiness), expected);
  EXPECT_EQ(device.read(kBusinessBackup), expected);
}

TEST_F(ParametersTest, SetStoresATextInBothCopies) {
  EXPECT_EQ(run({"set", "Image", "Mode", "Manual"}),
            (ToolRun{0, "Image/Mode: Auto -> Manual\n", ""}));
  const std::string expected = with(kParameters, "<Mode Cur=\"Auto\"", "<Mode Cur=\"Manual\"");
  EXPECT_EQ(device.read(kBusiness), expected);
  EXPECT_EQ(device.read(kBusinessBackup), expected);
}

TEST_F(ParametersTest, SetInJsonShowsTheValueBefore) {
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554", "--json"}),
            (ToolRun{0,
                     "{\n"
                     "  \"section\": \"System\",\n"
                     "  \"name\": \"Rtsp\",\n"
                     "  \"type\": \"integer\",\n"
                     "  \"before\": 554,\n"
                     "  \"value\": 8554\n"
                     "}\n",
                     ""}));
}

TEST_F(ParametersTest, SetTakesNegativeNumbersAndBothEndsOfTheRange) {
  EXPECT_EQ(run({"set", "Image", "Brightness", "-50"}),
            (ToolRun{0, "Image/Brightness: 0 -> -50\n", ""}));
  EXPECT_EQ(run({"set", "Image", "Brightness", "50"}),
            (ToolRun{0, "Image/Brightness: -50 -> 50\n", ""}));
}

TEST_F(ToolTest, SetMakesABackupThatWasMissing) {
  device.write(kBusiness, kParameters);
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554"}).status, 0);
  EXPECT_EQ(device.read(kBusinessBackup), device.read(kBusiness));
}

struct RefusedValue {
  const char* section;
  const char* name;
  const char* value;
  const char* why;
};

void PrintTo(const RefusedValue& refused, std::ostream* out) {
  *out << refused.section << '/' << refused.name << ' ' << refused.value;
}

class RefusedValueTest : public ToolTest, public testing::WithParamInterface<RefusedValue> {};

constexpr char kRefusing[] =
    "<Main>\n"
    "    <Port Cur=\"554\" Min=\"1\" Max=\"65535\"/>\n"
    "    <Rate Cur=\"5\" Min=\"1\" Max=\"10\" Step=\"4\"/>\n"
    "    <NoMax Cur=\"1\" Min=\"1\"/>\n"
    "    <NoMin Cur=\"1\" Max=\"1\"/>\n"
    "    <OddMax Cur=\"1\" Min=\"1\" Max=\"many\"/>\n"
    "    <Mode Cur=\"Auto\" OptTxt=\"Auto,Half-Auto,Manual\"/>\n"
    "    <Free Cur=\"x\"/>\n"
    "    <Card>\n"
    "        <Mtu Cur=\"1500\" Min=\"1\" Max=\"9000\"/>\n"
    "    </Card>\n"
    "</Main>\n";

TEST_P(RefusedValueTest, IsRefusedInOneLineAndChangesNothing) {
  writeBoth(kRefusing);
  const RefusedValue& refused = GetParam();
  EXPECT_EQ(run({"set", refused.section, refused.name, "--", refused.value}),
            (ToolRun{1, "", std::string("camcfg: set: ") + refused.why + "\n"}));
  EXPECT_EQ(device.read(kBusiness), kRefusing);
  EXPECT_EQ(device.read(kBusinessBackup), kRefusing);
}

INSTANTIATE_TEST_SUITE_P(
    Values, RefusedValueTest,
    testing::Values(
        RefusedValue{"Main", "Port", "0",
                     "Main/Port: 0 is outside 1..65535; the nearest permitted is 1"},
        RefusedValue{"Main", "Port", "65536",
                     "Main/Port: 65536 is outside 1..65535; the nearest permitted is 65535"},
        RefusedValue{"Main", "Port", "70000",
                     "Main/Port: 70000 is outside 1..65535; the nearest permitted is 65535"},
        RefusedValue{"Main", "Port", "4294967850",
                     "Main/Port: 4294967850 is outside 1..65535; the nearest permitted is 65535"},
        RefusedValue{
            "Main", "Port", "99999999999999999999",
            "Main/Port: 99999999999999999999 is outside 1..65535; the nearest permitted is 65535"},
        RefusedValue{
            "Main", "Port", "-99999999999999999999",
            "Main/Port: -99999999999999999999 is outside 1..65535; the nearest permitted is 1"},
        RefusedValue{"Main", "Port", "12abc", "Main/Port: '12abc' is not a decimal integer"},
        RefusedValue{"Main", "Port", "0x50", "Main/Port: '0x50' is not a decimal integer"},
        RefusedValue{"Main", "Port", "+80", "Main/Port: '+80' is not a decimal integer"},
        RefusedValue{"Main", "Port", " 80", "Main/Port: ' 80' is not a decimal integer"},
        RefusedValue{"Main", "Port", "80 ", "Main/Port: '80 ' is not a decimal integer"},
        RefusedValue{"Main", "Port", "80.0", "Main/Port: '80.0' is not a decimal integer"},
        RefusedValue{"Main", "Port", "-", "Main/Port: '-' is not a decimal integer"},
        RefusedValue{"Main", "Port", "", "Main/Port: '' is not a decimal integer"},
        RefusedValue{"Main", "NoMax", "1", "Main/NoMax: it has no Max, so no value is permitted"},
        RefusedValue{"Main", "NoMin", "1", "Main/NoMin: it has no Min, so no value is permitted"},
        RefusedValue{"Main", "OddMax", "1", "Main/OddMax: its Max 'many' is not an integer"},
        RefusedValue{"Main", "Rate", "11",
                     "Main/Rate: 11 is outside 1..10; the nearest permitted is 9"},
        RefusedValue{"Main", "Mode", "Off",
                     "Main/Mode: 'Off' is not among 'Auto,Half-Auto,Manual'"},
        RefusedValue{"Main", "Mode", "manual",
                     "Main/Mode: 'manual' is not among 'Auto,Half-Auto,Manual'; the nearest "
                     "permitted is 'Manual'"},
        RefusedValue{"Main", "Mode", "Man",
                     "Main/Mode: 'Man' is only a part of one of 'Auto,Half-Auto,Manual'; the "
                     "nearest permitted is 'Manual'; '--force' "
                     "sets it anyway"},
        RefusedValue{"Main", "Mode", "Half",
                     "Main/Mode: 'Half' is only a part of one of 'Auto,Half-Auto,Manual'; the "
                     "nearest permitted is 'Half-Auto'; '--force' sets it anyway"},
        RefusedValue{
            "Main", "Mode", "",
            "Main/Mode: the text is empty; the texts are 'Auto,Half-Auto,Manual'; '--force' "
            "sets it anyway"},
        RefusedValue{"Main", "Free", "y",
                     "Main/Free: it has neither Min, Max nor OptTxt, so the library permits no "
                     "value"},
        RefusedValue{"Main", "Card/Mtu", "1400",
                     "Main/Card/Mtu: the library sets no parameter inside another one"},
        RefusedValue{"Main", "Prt", "80",
                     "section Main has no parameter 'Prt'; did you mean 'Port'?"},
        RefusedValue{"Min", "Port", "80", "there is no section 'Min'; did you mean 'Main'?"}));

TEST_F(ParametersTest, ForceSetsAPartOfAnAllowedText) {
  EXPECT_EQ(
      run({"set", "--force", "Image", "Mode", "Man"}),
      (ToolRun{0, "Image/Mode: Auto -> Man\n",
               "camcfg: set: warning: /cfg0/business_param.xml:12: Image/Mode: \"Cur\" 'Man' is "
               "only a part of one of 'Auto,Half-Auto,Manual' [part-of-option]\n"}));
  EXPECT_EQ(device.read(kBusiness), with(kParameters, "<Mode Cur=\"Auto\"", "<Mode Cur=\"Man\""));
}

TEST_F(ParametersTest, ForceDoesNotSetWhatTheLibraryRefuses) {
  EXPECT_EQ(
      run({"set", "--force", "Image", "Mode", "Off"}),
      (ToolRun{1, "", "camcfg: set: Image/Mode: 'Off' is not among 'Auto,Half-Auto,Manual'\n"}));
}

TEST_F(ToolTest, TextWithMarkupCharactersArrives) {
  writeBoth(R"(<A><B Cur="" OptTxt="R&amp;D &lt;1&gt; &quot;x&quot;,Off"/></A>)");
  EXPECT_EQ(run({"set", "A", "B", R"(R&D <1> "x")"}), (ToolRun{0, "A/B:  -> R&D <1> \"x\"\n", ""}));
  EXPECT_EQ(run({"get", "A", "B"}), (ToolRun{0, "R&D <1> \"x\"\n", ""}));
}

TEST_F(ParametersTest, DescribeShowsAnInteger) {
  EXPECT_EQ(run({"describe", "Rtsp"}), (ToolRun{0,
                                                "name         Rtsp\n"
                                                "section      System\n"
                                                "type         integer\n"
                                                "range        1..65535\n"
                                                "step         1\n"
                                                "default      554\n"
                                                "current      554\n"
                                                "answered by  System/Rtsp\n"
                                                "also in      -\n",
                                                ""}));
}

TEST_F(ParametersTest, DescribeShowsAText) {
  EXPECT_EQ(run({"describe", "Mode"}), (ToolRun{0,
                                                "name         Mode\n"
                                                "section      Image\n"
                                                "type         text\n"
                                                "allowed      Auto,Half-Auto,Manual\n"
                                                "default      Auto\n"
                                                "current      Auto\n"
                                                "answered by  Image/Mode\n"
                                                "also in      -\n",
                                                ""}));
}

TEST_F(ParametersTest, DescribeShowsAParameterInsideAnother) {
  EXPECT_EQ(run({"describe", "Eth0/IpAddr"}), (ToolRun{0,
                                                       "name         Eth0/IpAddr\n"
                                                       "section      NetWork\n"
                                                       "type         text\n"
                                                       "allowed      -\n"
                                                       "default      192.0.2.1\n"
                                                       "current      192.0.2.7\n"
                                                       "answered by  NetWork/Eth0/IpAddr\n"
                                                       "also in      -\n",
                                                       ""}));
}

TEST_F(ParametersTest, DescribeInJsonHasEveryMember) {
  EXPECT_EQ(run({"describe", "Brightness", "--json"}), (ToolRun{0,
                                                                "{\n"
                                                                "  \"section\": \"Image\",\n"
                                                                "  \"name\": \"Brightness\",\n"
                                                                "  \"type\": \"integer\",\n"
                                                                "  \"value\": 0,\n"
                                                                "  \"default\": 0,\n"
                                                                "  \"min\": -50,\n"
                                                                "  \"max\": 50,\n"
                                                                "  \"step\": 5,\n"
                                                                "  \"allowed\": null,\n"
                                                                "  \"answeredBy\": "
                                                                "\"Image/Brightness\",\n"
                                                                "  \"alsoIn\": []\n"
                                                                "}\n",
                                                                ""}));
}

TEST_F(ToolTest, DescribeSaysWhichSectionAnswersWhereSeveralHaveTheName) {
  device.write(kBusiness,
               "<A><X Cur=\"0\"/></A>"
               "<B><Gain Cur=\"1\" Min=\"0\" Max=\"9\"/></B>"
               "<C><Gain Cur=\"2\" Min=\"0\" Max=\"9\"/></C>");
  EXPECT_EQ(run({"describe", "Gain"}), (ToolRun{0,
                                                "name         Gain\n"
                                                "section      B\n"
                                                "type         integer\n"
                                                "range        0..9\n"
                                                "step         -\n"
                                                "default      -\n"
                                                "current      1\n"
                                                "answered by  B/Gain\n"
                                                "also in      C\n",
                                                ""}));
}

TEST_F(ToolTest, DescribeSaysThatAnotherNameAnswers) {
  device.write(kBusiness,
               "<A><GainRed Cur=\"3\"/></A>"
               "<B><Gain Cur=\"1\" Min=\"0\" Max=\"9\"/></B>");
  EXPECT_THAT(run({"describe", "Gain"}).out, testing::HasSubstr("answered by  A/GainRed\n"));
}

TEST_F(ParametersTest, DescribeOfABeginningSaysWhatALookupFinds) {
  EXPECT_EQ(run({"describe", "WebH"}),
            (ToolRun{1, "",
                     "camcfg: describe: there is no parameter 'WebH' (a lookup finds "
                     "System/WebHttp)\n"}));
  EXPECT_EQ(run({"describe", "Nothing"}),
            (ToolRun{1, "", "camcfg: describe: there is no parameter 'Nothing'\n"}));
}

}  // namespace
}  // namespace camcfg::tests
