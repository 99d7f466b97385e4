// Property lists as the sample writes them: a value and its two forms, XML and binary.
//
// Only what install histories, receipts and version files are made of: strings, dates, arrays and
// dictionaries. The layouts are those of public format notes; the XML form is indented with tabs as the
// system indents it.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "base/date.h"

namespace pelmarix::sample {

struct PropertyList;
struct Pair;

using Array = std::vector<PropertyList>;
/// Written in this order.
using Dictionary = std::vector<Pair>;

/// One value, with all that it holds. Strings are valid UTF-8.
struct PropertyList {
  std::variant<std::string, Date, Array, Dictionary> value;
};

struct Pair {
  std::string key;
  PropertyList item;
};

/// The XML form in UTF-8, ending with a line feed. Dates lose their fractions of a second: the form has no
/// place for them. Control characters other than tab and line feed must not occur in strings.
std::string xmlForm(const PropertyList& root);

/// The binary form, "bplist00". Dates keep their fractions; equal strings are stored once and shared. Nesting
/// is followed by recursion, so it must be as shallow as a receipt's.
std::string binaryForm(const PropertyList& root);

}  // namespace pelmarix::sample
