#include "base/plain_text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <limits>
#include <numeric>

#include "base/concat.h"

namespace camcfg::tool {
namespace {

bool continuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

// How many bytes begin with a byte; 0 if no character does.
std::size_t lengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xc2) return 0;
  if (lead < 0xe0) return 2;
  if (lead < 0xf0) return 3;
  return lead < 0xf5 ? 4 : 0;
}

// Neither longer than needed, nor half of a pair, nor beyond U+10FFFF.
bool isSecond(unsigned char lead, unsigned char second) {
  if (lead == 0xe0) return second >= 0xa0;
  if (lead == 0xed) return second < 0xa0;
  if (lead == 0xf0) return second >= 0x90;
  return lead != 0xf4 || second < 0x90;
}

bool isControl(unsigned char c) {
  return c < 0x20 || (c >= 0x7f && c < 0xa0);
}

// One character, U+0080 to U+009f and the bytes of these values included.
std::string shown(std::string_view character) {
  const auto last = static_cast<unsigned char>(character.back());
  const bool isBeyondAscii = character.size() == 2 && character[0] == '\xc2';
  if ((character.size() > 1 && !isBeyondAscii) || !isControl(last)) return std::string(character);
  if (isBeyondAscii) return "\\u00" + hexadecimal(last);
  return last == '\n' ? "\\n" : last == '\t' ? "\\t" : "\\x" + hexadecimal(last);
}

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string encoded(char32_t code) {
  const auto byte = [&](unsigned lead, unsigned shift) {
    return static_cast<char>(lead | ((code >> shift) & 0x3f));
  };
  if (code < 0x800) return {byte(0xc0, 6), byte(0x80, 0)};
  return {byte(0xe0, 12), byte(0x80, 6), byte(0x80, 0)};
}

// Capital letters and how far from each its small one is. Of a step of two, the others are small.
struct Capitals {
  char32_t first;
  char32_t last;
  char32_t step;
  char32_t distance;
};

constexpr Capitals kCapitals[] = {
    {0xc0, 0xd6, 1, 32},   {0xd8, 0xde, 1, 32},    {0x100, 0x12e, 2, 1},    // Latin
    {0x132, 0x136, 2, 1},  {0x139, 0x147, 2, 1},   {0x14a, 0x176, 2, 1},    //
    {0x179, 0x17d, 2, 1},  {0x1e00, 0x1e94, 2, 1}, {0x1ea0, 0x1efe, 2, 1},  //
    {0x386, 0x386, 1, 38}, {0x388, 0x38a, 1, 37},  {0x38c, 0x38c, 1, 64},   // Greek
    {0x38e, 0x38f, 1, 63}, {0x391, 0x3a1, 1, 32},  {0x3a3, 0x3ab, 1, 32},   //
    {0x400, 0x40f, 1, 80}, {0x410, 0x42f, 1, 32},  {0x460, 0x480, 2, 1},    // Cyrillic
    {0x48a, 0x4be, 2, 1},  {0x4d0, 0x52e, 2, 1},   {0x531, 0x556, 1, 48}};  // Armenian

char32_t small(char32_t letter) {
  for (const Capitals& capitals : kCapitals)
    if (letter >= capitals.first && letter <= capitals.last &&
        (letter - capitals.first) % capitals.step == 0)
      return letter + capitals.distance;
  return letter;
}

// Letters to insert, drop, change or swap with their neighbour to get from one word to the other.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> above(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(above.begin(), above.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before.swap(above);
    above.swap(row);
  }
  return above[b.size()];
}

}  // namespace

std::string hexadecimal(unsigned char byte) {
  return {kHexDigits[byte >> 4U], kHexDigits[byte & 15U]};
}

bool hasHighBytes(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

std::vector<std::string> parts(const std::string& text, char separator) {
  std::vector<std::string> all;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    all.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return all;
}

std::vector<std::string> wordsIn(const std::string& text) {
  constexpr char kBlanks[] = " \t\n\v\f\r";
  std::vector<std::string> words;
  for (std::size_t start = 0;
       (start = text.find_first_not_of(kBlanks, start)) != std::string::npos;) {
    const std::size_t end = std::min(text.find_first_of(kBlanks, start), text.size());
    words.push_back(text.substr(start, end - start));
    start = end;
  }
  return words;
}

std::string written(const tinyxml2::XMLNode& node) {
  tinyxml2::XMLPrinter printer;
  node.Accept(&printer);
  return printer.CStr();
}

std::optional<long long> decimal(std::string_view text) {
  using Limits = std::numeric_limits<long long>;
  long long number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (stopped != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range)
    return text.front() == '-' ? Limits::min() : Limits::max();
  return number;
}

std::optional<std::int32_t> decimal32(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::optional<long long> number = decimal(text);
  if (!number || *number < Limits::min() || *number > Limits::max()) return std::nullopt;
  return static_cast<std::int32_t>(*number);
}

Sequence sequenceAt(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = lengthFrom(lead);
  if (length == 0) return {1, false};
  for (std::size_t i = 1; i < length; ++i) {
    const bool ends = at + i >= text.size() || !continuesCharacter(text[at + i]);
    if (ends || (i == 1 && !isSecond(lead, static_cast<unsigned char>(text[at + 1]))))
      return {i, false};
  }
  return {length, true};
}

char32_t codePointOf(std::string_view character) {
  char32_t code = static_cast<unsigned char>(character.front()) & (0xffU >> (character.size() + 1));
  for (const char c : character.substr(1))
    code = code << 6 | (static_cast<unsigned char>(c) & 0x3f);
  return code;
}

std::string inLowerCase(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Sequence sequence = sequenceAt(text, at);
    const std::string_view character = text.substr(at, sequence.length);
    at += sequence.length;
    if (character.size() == 1)
      result += lowered(std::string(character));
    else if (character.size() > 3 || !sequence.isValid)
      result += character;
    else
      result += encoded(small(codePointOf(character)));
  }
  return result;
}

