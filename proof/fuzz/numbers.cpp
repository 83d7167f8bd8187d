#include <tinyxml2.h>

#include <cstdio>
#include <cstring>

#include "base/integer.h"
#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {

// A text, which is tried from each of its bytes on.
void numbers(const Input& input) {
  const std::string text = input.part(0);
  for (std::size_t begin = 0; begin <= text.size(); ++begin) {
    const char* number = text.c_str() + begin;
    int read = 0;
    int expected = 0;
    require(readInteger(number, read) == tinyxml2::XMLUtil::ToInt(number, &expected),
            "a number is seen where tinyxml2 sees one");
    require(read == expected, "a number is read as tinyxml2 reads it");
    char printed[16];
    std::snprintf(printed, sizeof printed, "%d", read);
    require(std::strcmp(IntegerText(read).begin(), printed) == 0,
            "a number is written as by printf");
  }
}

}  // namespace camcfg::fuzz
