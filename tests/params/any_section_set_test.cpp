#include <climits>

#include "params/params_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The two setters by name differ only in the value's type; both are put to every test.
struct Setter {
  const char* function;
  int (*set)(char* name, tagBU_BOOL save);  // sets "Cur" to 7
};

int setText(char* name, tagBU_BOOL save) {
  return CFG_COM_SetTxtParams(name, text("7"), save);
}
int setInt(char* name, tagBU_BOOL save) {
  return CFG_COM_SetIntParams(name, 7, save);
}

void PrintTo(const Setter& setter, std::ostream* out) {
  *out << setter.function;
}

class AnySectionSetTest : public ParamsTest, public testing::WithParamInterface<Setter> {
 protected:
  Outcome set(const char* name, int save = 1) {
    return observe([=] { return GetParam().set(text(name), static_cast<tagBU_BOOL>(save)); });
  }
  static auto fails() { return failsSaying(GetParam().function, "failed"); }
};

INSTANTIATE_TEST_SUITE_P(Setters, AnySectionSetTest,
                         testing::Values(Setter{"CFG_COM_SetTxtParams", setText},
                                         Setter{"CFG_COM_SetIntParams", setInt}),
                         [](const auto& test) { return std::string(test.param.function); });

TEST_P(AnySectionSetTest, SaveOfOneWritesBothCopies) {
  write("<System><Rtsp   Cur='554'/></System>");
  EXPECT_THAT(set("Rtsp"), returnsSilently(0));
  expectSaved("<System>\n    <Rtsp Cur=\"7\"/>\n</System>\n");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(AnySectionSetTest, AnyOtherSaveDropsTheChangeAndStillSucceeds) {
  const std::string contents = "<System><Rtsp   Cur='554'/></System>";
  write(contents);
  for (const int save : {0, 2, -1, INT_MIN, INT_MAX}) {
    EXPECT_THAT(set("Rtsp", save), returnsSilently(0)) << save;
    expectUntouched(contents);
    EXPECT_TRUE(isUnlocked(kFile)) << save;
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(AnySectionSetTest, NothingIsChecked) {
  write("<System><Rtsp Cur='554' Min='100' Max='200' OptTxt='a,b'/></System>");
  EXPECT_THAT(set("Rtsp"), returnsSilently(0));
  expectSaved(
      "<System>\n    <Rtsp Cur=\"7\" Min=\"100\" Max=\"200\" OptTxt=\"a,b\"/>\n</System>\n");
}

TEST_P(AnySectionSetTest, MissingValueIsCreated) {
  write("<System><Rtsp Def='554'/></System>");
  EXPECT_THAT(set("Rtsp"), returnsSilently(0));
  expectSaved("<System>\n    <Rtsp Def=\"554\" Cur=\"7\"/>\n</System>\n");
}

TEST_P(AnySectionSetTest, OnlyTheFirstSectionThatHasTheParameterIsChanged) {
  write(
      "<Rtsp/><Deep><In><Rtsp/></In></Deep><First><RtspOverHttp/><Rtsp/></First>"
      "<Second><Rtsp/></Second>");
  EXPECT_THAT(set("Rtsp"), returnsSilently(0));
  expectSaved(
      "<Rtsp/>\n\n<Deep>\n    <In>\n        <Rtsp/>\n    </In>\n</Deep>\n\n"
      "<First>\n    <RtspOverHttp Cur=\"7\"/>\n    <Rtsp/>\n</First>\n\n"
      "<Second>\n    <Rtsp/>\n</Second>\n");
}

TEST_P(AnySectionSetTest, NameThatNoSectionHasIsSaidAndNothingSaved) {
  const std::string contents = "<System><Rtsp   Cur='554'/></System>";
  write(contents);
  for (const char* name : {"None", "RtspOverHttp", "System"}) {
    EXPECT_THAT(set(name, 1), fails()) << name;
    EXPECT_THAT(set(name, 0), fails()) << name;
  }
  EXPECT_THAT(set(nullptr), fails());
  expectUntouched(contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(AnySectionSetTest, FileWithoutElementsIsSaid) {
  write("<!-- nothing -->");
  EXPECT_THAT(set("Rtsp"), fails());
  expectUntouched("<!-- nothing -->");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(AnySectionSetTest, FileThatDoesNotOpenIsSaidBesidesTheStoresRecord) {
  EXPECT_THAT(set("Rtsp"), fails());
  EXPECT_THAT(log.records(), ElementsAre(loadFailure()));
  EXPECT_FALSE(device.exists(kFile));
  log.clear();
  for (const char* contents : {"", "no XML", "<System><Rtsp/>"}) {
    write(contents);
    EXPECT_THAT(set("Rtsp"), fails());
    expectUntouched(contents);
  }
  EXPECT_THAT(log.records(), ElementsAre(loadFailure(), loadFailure(), loadFailure()));
}

TEST_P(AnySectionSetTest, CopyThatFailsIsNoFailure) {
  write("<System><Rtsp/></System>");
  device.remove("/cfg1");
  EXPECT_THAT(set("Rtsp"), returnsSilently(0));
  EXPECT_EQ(device.read(kFile), "<System>\n    <Rtsp Cur=\"7\"/>\n</System>\n");
}

class AnySectionValueTest : public ParamsTest {};

TEST_F(AnySectionValueTest, IntegersOfAnySizeAreSaved) {
  for (const int value : {0, -1, INT_MIN, INT_MAX}) {
    write("<System><Rtsp/></System>");
    EXPECT_EQ(CFG_COM_SetIntParams(text("Rtsp"), value, BU_TRUE), 0);
    expectSaved("<System>\n    <Rtsp Cur=\"" + std::to_string(value) + "\"/>\n</System>\n");
  }
}

TEST_F(AnySectionValueTest, TextsOfAnyKindAreSavedWhole) {
  const std::string longText(3000, 'x');
  for (const auto& [value, saved] : {std::pair<std::string, std::string>("", ""),
                                     {"<a&\">", "&lt;a&amp;&quot;&gt;"},
                                     {"\xc3\xa4", "\xc3\xa4"},
                                     {longText, longText}}) {
    write("<System><Name/></System>");
    EXPECT_EQ(CFG_COM_SetTxtParams(text("Name"), text(value.c_str()), BU_TRUE), 0);
    expectSaved("<System>\n    <Name Cur=\"" + saved + "\"/>\n</System>\n");
  }
}

TEST_F(AnySectionValueTest, NullTextIsRefused) {
  const std::string contents = "<System><Name   Cur='x'/></System>";
  write(contents);
  const auto setNull = [] { return CFG_COM_SetTxtParams(text("Name"), nullptr, BU_TRUE); };
  EXPECT_THAT(observe(setNull), failsSaying("CFG_COM_SetTxtParams", "failed"));
  expectUntouched(contents);
}

}  // namespace
}  // namespace camcfg::tests
