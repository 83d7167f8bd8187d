#include "device/salvage.h"

#include "commands/groups.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kApply[] = "--apply";

const Table& settingsTable() {
  static const Table table{"settings",
                           {{"FILE", "{file}"},
                            {"SETTING", "{place}"},
                            {"SOURCE", "{source}"},
                            {"BACKUP HAS", "{backup}"},
                            {"VALUE", "{value}"}}};
  return table;
}

Answer salvage(const Arguments& arguments) {
  Answer answer(device::salvage(arguments.files(kFile), arguments.given(kApply)));
  const Json& value = answer.value;
  if (value["files"].empty()) {
    if (answer.status == Status::Done) answer.layout = {Line{"there is nothing to salvage"}};
    return answer;
  }
  answer.layout = {settingsTable()};
  if (!value["notTaken"].empty())
    answer.layout.emplace_back(Table{"notTaken",
                                     {{"NOT TAKEN", "{file}"},
                                      {"COPY", "{copy}"},
                                      {"LINE", "{line}"},
                                      {"WHAT", "{place}"},
                                      {"WHY", "{reason}"}}});
  answer.layout.emplace_back(Table{"files",
                                   {{"FILE", "{name}"},
                                    {"MAIN", "{main!}"},
                                    {"BACKUP", "{backup!}"},
                                    {"FROM MAIN", "{settings/main}"},
                                    {"FROM BACKUP", "{settings/backup}"},
                                    {"DISPUTED", "{settings/disputed}"},
                                    {"FACTORY", "{settings/factory}"}}});
  if (!value["kept"].empty())
    answer.layout.emplace_back(Table{"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}});
  answer.layout.emplace_back(
      Line{value["applied"].get<bool>() ? "written" : "nothing was written; '--apply' writes it"});
  return answer;
}

}  // namespace

CommandGroup salvageGroup() {
  return {"Files",
          {changer("salvage", "Bring back the settings that can be read in damaged files", salvage,
                   {{Option::HostFiles, kFile,
                     "Copies to look at instead of the device's damaged files; - is standard "
                     "input"},
                    {Option::Flag, kApply, "Store what is found; keep the damaged copies"}})}};
}

}  // namespace camcfg::tool::commands
