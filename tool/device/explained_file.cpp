#include "device/explained_file.h"

#include "base/refusal.h"

namespace camcfg::tool::device {
namespace {

ExplainedLookup::Found found(const Hit& hit) {
  return {hit.name, hit.element->GetLineNum(), hit.exact};
}

}  // namespace

ExplainedFile::ExplainedFile(const char* mainPath) {
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    paths_[i] = pathOf(kPlaces[i], nameOf(mainPath));
    copies_[i] = loadCopy(paths_[i]);
  }
  while (tried_ < copies_.size() && copies_[tried_].state != State::Good) ++tried_;
  if (tried_ == copies_.size())
    throw Refusal(Status::Unusable, std::string(mainPath) + " " + copies_[0].fault +
                                        " and no other copy of it is good");
}

ExplainedLookup ExplainedFile::told(const Lookup& lookup) const {
  ExplainedLookup told{lookup.asked, paths_[tried_], std::nullopt, lookup.why, {}};
  for (const Hit& hit : lookup.hits) {
    if (told.answeredBy)
      told.shadows.push_back(found(hit));
    else
      told.answeredBy = found(hit);
  }
  return told;
}

}  // namespace camcfg::tool::device
