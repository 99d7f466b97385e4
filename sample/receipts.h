// The package receipts of the sample Mac.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/date.h"

namespace pelmarix::sample {

enum class ReceiptForm { xml, binary };

/// What lies beside a receipt under its name with the extension "bom".
enum class ReceiptBom {
  usual,        ///< some ten to sixty paths
  large,        ///< more than one node of paths: see Sizes::largeBomPaths
  foldersOnly,  ///< no plain file: a listing of files is empty
  broken,       ///< the file is there, and is cut off
  missing,      ///< no file at all
};

struct Receipt {
  /// Path below the receipts folder, without an extension; with one "/" where it lies in the sub-folder.
  std::string stem;
  std::string packageIdentifier;
  std::string packageVersion;
  /// With a fraction of a second where the form can hold one.
  Date installDate;
  ReceiptForm form;
  ReceiptBom bom;
};

/// That many receipts, in the order of their dates, oldest first, spread over the years 2015 to 2021. From
/// twelve receipts on, both forms, the sub-folder and every kind of bom occur.
std::vector<Receipt> receipts(std::size_t count);

/// The receipt's property list in its form.
std::string propertyListFile(const Receipt& receipt);

}  // namespace pelmarix::sample
