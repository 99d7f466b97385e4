// Decoded values as text, for tests to compare with a literal.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "plist/document.h"

namespace pelmarix::plist {

/// One line for the value and all below it: `null`, `true`, `-7`, `real 1.5`, `date 0.25`, `uid 3`, `data
/// 00ff`, `"text"`, `[1, 2]`, `set[1]`, `{"key": 1}`. Not for values that hold the same container again and
/// again.
std::string describe(Value value);

/// A row of a table of inputs; the name is the end of the test's name and says what the input is.
struct Accepted {
  std::string name;
  std::string bytes;
  std::string description;

  friend void PrintTo(const Accepted& row, std::ostream* out) { *out << row.name; }
};

struct Refused {
  std::string name;
  std::string bytes;
  Reason reason;

  friend void PrintTo(const Refused& row, std::ostream* out) { *out << row.name; }
};

template <typename Row>
std::string nameOfRow(const testing::TestParamInfo<Row>& info) {
  return info.param.name;
}

/// Bytes that end where a heap block ends, so that the address sanitizer sees a read past them.
class ExactBlock {
 public:
  explicit ExactBlock(std::string_view bytes) : size_(bytes.size()), block_(new char[bytes.size()]) {
    bytes.copy(block_.get(), size_);
  }
  operator std::string_view() const { return {block_.get(), size_}; }

 private:
  std::size_t size_;
  std::unique_ptr<char[]> block_;
};

/// Decodes and describes; a refusal is `refused: ` and why.
std::string decoded(std::string_view bytes);

/// The reason for which the bytes are refused. Fails the test where they aren't.
std::optional<Reason> refusal(std::string_view bytes);

}  // namespace pelmarix::plist
