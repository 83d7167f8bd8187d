#include "media/entry_writer.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/random_values.h"

namespace camcfg::tests {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

struct Entry {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<Entry> children;
};

void write(EntryWriter& writer, const std::vector<Entry>& entries) {
  for (const Entry& entry : entries) {
    writer.open(entry.name.c_str());
    for (const auto& [name, value] : entry.attributes) writer.setText(name.c_str(), value);
    write(writer, entry.children);
    writer.close();
  }
}

/// Few names, so that what is written is often there already.
std::vector<Entry> randomEntries(RandomValues& random, int depth = 2) {
  std::vector<Entry> entries;
  for (int count = random.number(0, 3); count > 0; --count) {
    Entry entry;
    entry.name = random.chance() ? "Channel" : "channel";
    for (const char* name : {"Id", "Name", "Type"})
      if (random.chance())
        entry.attributes.emplace_back(name, random.chance() ? "1" : random.text());
    if (entry.attributes.size() == 3 && random.chance())
      std::swap(entry.attributes[0], entry.attributes[1]);
    if (depth > 0) entry.children = randomEntries(random, depth - 1);
    entries.push_back(entry);
  }
  return entries;
}

std::string printed(const XMLDocument& document) {
  tinyxml2::XMLPrinter printer;
  document.Print(&printer);
  return printer.CStr();
}

/// Adds what no writer leaves: comments, texts, attributes of other names.
void addNoise(XMLElement& element, RandomValues& random) {
  for (XMLElement* child = element.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    addNoise(*child, random);
  if (random.number(0, 3) == 0) element.InsertNewComment("noise");
  if (random.number(0, 3) == 0) element.InsertFirstChild(element.GetDocument()->NewText("noise"));
}

/// What a section in a document holds after these entries were written into it.
std::string written(XMLDocument& document, const std::vector<Entry>& entries) {
  EntryWriter writer(*document.FirstChildElement("Top")->FirstChildElement("Section"));
  write(writer, entries);
  writer.end();
  return printed(document);
}

constexpr char kEmpty[] = R"(<Top><Before/><Section a="b"/><After><Section c="d"/></After></Top>)";

TEST(EntryWriterTest, WhatWasThereBeforeMakesNoDifference) {
  RandomValues random;
  SCOPED_TRACE(random.trace());
  for (int round = 0; round < 3000 && !testing::Test::HasFailure(); ++round) {
    const std::vector<Entry> entries = randomEntries(random);
    XMLDocument empty;
    empty.Parse(kEmpty);
    const std::string expected = written(empty, entries);

    XMLDocument other;
    other.Parse(kEmpty);
    written(other, random.chance() ? entries : randomEntries(random));
    if (random.chance()) addNoise(*other.FirstChildElement()->FirstChildElement("Section"), random);
    XMLDocument parsed;
    ASSERT_EQ(parsed.Parse(printed(other).c_str()), tinyxml2::XML_SUCCESS);
    SCOPED_TRACE(printed(parsed));
    EXPECT_EQ(written(parsed, entries), expected);
  }
}

TEST(EntryWriterTest, WhatIsAsItShouldBeStays) {
  XMLDocument document;
  document.Parse(R"(<Top><Section><A Id="1"><B x="&lt;"/></A><A Id="2"/></Section></Top>)");
  const XMLElement* first = document.FirstChildElement()->FirstChildElement()->FirstChildElement();
  const char* value = first->FirstAttribute()->Value();
  const XMLElement* inner = first->FirstChildElement();
  const std::string result = written(
      document, {{"A", {{"Id", "1"}}, {{"B", {{"x", "<"}}, {}}}}, {"A", {{"Id", "3"}}, {}}});
  const XMLElement* now = document.FirstChildElement()->FirstChildElement()->FirstChildElement();
  EXPECT_EQ(now, first);
  EXPECT_EQ(now->FirstAttribute()->Value(), value);
  EXPECT_EQ(now->FirstChildElement(), inner);
  EXPECT_EQ(now->NextSiblingElement()->IntAttribute("Id"), 3);
}

TEST(EntryWriterTest, NumbersAndSwitchesAreWrittenAsTexts) {
  XMLDocument document;
  document.Parse("<Section/>");
  EntryWriter writer(*document.RootElement());
  writer.open("A");
  writer.setInt("low", -2147483647 - 1);
  writer.setInt("none", 0);
  writer.setSwitch("on", 7);
  writer.setSwitch("off", 0);
  writer.close();
  writer.end();
  EXPECT_EQ(printed(document),
            "<Section>\n    <A low=\"-2147483648\" none=\"0\" on=\"true\" off=\"false\"/>\n"
            "</Section>\n");
}

}  // namespace
}  // namespace camcfg::tests
