// The layout of a binary property list, from the public format notes. All numbers are big-endian.
//
//   header    8 bytes: "bplist0" and any other byte
//   objects   one behind the other, each a marker byte and what the table below says
//   table     for each object its offset from the start of the file
//   trailer   32 bytes: 6 unused, the width of an offset, the width of a reference, then in 8 bytes each
//             the number of objects, the number of the top object, the offset of the table
//
//   marker    object              followed by
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
// In 4n to 6n and An to Dn, n = F says that the count follows the marker, as an integer object. A reference
// is the number of an object.

#include "plist/binary_decoder.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "base/utf8.h"
#include "plist/unicode.h"

namespace pelmarix::plist {
namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;
constexpr std::size_t maximumWidth = 8;

// What the trailer says. Once checked, everything below relies on it.
struct Trailer {
  std::size_t offsetWidth;
  std::size_t referenceWidth;
  std::size_t objectCount;
  std::size_t topObject;
  std::size_t tableStart;
};

// True when `width` bytes can't tell `limit` from smaller numbers.
bool isTooNarrow(std::size_t width, std::size_t limit) {
  return width < maximumWidth && limit >> (8 * width) != 0;
}

Result<Trailer, Error> readTrailer(std::string_view bytes) {
  if (bytes.size() < headerSize + 1 + trailerSize) return Error{Reason::tooShort, bytes.size()};
  const std::size_t start = bytes.size() - trailerSize;
  const auto field = [&](std::size_t at, std::size_t width) {
    return bigEndian(bytes.substr(start + at, width));
  };
  const Trailer trailer{field(6, 1), field(7, 1), field(8, 8), field(16, 8), field(24, 8)};

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

// Decodes every object that the top object leads to, each once. Containers wait on a stack of their own, so
// the program's stack doesn't grow with the file. Functions are false where the file is refused; error_ then
// tells why.
class Decoder {
 public:
  Decoder(std::string_view bytes, const Trailer& trailer)
      : bytes_(bytes),
        trailer_(trailer),
        bytesToCover_(std::min(overlapFactor * bytes.size() + overlapAllowance, maximumSize)) {}

  Result<Tree, Error> decode();

 private:
  // Objects may overlap, which lets a small file describe objects far larger than itself. Nobody writes such
  // files; all the objects together may be this many times the file, and in small files any size, but never
  // more than the longest file.
  static constexpr std::size_t overlapFactor = 16;
  static constexpr std::size_t overlapAllowance = 262144;

  // 1 for what is no container, and for a container one more than for its highest child.
  using Height = std::uint16_t;
  static constexpr Height notDecoded = 0;
  static constexpr Height beingDecoded = maximumDepth + 1;

  // A container whose children are being decoded, and where its references stand.
  struct Level {
    std::size_t object;
    std::size_t nextReference;
    // In an array or set, where they begin.
    std::size_t endOfKeys;
    std::size_t endOfReferences;
    Height heightOfChildren;
  };

  bool fail(Reason reason, std::size_t where) {
    error_ = Error{reason, where};
    return false;
  }

  std::size_t tableEntry(std::size_t object) const {
    return trailer_.tableStart + object * trailer_.offsetWidth;
  }
  std::size_t offset(std::size_t object) const {
    return bigEndian(bytes_.substr(tableEntry(object), trailer_.offsetWidth));
  }

  bool checkTable();
  bool decodeChildren();
  bool decodeChild(Level& level);
  bool enter(std::size_t object);
  bool checkDepth(std::size_t height, std::size_t object);

  bool decodeObject(std::size_t object);
  bool decodeSingleton(unsigned nibble, Node& node);
  bool decodeInteger(unsigned sizeExponent, Node& node);
  bool decodeReal(Type type, unsigned sizeExponent, Node& node);
  bool decodeUid(std::size_t width, Node& node);
  bool decodeData(unsigned nibble, Node& node);
  bool decodeString(unsigned nibble, Node& node);
  bool decodeUtf16(unsigned nibble, Node& node);
  // Takes text that the file doesn't hold as it is.
  bool keepString(std::string text, Node& node);
  bool decodeContainer(Type type, unsigned nibble, Node& node);

  // Takes the next bytes of the object at hand, which must all stand before the table.
  bool take(std::size_t size, std::string_view& bytes);
  // Takes `count` times `unit` bytes, where the count is the marker's or an integer behind it.
  bool takeCounted(unsigned nibble, std::size_t unit, std::string_view& bytes);

  std::string_view bytes_;
  const Trailer& trailer_;
  Tree tree_;
  std::vector<Height> heights_;
  std::vector<Level> levels_;
  std::size_t bytesToCover_;
  // The object at hand and where its next byte is.
  std::size_t start_ = 0;
  std::size_t at_ = 0;
  std::optional<Error> error_;
};

Result<Tree, Error> Decoder::decode() {
  tree_.file = bytes_;
  tree_.referenceWidth = trailer_.referenceWidth;
  tree_.root = trailer_.topObject;
  if (!checkTable() || !decodeObject(tree_.root) || !decodeChildren()) return *error_;
  return std::move(tree_);
}

bool Decoder::checkTable() {
  if (trailer_.objectCount > maximumNodes) return fail(Reason::tooLarge, trailer_.tableStart);
  for (std::size_t object = 0; object < trailer_.objectCount; ++object)
    if (offset(object) >= trailer_.tableStart) return fail(Reason::badOffset, tableEntry(object));
  tree_.nodes.resize(trailer_.objectCount);
  heights_.resize(trailer_.objectCount, notDecoded);
  return true;
}

bool Decoder::decodeChildren() {
  if (tree_.nodes[tree_.root].isContainer() && !enter(tree_.root)) return false;
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.nextReference != level.endOfReferences) {
      if (!decodeChild(level)) return false;
      continue;
    }
    const auto height = static_cast<Height>(level.heightOfChildren + 1);
    heights_[level.object] = height;
    levels_.pop_back();
    if (!levels_.empty()) levels_.back().heightOfChildren = std::max(levels_.back().heightOfChildren, height);
  }
  return true;
}

