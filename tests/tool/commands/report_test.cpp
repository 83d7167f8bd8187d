#include <gmock/gmock.h>

#include <regex>

#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using tool::Json;

// Written so, since editors would turn the line around.
const std::string kRightToLeft = {static_cast<char>(0xe2), static_cast<char>(0x80),
                                  static_cast<char>(0xae)};

class ReportTest : public SampleTest {
 protected:
  std::string report(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), "report");
    const ToolRun made = run(options);
    EXPECT_EQ(made.status, 0) << made.err;
    return made.out;
  }
  Json facts() const { return jsonIn(run({"report", "--json"}).out); }
};

// The part below a heading.
std::string part(const std::string& page, const std::string& id) {
  const std::size_t begin = page.find("<section aria-labelledby=\"" + id + "\">");
  if (begin == std::string::npos) return "";
  return page.substr(begin, page.find("</section>", begin) - begin);
}

TEST_F(ReportTest, PartsComeInTheOrderInWhichTheyAreRead) {
  const std::string page = report();
  std::size_t at = page.find("<p class=\"light good\">");
  for (const char* id : {"findings", "wiring", "services", "network", "positions", "changed",
                         "history", "settings", "copies", "made"}) {
    const std::size_t next = page.find("<h2 id=\"" + std::string(id) + "\">");
    EXPECT_LT(at, next) << id;
    at = next;
  }
  EXPECT_NE(at, std::string::npos);
}

TEST_F(ReportTest, DeviceThatIsWellIsSaidToBe) {
  EXPECT_THAT(report(), HasSubstr("<strong>Green:</strong> The device is well"));
}

TEST_F(ReportTest, FindingsHaveTheirSettingReasonAndCommand) {
  change("mpp_cfg.xml", "Id=\"12\" Name=\"video\"", "Id=\"99\" Name=\"video\"");
  const std::string page = report();
  EXPECT_THAT(page, HasSubstr("<strong>Amber:</strong> The device works, but needs attention"));
  EXPECT_THAT(part(page, "findings"),
              AllOf(HasSubstr("<strong class=\"warning\">warning</strong>"),
                    HasSubstr("<dt>Setting</dt><dd><code>live.rtsp[program]</code></dd>"),
                    HasSubstr("<dt>Why it matters</dt>"), HasSubstr("<dt>What to do</dt>"),
                    HasSubstr("<code>camcfg set 'live.rtsp[program].MEMBER=VALUE'</code>")));
  EXPECT_THAT(part(page, "wiring"), HasSubstr("there is no cache 99"));
}

TEST_F(ReportTest, WorstFindingComesFirst) {
  device.remove("/cfg1/preset_cfg.xml");
  device.write("/cfg0/mpp_cfg.xml", "<");
  device.write("/cfg1/mpp_cfg.xml", "<");
  device.remove("/app/resource/defcfg/mpp_cfg.xml");
  const std::string page = report();
  EXPECT_THAT(page, HasSubstr("<strong>Red:</strong> The device is not usable as it is"));
  const std::string findings = part(page, "findings");
  EXPECT_LT(findings.find("class=\"unusable\""), findings.find("class=\"degraded\""));
  EXPECT_THAT(part(page, "copies"), HasSubstr("<td>damaged</td>"));
  EXPECT_THAT(part(page, "wiring"), HasSubstr("This cannot be read: "));
  EXPECT_THAT(part(page, "network"), HasSubstr("Lan0"));
}

TEST_F(ReportTest, BackupIsShownInPlaceOfADamagedMainCopy) {
  device.write("/cfg0/mpp_cfg.xml", "<");
  const std::string page = report();
  EXPECT_THAT(page, HasSubstr("<p>/cfg0/mpp_cfg.xml cannot be read: its settings below are those "
                              "of its backup, /cfg1/mpp_cfg.xml.</p>"));
  EXPECT_THAT(part(page, "wiring"), HasSubstr("RTSP program"));
  EXPECT_THAT(part(page, "services"), HasSubstr("rtsp://192.168.1.80/ch2/main"));
  EXPECT_THAT(part(page, "settings"), HasSubstr("Entries of live.srt"));
  EXPECT_EQ(device.read("/cfg0/mpp_cfg.xml"), "<");
}

