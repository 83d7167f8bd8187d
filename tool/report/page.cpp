#include "report/page.h"

#include <sha256.h>

#include <array>
#include <cstdint>

#include "base/concat.h"
#include "base/html.h"
#include "media/wiring.h"
#include "report/facts.h"

namespace camcfg::tool::report {
namespace {

constexpr char kStyle[] =
    ":root{color-scheme:light dark;--ground:#fff;--text:#1c1c1c;--soft:#f3f3f3;--line:#bbb;"
    "--link:#0b57a4;--bad:#b00000;--fair:#7a4b00;--good:#1b6e2f}"
    "@media screen and "
    "(prefers-color-scheme:dark){:root{--ground:#161616;--text:#eaeaea;--soft:#262626;"
    "--line:#666;--link:#8ec5ff;--bad:#ff9c94;--fair:#ffcb6b;--good:#8fdc9f}}"
    "*{box-sizing:border-box}"
    "body{margin:0 auto;max-width:72rem;padding:1rem;background:var(--ground);color:var(--text);"
    "font:1rem/1.5 system-ui,sans-serif;overflow-wrap:anywhere}"
    "a{color:var(--link)}h1{line-height:1.2}h2{margin-top:2.5rem;border-bottom:1px solid "
    "var(--line)}"
    "h3{font-size:1rem}"
    "nav ul{display:flex;flex-wrap:wrap;gap:.25rem 1rem;padding:0;list-style:none}"
    ".light{display:flex;gap:.75rem;align-items:center;padding:.75rem;background:var(--soft);"
    "border-left:.5rem solid}"
    ".lamp{flex:none;width:1.25rem;height:1.25rem;border-radius:50%;background:currentColor}"
    ".light strong{color:inherit}.light.good,strong.good{color:var(--good)}"
    ".light.degraded,strong.degraded,strong.warning{color:var(--fair)}"
    ".light.unusable,strong.unusable,strong.error{color:var(--bad)}"
    ".wide{overflow-x:auto}table{border-collapse:collapse;margin:.5rem 0;font-size:.875rem}"
    "caption{text-align:left;font-weight:bold;padding:.25rem 0}"
    "th,td{border:1px solid var(--line);padding:.25rem .5rem;text-align:left;vertical-align:top;"
    "unicode-bidi:isolate;overflow-wrap:break-word;min-width:3rem;max-width:24rem}"
    "thead th{background:var(--soft)}tbody th{font-weight:normal}"
    "dl{display:grid;grid-template-columns:max-content 1fr;gap:0 1rem;margin:0 0 1rem}"
    "dt{font-weight:bold}dd{margin:0;unicode-bidi:isolate}code{font-size:.9em}"
    "summary{cursor:pointer;padding:.25rem 0;font-weight:bold}"
    "svg{display:block;margin:.5rem 0;border:1px solid var(--line)}"
    "@media(max-width:40rem){dl{grid-template-columns:1fr}svg{min-width:40rem}}"
    "@media print{body{max-width:none;padding:0;font-size:9pt}nav{display:none}"
    "h2,h3,p{break-after:avoid}h2{margin-top:1rem}tr,li{break-inside:avoid}.wide{overflow:visible}"
    "table{font-size:7.5pt}th,td{overflow-wrap:anywhere;padding:.1rem .3rem}"
    "a{color:inherit}.lamp{print-color-adjust:exact}summary{list-style:none}"
    "details::details-content{content-visibility:visible}}";

std::string base64(const std::array<std::uint8_t, SHA256_DIGEST_LENGTH>& bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t three = 0;
    for (std::size_t j = 0; j < 3; ++j)
      three = three << 8 | (i + j < bytes.size() ? bytes[i + j] : 0U);
    for (std::size_t j = 0; j < 4; ++j)
      text += i + j > bytes.size() ? '=' : kDigits[three >> (18 - 6 * j) & 63];
  }
  return text;
}

std::string policyFor(const std::string& style) {
  std::array<std::uint8_t, SHA256_DIGEST_LENGTH> digest{};
  SHA2_CTX context;
  SHA256Init(&context);
  SHA256Update(&context, reinterpret_cast<const std::uint8_t*>(style.data()), style.size());
  SHA256Final(digest.data(), &context);
  return concat("default-src 'none'; style-src 'sha256-", base64(digest),
                "'; base-uri 'none'; form-action 'none'");
}

}  // namespace

std::string pageOf(const std::string& title, const std::string& lead,
                   const std::vector<Part>& parts) {
  const std::string style = concat(kStyle, media::kDrawingStyle, kPictureStyle);
  std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
  write(page, "<meta http-equiv=\"Content-Security-Policy\" content=\"", policyFor(style),
        "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"referrer\" content=\"no-referrer\">\n<title>",
        htmlText(cutTo(title, 100)), "</title>\n<style>", style,
        "</style>\n</head>\n<body>\n<header>\n<h1>", inCell(title), "</h1>\n", lead,
        "</header>\n<nav aria-label=\"Contents\"><ul>\n");
  for (const Part& part : parts)
    write(page, "<li><a href=\"#", part.id, "\">", htmlText(part.title), "</a></li>\n");
  page += "</ul></nav>\n<main>\n";
  for (const Part& part : parts)
    write(page, "<section aria-labelledby=\"", part.id, "\">\n<h2 id=\"", part.id, "\">",
          htmlText(part.title), "</h2>\n", part.html, "</section>\n");
  return page + "</main>\n</body>\n</html>\n";
}

std::string reportOf(const Json& facts) {
  const Json& system = facts.at("system");
  std::string title = "Report of a device";
  if (!isFault(system) && system.at("name").is_string())
    title = "Report of " + system.at("name").text();
  std::string lead = verdictOf(facts);
  for (const Json& note : facts.at("notes")) lead += paragraph(note.text() + ".");
  if (!isFault(system))
    lead += paragraph(concat("Model ", shown(system.at("model")), ", language ",
                             shown(system.at("language")), ". ", facts.at("made").at("at").text()));
  return pageOf(title, lead, partsOf(facts));
}

}  // namespace camcfg::tool::report
