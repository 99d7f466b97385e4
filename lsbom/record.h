// What a bill of materials says of one path beside its name.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "lsbom/fault.h"

namespace pelmarix::lsbom {

enum class Kind : std::uint8_t { other, file, folder, link, device };

// One processor's part of a program.
struct ProgramPart {
  std::uint32_t size;  // in bytes
  std::uint32_t checksum;
};

// A decoded record. Its texts are views into the file's bytes.
struct Record {
  Kind kind = Kind::other;             // what the record says; the mode's type bits may differ
  std::uint16_t mode = 0;              // with its type bits, if the writer set them
  std::uint32_t user = 0;              // an id
  std::uint32_t group = 0;             // an id
  std::uint32_t modificationTime = 0;  // seconds since 1970
  std::uint32_t size = 0;              // in bytes, its low 32 bits; of files and links
  std::uint32_t checksum = 0;          // POSIX cksum; of files, and of a link's target
  std::string_view linkTarget;         // links only; ends ahead of its first NUL
  std::string_view programParts;       // files only: 16 bytes for each processor; see programPart

  // The part for a processor; nothing where the record has none for it.
  std::optional<ProgramPart> programPart(std::uint32_t processor) const;
};

// Decodes a record from its block's bytes, in any of its long and short forms.
Fault decodeRecord(std::string_view bytes, Record& record);

}  // namespace pelmarix::lsbom
