// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace nimbo {

// The control words that mean something here, each name once. "fweight", "alttext", "cellpar" and "clgap" are
// this system's own: the weight of a font that is neither 400 nor 700, what to say instead of an attachment, a
// paragraph behind an inner table, and a place of a row without a cell.
// clang-format off
#define QUIVERLEAF_RTF_WORDS(WORD) \
  /* Characters. */ \
  WORD(plain) WORD(f) WORD(fs) WORD(fsmilli) WORD(fweight) WORD(b) WORD(i) WORD(scaps) WORD(v) \
  WORD(deleted) WORD(cf) WORD(cb) WORD(chcbpat) WORD(highlight) WORD(ul) WORD(uld) WORD(uldash) \
  WORD(uldashd) WORD(uldashdd) WORD(uldb) WORD(ulhwave) WORD(ulldash) WORD(ulnone) WORD(ulth) WORD(ulthd) \
  WORD(ulthdash) WORD(ulthdashd) WORD(ulthdashdd) WORD(ulthldash) WORD(ululdbwave) WORD(ulw) WORD(ulwave) \
  WORD(ulc) WORD(strike) WORD(striked) WORD(super) WORD(sub) WORD(nosupersub) WORD(up) WORD(dn) WORD(expnd) \
  WORD(expndtw) \
  /* Paragraphs. */ \
  WORD(pard) WORD(ql) WORD(qr) WORD(qc) WORD(qj) WORD(qnatural) WORD(fi) WORD(li) WORD(lin) WORD(ri) \
  WORD(rin) WORD(sb) WORD(sa) WORD(sl) WORD(slmult) WORD(slminimum) WORD(slmaximum) WORD(slleading) \
  WORD(tx) WORD(tb) WORD(tqr) WORD(tqc) WORD(tqdec) WORD(pardeftab) WORD(ltrpar) WORD(rtlpar) \
  WORD(pardirnatural) WORD(outlinelevel) WORD(ls) WORD(ilvl) WORD(intbl) WORD(itap) \
  /* Rows and cells. */ \
  WORD(trowd) WORD(trleft) WORD(trgaph) WORD(trwWidth) WORD(trftsWidth) WORD(taflags) WORD(lastrow) \
  WORD(trpaddl) WORD(trpaddt) WORD(trpaddb) WORD(trpaddr) WORD(cellx) WORD(clmgf) WORD(clmrg) WORD(clvmgf) \
  WORD(clvmrg) WORD(clgap) WORD(clwWidth) WORD(clftsWidth) WORD(clvertalt) WORD(clvertalc) WORD(clvertalb) \
  WORD(clcbpat) WORD(clpadl) WORD(clpadt) WORD(clpadb) WORD(clpadr) WORD(clbrdrt) WORD(clbrdrl) \
  WORD(clbrdrb) WORD(clbrdrr) WORD(brdrt) WORD(brdrb) WORD(brdrl) WORD(brdrr) WORD(brdrbtw) WORD(brdrbar) \
  WORD(box) WORD(trbrdrt) WORD(trbrdrb) WORD(trbrdrl) WORD(trbrdrr) WORD(trbrdrh) WORD(trbrdrv) \
  WORD(cldglu) WORD(cldgll) WORD(chbrdr) WORD(brdrs) WORD(brdrth) WORD(brdrdb) WORD(brdrdot) WORD(brdrdash) \
  WORD(brdrhair) WORD(brdrnone) WORD(brdrnil) WORD(brdrw) WORD(brdrcf) WORD(cell) WORD(nestcell) WORD(row) \
  WORD(nestrow) WORD(cellpar) \
  /* Characters by name. */ \
  WORD(par) WORD(sect) WORD(line) WORD(lbr) WORD(tab) WORD(page) WORD(column) WORD(emdash) WORD(endash) \
  WORD(emspace) WORD(enspace) WORD(qmspace) WORD(bullet) WORD(lquote) WORD(rquote) WORD(ldblquote) \
  WORD(rdblquote) WORD(zwj) WORD(zwnj) WORD(zwbo) WORD(zwnbo) WORD(ltrmark) WORD(rtlmark) WORD(u) WORD(uc) \
  WORD(bin) \
  /* The document. */ \
  WORD(rtf) WORD(ansi) WORD(mac) WORD(pc) WORD(pca) WORD(ansicpg) WORD(deff) WORD(paperw) WORD(paperh) \
  WORD(margl) WORD(margr) WORD(margt) WORD(margb) WORD(fonttbl) WORD(falt) WORD(panose) WORD(fcharset) \
  WORD(cpg) WORD(colortbl) WORD(expandedcolortbl) WORD(red) WORD(green) WORD(blue) WORD(alpha) WORD(info) \
  WORD(title) WORD(author) WORD(subject) WORD(keywords) WORD(company) WORD(copyright) WORD(doccomm) \
  WORD(creatim) WORD(revtim) WORD(yr) WORD(mo) WORD(dy) WORD(hr) WORD(min) WORD(sec) \
  /* Lists. */ \
  WORD(listtable) WORD(list) WORD(listid) WORD(listlevel) WORD(levelnfc) WORD(levelnfcn) WORD(levelstartat) \
  WORD(leveltext) WORD(levelmarker) WORD(leveltemplateid) WORD(listoverridetable) WORD(listoverride) \
  WORD(lfolevel) WORD(listoverridestartat) WORD(listtext) WORD(pntext) WORD(pn) WORD(pnlvlblt) \
  WORD(pnlvlbody) WORD(pnlvl) WORD(pndec) WORD(pnlcltr) WORD(pnucltr) WORD(pnlcrm) WORD(pnucrm) \
  WORD(pnstart) \
  /* Fields, pictures, attachments and other groups. */ \
  WORD(field) WORD(fldinst) WORD(fldrslt) WORD(shppict) WORD(nonshppict) WORD(pict) WORD(pngblip) \
  WORD(jpegblip) WORD(emfblip) WORD(wmetafile) WORD(picwgoal) WORD(pichgoal) WORD(picscalex) \
  WORD(picscaley) WORD(picprop) WORD(blipuid) WORD(shp) WORD(shpinst) WORD(shptxt) WORD(shprslt) WORD(sp) \
  WORD(sn) WORD(sv) WORD(object) WORD(objdata) WORD(result) WORD(NeXTGraphic) WORD(width) WORD(height) \
  WORD(alttext) WORD(stylesheet) WORD(filetbl) WORD(header) WORD(headerl) WORD(headerr) WORD(headerf) \
  WORD(footer) WORD(footerl) WORD(footerr) WORD(footerf) WORD(footnote) WORD(nesttableprops) \
  WORD(ftnsep) WORD(ftnsepc) WORD(ftncn) WORD(aftnsep) WORD(aftnsepc) WORD(aftncn) \
  WORD(nonesttables) WORD(upr) WORD(ud) WORD(xe) WORD(tc) WORD(private1) WORD(do) WORD(docvar)
// clang-format on

/// A control word. Its name follows the backslash, case counts.
enum class RTFWord : std::uint16_t {
  unknown,
#define QUIVERLEAF_RTF_ENUMERATOR(name) name##_,
  QUIVERLEAF_RTF_WORDS(QUIVERLEAF_RTF_ENUMERATOR)
#undef QUIVERLEAF_RTF_ENUMERATOR
};

/// The word of a name; `unknown` when it means nothing here.
RTFWord wordNamed(std::string_view name);

}  // namespace nimbo
