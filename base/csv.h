// Comma-separated values, as RFC 4180 has them.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace pelmarix {

/// Appends a record to `text`, its line end included. A field with a comma, a quote or a line end stands in
/// quotes, its own quotes doubled; all else stands as it is, but for bytes that are not UTF-8, which become
/// U+FFFD.
void appendCsvRecord(std::string& text, std::initializer_list<std::string_view> fields);

}  // namespace pelmarix
