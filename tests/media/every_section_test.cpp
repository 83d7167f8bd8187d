#include <cctype>

#include "media/every_section.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EverySectionTest : public MediaTest, public testing::WithParamInterface<Section> {
 protected:
  EverySectionTest() : MediaTest(*GetParam().family, GetParam().name) {}

  static std::string sectionOf(const std::string& entries) {
    return std::string("<") + GetParam().name + ">" + entries + "</" + GetParam().name + ">";
  }

  std::string otherTop() const { return (&family() == &kStreams ? kServices : kStreams).top; }

  std::string error(const std::string& message) const { return family().error(message); }

  std::string notFound(const std::string& element) const {
    return error("<" + element + "> not found");
  }

  void expectLoadFailsToOpen(const std::string& printed) {
    const ListLoad load = GetParam().loadOver(3);
    EXPECT_EQ(load.outcome, (Outcome{family().failure, printed}));
    EXPECT_EQ(load.kept, GetParam().emptiedBeforeOpening ? 0u : 3u);
    EXPECT_EQ(state(), "closed, unlocked");
  }

  void expectDumpFailsToOpen(const std::string& printed) {
    EXPECT_EQ(GetParam().dumpNew(1), (Outcome{family().failure, printed}));
    EXPECT_EQ(state(), "closed, unlocked");
    EXPECT_FALSE(device.exists(kBackupCopy));
  }

  // Expects a load of so many records, which prints this and the news of success.
  void expectLoaded(std::size_t records, const std::string& printed) {
    const ListLoad load = GetParam().loadOver(3);
    EXPECT_EQ(load.outcome, (Outcome{0, printed + GetParam().loadSuccess()}));
    EXPECT_EQ(load.kept, records);
    EXPECT_EQ(state(), "closed, unlocked");
  }
};

TEST_P(EverySectionTest, MissingFileFailsTheLoad) {
  expectLoadFailsToOpen(error("Config File open failed"));
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n")));
}

TEST_P(EverySectionTest, MissingFileFailsTheDumpAndIsUnlockedOnceTooOften) {
  expectDumpFailsToOpen(error("Config File open failed") + lockWarning(kNotLocked));
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n"),
                          Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_FALSE(device.exists(kMainCopy));
}

TEST_P(EverySectionTest, BrokenFileFailsTheLoadAndTheDump) {
  const std::string broken = std::string("<") + family().top + ">" + sectionOf(GetParam().entry);
  device.write(kMainCopy, broken);
  expectLoadFailsToOpen(error("Config File open failed"));
  expectDumpFailsToOpen(error("Config File open failed") + lockWarning(kNotLocked));
  EXPECT_EQ(device.read(kMainCopy), broken);
}

TEST_P(EverySectionTest, FileWithoutTheFamilysElementFailsTheLoadAndTheDump) {
  const std::string file =
      "<" + otherTop() + ">" + sectionOf(GetParam().entry) + "</" + otherTop() + ">";
  device.write(kMainCopy, file);
  expectLoadFailsToOpen(notFound(family().top));
  expectDumpFailsToOpen(notFound(family().top));
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EverySectionTest, FileWithoutTheSectionFailsTheLoadAndTheDump) {
  const std::string file = std::string("<") + family().top + "><Other>" +
                           sectionOf(GetParam().entry) + "</Other></" + family().top + ">" +
                           sectionOf(GetParam().entry);
  device.write(kMainCopy, file);
  expectLoadFailsToOpen(notFound(GetParam().name));
  expectDumpFailsToOpen(notFound(GetParam().name));
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EverySectionTest, SectionNameInAnotherCaseIsNotFound) {
  std::string name = GetParam().name;
  char& last = name.back();
  last = static_cast<char>(std::islower(last) ? std::toupper(last) : std::tolower(last));
  giveSections("<" + name + ">" + GetParam().entry + "</" + name + ">");
  expectLoadFailsToOpen(notFound(GetParam().name));
  expectDumpFailsToOpen(notFound(GetParam().name));
}

TEST_P(EverySectionTest, SectionWithoutElementsLoadsAsAnEmptyList) {
  for (const char* contents : {"", " \n ", "text", "<!-- comment -->", "<![CDATA[<Channel/>]]>"}) {
    SCOPED_TRACE(contents);
    give(contents);
    expectLoaded(0, "");
  }
  giveSections(std::string("<") + GetParam().name + " Port='80'/>");
  expectLoaded(0, "");
}

TEST_P(EverySectionTest, LoadedEntriesReplaceWhatTheListHeld) {
  give(GetParam().entry);
  expectLoaded(1, GetParam().loaded);
  give(GetParam().entry + GetParam().entry);
  expectLoaded(2, GetParam().loaded + GetParam().loaded);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EverySectionTest, LoadingWritesNothing) {
  give(GetParam().entry);
  const std::string file = device.read(kMainCopy);
  GetParam().loadOver(0);
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_FALSE(device.exists(kBackupCopy));
}

TEST_P(EverySectionTest, CommentsAndTextBetweenTheEntriesArePassedOverInSilence) {
  give("a<!-- b -->" + GetParam().entry + "c<![CDATA[d]]>" + GetParam().entry + "<!-- e --> f");
  expectLoaded(2, GetParam().loaded + GetParam().loaded);
}

