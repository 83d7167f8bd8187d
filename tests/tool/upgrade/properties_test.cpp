#include <camcfg/types.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "base/elements.h"
#include "base/host.h"
#include "base/plain_text.h"
#include "camcfg/testkit/device_root.h"
#include "document/document.h"
#include "document/keyed.h"
#include "lint/lint.h"
#include "support/quick_saves.h"
#include "support/random_cases.h"
#include "support/run_camcfg.h"
#include "tool/upgrade/triples.h"
#include "upgrade/file_merge.h"

namespace camcfg::tests {
namespace {

using tinyxml2::XMLElement;
using tool::upgrade::MergedFile;

constexpr unsigned kSeed = 20261122;

MergedFile mergedFile(const char* path, const std::string& base, const std::string& factory,
                      const std::string& user) {
  return tool::upgrade::mergeFile(path, {base, factory, user}, {}, false);
}

std::string merged(const char* path, const Triple& triple) {
  return mergedFile(path, triple.base, triple.factory, triple.user).after;
}

using Settings = std::multiset<std::string>;

void addSettings(const std::string& place, const tool::Json& value, Settings& all) {
  const char* key = tool::document::keyOf({&value});
  if (value.is_object())
    for (const auto& [name, member] : value.items())
      addSettings(tool::memberPlace(place, name), member, all);
  else if (key != nullptr && *key != '\0')
    for (const tool::Json& record : value)
      addSettings(tool::document::placeOf(place, record.at(key)), record, all);
  else if (key == nullptr && value.is_array())
    for (const tool::Json& each : value) all.insert(place + " has " + each.dump());
  else
    all.insert(place + " = " + value.dump());
}

void addAttributes(const XMLElement& element, const std::string& above, Settings& all) {
  const std::string own = above + "/" + element.Name();
  all.insert(own);
  for (const tinyxml2::XMLAttribute* each = element.FirstAttribute(); each != nullptr;
       each = each->Next())
    all.insert(own + "@" + each->Name() + "=" + each->Value());
  for (const XMLElement* child : tool::childrenOf(element)) addAttributes(*child, own, all);
}

/// What a file has, in no order: as the library reads it, or all attributes of parameters.
Settings settingsOf(const char* path, const std::string& text) {
  Settings all;
  if (path == std::string(CFG_FILE_BUSINESS)) {
    const tool::device::Document document = tool::device::parsed(text);
    for (const XMLElement* top : tool::childrenOf(*document)) addAttributes(*top, "", all);
    return all;
  }
  for (const auto& [name, section] : tool::document::loadFrom({{path, text}})) {
    EXPECT_EQ(section.fault, "");
    addSettings(name, section.value, all);
  }
  return all;
}

std::set<std::string> errorsOf(const char* path, const std::string& text) {
  std::set<std::string> errors;
  for (const tool::lint::Finding& finding :
       tool::lint::lint(tool::lint::sourcesOf({tool::HostFile{path, text, ""}})))
    if (finding.rule->severity == tool::lint::Severity::Error)
      errors.insert(finding.text.substr(0, finding.text.find(" at line ")) + finding.rule->id);
  return errors;
}

bool hasLimited(const MergedFile& file) {
  return std::any_of(file.entries.begin(), file.entries.end(),
                     [](const auto& entry) { return entry.what == tool::upgrade::kLimit; });
}

/// That nothing that all three agree on changes.
void expectNothingLost(const char* path, const Triple& triple, const std::string& result) {
  const Settings now = settingsOf(path, result);
  const Settings factory = settingsOf(path, triple.factory);
  const Settings user = settingsOf(path, triple.user);
  for (const std::string& setting : settingsOf(path, triple.base))
    EXPECT_TRUE(factory.count(setting) * user.count(setting) == 0 || now.count(setting) != 0)
        << setting;
}

/// That there is no error that neither the new set nor the device has.
void expectNoNewErrors(const char* path, const Triple& triple, const std::string& result) {
  const std::set<std::string> inFactory = errorsOf(path, triple.factory);
  const std::set<std::string> onDevice = errorsOf(path, triple.user);
  for (const std::string& error : errorsOf(path, result))
    EXPECT_TRUE(inFactory.count(error) + onDevice.count(error) != 0) << error;
}

/// That a merge of a triple has the properties that every merge has.
void expectProperties(const char* path, const Triple& triple) {
  const MergedFile file = mergedFile(path, triple.base, triple.factory, triple.user);
  const std::string& result = file.after;
  const auto settings = [&](const std::string& text) { return settingsOf(path, text); };
  EXPECT_EQ(settings(merged(path, {triple.base, triple.factory, triple.base})),
            settings(triple.factory));
  const std::string commented = "<!-- nothing new -->\n" + triple.base;
  EXPECT_EQ(settings(merged(path, {triple.base, commented, triple.user})), settings(triple.user));
  EXPECT_EQ(merged(path, {triple.base, triple.base, triple.user}), triple.user);
  EXPECT_EQ(merged(path, {triple.factory, triple.factory, result}), result);
  // The nearest permitted value may happen to be the old factory value.
  if (!hasLimited(file)) {
    EXPECT_EQ(merged(path, {triple.base, triple.factory, result}), result);
  }

  expectNothingLost(path, triple, result);
  expectNoNewErrors(path, triple, result);
}

class UpgradePropertiesTest : public testing::Test, QuickSaves {
 protected:
  UpgradePropertiesTest() { tool::rememberTemporaries(); }

