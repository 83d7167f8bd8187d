#include "params/params_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;

class SystemTest : public ParamsTest {
 protected:
  /// Writes a "System" section of these parameters.
  void writeSystem(const std::string& parameters) {
    contents = "<System>" + parameters + "</System>";
    write(contents);
  }
  std::string contents;
};

// --- language ---

TEST_F(SystemTest, LanguageIsReadWithoutATerminator) {
  writeSystem("<Language Cur='thai' OptTxt='english,thai'/>");
  char older[] = "portuguese";
  EXPECT_THAT(observe([&] { return CFG_SYSTEM_GetLanguage(older); }), returnsSilently(0));
  EXPECT_STREQ(older, "thaiuguese");
}

TEST_F(SystemTest, MissingLanguageIsSaidUnderTheNameOfTheParameterCall) {
  writeSystem("<Rtsp Cur='554'/>");
  char out[] = "fallback";
  const auto getLanguage = [&] { return CFG_SYSTEM_GetLanguage(out); };
  EXPECT_THAT(observe(getLanguage), failsSaying("CFG_COM_GetTxtParam", "failed"));
  write("<!-- nothing -->");
  EXPECT_THAT(observe(getLanguage), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(rootFailure("CFG_COM_GetTxtParam")));
  EXPECT_STREQ(out, "fallback");
}

// --- name and model ---

class DeviceNameTest : public SystemTest {
 protected:
  Outcome get(char* nameOut, char* modelOut) {
    return observe([=] { return CFG_SYSTEM_GetDeviceName(nameOut, modelOut); });
  }
  Guarded<char[CFG_TXT_CUR_SIZE]> name;
  Guarded<char[CFG_TXT_CUR_SIZE]> model;
};

TEST_F(DeviceNameTest, BothAreReadWithTheirTerminators) {
  writeSystem("<DeviceAttr DeviceName='Door &amp; yard' DeviceModel='E-4'/>");
  EXPECT_THAT(get(*name.get(), *model.get()), returnsSilently(0));
  EXPECT_TRUE(name.isText(*name.get(), "Door & yard"));
  EXPECT_TRUE(model.isText(*model.get(), "E-4"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DeviceNameTest, EitherOrBothMayBeLeftOut) {
  writeSystem("<DeviceAttr DeviceName='Door' DeviceModel='E-4'/>");
  EXPECT_THAT(get(nullptr, *model.get()), returnsSilently(0));
  EXPECT_TRUE(model.isText(*model.get(), "E-4"));
  EXPECT_THAT(get(*name.get(), nullptr), returnsSilently(0));
  EXPECT_TRUE(name.isText(*name.get(), "Door"));
  EXPECT_THAT(get(nullptr, nullptr), returnsSilently(0));
}

TEST_F(DeviceNameTest, SectionIsFoundByItsWholeNameAndTheElementByItsBeginning) {
  write(
      "<SystemOld><DeviceAttr DeviceName='a' DeviceModel='a'/></SystemOld>"
      "<System><DeviceAttributes DeviceName='b' DeviceModel='b'/>"
      "<DeviceAttr DeviceName='c' DeviceModel='c'/></System>");
  EXPECT_THAT(get(*name.get(), *model.get()), returnsSilently(0));
  EXPECT_TRUE(name.isText(*name.get(), "b"));
}

TEST_F(DeviceNameTest, MissingAttributeFailsSilentlyAndCopiesNothing) {
  for (const char* parameters :
       {"<DeviceAttr DeviceName='Door'/>", "<DeviceAttr DeviceModel='E-4'/>", "<DeviceAttr/>", "",
        "<Other DeviceName='Door' DeviceModel='E-4'/>"}) {
    writeSystem(parameters);
    EXPECT_THAT(get(*name.get(), *model.get()), returnsSilently(-1)) << parameters;
    EXPECT_THAT(get(nullptr, nullptr), returnsSilently(-1)) << parameters;
  }
  write("<Other><DeviceAttr DeviceName='Door' DeviceModel='E-4'/></Other>");
  EXPECT_THAT(get(*name.get(), *model.get()), returnsSilently(-1));
  EXPECT_TRUE(name.isPattern(*name.get()));
  EXPECT_TRUE(model.isPattern(*model.get()));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DeviceNameTest, TextLongerThanTheBufferIsCutToFit) {
  const std::string longText(1000, 'x');
  writeSystem("<DeviceAttr DeviceName='" + longText + "' DeviceModel='" + longText + "'/>");
  EXPECT_THAT(get(*name.get(), *model.get()), returnsSilently(0));
  EXPECT_TRUE(name.isText(*name.get(), longText.substr(0, CFG_TXT_CUR_SIZE - 1)));
  EXPECT_TRUE(name.guardsIntact());
  EXPECT_TRUE(model.isText(*model.get(), longText.substr(0, CFG_TXT_CUR_SIZE - 1)));
  EXPECT_TRUE(model.guardsIntact());
}

TEST_F(DeviceNameTest, FileWithoutElementsOrThatDoesNotOpenIsLogged) {
  EXPECT_THAT(get(*name.get(), *model.get()), returnsSilently(-1));
  write("<!-- nothing -->");
  EXPECT_THAT(get(*name.get(), *model.get()), returnsSilently(-1));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure(), rootFailure("CFG_SYSTEM_GetDeviceName")));
}

