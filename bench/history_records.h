// Owned records of an install history: what the program keeps of each entry.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"

namespace pelmarix::bench {

struct Record {
  std::optional<std::string> contentType;
  Date date;
  std::string displayName;
  std::string displayVersion;
};

/// Decodes a whole install history. Empty where it is refused.
std::vector<Record> decodeRecords(std::string_view bytes);

}  // namespace pelmarix::bench
