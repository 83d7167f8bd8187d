#include <strings.h>

#include <algorithm>

#include "lint/entry_ids.h"
#include "lint/media_form.h"
#include "lint/stream.h"
#include "lint/subject.h"
#include "media/stream_cache.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kCarriedName{"carried-name", Severity::Error,
                            "A stream source without \"Name\" gets the name of the one before it.",
                            "<VENC Id=\"0\" Name=\"main\" ChnId=\"0\"/> and behind it <VENC "
                            "Id=\"1\" ChnId=\"1\"/>"};
constexpr Rule kIdRange{"source-id-range", Severity::Error,
                        "Whitelists of stream caches are saved for source ids from 0 to 29 only: "
                        "others stand for another source or are lost.",
                        "<VENC Id=\"32\" Name=\"main\" ChnId=\"0\"/>"};

constexpr Need kRequired = Need::Required;
constexpr Need kOptional = Need::Optional;

const SectionForm& form() {
  static const SectionForm section = {"Stream",
                                      "StreamSource",
                                      true,
                                      {{"VENC",
                                        {{"ChnId", Form::Integer, kRequired},
                                         {"Id", Form::Integer, kRequired},
                                         {"Name", Form::Text, Need::Carried},
                                         {"Enabled", Form::Integer, kOptional}},
                                        {}},
                                       {"AI",
                                        {{"AiId", Form::Integer, kRequired},
                                         {"Id", Form::Integer, kRequired},
                                         {"Name", Form::Text, Need::Carried},
                                         {"Enabled", Form::Integer, kOptional}},
                                        {}},
                                       {"AENC",
                                        {{"AencId", Form::Integer, kRequired},
                                         {"Id", Form::Integer, kRequired},
                                         {"Name", Form::Text, Need::Carried},
                                         {"Enabled", Form::Integer, kOptional}},
                                        {}}}};
  return section;
}

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
  const XMLElement* section = sectionOf(*source.document, form());
  if (section == nullptr) return;
  checkSection(*section, form(), findings);
  const Elements sources = sourcesIn(*source.document);
  checkNames(sources, findings);
  checkEqualIds(sources, "this source", findings);
  for (const XMLElement* one : sources) checkSourceId(*one, findings);
}

}  // namespace

Elements sourcesIn(const tinyxml2::XMLDocument& document) {
  const XMLElement* section = sectionOf(document, form());
  if (section == nullptr) return {};
  Elements sources = childrenOf(*section);
  const auto isOther = [](const XMLElement* element) {
    return std::none_of(form().entries.begin(), form().entries.end(), [&](const EntryForm& kind) {
      return strcasecmp(element->Name(), kind.name) == 0;
    });
  };
  sources.erase(std::remove_if(sources.begin(), sources.end(), isOther), sources.end());
  return sources;
}

void checkSourceId(const XMLElement& element, Findings& findings) {
  int id = 0;
  if (element.QueryIntAttribute("Id", &id) != tinyxml2::XML_SUCCESS || id == -1) return;
  if (id < 0 || id > media::kGreatestSourceId)
    findings.add(kIdRange, element, "Id",
                 tag(element.Name()) + ": the source id " + std::to_string(id) + " is outside 0.." +
                     std::to_string(media::kGreatestSourceId));
}

Subject streamSources() {
  return {"stream", {&kCarriedName, &kIdRange}, Kind::Media, check};
}

}  // namespace camcfg::tool::lint