  void expectAll(const char* path, Triple (Triples::*make)(), int count) {
    Triples triples(kSeed);
    for (int i = 0; i < casesOf(count) && !HasFailure(); ++i) {
      const Triple triple = (triples.*make)();
      SCOPED_TRACE("triple " + std::to_string(i) + " of seed " + std::to_string(kSeed) + "\n" +
                   triple.base + triple.factory + triple.user + merged(path, triple));
      expectProperties(path, triple);
    }
  }
};

TEST_F(UpgradePropertiesTest, HoldForParameters) {
  expectAll(CFG_FILE_BUSINESS, &Triples::parameters, 3000);
}

TEST_F(UpgradePropertiesTest, HoldForPresets) {
  expectAll(CFG_FILE_PRESET, &Triples::presets, 150);
}

TEST_F(UpgradePropertiesTest, HoldForMedia) {
  expectAll(CFG_FILE_MPP, &Triples::media, 150);
}

std::string onePerLine(const std::vector<int>& values) {
  return tool::joined(values, "\n") + "\n";
}

std::vector<int> valuesIn(const std::string& text) {
  std::vector<int> values;
  const tool::device::Document document = tool::device::parsed(text);
  for (const XMLElement* each : tool::childrenOf(*document->FirstChildElement()))
    values.push_back(each->IntAttribute("Cur"));
  return values;
}

// Wherever two changes are not next to each other, git merges lines without a conflict.
TEST_F(UpgradePropertiesTest, AgreesWithAMergeOfLines) {
  if (runCommand({"git", "--version"}).status != 0) GTEST_SKIP() << "git is not installed";
  const testkit::DeviceRoot folder{testkit::DeviceRoot::StayOut};
  const auto path = [&](const char* name) { return folder.hostPath() + name; };
  Triples triples(kSeed);
  int compared = 0;
  for (int i = 0; i < casesOf(3000) && !HasFailure(); ++i) {
    const Triples::Values values = triples.values(12, 1 + triples.below(3));
    folder.write("/base", onePerLine(values.base));
    folder.write("/factory", onePerLine(values.factory));
    folder.write("/user", onePerLine(values.user));
    const ToolRun git =
        runCommand({"git", "merge-file", "-p", path("/user"), path("/base"), path("/factory")});
    if (git.status != 0) continue;
    ++compared;
    const std::string result = merged(
        CFG_FILE_BUSINESS,
        {parametersOf(values.base), parametersOf(values.factory), parametersOf(values.user)});
    EXPECT_EQ(onePerLine(valuesIn(result)), git.out) << i;
  }
  EXPECT_GT(compared, casesOf(3000) / 3);
}

}  // namespace
}  // namespace camcfg::tests
