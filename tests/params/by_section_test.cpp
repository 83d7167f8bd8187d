#include <climits>
#include <thread>

#include "params/params_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A buffer as callers hand it in, but with a pattern after it and in place of the zeroes.
class OutBuffer {
 public:
  char* get() { return bytes_.data(); }
  /// The buffer's first bytes, as many as the text and one more.
  std::string upTo(std::size_t length) const { return bytes_.substr(0, length + 1); }
  bool untouched() const { return bytes_ == std::string(kSize, '#'); }
  const std::string& all() const { return bytes_; }

 private:
  static constexpr std::size_t kSize = CFG_TXT_CUR_SIZE + 64;
  std::string bytes_ = std::string(kSize, '#');
};

class BySectionTest : public ParamsTest {
 protected:
  Outcome getText(const char* section, const char* name, char* out) {
    return observe([=] { return CFG_COM_GetTxtParam(text(section), text(name), out); });
  }
  Outcome getInt(const char* section, const char* name, int* out) {
    return observe([=] { return CFG_COM_GetIntParam(text(section), text(name), out); });
  }
  Outcome setText(const char* section, const char* name, const char* value) {
    return observe([=] { return CFG_COM_SetTxtParam(text(section), text(name), text(value)); });
  }
  Outcome setInt(const char* section, const char* name, int value) {
    return observe([=] { return CFG_COM_SetIntParam(text(section), text(name), value); });
  }
};

// --- reading texts ---

class GetTxtParamTest : public BySectionTest {
 protected:
  OutBuffer out;
};

TEST_F(GetTxtParamTest, CopiesTheCharactersWithoutATerminator) {
  write("<System><Language Cur='english'/></System>");
  EXPECT_THAT(getText("System", "Language", out.get()), returnsSilently(0));
  EXPECT_EQ(out.upTo(7), "english#");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamTest, LeavesTheTailOfAnOlderLongerText) {
  write("<System><Language Cur='thai'/></System>");
  char older[] = "portuguese";
  EXPECT_THAT(getText("System", "Language", older), returnsSilently(0));
  EXPECT_STREQ(older, "thaiuguese");
}

TEST_F(GetTxtParamTest, EmptyTextIsReadAsNothingWritten) {
  write("<System><Language Cur=''/></System>");
  EXPECT_THAT(getText("System", "Language", out.get()), returnsSilently(0));
  EXPECT_TRUE(out.untouched());
}

TEST_F(GetTxtParamTest, EntitiesAreReadAsWhatTheyStandFor) {
  write("<System><Language Cur='&lt;a&amp;b&quot;'/></System>");
  EXPECT_THAT(getText("System", "Language", out.get()), returnsSilently(0));
  EXPECT_EQ(out.upTo(5), "<a&b\"#");
}

TEST_F(GetTxtParamTest, TextLongerThanTheBufferIsCut) {
  for (const std::size_t length : {255u, 256u, 257u, 5000u}) {
    write("<System><Language Cur='" + std::string(length, 'x') + "'/></System>");
    OutBuffer longOut;
    EXPECT_THAT(getText("System", "Language", longOut.get()), returnsSilently(0));
    const std::size_t written = std::min<std::size_t>(length, CFG_TXT_CUR_SIZE);
    EXPECT_EQ(longOut.all(),
              std::string(written, 'x') + std::string(longOut.all().size() - written, '#'));
  }
}

TEST_F(GetTxtParamTest, SectionIsFoundByItsWholeNameAndTheParameterByItsBeginning) {
  write(
      "<SystemOther><Language Cur='wrong'/></SystemOther>"
      "<System><Nested><Language Cur='deep'/></Nested><LanguageLong Cur='right'/>"
      "<Language Cur='second'/></System>"
      "<System><Language Cur='later'/><Only Cur='there'/></System>");
  EXPECT_THAT(getText("System", "Language", out.get()), returnsSilently(0));
  EXPECT_EQ(out.upTo(5), "right#");
  for (const char* section : {"Sys", "system", "Nested", ""})
    EXPECT_THAT(getText(section, "Language", out.get()),
                failsSaying("CFG_COM_GetTxtParam", "failed"))
        << section;
  EXPECT_THAT(getText("System", "Only", out.get()), failsSaying("CFG_COM_GetTxtParam", "failed"))
      << "the first section of the name decides";
}

