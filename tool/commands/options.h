#ifndef CAMCFG_TOOL_COMMANDS_OPTIONS_H
#define CAMCFG_TOOL_COMMANDS_OPTIONS_H

namespace camcfg::tool::commands {

// Names that several commands give to what they take. What is in a place is completed by its
// name, see addWords.

constexpr char kCard[] = "CARD";
constexpr char kField[] = "FIELD";
constexpr char kFile[] = "FILE";
constexpr char kId[] = "ID";
constexpr char kKey[] = "KEY";
constexpr char kKind[] = "KIND";
constexpr char kLanguage[] = "LANGUAGE";
constexpr char kName[] = "NAME";
constexpr char kPreset[] = "PRESET";
constexpr char kSection[] = "SECTION";
constexpr char kSource[] = "SOURCE";
constexpr char kValue[] = "VALUE";

constexpr char kDryRun[] = "--dry-run";
constexpr char kFactory[] = "--factory";
constexpr char kForce[] = "--force";
constexpr char kFormat[] = "--format";
constexpr char kSectionOption[] = "--section";
constexpr char kShowSecrets[] = "--show-secrets";

}  // namespace camcfg::tool::commands

#endif
