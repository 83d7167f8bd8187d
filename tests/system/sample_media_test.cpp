#include <set>

#include "camcfg/store.h"
#include "system/sample_set.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::Le;
using testing::SizeIs;

using Elements = std::vector<tinyxml2::XMLElement*>;

// What the loaders leave to the author of the file: that the numbers which connect sources, caches
// and services lead somewhere.
class SampleMediaTest : public testing::Test {
 protected:
  Elements entries(const char* element, const char* section) {
    return childrenOf(document.element(element)->FirstChildElement(section));
  }
  Elements sources() { return entries("Stream", "StreamSource"); }
  Elements caches() { return entries("Stream", "StreamCache"); }

  static std::set<int> idsOf(const Elements& elements) {
    std::set<int> ids;
    for (const auto* element : elements) ids.insert(intOf(element, "Id").value());
    return ids;
  }

  static void collectChannels(tinyxml2::XMLNode* parent, Elements* channels) {
    for (auto* child : childrenOf(parent)) {
      if (nameOf(child) == "Channel") channels->push_back(child);
      collectChannels(child, channels);
    }
  }

  SampleDocument document{"/app/resource/defcfg/mpp_cfg.xml"};
};

TEST_F(SampleMediaTest, SourcesOfAllKindsHaveIdsOfTheirOwnThatAWhitelistCanHold) {
  std::set<std::string> kinds;
  for (const auto* source : sources()) kinds.insert(nameOf(source));
  EXPECT_THAT(kinds, testing::ElementsAre("AENC", "AI", "VENC"));
  EXPECT_THAT(idsOf(sources()),
              AllOf(SizeIs(sources().size()), testing::Each(AllOf(Ge(0), Le(29)))));
}

TEST_F(SampleMediaTest, OneKindsChannelNumbersAreEachUsedOnce) {
  std::set<std::pair<std::string, int>> channels;
  for (const auto* source : sources())
    for (const char* attribute : {"ChnId", "AencId", "AiId"})
      if (const auto channel = intOf(source, attribute)) channels.emplace(attribute, *channel);
  EXPECT_THAT(channels, SizeIs(sources().size()));
}

TEST_F(SampleMediaTest, CachesHaveIdsAndNamesOfTheirOwnAndOneSizeEach) {
  std::set<std::string> names;
  std::set<std::string> units;
  for (const auto* cache : caches()) {
    names.insert(textOf(cache, "Name").value());
    int sizes = 0;
    for (const char* unit : {"BufferSizeB", "BufferSizeKB", "BufferSizeMB"}) {
      const auto size = intOf(cache, unit);
      if (!size) continue;
      EXPECT_GT(*size, 0);
      units.insert(unit);
      ++sizes;
    }
    EXPECT_EQ(sizes, 1) << textOf(cache, "Name").value();
  }
  EXPECT_THAT(idsOf(caches()), SizeIs(caches().size()));
  EXPECT_THAT(names, SizeIs(caches().size()));
  EXPECT_THAT(units, testing::ElementsAre("BufferSizeB", "BufferSizeKB", "BufferSizeMB"));
}

TEST_F(SampleMediaTest, EveryCacheAllowsKnownSourcesAndCarriesOneThatIsInUse) {
  const std::set<int> known = idsOf(sources());
  std::set<int> inUse;
  for (const auto* source : sources())
    if (intOf(source, "Enabled").value_or(1) != 0) inUse.insert(intOf(source, "Id").value());
  EXPECT_THAT(inUse, SizeIs(Le(known.size() - 1))) << "no source is out of use";

  for (auto* cache : caches()) {
    SCOPED_TRACE(textOf(cache, "Name").value());
    const Elements allowed = childrenOf(cache);
    EXPECT_THAT(known, testing::IsSupersetOf(idsOf(allowed)));
    EXPECT_THAT(idsOf(allowed), SizeIs(allowed.size()));
    Elements carried;
    for (auto* source : allowed)
      if (intOf(source, "Default") == 1) carried.push_back(source);
    ASSERT_THAT(carried, SizeIs(1U));
    EXPECT_THAT(inUse, testing::IsSupersetOf(idsOf(carried)));
  }
}

TEST_F(SampleMediaTest, CachesAreFoundByTheirIds) {
  auto* section = document.element("Stream")->FirstChildElement("StreamCache");
  for (auto* cache : caches())
    EXPECT_EQ(CFG_GetElementByNameId(section, "Cache", intOf(cache, "Id").value()), cache);
}

TEST_F(SampleMediaTest, EveryServiceSendsChannelsThatAreCaches) {
  const std::set<int> known = idsOf(caches());
  for (auto* service : childrenOf(document.element("LiveMediaService"))) {
    SCOPED_TRACE(nameOf(service));
    Elements channels;
    collectChannels(service, &channels);
    EXPECT_THAT(channels, SizeIs(Ge(2U)));
    EXPECT_THAT(known, testing::IsSupersetOf(idsOf(channels)));
  }
}

}  // namespace
}  // namespace camcfg::tests
