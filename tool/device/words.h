#ifndef CAMCFG_TOOL_DEVICE_WORDS_H
#define CAMCFG_TOOL_DEVICE_WORDS_H

#include <vector>

#include "frame/command.h"

namespace camcfg::tool {

// The words that stand on the device, for the completion of command lines. Each is a `Words`: it
// looks at what is given on the command line in front of it, and throws a Refusal if the device's
// files are unusable. They load nothing but the file that the words are in.

using Candidates = std::vector<Candidate>;

Candidates sectionWords(const Arguments& before);
/// Parameters of the SECTION given, or of all; what each is set to helps to choose.
Candidates parameterWords(const Arguments& before);
/// What may be set: the words of the CARD's FIELD given, or the texts of the parameter NAME of the
/// SECTION given.
Candidates valueWords(const Arguments& before);

Candidates cardWords(const Arguments& before);
Candidates cardFieldWords(const Arguments& before);

/// Ids and descriptions.
Candidates presetWords(const Arguments& before);
Candidates presetIdWords(const Arguments& before);

Candidates sourceIdWords(const Arguments& before);
Candidates cacheIdWords(const Arguments& before);
/// Sources that the cache ID given allows.
Candidates allowedSourceWords(const Arguments& before);

/// Everything of the media file that has an id: "source", "cache", and the live media services.
Candidates mediaKindWords(const Arguments& before);
/// Ids of the KIND given; names, for RTSP sessions.
Candidates mediaIdWords(const Arguments& before);

Candidates languageWords(const Arguments& before);
/// Keys of the LANGUAGE given.
Candidates textKeyWords(const Arguments& before);

}  // namespace camcfg::tool

#endif
