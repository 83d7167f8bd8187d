#include <list>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "media/every_source.h"
#include "media/layout.h"
#include "media/media_test.h"
#include "media/records.h"
#include "support/random_values.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Cache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;
using Caches = CacheList;

constexpr char kCachePath[] = "<Stream><StreamCache><Cache>";
constexpr char kAllowedPath[] = "<Stream><StreamCache><Cache><AllowedStreamSource>";
constexpr char kNoSize[] =
    "Missing any of {BufferSizeB, BufferSizeKB, BufferSizeMB} for setup chanel buffer size.";

Cache make(int id, const std::string& name, int size, int unit, int mask, int enabled) {
  const auto cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
  cache->s32Id = id;
  cache->strName = name;
  cache->s32BufSize = size;
  cache->s32BufUnit = unit;
  cache->s32AllowedMask = mask;
  cache->s32EnabledSrc = enabled;
  return cache;
}

// A record whole.
std::string described(const tag_CFG_STREAM_CACHE_T& cache) {
  return std::to_string(cache.s32Id) + " " + testing::PrintToString(cache.strName) + " " +
         std::to_string(cache.s32BufSize) + " x " + std::to_string(cache.s32BufUnit) + " mask " +
         std::to_string(cache.s32AllowedMask) + " carries " + std::to_string(cache.s32EnabledSrc);
}

std::vector<std::string> described(const Caches& caches) {
  std::vector<std::string> all;
  for (const Cache& cache : caches) all.push_back(described(*cache));
  return all;
}

TEST(CacheRecordTest, NewCacheIsZeroAndEmpty) {
  const tag_CFG_STREAM_CACHE_T cache;
  EXPECT_EQ(cache.s32Id, 0);
  EXPECT_EQ(cache.strName, "");
  EXPECT_EQ(cache.s32BufSize, 0);
  EXPECT_EQ(cache.s32BufUnit, 0);
  EXPECT_EQ(cache.s32EnabledSrc, 0);
  EXPECT_EQ(cache.s32AllowedMask, 0);
}

struct CacheModel {
  std::int32_t s32Id;
  std::string strName;
  std::int32_t s32BufSize;
  std::int32_t s32BufUnit;
  std::int32_t s32EnabledSrc;
  std::int32_t s32AllowedMask;
};

TEST(CacheRecordTest, CacheIsPlainAndItsFieldsLieInTheOrderOfTheInterface) {
  using Record = tag_CFG_STREAM_CACHE_T;
  EXPECT_FALSE(std::is_polymorphic<Record>::value);
  EXPECT_EQ(
      layoutOf(&Record::s32Id, &Record::strName, &Record::s32BufSize, &Record::s32BufUnit,
               &Record::s32EnabledSrc, &Record::s32AllowedMask),
      layoutOf(&CacheModel::s32Id, &CacheModel::strName, &CacheModel::s32BufSize,
               &CacheModel::s32BufUnit, &CacheModel::s32EnabledSrc, &CacheModel::s32AllowedMask));
}

class CachesTest : public MediaTest {
 protected:
  CachesTest() : MediaTest(kStreams, "StreamCache") {}

  Outcome load() {
    return observe([this] { return CFG_MPP_LoadStreamCacheConfig(caches); });
  }
  Outcome dump() {
    return observe([this] { return CFG_MPP_DumpStreamCacheConfig(caches); });
  }

  std::string sizeLine(int id, int size, int unit) const {
    return line("Info", "StreamCache[" + std::to_string(id) + "] size " + std::to_string(size) +
                            " x " + std::to_string(unit));
  }
  std::string selectLine(int id, int source) const {
    return line("Info", "StreamCache[" + std::to_string(id) +
                            "] no enabled StreamSource, default select " + std::to_string(source) +
                            ".");
  }

  Caches caches;
};

