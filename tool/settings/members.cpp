#include "settings/members.h"

namespace camcfg::tool::settings {

Json wordFor(const Words& words, std::int32_t value) {
  for (const Word& word : words)
    if (word.value == value) return word.json;
  return nullptr;
}

std::int32_t valueOf(const Words& words, const Node& node) {
  std::string list;
  std::vector<std::string> texts;
  for (const Word& word : words) {
    if (word.json == node.value()) return word.value;
    list += (list.empty() ? "" : ", ") + word.json.dump();
    if (word.json.is_string()) texts.push_back(word.json.get<std::string>());
  }
  node.refuse("it must be one of " + list + node.nearestOf(texts));
  return words.front().value;
}

std::list<int> readIds(const Node& node, const std::function<int(const Node&)>& read) {
  std::list<int> ids;
  if (!node.isArray()) return ids;
  for (std::size_t i = 0; i < node.value().size(); ++i) {
    const std::size_t faults = node.faults();
    const int id = read(node.element(i));
    if (node.faults() != faults) continue;
    if (std::find(ids.begin(), ids.end(), id) != ids.end())
      node.element(i).refuse("it stands here twice");
    ids.push_back(id);
  }
  return ids;
}

}  // namespace camcfg::tool::settings
