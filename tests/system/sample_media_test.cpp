#include <algorithm>
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
  Elements sourcesInUse() {
    Elements inUse = sources();
    const auto unused = [](auto* source) { return intOf(source, "Enabled") == 0; };
    inUse.erase(std::remove_if(inUse.begin(), inUse.end(), unused), inUse.end());
    return inUse;
  }
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

TEST_F(SampleMediaTest, CachesHaveIdsAndNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const auto* cache : caches()) names.insert(textOf(cache, "Name").value());
  EXPECT_THAT(names, SizeIs(caches().size()));
  EXPECT_THAT(idsOf(caches()), SizeIs(caches().size()));
}

TEST_F(SampleMediaTest, CachesHaveOneSizeEachInBytesAndItsMultiples) {
  std::set<std::string> units;
  for (const auto* cache : caches()) {
    const std::vector<std::string> attributes = attributeNames(cache);
    ASSERT_THAT(attributes, testing::ElementsAre("Id", "Name", testing::StartsWith("BufferSize")));
    EXPECT_THAT(intOf(cache, attributes[2].c_str()), testing::Optional(Ge(1)));
    units.insert(attributes[2]);
  }
  EXPECT_THAT(units, testing::ElementsAre("BufferSizeB", "BufferSizeKB", "BufferSizeMB"));
}

TEST_F(SampleMediaTest, EveryCacheAllowsKnownSources) {
  const std::set<int> known = idsOf(sources());
  for (auto* cache : caches()) {
    const Elements allowed = childrenOf(cache);
    EXPECT_THAT(known, testing::IsSupersetOf(idsOf(allowed)));
    EXPECT_THAT(idsOf(allowed), SizeIs(allowed.size()));
  }
}

TEST_F(SampleMediaTest, EveryCacheCarriesOneSourceThatIsInUse) {
  const std::set<int> inUse = idsOf(sourcesInUse());
  EXPECT_THAT(inUse, SizeIs(Le(sources().size() - 1))) << "no source is out of use";
  for (auto* cache : caches()) {
    Elements carried;
    for (auto* source : childrenOf(cache))
      if (intOf(source, "Default") == 1) carried.push_back(source);
    EXPECT_THAT(carried, SizeIs(1U)) << textOf(cache, "Name").value();
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