bool Decoder::decodeChild(Level& level) {
  const std::size_t reference = level.nextReference;
  level.nextReference += trailer_.referenceWidth;
  const std::size_t object = bigEndian(bytes_.substr(reference, trailer_.referenceWidth));
  if (object >= trailer_.objectCount) return fail(Reason::badReference, reference);
  if (heights_[object] == beingDecoded) return fail(Reason::cycle, reference);
  const bool isNew = heights_[object] == notDecoded;
  if (isNew && !decodeObject(object)) return false;
  const Node& node = tree_.nodes[object];
  if (reference < level.endOfKeys && node.type != Type::string) return fail(Reason::keyNotString, reference);
  if (isNew && node.isContainer()) return enter(object);
  level.heightOfChildren = std::max(level.heightOfChildren, heights_[object]);
  return checkDepth(heights_[object] - 1U, object);
}

bool Decoder::enter(std::size_t object) {
  if (!checkDepth(1, object)) return false;
  heights_[object] = beingDecoded;
  const Node& node = tree_.nodes[object];
  const std::size_t first = node.firstChild;
  const std::size_t size = node.count * trailer_.referenceWidth;
  const std::size_t endOfKeys = node.type == Type::dictionary ? first + size : first;
  levels_.push_back({object, first, endOfKeys, endOfKeys + size, 1});
  return true;
}

// A shared container is as deep as the deepest place that it stands in, whichever place was seen first.
bool Decoder::checkDepth(std::size_t height, std::size_t object) {
  return levels_.size() + height <= maximumDepth || fail(Reason::nestedTooDeep, offset(object));
}

