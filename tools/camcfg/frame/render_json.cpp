#include "frame/render.h"

namespace camcfg::tool {

std::string renderJson(const Answer& answer) {
  return answer.value.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace camcfg::tool
