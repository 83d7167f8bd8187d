#include "media/service_test.h"
#include "support/random_values.h"

namespace camcfg::tests {
namespace {

using tinyxml2::XMLElement;

constexpr int kRounds = 3000;

class LiveMediaPropertyTest : public LiveMediaTest {
 protected:
  LiveMediaPropertyTest() : LiveMediaTest("Any") {}

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

TEST_F(LiveMediaPropertyTest, WebsocketSessionsComeBackAsTheyWereDumped) {
  expectRoundTrips(
      CFG_LM_DumpWebsocketConfig, CFG_LM_LoadWebsocketConfig,
      [this] {
        return listOf([this] { return tag_CFG_WEBSOCKET_SESSION_T{random.text(), random.id()}; });
      },
      [](const WebsocketList& dumped) { return dumped; });
}

TEST_F(LiveMediaPropertyTest, RtspSessionsComeBackAsTheyWereDumped) {
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

TEST_F(LiveMediaPropertyTest, NdiSessionsComeBackWithTheDiscoveryServerOff) {
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

TEST_F(LiveMediaPropertyTest, SrtInstancesComeBackLessWhatIsNotWrittenOrNotRead) {
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

TEST_F(LiveMediaPropertyTest, RtmpTargetsAreLoadedAsStoredAndNeverChangedByADump) {
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

  static constexpr const char* kNames[] = {"Channel",  "channel",  "MediaGroup", "Target",
                                           "Instance", "INSTANCE", "Stream",     "Foo"};
  static constexpr const char* kAttributes[] = {
      "Id",       "Name",         "Type",        "url",  "username", "password", "Enable", "Mode",
      "Hostname", "MulticastTTL", "MulticastIp", "Port", "AesMode",  "Latency",  "Default"};
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

TEST_F(LiveMediaPropertyTest, AnyWellFormedSectionIsEitherLoadedAndClosedOrReportedAndLeftOpen) {
  struct Kind {
    const char* section;
    Outcome (*load)();
  };
  static const Kind kKinds[] = {
      {"WEBSOCKET", [] { return loadAny(CFG_LM_LoadWebsocketConfig); }},
      {"RTSP", [] { return loadAny(CFG_LM_LoadRtspConfig); }},
      {"RTMP", [] { return loadAny(CFG_LM_LoadRtmpConfig); }},
      {"NDI", [] { return loadAny(CFG_LM_LoadNdiConfig); }},
      {"SRT", [] { return loadAny(CFG_LM_LoadSrtConfig); }},
  };
  SCOPED_TRACE(random.trace());
  RandomSection sections(random);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const Kind& kind = kKinds[round % static_cast<int>(std::size(kKinds))];
    const std::string section = sections.named(kind.section);
    giveSections(section);
    const Outcome outcome = kind.load();
    SCOPED_TRACE(section);
    const std::string success = info(std::string("Load ") + kind.section + " Config success.");
    if (outcome.result == 0) {
      EXPECT_THAT(outcome.output, testing::EndsWith(success));
      EXPECT_EQ(state(), "closed, unlocked");
    } else {
      EXPECT_EQ(outcome.result, CFG_LM_ERR);
      EXPECT_THAT(outcome.output, testing::Not(testing::HasSubstr(success)));
      EXPECT_THAT(outcome.output,
                  testing::AnyOf(testing::EndsWith("> .\n"), testing::EndsWith("instance.\n")));
      EXPECT_EQ(state(), "open, unlocked");
    }
  }
}

}  // namespace
}  // namespace camcfg::tests