TEST_F(CachesTest, CacheLoadsWithItsLargestSizeItsSourcesAndTheDefaultOne) {
  give(R"(<Cache Id="0" Name="c0" BufferSizeKB="512" BufferSizeB="1000">
    <AllowedStreamSource Id="0"/>
    <AllowedStreamSource Id="2" Default="1"/>
</Cache>
)");
  EXPECT_EQ(load(), (Outcome{0, sizeLine(0, 512, 1024)}));
  EXPECT_THAT(described(caches), ElementsAre("0 \"c0\" 512 x 1024 mask 5 carries 2"));
  EXPECT_EQ(caches.front().use_count(), 1);
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(CachesTest, CachesLoadInDocumentOrderWhateverTheirNumbers) {
  give(
      R"(<Cache Id="9" Name="same" BufferSizeB="1"><AllowedStreamSource Id="1" Default="1"/></Cache>
<Cache Id="3" Name="same" BufferSizeMB="2"><AllowedStreamSource Id="2" Default="1"/></Cache>
<Cache Id="9" Name="" BufferSizeB="3"><AllowedStreamSource Id="0" Default="1"/></Cache>
)");
  EXPECT_EQ(load(), (Outcome{0, sizeLine(9, 1, 1) + sizeLine(3, 2, 1048576) + sizeLine(9, 3, 1)}));
  EXPECT_THAT(described(caches), ElementsAre("9 \"same\" 1 x 1 mask 2 carries 1",
                                             "3 \"same\" 2 x 1048576 mask 4 carries 2",
                                             "9 \"\" 3 x 1 mask 1 carries 0"));
}

TEST_F(CachesTest, ElementNamesMatchInAnyCaseAndOthersPassUnnoticed) {
  give(R"(<!-- comment -->
<Caches Id="5"/>
<cACHE Id="0" Name="c" BufferSizeB="1">text<!-- comment -->
    <AllowedStreamSources Id="9" Default="1"/>
    <ALLOWEDSTREAMSOURCE Id="4" Default="1"/>
    <allowedstreamsource Id="5"/>
    <Cache/>
</cACHE>
text
)");
  EXPECT_EQ(load(), (Outcome{0, sizeLine(0, 1, 1)}));
  EXPECT_THAT(described(caches), ElementsAre("0 \"c\" 1 x 1 mask 48 carries 4"));
}

TEST_F(CachesTest, EmptySectionLoadsAsAnEmptyList) {
  give("");
  caches = {make(9, "old", 1, 1, 1, 0)};
  EXPECT_EQ(load(), (Outcome{0, ""}));
  EXPECT_THAT(caches, IsEmpty());
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(CachesTest, EachRecordIsOneAllocationWithItsCount) {
  const auto allocationsFor = [this](const std::string& name) {
    return allocationsOfLoading("<" + name + R"( Id="1" Name="a" BufferSizeB="2">)" +
                                    R"(<AllowedStreamSource Id="3"/></)" + name + ">",
                                CFG_MPP_LoadStreamCacheConfig);
  };
  // The other one is the list's.
  EXPECT_EQ(allocationsFor("Cache"), allocationsFor("Other") + 2);
}

TEST_F(CachesTest, FailedOpenLeavesTheListAsItWas) {
  device.write(CFG_FILE_MPP, "<Stream/>");
  caches = {make(9, "old", 1, 1, 1, 0)};
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, line("Error", "<StreamCache> not found")}));
  EXPECT_THAT(described(caches), ElementsAre("9 \"old\" 1 x 1 mask 1 carries 0"));
  EXPECT_EQ(state(), "closed, unlocked");
}

// A faulty cache, what is printed about it, and whether the document is left open.
struct CacheFault {
  std::string entry;
  std::string output;
  const char* state = "closed, unlocked";
};
void PrintTo(const CacheFault& fault, std::ostream* out) {
  *out << fault.entry;
}

class CacheFaultTest : public CachesTest, public testing::WithParamInterface<CacheFault> {};

TEST_P(CacheFaultTest, StopsTheLoadAndKeepsTheCachesBeforeIt) {
  const std::string good =
      R"(" Name="good" BufferSizeB="8"><AllowedStreamSource Id="3" Default="1"/></Cache>)";
  give("<Cache Id=\"7" + good + "\n" + GetParam().entry + "\n<Cache Id=\"8" + good + "\n");
  caches = {make(9, "old", 1, 1, 1, 0)};
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, sizeLine(7, 8, 1) + GetParam().output}));
  EXPECT_THAT(described(caches), ElementsAre("7 \"good\" 8 x 1 mask 8 carries 3"));
  EXPECT_EQ(state(), GetParam().state);
}

const std::string kFrame = "][CFG][MppStream]: ";
const std::string kCacheNoId =
    "[Error" + kFrame + "Attr `Id` is required by " + kCachePath + " .\n";
const std::string kCacheNoName =
    "[Error" + kFrame + "Attr `Name` is required by " + kCachePath + " .\n";
