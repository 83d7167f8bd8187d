#include <gmock/gmock.h>

#include "tool/json_in.h"
#include "tool/sample_test.h"
#include "tool/terminal.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;
using tool::Json;

/// Documents for the sample device.
class ImportModesTest : public SampleTest {
 protected:
  ToolRun import(const std::string& sections, std::vector<std::string> options = {}) const {
    return importText("{\"version\": 1, " + sections + "}", std::move(options));
  }
  ToolRun importText(const std::string& document, std::vector<std::string> options = {}) const {
    device.write("/document.json", document);
    options.insert(options.begin(), {"import", device.hostPath() + "/document.json"});
    return run(options);
  }
  ToolRun merge(const std::string& sections) const { return import(sections, {"--mode", "merge"}); }
  ToolRun override(const std::string& sections) const {
    return import(sections, {"--mode", "override"});
  }
  ToolRun refused(const std::string& why) const {
    return {1, "", "camcfg: import: " + why + "\ncamcfg: import: nothing was changed\n"};
  }
  Json exported(const std::string& section) const {
    std::string path = section;
    std::replace(path.begin(), path.end(), '.', '/');
    return *jsonIn(run({"export", section}).out).find_path(path);
  }
  std::string everything() const { return run({"export"}).out; }
  std::string files() const {
    return device.read("/cfg0/mpp_cfg.xml") + device.read("/cfg0/business_param.xml") +
           device.read("/cfg0/preset_cfg.xml");
  }
};

std::vector<std::string> placesIn(const ToolRun& answer) {
  std::vector<std::string> places;
  const Json value = jsonIn(answer.out);
  for (const Json& change : value["changes"]) places.push_back(change["place"].text());
  return places;
}

TEST_F(ImportModesTest, MergeChangesWhatIsNamedAndKeepsTheRest) {
  const Json before = exported("live.srt");
  EXPECT_EQ(merge(R"("live": {"srt": [{"id": 1, "port": 9555}]})"),
            (ToolRun{0, "PLACE             BEFORE  AFTER\nlive.srt[1].port  9001    9555\n", ""}));
  const Json after = exported("live.srt");
  ASSERT_EQ(after.size(), before.size());
  EXPECT_EQ(after[0], before[0]);
  EXPECT_EQ(after[1]["password"], before[1]["password"]);
}

TEST_F(ImportModesTest, MergeAddsWhatIsNewWithWhatIsAssumedForTheRest) {
  const Json before = exported("live.srt");
  EXPECT_EQ(merge(R"("live": {"srt": [{"id": 5, "mode": "listener", "port": 9555}]})").status, 0);
  const Json after = exported("live.srt");
  ASSERT_EQ(after.size(), before.size() + 1);
  EXPECT_EQ(after.back()["id"], 5);
  EXPECT_EQ(after.back()["latency"], 20);
}

TEST_F(ImportModesTest, MergeFindsSessionsThatHaveNoIdByName) {
  EXPECT_EQ(merge(R"("live": {"rtsp": [{"name": "ch9", "channels": [{"id": 0, "name": "video"}]},
                                       {"name": "ch1/main",
                                        "channels": [{"id": 8, "name": "sound"}]}]})")
                .status,
            0);
  const Json after = exported("live.rtsp");
  EXPECT_EQ(after.front().dump(),
            R"({"name":"ch1/main","channels":[{"id":0,"name":"video"},{"id":8,"name":"sound"}]})");
  EXPECT_EQ(after.back().dump(), R"({"name":"ch9","channels":[{"id":0,"name":"video"}]})");
}

TEST_F(ImportModesTest, MergeFindsEntriesByNameWhereTheIdIsLeftOut) {
  EXPECT_EQ(merge(R"("stream": {"caches": [{"name": "program", "default": 2}]})").status, 0);
  EXPECT_EQ(run({"get", "stream.caches[12].default"}).out, "2\n");
  ASSERT_EQ(run({"stream", "cache", "set", "10", "name=program", "--force"}).status, 0);
  EXPECT_EQ(merge(R"("stream": {"caches": [{"name": "program", "absent": true}]})"),
            refused("stream.caches[0]: there is more than one with this name; give its id"));
}

