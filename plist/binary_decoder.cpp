// The layout of a binary property list, from the public format notes. All numbers are big-endian.
//
//   header    8 bytes: "bplist0" and any other byte
//   objects   one behind the other, each a marker byte and what the table below says
//   table     for each object its offset from the start of the file
//   trailer   32 bytes: 6 unused, width of an offset, width of a reference, then in 8 bytes each the number
//   of
//             objects, the number of the top object, the offset of the table
//
//   marker    object              follows
//   00        null
//   08 09     false, true
//   1n        integer             2^n bytes, n up to 4: 1, 2, 4 unsigned, 8 signed, of 16 the low 8 unsigned
//   22 23     real                4 or 8 bytes, IEEE 754
//   33        date                8 bytes, a real: seconds since the reference date
//   4n        data                n bytes
//   5n        string              n bytes, ASCII; others are read as ISO-8859-1
//   6n        string              n times 2 bytes, UTF-16
//   8n        UID                 n+1 bytes, unsigned
//   An Cn     array, set          n references
//   Dn        dictionary          n references to keys, then n to values
//
// In 4n to 6n and An to Dn, n = F says that the number follows the marker, as an integer object. A reference
// is the number of an object.

#include "plist/binary_decoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <optional>

#include "base/result.h"
#include "plist/limits.h"
#include "plist/unicode.h"

namespace pelmarix::plist {
namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;
constexpr std::size_t maximumWidth = 8;

/// What the trailer says. Once checked, everything below relies on it.
struct Trailer {
  std::size_t offsetWidth;
  std::size_t referenceWidth;
  std::size_t objectCount;
  std::size_t topObject;
  std::size_t tableStart;
};

/// True when `width` bytes can't tell `limit` from smaller numbers.
bool isTooNarrow(std::size_t width, std::size_t limit) {
  return width < maximumWidth && limit >> (8 * width) != 0;
}

Result<Trailer, Error> readTrailer(std::string_view bytes) {
  if (bytes.size() < headerSize + 1 + trailerSize) return Error{Reason::tooShort, bytes.size()};
  const std::size_t start = bytes.size() - trailerSize;
  const char* const fields = bytes.data() + start;
  const Trailer trailer{bigEndian(fields + 6, 1), bigEndian(fields + 7, 1), bigEndian64(fields + 8),
                        bigEndian64(fields + 16), bigEndian64(fields + 24)};

  if (trailer.offsetWidth < 1 || trailer.offsetWidth > maximumWidth)
    return Error{Reason::badWidth, start + 6};
  if (trailer.referenceWidth < 1 || trailer.referenceWidth > maximumWidth)
    return Error{Reason::badWidth, start + 7};
  if (trailer.objectCount == 0) return Error{Reason::noObjects, start + 8};
  if (trailer.topObject >= trailer.objectCount) return Error{Reason::badTopObject, start + 16};
  if (trailer.tableStart <= headerSize || trailer.tableStart > start)
    return Error{Reason::badTableStart, start + 24};
  const std::size_t tableSize = start - trailer.tableStart;
  if (trailer.objectCount > tableSize || trailer.objectCount * trailer.offsetWidth != tableSize)
    return Error{Reason::lengthDiffers, start + 8};
  if (isTooNarrow(trailer.referenceWidth, trailer.objectCount))
    return Error{Reason::referenceTooNarrow, start + 7};
  if (isTooNarrow(trailer.offsetWidth, trailer.tableStart)) return Error{Reason::offsetTooNarrow, start + 6};
  return trailer;
}

/// Decodes every object that the top object leads to, each once. Containers wait on a stack of their own, so
/// the program's stack doesn't grow with the file.
class Decoder {
 public:
  Decoder(std::string_view bytes, const Trailer& trailer, Tree& tree)
      : bytes_(bytes),
        trailer_(trailer),
        tree_(tree),
        bytesToCover_(overlapFactor * bytes.size() + overlapAllowance) {}

  Result<void, Error> decode() {
    if (checkTable() && decodeObject(trailer_.topObject)) decodeContents();
    if (error_) return *error_;
    return {};
  }

 private:
  /// Objects may overlap, which lets a small file describe objects far larger than itself. Nobody writes such
  /// files; all the objects together may be this many times the file, and small files any size.
  static constexpr std::size_t overlapFactor = 16;
  static constexpr std::size_t overlapAllowance = 262144;

  /// A container whose contents are being decoded.
  struct Level {
    std::size_t object;
    const char* nextReference;
    /// Behind the references to keys; of an array or set, where they begin.
    const char* endOfKeys;
    const char* endOfReferences;
    std::size_t deepestElement;
  };

  bool fail(Reason reason, std::size_t offset) {
    error_ = Error{reason, offset};
    return false;
  }

  std::size_t tableEntry(std::size_t object) const {
    return trailer_.tableStart + object * trailer_.offsetWidth;
  }
  std::size_t offset(std::size_t object) const {
    return bigEndianBeforeTrailer(bytes_.data() + tableEntry(object), trailer_.offsetWidth);
  }

