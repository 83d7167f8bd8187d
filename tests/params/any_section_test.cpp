#include <climits>

#include "params/params_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using TextRecord = Guarded<tagCFG_VALUE_TXT_S>;
using IntRecord = Guarded<tagCFG_VALUE_INT_S>;

class AnySectionTest : public ParamsTest {
 protected:
  Outcome getTexts(const char* name, TextRecord& value) {
    return observe([&] { return CFG_COM_GetTxtParams(text(name), value.get()); });
  }
  Outcome getInts(const char* name, IntRecord& value) {
    return observe([&] { return CFG_COM_GetIntParams(text(name), value.get()); });
  }
  Outcome getChild(const char* parent, const char* child, TextRecord& value) {
    return observe(
        [&] { return CFG_COM_GetTxtParamByParent(text(parent), text(child), value.get()); });
  }
};

// Expects all three fields as given, whole, and nothing written elsewhere. Null: not written.
void expectTexts(TextRecord& value, const char* options, const char* factory, const char* current) {
  const auto holds = [](const auto& field, const char* expected) {
    return expected == nullptr ? TextRecord::isPattern(field) : TextRecord::isText(field, expected);
  };
  EXPECT_TRUE(holds(value->acOptTxt, options));
  EXPECT_TRUE(holds(value->acDef, factory));
  EXPECT_TRUE(holds(value->acCur, current));
  EXPECT_TRUE(value.guardsIntact());
}

TEST_F(AnySectionTest, RecordsAreLaidOutAsDeclared) {
  EXPECT_EQ(offsetof(tagCFG_VALUE_TXT_S, acOptTxt), 0u);
  EXPECT_EQ(offsetof(tagCFG_VALUE_TXT_S, acDef), 256u);
  EXPECT_EQ(offsetof(tagCFG_VALUE_TXT_S, acCur), 272u);
  EXPECT_EQ(sizeof(tagCFG_VALUE_TXT_S), 272u + CFG_TXT_CUR_SIZE);
  EXPECT_EQ(offsetof(tagCFG_VALUE_INT_S, s32Min), 0u);
  EXPECT_EQ(offsetof(tagCFG_VALUE_INT_S, s32Max), 4u);
  EXPECT_EQ(offsetof(tagCFG_VALUE_INT_S, s32Def), 8u);
  EXPECT_EQ(offsetof(tagCFG_VALUE_INT_S, s32Step), 12u);
  EXPECT_EQ(offsetof(tagCFG_VALUE_INT_S, s32Cur), 16u);
  EXPECT_EQ(sizeof(tagCFG_VALUE_INT_S), 20u);
}

// --- reading texts ---

class GetTxtParamsTest : public AnySectionTest {
 protected:
  TextRecord value;
};

TEST_F(GetTxtParamsTest, FillsOptionsDefaultAndCurrentWithTheirTerminators) {
  write("<System><Language Cur='thai' Def='english' OptTxt='english,thai'/></System>");
  EXPECT_THAT(getTexts("Language", value), returnsSilently(0));
  expectTexts(value, "english,thai", "english", "thai");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamsTest, FirstSectionThatHasTheParameterDecides) {
  write(
      "<Empty/><Language Cur='a section is no parameter'/>"
      "<Nested><Deep><Language Cur='too deep' Def='d' OptTxt='o'/></Deep></Nested>"
      "<First><LanguageLong Cur='c1' Def='d1' OptTxt='o1'/></First>"
      "<Second><Language Cur='c2' Def='d2' OptTxt='o2'/></Second>");
  EXPECT_THAT(getTexts("Language", value), returnsSilently(0));
  expectTexts(value, "o1", "d1", "c1");
}

TEST_F(GetTxtParamsTest, FirstSectionDecidesEvenIfItsParameterIsIncomplete) {
  write("<First><Language/></First><Second><Language Cur='c' Def='d' OptTxt='o'/></Second>");
  EXPECT_EQ(getTexts("Language", value).result, -1);
  expectTexts(value, nullptr, nullptr, nullptr);
}

TEST_F(GetTxtParamsTest, EmptyTextsAreTexts) {
  write("<System><Language Cur='' Def='' OptTxt=''/></System>");
  EXPECT_THAT(getTexts("Language", value), returnsSilently(0));
  expectTexts(value, "", "", "");
}

