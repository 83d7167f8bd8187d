#include "fuzz/mutation.h"

#include <gmock/gmock.h>
#include <tinyxml2.h>

#include <nlohmann/json.hpp>
#include <set>

namespace camcfg::fuzz {
namespace {

constexpr unsigned kSeeds = 500;
constexpr std::size_t kLongest = 100000;
constexpr char kXml[] = "<a x=\"1\"><b Id=\"2\" Name=\"n\"/><c>text</c></a><d/>";
constexpr char kJson[] = "{\"a\": [1, {\"b\": \"c\"}], \"d\": null}";

std::string unchanged(std::string text, std::size_t /*longest*/) {
  return text;
}

bool isXml(const std::string& text) {
  tinyxml2::XMLDocument document;
  const tinyxml2::XMLError error = document.Parse(text.data(), text.size());
  return error == tinyxml2::XML_SUCCESS || text.empty();
}

TEST(MutationTest, OneSeedGivesOneMutation) {
  for (unsigned seed = 0; seed < kSeeds; ++seed)
    EXPECT_EQ(mutate(kXml, kLongest, seed, unchanged), mutate(kXml, kLongest, seed, unchanged));
}

TEST(MutationTest, AChangedTreeIsXmlAgain) {
  std::set<std::string> mutations;
  for (unsigned seed = 0; seed < kSeeds; ++seed) {
    const std::string mutation = mutate(kXml, kLongest, seed, unchanged);
    EXPECT_TRUE(isXml(mutation)) << seed << ": " << mutation;
    mutations.insert(mutation);
  }
  EXPECT_GT(mutations.size(), kSeeds / 4);
}

TEST(MutationTest, AChangedDocumentIsJsonAgain) {
  std::set<std::string> mutations;
  for (unsigned seed = 0; seed < kSeeds; ++seed) {
    const std::string mutation = mutate(kJson, kLongest, seed, unchanged);
    EXPECT_TRUE(nlohmann::json::accept(mutation)) << seed << ": " << mutation;
    mutations.insert(mutation);
  }
  EXPECT_GT(mutations.size(), kSeeds / 4);
}

TEST(MutationTest, OnePartIsChangedAndTheOthersStay) {
  const std::string input = std::string(kXml) + "\n%%\n" + kJson;
  for (unsigned seed = 0; seed < kSeeds; ++seed) {
    const std::string mutation = mutate(input, kLongest, seed, unchanged);
    const bool first = mutation.rfind(std::string(kXml) + "\n%%\n", 0) == 0;
    const auto end = mutation.find("\n%%\n");
    EXPECT_TRUE(first || mutation.substr(end) == std::string("\n%%\n") + kJson) << mutation;
  }
}

TEST(MutationTest, NothingGrowsBeyondTheLimit) {
  const auto cut = [](const std::string& text, std::size_t longest) {
    return text.substr(0, longest);
  };
  for (unsigned seed = 0; seed < kSeeds; ++seed)
    EXPECT_LE(mutate(kXml, sizeof kXml, seed, cut).size(), sizeof kXml);
}

TEST(MutationTest, WhatIsNoTreeIsChangedByteByByte) {
  const auto byByte = [](const std::string&, std::size_t) { return std::string("bytes"); };
  for (const char* input : {"", "text", "<a", "{\"a\":"})
    EXPECT_EQ(mutate(input, kLongest, 1, byByte), "bytes") << input;
}

}  // namespace
}  // namespace camcfg::fuzz