TEST_F(ReportTest, HalfWrittenFilesAreShownAsFarAsTheyCanBeSalvaged) {
  change("mpp_cfg.xml", "ch1/main", "hall/main");
  const std::string whole = device.read("/cfg0/mpp_cfg.xml");
  for (const char* path : {"/cfg0/mpp_cfg.xml", "/cfg1/mpp_cfg.xml"})
    device.write(path, whole.substr(0, whole.find("ch3/main")));
  const std::string page = report();
  EXPECT_THAT(page, HasSubstr("below is what 'camcfg salvage' brings back of it"));
  EXPECT_THAT(part(page, "services"), HasSubstr("rtsp://192.168.1.80/hall/main"));
}

TEST_F(ReportTest, CommandsAreAboutTheirPlace) {
  change("mpp_cfg.xml", "Port=\"9001\"", "Port=\"x\"");
  change("mpp_cfg.xml", "BufferSizeMB=\"8\"", "BufferSizeMB=\"8000\"");
  change("preset_cfg.xml", "Lectern", std::string(100, 'x'));
  device.remove("/cfg1/preset_cfg.xml");
  const std::string findings = part(report(), "findings");
  for (const char* expected :
       {"<dd><code>live.srt[1].port</code>", "<code>camcfg set 'live.srt[1].port=VALUE'</code>",
        "<code>camcfg stream cache set 0 size=8MiB</code>",
        "<code>camcfg preset rename 3 DESCRIPTION</code>", "<code>camcfg verify --resync</code>"})
    EXPECT_THAT(findings, HasSubstr(expected));
}

TEST_F(ReportTest, ManyFindingsAreFoldedUp) {
  Json document = jsonIn(R"({"version": 1, "live": {"rtsp": []}})");
  for (int i = 0; i < 30; ++i)
    document["live"]["rtsp"].push_back(
        {{"name", "empty" + std::to_string(i)}, {"channels", Json::array()}});
  device.write("/document.json", document.dump());
  ASSERT_EQ(run({"import", device.hostPath() + "/document.json"}).status, 0);
  const std::string findings = part(report(), "findings");
  EXPECT_LT(findings.find("<ol class=\"findings\" start=\"1\">"), findings.find("<details>"));
  EXPECT_LT(findings.find("<details>"), findings.find("<ol class=\"findings\" start=\"21\">"));
}

TEST_F(ReportTest, ServicesHaveAddressesThatAPlayerTakes) {
  ASSERT_EQ(run({"set", "System/Rtsp=8554"}).status, 0);
  const std::string services = part(report(), "services");
  EXPECT_THAT(services, HasSubstr("<td>rtsp://192.168.1.80:8554/ch2/main</td>"));
  EXPECT_THAT(services, HasSubstr("<td>srt://192.168.1.80:9000?streamid=program</td>"));
  EXPECT_THAT(services, HasSubstr("<td>srt://ingest.example.com:9001?streamid=program</td>"));
}

TEST_F(ReportTest, NamesInAddressesAreAsUrlsHaveThem) {
  change("mpp_cfg.xml", "Name=\"ch1/main\"", "Name=\"a b%?#&amp;\xc3\xa4/main\"");
  change("mpp_cfg.xml", "Stream Id=\"ch1\"", "Stream Id=\"#!::r=a&amp;b\"");
  change("mpp_cfg.xml", "ingest.example.com", "2001:db8::5");
  const std::string services = part(report(), "services");
  EXPECT_THAT(services, HasSubstr("<td>rtsp://192.168.1.80/a%20b%25%3F%23&amp;%C3%A4/main</td>"));
  EXPECT_THAT(services, HasSubstr("<td>srt://192.168.1.80:9000?streamid=%23!::r=a%26b</td>"));
  EXPECT_THAT(services, HasSubstr("<td>srt://[2001:db8::5]:9001?streamid=program</td>"));
}

TEST_F(ReportTest, OtherWaysToTheDeviceAreNamed) {
  EXPECT_THAT(part(report(), "services"),
              AllOf(HasSubstr("Lan0 gets its address by DHCP: it may have another one"),
                    HasSubstr("On the network of Lan1, put 192.168.90.80 in place of 192.168.1.80"),
                    Not(HasSubstr("Wifi"))));
}

