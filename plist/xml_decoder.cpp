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
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/utf8.h"
#include "plist/unicode.h"
#include "plist/xml_scalars.h"

namespace pelmarix::plist {
namespace {

constexpr std::string_view characterDataOpening = "<![CDATA[";
constexpr std::string_view characterDataClosing = "]]>";

// The most frequent ones first; each name is compared with all up to its own.
enum class Tag : std::uint8_t { file, key, string, dict, date, array, integer, real, data, yes, no, plist };

constexpr std::array<std::string_view, 12> tagNames = {"",        "key",  "string", "dict", "date",  "array",
                                                       "integer", "real", "data",   "true", "false", "plist"};

constexpr std::string_view nameOf(Tag tag) { return tagNames[static_cast<std::size_t>(tag)]; }

bool isXmlSpace(char character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

// Decodes the root element. Containers wait on a stack of their own, so the program's stack doesn't grow with
// the file. Functions are false where the text is refused; error_ then tells why.
class Decoder {
 public:
  Decoder(std::string_view text, std::size_t start, Tree tree)
      : text_(text), at_(start), tree_(std::move(tree)), levels_{{Tag::file, 0}} {}

  Result<Tree, Error> decode();

 private:
  // An element whose contents are being decoded.
  struct Level {
    Tag tag;
    // Its first child among the waiting ones.
    std::size_t firstChild;
  };

  bool fail(Reason reason, std::size_t where) {
    const std::string_view before = text_.substr(0, where);
    const auto line = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
    error_ = Error{reason, where, line};
    return false;
  }
  bool failAtEnd() { return fail(Reason::unexpectedEnd, text_.size()); }

  std::string_view rest() const { return text_.substr(at_); }
  // Passes over the literal if it comes next.
  bool accept(std::string_view literal) {
    if (!rest().starts_with(literal)) return false;
    at_ += literal.size();
    return true;
  }
  // The first such character from here on, or the end of the file.
  template <typename Predicate>
  std::size_t find(Predicate isSought) const {
    const auto first = text_.begin() + static_cast<std::ptrdiff_t>(at_);
    return static_cast<std::size_t>(std::find_if(first, text_.end(), isSought) - text_.begin());
  }
  void skipSpace() {
    at_ = find([](char character) { return !isXmlSpace(character); });
  }
  std::size_t findMarkup() const {
    return find([](char character) { return character == '<' || character == '&'; });
  }
  bool skipPast(std::string_view ending);

  bool decodeNext();
  bool skipDeclaration();
  bool openElement();
  bool readTag(Tag& tag, bool& isEmpty);
  bool decodeEmpty(Tag tag, std::size_t start);
  bool enter(Tag tag, std::size_t start);
  bool leave();
  bool closeElement(Tag tag);

  bool decodeString(Tag tag);
  bool decodeScalar(Tag tag);
  Result<Node, Reason> readScalar(Tag tag, std::string_view text);
  bool readRawText(std::string_view& text);
  bool readText(std::string_view& text);
  bool findEndOfText(std::size_t& end);
  bool copyText(std::size_t end, std::string& copy);
  bool copyCharacters(std::size_t end, std::string& copy);
  bool copyReference(std::string& copy);
  bool checkUtf8(std::string_view text);

  std::string_view text_;
  std::size_t at_;
  Tree tree_;
  // The file and the outermost <plist> are levels too, but don't count as nesting.
  std::vector<Level> levels_;
  std::size_t levelsAllowed_ = maximumDepth + 1;
  // The children of the open elements. When one is closed, its own go to the tree and itself takes their
  // place here.
  std::vector<Node> waiting_;
  std::optional<Error> error_;
};

bool Decoder::skipPast(std::string_view ending) {
  const std::size_t found = text_.find(ending, at_);
  if (found == std::string_view::npos) return failAtEnd();
  at_ = found + ending.size();
  return true;
}

Result<Tree, Error> Decoder::decode() {
  // Most files have fewer nodes, so that the array need not grow: 48 ms instead of 68 for 40 MB.
  constexpr std::size_t usualBytesPerNode = 24;
  tree_.nodes.reserve(text_.size() / usualBytesPerNode);
  while (levels_.size() > 1 || waiting_.empty())
    if (!decodeNext()) return *error_;
  tree_.root = tree_.nodes.size();
  tree_.nodes.push_back(waiting_.front());
  return std::move(tree_);
}

bool Decoder::decodeNext() {
  if (waiting_.size() + tree_.nodes.size() + tree_.nodesForKept > maximumNodes)
    return fail(Reason::tooLarge, at_);
  skipSpace();
  if (at_ == text_.size())
    return fail(levels_.size() == 1 ? Reason::noObject : Reason::unexpectedEnd, text_.size());
  if (text_[at_] != '<') return fail(Reason::unexpectedText, at_);
  if (at_ + 1 == text_.size()) return failAtEnd();
  switch (text_[at_ + 1]) {
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

// A comment; before the root a document type too. One that declares anything itself is refused.
bool Decoder::skipDeclaration() {
  const std::size_t start = at_;
  if (accept("<!--")) return skipPast("-->");
  if (levels_.size() > 1) return fail(Reason::malformedMarkup, start);
  if (!accept("<!DOCTYPE")) return fail(Reason::malformedDocumentType, start);
  const std::size_t ownDeclarations = rest().substr(0, rest().find('>')).find('[');
  if (ownDeclarations != std::string_view::npos)
    return fail(Reason::malformedDocumentType, at_ + ownDeclarations);
  return skipPast(">");
}

bool Decoder::openElement() {
  const std::size_t start = at_;
  Tag tag = Tag::file;
  bool isEmpty = false;
  if (!readTag(tag, isEmpty)) return false;

  const Level& level = levels_.back();
  const std::size_t objects = waiting_.size() - level.firstChild;
  if (level.tag == Tag::dict && objects % 2 == 0 && tag != Tag::key) return fail(Reason::keyExpected, start);
  if (level.tag == Tag::plist && objects == 1) return fail(Reason::severalObjects, start);

  if (isEmpty) return decodeEmpty(tag, start);
  switch (tag) {
    case Tag::yes:
    case Tag::no:
      return closeElement(tag) && decodeEmpty(tag, start);
    case Tag::plist:
    case Tag::dict:
    case Tag::array:
      return enter(tag, start);
    case Tag::key:
    case Tag::string:
      return decodeString(tag);
    default:
      return decodeScalar(tag);
  }
}

// Takes an opening tag, or that of an empty element. Attributes are passed over.
bool Decoder::readTag(Tag& tag, bool& isEmpty) {
  const std::size_t start = at_;
  const std::size_t end = text_.find('>', start);
  if (end == std::string_view::npos) return failAtEnd();
  isEmpty = text_[end - 1] == '/';
  std::string_view name = text_.substr(start + 1, end - start - (isEmpty ? 2 : 1));
  name = name.substr(
      0, static_cast<std::size_t>(std::find_if(name.begin(), name.end(), isXmlSpace) - name.begin()));
  const auto known = std::find(tagNames.begin() + 1, tagNames.end(), name);
  if (known == tagNames.end()) return fail(Reason::unknownTag, start);
  tag = static_cast<Tag>(known - tagNames.begin());
  at_ = end + 1;
  return true;
}

bool Decoder::decodeEmpty(Tag tag, std::size_t start) {
  switch (tag) {
    case Tag::key:
    case Tag::string:
      waiting_.emplace_back(Type::string, std::string_view());
      return true;
    case Tag::yes:
    case Tag::no:
      waiting_.emplace_back(Type::boolean, std::uint64_t{tag == Tag::yes});
      return true;
    case Tag::dict:
      waiting_.emplace_back(Type::dictionary, Children());
      return true;
    case Tag::array:
      waiting_.emplace_back(Type::array, Children());
      return true;
    case Tag::plist:
      return fail(Reason::noObject, start);
    default:
      return fail(Reason::contentMissing, start);
  }
}

bool Decoder::enter(Tag tag, std::size_t start) {
  if (levels_.size() == 1 && tag == Tag::plist) ++levelsAllowed_;
  if (levels_.size() == levelsAllowed_) return fail(Reason::nestedTooDeep, start);
  levels_.push_back({tag, waiting_.size()});
  return true;
}

bool Decoder::leave() {
  const std::size_t start = at_;
  const auto [tag, firstChild] = levels_.back();
  const std::size_t objects = waiting_.size() - firstChild;
  if (tag == Tag::file) return fail(Reason::mismatchedClosingTag, start);
  if (!closeElement(tag)) return false;
  if (tag == Tag::dict && objects % 2 != 0) return fail(Reason::valueMissing, start);
  if (tag == Tag::plist && objects == 0) return fail(Reason::noObject, start);
  levels_.pop_back();
  // What a <plist> holds stands for it.
  if (tag == Tag::plist) return true;

  const std::size_t step = tag == Tag::dict ? 2 : 1;
  const Children children{tree_.nodes.size(), objects / step};
  for (std::size_t first = firstChild; first < firstChild + step; ++first)
    for (std::size_t i = first; i < waiting_.size(); i += step) tree_.nodes.push_back(waiting_[i]);
  waiting_.resize(firstChild);
  waiting_.emplace_back(tag == Tag::dict ? Type::dictionary : Type::array, children);
  return true;
}

// Passes over the closing tag, which must come next. White space may stand before its end.
bool Decoder::closeElement(Tag tag) {
  const std::size_t start = at_;
  if (!accept("</")) return rest().size() < 2 ? failAtEnd() : fail(Reason::malformedMarkup, start);
  const std::string_view name = nameOf(tag);
  const std::string_view found = rest().substr(0, name.size());
  if (found != name) return name.starts_with(found) ? failAtEnd() : fail(Reason::mismatchedClosingTag, start);
  at_ += name.size();
  skipSpace();
  if (at_ == text_.size()) return failAtEnd();
  return accept(">") || fail(Reason::mismatchedClosingTag, start);
}

bool Decoder::decodeString(Tag tag) {
  std::string_view text;
  if (!readText(text)) return false;
  waiting_.emplace_back(Type::string, text);
  return closeElement(tag);
}

bool Decoder::decodeScalar(Tag tag) {
  const std::size_t start = at_;
  std::string_view text;
  // Of these only reals may hold references and CDATA sections, as on the platform.
  if (!(tag == Tag::real ? readText(text) : readRawText(text))) return false;
  const Result<Node, Reason> node = readScalar(tag, text);
  if (!node) return fail(node.error(), start);
  waiting_.push_back(*node);
  return closeElement(tag);
}

Result<Node, Reason> Decoder::readScalar(Tag tag, std::string_view text) {
  if (tag == Tag::integer) return readInteger(text);
  if (tag == Tag::real) return readReal(text);
  if (tag == Tag::date) return readDate(text);
  Result<std::string, Reason> data = readData(text);
  if (!data) return data.error();
  return Node(Type::data, tree_.keep(*std::move(data)));
}

bool Decoder::readRawText(std::string_view& text) {
  const std::size_t end = text_.find('<', at_);
  if (end == std::string_view::npos) return failAtEnd();
  text = text_.substr(at_, end - at_);
  at_ = end;
  return true;
}

// Takes the text before the next tag: in place where it is plain, else a copy with references and CDATA
// sections replaced.
bool Decoder::readText(std::string_view& text) {
  const std::size_t end = findMarkup();
  text = text_.substr(at_, end - at_);
  if (!checkUtf8(text)) return false;
  if (!text_.substr(end).starts_with('&') && !text_.substr(end).starts_with("<!")) {
    at_ = end;
    return true;
  }
  std::size_t endOfText = 0;
  std::string copy;
  if (!findEndOfText(endOfText) || !copyText(endOfText, copy)) return false;
  text = tree_.keep(std::move(copy));
  return true;
}

// The "<" of the tag that ends the text at hand; CDATA sections belong to the text.
bool Decoder::findEndOfText(std::size_t& end) {
  for (end = at_;;) {
    end = text_.find('<', end);
    if (end == std::string_view::npos) return failAtEnd();
    const std::string_view markup = text_.substr(end);
    if (!markup.starts_with("<!")) return true;
    if (!markup.starts_with(characterDataOpening)) return fail(Reason::malformedMarkup, end);
    const std::size_t closing = markup.find(characterDataClosing, characterDataOpening.size());
    if (closing == std::string_view::npos) return failAtEnd();
    end += closing + characterDataClosing.size();
  }
}

bool Decoder::copyText(std::size_t end, std::string& copy) {
  // What stands for a piece of the text is never longer than that piece.
  copy.reserve(end - at_);
  while (at_ != end) {
    if (accept(characterDataOpening)) {
      if (!copyCharacters(text_.find(characterDataClosing, at_), copy)) return false;
      at_ += characterDataClosing.size();
    } else if (text_[at_] == '&') {
      if (!copyReference(copy)) return false;
    } else {
      if (!copyCharacters(findMarkup(), copy)) return false;
    }
  }
  return true;
}

bool Decoder::copyCharacters(std::size_t end, std::string& copy) {
  const std::string_view characters = text_.substr(at_, end - at_);
  if (!checkUtf8(characters)) return false;
  copy += characters;
  at_ = end;
  return true;
}

bool Decoder::checkUtf8(std::string_view text) {
  const char* const last = text.data() + text.size();
  const char* const invalid = findInvalidUtf8(text.data(), last);
  return invalid == last || fail(Reason::invalidUtf8, static_cast<std::size_t>(invalid - text_.data()));
}

bool Decoder::copyReference(std::string& copy) {
  struct Entity {
    std::string_view reference;
    char character;
  };
  static constexpr std::array<Entity, 5> entities = {
      {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&apos;", '\''}, {"&quot;", '"'}}};
  for (const Entity& entity : entities) {
    if (!accept(entity.reference)) continue;
    copy += entity.character;
    return true;
  }

  const std::size_t start = at_;
  if (!accept("&#")) return fail(Reason::malformedReference, start);
  const int base = accept("x") ? 16 : 10;
  const std::string_view digits = rest();
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  at_ += static_cast<std::size_t>(end - digits.data());
  if (error == std::errc::invalid_argument || !accept(";")) return fail(Reason::malformedReference, start);
  if (error == std::errc::result_out_of_range || !isUnicodeCharacter(number))
    return fail(Reason::invalidCharacter, start);
  appendUtf8(number, copy);
  return true;
}

}  // namespace

Result<Tree, Error> decodeXml(std::string_view bytes) {
  Tree tree;
  const Result<std::string_view, Error> text = xmlTextAsUtf8(bytes, tree);
  if (!text) return text.error();
  if (text->size() > maximumSize) return Error{Reason::tooLarge};
  const std::size_t start = bytes.starts_with(utf8ByteOrderMark) ? utf8ByteOrderMark.size() : 0;
  return Decoder(*text, start, std::move(tree)).decode();
}

}  // namespace pelmarix::plist
