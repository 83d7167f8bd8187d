#include <algorithm>
#include <vector>

#include "media/media_test.h"
#include "media/records.h"
#include "support/random_values.h"

namespace camcfg::tests {
namespace {

using tinyxml2::XMLElement;

constexpr int kRounds = 3000;

class MediaPropertyTest : public MediaTest {
 protected:
  MediaPropertyTest() : MediaTest(kServices, "Any") {}

  void SetUp() override { giveSections("<WEBSOCKET/><RTSP/><RTMP/><NDI/><SRT/>"); }

  template <typename Make>
  auto listOf(Make make) {
    std::list<decltype(make())> list;
    for (int length = random.number(0, 4); length > 0; --length) list.push_back(make());
    return list;
  }

  /// A number that may stand for "none".
  int idOrNone() { return random.chance() ? -1 : random.id(); }

  /// Dumps random lists and expects each to come back, as `expected` says it should.
  template <typename List, typename Make, typename Expected>
  void expectRoundTrips(std::int32_t (*dumper)(const List&), std::int32_t (*loader)(List&),
                        Make make, Expected expected) {
    SCOPED_TRACE(random.trace());
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
      const List dumped = make();
      SCOPED_TRACE(testing::PrintToString(contentsOf(dumped)));
      List loaded;
      EXPECT_EQ(observe([&] { return dumper(dumped); }).result, 0);
      EXPECT_EQ(observe([&] { return loader(loaded); }).result, 0);
      EXPECT_EQ(contentsOf(loaded), expected(dumped));
    }
  }