TEST_F(GetTxtParamsTest, TextsLongerThanTheirFieldsAreCutToFit) {
  const auto writeLengths = [&](std::size_t options, std::size_t factory, std::size_t current) {
    write("<System><Language Cur='" + std::string(current, 'c') + "' Def='" +
          std::string(factory, 'd') + "' OptTxt='" + std::string(options, 'o') + "'/></System>");
  };
  const auto expectLengths = [&](std::size_t options, std::size_t factory, std::size_t current) {
    EXPECT_THAT(getTexts("Language", value), returnsSilently(0));
    expectTexts(value, std::string(options, 'o').c_str(), std::string(factory, 'd').c_str(),
                std::string(current, 'c').c_str());
    value = TextRecord();
  };
  writeLengths(254, 14, 254);
  expectLengths(254, 14, 254);
  writeLengths(255, 15, 255);
  expectLengths(255, 15, 255);
  writeLengths(256, 16, 256);
  expectLengths(255, 15, 255);
  writeLengths(5000, 5000, 5000);
  expectLengths(255, 15, 255);
}

TEST_F(GetTxtParamsTest, MissingOptionsAreSaidWithTheNameAndNothingIsWritten) {
  write("<System><Language Cur='thai' Def='english'/></System>");
  EXPECT_THAT(getTexts("Lang", value),
              failsSaying("CFG_COM_GetTxtParams", "failed, pcParamNameIndex = Lang"));
  expectTexts(value, nullptr, nullptr, nullptr);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamsTest, MissingDefaultOrCurrentIsSaidFromDifferentLines) {
  write("<System><Language Cur='thai' OptTxt='thai'/></System>");
  const Outcome withoutDefault = getTexts("Language", value);
  EXPECT_THAT(withoutDefault, failsSaying("CFG_COM_GetTxtParams", "failed"));
  expectTexts(value, "thai", nullptr, nullptr);

  value = TextRecord();
  write("<System><Language Def='english' OptTxt='thai'/></System>");
  const Outcome withoutCurrent = getTexts("Language", value);
  EXPECT_THAT(withoutCurrent, failsSaying("CFG_COM_GetTxtParams", "failed"));
  expectTexts(value, "thai", "english", nullptr);
  EXPECT_NE(withoutDefault.output, withoutCurrent.output);
}

TEST_F(GetTxtParamsTest, NameThatNoSectionHasIsSaid) {
  write("<System><Language Cur='c' Def='d' OptTxt='o'/></System>");
  for (const char* name : {"None", "LanguageLong", "System", "language"})
    EXPECT_THAT(getTexts(name, value),
                failsSaying("CFG_COM_GetTxtParams",
                            std::string("pcParamNameIndex = ") + name + " not found"));
  EXPECT_THAT(getTexts("%s%d", value),
              failsSaying("CFG_COM_GetTxtParams", "pcParamNameIndex = %s%d not found"));
  expectTexts(value, nullptr, nullptr, nullptr);
}

TEST_F(GetTxtParamsTest, FileWithoutElementsIsSaid) {
  write("<!-- nothing -->");
  EXPECT_THAT(getTexts("Language", value), failsSaying("CFG_COM_GetTxtParams", "failed"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamsTest, FileThatDoesNotOpenIsSaidBesidesTheStoresRecord) {
  EXPECT_THAT(getTexts("Language", value), failsSaying("CFG_COM_GetTxtParams", "failed"));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure()));
  expectTexts(value, nullptr, nullptr, nullptr);
}

TEST_F(GetTxtParamsTest, NullNameOrRecordIsRefused) {
  write("<System><Language Cur='c' Def='d' OptTxt='o'/></System>");
  EXPECT_EQ(getTexts(nullptr, value).result, -1);
  EXPECT_EQ(observe([] { return CFG_COM_GetTxtParams(text("Language"), nullptr); }).result, -1);
  expectTexts(value, nullptr, nullptr, nullptr);
}

// --- reading integers ---

class GetIntParamsTest : public AnySectionTest {
 protected:
  IntRecord value;
};

TEST_F(GetIntParamsTest, FillsAllFiveIntegers) {
  write(
      "<System><Rtsp Cur='554' Def='0x22B' Min='-2147483648' Max='2147483647' Step='2'/>"
      "</System>");
  EXPECT_THAT(getInts("Rtsp", value), returnsSilently(0));
  EXPECT_EQ(value->s32Min, INT_MIN);
  EXPECT_EQ(value->s32Max, INT_MAX);
  EXPECT_EQ(value->s32Def, 555);
  EXPECT_EQ(value->s32Step, 2);
  EXPECT_EQ(value->s32Cur, 554);
  EXPECT_TRUE(value.guardsIntact());
  EXPECT_THAT(log.records(), IsEmpty());
}