const std::string kNoAllowedId =
    "[Error" + kFrame + "Attr `Id` is required by " + kAllowedPath + " .\n";
const std::string kSizeMissing = "[Error" + kFrame + kNoSize + "\n";
const std::string kNoneAllowed = "[Info" + kFrame + "StreamCache[1] size 2 x 1\n[Error" + kFrame +
                                 "StreamCache[1] no allowed StreamSource!\n";
const std::string kSize = "[Info" + kFrame + "StreamCache[1] size 2 x 1\n";

INSTANTIATE_TEST_SUITE_P(
    All, CacheFaultTest,
    testing::Values(
        CacheFault{R"(<Cache/>)", kCacheNoId},
        CacheFault{R"(<Cache Name="c" BufferSizeB="2"/>)", kCacheNoId},
        CacheFault{R"(<Cache Id="-1" Name="c" BufferSizeB="2"/>)", kCacheNoId},
        CacheFault{R"(<Cache Id="one" Name="c" BufferSizeB="2"/>)", kCacheNoId},
        CacheFault{R"(<Cache Id="" Name="c" BufferSizeB="2"/>)", kCacheNoId},
        CacheFault{R"(<Cache id="1" Name="c" BufferSizeB="2"/>)", kCacheNoId},
        CacheFault{R"(<Cache Id="1" Name="c"/>)", kSizeMissing, "open, unlocked"},
        CacheFault{R"(<Cache Id="1"/>)", kSizeMissing, "open, unlocked"},
        CacheFault{R"(<Cache Id="1" Name="c" BufferSizeB="-1" BufferSizeKB="x" BufferSizeMB=""/>)",
                   kSizeMissing, "open, unlocked"},
        CacheFault{R"(<Cache Id="1" Name="c" BufferSize="5" buffersizeb="6"/>)", kSizeMissing,
                   "open, unlocked"},
        CacheFault{R"(<Cache Id="1" BufferSizeB="2"/>)", kCacheNoName},
        CacheFault{R"(<Cache Id="1" name="c" BufferSizeB="2"/>)", kCacheNoName},
        CacheFault{R"(<Cache Id="1" Name="c" BufferSizeB="2"/>)", kNoneAllowed},
        CacheFault{R"(<Cache Id="1" Name="c" BufferSizeB="2"><Other Id="3"/></Cache>)",
                   kNoneAllowed},
        CacheFault{
            R"(<Cache Id="1" Name="c" BufferSizeB="2"><AllowedStreamSource Id="-1"/></Cache>)",
            kSize + kNoAllowedId},
        CacheFault{
            R"(<Cache Id="1" Name="c" BufferSizeB="2"><AllowedStreamSource Id="4" Default="1"/>)"
            R"(<AllowedStreamSource Id="-1"/></Cache>)",
            kSize + kNoAllowedId}));

TEST_F(CachesTest, DocumentThatAMissingSizeLeavesOpenIsDroppedByTheNextLoad) {
  give("<Cache Id=\"1\" Name=\"c\"/>\n");
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, line("Error", kNoSize)}));
  EXPECT_EQ(state(), "open, unlocked");
  give("");
  EXPECT_EQ(load(), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
}

// Size attributes, and the size and unit that come of them.
struct Size {
  const char* attributes;
  int size;
  int unit;
};
void PrintTo(const Size& size, std::ostream* out) {
  *out << size.attributes;
}

class CacheSizeTest : public CachesTest, public testing::WithParamInterface<Size> {};

TEST_P(CacheSizeTest, IsTheLargestInBytesAsSigned32BitNumbers) {
  give(std::string("<Cache Id=\"6\" Name=\"c\" ") + GetParam().attributes +
       "><AllowedStreamSource Id=\"0\" Default=\"1\"/></Cache>\n");
  EXPECT_EQ(load(), (Outcome{0, sizeLine(6, GetParam().size, GetParam().unit)}));
  ASSERT_EQ(caches.size(), 1u);
  EXPECT_EQ(caches.front()->s32BufSize, GetParam().size);
  EXPECT_EQ(caches.front()->s32BufUnit, GetParam().unit);
}

constexpr int kMin = -2147483647 - 1;

