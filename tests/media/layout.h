#ifndef CAMCFG_TESTS_MEDIA_LAYOUT_H
#define CAMCFG_TESTS_MEDIA_LAYOUT_H

#include <cstddef>
#include <vector>

namespace camcfg::tests {

/// The size of a record and where its fields lie in it; their types are part of the type.
template <typename... Fields>
struct Layout {
  std::size_t size;
  std::vector<std::ptrdiff_t> offsets;

  bool operator==(const Layout& other) const {
    return size == other.size && offsets == other.offsets;
  }
};

template <typename Record, typename... Fields>
Layout<Fields...> layoutOf(Fields Record::*... fields) {
  const Record record{};
  const auto offset = [&record](const auto& field) {
    return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&record);
  };
  return {sizeof record, {offset(record.*fields)...}};
}

}  // namespace camcfg::tests

#endif
