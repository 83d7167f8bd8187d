#ifndef CAMCFG_TESTS_MEDIA_DOCUMENT_TEST_H
#define CAMCFG_TESTS_MEDIA_DOCUMENT_TEST_H

#include <string>

#include "media/media_test.h"

namespace camcfg::tests {

/// Stands for a document that somebody left open; counts those destroyed.
class WatchedDocument : public tinyxml2::XMLDocument {
 public:
  explicit WatchedDocument(int& destroyed) : destroyed_(destroyed) { Parse("<Watched/>"); }
  ~WatchedDocument() override { ++destroyed_; }

 private:
  int& destroyed_;
};

/// The document as either family opens and closes it. The sections' names mean nothing to it.
class MediaDocumentTest : public MediaTest, public testing::WithParamInterface<const Family*> {
 protected:
  MediaDocumentTest() : MediaTest(*GetParam(), "Section") {}

  struct Opened {
    tinyxml2::XMLElement* section;
    std::string printed;
  };

  Opened open(const char* section, tagBU_BOOL readOnly) const {
    Opened opened{};
    opened.printed = captureOutput([&] { opened.section = family().open(section, readOnly); });
    return opened;
  }

  /// Expects an opening to print no more than this and to hand nothing out.
  void expectRefused(const char* section, tagBU_BOOL readOnly, const std::string& printed) const {
    const Opened opened = open(section, readOnly);
    EXPECT_EQ(opened.section, nullptr);
    EXPECT_EQ(family().handle, nullptr);
    EXPECT_EQ(opened.printed, printed);
  }

  std::string notFound(const std::string& element) const {
    return family().error("<" + element + "> not found");
  }

  /// A file's contents with "TOP" for the family's element.
  std::string withTop(std::string contents) const {
    for (std::size_t at = 0; (at = contents.find("TOP", at)) != std::string::npos;)
      contents.replace(at, 3, family().top);
    return contents;
  }

  std::string oneSection(const std::string& attribute = "") const {
    return withTop("<TOP>\n    <Section" + attribute + "/>\n</TOP>\n");
  }

  const std::string openFailed = family().error("Config File open failed");
  const std::string unlockedTwice = lockWarning(kNotLocked);
};

inline const tagBU_BOOL kBothModes[] = {BU_TRUE, BU_FALSE};

inline std::string nameOf(const testing::TestParamInfo<const Family*>& family) {
  return family.param->name;
}

}  // namespace camcfg::tests

#endif
