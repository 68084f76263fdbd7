// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "platform/WebKit/HTMLElementIndex.hpp"

namespace nimbo {
namespace {

/// The place of an element among its siblings, counted one by one.
std::uint32_t countedPosition(const HTMLDocument &document, HTMLNodeIndex element,
                              HTMLNodeIndex HTMLNode::*step, bool isOfType) {
  std::uint32_t position = 0;
  const HTMLNode &node = document.node(element);
  for (HTMLNodeIndex i = element; i != kNoHTMLNode; i = document.node(i).*step) {
    const HTMLNode &other = document.node(i);
    const bool isSameType = other.name == node.name && other.nameSpace == node.nameSpace;
    if (other.isElement() && (isSameType || !isOfType)) ++position;
  }
  return position;
}

HTMLNodeIndex nextElement(const HTMLDocument &document, HTMLNodeIndex element, HTMLNodeIndex HTMLNode::*step) {
  HTMLNodeIndex i = document.node(element).*step;
  while (i != kNoHTMLNode && !document.node(i).isElement()) i = document.node(i).*step;
  return i;
}

TEST(HTMLElementIndexTest, countsAsOneByOne) {
  constexpr std::u16string_view kPieces[] = {u"<p>",    u"<div>",    u"</div>", u"<b>",        u"</b>",
                                             u"x",      u"<!--c-->", u"<svg>",  u"<a>",        u"<p/>",
                                             u"</svg>", u"<ul>",     u"<x-y>",  u"<table><td>"};
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    std::u16string text;
    for (unsigned i = random() % 40; i > 0; --i) text += kPieces[random() % std::size(kPieces)];
    HTMLDocument document = HTMLDocument::documentWithText(text);
    const HTMLElementIndex index(document);
    for (HTMLNodeIndex i = document.rootElement(); i != kNoHTMLNode; i = document.nextInTree(i)) {
      if (!document.node(i).isElement()) continue;
      const HTMLElementFacts &facts = index.element(i);
      const HTMLNodeIndex parent = document.node(i).parent;
      ASSERT_EQ(facts.parentElement, parent == HTMLDocument::kRoot ? kNoHTMLNode : parent);
      ASSERT_EQ(facts.previousElement, nextElement(document, i, &HTMLNode::previousSibling));
      ASSERT_EQ(facts.nextElement, nextElement(document, i, &HTMLNode::nextSibling));
      ASSERT_EQ(facts.position, countedPosition(document, i, &HTMLNode::previousSibling, false));
      ASSERT_EQ(facts.positionFromEnd, countedPosition(document, i, &HTMLNode::nextSibling, false));
      ASSERT_EQ(facts.positionOfType, countedPosition(document, i, &HTMLNode::previousSibling, true));
      ASSERT_EQ(facts.positionOfTypeFromEnd, countedPosition(document, i, &HTMLNode::nextSibling, true));
    }
  }
}

TEST(HTMLElementIndexTest, knowsIdsAndClasses) {
  for (const bool isQuirky : {false, true}) {
    const std::u16string text = std::u16string(isQuirky ? u"" : u"<!DOCTYPE html>") +
                                u"<p id=Main class=' Note\tnote  wide\n'><!--c--></p><p>x<b></b>";
    HTMLDocument document = HTMLDocument::documentWithText(text);
    const HTMLElementIndex index(document);
    const HTMLNodeIndex first = document.node(document.body()).firstChild,
                        second = document.node(first).nextSibling;
    const auto atom = [&](std::u16string_view name) { return document.atoms().existingAtomOf(name); };
    EXPECT_EQ(index.element(first).id, atom(isQuirky ? u"main" : u"Main"));
    ASSERT_EQ(index.classes(first).size(), 3U);
    EXPECT_EQ(index.classes(first)[0] == index.classes(first)[1], isQuirky);
    EXPECT_EQ(index.classes(first)[1], atom(u"note"));
    EXPECT_EQ(index.classes(first)[2], atom(u"wide"));
    EXPECT_EQ(index.element(second).id, kNoHTMLAtom);
    EXPECT_TRUE(index.classes(second).empty());
    EXPECT_TRUE(index.element(first).isEmpty);
    EXPECT_FALSE(index.element(second).isEmpty);
    EXPECT_EQ(atom(u"nowhere"), kNoHTMLAtom);
  }
}

TEST(HTMLAtomsTest, partsTextsAsAMapDoes) {
  HTMLAtoms atoms;
  std::map<std::u16string, HTMLAtom> known;
  std::mt19937 random(3);
  for (int round = 0; round < 20'000; ++round) {
    std::u16string text;
    for (unsigned i = 1 + random() % 4; i > 0; --i) text += u"abdivpAP\u00e9"[random() % 9];
    const auto [found, isNew] = known.try_emplace(text, atoms.atomOf(text));
    ASSERT_EQ(found->second, atoms.atomOf(text));
    ASSERT_EQ(found->second, atoms.existingAtomOf(text));
    ASSERT_EQ(atoms.text(found->second), text);
  }
  std::map<HTMLAtom, std::u16string> back;
  for (const auto &[text, atom] : known) EXPECT_TRUE(back.emplace(atom, text).second);
  EXPECT_EQ(atoms.atomOfFolded(u"Div"), "div"_atom);
  EXPECT_EQ(atoms.atomOfFolded(u"A\u00c9B"), atoms.atomOf(u"a\u00c9b"));
  EXPECT_EQ(atoms.atomOf(u"viewBox"), "viewBox"_atom);
  EXPECT_EQ(atoms.atomOf(u""), kNoHTMLAtom);
}

}  // namespace
}  // namespace nimbo
