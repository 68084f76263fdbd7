// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/Doctype.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/Parsing/StopUnits.hpp"

namespace nimbo {
namespace {

bool isBlank(unichar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f';
}

class DoctypeReader {
 public:
  DoctypeReader(std::u16string_view page, std::size_t position) : page_(page), position_(position) {}

  HTMLDoctype read() {
    skipBlanks();
    if (atEnd()) return broken();
    while (position_ < page_.size() && !isBlank(page_[position_]) && page_[position_] != u'>')
      doctype_.name += foldedNameUnit(page_[position_++]);
    skipBlanks();
    if (position_ >= page_.size()) return broken();
    const std::u16string_view keyword = page_.substr(position_, 6);
    if (page_[position_] == u'>') return std::move(doctype_);
    if (equalsASCIINoCase(keyword, "public")) {
      position_ += keyword.size();
      if (!readIdentifier(doctype_.publicIdentifier)) return broken();
      skipBlanks();
      if (position_ < page_.size() && !isQuote()) return endHere();
    } else if (equalsASCIINoCase(keyword, "system")) {
      position_ += keyword.size();
    } else {
      return broken();
    }
    if (!readIdentifier(doctype_.systemIdentifier)) return broken();
    skipBlanks();
    // What stands behind the system identifier does no harm.
    if (position_ >= page_.size()) doctype_.forcesQuirks = true;
    return std::move(doctype_);
  }

  /// Behind the ">" that ends the declaration.
  std::size_t end() const {
    static constexpr StopUnits kEnd({u'>'});
    return std::min(kEnd.find(page_, std::min(position_, page_.size())) + 1, page_.size());
  }

 private:
  bool atEnd() const { return position_ >= page_.size() || page_[position_] == u'>'; }
  bool isQuote() const { return page_[position_] == u'"' || page_[position_] == u'\''; }
  void skipBlanks() {
    while (position_ < page_.size() && isBlank(page_[position_])) ++position_;
  }

  HTMLDoctype broken() {
    doctype_.forcesQuirks = true;
    return std::move(doctype_);
  }

  /// Behind a public identifier: good when the declaration ends there.
  HTMLDoctype endHere() { return page_[position_] == u'>' ? std::move(doctype_) : broken(); }

  /// Whether a whole identifier in quotes was read.
  bool readIdentifier(std::optional<std::u16string> &identifier) {
    skipBlanks();
    if (position_ >= page_.size() || !isQuote()) return false;
    const unichar quote = page_[position_++];
    identifier.emplace();
    for (; !atEnd(); ++position_) {
      if (page_[position_] == quote) return ++position_, true;
      *identifier += page_[position_] != 0 ? page_[position_] : u'\uFFFD';
    }
    return false;
  }

