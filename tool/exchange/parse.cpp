#include "exchange/parse.h"

#include <algorithm>

#include "exchange/node.h"
#include "frame/json_check.h"
#include "frame/printable.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

// Builds the document event by event, which lets it see a member that stands twice.
class Builder {
 public:
  Builder(const std::string& text, Faults& faults) : text_(text), faults_(faults) {}

  bool null() { return add(Json()); }
  bool boolean(bool value) { return add(value); }
  bool number_integer(Json::number_integer_t value) { return add(value); }
  bool number_unsigned(Json::number_unsigned_t value) { return add(value); }
  bool number_float(Json::number_float_t value, const std::string& /*text*/) { return add(value); }
  bool string(std::string& value) { return add(std::move(value)); }
  bool binary(Json::binary_t& /*value*/) { return false; }
  bool start_object(std::size_t /*size*/) { return open(Json::object()); }
  bool start_array(std::size_t /*size*/) { return open(Json::array()); }
  bool end_object() { return close(); }
  bool end_array() { return close(); }

  bool key(std::string& name) {
    Level& level = levels_.back();
    level.key = std::move(name);
    level.repeated = level.value.contains(level.key);
    if (level.repeated) faults_.push_back({place(), "it stands here twice"});
    return true;
  }

  [[noreturn]] bool parse_error(std::size_t position, const std::string& /*token*/,
                                const Json::exception& error) {
    std::string reason = error.what();
    reason.erase(0, reason.find("] ") + 2);
    if (reason.find("parse error at ") == 0) reason.erase(0, reason.find(": ") + 2);
    // What was last read may be a password.
    throw Refusal(at(position) + shortened(reason.substr(0, reason.find("; last read: "))));
  }

  Json take() { return std::move(root_); }

 private:
  struct Level {
    Json value;
    std::string key;
    bool repeated = false;
  };

  bool open(Json value) {
    levels_.push_back({std::move(value), "", false});
    return true;
  }

  bool close() {
    Json value = std::move(levels_.back().value);
    levels_.pop_back();
    return add(std::move(value));
  }

  bool add(Json value) {
    if (levels_.empty()) {
      root_ = std::move(value);
      return true;
    }
    Level& level = levels_.back();
    if (level.value.is_array())
      level.value.push_back(std::move(value));
    else if (!level.repeated)
      level.value[level.key] = std::move(value);
    return true;
  }

  std::string place() const {
    std::string path;
    for (const Level& level : levels_)
      path = level.value.is_array() ? elementPlace(path, level.value.size())
                                    : memberPlace(path, level.key);
    return path;
  }

  // "line 3, column 5: " of a byte that is counted from 1.
  std::string at(std::size_t position) const {
    const std::size_t byte = std::min(position == 0 ? 0 : position - 1, text_.size());
    const std::string before = text_.substr(0, byte);
    const std::size_t line = before.rfind('\n');
    const std::string start = line == std::string::npos ? before : before.substr(line + 1);
    return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n')) +
           ", column " + std::to_string(1 + characters(start)) + ": ";
  }

  const std::string& text_;
  Faults& faults_;
  std::vector<Level> levels_;
  Json root_;
};

}  // namespace

Json parseJson(const std::string& text, Faults& faults) {
  // What is no JSON is left to the builder, which tells why.
  static_cast<void>(checkJson(text));
  Builder builder(text, faults);
  Json::sax_parse(text, &builder);
  return builder.take();
}

}  // namespace camcfg::tool
