#include "frame/json_check.h"

#include <vector>

#include "frame/answer.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

// Counts while the parser goes along.
class Gauge : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return add(); }
  bool boolean(bool /*value*/) override { return add(); }
  bool number_integer(Json::number_integer_t /*value*/) override { return add(); }
  bool number_unsigned(Json::number_unsigned_t /*value*/) override { return add(); }
  bool number_float(Json::number_float_t /*value*/, const std::string& /*text*/) override {
    return add();
  }
  bool string(std::string& /*value*/) override { return add(); }
  bool binary(Json::binary_t& /*value*/) override { return add(); }
  bool key(std::string& /*name*/) override { return true; }
  bool start_object(std::size_t /*size*/) override { return open("an object"); }
  bool start_array(std::size_t /*size*/) override { return open("a list"); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const Json::exception& /*error*/) override {
    fault_ = position;
    return false;
  }

  std::size_t fault() const { return fault_; }

 private:
  struct Level {
    std::string kind;
    std::size_t values;
  };

  bool add() {
    if (levels_.empty() || ++levels_.back().values <= kMostValues) return true;
    throw Refusal("it holds " + levels_.back().kind + " of more than " +
                  std::to_string(kMostValues) + " values");
  }

  bool open(const std::string& kind) {
    add();
    if (levels_.size() == kDeepestNesting)
      throw Refusal("it is nested deeper than " + std::to_string(kDeepestNesting) + " levels");
    levels_.push_back({kind, 0});
    return true;
  }

  bool close() {
    levels_.pop_back();
    return true;
  }

  std::vector<Level> levels_;
  std::size_t fault_ = 0;
};

}  // namespace

std::size_t checkJson(const std::string& text) {
  Gauge gauge;
  Json::sax_parse(text, &gauge);
  return gauge.fault();
}

}  // namespace camcfg::tool