INSTANTIATE_TEST_SUITE_P(
    Alone, CacheSizeTest,
    testing::Values(Size{"BufferSizeB=\"1000\"", 1000, 1}, Size{"BufferSizeB=\"0\"", 0, 1},
                    Size{"BufferSizeKB=\"512\"", 512, 1024}, Size{"BufferSizeKB=\"0\"", 0, 1024},
                    Size{"BufferSizeMB=\"3\"", 3, 1048576}, Size{"BufferSizeMB=\"0\"", 0, 1048576},
                    Size{"BufferSizeB=\"2147483647\"", 2147483647, 1},
                    Size{"BufferSizeKB=\"2097151\"", 2097151, 1024},
                    Size{"BufferSizeMB=\"2047\"", 2047, 1048576}));

INSTANTIATE_TEST_SUITE_P(
    Several, CacheSizeTest,
    testing::Values(Size{R"(BufferSizeB="1048576" BufferSizeKB="1024")", 1048576, 1},
                    Size{R"(BufferSizeMB="1" BufferSizeKB="1024")", 1024, 1024},
                    Size{R"(BufferSizeMB="1" BufferSizeKB="1024" BufferSizeB="1048576")", 1048576,
                         1},
                    Size{R"(BufferSizeB="1025" BufferSizeKB="1")", 1025, 1},
                    Size{R"(BufferSizeB="1023" BufferSizeKB="1")", 1, 1024},
                    Size{R"(BufferSizeB="9" BufferSizeKB="1025" BufferSizeMB="1")", 1025, 1024},
                    Size{R"(BufferSizeB="9" BufferSizeKB="1023" BufferSizeMB="1")", 1, 1048576},
                    Size{R"(BufferSizeB="-5" BufferSizeMB="-1")", -5, 1}));

// 2 GiB and more, and less than nothing.
INSTANTIATE_TEST_SUITE_P(
    Wrapped, CacheSizeTest,
    testing::Values(
        Size{"BufferSizeKB=\"2097152\"", -1, 1}, Size{"BufferSizeMB=\"2048\"", -1, 1},
        Size{"BufferSizeKB=\"4194303\"", -1, 1}, Size{"BufferSizeKB=\"4194304\"", 4194304, 1024},
        Size{R"(BufferSizeKB="4194305" BufferSizeB="1000")", 4194305, 1024},
        Size{R"(BufferSizeMB="4097" BufferSizeKB="1025")", 1025, 1024},
        Size{R"(BufferSizeMB="2147483647" BufferSizeB="5")", 5, 1},
        Size{"BufferSizeB=\"-5\"", -5, 1}, Size{"BufferSizeB=\"-1024\"", -1024, 1},
        Size{"BufferSizeB=\"-1025\"", -1, 1024}, Size{"BufferSizeB=\"-2147483648\"", -1, 1024},
        Size{R"(BufferSizeB="-2147483648" BufferSizeKB="2097152")", -1, 1048576},
        Size{R"(BufferSizeB="-2147483648" BufferSizeKB="2097152" BufferSizeMB="2048")", kMin, 1}));

// The entries of cache 4, and what the record and the console show of them.
struct Whitelist {
  const char* entries;
  int mask;
  int carries;
  std::string output;
};
void PrintTo(const Whitelist& whitelist, std::ostream* out) {
  *out << whitelist.entries;
}

class WhitelistTest : public CachesTest, public testing::WithParamInterface<Whitelist> {};

TEST_P(WhitelistTest, ReportsTheSourcesAllowedAndTheOneCarried) {
  give(std::string("<Cache Id=\"4\" Name=\"c\" BufferSizeB=\"1\">") + GetParam().entries +
       "</Cache>\n");
  EXPECT_EQ(load(), (Outcome{0, sizeLine(4, 1, 1) + GetParam().output}));
  ASSERT_EQ(caches.size(), 1u);
  EXPECT_EQ(caches.front()->s32AllowedMask, GetParam().mask);
  EXPECT_EQ(caches.front()->s32EnabledSrc, GetParam().carries);
  EXPECT_EQ(state(), "closed, unlocked");
}

std::string selected(int source) {
  return "[Info" + kFrame + "StreamCache[4] no enabled StreamSource, default select " +
         std::to_string(source) + ".\n";
}

std::string ignored(int kept, int source) {
  return "[Warning" + kFrame + "StreamCache[4] already enabled StreamSource[" +
         std::to_string(kept) + "], ignore enable " + std::to_string(source) + ".\n";
}

