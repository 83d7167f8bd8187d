#ifndef CAMCFG_TESTS_MEDIA_SERVICE_TEST_H
#define CAMCFG_TESTS_MEDIA_SERVICE_TEST_H

#include <list>
#include <optional>
#include <string>

#include "media/layout.h"
#include "media/media_test.h"
#include "media/records.h"

namespace camcfg::tests {

inline std::string warning(const std::string& message) {
  return kServices.warning(message);
}

inline std::string required(const std::string& attribute, const std::string& path) {
  return kServices.required(attribute, path);
}

inline std::string unsupported(const std::string& element, const std::string& path) {
  return warning("Un-support element <" + element + "> at " + path + ", ignored.");
}

/// What a text yields as an integer attribute; none where the attribute keeps its preset.
struct IntegerText {
  const char* text;
  std::optional<int> value;
};

inline const IntegerText kIntegerTexts[] = {
    {"0", 0},
    {"7", 7},
    {"-2", -2},
    {"+4", 4},
    {"010", 10},
    {" 5", 5},
    {"12abc", 12},
    {"3.9", 3},
    {"0x10", 16},
    {"0X1f", 31},
    {"2147483647", 2147483647},
    {"-2147483648", -2147483647 - 1},
    {"-1", -1},
    {" -1", -1},
    {"-1x", -1},
    {"0xffffffff", -1},
    {"", std::nullopt},
    {" ", std::nullopt},
    {"-", std::nullopt},
    {"x", std::nullopt},
    {"abc12", std::nullopt},
    {"true", std::nullopt},
};

/// Integers of more than 32 bits: whatever the XML library makes of them is what is loaded.
inline const char* const kHugeIntegers[] = {
    "2147483648",           "4294967295",  "-2147483649",          "99999999999",
    "99999999999999999999", "0xfffffffff", "-99999999999999999999"};

inline int asTheXmlLibraryReads(const char* text, int preset) {
  tinyxml2::XMLDocument document;
  document.Parse("<Element/>");
  document.RootElement()->SetAttribute("Attribute", text);
  document.RootElement()->QueryIntAttribute("Attribute", &preset);
  return preset;
}

/// A test on the loader and the dumper of one service.
template <typename List>
class ServiceTest : public MediaTest {
 protected:
  using Loader = std::int32_t (*)(List&);
  using Dumper = std::int32_t (*)(const List&);
  using Contents = decltype(contentsOf(List()));

  struct Loaded {
    Outcome outcome;
    List records;
  };

  /// @param before  what a list holds before it is loaded into
  ServiceTest(const char* section, Loader loader, Dumper dumper, const List& before)

      : MediaTest(kServices, section),
        name_(section),
        loader_(loader),
        dumper_(dumper),
        before_(before) {}

  const List& before() const { return before_; }

  std::string loadSuccess() const { return kServices.info("Load " + name_ + " Config success."); }
  std::string dumpSuccess() const { return kServices.info("Update " + name_ + " Config success."); }

  Loaded load() const {
    List records = before_;
    const Outcome outcome = observe([&] { return loader_(records); });
    return {outcome, records};
  }

  Outcome dump(const List& records) const {
    return observe([&] { return dumper_(records); });
  }

  /// Expects a section of these entries to be loaded whole.
  void expectLoaded(const std::string& entries, const Contents& records,
                    const std::string& warnings = "") {
    SCOPED_TRACE(entries);
    give(entries);
    const Loaded loaded = load();
    EXPECT_EQ(loaded.outcome, (Outcome{0, warnings + loadSuccess()}));
    EXPECT_EQ(contentsOf(loaded.records), records);
    EXPECT_EQ(state(), "closed, unlocked");
  }

  /// Expects a load of these entries to fail, with these records in the list.
  void expectRefused(const std::string& entries, const std::string& fault,
                     const Contents& kept = {}) {
    SCOPED_TRACE(entries);
    give(entries);
    const Loaded loaded = load();
    EXPECT_EQ(loaded.outcome, (Outcome{CFG_LM_ERR, fault}));
    EXPECT_EQ(contentsOf(loaded.records), kept);
    EXPECT_EQ(state(), "open, unlocked");
  }

  /// Expects these records to replace whatever the section held.
  void expectDumped(const List& records, const std::string& entries) {
    give("text<!-- comment --><Foo/><Channel Id='9' Name='old'/>");
    EXPECT_EQ(dump(records), (Outcome{0, dumpSuccess()}));
    EXPECT_EQ(state(), "closed, unlocked");
    expectSaved(entries);
  }

  /// Expects an integer to be read from an attribute where -1 counts as missing.
  /// @param entryWith    makes an entry with a text for the attribute
  /// @param contentsWith  makes the list loaded from it, given the integer
  /// @param fault         what is printed when it is missing
  template <typename EntryWith, typename ContentsWith>
  void expectRequiredInteger(EntryWith entryWith, ContentsWith contentsWith,
                             const std::string& fault) {
    for (const auto& [text, value] : kIntegerTexts)
      expectGiven(entryWith(text), contentsWith, value.value_or(-1), fault);
    for (const char* text : kHugeIntegers)
      expectGiven(entryWith(text), contentsWith, asTheXmlLibraryReads(text, -1), fault);
  }

  /// Expects an integer to be read from an attribute that keeps a preset unless it is an integer.
  template <typename EntryWith, typename ContentsWith>
  void expectOptionalInteger(EntryWith entryWith, ContentsWith contentsWith, int preset) {
    for (const auto& [text, value] : kIntegerTexts)
      expectLoaded(entryWith(text), contentsWith(value.value_or(preset)));
    for (const char* text : kHugeIntegers)
      expectLoaded(entryWith(text), contentsWith(asTheXmlLibraryReads(text, preset)));
  }

 private:
  template <typename ContentsWith>
  void expectGiven(const std::string& entry, ContentsWith contentsWith, int value,
                   const std::string& fault) {
    if (value != -1)
      expectLoaded(entry, contentsWith(value));
    else
      expectRefused(entry, fault);
  }

  const std::string name_;
  const Loader loader_;
  const Dumper dumper_;
  const List before_;
};

}  // namespace camcfg::tests

#endif