  RandomValues random;
};

TEST_F(MediaPropertyTest, WebsocketSessionsComeBackAsTheyWereDumped) {
  expectRoundTrips(
      CFG_LM_DumpWebsocketConfig, CFG_LM_LoadWebsocketConfig,
      [this] {
        return listOf([this] { return tag_CFG_WEBSOCKET_SESSION_T{random.text(), random.id()}; });
      },
      [](const WebsocketList& dumped) { return dumped; });
}

TEST_F(MediaPropertyTest, RtspSessionsComeBackAsTheyWereDumped) {
  const auto channel = [this] { return tag_CFG_RTSP_SUBSESSION_T{random.text(), random.id()}; };
  expectRoundTrips(
      CFG_LM_DumpRtspConfig, CFG_LM_LoadRtspConfig,
      [this, channel] {
        return shared(listOf([this, channel] {
          return tag_CFG_RTSP_SESSION_T{random.text(), listOf(channel)};
        }));
      },
      [](const RtspList& dumped) { return contentsOf(dumped); });
}

TEST_F(MediaPropertyTest, NdiSessionsComeBackWithTheDiscoveryServerOff) {
  const auto onOrOff = [this] { return random.chance() ? 1 : 0; };
  expectRoundTrips(
      CFG_LM_DumpNdiConfig, CFG_LM_LoadNdiConfig,
      [this, onOrOff] {
        return listOf([this, onOrOff] {
          return tag_CFG_NDI_SESSION_T{idOrNone(),    onOrOff(),     onOrOff(),     random.text(),
                                       onOrOff(),     random.text(), random.text(), idOrNone(),
                                       random.text(), random.text(), idOrNone(),    idOrNone(),
                                       idOrNone()};
        });
      },
      [](NdiList dumped) {
        for (auto& session : dumped) session.bDiscoveryServerEnable = 0;
        return dumped;
      });
}

TEST_F(MediaPropertyTest, SrtInstancesComeBackLessWhatIsNotWrittenOrNotRead) {
  const auto stream = [this] {
    return tag_CFG_SRT_STREAM_T{random.text(), idOrNone(), listOf([this] { return random.id(); })};
  };
  expectRoundTrips(
      CFG_LM_DumpSrtConfig, CFG_LM_LoadSrtConfig,
      [this, stream] {
        return listOf([this, stream] {
          const int mode = random.number(-1, 2);
          // A caller whose host name is empty cannot be loaded again.
          const std::string hostname = (mode == 0 ? "h" : "") + random.text();
          return tag_CFG_SRT_INSTANCE_T{random.id(), mode,          hostname,   random.id(),
                                        idOrNone(),  random.text(), idOrNone(), listOf(stream)};
        });
      },
      [](SrtList dumped) {
        for (auto& instance : dumped) {
          instance.s32Mode = instance.s32Mode == 0 ? 0 : 1;
          if (instance.s32Mode == 1) instance.strHostname.clear();
          if (instance.s32AesMode < 0) instance.s32AesMode = 0;
        }
        return dumped;
      });
}

// Stores targets as a program has to, since the dumper saves nothing.
void storeTargets(const RtmpList& targets) {
  XMLElement* section = CFG_LM_Open("RTMP", BU_FALSE);
  ASSERT_NE(section, nullptr);
  section->DeleteChildren();
  for (const auto& record : targets) {
    XMLElement* target = section->InsertNewChildElement("Target");
    target->SetAttribute("Id", record.s32Id);
    target->SetAttribute("Enable", record.bEnable != 0);
    target->SetAttribute("url", record.strUrl.c_str());
    target->SetAttribute("username", record.strUsername.c_str());
    target->SetAttribute("password", record.strPassword.c_str());
    for (const auto& [type, id] :
         {std::pair("Video", record.s32VideoId), std::pair("Audio", record.s32AudioId)}) {
      if (id == -1) continue;
      XMLElement* channel = target->InsertNewChildElement("Channel");
      channel->SetAttribute("Id", id);
      channel->SetAttribute("Type", type);
    }
  }
  CFG_LM_CloseWrite();
}

TEST_F(MediaPropertyTest, RtmpTargetsAreLoadedAsStoredAndNeverChangedByADump) {
  const auto makeTargets = [this] {
    return listOf([this] {
      return tag_CFG_RTMP_SESSION_T{random.id(),   random.chance() ? 1 : 0, random.text(),
                                    random.text(), random.text(),           idOrNone(),
                                    idOrNone()};
    });
  };
  SCOPED_TRACE(random.trace());
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const RtmpList stored = makeTargets();
    storeTargets(stored);
    const std::string file = device.read(kMainCopy);
    const RtmpList dumped = makeTargets();
    EXPECT_EQ(observe([&] { return CFG_LM_DumpRtmpConfig(dumped); }).result, 0);
    EXPECT_EQ(state(), "closed, locked");
    EXPECT_EQ(device.read(kMainCopy), file);
    CFG_UnlockFile(text(CFG_FILE_MPP));
    RtmpList loaded;
    EXPECT_EQ(observe([&] { return CFG_LM_LoadRtmpConfig(loaded); }).result, 0);
    EXPECT_EQ(loaded, stored);
  }
}

// Well-formed sections of whatever elements and attributes, most of them known to some service.
class RandomSection {
 public:
  explicit RandomSection(RandomValues& random) : random_(random) {}

  std::string named(const std::string& name, int depth = 0) {
    std::string xml = "<" + name;
    for (const char* attribute : kAttributes)
      if (random_.number(0, 2) > 0)
        xml += std::string(" ") + attribute + "='" + oneOf(kValues) + "'";
    xml += ">";
    if (depth < 4)
      for (int children = random_.number(0, 3); children > 0; --children) xml += content(depth + 1);
    return xml + "</" + name + ">";
  }

 private:
  template <std::size_t count>
  const char* oneOf(const char* const (&choices)[count]) {
    return choices[random_.number(0, static_cast<int>(count) - 1)];
  }

  std::string content(int depth) {
    switch (random_.number(0, 9)) {
      case 0:
        return "text &amp; %s%n";
      case 1:
        return "<!-- comment -->";
      default:
        return named(oneOf(kNames), depth);
    }
  }

