// XML property lists, as the platform reads them: not quite XML. A tag ends at the first ">", attributes are
// passed over, nothing after the root element is looked at, and there are neither namespaces nor document
// types of a file's own.
//
//   file      white space, comments, <?...?>, <!DOCTYPE ...>; then one object
//   object    <plist> one object </plist>       nested ones too
//             <dict> (<key> object)* </dict>    <array> object* </array>
//             <string>, <key>                   text with entities and CDATA sections
//             <integer>, <real>, <date>, <data>, <true/>, <false/>
//
// Between elements there may be white space, comments and <?...?>.

#include "plist/xml_decoder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>

#include "base/utf8.h"
#include "plist/limits.h"
#include "plist/unicode.h"
#include "plist/xml_scalars.h"

namespace pelmarix::plist {
namespace {

constexpr std::string_view characterDataOpening = "<![CDATA[";
constexpr std::string_view characterDataClosing = "]]>";

enum class Tag : std::uint8_t { file, plist, dict, array, key, string, integer, real, date, data, yes, no };

constexpr std::array<std::string_view, 12> tagNames = {"",        "plist", "dict", "array", "key",  "string",
                                                       "integer", "real",  "date", "data",  "true", "false"};

constexpr std::string_view nameOf(Tag tag) { return tagNames[static_cast<std::size_t>(tag)]; }

bool isSpace(char character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

/// The first "<", "&" or byte from 0x80 in [first, last); `last` if there is none. Eight bytes are looked at
/// together: a byte that equals the one sought becomes zero by exclusive or, and subtracting one from a zero
/// borrows into its high bit. Above that byte the borrow may set more.
const char* findMarkup(const char* first, const char* last) {
  constexpr std::uint64_t openings = lowBitOfEachByte * '<';
  constexpr std::uint64_t ampersands = lowBitOfEachByte * '&';
  for (; last - first >= 8; first += 8) {
    const std::uint64_t word = loadEightBytes(first);
    const std::uint64_t hits =
        ((word ^ openings) - lowBitOfEachByte) | ((word ^ ampersands) - lowBitOfEachByte) | word;
    if ((hits & highBitOfEachByte) != 0) return first + firstHighBit(hits);
  }
  return std::find_if(first, last,
                      [](char byte) { return byte == '<' || byte == '&' || (byte & 0x80) != 0; });
}

class Decoder {
 public:
  Decoder(std::string_view text, Tree& tree)
      : at_(text.data()), last_(text.data() + text.size()), tree_(tree) {
    levels_[0] = {Tag::file, 0, 0};
    reserveNodes(text);
  }

  /// False where the text is refused; then the reason and the place are known.
  bool decode();
  Reason reason() const { return reason_; }
  const char* failedAt() const { return failedAt_; }

 private:
  struct Level {
    Tag tag;
    std::size_t node;
    /// Objects so far; in a dictionary keys and values.
    std::size_t objects;
  };

  bool fail(Reason reason, const char* where) {
    reason_ = reason;
    failedAt_ = where;
    return false;
  }
  bool failAtEnd() { return fail(Reason::unexpectedEnd, last_); }

  std::string_view rest() const { return {at_, static_cast<std::size_t>(last_ - at_)}; }
  void skipSpace() {
    while (at_ != last_ && isSpace(*at_)) ++at_;
  }
  /// Passes over the literal if it comes next.
  template <std::size_t size>
  bool accept(const char (&literal)[size]) {
    if (static_cast<std::size_t>(last_ - at_) < size - 1 || std::memcmp(at_, literal, size - 1) != 0)
      return false;
    at_ += size - 1;
    return true;
  }
  bool skipPast(std::string_view ending);

  void reserveNodes(std::string_view text);
  bool decodeNext();
  bool skipDeclaration();
  bool openElement();
  bool acceptUsualTag(Tag& tag);
  bool readTag(Tag& tag, bool& isEmpty);
  bool decodeEmpty(Tag tag, const char* start);
  bool enter(Tag tag, const char* start);
  bool leave();
  bool closeElement(std::string_view name);

  bool decodeString(Tag tag);
  bool decodeReal();
  bool decodeScalar(Tag tag, std::optional<Reason> (*read)(std::string_view, Node&));
  bool readText(std::string_view& text);
  bool findEndOfText(const char*& end);
  bool copyMixedText(const char* end, std::string_view& text);
  bool copyCharacters(const char* end, char*& out);
  bool copyReference(const char* end, char*& out);
  bool copyCharacterData(char*& out);

  const char* at_;
  const char* last_;
  Tree& tree_;
  /// The file and the outermost <plist> are levels too, but don't count as nesting.
  std::array<Level, maximumDepth + 2> levels_;
  std::size_t depth_ = 1;
  std::size_t depthAllowed_ = maximumDepth + 1;
  Reason reason_ = Reason::unexpectedEnd;
  const char* failedAt_ = nullptr;
};

/// How often [first, first + size), less than 256 bytes, has a "<" that no "/" follows. At least one byte
/// must stand behind it. With a constant for a size the compiler looks at many characters at once.
std::size_t countOpenings(const char* first, std::size_t size) {
  std::uint8_t count = 0;
  for (std::size_t i = 0; i < size; ++i)
    count = static_cast<std::uint8_t>(count + ((first[i] == '<') & (first[i + 1] != '/')));
  return count;
}

/// Every node begins with a "<" that no "/" follows. Reserving that many makes the array no larger than
/// needed, where growing would leave up to half of it unused and hold a second copy meanwhile. With a small
/// text neither matters, and a guess is had sooner.
void Decoder::reserveNodes(std::string_view text) {
  constexpr std::size_t smallText = 4096;
  constexpr std::size_t usualBytesPerNode = 32;
  if (text.size() < smallText) return tree_.nodes.reserve(text.size() / usualBytesPerNode);

  constexpr std::size_t blockSize = 128;
  std::size_t nodes = 0;
  std::size_t at = 0;
  for (; text.size() - at > blockSize; at += blockSize) nodes += countOpenings(text.data() + at, blockSize);
  nodes += countOpenings(text.data() + at, text.size() - at - 1);
  tree_.nodes.reserve(nodes);
}

bool Decoder::decode() {
  while (decodeNext())
    if (depth_ == 1 && levels_[0].objects == 1) return true;
  return false;
}

bool Decoder::decodeNext() {
  skipSpace();
  if (at_ == last_) return fail(depth_ == 1 ? Reason::noObject : Reason::unexpectedEnd, last_);
  if (*at_ != '<') return fail(Reason::unexpectedText, at_);
  if (at_ + 1 == last_) return failAtEnd();
  switch (at_[1]) {
    case '/':
      return leave();
    case '?':
      at_ += 2;
      return skipPast("?>");
    case '!':
      return skipDeclaration();
    default:
      return openElement();
  }
}

bool Decoder::skipPast(std::string_view ending) {
  const std::size_t found = rest().find(ending);
  if (found == std::string_view::npos) return failAtEnd();
  at_ += found + ending.size();
  return true;
}

/// A comment; before the root a document type too. One that declares anything itself is refused.
bool Decoder::skipDeclaration() {
  const char* const start = at_;
  if (accept("<!--")) return skipPast("-->");
  if (depth_ > 1) return fail(Reason::malformedMarkup, start);
  if (!accept("<!DOCTYPE")) return fail(Reason::malformedDocumentType, start);
  const std::size_t end = rest().find('>');
  const std::size_t ownDeclarations = rest().substr(0, end).find('[');
  if (ownDeclarations != std::string_view::npos)
    return fail(Reason::malformedDocumentType, at_ + ownDeclarations);
  if (end == std::string_view::npos) return failAtEnd();
  at_ += end + 1;
  return true;
}

/// Passes over one of the tags that files are full of, if it comes next and has no attributes.
bool Decoder::acceptUsualTag(Tag& tag) {
  if (accept("<key>")) {
    tag = Tag::key;
  } else if (accept("<string>")) {
    tag = Tag::string;
  } else if (accept("<date>")) {
    tag = Tag::date;
  } else if (accept("<dict>")) {
    tag = Tag::dict;
  } else {
    return false;
  }
  return true;
}

bool Decoder::readTag(Tag& tag, bool& isEmpty) {
  const char* const start = at_;
  const char* const name = start + 1;
  const auto* const end =
      static_cast<const char*>(std::memchr(name, '>', static_cast<std::size_t>(last_ - name)));
  if (end == nullptr) return failAtEnd();
  isEmpty = end[-1] == '/';
  const char* const nameEnd = std::find_if(name, isEmpty ? end - 1 : end, isSpace);
  const std::string_view found(name, static_cast<std::size_t>(nameEnd - name));
  const auto known = std::find(tagNames.begin() + 1, tagNames.end(), found);
  if (known == tagNames.end()) return fail(Reason::unknownTag, start);
  tag = static_cast<Tag>(known - tagNames.begin());
  at_ = end + 1;
  return true;
}

bool Decoder::openElement() {
  const char* const start = at_;
  Tag tag = Tag::key;
  bool isEmpty = false;
  if (!acceptUsualTag(tag) && !readTag(tag, isEmpty)) return false;

  Level& level = levels_[depth_ - 1];
  if (level.tag == Tag::dict && level.objects % 2 == 0 && tag != Tag::key)
    return fail(Reason::keyExpected, start);
  if (level.tag == Tag::plist && level.objects == 1) return fail(Reason::severalObjects, start);
  ++level.objects;

  if (isEmpty) return decodeEmpty(tag, start);
  switch (tag) {
    case Tag::key:
    case Tag::string:
      return decodeString(tag);
    case Tag::integer:
      return decodeScalar(tag, readInteger);
    case Tag::date:
      return decodeScalar(tag, readDate);
    case Tag::data:
      return decodeScalar(tag, readData);
    case Tag::real:
      return decodeReal();
    case Tag::yes:
    case Tag::no:
      tree_.nodes.emplace_back(Type::boolean, std::uint64_t{tag == Tag::yes});
      return closeElement(nameOf(tag));
    default:
      return enter(tag, start);
  }
}

bool Decoder::decodeEmpty(Tag tag, const char* start) {
  switch (tag) {
    case Tag::key:
    case Tag::string:
      tree_.nodes.emplace_back(Type::string, std::string_view());
      return true;
    case Tag::yes:
    case Tag::no:
      tree_.nodes.emplace_back(Type::boolean, std::uint64_t{tag == Tag::yes});
      return true;
    case Tag::dict:
      tree_.nodes.emplace_back(Type::dictionary, std::uint64_t{0});
      return true;
    case Tag::array:
      tree_.nodes.emplace_back(Type::array, std::uint64_t{0});
      return true;
    case Tag::plist:
      return fail(Reason::noObject, start);
    default:
      return fail(Reason::contentMissing, start);
  }
}

bool Decoder::enter(Tag tag, const char* start) {
  if (depth_ == 1 && tag == Tag::plist) ++depthAllowed_;
  if (depth_ == depthAllowed_) return fail(Reason::nestedTooDeep, start);
  levels_[depth_++] = {tag, tree_.nodes.size(), 0};
  if (tag != Tag::plist)
    tree_.nodes.emplace_back(tag == Tag::dict ? Type::dictionary : Type::array, std::uint64_t{0});
  return true;
}

bool Decoder::leave() {
  if (depth_ == 1) return fail(Reason::mismatchedClosingTag, at_);
  const Level& level = levels_[depth_ - 1];
  const bool isDictionary = level.tag == Tag::dict;
  const char* const start = at_;
  if (!(isDictionary && accept("</dict>")) && !closeElement(nameOf(level.tag))) return false;
  if (isDictionary && level.objects % 2 != 0) return fail(Reason::valueMissing, start);
  if (level.tag == Tag::plist && level.objects == 0) return fail(Reason::noObject, start);
  if (level.tag != Tag::plist) {
    Node& node = tree_.nodes[level.node];
    node = Node(node.type, isDictionary ? level.objects / 2 : level.objects, tree_.nodes.size() - level.node);
  }
  --depth_;
  return true;
}

/// Passes over the closing tag, which must come next. White space may stand before its end.
bool Decoder::closeElement(std::string_view name) {
  const char* const start = at_;
  if (!accept("</")) return rest().size() < 2 ? failAtEnd() : fail(Reason::malformedMarkup, start);
  const std::string_view found = rest().substr(0, name.size());
  if (found != name) return name.starts_with(found) ? failAtEnd() : fail(Reason::mismatchedClosingTag, start);
  at_ += name.size();
  skipSpace();
  if (at_ == last_) return failAtEnd();
  return *at_++ == '>' || fail(Reason::mismatchedClosingTag, start);
}

bool Decoder::decodeString(Tag tag) {
  std::string_view text;
  if (!readText(text)) return false;
  tree_.nodes.emplace_back(Type::string, text);
  return (tag == Tag::key ? accept("</key>") : accept("</string>")) || closeElement(nameOf(tag));
}

/// Real numbers alone are text that may hold references and CDATA sections, as on the platform.
bool Decoder::decodeReal() {
  const char* const start = at_;
  std::string_view text;
  if (!readText(text)) return false;
  if (const auto reason = readReal(text, tree_.nodes.emplace_back())) return fail(*reason, start);
  return closeElement(nameOf(Tag::real));
}

bool Decoder::decodeScalar(Tag tag, std::optional<Reason> (*read)(std::string_view, Node&)) {
  const char* const start = at_;
  const std::size_t size = rest().find('<');
  if (size == std::string_view::npos) return failAtEnd();
  if (const auto reason = read(rest().substr(0, size), tree_.nodes.emplace_back()))
    return fail(*reason, start);
  at_ += size;
  return closeElement(nameOf(tag));
}

/// Reads text up to the tag that ends it: in place if it is plain.
bool Decoder::readText(std::string_view& text) {
  const char* const start = at_;
  const char* end = findMarkup(at_, last_);
  while (end != last_ && *end != '<' && *end != '&') {
    const std::size_t length = utf8SequenceLength(end, last_);
    if (length == 0) return fail(Reason::invalidUtf8, end);
    end = findMarkup(end + length, last_);
  }
  if (end != last_ && (*end == '&' || (last_ - end > 1 && end[1] == '!')))
    return findEndOfText(end) && copyMixedText(end, text);
  text = std::string_view(start, static_cast<std::size_t>(end - start));
  at_ = end;
  return true;
}

/// The "<" of the tag that ends the text at hand; CDATA sections belong to the text.
bool Decoder::findEndOfText(const char*& end) {
  std::string_view text = rest();
  for (;;) {
    const std::size_t found = text.find('<');
    if (found == std::string_view::npos) return failAtEnd();
    text.remove_prefix(found);
    end = text.data();
    if (!text.starts_with("<!")) return true;
    if (!text.starts_with(characterDataOpening)) return fail(Reason::malformedMarkup, end);
    const std::size_t closing = text.find(characterDataClosing, characterDataOpening.size());
    if (closing == std::string_view::npos) return failAtEnd();
    text.remove_prefix(closing + characterDataClosing.size());
  }
}

/// The text between here and its end. What stands for it is never longer than itself.
bool Decoder::copyMixedText(const char* end, std::string_view& text) {
  char* out = tree_.arena.reserve(static_cast<std::size_t>(end - at_));
  while (at_ != end) {
    if (!(*at_ == '&'   ? copyReference(end, out)
          : *at_ == '<' ? copyCharacterData(out)
                        : copyCharacters(end, out)))
      return false;
  }
  text = tree_.arena.commit(out);
  return true;
}

bool Decoder::copyCharacters(const char* end, char*& out) {
  const char* const stop = std::find_if(at_, end, [](char byte) { return byte == '<' || byte == '&'; });
  const char* const invalid = findInvalidUtf8(at_, stop);
  if (invalid != stop) return fail(Reason::invalidUtf8, invalid);
  out = std::copy(at_, stop, out);
  at_ = stop;
  return true;
}

bool Decoder::copyCharacterData(char*& out) {
  const char* const start = at_ + characterDataOpening.size();
  at_ = start;
  skipPast(characterDataClosing);
  const char* const stop = at_ - characterDataClosing.size();
  const char* const invalid = findInvalidUtf8(start, stop);
  if (invalid != stop) return fail(Reason::invalidUtf8, invalid);
  out = std::copy(start, stop, out);
  return true;
}

bool Decoder::copyReference(const char* end, char*& out) {
  struct Entity {
    std::string_view reference;
    char character;
  };
  static constexpr std::array<Entity, 5> entities = {
      {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&apos;", '\''}, {"&quot;", '"'}}};

  const char* const start = at_;
  const std::string_view text(start, static_cast<std::size_t>(end - start));
  for (const Entity& entity : entities) {
    if (!text.starts_with(entity.reference)) continue;
    *out++ = entity.character;
    at_ += entity.reference.size();
    return true;
  }

  if (!text.starts_with("&#")) return fail(Reason::malformedReference, start);
  const bool isHexadecimal = text.starts_with("&#x");
  const unsigned base = isHexadecimal ? 16 : 10;
  const char* digit = start + (isHexadecimal ? 3 : 2);
  const char* const firstDigit = digit;
  char32_t character = 0;
  for (; digit != end && digitValue(*digit) < base; ++digit)
    character = std::min<char32_t>(character * base + digitValue(*digit), beyondUnicode);
  if (digit == firstDigit || digit == end || *digit != ';') return fail(Reason::malformedReference, start);
  if (character == beyondUnicode || isSurrogate(character)) return fail(Reason::invalidCharacter, start);
  out = putUtf8(character, out);
  at_ = digit + 1;
  return true;
}

}  // namespace

Result<void, Error> decodeXml(std::string_view bytes, Tree& tree) {
  const Result<std::string_view, Error> text = xmlTextAsUtf8(bytes, tree.arena);
  if (!text) return text.error();
  Decoder decoder(*text, tree);
  if (decoder.decode()) return {};

  // A byte-order mark of UTF-8 is the one thing that text read in place leaves out.
  const bool isInPlace = text->data() + text->size() == bytes.data() + bytes.size();
  const char* const start = isInPlace ? bytes.data() : text->data();
  const auto line = static_cast<std::size_t>(std::count(start, decoder.failedAt(), '\n')) + 1;
  return Error{decoder.reason(), static_cast<std::size_t>(decoder.failedAt() - start), line};
}

}  // namespace pelmarix::plist
