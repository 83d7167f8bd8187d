#include "document/document.h"

#include <algorithm>

#include "base/concat.h"
#include "base/json_bytes.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "document/factory.h"
#include "document/keyed.h"
#include "media/media.h"
#include "network/network.h"
#include "parameters/parameter.h"
#include "presets/preset.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

// For editors.
constexpr char kSchemaMember[] = "$schema";

std::vector<device::Section> collected() {
  std::vector<device::Section> all = media::sections();
  all.insert(all.end(), {parameters::parametersSection(), network::networkSection(),
                         presets::presetsSection()});
  return all;
}

// "line 3, column 5: " of a byte that is counted from 1.
std::string placeOfByte(std::size_t position, const std::string& text) {
  const std::size_t byte = std::min(position == 0 ? 0 : position - 1, text.size());
  const std::string before = text.substr(0, byte);
  const std::size_t line = before.rfind('\n');
  const std::string start = line == std::string::npos ? before : before.substr(line + 1);
  return concat("line ", 1 + std::count(before.begin(), before.end(), '\n'), ", column ",
                1 + characters(start), ": ");
}

// Of two members of one name the first counts and the second is a fault.
Json parseJson(const std::string& text, settings::Faults& faults) {
  JsonText read = readJson(text);
  if (read.fault != 0) throw Refusal(placeOfByte(read.fault, text) + shortened(read.reason));
  for (const std::string& place : read.repeated) faults.push_back({place, "it occurs here twice"});
  return std::move(read.value);
}

// A document with null in place of its sections.
Json frame() {
  Json frame = {{kSchemaMember, nullptr}, {kVersionMember, nullptr}};
  for (const device::Section& section : allSections()) frame.at_path(pathTo(section)) = nullptr;
  return frame;
}

// Objects from the document down to the sections.
void checkFrame(const settings::Node& node, const Json& frame) {
  if (!node.isObjectOf(frame.names())) return;
  for (const auto& [name, inner] : frame.items())
    if (inner.is_object() && node.value().contains(name)) checkFrame(node.member(name), inner);
}

void checkVersion(const settings::Node& document) {
  if (!document.value().is_object()) return;
  if (!document.value().contains(kVersionMember)) return document.refuseMissing(kVersionMember);
  const settings::Node version = document.member(kVersionMember);
  if (version.value() != kVersion)
    version.refuse(concat("only version ", kVersion, " is supported"));
}

void checkSchema(const settings::Node& document) {
  if (document.value().is_object() && document.value().contains(kSchemaMember))
    document.member(kSchemaMember).text();
}

// Reads the sections of a document, each the way it is meant.
class Reader {
 public:
  Reader(const Json& document, Mode mode, Target& target)
      : document_(document), mode_(mode), target_(target) {}

  void read(const device::Section& section) {
    const Json* stated = document_.is_object() ? document_.find_path(pathTo(section)) : nullptr;
    const bool isOverridden = mode_ == Mode::Override && section.name != kNetwork;
    if (isOverridden && section.name == kParameters)
      overrideParameters(section);
    else if (stated != nullptr)
      readStated(section, *stated);
    else if (isOverridden)
      target_.read(section, factory().whole(section));
  }

  void end() {
    if (factory_) target_.notes = factory_->notes();
  }

 private:
  Factory& factory() {
    if (!factory_) factory_.emplace();
    return *factory_;
  }

  void readStated(const device::Section& section, const Json& stated) {
    const std::size_t faults = target_.faults.size();
    const Json value = withTexts(stated, section.name, [&](const auto& place, const auto& why) {
      target_.faults.push_back({place, why});
    });
    if (target_.faults.size() != faults) return;
    const device::Readable held = readableOf(section);
    if (mode_ == Mode::Merge)
      for (const device::Unread& unread : held.unread) refuseLoss(section, unread);
    const Stated whole(section, value, held.value, mode_, target_.faults);
    const std::size_t read = target_.faults.size();
    target_.read(section, whole.value());
    whole.locate(target_.faults, read);
    if (!target_.force && value != stated)
      refuseNewBytes(section.name, value, held.value, target_.faults);
  }

  void refuseLoss(const device::Section& section, const device::Unread& unread) {
    if (!unread.was.empty())
      target_.faults.push_back(
          {section.name, unread.fault + "; it cannot be merged with, and '--mode replace' "
                                        "deletes it"});
  }

  // All have their factory values but those that are stated.
  void overrideParameters(const device::Section& section) {
    Target stated;
    stated.force = target_.force;
    Reader reader(document_, Mode::Replace, stated);
    reader.read(section);
    target_.faults.insert(target_.faults.end(), stated.faults.begin(), stated.faults.end());
    if (!stated.faults.empty()) return;
    const Json& before = target_.plan.present(section.name);
    Json after = factory().parameters(before, parameters::Parameters().all());
    if (const Json* named = document_.find_path(pathTo(section)))
      for (const auto& [name, values] : named->items())
        for (const std::string& parameter : values.names())
          after[name][parameter] = stated.plan.of(section.name).at(name).at(parameter);
    target_.add(section, before, after);
  }

