#include "torture/changes/commands.h"

namespace camcfg::torture {

const std::vector<ChangingCommand>& changingCommands() {
  static const Words kImport = {"import", kAllSections};
  static const std::vector<ChangingCommand> kCommands = {
      {"import", kImport, {}},
      {"reset --all", {"reset", "--all", "--yes"}, {kImport}},
      {"set", {"set", "System", "Rtsp", "8554"}, {}},
      {"network set", {"network", "set", "Lan1", "IpAddr", "192.168.90.81"}, {}},
      {"preset import", {"preset", "import", kPresets}, {}},
      {"undo", {"undo"}, {kImport}},
      {"upgrade", {"upgrade", "--from", kOldSet}, {kImport, {"boot"}}},
  };
  return kCommands;
}

const std::vector<ChangingCommand>& endsOfTrials() {
  static const Words kImport = {"import", kAllSections};
  static const std::vector<ChangingCommand> kCommands = {
      {"confirm", {"confirm"}, {}, kImport},
      {"rollback", {"list"}, {}, kImport, true},
  };
  return kCommands;
}

std::vector<ChangingCommand> allCommands() {
  std::vector<ChangingCommand> all = changingCommands();
  all.insert(all.end(), endsOfTrials().begin(), endsOfTrials().end());
  return all;
}

const Words& anotherChange() {
  static const Words kWords = {"set", "System", "RtspOverHttp", "8085"};
  return kWords;
}

const Words& wordsOf(Recovery recovery) {
  static const Words kBoot = {"boot"};
  static const Words kVerify = {"verify"};
  if (recovery == Recovery::AnotherChange) return anotherChange();
  return recovery == Recovery::Boot ? kBoot : kVerify;
}

}  // namespace camcfg::torture