// --- web ports ---

class HttpPortTest : public SystemTest {
 protected:
  Outcome get() {
    return observe([this] { return CFG_SYSTEM_GetHttpPort(&http, &https); });
  }
  Outcome set(int newHttp, int newHttps) {
    return observe([=] { return CFG_SYSTEM_SetHttpPort(newHttp, newHttps); });
  }
  static std::string saved(int newHttp, int newHttps) {
    return "<System>\n    <WebHttp Cur=\"" + std::to_string(newHttp) +
           "\" Min=\"1\" Max=\"9999\"/>\n    <WebHttps Cur=\"" + std::to_string(newHttps) +
           "\" Min=\"1\" Max=\"9999\"/>\n</System>\n";
  }
  const std::string ports =
      "<WebHttp Cur='80' Min='1' Max='9999'/><WebHttps Cur='443' Min='1' Max='9999'/>";
  int http = 0x5a5a5a5a;
  int https = 0x5a5a5a5a;
};

TEST_F(HttpPortTest, BothAreRead) {
  writeSystem(ports);
  EXPECT_THAT(get(), returnsSilently(0));
  EXPECT_EQ(http, 80);
  EXPECT_EQ(https, 443);
}

TEST_F(HttpPortTest, OneIsReadWhenTheOtherCannotBe) {
  writeSystem("<WebHttp Cur='80'/>");
  EXPECT_THAT(get(), returnsSilently(-1));
  EXPECT_EQ(http, 80);
  EXPECT_EQ(https, 0x5a5a5a5a);

  http = 0x5a5a5a5a;
  writeSystem("<WebHttp Cur='none'/><WebHttps Cur='443'/>");
  EXPECT_THAT(get(), returnsSilently(-1));
  EXPECT_EQ(http, 0x5a5a5a5a);
  EXPECT_EQ(https, 443);
}

TEST_F(HttpPortTest, ShorterNameHitsTheLongerElementWhereThatComesFirst) {
  writeSystem("<WebHttps Cur='443'/><WebHttp Cur='80'/>");
  EXPECT_THAT(get(), returnsSilently(0));
  EXPECT_EQ(http, 443);
  EXPECT_EQ(https, 443);
}

// Where both names hit one element, the second of the two stays.
TEST_F(HttpPortTest, HttpComesBeforeHttps) {
  writeSystem("<WebHttps Cur='443' Min='1' Max='9999'/>");
  EXPECT_THAT(set(8080, 8443), returnsSilently(0));
  expectSaved("<System>\n    <WebHttps Cur=\"8443\" Min=\"1\" Max=\"9999\"/>\n</System>\n");

  writeSystem(ports);
  int port = 0;
  EXPECT_EQ(CFG_SYSTEM_GetHttpPort(&port, &port), 0);
  EXPECT_EQ(port, 443);
}

TEST_F(HttpPortTest, NullOutputsAreRefusedOneByOne) {
  writeSystem(ports);
  EXPECT_EQ(CFG_SYSTEM_GetHttpPort(nullptr, &https), -1);
  EXPECT_EQ(https, 443);
  EXPECT_EQ(CFG_SYSTEM_GetHttpPort(&http, nullptr), -1);
  EXPECT_EQ(http, 80);
}