TEST_F(GetTxtParamTest, MissingSectionParameterOrValueIsSaidAndTheBufferLeftAlone) {
  write("<System><Language Def='english' cur='x'/></System><Empty/>");
  for (const auto& [section, name] :
       {std::pair("None", "Language"), std::pair("System", "None"), std::pair("System", "Language"),
        std::pair("Empty", ""), std::pair<const char*, const char*>(nullptr, "Language"),
        std::pair<const char*, const char*>("System", nullptr)})
    EXPECT_THAT(getText(section, name, out.get()), failsSaying("CFG_COM_GetTxtParam", "failed"));
  EXPECT_TRUE(out.untouched());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamTest, NullBufferIsRefused) {
  write("<System><Language Cur='english'/></System>");
  EXPECT_EQ(getText("System", "Language", nullptr).result, -1);
}

TEST_F(GetTxtParamTest, FileWithoutElementsIsLogged) {
  write("<!-- nothing -->");
  EXPECT_THAT(getText("System", "Language", out.get()), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(rootFailure("CFG_COM_GetTxtParam")));
  EXPECT_TRUE(out.untouched());
}

TEST_F(GetTxtParamTest, FileThatDoesNotOpenIsLoggedByTheStoreOnly) {
  EXPECT_THAT(getText("System", "Language", out.get()), returnsSilently(-1));
  write("not XML");
  EXPECT_THAT(getText("System", "Language", out.get()), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure(), loadFailure()));
  EXPECT_TRUE(out.untouched());
}

// --- reading integers ---

class GetIntParamTest : public BySectionTest {
 protected:
  int out = 0x5a5a5a5a;
};

