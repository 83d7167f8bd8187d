#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

class LanguageTest : public ToolTest {
 protected:
  LanguageTest() {
    device.write("/app/resource/language/English.xml",
                 R"(<Texts><Ok Val="OK"/><Cancel Val="Never mind"/><Empty/></Texts>)");
    device.write("/app/resource/language/German.xml",
                 "<Texts><Cancel Val=\"Zur\xc3\xbc"
                 "ck\"/></Texts>");
    device.write("/app/resource/language/README", "not a language");
  }
};

TEST_F(LanguageTest, OnlyTheTextIsPrinted) {
  EXPECT_EQ(run({"lang", "English", "Cancel"}), (ToolRun{0, "Never mind\n", ""}));
  EXPECT_EQ(run({"lang", "German", "Cancel"}), (ToolRun{0,
                                                        "Zur\xc3\xbc"
                                                        "ck\n",
                                                        ""}));
}

TEST_F(LanguageTest, TextInJsonComesWithItsKey) {
  EXPECT_EQ(run({"lang", "English", "Ok", "--json"}), (ToolRun{0,
                                                               "{\n"
                                                               "  \"language\": \"English\",\n"
                                                               "  \"key\": \"Ok\",\n"
                                                               "  \"text\": \"OK\"\n"
                                                               "}\n",
                                                               ""}));
}

TEST_F(LanguageTest, EntryWithoutTextIsAnEmptyLine) {
  EXPECT_EQ(run({"lang", "English", "Empty"}), (ToolRun{0, "\n", ""}));
}

TEST_F(LanguageTest, MissingKeyIsNotFound) {
  EXPECT_EQ(
      run({"lang", "English", "Cancle"}),
      (ToolRun{1, "", "camcfg: lang: English has no text 'Cancle'; did you mean 'Cancel'?\n"}));
  EXPECT_EQ(run({"lang", "German", "Ok"}),
            (ToolRun{1, "", "camcfg: lang: German has no text 'Ok'\n"}));
}

TEST_F(LanguageTest, MissingLanguageIsRefusedWithThoseThereAre) {
  for (const char* language : {"Klingon", "README", "", "../../../cfg0/business_param"})
    EXPECT_EQ(run({"lang", language, "Ok"}),
              (ToolRun{1, "",
                       std::string("camcfg: lang: there is no language '") + language +
                           "' (there are English, German)\n"}));
}

TEST_F(LanguageTest, NearestLanguageIsSuggested) {
  EXPECT_EQ(run({"lang", "Germn", "Ok"}),
            (ToolRun{1, "",
                     "camcfg: lang: there is no language 'Germn' (there are English, German); did "
                     "you mean 'German'?\n"}));
}

TEST_F(ToolTest, MissingLanguageIsRefusedWhereThereIsNone) {
  EXPECT_EQ(run({"lang", "English", "Ok"}),
            (ToolRun{1, "", "camcfg: lang: there is no language 'English'\n"}));
}

TEST_F(ToolTest, UnusableLanguageFileIsNamed) {
  device.write("/app/resource/language/Bad.xml", "<Texts>");
  device.write("/app/resource/language/Bare.xml", "<!-- nothing -->");
  device.makeDirectory("/app/resource/language/Folder.xml");
  EXPECT_EQ(
      run({"lang", "Bad", "Ok"}),
      (ToolRun{3, "", "camcfg: lang: /app/resource/language/Bad.xml is not well-formed XML\n"}));
  EXPECT_EQ(run({"lang", "Bare", "Ok"}),
            (ToolRun{3, "", "camcfg: lang: /app/resource/language/Bare.xml holds no element\n"}));
  EXPECT_EQ(run({"lang", "Folder", "Ok"}),
            (ToolRun{3, "", "camcfg: lang: /app/resource/language/Folder.xml is a directory\n"}));
}

TEST_F(ToolTest, TextLongerThanTheLibrarysBufferIsCutToIt) {
  device.write("/app/resource/language/Long.xml",
               "<T><Ok Val=\"" + std::string(2000, 'x') + "\"/></T>");
  EXPECT_EQ(run({"lang", "Long", "Ok"}), (ToolRun{0, std::string(1023, 'x') + "\n", ""}));
}

}  // namespace
}  // namespace camcfg::tests