// The attributes in the order in which they are read, with the field that each goes to.
struct IntField {
  const char* attribute;
  std::int32_t tagCFG_VALUE_INT_S::*field;
};
constexpr IntField kIntFields[] = {{"Min", &tagCFG_VALUE_INT_S::s32Min},
                                   {"Max", &tagCFG_VALUE_INT_S::s32Max},
                                   {"Step", &tagCFG_VALUE_INT_S::s32Step},
                                   {"Def", &tagCFG_VALUE_INT_S::s32Def},
                                   {"Cur", &tagCFG_VALUE_INT_S::s32Cur}};

// Index into kIntFields of the bad attribute, and its value; null: the attribute is missing.
class BadIntAttribute : public GetIntParamsTest,
                        public testing::WithParamInterface<std::tuple<std::size_t, const char*>> {};

TEST_P(BadIntAttribute, StopsTheCallSilentlyWithTheFieldsBeforeItFilled) {
  const auto [bad, badValue] = GetParam();
  std::string attributes;
  for (std::size_t i = std::size(kIntFields); i-- > 0;) {
    const std::string good = std::to_string(i + 1);
    if (i != bad || badValue != nullptr)
      attributes +=
          std::string(" ") + kIntFields[i].attribute + "='" + (i == bad ? badValue : good) + "'";
  }
  write("<System><Rtsp" + attributes + "/></System>");
  EXPECT_THAT(getInts("Rtsp", value), returnsSilently(-1));
  for (std::size_t i = 0; i < std::size(kIntFields); ++i) {
    const std::int32_t field = (*value.get()).*kIntFields[i].field;
    if (i < bad)
      EXPECT_EQ(field, static_cast<int>(i + 1)) << kIntFields[i].attribute;
    else
      EXPECT_TRUE(IntRecord::isPattern(field)) << kIntFields[i].attribute;
  }
  EXPECT_TRUE(value.guardsIntact());
  EXPECT_THAT(log.records(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Attributes, BadIntAttribute,
                         testing::Combine(testing::Range<std::size_t>(0, std::size(kIntFields)),
                                          testing::Values(nullptr, "", "none")),
                         [](const auto& test) {
                           const char* bad = std::get<1>(test.param);
                           return std::string(kIntFields[std::get<0>(test.param)].attribute) +
                                  (bad == nullptr ? "Missing"
                                   : *bad == '\0' ? "Empty"
                                                  : "Text");
                         });

TEST_F(GetIntParamsTest, FirstSectionThatHasTheParameterDecides) {
  write(
      "<First><RtspOverHttp Cur='1' Def='1' Min='1' Max='1' Step='1'/></First>"
      "<Second><Rtsp Cur='2' Def='2' Min='2' Max='2' Step='2'/></Second>");
  EXPECT_THAT(getInts("Rtsp", value), returnsSilently(0));
  EXPECT_EQ(value->s32Cur, 1);
  write("<First><Rtsp/></First><Second><Rtsp Cur='2' Def='2' Min='2' Max='2' Step='2'/></Second>");
  EXPECT_THAT(getInts("Rtsp", value), returnsSilently(-1));
}

TEST_F(GetIntParamsTest, NameThatNoSectionHasIsSaid) {
  write("<System><Rtsp Cur='1' Def='1' Min='1' Max='1' Step='1'/></System>");
  for (const char* name : {"None", "RtspOverHttp", "System"})
    EXPECT_THAT(getInts(name, value),
                failsSaying("CFG_COM_GetIntParams",
                            std::string("pcParamNameIndex = ") + name + " not found"));
  EXPECT_TRUE(IntRecord::isPattern(*value.get()));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetIntParamsTest, FileWithoutElementsIsLogged) {
  write("<!-- nothing -->");
  EXPECT_THAT(getInts("Rtsp", value), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(rootFailure("CFG_COM_GetIntParams")));
}

TEST_F(GetIntParamsTest, FileThatDoesNotOpenIsLoggedByTheStoreOnly) {
  EXPECT_THAT(getInts("Rtsp", value), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure()));
}

TEST_F(GetIntParamsTest, NullNameOrRecordIsRefused) {
  write("<System><Rtsp Cur='1' Def='1' Min='1' Max='1' Step='1'/></System>");
  EXPECT_EQ(getInts(nullptr, value).result, -1);
  EXPECT_EQ(observe([] { return CFG_COM_GetIntParams(text("Rtsp"), nullptr); }).result, -1);
  EXPECT_TRUE(IntRecord::isPattern(*value.get()));
}

// --- reading the child of a parameter ---

class GetTxtParamByParentTest : public AnySectionTest {
 protected:
  TextRecord value;
};

TEST_F(GetTxtParamByParentTest, FillsTheRecordFromTheChildOfTheFirstParent) {
  write(
      "<Empty/><System><EthLong Cur='p' Def='p' OptTxt='p'>"
      "<ModeLong Cur='dhcp' Def='static' OptTxt='dhcp,static'/>"
      "<Mode Cur='no' Def='no' OptTxt='no'/></EthLong>"
      "<Eth><Mode Cur='later' Def='later' OptTxt='later'/></Eth></System>");
  EXPECT_THAT(getChild("Eth", "Mode", value), returnsSilently(0));
  expectTexts(value, "dhcp,static", "static", "dhcp");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamByParentTest, MissingChildIsSaidAndLaterSectionsAreNotTried) {
  write(
      "<First><Eth Cur='c' Def='d' OptTxt='o'/></First>"
      "<Second><Eth><Mode Cur='c' Def='d' OptTxt='o'/></Eth></Second>");
  EXPECT_THAT(getChild("Eth", "Mode", value),
              failsSaying("CFG_COM_GetTxtParamByParent", "pcChildName = Mode not found"));
  expectTexts(value, nullptr, nullptr, nullptr);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamByParentTest, MissingParentIsSaid) {
  write("<Eth><Mode Cur='c' Def='d' OptTxt='o'/></Eth>");
  EXPECT_THAT(getChild("Eth", "Mode", value),
              failsSaying("CFG_COM_GetTxtParamByParent", "pcParentName = Eth not found"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamByParentTest, MissingAttributeOfTheChildIsSaidWithTheFieldsBeforeItFilled) {
  const auto writeChild = [&](const std::string& attributes) {
    value = TextRecord();
    write("<System><Eth><Mode " + attributes + "/></Eth></System>");
  };
  writeChild("Cur='c' Def='d'");
  EXPECT_THAT(getChild("Eth", "Mo", value),
              failsSaying("CFG_COM_GetTxtParamByParent", "failed, pcChildName = Mo"));
  expectTexts(value, nullptr, nullptr, nullptr);
  writeChild("Cur='c' OptTxt='o'");
  EXPECT_THAT(getChild("Eth", "Mode", value), failsSaying("CFG_COM_GetTxtParamByParent", "failed"));
  expectTexts(value, "o", nullptr, nullptr);
  writeChild("Def='d' OptTxt='o'");
  EXPECT_THAT(getChild("Eth", "Mode", value), failsSaying("CFG_COM_GetTxtParamByParent", "failed"));
  expectTexts(value, "o", "d", nullptr);
}

TEST_F(GetTxtParamByParentTest, TextsLongerThanTheirFieldsAreCutToFit) {
  const std::string longText(600, 'x');
  write("<System><Eth><Mode Cur='" + longText + "' Def='" + longText + "' OptTxt='" + longText +
        "'/></Eth></System>");
  EXPECT_THAT(getChild("Eth", "Mode", value), returnsSilently(0));
  expectTexts(value, longText.substr(0, 255).c_str(), longText.substr(0, 15).c_str(),
              longText.substr(0, 255).c_str());
}

TEST_F(GetTxtParamByParentTest, FileWithoutElementsOrThatDoesNotOpenIsSaid) {
  EXPECT_THAT(getChild("Eth", "Mode", value), failsSaying("CFG_COM_GetTxtParamByParent", "failed"));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure()));
  log.clear();
  write("<!-- nothing -->");
  EXPECT_THAT(getChild("Eth", "Mode", value), failsSaying("CFG_COM_GetTxtParamByParent", "failed"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GetTxtParamByParentTest, NullNamesOrRecordAreRefused) {
  write("<System><Eth><Mode Cur='c' Def='d' OptTxt='o'/></Eth></System>");
  EXPECT_EQ(getChild(nullptr, "Mode", value).result, -1);
  EXPECT_EQ(getChild("Eth", nullptr, value).result, -1);
  const auto withoutRecord = [] {
    return CFG_COM_GetTxtParamByParent(text("Eth"), text("Mode"), nullptr);
  };
  EXPECT_EQ(observe(withoutRecord).result, -1);
  expectTexts(value, nullptr, nullptr, nullptr);
}

}  // namespace
}  // namespace camcfg::tests