TEST_F(GetIntParamTest, ReadsTheCurrentValue) {
  for (const auto& [value, expected] :
       {std::pair("554", 554), std::pair("0", 0), std::pair("-1", -1), std::pair("0x1F", 31),
        std::pair("2147483647", INT_MAX), std::pair("-2147483648", INT_MIN)}) {
    write(std::string("<System><Rtsp Cur='") + value + "' Min='1' Max='2'/></System>");
    EXPECT_THAT(getInt("System", "Rtsp", &out), returnsSilently(0));
    EXPECT_EQ(out, expected);
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetIntParamTest, SectionIsFoundByItsWholeNameAndTheParameterByItsBeginning) {
  write(
      "<SystemOther><Rtsp Cur='1'/></SystemOther><System><RtspOverHttp Cur='2'/><Rtsp Cur='3'/>"
      "</System>");
  EXPECT_THAT(getInt("System", "Rtsp", &out), returnsSilently(0));
  EXPECT_EQ(out, 2);
}

TEST_F(GetIntParamTest, AnythingMissingFailsSilentlyAndLeavesTheInteger) {
  write("<System><Rtsp Def='1'/></System>");
  EXPECT_THAT(getInt("None", "Rtsp", &out), returnsSilently(-1));
  EXPECT_THAT(getInt("System", "None", &out), returnsSilently(-1));
  EXPECT_THAT(getInt("System", "Rtsp", &out), returnsSilently(-1));
  EXPECT_THAT(getInt(nullptr, "Rtsp", &out), returnsSilently(-1));
  EXPECT_THAT(getInt("System", nullptr, &out), returnsSilently(-1));
  EXPECT_EQ(out, 0x5a5a5a5a);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetIntParamTest, ValueThatIsNoIntegerFailsSilentlyAndLeavesTheInteger) {
  for (const char* value : {"", " ", "port", "x554", "-"}) {
    write(std::string("<System><Rtsp Cur='") + value + "'/></System>");
    EXPECT_THAT(getInt("System", "Rtsp", &out), returnsSilently(-1)) << value;
    EXPECT_EQ(out, 0x5a5a5a5a) << value;
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetIntParamTest, NullIntegerIsRefused) {
  write("<System><Rtsp Cur='554'/></System>");
  EXPECT_THAT(getInt("System", "Rtsp", nullptr), returnsSilently(-1));
}

TEST_F(GetIntParamTest, FileWithoutElementsIsLogged) {
  write("<!-- nothing -->");
  EXPECT_THAT(getInt("System", "Rtsp", &out), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(rootFailure("CFG_COM_GetIntParam")));
}

TEST_F(GetIntParamTest, FileThatDoesNotOpenIsLoggedByTheStoreOnly) {
  EXPECT_THAT(getInt("System", "Rtsp", &out), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure()));
}

// --- setting texts ---

class SetTxtParamTest : public BySectionTest {
 protected:
  void writeLanguage(const std::string& attributes) {
    contents = "<System><Language   " + attributes + "/></System>";
    write(contents);
  }
  void expectSavedLanguage(const std::string& attributes) {
    expectSaved("<System>\n    <Language " + attributes + "/>\n</System>\n");
  }
  std::string contents;
};

TEST_F(SetTxtParamTest, TextOutOfTheOptionsIsSavedInBothCopies) {
  writeLanguage("Cur='english' OptTxt='english,german,thai' Def='english'");
  EXPECT_THAT(setText("System", "Language", "german"), returnsSilently(0));
  expectSavedLanguage("Cur=\"german\" OptTxt=\"english,german,thai\" Def=\"english\"");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetTxtParamTest, AnyFragmentOfTheOptionsIsAccepted) {
  for (const char* fragment : {"ger", "lish,ger", ",", "english,german,thai", "n", ""}) {
    writeLanguage("Cur='thai' OptTxt='english,german,thai'");
    EXPECT_THAT(setText("System", "Language", fragment), returnsSilently(0)) << fragment;
    expectSavedLanguage(std::string("Cur=\"") + fragment + "\" OptTxt=\"english,german,thai\"");
  }
}

TEST_F(SetTxtParamTest, EmptyTextIsAcceptedEvenWhereNoOptionIsGiven) {
  writeLanguage("Cur='thai' OptTxt=''");
  EXPECT_THAT(setText("System", "Language", ""), returnsSilently(0));
  expectSavedLanguage("Cur=\"\" OptTxt=\"\"");
}

TEST_F(SetTxtParamTest, TextThatIsNotInTheOptionsIsRefusedSilently) {
  writeLanguage("Cur='thai' OptTxt='english,german,thai'");
  for (const char* value : {"french", "German", "english,german,thai,", "english german", " "})
    EXPECT_THAT(setText("System", "Language", value), returnsSilently(-1)) << value;
  EXPECT_THAT(setText("System", "Language", nullptr), returnsSilently(-1));
  expectUntouched(contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetTxtParamTest, ParameterWithoutOptionsIsRefusedSilently) {
  writeLanguage("Cur='thai' Def='thai'");
  EXPECT_THAT(setText("System", "Language", "thai"), returnsSilently(-1));
  EXPECT_THAT(setText("System", "Language", ""), returnsSilently(-1));
  expectUntouched(contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetTxtParamTest, MissingValueIsCreated) {
  writeLanguage("OptTxt='english'");
  EXPECT_THAT(setText("System", "Language", "english"), returnsSilently(0));
  expectSavedLanguage("OptTxt=\"english\" Cur=\"english\"");
}

TEST_F(SetTxtParamTest, SpecialCharactersAreSavedAsEntities) {
  writeLanguage("Cur='' OptTxt='&lt;a&amp;b&gt;'");
  EXPECT_THAT(setText("System", "Language", "<a&b>"), returnsSilently(0));
  expectSavedLanguage("Cur=\"&lt;a&amp;b&gt;\" OptTxt=\"&lt;a&amp;b&gt;\"");
}

TEST_F(SetTxtParamTest, MissingSectionOrParameterIsRefusedSilently) {
  writeLanguage("Cur='english' OptTxt='english'");
  EXPECT_THAT(setText("None", "Language", "english"), returnsSilently(-1));
  EXPECT_THAT(setText("Syst", "Language", "english"), returnsSilently(-1));
  EXPECT_THAT(setText("System", "None", "english"), returnsSilently(-1));
  EXPECT_THAT(setText(nullptr, "Language", "english"), returnsSilently(-1));
  EXPECT_THAT(setText("System", nullptr, "english"), returnsSilently(-1));
  expectUntouched(contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetTxtParamTest, FileWithoutElementsIsLogged) {
  write("<!-- nothing -->");
  EXPECT_THAT(setText("System", "Language", "english"), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(rootFailure("CFG_COM_SetTxtParam")));
  expectUntouched("<!-- nothing -->");
}

TEST_F(SetTxtParamTest, FileThatDoesNotOpenIsLoggedByTheStoreOnly) {
  device.makeDirectory(kFile);
  EXPECT_THAT(setText("System", "Language", "english"), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure()));
}

// --- setting integers ---

class SetIntParamTest : public BySectionTest {
 protected:
  void writePort(const std::string& attributes) {
    contents = "<System><Rtsp   " + attributes + "/></System>";
    write(contents);
  }
  void expectSavedPort(const std::string& attributes) {
    expectSaved("<System>\n    <Rtsp " + attributes + "/>\n</System>\n");
  }
  std::string contents;
};

TEST_F(SetIntParamTest, ValueWithinTheRangeIsSavedInBothCopies) {
  for (const int value : {1, 2, 8554, 65534, 65535}) {
    writePort("Cur='554' Min='1' Max='65535'");
    EXPECT_THAT(setInt("System", "Rtsp", value), returnsSilently(0)) << value;
    expectSavedPort("Cur=\"" + std::to_string(value) + "\" Min=\"1\" Max=\"65535\"");
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetIntParamTest, ValueOutsideTheRangeIsRefusedSilently) {
  writePort("Cur='554' Min='1' Max='65535'");
  for (const int value : {0, -1, 65536, INT_MIN, INT_MAX})
    EXPECT_THAT(setInt("System", "Rtsp", value), returnsSilently(-1)) << value;
  expectUntouched(contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetIntParamTest, RangeMayReachToTheEndsOfTheIntegers) {
  for (const int value : {INT_MIN, -1, INT_MAX}) {
    writePort("Cur='0' Min='-2147483648' Max='2147483647'");
    EXPECT_THAT(setInt("System", "Rtsp", value), returnsSilently(0)) << value;
    expectSavedPort("Cur=\"" + std::to_string(value) + "\" Min=\"-2147483648\" Max=\"2147483647\"");
  }
}

TEST_F(SetIntParamTest, RangeThatIsMissingOrNoIntegerOrEmptyRefusesEveryValue) {
  for (const char* attributes :
       {"Cur='5'", "Cur='5' Min='1'", "Cur='5' Max='9'", "Cur='5' Min='' Max='9'",
        "Cur='5' Min='1' Max=''", "Cur='5' Min='low' Max='9'", "Cur='5' Min='1' Max='high'",
        "Cur='5' Min='9' Max='1'"}) {
    writePort(attributes);
    EXPECT_THAT(setInt("System", "Rtsp", 5), returnsSilently(-1)) << attributes;
    expectUntouched(contents);
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetIntParamTest, StepIsNotChecked) {
  writePort("Cur='10' Min='0' Max='100' Step='10'");
  EXPECT_THAT(setInt("System", "Rtsp", 55), returnsSilently(0));
  expectSavedPort("Cur=\"55\" Min=\"0\" Max=\"100\" Step=\"10\"");
}

TEST_F(SetIntParamTest, RangeMayBeHexadecimal) {
  writePort("Cur='1' Min='0x10' Max='0x20'");
  EXPECT_THAT(setInt("System", "Rtsp", 15), returnsSilently(-1));
  EXPECT_THAT(setInt("System", "Rtsp", 32), returnsSilently(0));
  expectSavedPort("Cur=\"32\" Min=\"0x10\" Max=\"0x20\"");
}

TEST_F(SetIntParamTest, MissingValueIsCreatedAndABadOneReplaced) {
  writePort("Min='1' Max='9'");
  EXPECT_THAT(setInt("System", "Rtsp", 5), returnsSilently(0));
  expectSavedPort("Min=\"1\" Max=\"9\" Cur=\"5\"");
  writePort("Cur='none' Min='1' Max='9'");
  EXPECT_THAT(setInt("System", "Rtsp", 5), returnsSilently(0));
  expectSavedPort("Cur=\"5\" Min=\"1\" Max=\"9\"");
}

TEST_F(SetIntParamTest, NothingElseInTheFileChanges) {
  write(
      "<?xml version=\"1.0\"?><!-- factory --><System><RtspOverHttp Cur='80' Min='1' Max='99'/>"
      "<Rtsp Cur='554' Min='1' Max='9'/></System><Video>text<Rtsp Cur='3'/></Video>");
  EXPECT_THAT(setInt("System", "Rtsp", 81), returnsSilently(0));
  expectSaved(
      "<?xml version=\"1.0\"?>\n<!-- factory -->\n<System>\n"
      "    <RtspOverHttp Cur=\"81\" Min=\"1\" Max=\"99\"/>\n"
      "    <Rtsp Cur=\"554\" Min=\"1\" Max=\"9\"/>\n</System>\n"
      "\n<Video>text<Rtsp Cur=\"3\"/></Video>\n");
}

TEST_F(SetIntParamTest, MissingSectionOrParameterIsRefusedSilently) {
  writePort("Cur='5' Min='1' Max='9'");
  EXPECT_THAT(setInt("None", "Rtsp", 5), returnsSilently(-1));
  EXPECT_THAT(setInt("Syst", "Rtsp", 5), returnsSilently(-1));
  EXPECT_THAT(setInt("System", "None", 5), returnsSilently(-1));
  EXPECT_THAT(setInt(nullptr, "Rtsp", 5), returnsSilently(-1));
  EXPECT_THAT(setInt("System", nullptr, 5), returnsSilently(-1));
  expectUntouched(contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetIntParamTest, FileWithoutElementsIsLogged) {
  write("<!-- nothing -->");
  EXPECT_THAT(setInt("System", "Rtsp", 5), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(rootFailure("CFG_COM_SetIntParam")));
  expectUntouched("<!-- nothing -->");
}

TEST_F(SetIntParamTest, FileThatDoesNotOpenIsLoggedByTheStoreOnly) {
  write("<System><Rtsp Cur='5' Min='1' Max='9'/>");
  EXPECT_THAT(setInt("System", "Rtsp", 5), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure()));
  expectUntouched("<System><Rtsp Cur='5' Min='1' Max='9'/>");
}

TEST_F(SetIntParamTest, MissingBackupDirectoryIsNoFailure) {
  writePort("Cur='5' Min='1' Max='9'");
  device.remove("/cfg1");
  EXPECT_THAT(setInt("System", "Rtsp", 6), returnsSilently(0));
  EXPECT_EQ(device.read(kFile), "<System>\n    <Rtsp Cur=\"6\" Min=\"1\" Max=\"9\"/>\n</System>\n");
}

TEST_F(BySectionTest, ThreadsThatSetDifferentParametersLoseNoUpdate) {
  constexpr int kThreads = 6;
  constexpr int kRounds = 5;
  std::string parameters;
  for (int i = 0; i < kThreads; ++i)
    parameters += "    <P" + std::to_string(i) + " Cur=\"0\" Min=\"0\" Max=\"9\"/>\n";
  write("<Counters>\n" + parameters + "</Counters>\n");
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([name = "P" + std::to_string(i)] {
      for (int round = 0; round < kRounds; ++round) {
        int value = -1;
        CFG_COM_GetIntParam(text("Counters"), text(name.c_str()), &value);
        CFG_COM_SetIntParam(text("Counters"), text(name.c_str()), value + 1);
      }
    });
  for (std::thread& thread : threads) thread.join();
  std::string expected = "<Counters>\n";
  for (int i = 0; i < kThreads; ++i)
    expected += "    <P" + std::to_string(i) + " Cur=\"5\" Min=\"0\" Max=\"9\"/>\n";
  expectSaved(expected + "</Counters>\n");
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