TEST_F(ReportTest, CardsOfOneSubnetAreWithinItsBand) {
  for (const char* card : {"192.168.90", "192.168.2"})
    change("business_param.xml", card + std::string(".80"), "192.168.1.8");
  const std::string network = part(report(), "network");
  static const std::regex form("class=\"card\" x=\"([0-9]+)\" y=\"([0-9]+)\" width=\"([0-9]+)\"");
  std::set<std::string> places;
  for (std::sregex_iterator match(network.begin(), network.end(), form), end; match != end;
       ++match) {
    EXPECT_LE(std::stoi((*match)[1]) + std::stoi((*match)[3]), 630);
    places.insert(match->str());
  }
  EXPECT_EQ(places.size(), 3U);
}

TEST_F(ReportTest, NamesOfCameraPositionsAreWithinTheFieldAndApart) {
  device.write("/presets.csv",
               "id,description,pan,tilt,zoom\n20,Here,0,0,0\n21,There,0,0,0\n"
               "22,Far right,17000,150,9000\n");
  ASSERT_EQ(run({"preset", "import", device.hostPath() + "/presets.csv"}).status, 0);
  const std::string positions = part(report(), "positions");
  static const std::regex form("<text x=\"([0-9]+)\" y=\"([0-9]+)\" class=\"small\">([^<]*)<");
  std::set<std::pair<int, int>> places;
  int names = 0;
  for (std::sregex_iterator match(positions.begin(), positions.end(), form), end; match != end;
       ++match) {
    names += std::isdigit((*match)[3].str()[0]) != 0 ? 1 : 0;
    places.emplace(std::stoi((*match)[1]), std::stoi((*match)[2]));
    EXPECT_LT(std::stoi((*match)[1]) + 5 * static_cast<int>((*match)[3].length()), 600)
        << match->str();
  }
  EXPECT_EQ(names, 10);
  EXPECT_EQ(places.size(), 13U);
}

TEST_F(ReportTest, ChangesAreThereWithWhatTheyChanged) {
  ASSERT_EQ(run({"set", "System/Rtsp=8554"}).status, 0);
  ASSERT_EQ(run({"set", "System/WebHttp=8000"}).status, 0);
  const std::string page = report();
  EXPECT_THAT(part(page, "history"),
              testing::ContainsRegex("Change 2, .*by .*set System/WebHttp=8000"));
  EXPECT_LT(part(page, "history").find("Change 2"), part(page, "history").find("Change 1"));
  EXPECT_THAT(part(page, "changed"), HasSubstr("parameters.System.Rtsp</th><td>554</td><td>8554"));
}

TEST_F(ReportTest, EverySettingIsThereWithWhatIsKnownOfIt) {
  const std::string settings = part(report(), "settings");
  EXPECT_THAT(settings, HasSubstr("<th scope=\"row\">Rtsp</th><td>554</td><td>554</td>"
                                  "<td>1..65535, step 1</td>"));
  const Json parameters = jsonIn(run({"list", "--json"}).out);
  for (const Json& parameter : parameters) {
    if (parameter.at("section") == "NetWork") continue;
    EXPECT_THAT(settings, HasSubstr("<th scope=\"row\">" + parameter.at("name").text() + "</th>"));
  }
}

TEST_F(ReportTest, CopiesHaveChecksums) {
  const Json copies = facts()["health"]["copies"];
  for (const Json& copy : copies) EXPECT_EQ(copy.at("checksum").text().size(), 64U);
  EXPECT_EQ(copies[0].at("checksum"), copies[1].at("checksum"));
}

TEST_F(ReportTest, NothingIsChanged) {
  const auto contents = [&] {
    return device.read("/cfg0/mpp_cfg.xml") + device.read("/cfg1/preset_cfg.xml");
  };
  device.write("/cfg0/mpp_cfg.xml", device.read("/cfg0/mpp_cfg.xml").substr(0, 4000));
  const std::string before = contents();
  report();
  report({"--anonymize"});
  EXPECT_EQ(contents(), before);
  EXPECT_FALSE(device.exists("/cfg1/.camcfg"));
}

