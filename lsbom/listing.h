// Prints a bill of materials.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/result.h"
#include "lsbom/accounts.h"
#include "lsbom/bill_of_materials.h"
#include "lsbom/output.h"

namespace pelmarix::lsbom {

/// What to print of which entries. The defaults print every entry in the form of a listing without options.
struct ListOptions {
  /// The kinds to print; where all are false, every entry is printed.
  bool blockDevices = false;
  bool characterDevices = false;
  bool folders = false;
  bool files = false;
  bool links = false;

  bool pathsOnly = false;
  bool modificationTimes = false;  ///< of files, behind their checksum
  bool suppressModes = false;      ///< of folders and links: the field stays empty
  /// Programs with a part for it show that part's size and checksum.
  std::optional<std::uint32_t> architecture = {};
  std::string columns = {};  ///< letters of columnLetters; empty: the form without options
};

inline constexpr std::string_view columnLetters = "fFgGmMsStTuU/?";

/// The names behind the columns G, U and "?". An id without a name is printed as a number.
struct AccountNames {
  Accounts users;
  Accounts groups;
};

/// One line for each entry that the options choose, in the order of the bom. Ends where the output fails.
Result<void, std::error_code> list(const BillOfMaterials& bom, const ListOptions& options,
                                   const AccountNames& names, Output& output);

}  // namespace pelmarix::lsbom