TEST_F(HttpPortTest, BothAreStored) {
  writeSystem(ports);
  EXPECT_THAT(set(8080, 8443), returnsSilently(0));
  expectSaved(saved(8080, 8443));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(HttpPortTest, OneIsStoredWhenTheOtherIsRefused) {
  writeSystem(ports);
  EXPECT_THAT(set(8080, 10000), returnsSilently(-1));
  expectSaved(saved(8080, 443));
  EXPECT_THAT(set(0, 8443), returnsSilently(-1));
  expectSaved(saved(8080, 8443));
}

TEST_F(HttpPortTest, NothingIsStoredWhenBothAreRefused) {
  writeSystem(ports);
  EXPECT_THAT(set(0, 10000), returnsSilently(-1));
  expectUntouched(contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(HttpPortTest, FileThatDoesNotOpenIsTriedTwice) {
  EXPECT_THAT(get(), returnsSilently(-1));
  EXPECT_THAT(set(8080, 8443), returnsSilently(-1));
  EXPECT_THAT(log.records(),
              ElementsAre(loadFailure(), loadFailure(), loadFailure(), loadFailure()));
  log.clear();
  write("<!-- nothing -->");
  EXPECT_THAT(get(), returnsSilently(-1));
  EXPECT_THAT(set(8080, 8443), returnsSilently(-1));
  EXPECT_THAT(log.records(),
              ElementsAre(rootFailure("CFG_COM_GetIntParam"), rootFailure("CFG_COM_GetIntParam"),
                          rootFailure("CFG_COM_SetIntParam"), rootFailure("CFG_COM_SetIntParam")));
}

// --- RTSP ports ---

// The two ports differ in their element only; both are put to every test.
struct Port {
  const char* element;
  int (*get)();
  int (*set)(int);
};

void PrintTo(const Port& port, std::ostream* out) {
  *out << port.element;
}

class RtspPortTest : public SystemTest, public testing::WithParamInterface<Port> {
 protected:
  void writePort(const std::string& attributes) {
    writeSystem(std::string("<") + GetParam().element + " " + attributes + "/>");
  }
};

INSTANTIATE_TEST_SUITE_P(Ports, RtspPortTest,
                         testing::Values(Port{"Rtsp", CFG_SYSTEM_GetRtspPort,
                                              CFG_SYSTEM_SetRtspPort},
                                         Port{"RtspOverHttp", CFG_SYSTEM_GetRtspOverHttpPort,
                                              CFG_SYSTEM_SetRtspOverHttpPort}),
                         [](const auto& test) { return std::string(test.param.element); });

TEST_P(RtspPortTest, IsRead) {
  writePort("Cur='8554'");
  EXPECT_THAT(observe(GetParam().get), returnsSilently(8554));
}

TEST_P(RtspPortTest, ReadsAsZeroWhenItCannotBeRead) {
  EXPECT_THAT(observe(GetParam().get), returnsSilently(0));
  write("<!-- nothing -->");
  EXPECT_THAT(observe(GetParam().get), returnsSilently(0));
  EXPECT_THAT(log.records(), ElementsAre(loadFailure(), rootFailure("CFG_COM_GetIntParam")));
  log.clear();
  writeSystem("<Language Cur='thai'/>");
  EXPECT_THAT(observe(GetParam().get), returnsSilently(0));
  writePort("Cur='none'");
  EXPECT_THAT(observe(GetParam().get), returnsSilently(0));
  writePort("Def='554'");
  EXPECT_THAT(observe(GetParam().get), returnsSilently(0));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(RtspPortTest, IsStoredWithinItsRangeOnly) {
  writePort("Cur='554' Min='100' Max='200'");
  for (const int refused : {99, 201, -1, 0})
    EXPECT_THAT(observe([=] { return GetParam().set(refused); }), returnsSilently(-1)) << refused;
  expectUntouched(contents);
  EXPECT_THAT(observe([] { return GetParam().set(200); }), returnsSilently(0));
  expectSaved(std::string("<System>\n    <") + GetParam().element +
              " Cur=\"200\" Min=\"100\" Max=\"200\"/>\n</System>\n");
}

TEST_F(SystemTest, RtspPortsAreTwoParameters) {
  writeSystem("<Rtsp Cur='1' Min='0' Max='9'/><RtspOverHttp Cur='2' Min='0' Max='9'/>");
  EXPECT_EQ(CFG_SYSTEM_SetRtspPort(3), 0);
  EXPECT_EQ(CFG_SYSTEM_SetRtspOverHttpPort(4), 0);
  EXPECT_EQ(CFG_SYSTEM_GetRtspPort(), 3);
  EXPECT_EQ(CFG_SYSTEM_GetRtspOverHttpPort(), 4);
}

}  // namespace
}  // namespace camcfg::tests