TEST_F(ImportModesTest, AbsentEntryIsDeleted) {
  EXPECT_EQ(merge(R"("live": {"rtsp": [{"name": "ch2/main", "absent": true}]},
                     "presets": [{"id": 1, "absent": true}])")
                .err,
            "camcfg: import: note: deletes 1 entry of live.rtsp, 1 of presets\n");
  EXPECT_THAT(run({"live", "rtsp"}).out, Not(HasSubstr("ch2/main")));
  EXPECT_THAT(run({"live", "rtsp"}).out, HasSubstr("ch2/sub"));
  EXPECT_THAT(run({"export", "presets"}).out, Not(HasSubstr("{\"id\": 1,")));
  EXPECT_EQ(merge(R"("presets": [{"id": 1, "absent": true}])"),
            (ToolRun{0, "nothing differs from the device\n", ""}));
}

TEST_F(ImportModesTest, AbsentRecordInsideAnEntryIsDeleted) {
  EXPECT_EQ(merge(R"("live": {"rtsp": [{"name": "ch1/main",
                                        "channels": [{"id": 8, "absent": true}]}]})")
                .status,
            0);
  EXPECT_EQ(exported("live.rtsp").front().dump(),
            R"({"name":"ch1/main","channels":[{"id":0,"name":"video"}]})");
}

TEST_F(ImportModesTest, AbsentEntryIsNotThereInTheOtherModes) {
  for (const char* mode : {"replace", "override"}) {
    ASSERT_EQ(run({"reset", "--all", "--yes"}).status, 0);
    EXPECT_EQ(import(R"("live": {"rtsp": [{"name": "ch1/main", "absent": true},
                                          {"name": "new", "channels": []}]})",
                     {"--mode", mode})
                  .status,
              0);
    EXPECT_EQ(exported("live.rtsp").dump(), R"([{"name":"new","channels":[]}])") << mode;
  }
}

TEST_F(ImportModesTest, WhatIsToBeAbsentSaysWhichOneAndNothingElse) {
  EXPECT_EQ(merge(R"("presets": [{"id": 1, "absent": false}])"),
            refused("presets[0].absent: it must be true; leave it out of an entry that is to be "
                    "there"));
  EXPECT_EQ(merge(R"("presets": [{"absent": true}])"),
            refused("presets[0]: which one is to be absent? give its id"));
  EXPECT_EQ(merge(R"("live": {"srt": [{"id": 1, "port": 9001, "absent": true}]})"),
            refused("live.srt[0].port: an entry that is to be absent has nothing else"));
  EXPECT_EQ(merge(R"("presets": [{"id": 1, "absent": true}, {"id": 1, "zoom": 3}])"),
            refused("presets[1].id: there is another one with this id"));
}

TEST_F(ImportModesTest, FaultsOfAMergeHaveThePlacesOfTheDocument) {
  EXPECT_EQ(merge(R"("live": {"srt": [{"id": 1, "port": 70000}]})"),
            refused("live.srt[0].port: 70000 is outside 1..65535; the nearest permitted is 65535"));
  EXPECT_EQ(merge(R"("live": {"srt": [{"id": 0, "absent": true},
                                      {"id": 1, "streams": [{"id": "program", "absent": true},
                                                            {"id": "x", "defaul": true}]}]})"),
            refused("live.srt[1].streams[1].defaul: there is no such member; did you mean "
                    "'default'?"));
}

TEST_F(ImportModesTest, WhatAnotherEntryOfTheDeviceNeedsIsNamedByItsKey) {
  const ToolRun answer = merge(R"("stream": {"sources": [{"id": 0, "absent": true}],
                                             "caches": [{"id": 12, "name": "main"}]})");
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.err, HasSubstr("stream.caches[0]."));
  EXPECT_THAT(answer.err, Not(HasSubstr("stream.caches[10].")));
}

