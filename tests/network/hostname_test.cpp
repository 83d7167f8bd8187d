#include <climits>

#include "network/network_test.h"

namespace camcfg::tests {
namespace {

class HostnameTest : public NetworkTest {
 protected:
  void storeName(const std::string& name) { store("<NetWork Hostname=\"" + name + "\"/>\n"); }

  // What a buffer of sixteen "#" holds after the name was read into its first `length` bytes.
  std::string bufferAfterReading(int length) {
    std::string buffer(16, '#');
    CFG_NETWORK_GetHostname(buffer.data(), length);
    return buffer;
  }
};

// Text of all bytes of a literal, those after embedded zeros included.
template <std::size_t Size>
std::string bytes(const char (&literal)[Size]) {
  return {literal, Size - 1};
}

TEST_F(HostnameTest, ReadingFillsTheRestOfTheLengthWithZeros) {
  storeName("camera-7");
  EXPECT_EQ(bufferAfterReading(12), bytes("camera-7\0\0\0\0####"));
  EXPECT_THAT(log.records(), IsEmpty());
  expectNotSaved();
}

TEST_F(HostnameTest, ANameShorterThanTheLengthByOneIsTerminated) {
  storeName("camera-7");
  EXPECT_EQ(bufferAfterReading(9), bytes("camera-7\0#######"));
}

TEST_F(HostnameTest, ANameOfExactlyTheLengthHasNoTerminator) {
  storeName("camera-7");
  EXPECT_EQ(bufferAfterReading(8), "camera-7########");
}

TEST_F(HostnameTest, ALongerNameFillsTheLengthWithoutATerminator) {
  storeName("camera-7");
  EXPECT_EQ(bufferAfterReading(3), "cam#############");
  EXPECT_EQ(bufferAfterReading(1), "c###############");
}

TEST_F(HostnameTest, WithoutTheAttributeTheWholeLengthIsCleared) {
  store("<NetWork/>\n");
  EXPECT_EQ(bufferAfterReading(10), bytes("\0\0\0\0\0\0\0\0\0\0######"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(HostnameTest, AnEmptyNameClearsTheWholeLength) {
  storeName("");
  EXPECT_EQ(bufferAfterReading(4), bytes("\0\0\0\0############"));
}

TEST_F(HostnameTest, ALengthOfNothingReceivesNothing) {
  storeName("camera-7");
  for (const int length : {0, -1, INT_MIN})
    EXPECT_EQ(bufferAfterReading(length), "################");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(HostnameTest, ANullBufferReceivesNothing) {
  storeName("camera-7");
  CFG_NETWORK_GetHostname(nullptr, 16);
  EXPECT_THAT(log.records(), IsEmpty());
  expectNotSaved();
}

TEST_F(HostnameTest, TheNameIsTheSectionsAttributeAndNotAnElement) {
  store("<NetWork>\n    <Hostname Cur=\"element\"/>\n</NetWork>\n");
  EXPECT_EQ(bufferAfterReading(2), bytes("\0\0##############"));
}

TEST_F(HostnameTest, EntitiesInTheNameAreProcessed) {
  storeName("a&amp;b&lt;c");
  EXPECT_EQ(bufferAfterReading(6), bytes("a&b<c\0##########"));
}

TEST_F(HostnameTest, AFailedReadLeavesTheBufferAlone) {
  EXPECT_EQ(bufferAfterReading(16), "################");
  for (const char* contents : {"<NetWork Hostname=\"a\">", "<!-- empty -->\n", "<System/>\n"}) {
    store(contents);
    EXPECT_EQ(bufferAfterReading(16), "################") << contents;
  }
}

TEST_F(HostnameTest, SettingReplacesTheNameAndNothingElse) {
  store(kFactory);
  CFG_NETWORK_SetHostname(text("studio"));
  expectSaved(replaced(kFactory, "Hostname=\"camera-7\"", "Hostname=\"studio\""));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(HostnameTest, SettingCreatesTheAttribute) {
  store("<System/>\n\n<NetWork/>\n");
  CFG_NETWORK_SetHostname(text("studio"));
  expectSaved("<System/>\n\n<NetWork Hostname=\"studio\"/>\n");
}

TEST_F(HostnameTest, SettingChecksNeitherLengthNorCharacters) {
  const std::string name = std::string(300, 'x') + " <&>\"";
  storeName("old");
  CFG_NETWORK_SetHostname(text(name.c_str()));
  expectSaved("<NetWork Hostname=\"" + std::string(300, 'x') + " &lt;&amp;&gt;&quot;\"/>\n");

  std::string buffer(name.size(), '#');
  CFG_NETWORK_GetHostname(buffer.data(), static_cast<int>(buffer.size()));
  EXPECT_EQ(buffer, name);
}

TEST_F(HostnameTest, SettingAnEmptyNameStoresIt) {
  storeName("old");
  CFG_NETWORK_SetHostname(text(""));
  expectSaved("<NetWork Hostname=\"\"/>\n");
}

TEST_F(HostnameTest, SettingANullNameDoesNotEvenOpenTheFile) {
  CFG_NETWORK_SetHostname(nullptr);
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_EQ(g_mapFileLock.count(CFG_FILE_BUSINESS), 0U);
}

}  // namespace
}  // namespace camcfg::tests
