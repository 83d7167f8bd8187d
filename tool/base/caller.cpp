#include "base/caller.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <vector>

#include "base/concat.h"
#include "base/plain_text.h"
#include "base/secret_address.h"

namespace camcfg::tool {
namespace {

// "NAME=..." is a secret if the name ends with one of these, in upper or lower case.
constexpr std::string_view kSecrets[] = {"password", "passphrase", "key"};
constexpr char kMask[] = "***";
// Of a target, with the key of its stream.
constexpr std::string_view kUrl = "url";
constexpr std::string_view kUrlInAPlace = ".url";

Caller remembered;

// Whether the last letters of a name are these, in upper or lower case.
bool endsWith(std::string_view name, std::string_view end) {
  return name.size() >= end.size() && isSameWord(name.substr(name.size() - end.size()), end);
}

bool namesSecret(std::string_view name) {
  return std::any_of(std::begin(kSecrets), std::end(kSecrets),
                     [&](std::string_view secret) { return endsWith(name, secret); });
}

// Whether a word that ends like this before "://" has an address of RTMP, in any of its kinds.
bool endsWithRtmp(std::string_view word) {
  constexpr std::string_view kRtmp = "rtmp";
  std::size_t begin = word.size();
  while (begin > 0 && std::isalnum(static_cast<unsigned char>(word[begin - 1])) != 0) --begin;
  return isSameWord(word.substr(begin).substr(0, kRtmp.size()), kRtmp);
}

std::string masked(const std::string& word) {
  const std::size_t equals = std::min(word.find('='), word.size());
  const std::string name = word.substr(0, equals);
  if (equals < word.size() && namesSecret(name)) return concat(name, "=", kMask);
  if (equals < word.size() && (isSameWord(name, kUrl) || endsWith(name, kUrlInAPlace)))
    return concat(name, "=", withMaskedAddress(word.substr(equals + 1), kMask, true));
  const std::size_t scheme = word.find("://");
  if (scheme == std::string::npos) return word;
  return withMaskedAddress(word, kMask, endsWithRtmp(std::string_view(word).substr(0, scheme)));
}

// As a shell takes it.
std::string asWord(const std::string& word) {
  constexpr char kPlain[] =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=.,:/@%*";
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) return word;
  std::string text = "'";
  for (const char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

// Without "--root DIR" and "--root=DIR", up to the words of another program.
std::vector<std::string> wordsOf(int argc, const char* const* argv) {
  std::vector<std::string> words;
  bool isOurs = true;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    isOurs = isOurs && word != "--";
    if (isOurs && word == "--root")
      ++i;
    else if (!isOurs || !beginsWith(word, "--root="))
      words.push_back(asWord(masked(word)));
  }
  return words;
}

std::string callersName() {
  const char* user = std::getenv("SUDO_USER");
  if (user != nullptr && *user != '\0') return user;
  const uid_t uid = getuid();
  if (uid == 0) return "root";
  const passwd* entry = getpwuid(uid);
  return entry != nullptr ? entry->pw_name : "uid " + std::to_string(uid);
}

}  // namespace

void rememberCaller(int argc, const char* const* argv) {
  remembered = {joined(wordsOf(argc, argv), " "), callersName()};
}

const Caller& caller() {
  return remembered;
}

}  // namespace camcfg::tool