TEST_F(ImportModesTest, MergeKeepsWhatCannotBeRead) {
  change("mpp_cfg.xml", "Port=\"9001\"", "Port=\"x\"");
  const std::string former = files();
  const ToolRun answer = merge(R"("live": {"srt": [{"id": 0, "latency": 200}]})");
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.err, HasSubstr("it cannot be merged with, and '--mode replace' deletes it"));
  EXPECT_EQ(files(), former);
}

TEST_F(ImportModesTest, ReplaceIsWhatAnImportDoesWithoutAMode) {
  EXPECT_EQ(
      import(R"("live": {"rtsp": [{"name": "ch9", "channels": [{"id": 0, "name": "video"}]}]})")
          .err,
      "camcfg: import: note: deletes 9 entries of live.rtsp\n");
  EXPECT_EQ(exported("live.rtsp").dump(),
            R"([{"name":"ch9","channels":[{"id":0,"name":"video"}]}])");
}

TEST_F(ImportModesTest, DryRunSaysHowManyEntriesItWouldDelete) {
  const std::string former = files();
  EXPECT_EQ(import(R"("live": {"rtsp": []})", {"--dry-run"}).err,
            "camcfg: import: note: would delete 9 entries of live.rtsp\n");
  EXPECT_EQ(files(), former);
}

TEST_F(ImportModesTest, NewNameOfAnEntryDeletesNone) {
  std::string document = run({"export", "live.rtsp"}).out;
  EXPECT_EQ(importText(with(document, "\"ch2/main\"", "\"stage\"")).err, "");
}

class ImportAtATerminalTest : public ImportModesTest {
 protected:
  ImportAtATerminalTest() {
    device.write("/document.json", R"({"version": 1, "live": {"rtsp": []}})");
  }
  int import(std::vector<std::string> options) {
    options.insert(options.begin(),
                   {"--root", device.hostPath(), "import", device.hostPath() + "/document.json"});
    Terminal terminal([&] { becomeCamcfg(options); });
    shown = terminal.readToEnd();
    return terminal.status();
  }

  std::string shown;
};

TEST_F(ImportAtATerminalTest, DeletionsAreAskedFor) {
  const std::string former = files();
  for (const char* mode : {"replace", "override"}) {
    EXPECT_EQ(import({"--mode", mode}), 2);
    EXPECT_THAT(shown, HasSubstr("this deletes 9 entries of live.rtsp, which the document does not "
                                 "have; '--dry-run' shows them, '--yes' does it"));
  }
  EXPECT_EQ(files(), former);
}

TEST_F(ImportAtATerminalTest, RehearsalNeedsNoYes) {
  EXPECT_EQ(import({"--dry-run"}), 0);
}

TEST_F(ImportAtATerminalTest, YesDeletes) {
  EXPECT_EQ(import({"--yes"}), 0);
  EXPECT_EQ(exported("live.rtsp").size(), 0U);
}

TEST_F(ImportModesTest, OverridePutsBackWhatIsNotNamed) {
  const std::string factory = everything();
  ASSERT_EQ(run({"set", "System/WebHttp=8000", "System/Rtsp=8554"}).status, 0);
  ASSERT_EQ(run({"live", "rtsp", "delete", "ch2/main"}).status, 0);
  ASSERT_EQ(run({"live", "ndi", "set", "0", "groupName=studio"}).status, 0);
  const ToolRun answer =
      import(R"("parameters": {"System": {"Rtsp": 8555}})", {"--json", "--mode", "override"});
  EXPECT_THAT(placesIn(answer),
              UnorderedElementsAre("live.rtsp[ch2/main]", "live.ndi[0].groupName",
                                   "parameters.System.Rtsp", "parameters.System.WebHttp"));
  EXPECT_EQ(everything(), with(factory, "\"Rtsp\": 554", "\"Rtsp\": 8555"));
}

