#include "lint/translated.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "base/concat.h"
#include "lint/rules.h"

namespace camcfg::tool::lint {
namespace {

constexpr char kSpaces[] = " \t\r\n";

bool hasSpaceAtAnEnd(const std::string& text) {
  const auto isSpace = [](char c) {
    return std::string_view(kSpaces).find(c) != std::string::npos;
  };
  return isSpace(text.front()) || isSpace(text.back());
}

bool isEscapedAgain(const std::string& text) {
  constexpr const char* kEntities[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
  return std::any_of(std::begin(kEntities), std::end(kEntities),
                     [&](const char* entity) { return text.find(entity) != std::string::npos; });
}

// "TODO" is a word of Spanish, so it is a mark on its own only.
bool isToDo(const std::string& text) {
  constexpr std::string_view kMarks[] = {"FIXME", "TBD", "XXX"};
  return text == "TODO" ||
         std::any_of(std::begin(kMarks), std::end(kMarks), [&](std::string_view mark) {
           return beginsWith(text, mark) &&
                  (text.size() == mark.size() ||
                   std::isalnum(static_cast<unsigned char>(text[mark.size()])) == 0);
         });
}

/// What either all languages have in a text, or none.
struct Habit {
  const Rule& rule;
  bool (*isIn)(const std::string& text);
  const char* has;
};

const Habit kHabits[] = {
    {kTranslationSpace, hasSpaceAtAnEnd, "a space at an end of the text"},
    {kTranslationEscaped, isEscapedAgain, "an entity in what people see"},
};

// The fewer are wrong; of as many, those that have it.
void checkHabit(const Habit& habit, const std::vector<const Translated*>& all) {
  std::vector<const Translated*> with;
  std::vector<const Translated*> without;
  for (const Translated* each : all) (habit.isIn(each->text) ? with : without).push_back(each);
  if (with.empty() || without.empty()) return;
  const bool isUsual = with.size() > without.size();
  for (const Translated* each : isUsual ? without : with)
    each->item.addOf(habit.rule, "Val",
                     concat(isUsual ? " has not " : " has ", habit.has, ", otherwise than",
                            (isUsual ? with : without).front()->place));
}

void checkToDo(const std::vector<const Translated*>& all) {
  constexpr std::size_t kLongSentence = 5;
  const auto sentence = std::find_if(all.begin(), all.end(), [](const Translated* each) {
    return !isToDo(each->text) && wordsIn(each->text) >= kLongSentence;
  });
  if (sentence == all.end()) return;
  for (const Translated* each : all)
    if (isToDo(each->text))
      each->item.addOf(
          kTranslationTodo, "Val",
          concat(" ", quoted(each->text), " is no translation of the text", (*sentence)->place));
}

}  // namespace

void checkTranslated(const std::vector<Translated>& all) {
  std::vector<const Translated*> shown;
  for (const Translated& each : all)
    if (!isBlank(each.text)) shown.push_back(&each);
  if (shown.size() < 2) return;
  for (const Habit& habit : kHabits) checkHabit(habit, shown);
  checkToDo(shown);
}

std::size_t wordsIn(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = text.find_first_not_of(kSpaces); at != std::string_view::npos;) {
    ++count;
    const std::size_t end = text.find_first_of(kSpaces, at);
    at = end == std::string_view::npos ? end : text.find_first_not_of(kSpaces, end);
  }
  return count;
}

}  // namespace camcfg::tool::lint
