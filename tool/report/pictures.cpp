#include <algorithm>
#include <map>

#include "base/html.h"
#include "base/plain_text.h"
#include "document/keyed.h"
#include "report/parts.h"

namespace camcfg::tool::report {
namespace {

constexpr int kBand = 44;  // of a subnet

void addText(std::string& svg, int x, int y, const std::string& text, const char* look = "") {
  write(svg, "<text x=\"", x, "\" y=\"", y, "\"", *look == '\0' ? "" : " class=\"", look,
        *look == '\0' ? "" : "\"", ">", htmlText(cutTo(text, 60)), "</text>\n");
}

std::string beginning(const char* look, const char* id, const char* title,
                      const std::string& description, int width, int height) {
  std::string svg = "<svg";
  write(svg, " class=\"", look, "\" role=\"img\" aria-labelledby=\"", id, "-title ", id,
        "-desc\" viewBox=\"0 0 ", width, " ", height, "\"><title id=\"", id, "-title\">", title,
        "</title><desc id=\"", id, "-desc\">", htmlText(cutTo(description, 1000)),
        "</desc><rect class=\"ground\" width=\"", width, "\" height=\"", height, "\"/>\n");
  return svg;
}

// The values of a member that are numbers.
std::pair<int, int> extentOf(const Json& presets, const char* member) {
  int least = 0;
  int most = 0;
  for (const Json& preset : presets) {
    if (!preset.at(member).is_number_integer()) continue;
    const int value = preset.at(member).get<int>();
    least = std::min(least, value);
    most = std::max(most, value);
  }
  return {least, std::max(most, least + 1)};
}

int scaled(int value, std::pair<int, int> from, int low, int high) {
  const double part =
      (static_cast<double>(value) - from.first) / (static_cast<double>(from.second) - from.first);
  return low + static_cast<int>(part * (high - low));
}

bool isPlaced(const Json& preset) {
  return preset.at("pan").is_number_integer() && preset.at("tilt").is_number_integer();
}

std::string labelOf(const Json& preset) {
  const Json& description = preset.at("description");
  return preset.at("id").dump() + (description.is_string() ? " " + description.text() : "");
}

}  // namespace

// On white in any surroundings, as the wiring.
const char* const kPictureStyle =
    ".subnets,.positions{font:12px Helvetica,Arial,sans-serif;max-width:100%;height:auto}"
    ".subnets .ground,.positions .ground{fill:#fff}"
    ".subnets text,.positions text{fill:#222;unicode-bidi:isolate}"
    ".subnets .band{fill:#e8f0f8;stroke:#1f6fb4}.subnets .card{fill:#fff;stroke:#555}"
    ".positions .field{fill:#f7f7f7;stroke:#777}.positions .axis{stroke:#999;stroke-dasharray:3 3}"
    ".positions circle{fill:#1f6fb4;fill-opacity:.25;stroke:#1f6fb4}.small{font-size:10px}";

std::string subnetsPicture(const Json& cards) {
  std::map<std::string, std::vector<const Json*>> subnets;
  for (const Json& card : cards) subnets[document::textOf(card.at("subnet"))].push_back(&card);
  std::string description;
  for (const auto& [subnet, members] : subnets)
    for (const Json* card : members)
      description += card->at("name").text() + ": " +
                     (subnet.empty() ? std::string("no subnet") : subnet) + "; ";
  const int height = static_cast<int>(subnets.size()) * (kBand + 10) + 10;
  std::string svg =
      beginning("subnets", "subnets", "Subnets of the network cards", description, 640, height);
  int y = 10;
  for (const auto& [subnet, members] : subnets) {
    write(svg, "<rect class=\"band\" x=\"10\" y=\"", y, "\" width=\"620\" height=\"", kBand,
          "\" rx=\"4\"/>\n");
    addText(svg, 20, y + 26, subnet.empty() ? "no subnet" : subnet);
    int x = 170;
    for (const Json* card : members) {
      write(svg, "<rect class=\"card\" x=\"", x, "\" y=\"", y + 8,
            "\" width=\"200\" height=\"28\"/>\n");
      addText(svg, x + 8, y + 26,
              card->at("name").text() + "  " +
                  document::textOf(document::memberOrNothing(*card, "ipAddr")));
      x += 220;
    }
    y += kBand + 10;
  }
  return svg + "</svg>\n";
}

std::string positionsPicture(const Json& presets) {
  const auto pan = extentOf(presets, "pan");
  const auto tilt = extentOf(presets, "tilt");
  const auto zoom = extentOf(presets, "zoom");
  std::string description;
  for (const Json& preset : presets)
    if (isPlaced(preset))
      description += labelOf(preset) + ": pan " + preset.at("pan").dump() + ", tilt " +
                     preset.at("tilt").dump() + "; ";
  std::string svg = beginning("positions", "positions", "Camera positions by pan and tilt",
                              description, 640, 400);
  svg += "<rect class=\"field\" x=\"40\" y=\"20\" width=\"560\" height=\"340\"/>\n";
  const int x0 = scaled(0, pan, 80, 560);
  const int y0 = scaled(0, tilt, 330, 50);
  write(svg, "<path class=\"axis\" d=\"M", x0, " 20V360M40 ", y0, "H600\"/>\n");
  addText(svg, 40, 380, "pan " + std::to_string(pan.first) + " to " + std::to_string(pan.second),
          "small");
  addText(svg, 240, 380,
          "tilt " + std::to_string(tilt.first) + " to " + std::to_string(tilt.second), "small");
  addText(svg, 440, 380, "larger circle: more zoom", "small");
  for (const Json& preset : presets) {
    if (!isPlaced(preset)) continue;
    const int x = scaled(preset.at("pan").get<int>(), pan, 80, 560);
    const int y = scaled(preset.at("tilt").get<int>(), tilt, 330, 50);
    const Json& enlarged = preset.at("zoom");
    const int radius = enlarged.is_number_integer() ? scaled(enlarged.get<int>(), zoom, 4, 18) : 4;
    write(svg, "<circle cx=\"", x, "\" cy=\"", y, "\" r=\"", radius, "\"/>\n");
    addText(svg, x + radius + 3, y + 4, cutTo(labelOf(preset), 16), "small");
  }
  return svg + "</svg>\n";
}

}  // namespace camcfg::tool::report