  std::u16string_view page_;
  std::size_t position_;
  HTMLDoctype doctype_;
};

constexpr std::string_view kQuirkyPublicIdentifiers[] = {"-//w3o//dtd w3 html strict 3.0//en//",
                                                         "-/w3c/dtd html 4.0 transitional/en", "html"};

constexpr std::string_view kQuirkyPublicPrefixes[] = {
    "+//silmaril//dtd html pro v0r11 19970101//",
    "-//as//dtd html 3.0 aswedit + extensions//",
    "-//advasoft ltd//dtd html 3.0 aswedit + extensions//",
    "-//ietf//dtd html 2.0 level 1//",
    "-//ietf//dtd html 2.0 level 2//",
    "-//ietf//dtd html 2.0 strict level 1//",
    "-//ietf//dtd html 2.0 strict level 2//",
    "-//ietf//dtd html 2.0 strict//",
    "-//ietf//dtd html 2.0//",
    "-//ietf//dtd html 2.1e//",
    "-//ietf//dtd html 3.0//",
    "-//ietf//dtd html 3.2 final//",
    "-//ietf//dtd html 3.2//",
    "-//ietf//dtd html 3//",
    "-//ietf//dtd html level 0//",
    "-//ietf//dtd html level 1//",
    "-//ietf//dtd html level 2//",
    "-//ietf//dtd html level 3//",
    "-//ietf//dtd html strict level 0//",
    "-//ietf//dtd html strict level 1//",
    "-//ietf//dtd html strict level 2//",
    "-//ietf//dtd html strict level 3//",
    "-//ietf//dtd html strict//",
    "-//ietf//dtd html//",
    "-//metrius//dtd metrius presentational//",
    "-//microsoft//dtd internet explorer 2.0 html strict//",
    "-//microsoft//dtd internet explorer 2.0 html//",
    "-//microsoft//dtd internet explorer 2.0 tables//",
    "-//microsoft//dtd internet explorer 3.0 html strict//",
    "-//microsoft//dtd internet explorer 3.0 html//",
    "-//microsoft//dtd internet explorer 3.0 tables//",
    "-//netscape comm. corp.//dtd html//",
    "-//netscape comm. corp.//dtd strict html//",
    "-//o'reilly and associates//dtd html 2.0//",
    "-//o'reilly and associates//dtd html extended 1.0//",
    "-//o'reilly and associates//dtd html extended relaxed 1.0//",
    "-//sq//dtd html 2.0 hotmetal + extensions//",
    "-//softquad software//dtd hotmetal pro 6.0::19990601::extensions to html 4.0//",
    "-//softquad//dtd hotmetal pro 4.0::19971010::extensions to html 4.0//",
    "-//spyglass//dtd html 2.0 extended//",
    "-//sun microsystems corp.//dtd hotjava html//",
    "-//sun microsystems corp.//dtd hotjava strict html//",
    "-//w3c//dtd html 3 1995-03-24//",
    "-//w3c//dtd html 3.2 draft//",
    "-//w3c//dtd html 3.2 final//",
    "-//w3c//dtd html 3.2//",
    "-//w3c//dtd html 3.2s draft//",
    "-//w3c//dtd html 4.0 frameset//",
    "-//w3c//dtd html 4.0 transitional//",
    "-//w3c//dtd html experimental 19960712//",
    "-//w3c//dtd html experimental 970421//",
    "-//w3c//dtd w3 html//",
    "-//w3o//dtd w3 html 3.0//",
    "-//webtechs//dtd mozilla html 2.0//",
    "-//webtechs//dtd mozilla html//",
};

/// Quirks without a system identifier, few of them with one.
constexpr std::string_view kOldPublicPrefixes[] = {"-//w3c//dtd html 4.01 frameset//",
                                                   "-//w3c//dtd html 4.01 transitional//"};

constexpr std::string_view kLimitedPublicPrefixes[] = {"-//w3c//dtd xhtml 1.0 frameset//",
                                                       "-//w3c//dtd xhtml 1.0 transitional//"};

bool startsWithAny(std::u16string_view text, std::span<const std::string_view> prefixes) {
  return std::ranges::any_of(prefixes, [=](std::string_view one) { return startsWithASCIINoCase(text, one); });
}

}  // namespace

HTMLDoctype readDoctype(std::u16string_view page, std::size_t *position) {
  DoctypeReader reader(page, *position);
  HTMLDoctype doctype = reader.read();
  *position = reader.end();
  return doctype;
}

HTMLQuirksMode quirksModeOfDoctype(const HTMLDoctype &doctype) {
  constexpr std::string_view kQuirkySystemIdentifier =
      "http://www.ibm.com/data/dtd/v11/ibmxhtml1-transitional.dtd";
  if (doctype.forcesQuirks || doctype.name != u"html") return HTMLQuirksMode::quirks;
  const std::u16string_view system =
      doctype.systemIdentifier ? *doctype.systemIdentifier : std::u16string_view();
  if (equalsASCIINoCase(system, kQuirkySystemIdentifier)) return HTMLQuirksMode::quirks;
  if (!doctype.publicIdentifier) return HTMLQuirksMode::noQuirks;
  const std::u16string_view name = *doctype.publicIdentifier;
  const auto isName = [=](std::string_view one) { return equalsASCIINoCase(name, one); };
  if (std::ranges::any_of(kQuirkyPublicIdentifiers, isName) || startsWithAny(name, kQuirkyPublicPrefixes))
    return HTMLQuirksMode::quirks;
  if (startsWithAny(name, kOldPublicPrefixes))
    return doctype.systemIdentifier ? HTMLQuirksMode::limitedQuirks : HTMLQuirksMode::quirks;
  return startsWithAny(name, kLimitedPublicPrefixes) ? HTMLQuirksMode::limitedQuirks : HTMLQuirksMode::noQuirks;
}

}  // namespace nimbo
