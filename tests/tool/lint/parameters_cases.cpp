#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> parameterCases() {
  return {
      {"parameter-shadowed", kCleanParameters,
       R"(    <Rtsp Cur="554" Def="554" Min="1" Max="65535" Step="1"/>
    <RtspOverHttp Cur="8080" Def="8080" Min="1" Max="65535" Step="1"/>
)",
       R"(    <RtspOverHttp Cur="8080" Def="8080" Min="1" Max="65535" Step="1"/>
    <Rtsp Cur="554" Def="554" Min="1" Max="65535" Step="1"/>
)",
       R"(    <Rtsp Cur="554" Def="554" Min="1" Max="65535" Step="1"/>
    <RtspOverHttp Cur="8080" Def="8080" Min="1" Max="65535" Step="1"/>
)",
       R"(x.xml:7: error: System/Rtsp: a lookup finds <RtspOverHttp> at line 6, which begins with this name [parameter-shadowed]
)"},
      {"parameter-shadowed", kCleanParameters, R"(        <Speed Cur="Fast")",
       R"(        <SpeedUp Cur="a" Def="a" OptTxt="a"/>
        <Speed Cur="Fast")",
       R"(        <SpedUp Cur="a" Def="a" OptTxt="a"/>
        <Speed Cur="Fast")",
       R"(x.xml:13: error: Image/Mode/Speed: a lookup finds <SpeedUp> at line 12, which begins with this name [parameter-shadowed]
)"},
      {"parameter-twice", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>
    <Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>
    <Gains Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(x.xml:11: error: Image/Gain: a lookup finds the one at line 10 [parameter-twice]
)"},
      {"name-in-two-sections", kCleanParameters,
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>
    <Rtsp Cur="a" Def="a" OptTxt="a,b"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>
    <RtspX Cur="a" Def="a" OptTxt="a,b"/>)",
       R"(x.xml:11: warning: Image/Rtsp: a lookup without the section finds System/Rtsp at line 6 [name-in-two-sections]
)"},
      {"name-begins-earlier", kCleanParameters,
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>
    <Web Cur="a" Def="a" OptTxt="a,b"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>
    <WebHttpX Cur="a" Def="a" OptTxt="a,b"/>)",
       R"(x.xml:11: warning: Image/Web: a lookup without the section finds System/WebHttp at line 4 [name-begins-earlier]
)"},
      {"nested-too-deep", kCleanParameters, R"(<Speed Cur="Fast" Def="Slow" OptTxt="Slow,Fast"/>)",
       R"(<Speed Cur="Fast" Def="Slow" OptTxt="Slow,Fast"><Unit/></Speed>)",
       R"(<Speed Cur="Fast" Def="Slow" OptTxt="Slow,Fast"><!-- --></Speed>)",
       R"(x.xml:12: warning: Image/Mode/Speed: no call reads <Unit> at this depth [nested-too-deep]
)"},
      {"usage-shadowed", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Port Usage="abc"/>
    <Port Usage="ab"/>)",
       R"(<Port Usage="ab"/>
    <Port Usage="abc"/>)",
       R"(x.xml:11: error: Image/Port: a lookup of usage 'ab' finds the element at line 10 [usage-shadowed]
)"},
      {"parameter-at-top", kCleanParameters, "<Image>",
       R"(<Zoom Cur="1" Def="1" Min="1" Max="9" Step="1"/>
<Image>)",
       R"(<Zoom Cur="1"/>
