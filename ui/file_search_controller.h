// The search for a file among all packages.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/background_task.h"
#include "platform/table_view.h"
#include "platform/view_controller.h"
#include "receipts/bom.h"
#include "receipts/listing_search.h"

namespace pelmarix::ui {

/// Data source and delegate of the table of the files that were found. Several listers run at a time; what
/// they find comes in the order of the packages. Main thread only.
class FileSearchController final : public platform::ViewController,
                                   public platform::TableViewDataSource,
                                   public platform::TableViewDelegate {
 public:
  /// The packages to be searched, in the order in which their files are shown.
  explicit FileSearchController(std::vector<std::shared_ptr<BoMItem>> packages);

  /// Finds the files whose paths match the text (see PathPattern). What is narrower than the text before is
  /// sought among the files that were found for that one; else all packages are listed anew.
  void find(const std::string& text);
  /// Ends the listers and keeps what they found.
  void stopButton(platform::Object* sender);

  /// Lets the user choose a file, and writes the files that were found into it as comma-separated values.
  void exportFiles(platform::Object* sender);

  bool isSearching() const { return !listings_.empty(); }
  std::size_t packageCount() const { return packages_.size(); }
  /// How many packages were searched.
  std::size_t searchedCount() const { return searchedCount_; }
  /// "213 of 300 packages, 5 files"; empty when nothing is sought.
  std::string status() const;
  /// "3 packages have no list"; empty when there are none.
  std::string statusOfMissing() const;
  /// The packages whose bill of materials couldn't be listed.
  const std::vector<std::string>& missing() const { return missing_; }

  std::ptrdiff_t numberOfRowsInTableView(platform::TableView& tableView) override;
  platform::Object* tableViewObjectValueForTableColumnRow(platform::TableView& tableView,
                                                          const platform::TableColumn* column,
                                                          std::ptrdiff_t row) override;
  platform::View* tableViewViewForTableColumnRow(platform::TableView& tableView,
                                                 const platform::TableColumn* column,
                                                 std::ptrdiff_t row) override;
  /// Gives the sheet the listing of the selected file's package. Blocks while the lister runs; throws
  /// TaskLaunchError when it can't be started.
  void prepareForSegue(platform::Segue& segue, platform::Object* sender) override;

  struct FoundFile {
    BoMItem* package;
    ListedFile file;
  };
  /// Null when none is selected.
  const FoundFile* selectedFile() const;

  platform::TableView* filesTable = nullptr;  ///< not owned
  /// Called whenever the listers have brought something new to be shown, which may be often, and when they
  /// were stopped. The table is reloaded by who shows it.
  std::function<void()> changed = [] {};

 private:
  // Of a package that is being listed, or was while one before it still is.
  struct Listing {
    BoMItem* package;
    ListingSearch search;
    std::unique_ptr<platform::BackgroundTask> task;  // null when it has ended
    bool isMissing = false;
  };

  void startListers();
  void launchLister(BoMItem& package);
  void take(Listing& listing, std::string_view output);
  void end(Listing& listing, bool isWell);
  void keepFiles(Listing& listing);
  // What they have found until now is kept.
  void endListers();

  const std::vector<std::shared_ptr<BoMItem>> packages_;
  PathPattern pattern_{""};
  std::size_t startedCount_ = 0;
  std::size_t runningCount_ = 0;
  std::size_t searchedCount_ = 0;
  std::deque<std::unique_ptr<Listing>> listings_;
  std::vector<FoundFile> files_;
  std::size_t cost_ = 0;  // of the files
  std::vector<std::string> missing_;
  bool isCutOff_ = false;  // there are more files than are kept
};

}  // namespace pelmarix::ui
