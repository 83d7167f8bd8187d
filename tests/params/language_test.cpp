#include "params/params_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;

constexpr char kThai[] = "/app/resource/language/thai.xml";

class LanguageTest : public ParamsTest {
 protected:
  void writeThai(const std::string& entries) {
    device.write(kThai, "<Language>" + entries + "</Language>");
  }
  Outcome get(const char* language, const char* key) {
    return observe([=] { return CFG_LANG_GetString(text(language), text(key), *out.get()); });
  }
  static auto cannotOpen(const std::string& path) {
    return FieldsAre(-1, "CFG_LANG_GetString acLangXml = " + path + " failed\n");
  }
  bool holds(const std::string& expected) {
    return out.isText(*out.get(), expected) && out.guardsIntact();
  }
  bool untouched() { return out.isPattern(*out.get()) && out.guardsIntact(); }

  Guarded<char[CFG_LANG_TEXT_SIZE]> out;
};

TEST_F(LanguageTest, TextOfTheKeyIsCopiedWithItsTerminator) {
  writeThai("<Ok Val='d&amp;d'/><Cancel Val='\xe0\xb8\x81'/>");
  EXPECT_THAT(get("thai", "Ok"), returnsSilently(0));
  EXPECT_TRUE(holds("d&d"));
  out = {};
  EXPECT_THAT(get("thai", "Cancel"), returnsSilently(0));
  EXPECT_TRUE(holds("\xe0\xb8\x81"));
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_TRUE(isUnlocked(kThai));
}

TEST_F(LanguageTest, KeyIsTheWholeNameOfAnEntryAndTheFirstWins) {
  writeThai(
      "<OkAll Val='longer'/><ok Val='small'/><Group><Ok Val='deep'/></Group>"
      "<Ok Val='first'/><Ok Val='second'/>");
  EXPECT_THAT(get("thai", "Ok"), returnsSilently(0));
  EXPECT_TRUE(holds("first"));
}

TEST_F(LanguageTest, KeyThatIsNotThereIsNoFailureAndLeavesTheFallback) {
  writeThai("<Ok Val='text'/>");
  for (const char* key : {"None", "O", "OkAll", "Language", ""})
    EXPECT_THAT(get("thai", key), returnsSilently(0)) << key;
  EXPECT_THAT(get("thai", nullptr), returnsSilently(0));
  writeThai("");
  EXPECT_THAT(get("thai", "Ok"), returnsSilently(0));
  EXPECT_TRUE(untouched());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LanguageTest, OnlyTheFirstTopLevelElementIsLookedInto) {
  device.write(kThai, "<First><A Val='a'/></First><Second><Ok Val='text'/></Second>");
  EXPECT_THAT(get("thai", "Ok"), returnsSilently(0));
  EXPECT_TRUE(untouched());
}

TEST_F(LanguageTest, EntryWithoutTextIsAnEmptyText) {
  writeThai("<Ok/><Cancel Val=''/>");
  EXPECT_THAT(get("thai", "Ok"), returnsSilently(0));
  EXPECT_TRUE(holds(""));
  out = {};
  EXPECT_THAT(get("thai", "Cancel"), returnsSilently(0));
  EXPECT_TRUE(holds(""));
}

TEST_F(LanguageTest, TextLongerThanTheBufferIsCutToFit) {
  for (const std::size_t length : {1022u, 1023u, 1024u, 5000u}) {
    writeThai("<Ok Val='" + std::string(length, 'x') + "'/>");
    out = {};
    EXPECT_THAT(get("thai", "Ok"), returnsSilently(0));
    EXPECT_TRUE(holds(std::string(std::min<std::size_t>(length, CFG_LANG_TEXT_SIZE - 1), 'x')))
        << length;
  }
}

TEST_F(LanguageTest, FileThatDoesNotOpenIsSaidWithItsPath) {
  device.write("/app/resource/language/empty.xml", "");
  device.write("/app/resource/language/broken.xml", "<Language><Ok Val='text'/>");
  device.makeDirectory("/app/resource/language/directory.xml");
  for (const std::string language : {"none", "empty", "broken", "directory", "", "%s%n"}) {
    const std::string path = "/app/resource/language/" + language + ".xml";
    log.clear();
    EXPECT_THAT(get(language.c_str(), "Ok"), cannotOpen(path));
    EXPECT_THAT(log.records(), ElementsAre(loadFailure(path)));
    EXPECT_TRUE(isUnlocked(path));
  }
  EXPECT_TRUE(untouched());
}

TEST_F(LanguageTest, FileWithoutElementsIsLogged) {
  device.write(kThai, "<!-- nothing -->");
  EXPECT_THAT(get("thai", "Ok"), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(rootFailure("CFG_LANG_GetString", kThai)));
  EXPECT_TRUE(isUnlocked(kThai));
  EXPECT_TRUE(untouched());
}

TEST_F(LanguageTest, PathIsCutTo127Characters) {
  const std::string directory = "/app/resource/language/";
  const std::string whole(127 - directory.size() - 4, 'l');
  device.write(directory + whole + ".xml", "<L><Ok Val='whole'/></L>");
  EXPECT_THAT(get(whole.c_str(), "Ok"), returnsSilently(0));
  EXPECT_TRUE(holds("whole"));

  out = {};
  const std::string cut = directory + std::string(104, 'l');
  EXPECT_THAT(get(std::string(104, 'l').c_str(), "Ok"), cannotOpen(cut));
  EXPECT_THAT(get(std::string(500, 'l').c_str(), "Ok"), cannotOpen(cut));
  EXPECT_TRUE(untouched());
  device.write(cut, "<L><Ok Val='cut'/></L>");
  EXPECT_THAT(get(std::string(500, 'l').c_str(), "Ok"), returnsSilently(0));
  EXPECT_TRUE(holds("cut"));
}

TEST_F(LanguageTest, LanguageMayReachOutOfItsDirectory) {
  device.write("/app/resource/other.xml", "<L><Ok Val='other'/></L>");
  EXPECT_THAT(get("../other", "Ok"), returnsSilently(0));
  EXPECT_TRUE(holds("other"));
}

TEST_F(LanguageTest, NullLanguageIsRefusedAndANullOutputIgnored) {
  writeThai("<Ok Val='text'/>");
  EXPECT_THAT(get(nullptr, "Ok"), returnsSilently(-1));
  EXPECT_TRUE(untouched());
  EXPECT_EQ(CFG_LANG_GetString(text("thai"), text("Ok"), nullptr), 0);
}

TEST_F(LanguageTest, LookupNeitherChangesTheFileNorTouchesTheParameters) {
  const std::string contents = "<Language>   <Ok Val='text'/></Language>";
  device.write(kThai, contents);
  get("thai", "Ok");
  EXPECT_EQ(device.read(kThai), contents);
  EXPECT_EQ(g_mapFileLock.count(CFG_FILE_BUSINESS), 0u);
}

}  // namespace
}  // namespace camcfg::tests
