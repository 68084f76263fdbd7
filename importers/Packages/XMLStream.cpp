// SPDX-License-Identifier: Apache-2.0
#include "importers/Packages/XMLStream.hpp"

#include <expat.h>

#include <charconv>
#include <cstdlib>
#include <new>

namespace nimbo {
namespace {

/// What the parsers of this thread hold; a parser's functions for memory are told nothing of it.
thread_local std::size_t heldBytes = 0;

/// In front of every block stands its size.
constexpr std::size_t kHeaderBytes = alignof(std::max_align_t);

void *reallocate(void *block, std::size_t size) {
  auto *const old = block ? static_cast<std::byte *>(block) - kHeaderBytes : nullptr;
  const std::size_t oldSize = old ? *reinterpret_cast<std::size_t *>(old) : 0;
  if (size > XMLStream::kMaximumMemoryBytes - (heldBytes - oldSize)) return nullptr;
  auto *const made = static_cast<std::byte *>(std::realloc(old, size + kHeaderBytes));
  if (!made) return nullptr;
  heldBytes += size - oldSize;
  *reinterpret_cast<std::size_t *>(made) = size;
  return made + kHeaderBytes;
}

void *allocate(std::size_t size) {
  return reallocate(nullptr, size);
}

void release(void *block) {
  if (!block) return;
  auto *const made = static_cast<std::byte *>(block) - kHeaderBytes;
  heldBytes -= *reinterpret_cast<std::size_t *>(made);
  std::free(made);
}

constexpr XML_Memory_Handling_Suite kMemory = {allocate, reallocate, release};

std::string_view localNameOf(std::string_view name) {
  return name.substr(name.rfind(':') + 1);
}

}  // namespace

std::optional<std::string_view> XMLAttributes::value(std::string_view localName) const noexcept {
  for (const char **pair = pairs_; *pair; pair += 2)
    if (localNameOf(pair[0]) == localName) return pair[1];
  return std::nullopt;
}

std::optional<std::string_view> XMLAttributes::prefixedValue(std::string_view localName) const noexcept {
  for (const char **pair = pairs_; *pair; pair += 2) {
    const std::string_view name = pair[0];
    if (localNameOf(name) == localName && name.size() > localName.size()) return pair[1];
  }
  return std::nullopt;
}

std::optional<std::uint32_t> XMLAttributes::number(std::string_view localName) const noexcept {
  const auto text = value(localName);
  std::uint32_t number = 0;
  if (!text || std::from_chars(text->data(), text->data() + text->size(), number).ec != std::errc())
    return std::nullopt;
  return number;
}

/// What the parser calls.
struct XMLStream::Calls {
  static void start(void *data, const char *name, const char **attributes) {
    call(data,
         [&](XMLHandler &handler) { handler.startElement(localNameOf(name), XMLAttributes(attributes)); });
  }
  static void end(void *data, const char *name) {
    call(data, [&](XMLHandler &handler) { handler.endElement(localNameOf(name)); });
  }
  static void characters(void *data, const char *text, int length) {
    call(data, [&](XMLHandler &handler) { handler.characters({text, static_cast<std::size_t>(length)}); });
  }
  static void entity(void *data, const char *, int, const char *, int, const char *, const char *, const char *,
                     const char *) {
    auto &stream = *static_cast<XMLStream *>(data);
    stream.budget_.fail(ErrorCode::damaged, "the document declares entities in its XML");
    XML_StopParser(stream.parser_, XML_FALSE);
  }

 private:
  template <class Work>
  static void call(void *data, Work work) noexcept {
    auto &stream = *static_cast<XMLStream *>(data);
    if (stream.isFailed_) return;
    try {
      work(stream.handler_);
    } catch (const std::exception &exception) {
      stream.isFailed_ = true;
      const NSError error = NSError::errorWithException(exception);
      stream.budget_.fail(error.errorCode(), error.localizedFailureReason.UTF8String());
    }
    if (stream.isFailed_ || stream.budget_.isSpent()) XML_StopParser(stream.parser_, XML_FALSE);
  }
};

XMLStream::XMLStream(XMLHandler &handler, DocumentBudget &budget)
    : handler_(handler), budget_(budget), parser_(XML_ParserCreate_MM(nullptr, &kMemory, nullptr)) {
  if (!parser_) throw std::bad_alloc();
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, Calls::start, Calls::end);
  XML_SetCharacterDataHandler(parser_, Calls::characters);
  XML_SetEntityDeclHandler(parser_, Calls::entity);
}

XMLStream::~XMLStream() {
  XML_ParserFree(parser_);
}

bool XMLStream::read(std::string_view bytes) {
  if (XML_Parse(parser_, bytes.data(), static_cast<int>(bytes.size()), bytes.empty()) == XML_STATUS_OK)
    return true;
  // Whoever stopped the parser has said why.
  if (XML_GetErrorCode(parser_) == XML_ERROR_NO_MEMORY)
    budget_.fail(ErrorCode::memoryLimit, "the document's XML needs too much memory");
  else
    budget_.fail(ErrorCode::damaged, "a part of the document is damaged");
  return false;
}

}  // namespace nimbo
