// Why a property list was refused, and where.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pelmarix::plist {

enum class Reason : std::uint8_t {
  // Both forms.
  tooLarge,
  nestedTooDeep,
  // XML: the text and its markup.
  unknownEncoding,
  wrongEncoding,
  invalidUtf8,
  noObject,
  severalObjects,
  unexpectedEnd,
  unexpectedText,
  malformedDocumentType,
  malformedMarkup,
  unknownTag,
  mismatchedClosingTag,
  keyExpected,
  valueMissing,
  contentMissing,
  malformedReference,
  invalidCharacter,
  // XML: the contents of an element.
  malformedInteger,
  integerOutOfRange,
  malformedReal,
  malformedDate,
  malformedData,
  // Binary: the trailer and the offset table.
  tooShort,
  noObjects,
  badTopObject,
  badTableStart,
  badWidth,
  lengthDiffers,
  referenceTooNarrow,
  offsetTooNarrow,
  badOffset,
  // Binary: the objects.
  unknownMarker,
  badCount,
  objectTooLong,
  badReference,
  badUid,
  keyNotString,
  cycle,
  tooMuchOverlap,
};

/// In English, for people: "The closing tag does not match the open element."
std::string_view description(Reason reason);

struct Error {
  Reason reason;
  /// Bytes from the start of the file; in text of another encoding, once that has been converted, from the
  /// start of its UTF-8 form, which has no byte-order mark.
  std::size_t offset = 0;
  /// In XML the line, counted from 1. 0 in a binary file, and where the encoding of the text is at fault.
  std::size_t line = 0;

  friend bool operator==(const Error&, const Error&) = default;
};

/// The reason with its place: "The closing tag does not match the open element. (line 7, byte 123)".
std::string description(const Error& error);

}  // namespace pelmarix::plist
