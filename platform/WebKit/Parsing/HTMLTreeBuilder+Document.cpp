// SPDX-License-Identifier: Apache-2.0
//
// The modes outside the body: in front of it, behind it, framesets and templates.
#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"

namespace nimbo {

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInitial(HTMLToken &token) {
  if (skipBlanks(token)) return Outcome::done;
  if (token.kind == HTMLTokenKind::comment) return insertComment(token, HTMLDocument::kRoot), Outcome::done;
  mode_ = Mode::beforeHTML;
  if (token.kind != HTMLTokenKind::doctype) {
    document_.quirksMode_ = HTMLQuirksMode::quirks;
    return Outcome::again;
  }
  const HTMLNodeIndex index = makeNode(HTMLNodeKind::doctype);
  document_.nodes_.back().name = document_.atoms_.atomOf(tokenizer_.doctype().name);
  insert(index, {HTMLDocument::kRoot});
  document_.quirksMode_ = quirksModeOfDoctype(tokenizer_.doctype());
  return Outcome::done;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readBeforeHTML(HTMLToken &token) {
  if (skipBlanks(token) || token.kind == HTMLTokenKind::doctype) return Outcome::done;
  if (token.kind == HTMLTokenKind::comment) return insertComment(token, HTMLDocument::kRoot), Outcome::done;
  const bool isRoot = token.kind == HTMLTokenKind::startTag && token.name == "html"_atom;
  if (token.kind == HTMLTokenKind::endTag && token.name != "head"_atom && token.name != "body"_atom &&
      token.name != "html"_atom && token.name != "br"_atom)
    return Outcome::done;
  const HTMLNodeIndex root =
      isRoot ? makeElement("html"_atom, HTMLNamespace::html, token.firstAttribute, token.attributeCount)
             : makeElement("html"_atom, HTMLNamespace::html, 0, 0);
  insert(root, {HTMLDocument::kRoot});
  pushElement(root, "html"_atom, traitsOf("html"_atom, HTMLNamespace::html));
  document_.rootElement_ = root;
  mode_ = Mode::beforeHead;
  return isRoot ? Outcome::done : Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readBeforeHead(HTMLToken &token) {
  if (skipBlanks(token) || token.kind == HTMLTokenKind::doctype) return Outcome::done;
  if (token.kind == HTMLTokenKind::comment) return insertComment(token), Outcome::done;
  const bool isStart = token.kind == HTMLTokenKind::startTag;
  if (isStart && token.name == "html"_atom) return readInBody(token);
  if (token.kind == HTMLTokenKind::endTag && token.name != "head"_atom && token.name != "body"_atom &&
      token.name != "html"_atom && token.name != "br"_atom)
    return Outcome::done;
  mode_ = Mode::inHead;
  if (isStart && token.name == "head"_atom) return head_ = insertElement(token), Outcome::done;
  head_ = insertElement("head"_atom);
  return Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInHead(HTMLToken &token) {
  if (insertBlanks(token) || token.kind == HTMLTokenKind::doctype) return Outcome::done;
  if (token.kind == HTMLTokenKind::comment) return insertComment(token), Outcome::done;
  if (token.kind == HTMLTokenKind::startTag) {
    switch (token.name) {
      case "html"_atom:
        return readInBody(token);
      case "base"_atom:
      case "basefont"_atom:
      case "bgsound"_atom:
      case "link"_atom:
      case "meta"_atom:
        insertHeadElement(token);
        return Outcome::done;
      case "title"_atom:
        readTextElement(token, mode_);
        tokenizer_.readRCDATA(token.name);
        if (document_.title_ == kNoHTMLNode && !open_.has("template"_atom))
          document_.title_ = open_.current().node;
        return Outcome::done;
      case "noscript"_atom:
        insertElement(token);
        mode_ = Mode::inHeadNoscript;
        return Outcome::done;
      case "noframes"_atom:
      case "style"_atom:
        readTextElement(token, mode_);
        tokenizer_.readRawText(token.name);
        return Outcome::done;
      case "script"_atom:
        readTextElement(token, mode_);
        tokenizer_.readScript();
        return Outcome::done;
      case "template"_atom:
        insertElement(token);
        formatting_.pushMarker();
        isFramesetOK_ = false;
        mode_ = Mode::inTemplate;
        templateModes_.push_back(Mode::inTemplate);
        return Outcome::done;
      case "head"_atom:
        return Outcome::done;
      default:
        break;
    }
  } else if (token.kind == HTMLTokenKind::endTag) {
    switch (token.name) {
      case "head"_atom:
        open_.pop();
        mode_ = Mode::afterHead;
        return Outcome::done;
      case "template"_atom:
        endTemplate();
        return Outcome::done;
      case "body"_atom:
      case "html"_atom:
      case "br"_atom:
        break;
      default:
        return Outcome::done;
    }
  }
  open_.pop();
  mode_ = Mode::afterHead;
  return Outcome::again;
}

void HTMLTreeBuilder::insertHeadElement(const HTMLToken &token) {
  const HTMLNodeIndex index = insertElement(token);
  open_.pop();
  const bool isBase = token.name == "base"_atom && document_.attribute(node(index), "href"_atom);
  if (isBase && document_.base_ == kNoHTMLNode && !open_.has("template"_atom)) document_.base_ = index;
}

void HTMLTreeBuilder::endTemplate() {
  const Position position = open_.top("template"_atom);
  if (position == 0) return;
  open_.popThrough(position);
  formatting_.clearToMarker();
  templateModes_.pop_back();
  resetMode();
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInHeadNoscript(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::doctype:
      return Outcome::done;
    case HTMLTokenKind::comment:
      return readInHead(token);
    case HTMLTokenKind::characters:
      if (insertBlanks(token)) return Outcome::done;
      break;
    case HTMLTokenKind::startTag:
      switch (token.name) {
        case "html"_atom:
          return readInBody(token);
        case "basefont"_atom:
        case "bgsound"_atom:
        case "link"_atom:
        case "meta"_atom:
        case "noframes"_atom:
        case "style"_atom:
          return readInHead(token);
        case "head"_atom:
        case "noscript"_atom:
          return Outcome::done;
        default:
          break;
      }
      break;
    case HTMLTokenKind::endTag:
      if (token.name != "noscript"_atom && token.name != "br"_atom) return Outcome::done;
      break;
    default:
      break;
  }
  open_.pop();
  mode_ = Mode::inHead;
  const bool isEnd = token.kind == HTMLTokenKind::endTag && token.name == "noscript"_atom;
  return isEnd ? Outcome::done : Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readAfterHead(HTMLToken &token) {
  if (insertBlanks(token) || token.kind == HTMLTokenKind::doctype) return Outcome::done;
  if (token.kind == HTMLTokenKind::comment) return insertComment(token), Outcome::done;
  if (token.kind == HTMLTokenKind::startTag) {
    switch (token.name) {
      case "html"_atom:
        return readInBody(token);
      case "body"_atom:
        document_.body_ = insertElement(token);
        isFramesetOK_ = false;
        mode_ = Mode::inBody;
        return Outcome::done;
      case "frameset"_atom:
        document_.body_ = insertElement(token);
        mode_ = Mode::inFrameset;
        return Outcome::done;
      case "base"_atom:
      case "basefont"_atom:
      case "bgsound"_atom:
      case "link"_atom:
      case "meta"_atom:
      case "noframes"_atom:
      case "script"_atom:
      case "style"_atom:
      case "template"_atom:
      case "title"_atom: {
        pushElement(head_, "head"_atom, traitsOf("head"_atom, HTMLNamespace::html));
        const Position position = open_.size();
        readInHead(token);
        open_.remove(position);
        return Outcome::done;
      }
      case "head"_atom:
        return Outcome::done;
      default:
        break;
    }
  } else if (token.kind == HTMLTokenKind::endTag) {
    if (token.name != "body"_atom && token.name != "html"_atom && token.name != "br"_atom) return Outcome::done;
  }
  document_.body_ = insertElement("body"_atom);
  mode_ = Mode::inBody;
  return Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readText(HTMLToken &token) {
  if (token.kind == HTMLTokenKind::characters) return insertText(token.text), Outcome::done;
  open_.pop();
  mode_ = originalMode_;
  return token.kind == HTMLTokenKind::endOfFile ? Outcome::again : Outcome::done;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInTemplate(HTMLToken &token) {
  Mode mode = Mode::inBody;
  switch (token.kind) {
    case HTMLTokenKind::endTag:
      return token.name == "template"_atom ? readInHead(token) : Outcome::done;
    case HTMLTokenKind::endOfFile:
      if (!open_.has("template"_atom)) return Outcome::done;
      endTemplate();
      return Outcome::again;
    case HTMLTokenKind::startTag:
      break;
    default:
      return readInBody(token);
  }
  switch (token.name) {
    case "base"_atom:
    case "basefont"_atom:
    case "bgsound"_atom:
    case "link"_atom:
    case "meta"_atom:
    case "noframes"_atom:
    case "script"_atom:
    case "style"_atom:
    case "template"_atom:
    case "title"_atom:
      return readInHead(token);
    case "caption"_atom:
    case "colgroup"_atom:
    case "tbody"_atom:
    case "tfoot"_atom:
    case "thead"_atom:
      mode = Mode::inTable;
      break;
    case "col"_atom:
      mode = Mode::inColumnGroup;
      break;
    case "tr"_atom:
      mode = Mode::inTableBody;
      break;
    case "td"_atom:
    case "th"_atom:
      mode = Mode::inRow;
      break;
    default:
      break;
  }
  templateModes_.back() = mode_ = mode;
  return Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readAfterBody(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
      if (isBlank(token.text)) return readInBody(token);
      break;
    case HTMLTokenKind::comment:
      return insertComment(token, open_.at(1).node), Outcome::done;
    case HTMLTokenKind::doctype:
    case HTMLTokenKind::endOfFile:
      return Outcome::done;
    case HTMLTokenKind::startTag:
      if (token.name == "html"_atom) return readInBody(token);
      break;
    case HTMLTokenKind::endTag:
      if (token.name == "html"_atom) return mode_ = Mode::afterAfterBody, Outcome::done;
      break;
    default:
      break;
  }
  mode_ = Mode::inBody;
  return Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInFrameset(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
      insertBlanksOf(token);
      break;
    case HTMLTokenKind::comment:
      insertComment(token);
      break;
    case HTMLTokenKind::startTag:
      if (token.name == "html"_atom) return readInBody(token);
      if (token.name == "noframes"_atom) return readInHead(token);
      if (token.name == "frameset"_atom) insertElement(token);
      if (token.name == "frame"_atom) insertEmptyElement(token);
      break;
    case HTMLTokenKind::endTag:
      if (token.name != "frameset"_atom) break;
      open_.pop();
      if (!open_.isCurrent("frameset"_atom)) mode_ = Mode::afterFrameset;
      break;
    default:
      break;
  }
  return Outcome::done;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readAfterFrameset(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
      insertBlanksOf(token);
      break;
    case HTMLTokenKind::comment:
      insertComment(token);
      break;
    case HTMLTokenKind::startTag:
      if (token.name == "html"_atom) return readInBody(token);
      if (token.name == "noframes"_atom) return readInHead(token);
      break;
    case HTMLTokenKind::endTag:
      if (token.name == "html"_atom) mode_ = Mode::afterAfterFrameset;
      break;
    default:
      break;
  }
  return Outcome::done;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readAfterAfterBody(HTMLToken &token) {
  if (token.kind == HTMLTokenKind::comment) return insertComment(token, HTMLDocument::kRoot), Outcome::done;
  if (token.kind == HTMLTokenKind::endOfFile) return Outcome::done;
  const bool isRoot = token.kind == HTMLTokenKind::startTag && token.name == "html"_atom;
  const bool isBlankText = token.kind == HTMLTokenKind::characters && isBlank(token.text);
  if (isRoot || isBlankText || token.kind == HTMLTokenKind::doctype) return readInBody(token);
  mode_ = Mode::inBody;
  return Outcome::again;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readAfterAfterFrameset(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
      insertBlanksOf(token);
      break;
    case HTMLTokenKind::comment:
      insertComment(token, HTMLDocument::kRoot);
      break;
    case HTMLTokenKind::startTag:
      if (token.name == "html"_atom) return readInBody(token);
      if (token.name == "noframes"_atom) return readInHead(token);
      break;
    default:
      break;
  }
  return Outcome::done;
}

}  // namespace nimbo
