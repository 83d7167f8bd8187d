#include <sys/resource.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdlib>

#include "support/device_test.h"

namespace camcfg::tests {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

class ElementSearchTest : public testing::Test {
 protected:
  /// The element that holds these children.
  XMLElement* parentOf(const std::string& children) {
    EXPECT_EQ(document.Parse(("<Parent>" + children + "</Parent>").c_str()), tinyxml2::XML_SUCCESS);
    return document.RootElement();
  }
  /// How the tests tell elements apart: their attribute "n", or that it is missing.
  static std::string numberOf(const XMLElement* element) {
    return element == nullptr ? "none" : element->Attribute("n");
  }

  XMLDocument document;
};

TEST_F(ElementSearchTest, ParentWithoutChildElementsYieldsNothing) {
  for (const char* children : {"", "text only", "<!-- comment -->"}) {
    XMLElement* parent = parentOf(children);
    for (const char* name : {"A", ""}) {
      EXPECT_EQ(CFG_GetElementByName(parent, name), nullptr);
      EXPECT_EQ(CFG_GetElementByNameRecursion(parent, name), nullptr);
      EXPECT_EQ(CFG_GetElementByNameId(parent, name, 0), nullptr);
      EXPECT_EQ(CFG_GetBrotherElementByName(parent->FirstChildElement(), name), nullptr);
      EXPECT_EQ(CFG_GetElementByUsage(parent, name, text("")), nullptr);
    }
  }
}

TEST_F(ElementSearchTest, NullArgumentsYieldNothing) {
  XMLElement* parent = parentOf("<A n='1' Id='0' Usage='u'/>");
  EXPECT_EQ(CFG_GetElementByName(nullptr, "A"), nullptr);
  EXPECT_EQ(CFG_GetElementByName(parent, nullptr), nullptr);
  EXPECT_EQ(CFG_GetElementByNameRecursion(nullptr, "A"), nullptr);
  EXPECT_EQ(CFG_GetElementByNameRecursion(parent, nullptr), nullptr);
  EXPECT_EQ(CFG_GetElementByNameId(nullptr, "A", 0), nullptr);
  EXPECT_EQ(CFG_GetElementByNameId(parent, nullptr, 0), nullptr);
  EXPECT_EQ(CFG_GetBrotherElementByName(nullptr, "A"), nullptr);
  EXPECT_EQ(CFG_GetBrotherElementByName(parent, nullptr), nullptr);
  EXPECT_EQ(CFG_GetElementByUsage(nullptr, "A", text("u")), nullptr);
  EXPECT_EQ(CFG_GetElementByUsage(parent, nullptr, text("u")), nullptr);
  EXPECT_EQ(CFG_GetElementByUsage(parent, "A", nullptr), nullptr);
}

TEST_F(ElementSearchTest, SearchesChangeNothing) {
  XMLElement* parent = parentOf("<A n='1' Id='1' Usage='u'/><!-- c --> <B n='2'/>");
  tinyxml2::XMLPrinter before;
  document.Print(&before);
  CFG_GetElementByName(parent, "C");
  CFG_GetElementByNameId(parent, "A", 2);
  CFG_GetBrotherElementByName(parent->FirstChildElement(), "C");
  CFG_GetElementByUsage(parent, "B", text("u"));
  tinyxml2::XMLPrinter after;
  document.Print(&after);
  EXPECT_STREQ(after.CStr(), before.CStr());
}

// --- by name ---

struct Lookup {
  const char* children;
  const char* name;
  const char* found;
};

TEST_F(ElementSearchTest, NameMatchesByItsBeginningAndTheFirstInOrderWins) {
  const Lookup lookups[] = {
      {"<RtspOverHttp n='1'/><Rtsp n='2'/>", "Rtsp", "1"},
      {"<Rtsp n='1'/><RtspOverHttp n='2'/>", "Rtsp", "1"},
      {"<Rtsp n='1'/><RtspOverHttp n='2'/>", "RtspOver", "2"},
      {"<WebHttps n='1'/>", "WebHttp", "1"},
      {"<WebHttp n='1'/>", "WebHttps", "none"},
      {"<A n='1'/><A n='2'/>", "A", "1"},
      {"<A n='1'/><B n='2'/>", "", "1"},
      {"<a n='1'/><A n='2'/>", "A", "2"},
      {"<xA n='1'/>", "A", "none"},
      {"text<!-- c --><A n='1'/>", "A", "1"},
      {"<Outer n='1'><A n='2'/></Outer>", "A", "none"},
  };
  for (const Lookup& lookup : lookups)
    EXPECT_EQ(numberOf(CFG_GetElementByName(parentOf(lookup.children), lookup.name)), lookup.found)
        << lookup.name << " in " << lookup.children;
}

TEST_F(ElementSearchTest, ParentItselfIsNotLookedAt) {
  EXPECT_EQ(CFG_GetElementByName(parentOf("<A n='1'/>"), "Parent"), nullptr);
}

// --- by name, the call that must not be used ---

constexpr int kStackExhausted = 42;
constexpr int kOtherFault = 43;
char* stackAtStart;

[[noreturn]] void onFault(int, siginfo_t* info, void*) {
  const auto depth = stackAtStart - static_cast<char*>(info->si_addr);
  _exit(depth > 256 * 1024 && depth < 1024 * 1024 * 1024 ? kStackExhausted : kOtherFault);
}

// Calls the search on a small stack, and leaves the process as the fault that ends it demands.
[[noreturn]] void searchWithoutEnd(XMLElement* parent, const char* name) {
  stackAtStart = static_cast<char*>(__builtin_frame_address(0));
  rlimit stack{};
  getrlimit(RLIMIT_STACK, &stack);
  stack.rlim_cur = 1024 * 1024;
  setrlimit(RLIMIT_STACK, &stack);

  static char other[64 * 1024];
  stack_t alternative{};
  alternative.ss_sp = other;
  alternative.ss_size = sizeof other;
  sigaltstack(&alternative, nullptr);
  struct sigaction action {};
  action.sa_sigaction = onFault;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigaction(SIGSEGV, &action, nullptr);

  CFG_GetElementByNameRecursion(parent, name);
  _exit(0);
}

TEST_F(ElementSearchTest, RecursionReturnsTheFirstChildThatMatches) {
  EXPECT_EQ(numberOf(CFG_GetElementByNameRecursion(parentOf("<A n='1'/><A n='2'/>"), "A")), "1");
  EXPECT_EQ(numberOf(CFG_GetElementByNameRecursion(parentOf("<Abc n='1'/>"), "A")), "1");
  EXPECT_EQ(numberOf(CFG_GetElementByNameRecursion(parentOf("<B n='1'/>"), "")), "1");
}

TEST_F(ElementSearchTest, RecursionHasNoEndWhenTheFirstChildDoesNotMatch) {
  for (const char* children : {"<B/>", "<B/><A/>", "<B><A/></B>", "<a/>"})
    EXPECT_EXIT(searchWithoutEnd(parentOf(children), "A"), testing::ExitedWithCode(kStackExhausted),
                "")
        << children;
}

// --- by name and id ---

struct IdLookup {
  const char* children;
  int id;
  const char* found;
};

TEST_F(ElementSearchTest, CandidateIsComparedByTheLastIdRead) {
  const IdLookup lookups[] = {
      {"<A n='1' Id='1'/><A n='2' Id='2'/><A n='3' Id='2'/>", 2, "2"},
      {"<A n='1' Id='1'/><A n='2' Id='2'/>", 3, "none"},
      {"<Abc n='1' Id='5'/>", 5, "1"},
      {"<B n='1' Id='5'/><A n='2' Id='5'/>", 5, "2"},
      {"<A n='1' Id='-7'/>", -7, "1"},
      {"<A n='1' Id='2147483647'/>", INT_MAX, "1"},
      {"<A n='1' Id='-2147483648'/>", INT_MIN, "1"},
      // Without a readable id of its own, a candidate is compared by one that was refused already.
      {"<A n='1' Id='2'/><A n='2'/><A n='3' Id='3'/>", 3, "3"},
      {"<A n='1' Id='2'/><A n='2'/><A n='3' Id='3'/>", 2, "1"},
      {"<A n='1' Id='2'/><A n='2' Id='two'/>", 2, "1"},
      {"<A n='1' Id='1'/><A n='2' Id='two'/><A n='3' Id='2'/>", 2, "3"},
      // Elements of another name are no candidates: their ids are not carried.
      {"<A n='1' Id='1'/><B n='2' Id='2'/><A n='3'/>", 2, "none"},
      // Nothing was read yet: no id equals that.
      {"<A n='1'/><A n='2' Id='x'/>", 0, "none"},
      {"<A n='1'/><A n='2' Id='x'/>", -1, "none"},
      {"<A n='1'/><A n='2' Id='x'/>", INT_MIN, "none"},
      {"<A n='1'/><A n='2' Id='x'/>", INT_MAX, "none"},
      {"<A n='1'/><A n='2' Id='1'/>", 1, "2"},
  };
  for (const IdLookup& lookup : lookups)
    EXPECT_EQ(numberOf(CFG_GetElementByNameId(parentOf(lookup.children), "A", lookup.id)),
              lookup.found)
        << lookup.id << " in " << lookup.children;
}

// --- among brothers ---

TEST_F(ElementSearchTest, BrotherMatchesByItsWholeNameFromTheStartOn) {
  XMLElement* first =
      parentOf("<RtspOverHttp n='1'/><Rtsp n='2'/><Rtsp n='3'/><In n='4'><Deep n='5'/></In>")
          ->FirstChildElement();
  EXPECT_EQ(numberOf(CFG_GetBrotherElementByName(first, "RtspOverHttp")), "1");
  EXPECT_EQ(numberOf(CFG_GetBrotherElementByName(first, "Rtsp")), "2");
  EXPECT_EQ(numberOf(CFG_GetBrotherElementByName(first->NextSiblingElement(), "Rtsp")), "2");
  EXPECT_EQ(numberOf(CFG_GetBrotherElementByName(first->NextSiblingElement(), "RtspOverHttp")),
            "none");
  EXPECT_EQ(numberOf(CFG_GetBrotherElementByName(first, "In")), "4");
  for (const char* name : {"Deep", "Rts", "rtsp", "I", ""})
    EXPECT_EQ(numberOf(CFG_GetBrotherElementByName(first, name)), "none") << name;
}

// --- by usage ---

struct UsageLookup {
  const char* children;
  const char* usage;
  const char* found;
};

TEST_F(ElementSearchTest, UsageMatchesByItsBeginning) {
  const UsageLookup lookups[] = {
      {"<A n='1' Usage='abc'/>", "ab", "1"},
      {"<A n='1' Usage='ab'/>", "ab", "1"},
      {"<A n='1' Usage='a'/>", "ab", "none"},
      {"<A n='1' Usage='xab'/>", "ab", "none"},
      {"<A n='1' Usage='AB'/>", "ab", "none"},
      {"<A n='1'/><A n='2' Usage='ab'/>", "ab", "2"},
      {"<A n='1'/>", "", "none"},
      {"<A n='1' Usage=''/>", "", "1"},
      {"<A n='1' Usage='x'/><A n='2' Usage='ab'/><A n='3' Usage='ab'/>", "ab", "2"},
      {"<B n='1' Usage='ab'/><Abc n='2' Usage='ab'/>", "ab", "2"},
      {"<A n='1' usage='ab'/>", "ab", "none"},
  };
  for (const UsageLookup& lookup : lookups)
    EXPECT_EQ(numberOf(CFG_GetElementByUsage(parentOf(lookup.children), "A", text(lookup.usage))),
              lookup.found)
        << lookup.usage << " in " << lookup.children;
}

}  // namespace
}  // namespace camcfg::tests