TEST_F(ImportModesTest, OverrideLeavesTheNetworkUnlessItIsNamed) {
  ASSERT_EQ(run({"network", "set", "Lan0", "mtu=1400", "address=192.0.2.7/24", "gateway=192.0.2.1"})
                .status,
            0);
  const Json before = exported("network");
  EXPECT_EQ(override(R"("live": {"rtsp": []})").status, 0);
  EXPECT_EQ(exported("network"), before);
  EXPECT_EQ(override(R"("network": {"cards": {"Lan0": {"mtu": 1300}}})").status, 0);
  Json expected = before;
  expected["cards"]["Lan0"]["mtu"] = 1300;
  EXPECT_EQ(exported("network"), expected);
}

TEST_F(ImportModesTest, OverrideWithoutFactoryValuesIsRefused) {
  device.remove("/app/resource/defcfg/mpp_cfg.xml");
  const std::string former = files();
  const ToolRun answer = override(R"("parameters": {"System": {"Rtsp": 8554}})");
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.err, HasSubstr("stream.sources has no factory values: "));
  EXPECT_EQ(files(), former);
}

class ImportAnswerTest : public ImportModesTest {
 protected:
  /// Members of the answer, of which there are more if something was written.
  std::string merge(int port, const std::vector<std::string>& options = {}) {
    std::vector<std::string> words = {"--json", "--mode", "merge"};
    words.insert(words.end(), options.begin(), options.end());
    const std::string entry = R"({"id": 1, "port": )" + std::to_string(port) + "}";
    answer = jsonIn(import("\"live\": {\"srt\": [" + entry + "]}", words).out);
    return Json(answer.names()).dump();
  }

  Json answer;
};

constexpr char kShape[] = R"(["changed","mode","dryRun","changes","faults","findings"])";

TEST_F(ImportAnswerTest, RehearsalHasWhatTheChangeHas) {
  EXPECT_EQ(merge(9555, {"--dry-run"}), kShape);
  const Json drift = answer;
  EXPECT_EQ(drift["changed"], true);
  EXPECT_EQ(merge(9555), with(kShape, "]", R"(,"written","notWritten"])"));
  EXPECT_EQ(answer["changed"], true);
  EXPECT_EQ(answer["changes"], drift["changes"]);
}

TEST_F(ImportAnswerTest, NothingIsChangedTheSecondTime) {
  merge(9555);
  merge(9555);
  EXPECT_EQ(answer["changed"], false);
  EXPECT_EQ(answer["mode"], "merge");
}

TEST_F(ImportAnswerTest, FaultsComeInTheSameShape) {
  EXPECT_EQ(merge(0), kShape);
  EXPECT_EQ(answer["changed"], false);
  EXPECT_EQ(answer["faults"].size(), 1U);
}

TEST_F(ImportModesTest, ChangeThatLintRefusesHasItsFindings) {
  const ToolRun answer = import(R"("stream": {"sources": [{"id": 0, "absent": true}]})",
                                {"--json", "--mode", "merge"});
  EXPECT_EQ(answer.status, 1);
  EXPECT_EQ(jsonIn(answer.out)["changed"], false);
  EXPECT_FALSE(jsonIn(answer.out)["findings"].empty()) << answer.out << answer.err;
}

TEST_F(ImportModesTest, SecretsAreMaskedInBothRuns) {
  for (const char* option : {"--dry-run", "--force"}) {
    const ToolRun answer = import(R"("live": {"srt": [{"id": 1, "password": "a new phrase"}]})",
                                  {"--json", "--mode", "merge", option});
    EXPECT_THAT(answer.out, HasSubstr("\"after\": \"********\""));
    EXPECT_THAT(answer.out + answer.err, Not(HasSubstr("a new phrase")));
    EXPECT_THAT(answer.out, Not(HasSubstr("change-me")));
  }
}

TEST_F(ImportModesTest, UnknownModeIsRefusedWithTheNearest) {
  EXPECT_EQ(import("\"presets\": []", {"--mode", "overide"}),
            (ToolRun{2, "",
                     "camcfg: import: --mode: 'overide' is none of merge, replace, override; did "
                     "you mean 'override'?\n"}));
}