INSTANTIATE_TEST_SUITE_P(
    LastOneByDefault, WhitelistTest,
    testing::Values(Whitelist{R"(<AllowedStreamSource Id="1"/><AllowedStreamSource Id="3"/>)", 10,
                              3, selected(3)},
                    Whitelist{R"(<AllowedStreamSource Id="3"/><AllowedStreamSource Id="1"/>)", 10,
                              1, selected(1)},
                    Whitelist{R"(<AllowedStreamSource Id="3" Default="0"/>)", 8, 3, selected(3)},
                    Whitelist{R"(<AllowedStreamSource Id="3" Default="true"/>)", 8, 3, selected(3)},
                    Whitelist{R"(<AllowedStreamSource Id="3" default="1"/>)", 8, 3, selected(3)},
                    Whitelist{
                        R"(<AllowedStreamSource Id="2" Enable="1"/><AllowedStreamSource Id="3"/>)",
                        12, 3, selected(3)}));

INSTANTIATE_TEST_SUITE_P(
    FirstMarkedOne, WhitelistTest,
    testing::Values(
        Whitelist{R"(<AllowedStreamSource Id="2" Default="1"/><AllowedStreamSource Id="3"/>)", 12,
                  2, ""},
        Whitelist{R"(<AllowedStreamSource Id="2" Default="-7"/>)", 4, 2, ""},
        Whitelist{R"(<AllowedStreamSource Id="2" Default="1"/>)"
                  R"(<AllowedStreamSource Id="3" Default="1"/>)",
                  12, 2, ignored(2, 3)},
        Whitelist{R"(<AllowedStreamSource Id="2" Default="1"/>)"
                  R"(<AllowedStreamSource Id="2" Default="2"/>)"
                  R"(<AllowedStreamSource Id="0" Default="3"/>)",
                  5, 2, ignored(2, 2) + ignored(2, 0)}));

INSTANTIATE_TEST_SUITE_P(
    CarriedNumber, WhitelistTest,
    testing::Values(
        Whitelist{"<AllowedStreamSource/>", 16, 4, selected(4)},
        Whitelist{"<AllowedStreamSource Default=\"1\"/>", 16, 4, ""},
        Whitelist{R"(<AllowedStreamSource Id="none"/><AllowedStreamSource Id="6"/>)", 80, 6,
                  selected(6)},
        Whitelist{R"(<AllowedStreamSource Id="6"/><AllowedStreamSource/>)", 64, 6, selected(6)},
        Whitelist{R"(<AllowedStreamSource Id="6"/><AllowedStreamSource Id="" Default="1"/>)", 64, 6,
                  ""}));

INSTANTIATE_TEST_SUITE_P(
    NumberModulo32, WhitelistTest,
    testing::Values(
        Whitelist{R"(<AllowedStreamSource Id="33" Default="1"/>)", 2, 33, ""},
        Whitelist{R"(<AllowedStreamSource Id="31" Default="1"/>)", kMin, 31, ""},
        Whitelist{R"(<AllowedStreamSource Id="-2" Default="1"/>)", 1 << 30, -2, ""},
        Whitelist{R"(<AllowedStreamSource Id="-32" Default="1"/>)", 1, -32, ""},
        Whitelist{R"(<AllowedStreamSource Id="2147483647" Default="1"/>)", kMin, 2147483647, ""},
        Whitelist{R"(<AllowedStreamSource Id="-2147483648" Default="1"/>)", 1, kMin, ""}));

TEST_F(CachesTest, WhitelistOfOneCacheIsNotCarriedToTheNext) {
  give(R"(<Cache Id="1" Name="a" BufferSizeB="1"><AllowedStreamSource Id="9" Default="1"/></Cache>
<Cache Id="2" Name="b" BufferSizeB="1"><AllowedStreamSource/></Cache>
)");
  EXPECT_EQ(load(), (Outcome{0, sizeLine(1, 1, 1) + sizeLine(2, 1, 1) + selectLine(2, 2)}));
  EXPECT_THAT(described(caches),
              ElementsAre("1 \"a\" 1 x 1 mask 512 carries 9", "2 \"b\" 1 x 1 mask 4 carries 2"));
}

