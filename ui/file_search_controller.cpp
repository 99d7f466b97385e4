#include "ui/file_search_controller.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "base/csv.h"
#include "base/fatal.h"
#include "platform/process_info.h"
#include "platform/save_panel.h"
#include "platform/text.h"
#include "ui/bom_over_view_controller.h"

namespace pelmarix::ui {
namespace {

constexpr std::size_t mostListers = 8;
// Of the files that are kept: how many, and in bytes.
constexpr std::size_t mostFiles = 100'000;
constexpr std::size_t mostCost = std::size_t{32} << 20U;

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

FileSearchController::FileSearchController(std::vector<std::shared_ptr<BoMItem>> packages)
    : packages_(std::move(packages)) {}

// The search.

void FileSearchController::find(const std::string& text) {
  PathPattern pattern(text);
  const bool isInterrupted = !isSearching() && searchedCount_ < packages_.size();
  const bool isNarrower = pattern.isNarrowerThan(pattern_) && !isCutOff_ && !isInterrupted;
  pattern_ = std::move(pattern);
  if (isNarrower) {
    std::erase_if(files_, [this](const FoundFile& found) {
      const bool isLost = !pattern_.matches(found.file.path());
      if (isLost) cost_ -= found.file.cost();
      return isLost;
    });
    for (const auto& listing : listings_) listing->search.narrow(pattern_);
  } else {
    endListers();
    files_.clear();
    missing_.clear();
    cost_ = startedCount_ = searchedCount_ = 0;
    isCutOff_ = false;
    startListers();
  }
}

void FileSearchController::startListers() {
  const std::size_t atATime =
      std::min(mostListers, platform::ProcessInfo::processInfo().activeProcessorCount());
  while (!pattern_.isEmpty() && runningCount_ < atATime && startedCount_ < packages_.size())
    launchLister(*packages_[startedCount_++]);
}

void FileSearchController::launchLister(BoMItem& package) {
  Listing& listing = *listings_.emplace_back(std::make_unique<Listing>(
      Listing{&package, ListingSearch(pattern_), platform::BackgroundTask::make()}));
  ++runningCount_;
  listing.task->launch(
      BoMItem::theBomCmd, package.listArguments(),
      [this, &listing](std::string_view output) { take(listing, output); },
      [this, &listing](std::optional<int> status) { end(listing, status == 0); });
}

void FileSearchController::take(Listing& listing, std::string_view output) {
  listing.search.take(output);
  std::size_t count = files_.size();
  std::size_t cost = cost_;
  for (const auto& each : listings_) {
    count += each->search.files().size();
    cost += each->search.cost();
  }
  if (count <= mostFiles && cost <= mostCost) return;
  endListers();
  changed();
}

void FileSearchController::end(Listing& listing, bool isWell) {
  listing.task.reset();
  --runningCount_;
  ++searchedCount_;
  listing.search.finish();
  listing.isMissing = !isWell || !listing.search.isListing();
  while (!listings_.empty() && listings_.front()->task == nullptr) {
    keepFiles(*listings_.front());
    listings_.pop_front();
  }
  startListers();
  changed();
}

void FileSearchController::keepFiles(Listing& listing) {
  if (listing.isMissing) {
    missing_.push_back(listing.package->name);
    return;
  }
  for (ListedFile& file : listing.search.files()) {
    isCutOff_ = isCutOff_ || files_.size() == mostFiles || cost_ + file.cost() > mostCost;
    if (isCutOff_) return;
    cost_ += file.cost();
    files_.push_back({listing.package, std::move(file)});
  }
}

void FileSearchController::endListers() {
  for (const auto& listing : listings_) keepFiles(*listing);
  listings_.clear();
  runningCount_ = 0;
}

void FileSearchController::stopButton(platform::Object* /*sender*/) {
  endListers();
  changed();
}

void FileSearchController::exportFiles(platform::Object* /*sender*/) {
  std::string text;
  appendCsvRecord(text, {"Package", "Path", "Size", "Modified"});
  for (const auto& [package, file] : files_)
    appendCsvRecord(text, {package->name, file.path(), file.size(), file.modified()});
  platform::saveThroughPanel({"csv"}, {platform::shareText(std::move(text))});
}

// What there is to say of it.

std::string FileSearchController::status() const {
  if (pattern_.isEmpty()) return {};
  return std::to_string(searchedCount_) + " of " + counted(packages_.size(), "package") + ", " +
         (isCutOff_ ? "the first " : "") + counted(files_.size(), "file");
}

std::string FileSearchController::statusOfMissing() const {
  if (missing_.empty()) return {};
  return counted(missing_.size(), "package") + (missing_.size() == 1 ? " has no list" : " have no list");
}

// The table of the files.

std::ptrdiff_t FileSearchController::numberOfRowsInTableView(platform::TableView& /*tableView*/) {
  return std::ssize(files_);
}

platform::Object* FileSearchController::tableViewObjectValueForTableColumnRow(
    platform::TableView& /*tableView*/, const platform::TableColumn* /*column*/, std::ptrdiff_t row) {
  return row < 0 || row >= std::ssize(files_) ? nullptr : files_[static_cast<std::size_t>(row)].package;
}

platform::View* FileSearchController::tableViewViewForTableColumnRow(platform::TableView& tableView,
                                                                     const platform::TableColumn* column,
                                                                     std::ptrdiff_t row) {
  if (column == nullptr || row < 0 || row >= std::ssize(files_)) return nullptr;
  const FoundFile& found = files_[static_cast<std::size_t>(row)];
  const std::string_view identifier = column->identifier();
  auto* cell = dynamic_cast<platform::TableCellView*>(tableView.makeViewWithIdentifier(column->identifier()));
  if (cell == nullptr || cell->textField() == nullptr) return cell;
  cell->textField()->setStringValue(identifier == "Package" ? found.package->name
                                    : identifier == "Path"  ? std::string(found.file.path())
                                    : identifier == "Size"  ? std::string(found.file.size())
                                                            : std::string(found.file.modified()));
  return cell;
}

const FileSearchController::FoundFile* FileSearchController::selectedFile() const {
  const std::ptrdiff_t row = required(filesTable, "filesTable is not connected").selectedRow();
  return row < 0 || row >= std::ssize(files_) ? nullptr : &files_[static_cast<std::size_t>(row)];
}

void FileSearchController::prepareForSegue(platform::Segue& segue, platform::Object* /*sender*/) {
  const FoundFile* const found = selectedFile();
  if (found == nullptr) return;
  platform::SharedText listing = platform::shareText(found->package->listBoM());
  auto* sheet = dynamic_cast<BoMoverViewController*>(&segue.destinationController());
  required(sheet, "the segue leads to another controller").setRepresentedObject(std::move(listing));
}

}  // namespace pelmarix::ui