<Image>)",
       R"(x.xml:9: error: Zoom is a parameter outside all sections: no call finds it [parameter-at-top]
)"},
      {"options-mixed", kCleanParameters, R"("Auto,Manual")", R"("Auto;Manual,Off")",
       R"("Auto, Manual/Off")",
       R"(x.xml:11: warning: Image/Mode: "OptTxt" separates its texts in more than one way [options-mixed]
)"},
      {"option-twice", kCleanParameters, R"("Auto,Manual")", R"("Auto,Manual,AUTO")",
       R"("Auto,Manual,AUTO2")",
       R"(x.xml:11: warning: Image/Mode: "OptTxt" has 'AUTO' and 'Auto', which differ in case only [option-twice]
)"},
      {"off-step", kCleanParameters, R"(Max="10" Step="2")", R"(Max="11" Step="2")",
       R"(Max="2147483647" Step="2")",
       R"(x.xml:10: warning: Image/Gain: "Max" 11 is not on a step of 2 from 0 [off-step]
)"},
      {"name-empty", kCleanParameters, R"(DeviceName="North Gate")", R"(DeviceName=" ")",
       R"(DeviceName="-")",
       R"(x.xml:3: warning: System/DeviceAttr: "DeviceName" is empty [name-empty]
)"},
      {"port-limits", kCleanParameters, R"(<Rtsp Cur="554" Def="554" Min="1" Max="65535")",
       R"(<Rtsp Cur="554" Def="554" Min="1" Max="65536")",
       R"(<Rtsp Cur="554" Def="554" Min="554" Max="554")",
       R"(x.xml:6: warning: System/Rtsp: "Max" 65536 lets calls set what is not a port (1..65535) [port-limits]
)"},
      {"min-above-max", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="11" Max="10" Step="2"/>)",
       R"(<Gain Cur="0" Def="0" Min="0" Max="0" Step="2"/>)",
       R"(x.xml:10: error: Image/Gain: "Min" 11 is above "Max" 10 [min-above-max]
)"},
      {"outside-limits", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="12" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="10" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(x.xml:10: error: Image/Gain: "Cur" 12 is outside 0..10 [outside-limits]
)"},
      {"outside-limits", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="-2" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="0" Min="0" Max="10" Step="2"/>)",
       R"(x.xml:10: error: Image/Gain: "Def" -2 is outside 0..10 [outside-limits]
)"},
      {"off-step", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="5" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="5" Def="7" Min="1" Max="11" Step="2"/>)",
       R"(x.xml:10: warning: Image/Gain: "Cur" 5 is not on a step of 2 from 0 [off-step]
)"},
      {"bad-step", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="0"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="1"/>)",
       R"(x.xml:10: warning: Image/Gain: "Step" 0 is not an increment [bad-step]
)"},
      {"not-an-option", kCleanParameters, R"(<Mode Cur="Auto" Def="Auto" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Night" Def="Auto" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Night" Def="Auto" OptTxt="Auto,Night">)",
       R"(x.xml:11: error: Image/Mode: "Cur" 'Night' is not among 'Auto,Manual' [not-an-option]
)"},
      {"part-of-option", kCleanParameters, R"(<Mode Cur="Auto" Def="Auto" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Auto" Def="Man" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Auto" Def="Man" OptTxt="Auto;Man;Manual">)",
       R"(x.xml:11: warning: Image/Mode: "Def" 'Man' is only a part of one of 'Auto,Manual' [part-of-option]
)"},
      {"system-missing", kCleanParameters,
       R"(    <WebHttps Cur="443" Def="443" Min="1" Max="65535" Step="1"/>
)",
       "",
       R"(    <WebHttps Cur="8443" Def="8443" Min="1" Max="65535" Step="1"/>
)",
       R"(x.xml:1: warning: System has no <WebHttps>, which CFG_SYSTEM_GetHttpPort reads [system-missing]
)"},
      {"system-shadowed", kCleanParameters,
       R"(    <WebHttp Cur="80" Def="80" Min="1" Max="65535" Step="1"/>
)",
       "",
       R"(    <WebHttp Cur="81" Def="80" Min="1" Max="65535" Step="1"/>
)",
       R"(x.xml:4: error: System has no <WebHttp>, and CFG_SYSTEM_GetHttpPort takes <WebHttps> for it [system-shadowed]
)"},
  };
}

}  // namespace camcfg::tests
