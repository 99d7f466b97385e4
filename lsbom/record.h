// What a bill of materials says of one path beside its name.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/result.h"
#include "lsbom/fault.h"

namespace pelmarix::lsbom {

/// Numbered as in the file.
enum class Kind : std::uint8_t { other = 0, file = 1, folder = 2, link = 3, device = 4 };

/// One architecture's part of a program.
struct ProgramPart {
  std::uint32_t size;  ///< in bytes
  std::uint32_t checksum;
};

/// A decoded record, with views into the bytes that it was decoded from.
struct Record {
  Kind kind = Kind::other;             ///< what the record says; the mode's type bits may differ
  std::uint16_t mode = 0;              ///< with its type bits, if the writer set them
  std::uint32_t user = 0;              ///< an id
  std::uint32_t group = 0;             ///< an id
  std::uint32_t modificationTime = 0;  ///< seconds since 1970
  std::uint32_t size = 0;              ///< in bytes, its low 32 bits; of files and links
  std::uint32_t checksum = 0;          ///< POSIX cksum; of files, and of a link's target
  std::string_view linkTarget;         ///< links only; ends ahead of its first NUL
  std::string_view programParts;       ///< files only: 16 bytes for each architecture; see programPart

  /// The part for an architecture; nothing where the record has none for it.
  std::optional<ProgramPart> programPart(std::uint32_t architecture) const;
};

/// Decodes a record from its block's bytes, in any of its long and short forms.
Result<Record, Fault> decodeRecord(std::string_view bytes);

}  // namespace pelmarix::lsbom