TEST_F(ReportTest, HostileValuesStayText) {
  const std::string hostile = "&lt;/td&gt;&lt;script&gt;alert(1)&lt;/script&gt;&amp;quot;";
  change("preset_cfg.xml", "Description=\"Lectern\"", "Description=\"" + hostile + "\"");
  change("mpp_cfg.xml", "Name=\"ch1/main\"",
         "Name=\"" + hostile + std::string(10000, 'x') + kRightToLeft + "\"");
  const std::string page = report();
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(page, HasSubstr("&lt;/td&gt;&lt;script&gt;alert(1)&lt;/script&gt;"));
  EXPECT_THAT(page, Not(HasSubstr(kRightToLeft)));
  EXPECT_THAT(page, HasSubstr("the rest is left out"));
}

TEST_F(ReportTest, LoadsNothingAndHasNoScript) {
  const std::string page = report();
  EXPECT_THAT(page,
              HasSubstr("http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                        "style-src 'sha256-"));
  EXPECT_FALSE(std::regex_search(page, std::regex(" (src|style|on[a-z]+)=\"")));
  EXPECT_FALSE(std::regex_search(page, std::regex("href=\"[^#]")));
}

TEST_F(ReportTest, IsSmall) {
  EXPECT_LT(report().size(), 400U * 1024);
  Json document = jsonIn(run({"export"}).out);
  document["live"]["rtsp"] = Json::array();
  for (int i = 0; i < 1000; ++i)
    document["live"]["rtsp"].push_back(
        {{"name", "session" + std::to_string(i)},
         {"channels",
          Json::array({{{"id", 0}, {"name", "video"}}, {{"id", 8}, {"name", "audio"}}})}});
  document["presets"] = Json::array();
  for (int i = 0; i < 128; ++i)
    document["presets"].push_back({{"id", i},
                                   {"description", "Preset " + std::to_string(i)},
                                   {"pan", i},
                                   {"tilt", i},
                                   {"zoom", i},
                                   {"focus", 0},
                                   {"focusMode", 0}});
  device.write("/document.json", document.dump());
  ASSERT_EQ(run({"import", device.hostPath() + "/document.json"}).status, 0);
  const std::string page = report();
  EXPECT_THAT(page, HasSubstr("rtsp://192.168.1.80/session999"));
  EXPECT_THAT(part(page, "history"), HasSubstr("more: 'camcfg history 1' shows all"));
  EXPECT_LT(page.size(), 2048U * 1024);
}

class AnonymousReportTest : public ReportTest {
 protected:
  AnonymousReportTest() {
    EXPECT_EQ(
        run({"network", "set", "Lan0", "address=203.0.113.77/24", "gateway=203.0.113.1"}).status,
        0);
    EXPECT_EQ(run({"network", "hostname", "north-hall"}).status, 0);
  }
};

TEST_F(AnonymousReportTest, HidesAddressesNamesAndUrlsEverywhere) {
  const std::string page = report({"--anonymize"}) + report({"--anonymize", "--json"});
  for (const char* hidden : {"203.0.113", "192.168.", "north-hall", "ingest.example.com",
                             "live.example.com", "Four-Channel Encoder", "studio.example"})
    EXPECT_THAT(page, Not(HasSubstr(hidden)));
}

TEST_F(AnonymousReportTest, SaysThatSomethingIsHidden) {
  const std::string page = report({"--anonymize"});
  EXPECT_THAT(page, testing::ContainsRegex("<td>rtsp://\\[address [0-9]+\\]/ch2/main</td>"));
  EXPECT_THAT(part(page, "made"), HasSubstr("is the same address everywhere"));
  EXPECT_THAT(part(page, "history"), testing::ContainsRegex("address=\\[address [0-9]+\\]/24"));
}

TEST_F(AnonymousReportTest, SameAddressIsTheSamePlaceholderAndTheKeyKnowsIt) {
  const ToolRun made =
      run({"report", "--anonymize", "--json", "--key", device.hostPath() + "/keys"});
  EXPECT_THAT(made.err, HasSubstr("the key to what is hidden is in "));
  const Json key = jsonIn(device.read("/keys/camcfg-key.json"));
  const Json facts = jsonIn(made.out);
  const std::string& address = facts["network"]["cards"][0]["ipAddr"].text();
  EXPECT_EQ(key.at(address), "203.0.113.77");
  EXPECT_THAT(facts["services"][0]["address"].text(), HasSubstr(address));
  std::set<std::string> originals;
  for (const auto& [placeholder, original] : key.items())
    EXPECT_TRUE(originals.insert(original.text()).second) << original.text();
}

TEST_F(AnonymousReportTest, KeyNeedsSomethingThatIsHidden) {
  EXPECT_EQ(run({"report", "--key", device.hostPath() + "/keys"}),
            (ToolRun{2, "", "camcfg: report: --key is for '--anonymize', which is missing\n"}));
}

TEST_F(AnonymousReportTest, HidesWhatOnlyTheHistoryKnows) {
  ASSERT_EQ(run({"live", "srt", "set", "1", "hostname=old-ingest.example.org"}).status, 0);
  ASSERT_EQ(run({"live", "srt", "set", "1", "hostname=new-ingest.example.org"}).status, 0);
  ASSERT_EQ(run({"live", "ndi", "set", "0", "discoveryServer=10.1.2.3,ndi.example.org"}).status, 0);
  ASSERT_EQ(run({"live", "ndi", "set", "0", "groupName=ndi.example.org"}).status, 0);
  const std::string page = report({"--anonymize"});
  EXPECT_THAT(part(page, "history"), HasSubstr("live.srt[1].hostname</th><td>[name"));
  EXPECT_THAT(page, Not(HasSubstr("example.org")));
  EXPECT_THAT(page, Not(HasSubstr("10.1.2.3")));
}

TEST_F(AnonymousReportTest, HidesAddressesInAnyForm) {
  change("preset_cfg.xml", "Lectern", "fd00::7, 02:00:5e:10:00:01, cam10.1.2.3.");
  change("preset_cfg.xml", "Whiteboard", "10.1.2.300 and NORTH-HALL");
  EXPECT_THAT(part(report({"--anonymize"}), "positions"),
              testing::ContainsRegex(
                  "\\[address [0-9]+\\], \\[address [0-9]+\\], cam\\[address [0-9]+\\]\\.<"));
  const std::string page = report({"--anonymize"});
  for (const char* hidden : {"fd00", "5e:10", "10.1.2", "NORTH"})
    EXPECT_THAT(page, Not(HasSubstr(hidden)));
}

TEST_F(AnonymousReportTest, WordsOfTheToolStay) {
  change("mpp_cfg.xml", "Port=\"9001\"", "Port=\"x\"");
  for (const char* name : {"error", "network", "name", "RTSP", "encoder"}) {
    ASSERT_EQ(run({"network", "hostname", name}).status, 0);
    const std::string page = report({"--anonymize"});
    EXPECT_THAT(page, HasSubstr("<strong class=\"error\">error</strong>")) << name;
    EXPECT_THAT(page, HasSubstr("<td>rtsp://[address")) << name;
    EXPECT_THAT(page, HasSubstr("Video encoder, audio input")) << name;
    EXPECT_THAT(page, Not(HasSubstr("[["))) << name;
  }
}

TEST_F(AnonymousReportTest, HidesPathsOfCommandLines) {
  device.write("/customer.json", run({"export"}).out);
  const std::string path = device.hostPath() + "/customer.json";
  device.write("/customer.json",
               with(device.read("/customer.json"), "\"Rtsp\": 554", "\"Rtsp\": 555"));
  ASSERT_EQ(run({"import", path}).status, 0);
  EXPECT_THAT(part(report(), "history"), HasSubstr("customer.json"));
  EXPECT_THAT(part(report({"--anonymize"}), "history"), HasSubstr("import [file 1]</h3>"));
  const std::string page =
      runCamcfg({"report", "--anonymize", "--files", device.hostPath() + "/cfg0"}).out;
  EXPECT_THAT(part(page, "made"), HasSubstr("<td>camcfg report --anonymize --files [file 1]</td>"));
}

TEST_F(ReportTest, FilesAreEnough) {
  const std::string folder = device.hostPath() + "/cfg0";
  const ToolRun made = runCamcfg({"report", "--files", folder});
  EXPECT_EQ(made.status, 0) << made.err;
  EXPECT_THAT(part(made.out, "services"), HasSubstr("rtsp://192.168.1.80/ch2/main"));
  EXPECT_THAT(made.out, HasSubstr("<strong>Green:</strong>"));
  EXPECT_THAT(made.out, HasSubstr("<p>These are files without a device: "));
  EXPECT_THAT(part(made.out, "copies"), Not(HasSubstr("/cfg1/")));
  device.remove("/cfg0/preset_cfg.xml");
  device.makeDirectory("/cfg0/preset_cfg.xml");
  const std::string rest = runCamcfg({"report", "--files", folder}).out;
  EXPECT_THAT(rest, HasSubstr("<p>preset_cfg.xml cannot be read: Is a directory.</p>"));
  EXPECT_THAT(part(rest, "services"), HasSubstr("rtsp://192.168.1.80/ch2/main"));
  EXPECT_THAT(rest, HasSubstr("<strong>Green:</strong>"));
  device.remove("/cfg0/mpp_cfg.xml");
  EXPECT_THAT(part(runCamcfg({"report", "--files", folder}).out, "wiring"),
              HasSubstr("This cannot be read: "));
  EXPECT_EQ(
      runCamcfg({"report", "--files", device.hostPath() + "/app"}),
      (ToolRun{3, "",
               "camcfg: report: " + device.hostPath() + "/app: it has no file of a device\n"}));
}

class ComparisonTest : public ReportTest {
 protected:
  ComparisonTest() {
    device.write("/other.json", with(run({"export"}).out, "\"Rtsp\": 554", "\"Rtsp\": 8554"));
  }
  std::string pathOf(const std::string& file) const { return device.hostPath() + file; }
};

TEST_F(ComparisonTest, ShowsOnlyWhatDiffersFromADocument) {
  const std::string page = report({"--compare", pathOf("/other.json")});
  EXPECT_THAT(part(page, "differences"),
              HasSubstr("<th scope=\"row\">parameters.System.Rtsp</th><td>554</td><td>8554</td>"));
  EXPECT_THAT(page, HasSubstr("<p>1 setting differs.</p>"));
}

TEST_F(ComparisonTest, PartsThatADocumentLacksAreNotCompared) {
  device.write("/other.json", R"({"version": 1, "parameters": {"System": {"Rtsp": 555}}})");
  const Json compared = jsonIn(run({"report", "--json", "--compare", pathOf("/other.json")}).out);
  EXPECT_EQ(compared["differences"].size(), 1U);
  EXPECT_EQ(compared["notCompared"].size(), 9U);
}

TEST_F(ComparisonTest, DeviceTreeIsComparedWhole) {
  device.makeDirectory("/other/cfg0");
  for (const char* name : {"business_param.xml", "mpp_cfg.xml"})
    device.write(std::string("/other/cfg0/") + name, device.read(std::string("/cfg0/") + name));
  device.write("/other/cfg0/mpp_cfg.xml", with(device.read("/cfg0/mpp_cfg.xml"), "9001", "9002"));
  const Json compared = jsonIn(run({"report", "--json", "--compare", pathOf("/other")}).out);
  EXPECT_EQ(compared["differences"][0]["place"], "live.srt[1].port");
  EXPECT_EQ(compared["differences"].size(), 1U);
  EXPECT_EQ(compared["notCompared"][0]["place"], "presets");
}

TEST_F(ComparisonTest, SecretsAreMasked) {
  device.write("/other.json", with(run({"export"}).out, "change-me-too", "another phrase"));
  const std::string page = report({"--compare", pathOf("/other.json")});
  EXPECT_THAT(page, AllOf(HasSubstr("<td>********</td><td>********</td>"),
                          Not(HasSubstr("change-me")), Not(HasSubstr("another phrase"))));
}

TEST_F(ComparisonTest, WhatIsNoDocumentIsRefused) {
  device.write("/other.json", "{}");
  EXPECT_EQ(run({"report", "--compare", pathOf("/other.json")}),
            (ToolRun{1, "",
                     "camcfg: report: " + pathOf("/other.json") +
                         ": it is no document as 'export' prints it\n"}));
  EXPECT_EQ(run({"report", "--compare", pathOf("/app")}).status, 3);
  EXPECT_EQ(run({"report", "--files", pathOf("/cfg0"), "--compare", pathOf("/app")}),
            (ToolRun{2, "", "camcfg: report: --files cannot be combined with --compare\n"}));
}

TEST_F(ComparisonTest, AnonymousOneHidesBothDevices) {
  device.write("/other.json", with(with(run({"export"}).out, "\"192.168.1.80\"", "\"203.0.113.7\""),
                                   "\"hostname\": \"encoder\"", "\"hostname\": \"north-hall\""));
  const std::string page = report({"--anonymize", "--compare", pathOf("/other.json")});
  EXPECT_THAT(page, HasSubstr("<p>2 settings differ.</p>\n<p>Hidden: "));
  EXPECT_THAT(page,
              testing::ContainsRegex("ipAddr</th><td>\\[address 1\\]</td><td>\\[address 2\\]"));
  for (const char* hidden : {"192.168.", "203.0.113", "north-hall", "other.json"})
    EXPECT_THAT(page, Not(HasSubstr(hidden)));
}

class FleetReportTest : public ReportTest {
 protected:
  FleetReportTest() {
    device.makeDirectory("/fleet");
    const std::string document = run({"export"}).out;
    for (const char* name : {"north", "south", "west"})
      device.write(std::string("/fleet/") + name + ".json", document);
    device.write("/fleet/south.json", with(document, "\"Rtsp\": 554", "\"Rtsp\": 555"));
  }
  std::vector<std::string> words() const {
    return {"report", "--fleet", device.hostPath() + "/fleet"};
  }
  Json fleet() const {
    std::vector<std::string> line = words();
    line.emplace_back("--json");
    return jsonIn(runCamcfg(line).out);
  }
};

TEST_F(FleetReportTest, DriftIsWhatMoreThanHalfDoNotHave) {
  const Json devices = fleet()["devices"];
  ASSERT_EQ(devices.size(), 3U);
  EXPECT_TRUE(devices[0]["drift"].empty());
  EXPECT_EQ(devices[1]["drift"].dump(),
            R"([{"place":"parameters.System.Rtsp","value":"555","majority":"554"}])");
}

TEST_F(FleetReportTest, FactsOfReportsHaveHealthAndVersion) {
  device.write("/fleet/west.json", run({"report", "--json"}).out);
  const Json devices = fleet()["devices"];
  EXPECT_EQ(devices[2]["health"], "well");
  EXPECT_THAT(devices[2]["version"].text(), testing::StartsWith("camcfg "));
  EXPECT_TRUE(devices[2]["drift"].empty()) << devices[2]["drift"].dump();
}

TEST_F(FleetReportTest, HealthThatDocumentsDoNotSayIsNotKnown) {
  const std::string row = "</th><td>not known</td><td>not known</td><td>not known</td>";
  const std::string said = "Exported documents do not say";
  EXPECT_THAT(runCamcfg(words()).out, AllOf(HasSubstr("north" + row), HasSubstr(said)));
  for (const char* name : {"north", "south", "west"})
    device.write(std::string("/fleet/") + name + ".json", run({"report", "--json"}).out);
  EXPECT_THAT(runCamcfg(words()).out, Not(HasSubstr(said)));
}

TEST_F(FleetReportTest, ReportsNextToDocumentsAreLinked) {
  device.write("/fleet/south.html", "");
  const std::string page = runCamcfg(words()).out;
  EXPECT_THAT(page, HasSubstr("<a href=\"./south.html\">south</a>"));
  EXPECT_THAT(page, Not(HasSubstr("href=\"./north.html\"")));
  EXPECT_THAT(page, HasSubstr("1 of 3 devices differ"));
}

TEST_F(FleetReportTest, AnonymousOneHidesDevicesAndValues) {
  device.write("/fleet/south.html", "");
  device.write("/fleet/broken.json", "{");
  device.write("/fleet/south.json",
               with(run({"export"}).out, "\"192.168.1.80\"", "\"203.0.113.7\""));
  std::vector<std::string> line = words();
  line.emplace_back("--anonymize");
  const std::string page = runCamcfg(line).out;
  EXPECT_THAT(part(page, "drift"), testing::ContainsRegex("ipAddr</th><td>\\[address [0-9]"));
  for (const char* hidden : {"north", "south", "broken", "192.168.", "203.0.113"})
    EXPECT_THAT(page, Not(HasSubstr(hidden)));
}

TEST_F(FleetReportTest, WhatIsNoDocumentIsNamed) {
  device.write("/fleet/broken.json", "{");
  device.write("/fleet/odd.json", R"({"sections": 1, "findings": 2, "made": 3})");
  EXPECT_EQ(fleet()["unread"].size(), 2U);
  EXPECT_EQ(fleet()["devices"].size(), 3U);
}

}  // namespace
}  // namespace camcfg::tests