std::string inUrl(std::string_view text, std::string_view punctuation) {
  constexpr char kUpperDigits[] = "0123456789ABCDEF";
  std::string url;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain =
        byte < 0x80 && (std::isalnum(byte) != 0 || punctuation.find(c) != std::string_view::npos);
    if (isPlain)
      url += c;
    else
      url.append({'%', kUpperDigits[byte / 16], kUpperDigits[byte % 16]});
  }
  return url;
}

std::string asUtf8(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Sequence sequence = sequenceAt(text, at);
    result += sequence.isValid ? text.substr(at, sequence.length) : kReplacement;
    at += sequence.length;
  }
  return result;
}

std::size_t characters(std::string_view text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continuesCharacter));
}

std::string_view firstBytes(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && continuesCharacter(text[most])) --most;
  return text.substr(0, most);
}

std::string printable(const std::string& text) {
  const auto isPlain = [](char c) { return c >= ' ' && c <= '~'; };
  if (std::all_of(text.begin(), text.end(), isPlain)) return text;
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Sequence sequence = sequenceAt(text, at);
    const std::size_t length = sequence.isValid ? sequence.length : 1;
    result += shown(std::string_view(text).substr(at, length));
    at += length;
  }
  return result;
}

std::string withShortWords(const std::string& text) {
  constexpr std::size_t kLongest = 512;
  constexpr std::size_t kKept = 64;
  std::string result;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    const std::string_view word(text.data() + start, end - start);
    result += start == 0 ? "" : " ";
    result +=
        word.size() > kLongest ? std::string(firstBytes(word, kKept)) + "..." : std::string(word);
    start = end + 1;
  }
  return result;
}

std::string shortened(const std::string& text) {
  constexpr std::size_t kLongest = 120;
  return text.size() <= kLongest ? text : std::string(firstBytes(text, kLongest)) + "...";
}

std::string memberPlace(TextRef place, TextRef member) {
  const std::string name(member.view());
  const bool isWord = !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '_' || c == '-';
  });
  if (!isWord) return concat(place.view(), "[\"", shortened(name), "\"]");
  return concat(place.view(), place.view().empty() ? "" : ".", shortened(name));
}

std::string elementPlace(const std::string& place, std::size_t index) {
  return concat(place, "[", index, "]");
}

std::string nearestWord(const std::string& written, const std::vector<std::string>& words) {
  constexpr std::size_t kLongest = 64;
  if (written.size() > kLongest) return "";
  const std::string sought = lowered(written);
  std::size_t least = 1 + std::max<std::size_t>(1, written.size() / 3);
  std::string nearest;
  for (const std::string& word : words) {
    if (word.size() > kLongest) continue;
    const std::size_t found = distance(sought, lowered(word));
    if (found >= least) continue;
    least = found;
    nearest = word;
  }
  return nearest;
}

std::string didYouMean(const std::string& written, const std::vector<std::string>& words) {
  const std::string nearest = nearestWord(written, words);
  return nearest.empty() ? "" : concat("; did you mean '", nearest, "'?");
}

std::string utcText(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  char text[sizeof "2026-11-21T11:15:13Z" + 8] = {};
  const bool isShown = gmtime_r(&time, &parts) != nullptr &&
                       std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts) != 0;
  return isShown ? text : "";
}

std::string noSection(const std::string& written, const std::vector<std::string>& sections) {
  if (written.empty()) return "which section? the argument is empty";
  const std::string first = written.substr(0, written.find('/'));
  return concat("there is no section ", quoted(written),
                first != written && isAmong(sections, first)
                    ? concat("; did you mean ", quoted(first), "?")
                    : didYouMean(written, sections));
}

}  // namespace camcfg::tool
