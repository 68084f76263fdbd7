// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/IWorkArchive.hpp"

#include <algorithm>

namespace nimbo {
namespace {

constexpr std::string_view kPages = "application/vnd.apple.pages";
constexpr std::string_view kNumbers = "application/vnd.apple.numbers";
constexpr std::string_view kKeynote = "application/vnd.apple.keynote";

constexpr std::size_t kHeadBytes = 4096;
/// The first object of a text; that of a table or a presentation is 1 in both.
constexpr std::uint32_t kTextDocument = 10000;

/// Reads numbers of a variable number of bytes off the front, seven bits a byte, the lowest first.
std::uint32_t takeNumber(std::string_view &bytes) {
  std::uint32_t number = 0;
  for (unsigned shift = 0; shift < 32 && !bytes.empty(); shift += 7) {
    const auto byte = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    number |= static_cast<std::uint32_t>(byte & 0x7f) << shift;
    if (byte < 0x80) return number;
  }
  return 0;
}

bool takeByte(std::string_view &bytes, char expected) {
  if (!bytes.starts_with(expected)) return false;
  bytes.remove_prefix(1);
  return true;
}

/// The type of the first object in a stream of objects, 0 when it is none. The stream is compressed in pieces,
/// but a piece begins with bytes as they are, since there is nothing yet to repeat.
std::uint32_t typeOfFirstObject(std::string_view stream) {
  constexpr std::size_t kPieceHeaderBytes = 4;
  constexpr unsigned kLongestShortRun = 60;
  if (stream.size() <= kPieceHeaderBytes || stream.front() != 0) return 0;
  stream.remove_prefix(kPieceHeaderBytes);
  takeNumber(stream);  // The length of the piece when it is unpacked.
  if (stream.empty()) return 0;
  const auto run = static_cast<unsigned char>(stream.front());
  if ((run & 3) != 0) return 0;
  const std::size_t lengthBytes = run >> 2 < kLongestShortRun ? 0 : (run >> 2) - kLongestShortRun + 1;
  stream.remove_prefix(std::min(1 + lengthBytes, stream.size()));
  takeNumber(
      stream);  // The length of what describes the object: its number, and its messages with their types.
  if (!takeByte(stream, 0x08)) return 0;
  takeNumber(stream);
  if (!takeByte(stream, 0x12)) return 0;
  takeNumber(stream);
  return takeByte(stream, 0x08) ? takeNumber(stream) : 0;
}

}  // namespace

std::string_view iWorkMIMEType(const RandomAccessFile &file, const ZipDirectory &zip) {
  if (const auto *document = zip.entryNamed("Index/Document.iwa")) {
    const bool hasSlides = std::ranges::any_of(zip.entries, [](const ZipDirectory::Entry &entry) {
      return entry.name.starts_with("Index/Slide") || entry.name.starts_with("Index/MasterSlide") ||
             entry.name.starts_with("Index/TemplateSlide");
    });
    if (hasSlides) return kKeynote;
    const std::uint32_t type = typeOfFirstObject(readZipEntry(file, *document, kHeadBytes));
    return type == kTextDocument ? kPages : type == 1 ? kNumbers : std::string_view();
  }
  if (zip.entryNamed("index.apxl") || zip.entryNamed("presentation.apxl")) return kKeynote;
  const auto *document = zip.entryNamed("index.xml");
  const std::string head = document ? readZipEntry(file, *document, kHeadBytes) : std::string();
  if (head.find("<sl:document") != std::string::npos) return kPages;
  return head.find("<ls:document") != std::string::npos ? kNumbers : std::string_view();
}

}  // namespace nimbo
