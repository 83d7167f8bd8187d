#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <memory>
#include <thread>

#include "support/device_test.h"
#include "support/expected_leaks.h"
#include "support/without_override.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using Document = std::unique_ptr<XMLDocument>;

constexpr char kDocumentPath[] = "/cfg0/x.xml";

tagBU_BOOL flag(int value) {
  return static_cast<tagBU_BOOL>(value);
}

Document openPath(const std::string& path, int readOnly) {
  return Document(CFG_GetDocByFileName(text(path.c_str()), flag(readOnly)));
}

auto loadFailure(const std::string& path) {
  return FieldsAre(3, "[CFG_GetDocByFileName:324] ", "Load file " + path + " fail\n");
}

class DocumentTest : public DeviceTest {};

struct BadFile {
  const char* name;
  std::string contents;
};

void PrintTo(const BadFile& file, std::ostream* out) {
  *out << file.name;
}

class FileThatDoesNotParse : public DocumentTest,
                             public testing::WithParamInterface<std::tuple<BadFile, int>> {};

TEST_P(FileThatDoesNotParse, IsReportedAndLeftUnlockedInEitherMode) {
  const auto& [file, readOnly] = GetParam();
  device.write(kDocumentPath, file.contents);
  Document document;
  EXPECT_EQ(captureOutput([&, mode = readOnly] { document = openPath(kDocumentPath, mode); }), "");
  EXPECT_EQ(document, nullptr);
  EXPECT_THAT(log.records(), ElementsAre(loadFailure(kDocumentPath)));
  EXPECT_TRUE(isUnlocked(kDocumentPath));
  EXPECT_EQ(device.read(kDocumentPath), file.contents);
}

INSTANTIATE_TEST_SUITE_P(
    Files, FileThatDoesNotParse,
    testing::Combine(testing::Values(BadFile{"Empty", ""}, BadFile{"OnlyWhiteSpace", " \n\t\n"},
                                     BadFile{"NotXml", "port = 554\n"},
                                     BadFile{"Binary", std::string("\0\1\2\xff\0<A/>", 9)},
                                     BadFile{"CutShort", "<System>\n    <Rtsp Cur=\"55"},
                                     BadFile{"Unclosed", "<System><Rtsp/>"},
                                     BadFile{"WronglyNested", "<A><B></A></B>"},
                                     BadFile{"BareAttribute", "<A Cur=5/>"},
                                     BadFile{"TextBehindTheEnd", "<A/>\nmore"}),
                     testing::Values(1, 0)),
    [](const auto& test) {
      return std::string(std::get<0>(test.param).name) +
             (std::get<1>(test.param) == 1 ? "Reading" : "Writing");
    });

class ReadOnlyFlag : public DocumentTest, public testing::WithParamInterface<int> {};

