// The layout, from public format notes and real files. The fixed part has 23 bytes:
//
//   u8 type, u8, u16 flags, u16 mode, u32 user, u32 group, u32 modification time, u32 size, u8
//
// What follows depends on the type and on the writer's age; today everything ends with 8 zero bytes more:
//
//   folder   nothing
//   file     u32 checksum; missing in old placeholder files
//   link     u32 checksum, u32 length of the target with its NUL, the target
//   device   u32 device number
//   program  (a file with a flag of 0xF000) u32 checksum, u8 1, u32 count, and for each architecture:
//            u32 architecture, u32 its variant, u32 size, u32 checksum
//
// A digest may stand ahead of the last 8 bytes; nothing here needs it.
#include "lsbom/record.h"

#include "lsbom/cursor.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::size_t fixedLength = 23;
constexpr std::size_t programPartLength = 16;
constexpr std::uint16_t programFlags = 0xF000;

Kind kindOf(std::uint8_t type) { return type <= 4 ? static_cast<Kind>(type) : Kind::other; }

}  // namespace

Result<Record, Fault> decodeRecord(std::string_view bytes) {
  Cursor fixed(bytes.substr(0, fixedLength));
  Record record;
  record.kind = kindOf(fixed.u8());
  fixed.u8();
  const std::uint16_t flags = fixed.u16();
  record.mode = fixed.u16();
  record.user = fixed.u32();
  record.group = fixed.u32();
  record.modificationTime = fixed.u32();
  record.size = fixed.u32();
  fixed.u8();
  if (!fixed.ok()) return Fault::shortRecord;

  Cursor rest(bytes.substr(fixedLength));
  if (record.kind == Kind::file) {
    record.checksum = rest.u32();
    if ((flags & programFlags) == 0 || rest.u8() != 1) return record;
    const std::uint64_t count = rest.u32();
    record.programParts = rest.take(count * programPartLength);
    if (!rest.ok()) return Fault::architecturesPastEnd;
  } else if (record.kind == Kind::link) {
    record.checksum = rest.u32();
    const std::uint32_t length = rest.u32();
    if (!rest.ok()) return Fault::shortRecord;
    const std::string_view target = rest.take(length);
    if (!rest.ok()) return Fault::targetPastEnd;
    if (target.empty() || target.back() != '\0') return Fault::unterminatedTarget;
    record.linkTarget = target.substr(0, target.find('\0'));
  }
  return record;
}

std::optional<ProgramPart> Record::programPart(std::uint32_t architecture) const {
  for (Cursor cursor(programParts); !cursor.rest().empty();) {
    const std::uint32_t number = cursor.u32();
    cursor.u32();  // the variant
    const ProgramPart part{cursor.u32(), cursor.u32()};
    if (number == architecture) return part;
  }
  return {};
}

}  // namespace pelmarix::lsbom
