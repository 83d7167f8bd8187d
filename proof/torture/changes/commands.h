#ifndef CAMCFG_TORTURE_CHANGES_COMMANDS_H
#define CAMCFG_TORTURE_CHANGES_COMMANDS_H

#include <string>
#include <vector>

namespace camcfg::torture {

/// The arguments of a run of the tool. The names below stand for documents.
using Words = std::vector<std::string>;

inline constexpr char kAllSections[] = "@all-sections.json";  ///< changes every section
inline constexpr char kFewSections[] = "@few-sections.json";  ///< changes two files back
inline constexpr char kPresets[] = "@presets.csv";
inline constexpr char kOldSet[] = "@old-set";  ///< a factory set with all that kAllSections changes

/// A command that changes the device, all or nothing. A new one needs a row in kCommands only.
struct ChangingCommand {
  const char* name;
  Words words;
  std::vector<Words> before;  ///< what is run first, undisturbed
  /// A change that is on trial then, without anybody that waits; none: nothing is. The command is one
  /// that ends the trial, and boot whatever it leaves: the old settings are those before the trial,
  /// the new ones those on trial.
  Words tried{};
  bool isOver = false;  ///< the time of the trial is: the new settings must not be found any more
};

const std::vector<ChangingCommand>& changingCommands();

/// Those that end a trial.
const std::vector<ChangingCommand>& endsOfTrials();

/// All of them.
std::vector<ChangingCommand> allCommands();

/// A command that changes a setting that none of them changes: it finishes what was interrupted and
/// then makes its own change.
const Words& anotherChange();

/// What brings an interrupted change to its end.
enum class Recovery { Boot, Verify, AnotherChange };
inline constexpr Recovery kRecoveries[] = {Recovery::Boot, Recovery::Verify,
                                           Recovery::AnotherChange};

const Words& wordsOf(Recovery recovery);

}  // namespace camcfg::torture

#endif