TEST_P(ReadOnlyFlag, ReleasesTheLockAtOnceWhenItIsOneAndKeepsItOtherwise) {
  device.write(kDocumentPath, "<A/>");
  const Document document = openPath(kDocumentPath, GetParam());
  ASSERT_NE(document, nullptr);
  EXPECT_STREQ(document->FirstChildElement()->Name(), "A");
  EXPECT_EQ(isUnlocked(kDocumentPath), GetParam() == 1);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(ReadOnlyFlag, MissingFileIsReportedAndLeftUnlocked) {
  Document document;
  EXPECT_EQ(captureOutput([&] { document = openPath("/cfg0/none.xml", GetParam()); }), "");
  EXPECT_EQ(document, nullptr);
  EXPECT_THAT(log.records(), ElementsAre(loadFailure("/cfg0/none.xml")));
  EXPECT_TRUE(isUnlocked("/cfg0/none.xml"));
}

INSTANTIATE_TEST_SUITE_P(Values, ReadOnlyFlag,
                         testing::Values(1, 0, 2, -1, 0x101, INT_MIN, INT_MAX));

TEST_F(DocumentTest, WhatIsNoReadableFileIsReportedLikeAMissingOne) {
  device.makeDirectory("/cfg0/directory.xml");
  device.write("/cfg0/secret.xml", "<A/>");
  chmod("/cfg0/secret.xml", 0);
  ASSERT_EQ(symlink("nowhere", "/cfg0/dangling.xml"), 0);
  const WithoutOverride withoutOverride;
  for (const char* path : {"/cfg0/directory.xml", "/cfg0/secret.xml", "/cfg0/dangling.xml",
                           "/nowhere/x.xml", "/cfg0/secret.xml/x.xml", "/cfg0/", ""}) {
    SCOPED_TRACE(path);
    log.clear();
    EXPECT_EQ(openPath(path, 1), nullptr);
    EXPECT_EQ(openPath(path, 0), nullptr);
    EXPECT_THAT(log.records(), ElementsAre(loadFailure(path), loadFailure(path)));
    EXPECT_TRUE(isUnlocked(path));
  }
}

TEST_F(DocumentTest, NullPathIsReportedLikeAMissingFile) {
  const std::size_t records = g_mapFileLock.size();
  EXPECT_EQ(CFG_GetDocByFileName(nullptr, BU_TRUE), nullptr);
  EXPECT_EQ(CFG_GetDocByFileName(nullptr, BU_FALSE), nullptr);
  EXPECT_THAT(log.records(), ElementsAre(loadFailure("(null)"), loadFailure("(null)")));
  EXPECT_EQ(g_mapFileLock.size(), records);
}

TEST_F(DocumentTest, PipeInPlaceOfTheFileIsReportedLikeAMissingOneWithoutAWait) {
  ASSERT_EQ(mkfifo(kDocumentPath, 0666), 0);
  EXPECT_EQ(CFG_GetDocByFileName(text(kDocumentPath), BU_TRUE), nullptr);
  EXPECT_EQ(CFG_GetDocByFileName(text(kDocumentPath), BU_FALSE), nullptr);
  EXPECT_THAT(log.records(), ElementsAre(loadFailure(kDocumentPath), loadFailure(kDocumentPath)));
  EXPECT_TRUE(isUnlocked(kDocumentPath));
}

TEST_F(DocumentTest, FileWithoutElementsOpens) {
  for (const char* contents :
       {"<!-- nothing set -->", "<?xml version=\"1.0\"?>\n", "\xef\xbb\xbf<!--b-->"}) {
    device.write(kDocumentPath, contents);
    const Document document = openPath(kDocumentPath, 1);
    ASSERT_NE(document, nullptr) << contents;
    EXPECT_EQ(document->FirstChildElement(), nullptr) << contents;
  }
}

TEST_F(DocumentTest, FileMayHaveSeveralTopLevelElements) {
  device.write(kDocumentPath, "<System/>\n<NetWork/>\n");
  const Document document = openPath(kDocumentPath, 1);
  ASSERT_NE(document, nullptr);
  EXPECT_STREQ(document->FirstChildElement()->NextSiblingElement()->Name(), "NetWork");
}

TEST_F(DocumentTest, EntitiesAreProcessedAndWhiteSpaceIsPreserved) {
  device.write(kDocumentPath, "<A Cur=\"&lt;a&amp;b&gt; &#65;\">  two\n  lines  </A>");
  const Document document = openPath(kDocumentPath, 1);
  ASSERT_NE(document, nullptr);
  EXPECT_TRUE(document->ProcessEntities());
  EXPECT_EQ(document->WhitespaceMode(), tinyxml2::PRESERVE_WHITESPACE);
  EXPECT_STREQ(document->FirstChildElement()->Attribute("Cur"), "<a&b> A");
  EXPECT_STREQ(document->FirstChildElement()->GetText(), "  two\n  lines  ");
}

TEST_F(DocumentTest, EveryReaderOwnsADocumentOfItsOwn) {
  device.write(kDocumentPath, "<A Cur=\"1\"/>");
  Document first = openPath(kDocumentPath, 1);
  const Document second = openPath(kDocumentPath, 1);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  first->FirstChildElement()->SetAttribute("Cur", 2);
  first.reset();
  EXPECT_EQ(second->FirstChildElement()->IntAttribute("Cur"), 1);
  EXPECT_EQ(device.read(kDocumentPath), "<A Cur=\"1\"/>");
}

TEST_F(DocumentTest, PathIsLoadedAndLockedAsItIs) {
  device.write("/x.xml", "<WorkingDirectory/>");
  device.write("/cfg0/x.xml", "<Main/>");
  const Document relative = openPath("x.xml", 0);
  ASSERT_NE(relative, nullptr);
  EXPECT_STREQ(relative->FirstChildElement()->Name(), "WorkingDirectory");
  const Document doubled = openPath("/cfg0//x.xml", 0);
  ASSERT_NE(doubled, nullptr);
  EXPECT_STREQ(doubled->FirstChildElement()->Name(), "Main");
  EXPECT_FALSE(isUnlocked("x.xml"));
  EXPECT_FALSE(isUnlocked("/cfg0//x.xml"));
  EXPECT_EQ(g_mapFileLock.count("/cfg0/x.xml"), 0u);
}

TEST_F(DocumentTest, LongPathIsOpenedWhole) {
  for (const std::size_t length : {127u, 128u, 200u}) {
    const std::string path = "/cfg0/" + std::string(length - 6, 'n');
    device.write(path, "<Whole/>");
    EXPECT_NE(openPath(path, 1), nullptr) << length;
    EXPECT_TRUE(isUnlocked(path)) << length;
  }
  const std::string missing = "/cfg0/" + std::string(194, 'm');
  EXPECT_EQ(openPath(missing, 1), nullptr);
  EXPECT_THAT(log.records(), ElementsAre(loadFailure(missing)));
}

// Waits 10 seconds.
TEST_F(DocumentTest, SecondOpenForWritingByTheSameThreadFailsAfterTenSeconds) {
  device.write(kDocumentPath, "<A/>");
  const Document first = openPath(kDocumentPath, 0);
  const ExpectedLeaks abandoned;
  Document second;
  EXPECT_EQ(captureOutput([&] { second = openPath(kDocumentPath, 0); }),
            "[Warn][Cfg] Lock /cfg0/x.xml timeout, a deadlock may exist!\n");
  EXPECT_EQ(second, nullptr);
  EXPECT_THAT(log.records(),
              ElementsAre(FieldsAre(4, "[cfgLockFile:88] ",
                                    "Lock /cfg0/x.xml timeout, a deadlock may exist!")));
}

// Every document has two values that the writer keeps equal.
TEST_F(DocumentTest, ThreadsThatReadNeverSeeAFileHalfWritten) {
  const std::string padding(20000, 'p');
  device.write(kDocumentPath, "<A First=\"0\" Text=\"" + padding + "\" Last=\"0\"/>");
  std::atomic<bool> done{false};
  std::atomic<int> torn{0};
  std::atomic<int> seen{0};
  const auto read = [&] {
    while (!done) {
      const Document document = openPath(kDocumentPath, 1);
      const XMLElement* a = document == nullptr ? nullptr : document->FirstChildElement();
      if (a == nullptr || a->IntAttribute("First", -1) != a->IntAttribute("Last", -2)) ++torn;
      ++seen;
    }
  };
  std::thread first(read);
  std::thread second(read);
  for (int i = 1; i <= 20; ++i) {
    const Document document = openPath(kDocumentPath, 0);
    document->FirstChildElement()->SetAttribute("First", i);
    document->FirstChildElement()->SetAttribute("Last", i);
    CFG_SaveFile(document.get(), text(kDocumentPath), BU_TRUE);
  }
  done = true;
  first.join();
  second.join();
  EXPECT_EQ(torn, 0);
  EXPECT_GT(seen, 0);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DocumentTest, ThreadsThatWriteOneFileLoseNoUpdate) {
  constexpr int kThreads = 6;
  constexpr int kRounds = 8;
  device.write(kDocumentPath, "<Count Cur=\"0\"/>");
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([] {
      for (int round = 0; round < kRounds; ++round) {
        const Document document = openPath(kDocumentPath, 0);
        XMLElement* count = document->FirstChildElement();
        count->SetAttribute("Cur", count->IntAttribute("Cur") + 1);
        // Every other round gives up first, which must not count.
        if (round % 2 == 0) {
          CFG_UnlockFile(text(kDocumentPath));
          continue;
        }
        CFG_SaveFile(document.get(), text(kDocumentPath), BU_TRUE);
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(device.read(kDocumentPath),
            "<Count Cur=\"" + std::to_string(kThreads * kRounds / 2) + "\"/>\n");
  EXPECT_EQ(device.read("/cfg1/x.xml"), device.read(kDocumentPath));
  EXPECT_TRUE(isUnlocked(kDocumentPath));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DocumentTest, ThreadsWithTwoFilesNeverWaitForEachOther) {
  device.write(kDocumentPath, "<A/>");
  device.write("/cfg0/y.xml", "<B/>");
  const Document held = openPath(kDocumentPath, 0);
  std::thread([] {
    const Document other = openPath("/cfg0/y.xml", 0);
    CFG_SaveFile(other.get(), text("/cfg0/y.xml"), BU_TRUE);
  }).join();
  EXPECT_THAT(log.records(), IsEmpty());  // it would report a lock that it waited for
  EXPECT_EQ(device.read("/cfg1/y.xml"), "<B/>\n");
  EXPECT_FALSE(isUnlocked(kDocumentPath));
  CFG_UnlockFile(text(kDocumentPath));
}

}  // namespace
}  // namespace camcfg::tests
