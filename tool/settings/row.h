#ifndef CAMCFG_TOOL_SETTINGS_ROW_H
#define CAMCFG_TOOL_SETTINGS_ROW_H

#include <utility>

#include "settings/setting.h"

namespace camcfg::tool::settings {

/// Writes a setting down in one line of a table: Row("port", "Port", ...).required().
class Row : public Setting {
 public:
  /// @param attribute  null: the setting is read from elsewhere
  Row(const char* name, const char* attribute, Kind what, Need whenMissing, const Field& where,
      const char* line)
      : Setting{name, {}, what, whenMissing, line, where} {
    if (attribute != nullptr) attributes = {{attribute}};
  }

  Row& from(std::vector<Attribute> all) { return with(&Setting::attributes, std::move(all)); }
  Row& fromChannel(const char* type) {
    return with(&Setting::channelType, type).channel().noneIsNull();
  }
  Row& within(std::int64_t least, std::int64_t most) {
    return with(&Setting::limits, Range{least, most});
  }
  Row& of(std::vector<Word> all) { return with(&Setting::words, std::move(all)); }
  Row& of(const Table& table) { return with(&Setting::inner, &table); }
  Row& in(const char* what) { return with(&Setting::unit, what); }
  Row& secret(std::string (*mask)(const std::string&)) { return with(&Setting::masked, mask); }
  Row& channel() { return with(&Setting::isChannel, true); }
  Row& optional() { return with(&Setting::isOptional, true); }
  Row& noneIsNull() { return with(&Setting::isNullWhenNone, true).optional(); }
  Row& listed(const char* heading, const char* cell, int rank = 0) {
    return with(&Setting::column, Column{heading, cell, rank});
  }
  Row& refersTo(const Table& table) { return with(&Setting::refersTo, &table); }
  Row& notSaved() { return with(&Setting::isSaved, false); }
  Row& by(Json (*writer)(const void*), void (*reader)(const Node&, void*)) {
    return with(&Setting::write, writer).with(&Setting::read, reader);
  }
  Row& checked(std::string (*why)(const std::string&)) { return with(&Setting::whyNotUsable, why); }
  Row& neededIf(const char* element, const char* word) {
    return with(&Setting::neededIf, Condition{element, word});
  }
  Row& byWholeName() { return with(&Setting::isWrittenByWholeName, true); }
  Row& option(const char* name) { return with(&Setting::option, name); }
  Row& labelled(const char* name) { return with(&Setting::label, name); }

 private:
  template <typename Value>
  Row& with(Value Setting::*what, Value value) {
    this->*what = std::move(value);
    return *this;
  }
};

/// Records inside others.
inline Table innerTable(const char* entry, const char* element, const char* key,
                        Settings settings) {
  return {"", "", entry, key, nullptr, nullptr, nullptr, {element}, std::move(settings)};
}

}  // namespace camcfg::tool::settings

#endif
