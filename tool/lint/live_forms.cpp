#include "lint/live_forms.h"

namespace camcfg::tool::lint {
namespace {

constexpr char kTop[] = "LiveMediaService";

const EntryForm& namedChannel() {
  static const EntryForm form = {
      "Channel", {{"Id", Form::Integer, Need::Required}, {"Name", Form::Text, Need::Required}}, {}};
  return form;
}

const EntryForm& typedChannel() {
  static const EntryForm form = {
      "Channel", {{"Id", Form::Integer, Need::Required}, {"Type", Form::Text, Need::Required}}, {}};
  return form;
}

}  // namespace

const SectionForm& websocketForm() {
  static const SectionForm form = {kTop, "WEBSOCKET", true, {namedChannel()}};
  return form;
}

const SectionForm& rtspForm() {
  static const SectionForm form = {
      kTop,
      "RTSP",
      true,
      {{"MediaGroup", {{"Name", Form::Text, Need::Required}}, {namedChannel()}}}};
  return form;
}

// Saving this section changes no file.
const SectionForm& rtmpForm() {
  static const SectionForm form = {kTop,
                                   "RTMP",
                                   false,
                                   {{"Target",
                                     {{"Id", Form::Integer, Need::Required},
                                      {"Enable", Form::Switch, Need::Optional},
                                      {"url", Form::Text, Need::Required},
                                      {"username", Form::Text, Need::Expected},
                                      {"password", Form::Text, Need::Expected}},
                                     {typedChannel()}}}};
  return form;
}

const SectionForm& ndiForm() {
  static const SectionForm form = {kTop,
                                   "NDI",
                                   true,
                                   {{"Instance",
                                     {{"Id", Form::Integer, Need::Expected},
                                      {"Enable", Form::Switch, Need::Expected},
                                      {"DiscoveryServerEnable", Form::Switch, Need::Optional},
                                      {"DiscoveryServer", Form::Text, Need::Expected},
                                      {"GroupName", Form::Text, Need::Expected},
                                      {"MainStreamName", Form::Text, Need::Expected},
                                      {"MulticastEnable", Form::Switch, Need::Optional},
                                      {"MulticastIp", Form::Text, Need::Optional},
                                      {"MulticastNetmask", Form::Text, Need::Optional},
                                      {"MulticastTTL", Form::Integer, Need::Optional}},
                                     {typedChannel()}}}};
  return form;
}

const SectionForm& srtForm() {
  static const SectionForm form = {
      kTop,
      "SRT",
      true,
      {{"Instance",
        {{"Id", Form::Integer, Need::Required},
         {"Mode", Form::Text, Need::Required},
         {"Hostname", Form::Text, Need::Optional},
         {"Port", Form::Integer, Need::Required},
         {"AesMode", Form::Integer, Need::Optional},
         {"Password", Form::Text, Need::Optional},
         {"Latency", Form::Integer, Need::Optional}},
        {{"Stream",
          {{"Id", Form::Text, Need::Required}, {"Default", Form::Integer, Need::Optional}},
          {{"Channel", {{"Id", Form::Integer, Need::Required}}, {}}}}}}}};
  return form;
}

}  // namespace camcfg::tool::lint
