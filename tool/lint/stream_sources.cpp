#include "lint/media_form.h"
#include "lint/stream.h"
#include "lint/subject.h"
#include "lint/values.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kCarriedName{"carried-name", Severity::Error,
                            "A stream source without \"Name\" gets the name of the one before it.",
                            "<VENC Id=\"0\" Name=\"main\" ChnId=\"0\"/> and after it <VENC "
                            "Id=\"1\" ChnId=\"1\"/>"};
constexpr Rule kIdRange{"source-id-range", Severity::Error,
                        "Whitelists of stream caches are saved for source ids from 0 to 29 only: "
                        "others stand for another source or are lost.",
                        "<VENC Id=\"32\" Name=\"main\" ChnId=\"0\"/>"};

void checkNames(const Elements& sources, Findings& findings) {
  const char* carried = nullptr;
  for (const XMLElement* source : sources) {
    const char* name = source->Attribute("Name");
    if (name != nullptr)
      carried = name;
    else
      findings.add(
          kCarriedName, *source,
          tag(source->Name()) + " has no \"Name\", " +
              (carried == nullptr ? "and there is none before it to take: the section "
                                    "does not load"
                                  : "and is called " + quoted(carried) + ", as the one before it"));
  }
}

void check(const Source& source, Findings& findings) {
  const XMLElement* section = sectionOf(*source.document, settings::streamSources());
  if (section == nullptr) return;
  checkSection(*section, settings::streamSources(), findings);
  const Elements sources = sourcesIn(*source.document);
  checkNames(sources, findings);
  checkEqualIds(sources, "this source", findings);
  for (const XMLElement* one : sources) checkSourceId(*one, findings);
}

}  // namespace

Elements sourcesIn(const tinyxml2::XMLDocument& document) {
  return entriesOf(document, settings::streamSources());
}

void checkSourceId(const XMLElement& element, Findings& findings) {
  int id = 0;
  if (element.QueryIntAttribute("Id", &id) != tinyxml2::XML_SUCCESS || id == -1) return;
  if (id < 0 || id > settings::kGreatestSourceId)
    findings.add(kIdRange, element, "Id",
                 tag(element.Name()) + ": the source id " + std::to_string(id) + " is outside 0.." +
                     std::to_string(settings::kGreatestSourceId));
}

Subject streamSources() {
  return {"stream", {&kCarriedName, &kIdRange}, Kind::Media, check};
}

}  // namespace camcfg::tool::lint
