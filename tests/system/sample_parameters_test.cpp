#include <algorithm>
#include <sstream>

#include "camcfg/params.h"
#include "system/sample_set.h"

namespace camcfg::tests {
namespace {

using testing::Ge;
using testing::Le;
using testing::SizeIs;

using Elements = std::vector<tinyxml2::XMLElement*>;

std::vector<std::string> optionsOf(const tinyxml2::XMLElement* parameter) {
  std::vector<std::string> options;
  std::stringstream texts(textOf(parameter, "OptTxt").value());
  for (std::string option; std::getline(texts, option, ',');) options.push_back(option);
  return options;
}

bool isInteger(const tinyxml2::XMLElement* parameter) {
  return parameter->FindAttribute("Min") != nullptr;
}

class SampleParametersTest : public testing::Test {
 protected:
  SampleParametersTest() {
    for (auto* section : sections) {
      if (nameOf(section) == "NetWork") continue;
      for (auto* parameter : childrenOf(section)) {
        if (nameOf(parameter) != "DeviceAttr") parameters.push_back(parameter);
        for (auto* child : childrenOf(parameter)) parameters.push_back(child);
      }
    }
    for (auto* parameter : parameters)
      (isInteger(parameter) ? integers : texts).push_back(parameter);
  }

  SampleDocument document{"/app/resource/defcfg/business_param.xml"};
  const Elements sections = childrenOf(&document.document());
  Elements parameters;  ///< of all sections but NetWork, children of parameters included
  Elements integers;
  Elements texts;
};

TEST_F(SampleParametersTest, CoverTheDevice) {
  std::vector<std::string> names;
  for (const auto* section : sections) names.push_back(nameOf(section));
  EXPECT_THAT(names, testing::ElementsAre("System", "VideoCh1", "VideoCh2", "VideoCh3", "VideoCh4",
                                          "Audio", "Image", "Overlay", "Serial", "Time", "Ptz",
                                          "Maintenance", "NetWork"));
  EXPECT_THAT(integers, SizeIs(Ge(50U)));
  EXPECT_THAT(texts, SizeIs(Ge(50U)));
}

TEST_F(SampleParametersTest, OfTheSystemBearTheNamesOfTheNamedCalls) {
  std::vector<std::string> names;
  for (const auto* parameter : childrenOf(document.element("System")))
    names.push_back(nameOf(parameter));
  EXPECT_THAT(names, testing::ElementsAre("Language", "DeviceAttr", "WebHttp", "WebHttps", "Rtsp",
                                          "RtspOverHttp"));
}

TEST_F(SampleParametersTest, HaveTheAttributesOfTheirKindAndNoOthers) {
  for (const auto* parameter : integers)
    EXPECT_THAT(attributeNames(parameter), testing::ElementsAre("Cur", "Def", "Min", "Max", "Step"))
        << nameOf(parameter);
  for (const auto* parameter : texts)
    EXPECT_THAT(attributeNames(parameter), testing::ElementsAre("Cur", "Def", "OptTxt"))
        << nameOf(parameter);
}

TEST_F(SampleParametersTest, StartAtTheirDefaults) {
  for (const auto* parameter : parameters)
    EXPECT_EQ(textOf(parameter, "Cur"), textOf(parameter, "Def")) << nameOf(parameter);
}

TEST_F(SampleParametersTest, HaveRangesOfWholeSteps) {
  for (const auto* parameter : integers) {
    const int step = intOf(parameter, "Step").value();
    const int range = intOf(parameter, "Max").value() - intOf(parameter, "Min").value();
    EXPECT_GT(step, 0) << nameOf(parameter);
    EXPECT_GE(range, step) << nameOf(parameter);
    EXPECT_EQ(range % step, 0) << nameOf(parameter);
  }
}

TEST_F(SampleParametersTest, HoldIntegersInRangeAndOnTheirStep) {
  for (const auto* parameter : integers) {
    const int min = intOf(parameter, "Min").value();
    for (const char* name : {"Cur", "Def"}) {
      const int value = intOf(parameter, name).value();
      EXPECT_THAT(value, testing::AllOf(Ge(min), Le(intOf(parameter, "Max").value())))
          << nameOf(parameter);
      EXPECT_EQ((value - min) % intOf(parameter, "Step").value(), 0) << nameOf(parameter);
    }
  }
}

TEST_F(SampleParametersTest, HoldTextsAmongThoseTheyAllow) {
  for (const auto* parameter : texts) {
    SCOPED_TRACE(nameOf(parameter));
    const std::vector<std::string> options = optionsOf(parameter);
    EXPECT_THAT(options, SizeIs(Ge(2U)));
    for (const char* name : {"Cur", "Def"})
      EXPECT_THAT(options, testing::Contains(textOf(parameter, name).value())) << name;
  }
}

TEST_F(SampleParametersTest, AllowNoTextThatIsPartOfAnother) {
  for (const auto* parameter : texts) {
    const std::vector<std::string> options = optionsOf(parameter);
    for (const std::string& option : options)
      EXPECT_EQ(std::count_if(options.begin(), options.end(),
                              [&](const std::string& other) {
                                return other.find(option) != std::string::npos;
                              }),
                1)
          << nameOf(parameter) << ' ' << option;
  }
}

TEST_F(SampleParametersTest, FitTheFieldsOfTheTextRecord) {
  for (const auto* parameter : texts) {
    SCOPED_TRACE(nameOf(parameter));
    EXPECT_LT(textOf(parameter, "OptTxt")->size(), std::size_t{CFG_TXT_OPT_SIZE});
    for (const std::string& option : optionsOf(parameter))  // each may become the default
      EXPECT_LT(option.size(), std::size_t{CFG_TXT_DEF_SIZE}) << option;
  }
}

TEST_F(SampleParametersTest, SectionsAreFoundByTheirNames) {
  for (auto* section : sections)
    EXPECT_EQ(CFG_GetBrotherElementByName(document.root(), section->Name()), section)
        << nameOf(section);
}

TEST_F(SampleParametersTest, AreFoundByTheirNamesAtEveryLevel) {
  std::vector<tinyxml2::XMLElement*> parents(sections);
  for (std::size_t i = 0; i < parents.size(); ++i) {
    for (auto* child : childrenOf(parents[i])) {
      EXPECT_EQ(CFG_GetElementByName(parents[i], child->Name()), child) << nameOf(child);
      if (child->FirstChildElement() != nullptr) parents.push_back(child);
    }
  }
  EXPECT_GT(parents.size(), sections.size()) << "no parameter has a child";
}

TEST_F(SampleParametersTest, HaveNamesThatBeginNoneOfAnotherSection) {
  for (auto* section : sections) {
    for (auto* parameter : childrenOf(section)) {
      Elements answering;
      for (auto* other : sections)
        if (CFG_GetElementByName(other, parameter->Name()) != nullptr) answering.push_back(other);
      EXPECT_THAT(answering, testing::ElementsAre(section)) << nameOf(parameter);
    }
  }
}

}  // namespace
}  // namespace camcfg::tests
