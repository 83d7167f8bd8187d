#include "commands/groups.h"
#include "document/search.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kWord[] = "WORD";

Answer find(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.texts(kWord);
  for (const std::string& word : words)
    if (word.find_first_not_of(' ') == std::string::npos)
      throw Refusal(Status::Usage, "an empty word is in everything; give another one");
  Answer answer(document::findSettings(words));
  if (!answer.value.empty())
    answer.layout = {Table{"",
                           {{"PLACE", "{place}"},
                            {"VALUE", "{value}"},
                            {"UNIT", "{unit}"},
                            {"OF", "{of}"},
                            {"PERMITTED", "{permitted}"},
                            {"MEANING", "{help}"}}}};
  return answer;
}

}  // namespace

CommandGroup findGroup() {
  return {"Parameters",
          {command("find", "Find settings by a part of their place, value, help or name", find,
                   {{Option::Arguments, kWord,
                     "Found in upper or lower case; of several, each must be found"}})}};
}

}  // namespace camcfg::tool::commands
