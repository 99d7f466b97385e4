#include "sample/property_list.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

#include "base/utf8.h"

namespace pelmarix::sample {
namespace {

class XmlWriter {
 public:
  explicit XmlWriter(std::string& xml) : xml_(xml) {}

  void write(const PropertyList& item, std::size_t depth) {
    std::visit([this, depth](const auto& value) { writeValue(value, depth); }, item.value);
  }

 private:
  void writeValue(const std::string& string, std::size_t depth) { line(depth, "string", string); }

  void writeValue(Date date, std::size_t depth) {
    std::string stamp = description(date);  // "2019-03-26 10:11:12 +0000"
    stamp[stamp.find(' ')] = 'T';
    stamp.resize(stamp.find(' '));
    stamp += 'Z';
    line(depth, "date", stamp);
  }

  void writeValue(const Array& array, std::size_t depth) {
    if (array.empty()) return indented(depth, "<array/>\n");
    indented(depth, "<array>\n");
    for (const PropertyList& item : array) write(item, depth + 1);
    indented(depth, "</array>\n");
  }

  void writeValue(const Dictionary& dictionary, std::size_t depth) {
    if (dictionary.empty()) return indented(depth, "<dict/>\n");
    indented(depth, "<dict>\n");
    for (const auto& [key, item] : dictionary) {
      line(depth + 1, "key", key);
      write(item, depth + 1);
    }
    indented(depth, "</dict>\n");
  }

  void indented(std::size_t depth, std::string_view markup) { xml_.append(depth, '\t').append(markup); }

  void line(std::size_t depth, std::string_view tag, std::string_view content) {
    xml_.append(depth, '\t').append("<").append(tag).append(">");
    for (const char character : content) {
      if (character == '&')
        xml_ += "&amp;";
      else if (character == '<')
        xml_ += "&lt;";
      else if (character == '>')
        xml_ += "&gt;";
      else
        xml_ += character;
    }
    xml_.append("</").append(tag).append(">\n");
  }

  std::string& xml_;
};

void appendBigEndian(std::string& bytes, std::uint64_t number, unsigned width) {
  for (unsigned shift = width * 8; shift > 0; shift -= 8) {
    bytes += static_cast<char>((number >> (shift - 8)) & 0xff);
  }
}

// The fewest bytes that hold the number: 1 to 8.
unsigned widthFor(std::uint64_t number) {
  return (static_cast<unsigned>(std::bit_width(number | 1)) + 7) / 8;
}

// UTF-16, big-endian, of valid UTF-8.
std::string utf16(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    const unsigned following = lead < 0x80 ? 0 : lead < 0xe0 ? 1 : lead < 0xf0 ? 2 : 3;
    std::uint32_t codePoint = following == 0 ? lead : lead & (0x3fU >> following);
    for (unsigned i = 0; i < following; ++i) {
      codePoint = codePoint << 6 | (static_cast<unsigned char>(text[at++]) & 0x3fU);
    }
    if (codePoint < 0x10000) {
      appendBigEndian(bytes, codePoint, 2);
    } else {
      appendBigEndian(bytes, 0xd800 + ((codePoint - 0x10000) >> 10), 2);
      appendBigEndian(bytes, 0xdc00 + ((codePoint - 0x10000) & 0x3ff), 2);
    }
  }
  return bytes;
}

// A type in the high four bits with its count in the low four, or in an integer that follows.
std::string marker(unsigned type, std::size_t count) {
  std::string bytes;
  appendBigEndian(bytes, type | (count < 15 ? static_cast<unsigned>(count) : 15U), 1);
  if (count >= 15) {
    const auto power =
        static_cast<unsigned>(std::bit_width(widthFor(count) - 1));  // integers have 1, 2, 4 or 8 bytes
    appendBigEndian(bytes, 0x10 | power, 1);
    appendBigEndian(bytes, count, 1U << power);
  }
  return bytes;
}

std::string stringObject(const std::string& string) {
  if (isAscii(string)) return marker(0x50, string.size()) + string;
  const std::string units = utf16(string);
  return marker(0x60, units.size() / 2) + units;
}

std::string dateObject(Date date) {
  std::string bytes = "\x33";
  appendBigEndian(bytes, std::bit_cast<std::uint64_t>(date.timeIntervalSinceReferenceDate), 8);
  return bytes;
}

// Collects the objects first, containers before what they hold, because the width of a reference depends on
// how many there are; then writes them.
class BinaryWriter {
 public:
  std::string write(const PropertyList& root) {
    add(root);
    const unsigned referenceWidth = widthFor(objects_.size() - 1);
    std::string bytes = "bplist00";
    std::vector<std::uint64_t> offsets;
    for (const Object& object : objects_) {
      offsets.push_back(bytes.size());
      bytes += object.bytes;
      for (const Reference reference : object.references) appendBigEndian(bytes, reference, referenceWidth);
    }
    const std::uint64_t tableStart = bytes.size();
    const unsigned offsetWidth = widthFor(tableStart);
    for (const std::uint64_t offset : offsets) appendBigEndian(bytes, offset, offsetWidth);
    appendBigEndian(bytes, 0, 6);
    appendBigEndian(bytes, offsetWidth, 1);
    appendBigEndian(bytes, referenceWidth, 1);
    appendBigEndian(bytes, objects_.size(), 8);
    appendBigEndian(bytes, 0, 8);  // the root is the first object
    appendBigEndian(bytes, tableStart, 8);
    return bytes;
  }

 private:
  using Reference = std::uint64_t;

  struct Object {
    std::string bytes;  // all but the references
    // Of an array its items; of a dictionary all keys, then all values.
    std::vector<Reference> references = {};
  };

  Reference add(const PropertyList& item) {
    if (const auto* string = std::get_if<std::string>(&item.value)) return addString(*string);
    const Reference reference = objects_.size();
    objects_.emplace_back();
    Object object;
    if (const auto* date = std::get_if<Date>(&item.value)) {
      object.bytes = dateObject(*date);
    } else if (const auto* array = std::get_if<Array>(&item.value)) {
      object.bytes = marker(0xa0, array->size());
      for (const PropertyList& child : *array) object.references.push_back(add(child));
    } else {
      const auto& dictionary = std::get<Dictionary>(item.value);
      object.bytes = marker(0xd0, dictionary.size());
      for (const Pair& pair : dictionary) object.references.push_back(addString(pair.key));
      for (const Pair& pair : dictionary) object.references.push_back(add(pair.item));
    }
    objects_[reference] = std::move(object);
    return reference;
  }

  Reference addString(const std::string& string) {
    const auto [found, isNew] = strings_.try_emplace(string, objects_.size());
    if (isNew) objects_.push_back({stringObject(string)});
    return found->second;
  }

  std::vector<Object> objects_;
  std::map<std::string_view, Reference> strings_;
};

}  // namespace

std::string xmlForm(const PropertyList& root) {
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n";
  XmlWriter(xml).write(root, 0);
  xml += "</plist>\n";
  return xml;
}

std::string binaryForm(const PropertyList& root) { return BinaryWriter().write(root); }

}  // namespace pelmarix::sample
