// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/Foundation/Unicode/BidiLine.hpp"

namespace nimbo::detail {

/// Puts what MuPDF found on a page in the order in which it is read, where scripts that run from right to left
/// come. Programs draw such lines from left to right or as they are read, part by part or letter by letter, so
/// that only places tell: letters are put in the order in which they are seen on their line, whose parts become
/// one, and then in that of the bidirectional algorithm. Forms of letters become letters.
class PDFTextOrder {
 public:
  explicit PDFTextOrder(fz_context *context) : context_(context) {}
  PDFTextOrder(const PDFTextOrder &) = delete;
  PDFTextOrder &operator=(const PDFTextOrder &) = delete;

  /// Changes the page, which this object must outlive: some of its characters are here from then on.
  void putInLogicalOrder(fz_stext_page &page);

 private:
  /// Characters that follow each other on one line of the page, a part of what is seen as a line.
  struct Piece {
    fz_stext_line *line;
    fz_point direction;
    float baseline;
    float size;
    float start;
    float end;
    std::vector<fz_stext_char *> characters;
    bool isRightToLeft = false;
  };
  /// A character and those that stand with it, in the order in which they are read: its marks, and other
  /// letters of its glyph.
  struct Cluster {
    std::vector<fz_stext_char *> characters;
    float start;
    float end;
    /// How far its glyph goes on in the direction of writing.
    float advance;

    fz_stext_char &base() const { return *characters.front(); }
    bool isBlank() const { return base().c == ' '; }
  };

  void putBlockInLogicalOrder(fz_stext_block &block);
  void putPieces(Piece *first, Piece *end);
  std::vector<Cluster> clustersOf(const Piece &piece);
  void sortAsSeen(std::vector<Cluster> &clusters);
  bool isRightToLeft(std::u32string_view seen);
  void findMirrored(const std::vector<Cluster> &clusters, const std::vector<BidiPlace> &order,
                    bool isRightToLeft);
  void append(fz_stext_line &line, fz_stext_char *character);
  fz_stext_char *newCharacter(const fz_stext_char &like, int c);

  fz_context *const context_;
  /// Those that MuPDF did not make.
  std::deque<fz_stext_char> own_;
  std::vector<Piece> pieces_;
  /// Whether most letters of the block run from right to left; nothing as long as nobody has asked.
  std::optional<bool> isBlockRightToLeft_;
  /// Whether brackets are named the wrong way round in what runs from left to right, and from right to left.
  std::array<bool, 2> isMirrored_ = {false, true};
};

}  // namespace nimbo::detail
