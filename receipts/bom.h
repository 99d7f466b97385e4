// Package receipts: one item for each, and the list of them.
//
// Items and lists are shared and compared by identity, since a table shows the objects themselves.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/date.h"
#include "platform/object.h"

namespace pelmarix {

inline constexpr const char* receiptsFolder = "/System/Library/Receipts/";

/// What stands for a listing when the lister failed or had nothing to say.
inline constexpr const char* noBomInformation = "No information available from a Bom file";

/// One receipt. Nothing of it changes after its creation.
class BoMItem final : public platform::Object {
 public:
  BoMItem(std::string nameOfPackage, Date dateOfInstall, std::string pathOfReceipt)
      : name(std::move(nameOfPackage)), installDate(dateOfInstall), path(std::move(pathOfReceipt)) {}

  /// Runs the system's lister on the receipt's bill of materials and returns all that it prints, or
  /// noBomInformation when it ends with another status than 0, prints nothing or can't be heard. Blocks until
  /// the lister has ended. Throws TaskLaunchError when it can't be started; output that is not UTF-8 from a
  /// lister that succeeded stops the program.
  std::string listBoM() const;
  /// What the lister is given for it.
  std::vector<std::string> listArguments() const;

  const std::string name;  ///< the package's identifier
  const Date installDate;  ///< always finite
  /// Absolute, of the receipt, without its extension; bytes as the file system has them.
  const std::string path;

  // The same for every item.
  static inline const std::string theBomCmd = "/usr/bin/lsbom";
  /// Plain files only; of each its name, size and formatted modification time.
  static inline const std::vector<std::string> theBomParams = {"-f", "-p", "fsT"};
  static inline const std::string theBomExtension = ".bom";
};

/// All receipts of the system.
class BoM final : public platform::Object {
 public:
  /// Replaces `children` by what receiptsFolder and its sub-folders hold now, newest first; equal dates keep
  /// the file system's order. No folder, no children. A receipt that can't be read gives one error alert
  /// each, which blocks until it is dismissed; a file that is no receipt is passed over.
  void readBoMPLists();

  /// The receipts as comma-separated values (base/csv.h), in their order, below a line of titles: date,
  /// package, and the receipt's own path.
  std::string csvText() const;

  std::vector<std::shared_ptr<BoMItem>> children;
};

}  // namespace pelmarix