bool Decoder::decodeObject(std::size_t object) {
  start_ = offset(object);
  if (start_ < headerSize) return fail(Reason::badOffset, tableEntry(object));
  heights_[object] = 1;
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
    case 0x4:
      return decodeData(nibble, node);
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

bool Decoder::take(std::size_t size, std::string_view& bytes) {
  if (size > trailer_.tableStart - at_) return fail(Reason::objectTooLong, start_);
  bytes = bytes_.substr(at_, size);
  at_ += size;
  return true;
}

bool Decoder::takeCounted(unsigned nibble, std::size_t unit, std::string_view& bytes) {
  std::uint64_t count = nibble;
  if (nibble == 0xF) {
    if (!take(1, bytes)) return false;
    const auto sizeExponent = static_cast<unsigned char>(bytes[0]) - 0x10U;
    if (sizeExponent > 4) return fail(Reason::badCount, start_);
    if (!take(std::size_t{1} << sizeExponent, bytes)) return false;
    count = bigEndian(bytes);
  }
  // The bytes that are left are compared before the multiplication, which could overflow.
  if (count > (trailer_.tableStart - at_) / unit) return fail(Reason::objectTooLong, start_);
  const std::size_t size = count * unit;
  if (size > bytesToCover_) return fail(Reason::tooMuchOverlap, start_);
  bytesToCover_ -= size;
  return take(size, bytes);
}

bool Decoder::decodeSingleton(unsigned nibble, Node& node) {
  switch (nibble) {
    case 0x0:
      node = Node();
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
  std::string_view bytes;
  if (!take(std::size_t{1} << sizeExponent, bytes)) return false;
  const std::uint64_t number = bigEndian(bytes);
  node = Node::integer(number, sizeExponent == 3 && number >> 63 != 0);
  return true;
}

bool Decoder::decodeReal(Type type, unsigned sizeExponent, Node& node) {
  if (sizeExponent != 3 && (sizeExponent != 2 || type == Type::date))
    return fail(Reason::unknownMarker, start_);
  std::string_view bytes;
  if (!take(std::size_t{1} << sizeExponent, bytes)) return false;
  const std::uint64_t bits = bigEndian(bytes);
  node = Node(type, sizeExponent == 2 ? double{std::bit_cast<float>(static_cast<std::uint32_t>(bits))}
                                      : std::bit_cast<double>(bits));
  return true;
}

bool Decoder::decodeUid(std::size_t width, Node& node) {
  std::string_view bytes;
  if (!take(width, bytes)) return false;
  bytes.remove_prefix(std::min(bytes.find_first_not_of('\0'), bytes.size()));
  if (bytes.size() > sizeof(std::uint32_t)) return fail(Reason::badUid, start_);
  node = Node(Type::uid, bigEndian(bytes));
  return true;
}

bool Decoder::decodeData(unsigned nibble, Node& node) {
  std::string_view data;
  if (!takeCounted(nibble, 1, data)) return false;
  node = Node(Type::data, data);
  return true;
}

bool Decoder::decodeString(unsigned nibble, Node& node) {
  std::string_view text;
  if (!takeCounted(nibble, 1, text)) return false;
  if (isAscii(text)) {
    node = Node(Type::string, text);
    return true;
  }
  return keepString(latin1ToUtf8(text), node);
}

bool Decoder::decodeUtf16(unsigned nibble, Node& node) {
  std::string_view text;
  if (!takeCounted(nibble, 2, text)) return false;
  return keepString(lenientUtf16ToUtf8(text), node);
}

bool Decoder::keepString(std::string text, Node& node) {
  node = Node(Type::string, tree_.keep(std::move(text)));
  return tree_.nodes.size() + tree_.nodesForKept <= maximumNodes || fail(Reason::tooLarge, start_);
}

bool Decoder::decodeContainer(Type type, unsigned nibble, Node& node) {
  const std::size_t unit = trailer_.referenceWidth * (type == Type::dictionary ? 2 : 1);
  std::string_view references;
  if (!takeCounted(nibble, unit, references)) return false;
  node = Node(type, Children{at_ - references.size(), references.size() / unit});
  return true;
}

}  // namespace

Result<Tree, Error> decodeBinary(std::string_view bytes) {
  const Result<Trailer, Error> trailer = readTrailer(bytes);
  if (!trailer) return trailer.error();
  return Decoder(bytes, *trailer).decode();
}

}  // namespace pelmarix::plist
