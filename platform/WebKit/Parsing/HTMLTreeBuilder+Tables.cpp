// SPDX-License-Identifier: Apache-2.0
//
// Tables and what is in them.
#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"

namespace nimbo {

/// Pops what is open above the highest of these, of a template and of the root.
void HTMLTreeBuilder::popToOneOf(std::initializer_list<HTMLAtom> names) {
  Position position = std::max(open_.top("html"_atom), open_.top("template"_atom));
  for (const HTMLAtom name : names) position = std::max(position, open_.top(name));
  open_.popThrough(position + 1);
}

/// Ends a part of a table, at its position, in front of a token that cannot stand in it; 0 when it is not open.
HTMLTreeBuilder::Outcome HTMLTreeBuilder::endTablePart(Position position, Mode mode) {
  if (position == 0) return Outcome::done;
  open_.popThrough(position);
  mode_ = mode;
  return Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInTable(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
    case HTMLTokenKind::nullCharacter:
      if ((open_.current().traits & kFostersParents) == 0 && !open_.isCurrent("template"_atom))
        return readOtherInTable(token);
      originalMode_ = mode_;
      mode_ = Mode::inTableText;
      return Outcome::again;
    case HTMLTokenKind::comment:
      insertComment(token);
      break;
    case HTMLTokenKind::doctype:
      break;
    case HTMLTokenKind::endOfFile:
      return readInBody(token);
    case HTMLTokenKind::startTag:
      return readStartTagInTable(token);
    case HTMLTokenKind::endTag:
      return readEndTagInTable(token);
  }
  return Outcome::done;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readStartTagInTable(HTMLToken &token) {
  const auto begin = [&](Mode mode) {
    popToOneOf({"table"_atom});
    if (mode == Mode::inCaption) formatting_.pushMarker();
    insertElement(token);
    mode_ = mode;
    return Outcome::done;
  };
  const auto beginImplied = [&](HTMLAtom name, Mode mode) {
    popToOneOf({"table"_atom});
    insertElement(name);
    mode_ = mode;
    return Outcome::again;
  };
  switch (token.name) {
    case "caption"_atom:
      return begin(Mode::inCaption);
    case "colgroup"_atom:
      return begin(Mode::inColumnGroup);
    case "col"_atom:
      return beginImplied("colgroup"_atom, Mode::inColumnGroup);
    case "tbody"_atom:
    case "tfoot"_atom:
    case "thead"_atom:
      return begin(Mode::inTableBody);
    case "td"_atom:
    case "th"_atom:
    case "tr"_atom:
      return beginImplied("tbody"_atom, Mode::inTableBody);
    case "table"_atom:
      return endTable() ? Outcome::again : Outcome::done;
    case "style"_atom:
    case "script"_atom:
    case "template"_atom:
      return readInHead(token);
    case "input"_atom:
      if (!equalsASCIINoCase(attribute(token, "type"_atom), "hidden")) break;
      insertEmptyElement(token);
      return Outcome::done;
    case "form"_atom:
      if (open_.has("template"_atom) || form_ != kNoHTMLNode) return Outcome::done;
      form_ = insertElement(token);
      open_.pop();
      return Outcome::done;
    default:
      break;
  }
  return readOtherInTable(token);
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readEndTagInTable(HTMLToken &token) {
  switch (token.name) {
    case "table"_atom:
      endTable();
      return Outcome::done;
    case "body"_atom:
    case "caption"_atom:
    case "col"_atom:
    case "colgroup"_atom:
    case "html"_atom:
    case "tbody"_atom:
    case "td"_atom:
    case "tfoot"_atom:
    case "th"_atom:
    case "thead"_atom:
    case "tr"_atom:
      return Outcome::done;
    case "template"_atom:
      endTemplate();
      return Outcome::done;
    default:
      return readOtherInTable(token);
  }
}

/// Whether there was a table to end.
bool HTMLTreeBuilder::endTable() {
  if (!open_.isInTableScope("table"_atom)) return false;
  open_.popThrough(open_.top("table"_atom));
  resetMode();
  return true;
}

/// What does not belong into a table is read as in the body and goes in front of the table.
HTMLTreeBuilder::Outcome HTMLTreeBuilder::readOtherInTable(HTMLToken &token) {
  isFostering_ = true;
  const Outcome outcome = readInBody(token);
  isFostering_ = false;
  return outcome;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInTableText(HTMLToken &token) {
  if (token.kind == HTMLTokenKind::nullCharacter) return Outcome::done;
  if (token.kind == HTMLTokenKind::characters) return tableText_.push_back(token.text), Outcome::done;
  const bool isFostered = !std::ranges::all_of(tableText_, [this](const auto &text) { return isBlank(text); });
  for (const HTMLTextRange &text : tableText_) {
    if (!isFostered) {
      insertText(text);
      continue;
    }
    HTMLToken characters;
    characters.kind = HTMLTokenKind::characters;
    characters.text = text;
    readOtherInTable(characters);
  }
  tableText_.clear();
  mode_ = originalMode_;
  return Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInCaption(HTMLToken &token) {
  const auto end = [this](Outcome outcome) {
    if (!open_.isInTableScope("caption"_atom)) return Outcome::done;
    open_.popThrough(open_.top("caption"_atom));
    formatting_.clearToMarker();
    mode_ = Mode::inTable;
    return outcome;
  };
  const bool isEnd = token.kind == HTMLTokenKind::endTag;
  if (!isEnd && token.kind != HTMLTokenKind::startTag) return readInBody(token);
  switch (token.name) {
    case "caption"_atom:
      return end(isEnd ? Outcome::done : Outcome::again);
    case "table"_atom:
      return isEnd ? end(Outcome::again) : readInBody(token);
    case "col"_atom:
    case "colgroup"_atom:
    case "tbody"_atom:
    case "td"_atom:
    case "tfoot"_atom:
    case "th"_atom:
    case "thead"_atom:
    case "tr"_atom:
      return isEnd ? Outcome::done : end(Outcome::again);
    case "body"_atom:
    case "html"_atom:
      return isEnd ? Outcome::done : readInBody(token);
    default:
      return readInBody(token);
  }
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInColumnGroup(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
      if (insertBlanks(token)) return Outcome::done;
      break;
    case HTMLTokenKind::comment:
      return insertComment(token), Outcome::done;
    case HTMLTokenKind::doctype:
      return Outcome::done;
    case HTMLTokenKind::endOfFile:
      return readInBody(token);
    case HTMLTokenKind::startTag:
      if (token.name == "html"_atom) return readInBody(token);
      if (token.name == "col"_atom) return insertEmptyElement(token), Outcome::done;
      if (token.name == "template"_atom) return readInHead(token);
      break;
    case HTMLTokenKind::endTag:
      if (token.name == "col"_atom) return Outcome::done;
      if (token.name == "template"_atom) return readInHead(token);
      break;
    case HTMLTokenKind::nullCharacter:
      break;
  }
  if (!open_.isCurrent("colgroup"_atom)) return Outcome::done;
  open_.pop();
  mode_ = Mode::inTable;
  const bool isEnd = token.kind == HTMLTokenKind::endTag && token.name == "colgroup"_atom;
  return isEnd ? Outcome::done : Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInTableBody(HTMLToken &token) {
  const auto clear = [this] { popToOneOf({"tbody"_atom, "tfoot"_atom, "thead"_atom}); };
  const auto endAnyBody = [&] {
    const bool isInBody = open_.isInTableScope("tbody"_atom) || open_.isInTableScope("thead"_atom) ||
                          open_.isInTableScope("tfoot"_atom);
    if (isInBody) clear();
    return endTablePart(isInBody ? open_.size() : 0, Mode::inTable);
  };
  if (token.kind == HTMLTokenKind::startTag) {
    switch (token.name) {
      case "tr"_atom:
        clear();
        insertElement(token);
        mode_ = Mode::inRow;
        return Outcome::done;
      case "th"_atom:
      case "td"_atom:
        clear();
        insertElement("tr"_atom);
        mode_ = Mode::inRow;
        return Outcome::again;
      case "caption"_atom:
      case "col"_atom:
      case "colgroup"_atom:
      case "tbody"_atom:
      case "tfoot"_atom:
      case "thead"_atom:
        return endAnyBody();
      default:
        break;
    }
  } else if (token.kind == HTMLTokenKind::endTag) {
    switch (token.name) {
      case "tbody"_atom:
      case "tfoot"_atom:
      case "thead"_atom:
        if (!open_.isInTableScope(token.name)) return Outcome::done;
        clear();
        open_.pop();
        mode_ = Mode::inTable;
        return Outcome::done;
      case "table"_atom:
        return endAnyBody();
      default:
        break;
    }
  }
  return readInTable(token);
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInRow(HTMLToken &token) {
  const auto endRow = [this] {
    return endTablePart(open_.isInTableScope("tr"_atom) ? open_.top("tr"_atom) : 0, Mode::inTableBody);
  };
  if (token.kind == HTMLTokenKind::startTag) {
    switch (token.name) {
      case "th"_atom:
      case "td"_atom:
        popToOneOf({"tr"_atom});
        insertElement(token);
        mode_ = Mode::inCell;
        formatting_.pushMarker();
        return Outcome::done;
      case "caption"_atom:
      case "col"_atom:
      case "colgroup"_atom:
      case "tbody"_atom:
      case "tfoot"_atom:
      case "thead"_atom:
      case "tr"_atom:
        return endRow();
      default:
        break;
    }
  } else if (token.kind == HTMLTokenKind::endTag) {
    switch (token.name) {
      case "tr"_atom:
        endRow();
        return Outcome::done;
      case "table"_atom:
        return endRow();
      case "tbody"_atom:
      case "tfoot"_atom:
      case "thead"_atom:
        return open_.isInTableScope(token.name) ? endRow() : Outcome::done;
      default:
        break;
    }
  }
  return readInTable(token);
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInCell(HTMLToken &token) {
  const auto end = [this](Position position) {
    open_.popThrough(position);
    formatting_.clearToMarker();
    mode_ = Mode::inRow;
  };
  const auto endAnyCell = [&] {
    end(std::max(open_.top("td"_atom), open_.top("th"_atom)));
    return Outcome::again;
  };
  if (token.kind == HTMLTokenKind::startTag) {
    switch (token.name) {
      case "caption"_atom:
      case "col"_atom:
      case "colgroup"_atom:
      case "tbody"_atom:
      case "td"_atom:
      case "tfoot"_atom:
      case "th"_atom:
      case "thead"_atom:
      case "tr"_atom:
        return endAnyCell();
      default:
        break;
    }
  } else if (token.kind == HTMLTokenKind::endTag) {
    switch (token.name) {
      case "td"_atom:
      case "th"_atom:
        if (open_.isInTableScope(token.name)) end(open_.top(token.name));
        return Outcome::done;
      case "body"_atom:
      case "caption"_atom:
      case "col"_atom:
      case "colgroup"_atom:
      case "html"_atom:
        return Outcome::done;
      case "table"_atom:
      case "tbody"_atom:
      case "tfoot"_atom:
      case "thead"_atom:
      case "tr"_atom:
        return open_.isInTableScope(token.name) ? endAnyCell() : Outcome::done;
      default:
        break;
    }
  }
  return readInBody(token);
}

}  // namespace nimbo