TEST_F(ImportModesTest, SchemaOfAnEditorIsNoSetting) {
  EXPECT_EQ(importText(R"({"$schema": "device.schema.json", "version": 1})"),
            (ToolRun{0, "nothing differs from the device\n", ""}));
  EXPECT_EQ(importText(R"({"$schema": 7, "version": 1})"),
            refused("[\"$schema\"]: it must be a text, not 7"));
}

class ExportChangedTest : public ImportModesTest {
 protected:
  std::string changed() const { return run({"export", "--changed"}).out; }
  void changeSomeOfAll() const {
    for (const std::vector<std::string>& line :
         std::vector<std::vector<std::string>>{{"set", "System/Rtsp=8554"},
                                               {"live", "rtsp", "delete", "ch2/main"},
                                               {"live", "rtsp", "add", "ch9", "channels=0:video"},
                                               {"live", "srt", "set", "1", "port=9555"},
                                               {"preset", "rename", "2", "Choir"},
                                               {"network", "set", "Lan0", "mtu=1400"}})
      ASSERT_EQ(run(line).status, 0) << line[0] << line[1];
  }
};

TEST_F(ExportChangedTest, NewDeviceHasNothing) {
  EXPECT_EQ(changed(), "{\n  \"version\": 1\n}\n");
}

TEST_F(ExportChangedTest, ParametersAreThereOneByOne) {
  ASSERT_EQ(run({"set", "System/Rtsp=8554"}).status, 0);
  ASSERT_EQ(run({"network", "set", "Lan0", "mtu=1400"}).status, 0);
  EXPECT_EQ(jsonIn(changed()).dump(), R"({"version":1,"parameters":{"System":{"Rtsp":8554}},)"
                                      R"("network":{"cards":{"Lan0":{"mtu":1400}}}})");
}

TEST_F(ExportChangedTest, ListIsWholeAndNamesWhatItHasLost) {
  ASSERT_EQ(run({"preset", "delete", "1"}).status, 0);
  const Json document = jsonIn(changed());
  EXPECT_EQ(document.names(), (std::vector<std::string>{"version", "presets"}));
  EXPECT_EQ(document["presets"].size(), exported("presets").size() + 1);
  EXPECT_EQ(document["presets"].back().dump(), R"({"id":1,"absent":true})");
}

TEST_F(ExportChangedTest, MakesANewDeviceTheSameInEveryMode) {
  changeSomeOfAll();
  const std::string document = changed();
  const Json before = jsonIn(everything());
  for (const char* mode : {"merge", "replace", "override"}) {
    ASSERT_EQ(run({"reset", "--all", "--yes"}).status, 0);
    EXPECT_EQ(importText(document, {"--mode", mode}).status, 0);
    EXPECT_EQ(jsonIn(everything()), before) << mode;
    EXPECT_EQ(changed(), document) << mode;
  }
}

TEST_F(ExportChangedTest, OnlySectionsThatAreAskedFor) {
  changeSomeOfAll();
  EXPECT_EQ(jsonIn(run({"export", "--changed", "System", "stream"}).out).dump(),
            R"({"version":1,"parameters":{"System":{"Rtsp":8554}}})");
}

TEST_F(ExportChangedTest, SecretsAreLeftOutOnRequest) {
  changeSomeOfAll();
  EXPECT_THAT(changed(), HasSubstr("change-me-too"));
  EXPECT_THAT(run({"export", "--changed", "--no-secrets"}).out, Not(HasSubstr("change-me")));
}

TEST_F(ExportChangedTest, SectionWithoutFactoryValuesIsWhole) {
  device.remove("/app/resource/defcfg/preset_cfg.xml");
  const ToolRun answer = run({"export", "--changed"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(jsonIn(answer.out)["presets"], exported("presets"));
  EXPECT_THAT(answer.err, HasSubstr("note: presets is whole: "));
}

}  // namespace
}  // namespace camcfg::tests