  static constexpr const char* kNames[] = {
      "Channel", "channel", "MediaGroup", "Target", "Instance", "INSTANCE",           "Stream",
      "Foo",     "VENC",    "ai",         "AENC",   "Cache",    "AllowedStreamSource"};
  static constexpr const char* kAttributes[] = {
      "Id",      "Name",        "Type",         "url",          "username",    "password",
      "Enable",  "Mode",        "Hostname",     "MulticastTTL", "MulticastIp", "Port",
      "AesMode", "Latency",     "Default",      "ChnId",        "AiId",        "AencId",
      "Enabled", "BufferSizeB", "BufferSizeKB", "BufferSizeMB"};
  static constexpr const char* kValues[] = {
      "0",      "1",         "-1",       "2147483647", "99999999999999999999",
      "x",      "",          "0x7f",     "true",       "Video",
      "AUDIO",  "MainVideo", "Listener", "caller",     "%s%n",
      "Data",   "1",         "2",        "3",          "SubVideo",
      "Caller", "listener",  "4",        "5"};

  RandomValues& random_;
};

template <typename List>
Outcome loadAny(std::int32_t (*loader)(List&)) {
  List list;
  return observe([&] { return loader(list); });
}

/// A section and what the last line about a fault in it may end with.
struct Kind {
  const Family* family;
  const char* section;
  Outcome (*load)();
  std::vector<std::string> closing;  // the document is closed after these
  std::vector<std::string> leavingOpen;
};

void PrintTo(const Kind& kind, std::ostream* out) {
  *out << kind.section;
}

bool endsWithOneOf(const std::string& text, const std::vector<std::string>& endings) {
  return std::any_of(endings.begin(), endings.end(), [&](const std::string& ending) {
    return text.size() >= ending.size() &&
           text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
  });
}

const std::string kMissing = "> .\n";

const Kind kKinds[] = {
    {&kStreams,
     "StreamSource",
     [] { return loadAny(CFG_MPP_LoadStreamSourceConfig); },
     {kMissing},
     {}},
    {&kStreams,
     "StreamCache",
     [] { return loadAny(CFG_MPP_LoadStreamCacheConfig); },
     {kMissing, "no allowed StreamSource!\n"},
     {"buffer size.\n"}},
    {&kServices, "WEBSOCKET", [] { return loadAny(CFG_LM_LoadWebsocketConfig); }, {}, {kMissing}},
    {&kServices, "RTSP", [] { return loadAny(CFG_LM_LoadRtspConfig); }, {}, {kMissing}},
    {&kServices, "RTMP", [] { return loadAny(CFG_LM_LoadRtmpConfig); }, {}, {kMissing}},
    {&kServices, "NDI", [] { return loadAny(CFG_LM_LoadNdiConfig); }, {}, {kMissing}},
    {&kServices,
     "SRT",
     [] { return loadAny(CFG_LM_LoadSrtConfig); },
     {},
     {kMissing, "instance.\n"}},
};

class AnySectionTest : public MediaTest, public testing::WithParamInterface<Kind> {
 protected:
  AnySectionTest() : MediaTest(*GetParam().family, GetParam().section) {}

  // What is printed last about a load that succeeded.
  std::string success() const {
    if (&family() == &kStreams) return "";
    return family().info(std::string("Load ") + GetParam().section + " Config success.");
  }
};

TEST_P(AnySectionTest, IsEitherLoadedAndClosedOrReportedAndLeftAsTheFaultRequires) {
  RandomValues random;
  SCOPED_TRACE(random.trace());
  RandomSection sections(random);
  for (int round = 0; round < kRounds / 5 && !HasFailure(); ++round) {
    const std::string section = sections.named(GetParam().section);
    giveSections(section);
    const Outcome outcome = GetParam().load();
    SCOPED_TRACE(section);
    if (outcome.result == 0) {
      EXPECT_THAT(outcome.output, testing::EndsWith(success()));
      EXPECT_EQ(state(), "closed, unlocked");
      continue;
    }
    EXPECT_EQ(outcome.result, family().failure);
    EXPECT_THAT(outcome.output, testing::Not(testing::HasSubstr("Config success.")));
    const bool leavesOpen = endsWithOneOf(outcome.output, GetParam().leavingOpen);
    EXPECT_TRUE(leavesOpen || endsWithOneOf(outcome.output, GetParam().closing)) << outcome.output;
    EXPECT_EQ(state(), leavesOpen ? "open, unlocked" : "closed, unlocked");
  }
}

INSTANTIATE_TEST_SUITE_P(, AnySectionTest, testing::ValuesIn(kKinds),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace camcfg::tests