TEST_F(CachesTest, DumpWritesAttributesInOrderAndSourcesInAscendingOrder) {
  give("");
  caches = {make(5, "a<b", 512, 1024, 0b1010, 3), make(-1, "", 4, 1048576, 0b1, 0),
            make(7, "c", 1000, 1, 0b10100, 9)};
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved(R"(<Cache Id="5" Name="a&lt;b" BufferSizeKB="512">
    <AllowedStreamSource Id="1"/>
    <AllowedStreamSource Id="3" Default="1"/>
</Cache>
<Cache Id="-1" Name="" BufferSizeMB="4">
    <AllowedStreamSource Id="0" Default="1"/>
</Cache>
<Cache Id="7" Name="c" BufferSizeB="1000">
    <AllowedStreamSource Id="2"/>
    <AllowedStreamSource Id="4"/>
</Cache>
)");
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(CachesTest, DumpWritesNoSizeOfAnotherUnitAndNoSourcesOfAMaskBelowOne) {
  give("");
  caches = {make(1, "a", 3, 512, 0, 0), make(2, "b", 4, 0, kMin, 31), make(3, "c", 5, -1, -1, 2)};
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved(R"(<Cache Id="1" Name="a"/>
<Cache Id="2" Name="b"/>
<Cache Id="3" Name="c"/>
)");
}

TEST_F(CachesTest, DumpWritesEveryBitOfTheLargestMask) {
  give("");
  caches = {make(1, "a", 1, 1, 2147483647, 30)};
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved("<Cache Id=\"1\" Name=\"a\" BufferSizeB=\"1\">\n" + everySource("Default") +
              "</Cache>\n");
}

TEST_F(CachesTest, LoadAndDumpKeepTheSmallerOfTwoEqualUnits) {
  give(R"(<Cache Id="1" Name="a" BufferSizeKB="1024" BufferSizeB="1048576">)"
       R"(<AllowedStreamSource Id="0" Default="1"/></Cache>)"
       "\n");
  EXPECT_EQ(load().result, 0);
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved(R"(<Cache Id="1" Name="a" BufferSizeB="1048576">
    <AllowedStreamSource Id="0" Default="1"/>
</Cache>
)");
}

TEST_F(CachesTest, DumpReplacesWhateverWasInTheSection) {
  give("<!-- comment -->\ntext\n<Cache Id=\"1\"/>\n<Unknown/>\n");
  caches = {nullptr, make(1, "a", 1, 1, 1, 0), nullptr};
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved(R"(<Cache Id="1" Name="a" BufferSizeB="1">
    <AllowedStreamSource Id="0" Default="1"/>
</Cache>
)");
}

TEST_F(CachesTest, DumpOfAnEmptyListLeavesAnEmptySection) {
  give("<Cache Id=\"1\"/>\n");
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved("");
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(CachesTest, DumpThatCannotOpenTheSectionWritesNothing) {
  device.write(CFG_FILE_MPP, "<Stream><StreamSource/></Stream>");
  EXPECT_EQ(dump(), (Outcome{CFG_MPP_ERR, line("Error", "<StreamCache> not found")}));
  EXPECT_EQ(device.read(CFG_FILE_MPP), "<Stream><StreamSource/></Stream>");
  EXPECT_FALSE(device.exists(kBackupCopy));
  EXPECT_EQ(state(), "closed, unlocked");
}

// A cache that allows some source, carries one of these, and is not too large for its numbers.
Cache randomCache(RandomValues& random) {
  struct Unit {
    int bytes;
    int largest;
  };
  constexpr Unit kUnits[] = {{1, 2147483647}, {1024, 2097151}, {1048576, 2047}};
  const Unit unit = kUnits[random.number(0, 2)];
  const int carried = random.number(0, 29);
  const int mask = random.number(0, (1 << 30) - 1) | 1 << carried;
  return make(random.id(), random.text(), random.number(0, unit.largest), unit.bytes, mask,
              carried);
}

TEST_F(CachesTest, AnyCachesLoadAsTheyWereDumped) {
  RandomValues random;
  SCOPED_TRACE(random.trace());
  give("");
  for (int round = 0; round < 3000 && !HasFailure(); ++round) {
    caches.clear();
    std::string sizes;
    for (int count = random.number(0, 8); count > 0; --count) {
      const Cache cache = randomCache(random);
      sizes += sizeLine(cache->s32Id, cache->s32BufSize, cache->s32BufUnit);
      caches.push_back(cache);
    }
    const std::vector<std::string> before = described(caches);
    ASSERT_EQ(dump(), (Outcome{0, ""}));
    ASSERT_EQ(load(), (Outcome{0, sizes}));
    ASSERT_EQ(described(caches), before);
  }
}

}  // namespace
}  // namespace camcfg::tests