  const Json& document_;
  const Mode mode_;
  Target& target_;
  std::optional<Factory> factory_;
};

constexpr std::size_t kWidth = 120;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kRecordIndent = 3 * kIndent;  // {"live": {"srt": [RECORD
constexpr std::size_t kOneLine = std::string::npos;

// Down to the records of a list, every one has a line of its own.
bool maybeOnOneLine(const Json& value, std::size_t indent) {
  return indent >= kRecordIndent ||
         (indent > 0 && std::none_of(value.begin(), value.end(),
                                     [](const Json& member) { return member.is_structured(); }));
}

// @param indent  of the line that it is on; kOneLine: it has no line end
// @param taken   what of the line is taken already
std::string printed(const Json& value, std::size_t indent, std::size_t taken) {
  if (!value.is_structured() || value.empty()) return value.dump();
  const bool isLine = indent == kOneLine;
  if (!isLine && maybeOnOneLine(value, indent)) {
    std::string line = printed(value, kOneLine, 0);
    if (taken + line.size() < kWidth) return line;
  }
  const std::size_t inner = isLine ? kOneLine : indent + kIndent;
  const std::string margin = isLine ? "" : "\n" + std::string(inner, ' ');
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const std::string name = value.is_object() ? Json(value.names()[i]).dump() + ": " : "";
    if (i != 0) text += isLine ? ", " : ",";
    text += concat(margin, name, printed(value.at(i), inner, inner + name.size()));
  }
  if (!isLine) text += "\n" + std::string(indent, ' ');
  return value.is_object() ? concat("{", text, "}") : concat("[", text, "]");
}

}  // namespace

const std::vector<device::Section>& allSections() {
  static const std::vector<device::Section> all = collected();
  return all;
}

const device::Section& sectionOf(const std::string& name) {
  return *std::find_if(allSections().begin(), allSections().end(),
                       [&](const device::Section& section) { return section.name == name; });
}

bool isWithin(const device::Section& section, const std::string& name) {
  return section.name == name || beginsWith(section.name, name + ".");
}

std::string pathTo(const device::Section& section) {
  std::string path = section.name;
  std::replace(path.begin(), path.end(), '.', '/');
  return path;
}

void Target::read(const device::Section& section, const Json& stated) {
  read(section, stated, readableOf(section));
}

void Target::read(const device::Section& section, const Json& stated,
                  const device::Readable& held) {
  const auto& [before, unread] = held;
  const Json given =
      section.table == nullptr ? stated : settings::withKeptSecrets(stated, *section.table, before);
  // What the device holds already is not for this document to repair.
  const bool isHeld = given == before && unread.empty();
  const Json after =
      isHeld
          ? before
          : section.read(settings::Node(given, section.name, faults, &before, force), before, plan);
  plan.set(section.name, after);
  if (unread.empty()) return add(section, before, after);
  transitions.push_back({&section, before, after, unread});
}

void Target::add(const device::Section& section, const Json& before, const Json& after) {
  if (after != before) transitions.push_back({&section, before, after});
}

Target readDocument(const std::string& text, Mode mode, bool force) {
  Target target;
  target.force = force;
  const Json document = parseJson(text, target.faults);
  const settings::Node whole(document, "", target.faults);
  checkFrame(whole, frame());
  checkVersion(whole);
  checkSchema(whole);
  Reader reader(document, mode, target);
  std::size_t number = 0;
  for (const device::Section& section : allSections()) {
    const Stage stage(section.name, ++number, allSections().size());
    reader.read(section);
  }
  reader.end();
  return target;
}

void refuseNewBytes(const std::string& place, const Json& stated, const Json& held,
                    settings::Faults& faults) {
  if (stated == held) return;
  if (stated.is_string() && asUtf8(stated.text()) != stated.text())
    faults.push_back({place, "it is not UTF-8; '--force' sets it anyway"});
  for (const auto& [name, member] : stated.items())
    refuseNewBytes(memberPlace(place, name), member, memberOrNothing(held, name), faults);
  if (!stated.is_array()) return;
  const char* key = keyOf({&stated, held.is_array() ? &held : &stated});
  const bool isKeyed = key != nullptr && *key != '\0';
  const Keyed present(held, key == nullptr ? "" : key);
  for (std::size_t i = 0; i < stated.size(); ++i)
    refuseNewBytes(elementPlace(place, i), stated[i],
                   present.at(isKeyed ? stated[i].at(key) : Json(i)), faults);
}

std::string printJson(const Json& value) {
  return printed(value, 0, 0) + "\n";
}

}  // namespace camcfg::tool::document