TEST_P(EverySectionTest, UnknownElementIsSkippedAsItsSectionSays) {
  const std::string entryName = GetParam().entry.substr(1, GetParam().entry.find(' ') - 1);
  const std::string longer = entryName + "s";
  const std::string shorter = entryName.substr(0, entryName.size() - 1);
  const std::string huge(1000, 'x');
  give("<Foo/>" + GetParam().entry + "<" + longer + " Id='1'>" + GetParam().entry + "</" + longer +
       "><" + shorter + "/><" + huge + "/>" + GetParam().entry);
  const Section& section = GetParam();
  expectLoaded(2, section.unknown("Foo") + section.loaded + section.unknown(longer) +
                      section.unknown(shorter) + section.unknown(huge) + section.loaded);
}

TEST_P(EverySectionTest, EntryNamesMatchInAnyCase) {
  for (const auto convert : {&toupper, &tolower}) {
    std::string entry = GetParam().entry;
    const std::string name = entry.substr(1, entry.find(' ') - 1);
    std::string inAnotherCase = name;
    for (char& letter : inAnotherCase) letter = static_cast<char>(convert(letter));
    for (std::size_t at = 0; (at = entry.find(name, at)) != std::string::npos; at += name.size()) {
      const bool isTag = entry[at - 1] == '<' || entry[at - 1] == '/';
      if (isTag) entry.replace(at, name.size(), inAnotherCase);
    }
    give(entry);
    expectLoaded(1, GetParam().loaded);
  }
}

TEST_P(EverySectionTest, AFaultStopsTheLoadAndKeepsTheRecordsBeforeIt) {
  const Section& section = GetParam();
  give(section.entry + section.entry + "<Foo/>" + section.faultyEntry + section.entry +
       section.faultyEntry + "<Bar/>");
  const ListLoad load = section.loadOver(3);
  EXPECT_EQ(load.outcome, (Outcome{family().failure, section.loaded + section.loaded +
                                                         section.unknown("Foo") + section.fault}));
  EXPECT_EQ(load.kept, 2u);
  EXPECT_EQ(state(), section.afterFault);
}

TEST_P(EverySectionTest, AFaultLeavesTheDocumentAsItsSectionSaysAndNoLockHeld) {
  give(GetParam().faultyEntry);
  EXPECT_EQ(GetParam().loadOver(3).kept, 0u);
  ASSERT_EQ(state(), GetParam().afterFault);
  if (family().handle != nullptr) {
    EXPECT_NE(family().handle->FirstChildElement(family().top), nullptr);
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EverySectionTest, AfterAFaultTheNextLoadReadsTheFileAgain) {
  give(GetParam().faultyEntry);
  GetParam().loadOver(0);
  give(GetParam().entry);
  expectLoaded(1, GetParam().loaded);
}

TEST_P(EverySectionTest, AfterAFaultADumpReadsTheFileAgain) {
  give(GetParam().faultyEntry);
  GetParam().loadOver(0);
  giveSections("<Later/>" + sectionOf(GetParam().faultyEntry));
  const std::string file = device.read(kMainCopy);
  EXPECT_EQ(GetParam().dumpNew(0), (Outcome{0, GetParam().dumpSuccess()}));
  const std::string rewritten = std::string("<") + family().top + ">\n    <Later/>\n    <" +
                                GetParam().name + "/>\n</" + family().top + ">\n";
  EXPECT_EQ(device.read(kMainCopy), GetParam().saves ? rewritten : file);
}

TEST_P(EverySectionTest, DumpingReportsSuccessAndEndsTheSession) {
  give(GetParam().entry);
  EXPECT_EQ(GetParam().dumpNew(1), (Outcome{0, GetParam().dumpSuccess()}));
  EXPECT_EQ(state(), GetParam().saves ? "closed, unlocked" : "closed, locked");
  EXPECT_EQ(device.exists(kBackupCopy), GetParam().saves);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EverySectionTest, DumpingRewritesTheWholeSectionAndNothingElse) {
  const std::string section = GetParam().name;
  const std::string top = family().top;
  const std::string before =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- kept -->\n"
      "<" +
      otherTop() +
      ">\n"
      "    <Source Id=\"1\">kept</Source>\n"
      "</" +
      otherTop() +
      ">\n"
      "\n"
      "<" +
      top +
      " Kept=\"yes\">\n"
      "    <!-- kept as well -->\n"
      "    <Other>\n"
      "        <Channel Id=\"1\" Name=\"a\"/>\n"
      "    </Other>\n"
      "    <" +
      section + " Kept=\"too\"";
  const std::string after = "    <" + section +
                            ">\n"
                            "        <!-- a second section of the name -->\n"
                            "    </" +
                            section +
                            ">\n"
                            "</" +
                            top +
                            ">\n"
                            "\n"
                            "<" +
                            top + "/>\n";
  const std::string file = before + ">dropped<!-- dropped --><Foo>dropped</Foo>" +
                           GetParam().entry + "<![CDATA[dropped]]></" + section + ">\n" + after;
  device.write(kMainCopy, file);
  device.write(kBackupCopy, "an older backup, longer than the file that follows it" + file + file);
  EXPECT_EQ(GetParam().dumpNew(0).result, 0);
  if (GetParam().saves) {
    EXPECT_EQ(device.read(kMainCopy), before + "/>\n" + after);
    EXPECT_EQ(device.read(kBackupCopy), before + "/>\n" + after);
  } else {
    EXPECT_EQ(device.read(kMainCopy), file);
  }
}

std::string sectionName(const testing::TestParamInfo<Section>& section) {
  return section.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, EverySectionTest,
                         testing::Values(sources(), caches(), websocket(), rtsp(), rtmp(), ndi(),
                                         srt()),
                         sectionName);
INSTANTIATE_TEST_SUITE_P(WithoutSize, EverySectionTest, testing::Values(cachesWithoutSize()),
                         sectionName);

}  // namespace
}  // namespace camcfg::tests