  bool checkTable();
  void decodeContents();
  bool decodeElement(Level& level);
  bool enter(std::size_t object);
  bool checkDepth(std::size_t levels, std::size_t object);

  bool decodeObject(std::size_t object);
  bool decodeSingleton(unsigned nibble, Node& node);
  bool decodeInteger(unsigned sizeExponent, Node& node);
  bool decodeReal(Type type, unsigned sizeExponent, Node& node);
  bool decodeUid(std::size_t width, Node& node);
  bool decodeString(unsigned nibble, Node& node);
  bool decodeUtf16(unsigned nibble, Node& node);
  bool decodeContainer(Type type, unsigned nibble, Node& node);

  /// Takes the next bytes of the object at hand. Fails where they would not all be objects' bytes.
  const char* take(std::size_t size);
  /// Takes `count` times `unit` bytes, where the count is the marker's or an integer behind it.
  std::optional<std::string_view> takeCounted(unsigned nibble, std::size_t unit);

  std::string_view bytes_;
  const Trailer& trailer_;
  Tree& tree_;
  std::array<Level, maximumDepth> levels_;
  std::size_t depth_ = 0;
  std::size_t bytesToCover_;
  /// The object at hand and where its next byte is.
  std::size_t start_ = 0;
  std::size_t at_ = 0;
  std::optional<Error> error_;
};

bool Decoder::checkTable() {
  for (std::size_t object = 0; object < trailer_.objectCount; ++object)
    if (offset(object) >= trailer_.tableStart) return fail(Reason::badOffset, tableEntry(object));
  tree_.referenceWidth = trailer_.referenceWidth;
  tree_.root = trailer_.topObject;
  tree_.nodes.resize(trailer_.objectCount);
  return true;
}

void Decoder::decodeContents() {
  if (tree_.nodes[trailer_.topObject].isContainer() && !enter(trailer_.topObject)) return;
  while (depth_ > 0) {
    Level& level = levels_[depth_ - 1];
    if (level.nextReference != level.endOfReferences) {
      if (!decodeElement(level)) return;
      continue;
    }
    const std::size_t levels = level.deepestElement + 1;
    tree_.nodes[level.object].levels = levels & Node::levelsMask;
    if (--depth_ == 0) return;
    levels_[depth_ - 1].deepestElement = std::max(levels_[depth_ - 1].deepestElement, levels);
  }
}

bool Decoder::decodeElement(Level& level) {
  const char* const reference = level.nextReference;
  level.nextReference += trailer_.referenceWidth;
  const std::size_t object = bigEndianBeforeTrailer(reference, trailer_.referenceWidth);
  const auto failHere = [&](Reason reason) {
    return fail(reason, static_cast<std::size_t>(reference - bytes_.data()));
  };
  if (object >= trailer_.objectCount) return failHere(Reason::badReference);
  const Node& node = tree_.nodes[object];
  if (node.levels == Node::open) return failHere(Reason::cycle);
  const bool isNew = node.levels == 0;
  if (isNew && !decodeObject(object)) return false;
  if (reference < level.endOfKeys && node.type != Type::string) return failHere(Reason::keyNotString);
  if (isNew && node.isContainer()) return enter(object);
  level.deepestElement = std::max<std::size_t>(level.deepestElement, node.levels);
  return checkDepth(node.levels - 1, object);
}

bool Decoder::enter(std::size_t object) {
  if (!checkDepth(1, object)) return false;
  Node& node = tree_.nodes[object];
  node.levels = Node::open;
  const std::size_t size = node.size * trailer_.referenceWidth;
  const char* const endOfKeys = node.type == Type::dictionary ? node.bytes + size : node.bytes;
  levels_[depth_++] = {object, node.bytes, endOfKeys, endOfKeys + size, 1};
  return true;
}

/// A shared container is as deep as the deepest place that it stands in, whichever place was seen first.
bool Decoder::checkDepth(std::size_t levels, std::size_t object) {
  return depth_ + levels <= maximumDepth || fail(Reason::nestedTooDeep, offset(object));
}

bool Decoder::decodeObject(std::size_t object) {
  start_ = offset(object);
  if (start_ < headerSize) return fail(Reason::badOffset, tableEntry(object));
  Node& node = tree_.nodes[object];
  const auto marker = static_cast<unsigned char>(bytes_[start_]);
  at_ = start_ + 1;
  const unsigned nibble = marker & 0xF;
  switch (marker >> 4) {
    case 0x0:
      return decodeSingleton(nibble, node);
    case 0x1:
      return decodeInteger(nibble, node);
    case 0x2:
      return decodeReal(Type::real, nibble, node);
    case 0x3:
      return decodeReal(Type::date, nibble, node);
    case 0x4: {
      const auto data = takeCounted(nibble, 1);
      if (data) node = Node(Type::data, *data);
      return data.has_value();
    }
    case 0x5:
      return decodeString(nibble, node);
    case 0x6:
      return decodeUtf16(nibble, node);
    case 0x8:
      return decodeUid(nibble + 1, node);
    case 0xA:
      return decodeContainer(Type::array, nibble, node);
    case 0xC:
      return decodeContainer(Type::set, nibble, node);
    case 0xD:
      return decodeContainer(Type::dictionary, nibble, node);
    default:
      return fail(Reason::unknownMarker, start_);
  }
}

const char* Decoder::take(std::size_t size) {
  if (size > trailer_.tableStart - at_) {
    fail(Reason::objectTooLong, start_);
    return nullptr;
  }
  const char* const bytes = bytes_.data() + at_;
  at_ += size;
  return bytes;
}

std::optional<std::string_view> Decoder::takeCounted(unsigned nibble, std::size_t unit) {
  std::uint64_t count = nibble;
  if (nibble == 0xF) {
    const char* const marker = take(1);
    if (marker == nullptr) return std::nullopt;
    const auto sizeExponent = static_cast<unsigned char>(*marker) - 0x10U;
    if (sizeExponent > 4) {
      fail(Reason::badCount, start_);
      return std::nullopt;
    }
    const std::size_t width = std::size_t{1} << sizeExponent;
    const char* const bytes = take(width);
    if (bytes == nullptr) return std::nullopt;
    count = bigEndian(bytes, width);
  }
  // The bytes that are left are compared before the multiplication, which could overflow.
  if (count > (trailer_.tableStart - at_) / unit) {
    fail(Reason::objectTooLong, start_);
    return std::nullopt;
  }
  const std::size_t size = count * unit;
  if (size > bytesToCover_) {
    fail(Reason::tooMuchOverlap, start_);
    return std::nullopt;
  }
  bytesToCover_ -= size;
  return std::string_view(take(size), size);
}

bool Decoder::decodeSingleton(unsigned nibble, Node& node) {
  switch (nibble) {
    case 0x0:
      node = Node(Type::null, std::uint64_t{0});
      return true;
    case 0x8:
    case 0x9:
      node = Node(Type::boolean, std::uint64_t{nibble & 1});
      return true;
    default:
      return fail(Reason::unknownMarker, start_);
  }
}

bool Decoder::decodeInteger(unsigned sizeExponent, Node& node) {
  if (sizeExponent > 4) return fail(Reason::unknownMarker, start_);
  const std::size_t width = std::size_t{1} << sizeExponent;
  const char* const bytes = take(width);
  if (bytes == nullptr) return false;
  const std::uint64_t number = bigEndian(bytes, width);
  const bool isUnsigned = width == 16 && number > std::uint64_t{std::numeric_limits<std::int64_t>::max()};
  node = Node(Type::integer, number, isUnsigned ? Node::unsignedInteger : 1);
  return true;
}

bool Decoder::decodeReal(Type type, unsigned sizeExponent, Node& node) {
  if (sizeExponent != 3 && (sizeExponent != 2 || type == Type::date))
    return fail(Reason::unknownMarker, start_);
  const std::size_t width = std::size_t{1} << sizeExponent;
  const char* const bytes = take(width);
  if (bytes == nullptr) return false;
  const std::uint64_t bits = bigEndian(bytes, width);
  node = Node(type, width == sizeof(float) ? double{std::bit_cast<float>(static_cast<std::uint32_t>(bits))}
                                           : std::bit_cast<double>(bits));
  return true;
}

bool Decoder::decodeUid(std::size_t width, Node& node) {
  const char* const bytes = take(width);
  if (bytes == nullptr) return false;
  const std::size_t highBytes = width > sizeof(std::uint32_t) ? width - sizeof(std::uint32_t) : 0;
  if (std::any_of(bytes, bytes + highBytes, [](char byte) { return byte != 0; }))
    return fail(Reason::badUid, start_);
  node = Node(Type::uid, bigEndian(bytes, width));
  return true;
}

bool Decoder::decodeString(unsigned nibble, Node& node) {
  const auto text = takeCounted(nibble, 1);
  if (!text) return false;
  const char* const last = text->data() + text->size();
  node =
      Node(Type::string, findNonAscii(text->data(), last) == last ? *text : latin1ToUtf8(*text, tree_.arena));
  return true;
}

bool Decoder::decodeUtf16(unsigned nibble, Node& node) {
  const auto text = takeCounted(nibble, 2);
  if (!text) return false;
  node = Node(Type::string, lenientUtf16ToUtf8(*text, tree_.arena));
  return true;
}

bool Decoder::decodeContainer(Type type, unsigned nibble, Node& node) {
  const std::size_t unit = trailer_.referenceWidth * (type == Type::dictionary ? 2 : 1);
  const auto references = takeCounted(nibble, unit);
  if (!references) return false;
  node = Node(type, *references);
  node.size = references->size() / unit & Node::sizeMask;
  return true;
}

}  // namespace

Result<void, Error> decodeBinary(std::string_view bytes, Tree& tree) {
  const Result<Trailer, Error> trailer = readTrailer(bytes);
  if (!trailer) return trailer.error();
  return Decoder(bytes, *trailer, tree).decode();
}

}  // namespace pelmarix::plist
