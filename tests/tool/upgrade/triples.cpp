#include "tool/upgrade/triples.h"

namespace camcfg::tests {
namespace {

constexpr int kMostParameters = 8;
constexpr const char* kWords[] = {"Auto", "Manual", "Off", "Half"};

// A parameter with its limits: a number, or a text if it is odd.
struct Form {
  bool isThere = true;
  int value = 0;
  int most = 9;
  int step = 1;
};

std::string optionsOf(int most) {
  std::string options;
  for (int i = 0; i <= most % 4; ++i) options += (i == 0 ? "" : ",") + std::string(kWords[i]);
  return options;
}

std::string written(const std::vector<Form>& forms, const std::string& comment) {
  std::string text = "<!-- " + comment + " -->\n<System>\n";
  for (std::size_t i = 0; i < forms.size(); ++i) {
    const Form& form = forms[i];
    if (!form.isThere) continue;
    const std::string name = "    <P" + std::to_string(i) + "x Cur=\"";
    if (i % 2 == 1)
      text += name + kWords[form.value % 4] + "\" OptTxt=\"" + optionsOf(form.most) + "\"/>\n";
    else
      text += name + std::to_string(form.value) + "\" Min=\"0\" Max=\"" +
              std::to_string(form.most) + "\" Step=\"" + std::to_string(form.step) + "\"/>\n";
  }
  return text + "</System>\n";
}

std::string number(int value) {
  return std::to_string(value);
}

}  // namespace

std::string parametersOf(const std::vector<int>& values) {
  std::string text = "<System>\n";
  for (std::size_t i = 0; i < values.size(); ++i)
    text += "    <P" + number(static_cast<int>(i)) + "x Cur=\"" + number(values[i]) +
            "\" Min=\"0\" Max=\"99\"/>\n";
  return text + "</System>\n";
}

Triple Triples::parameters() {
  std::vector<Form> base(kMostParameters);
  for (std::size_t i = 0; i < base.size(); ++i) {
    base[i].isThere = below(8) != 0;
    base[i].most = i % 2 == 1 ? 3 : 9;
    base[i].value = below(base[i].most + 1);
  }
  std::vector<Form> factory = base;
  for (std::size_t i = 0; i < factory.size(); ++i) {
    if (below(6) == 0) factory[i].isThere = !factory[i].isThere;
    if (below(4) == 0) factory[i].most = i % 2 == 1 ? 1 + below(3) : 3 + below(9);
    if (i % 2 == 0 && below(5) == 0) factory[i].step = 2 + below(2);
    // A factory value is permitted.
    const bool isNew = below(3) == 0 || factory[i].value > factory[i].most;
    if (isNew) factory[i].value = below(factory[i].most + 1);
    factory[i].value -= factory[i].value % factory[i].step;
  }
  std::vector<Form> user = base;
  for (Form& form : user)
    if (below(3) == 0) form.value = below(form.most + 1);
  return {written(base, "old"), written(factory, "new"), written(user, "device")};
}

Triples::Values Triples::values(int count, int changes) {
  Values values;
  for (int i = 0; i < count; ++i) values.base.push_back(below(100));
  values.factory = values.user = values.base;
  for (int i = 0; i < changes; ++i) {
    values.factory[static_cast<std::size_t>(below(count))] = below(100);
    values.user[static_cast<std::size_t>(below(count))] = below(100);
  }
  return values;
}

Triples::Records Triples::recordsOf(int ids, const std::vector<std::string>& members, int range) {
  return derived({}, ids, members, range);
}

Triples::Records Triples::derived(Records records, int ids, const std::vector<std::string>& members,
                                  int range) {
  const bool isNew = records.empty();
  for (int id = 0; id < ids; ++id) {
    const int what = below(isNew ? 2 : 8);
    if (what == 1 && !isNew) records.erase(id);
    if (what > 1 || (what == 1 && !isNew)) continue;
    for (const std::string& member : members)
      if (isNew || records.count(id) == 0 || below(2) == 0) records[id][member] = below(range);
  }
  return records;
}

Triple Triples::presets() {
  const std::vector<std::string> members = {"PanPos", "TiltPos", "ZoomPos", "FocusPos",
                                            "FocusMode"};
  // Some descriptions are the same, or begin one another.
  const auto file = [&](Records& records) {
    std::string text = "<PresetCfg>\n";
    for (auto& [id, record] : records) {
      if (record.count("name") == 0) record["name"] = below(30);
      text += "    <preset Id=\"" + number(id) + "\" Description=\"View" + number(record["name"]) +
              "-\"";
      for (const std::string& member : members)
        text += " " + member + "=\"" + number(record[member]) + "\"";
      text += "/>\n";
    }
    return text + "</PresetCfg>\n";
  };
  Records base = recordsOf(6, members, 4);
  Triple triple{file(base), "", ""};
  Records factory = derived(base, 6, members, 4);
  Records user = derived(base, 6, members, 4);
  triple.factory = "<!-- new -->\n" + file(factory);
  triple.user = file(user);
  return triple;
}

Triple Triples::media() {
  const auto file = [](Records& sources, Records& caches, Records& sessions) {
    std::string text = "<Stream>\n<StreamSource>\n";
    for (auto& [id, source] : sources)
      text += "<VENC Id=\"" + number(id) + "\" Name=\"s" + number(source["name"]) + "\" ChnId=\"" +
              number(source["channel"]) + "\"/>\n";
    text += "</StreamSource>\n<StreamCache>\n";
    for (auto& [id, cache] : caches) {
      text += "<Cache Id=\"" + number(id) + "\" Name=\"c" + number(cache["name"]) +
              "\" BufferSizeMB=\"" + number(1 + cache["size"]) + "\">\n";
      text += "<AllowedStreamSource Id=\"" + number(cache["default"]) + "\" Default=\"1\"/>\n";
      for (int source = 0; source < 5; ++source)
        if (source != cache["default"] && cache["allowed" + number(source)] == 0)
          text += "<AllowedStreamSource Id=\"" + number(source) + "\"/>\n";
      text += "</Cache>\n";
    }
    text += "</StreamCache>\n</Stream>\n<LiveMediaService>\n<WEBSOCKET>\n";
    for (auto& [id, session] : sessions)
      text += "<Channel Id=\"" + number(id) + "\" Name=\"w" + number(session["name"]) + "\"/>\n";
    text += "</WEBSOCKET>\n<RTSP/>\n<RTMP/>\n<NDI/>\n<SRT>\n";
    for (auto& [id, session] : sessions)
      text += "<Instance Id=\"" + number(id) + "\" Mode=\"Listener\" Port=\"" +
              number(9000 + session["port"]) + "\"><Stream Id=\"0\" Default=\"1\"><Channel Id=\"" +
              number(session["cache"]) + "\"/></Stream></Instance>\n";
    return text + "</SRT>\n</LiveMediaService>\n";
  };
  const std::vector<std::string> ofSource = {"name", "channel"};
  const std::vector<std::string> ofCache = {"name",     "size",     "default",  "allowed0",
                                            "allowed1", "allowed2", "allowed3", "allowed4"};
  const std::vector<std::string> ofSession = {"name", "port", "cache"};
  Records sources = recordsOf(5, ofSource, 5);
  Records caches = recordsOf(5, ofCache, 5);
  Records sessions = recordsOf(5, ofSession, 5);
  Triple triple{file(sources, caches, sessions), "", ""};
  for (std::string* side : {&triple.factory, &triple.user}) {
    Records otherSources = derived(sources, 5, ofSource, 5);
    Records otherCaches = derived(caches, 5, ofCache, 5);
    Records otherSessions = derived(sessions, 5, ofSession, 5);
    *side = file(otherSources, otherCaches, otherSessions);
  }
  return triple;
}

}  // namespace camcfg::tests
