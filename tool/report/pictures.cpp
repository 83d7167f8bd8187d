#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>

#include "base/concat.h"
#include "base/html.h"
#include "base/plain_text.h"
#include "document/keyed.h"
#include "report/parts.h"

namespace camcfg::tool::report {
namespace {

constexpr int kBand = 44;  // of a subnet
constexpr int kSize = 12;  // of texts
constexpr int kSmall = 10;

void addText(std::string& svg, int x, int y, int room, const std::string& text) {
  write(svg, "<text x=\"", x, "\" y=\"", y, "\"", within(room, cutTo(text, 40), kSize), ">",
        htmlText(cutTo(text, 40)), "</text>\n");
}

void addSmallText(std::string& svg, int x, int y, const std::string& text) {
  write(svg, "<text x=\"", x, "\" y=\"", y, "\" class=\"small\">", htmlText(text), "</text>\n");
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

struct Circle {
  int x;
  int y;
  int radius;
};

// Where names of camera positions are, none of them on another one.
class Labels {
 public:
  // Next to its circle, or above or below it; else the number only; else nothing.
  void add(const Circle& circle, const Json& preset) {
    if (!place(circle, cutTo(labelOf(preset), 16)) && !place(circle, preset.at("id").dump()))
      ++missing_;
  }
  const std::string& svg() const { return svg_; }
  int missing() const { return missing_; }

 private:
  struct Box {
    int left;
    int right;
    int bottom;
  };

  bool place(const Circle& circle, const std::string& label) {
    const int width = widthOf(label, kSmall);
    const int away = circle.radius + 3;
    const std::array<std::pair<int, int>, 4> corners = {
        {{circle.x + away, circle.y + 4},
         {circle.x - away - width, circle.y + 4},
         {circle.x - width / 2, circle.y - away},
         {circle.x - width / 2, circle.y + away + kSmall - 2}}};
    const auto* free = std::find_if(corners.begin(), corners.end(), [&](const auto& corner) {
      return isFree({corner.first, corner.first + width, corner.second});
    });
    if (free == corners.end()) return false;
    taken_.push_back({free->first, free->first + width, free->second});
    addSmallText(svg_, free->first, free->second, label);
    return true;
  }

  bool isFree(const Box& box) const {
    const bool isInside = box.left > 42 && box.right < 598 && box.bottom > 32 && box.bottom < 357;
    return isInside && std::none_of(taken_.begin(), taken_.end(), [&](const Box& other) {
             return box.left < other.right && other.left < box.right &&
                    std::abs(box.bottom - other.bottom) < kSmall;
           });
  }

  std::string svg_;
  std::vector<Box> taken_;
  int missing_ = 0;
};

}  // namespace

// On white in any surroundings, as the wiring.
const char* const kPictureStyle =
    ".subnets,.positions{font:12px Helvetica,Arial,sans-serif;max-width:100%;height:auto}"
    ".subnets .ground,.positions .ground{fill:#fff}"
    ".subnets text,.positions text{fill:#222;unicode-bidi:isolate;white-space:pre}"
    ".positions text{paint-order:stroke;stroke:#f7f7f7;stroke-width:2px}"
    ".subnets .band{fill:#e8f0f8;stroke:#1f6fb4}.subnets .card{fill:#fff;stroke:#555}"
    ".positions .field{fill:#f7f7f7;stroke:#777}.positions .axis{stroke:#999;stroke-dasharray:3 3}"
    ".positions circle{fill:#1f6fb4;fill-opacity:.25;stroke:#1f6fb4}.small{font-size:10px}";

std::string subnetsPicture(const Json& cards) {
  std::map<std::string, std::vector<const Json*>> subnets;
  for (const Json& card : cards) subnets[document::textOf(card.at("subnet"))].push_back(&card);
  std::string description;
  for (const auto& [subnet, members] : subnets)
    for (const Json* card : members)
      description += concat(card->at("name").text(), ": ",
                            subnet.empty() ? std::string("no subnet") : subnet, "; ");
  const auto bandOf = [](std::size_t count) {
    return kBand + (static_cast<int>(count) - 1) / 2 * 36;
  };
  int height = 10;
  for (const auto& [subnet, members] : subnets) height += bandOf(members.size()) + 10;
  std::string svg =
      beginning("subnets", "subnets", "Subnets of the network cards", description, 640, height);
  int y = 10;
  for (const auto& [subnet, members] : subnets) {
    const int band = bandOf(members.size());
    write(svg, "<rect class=\"band\" x=\"10\" y=\"", y, "\" width=\"620\" height=\"", band,
          "\" rx=\"4\"/>\n");
    addText(svg, 20, y + 26, 140, subnet.empty() ? "no subnet" : subnet);
    for (std::size_t i = 0; i < members.size(); ++i) {  // two in a row
      const Json& card = *members[i];
      const int x = i % 2 == 0 ? 170 : 400;
      const int top = y + 8 + static_cast<int>(i) / 2 * 36;
      write(svg, "<rect class=\"card\" x=\"", x, "\" y=\"", top,
            "\" width=\"210\" height=\"28\"/>\n");
      addText(svg, x + 8, top + 18, 194,
              concat(card.at("name").text(), "  ",
                     document::textOf(document::memberOrNothing(card, "ipAddr"))));
    }
    y += band + 10;
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
      description += concat(labelOf(preset), ": pan ", preset.at("pan").dump(), ", tilt ",
                            preset.at("tilt").dump(), "; ");
  std::string svg = beginning("positions", "positions", "Camera positions by pan and tilt",
                              description, 640, 400);
  svg += "<rect class=\"field\" x=\"40\" y=\"20\" width=\"560\" height=\"340\"/>\n";
  const int x0 = scaled(0, pan, 80, 560);
  const int y0 = scaled(0, tilt, 330, 50);
  write(svg, "<path class=\"axis\" d=\"M", x0, " 20V360M40 ", y0, "H600\"/>\n");
  addSmallText(svg, 40, 380, concat("pan ", pan.first, " to ", pan.second));
  addSmallText(svg, 160, 380, concat("tilt ", tilt.first, " to ", tilt.second));
  addSmallText(svg, 280, 380, "larger circle: more zoom");
  Labels labels;
  for (const Json& preset : presets) {
    if (!isPlaced(preset)) continue;
    const Json& enlarged = preset.at("zoom");
    const Circle circle{
        scaled(preset.at("pan").get<int>(), pan, 80, 560),
        scaled(preset.at("tilt").get<int>(), tilt, 330, 50),
        enlarged.is_number_integer() ? scaled(enlarged.get<int>(), zoom, 4, 18) : 4};
    write(svg, "<circle cx=\"", circle.x, "\" cy=\"", circle.y, "\" r=\"", circle.radius,
          "\"><title>", htmlText(cutTo(labelOf(preset), 60)), "</title></circle>\n");
    labels.add(circle, preset);
  }
  svg += labels.svg();
  if (labels.missing() > 0)
    addSmallText(svg, 420, 380,
                 std::to_string(labels.missing()) + " without room for a name: see the table");
  return svg + "</svg>\n";
}

}  // namespace camcfg::tool::report
