#include "tests/plist/describe.h"

#include <array>
#include <cstdio>

namespace pelmarix::plist {
namespace {

std::string number(double value) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.17g", value);
  return text.data();
}

std::string hexadecimal(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    text += digits[static_cast<unsigned char>(byte) >> 4];
    text += digits[static_cast<unsigned char>(byte) & 0xF];
  }
  return text;
}

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string elements(Value value) {
  std::string text;
  for (const Value element : value.elements()) text += (text.empty() ? "" : ", ") + describe(element);
  return '[' + text + ']';
}

std::string entries(Value value) {
  std::string text;
  for (const Entry entry : value.entries())
    text += (text.empty() ? "" : ", ") + quoted(entry.key) + ": " + describe(entry.value);
  return '{' + text + '}';
}

}  // namespace

std::string describe(Value value) {
  switch (value.type()) {
    case Type::null:
      return "null";
    case Type::boolean:
      return *value.boolean() ? "true" : "false";
    case Type::integer:
      return value.integer() ? std::to_string(*value.integer()) : std::to_string(*value.unsignedInteger());
    case Type::real:
      return "real " + number(*value.real());
    case Type::date:
      return "date " + number(value.date()->timeIntervalSinceReferenceDate);
    case Type::string:
      return quoted(*value.string());
    case Type::data:
      return "data " + hexadecimal(*value.data());
    case Type::uid:
      return "uid " + std::to_string(*value.uid());
    case Type::array:
      return elements(value);
    case Type::set:
      return "set" + elements(value);
    case Type::dictionary:
      return entries(value);
  }
  return "no type";
}

std::string decoded(std::string_view bytes) {
  const ExactBlock block(bytes);
  const Result<Document, Error> document = Document::decode(block);
  if (!document) return std::string("refused: ").append(description(document.error().reason));
  return describe(document->root());
}

std::optional<Reason> refusal(std::string_view bytes) {
  const ExactBlock block(bytes);
  const Result<Document, Error> document = Document::decode(block);
  if (document) {
    ADD_FAILURE() << "accepted as " << describe(document->root());
    return std::nullopt;
  }
  return document.error().reason;
}

}  // namespace pelmarix::plist
