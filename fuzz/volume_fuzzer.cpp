// Cuts whatever bytes there are into the files of a Mac's volume, and takes them the whole way that the
// program does: history to report, receipts to bills of materials to found files, and the system's version.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/utf8.h"
#include "history/loader.h"
#include "lsbom/command_line.h"
#include "platform/task.h"
#include "qt/services/text_conversion.h"
#include "qt/services/volume_process_info.h"
#include "receipts/bom.h"
#include "receipts/listing_search.h"
#include "tests/support/memory_file_manager.h"
#include "tests/support/test_services.h"

using namespace pelmarix;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

constexpr std::string_view separator = "\n=====\n";
constexpr const char* systemVersionPath = "/System/Library/CoreServices/SystemVersion.plist";

// What is in front of the first separator, which goes with it.
std::string takePart(std::string_view& bytes) {
  const std::string_view part = bytes.substr(0, bytes.find(separator));
  bytes.remove_prefix(std::min(part.size() + separator.size(), bytes.size()));
  return std::string(part);
}

// What a lister has printed.
class MemoryPipe final : public platform::Pipe {
 public:
  Result<std::string, std::error_code> readDataToEndOfFile() override { return std::move(text); }
  std::string text;
};

// The lister, but for its process.
class ListerTask final : public platform::Task {
 public:
  explicit ListerTask(test::MemoryFileManager& files) : files_(files) {}
  void setLaunchPath(const std::string& /*path*/) override {}
  void setArguments(const std::vector<std::string>& arguments) override { arguments_ = arguments; }
  void setStandardOutput(platform::Pipe& pipe) override { pipe_ = dynamic_cast<MemoryPipe*>(&pipe); }
  void waitUntilExit() override {}
  int terminationStatus() const override { return status_; }

  void launch() override {
    const auto commandLine = lsbom::parseCommandLine(arguments_);
    require(commandLine && commandLine->files.size() == 1);
    const auto bytes = files_.readFile(commandLine->files.front());
    if (!bytes) return;
    const auto bom = lsbom::BillOfMaterials::read(*bytes);
    if (!bom) return;
    static std::FILE* const printed = std::tmpfile();
    std::rewind(printed);
    lsbom::Output output(printed);
    const lsbom::AccountNames names{lsbom::Accounts(""), lsbom::Accounts("")};
    require(bool{lsbom::list(*bom, commandLine->options, names, output)});
    pipe_->text.resize(static_cast<std::size_t>(std::ftell(printed)));
    std::rewind(printed);
    require(std::fread(pipe_->text.data(), 1, pipe_->text.size(), printed) == pipe_->text.size());
    status_ = 0;
  }

 private:
  test::MemoryFileManager& files_;
  std::vector<std::string> arguments_;
  MemoryPipe* pipe_ = nullptr;
  int status_ = 1;
};

void checkHistory(const std::vector<std::shared_ptr<History>>& groups) {
  for (const auto& group : groups) {
    require(group->name == nameWithoutSystemInstall ||
            group->children.at(0)->type == history_type::systemInstall);
    const std::vector<std::string> whole = group->reportLines(false);
    const std::vector<std::string> skipped = group->reportLines(true);
    require(whole.size() == group->children.size() && skipped.size() == whole.size());
    for (std::size_t i = 0; i < whole.size(); ++i) {
      const HistoryItem& item = *group->children[i];
      require(isFinite(item.installDate) && !history_type::name(item.type).empty());
      require(isValidUtf8(whole[i]) && whole[i].ends_with(" +0000\n"));
      require(skipped[i] == (item.type == history_type::configurationData ? "" : whole[i]));
    }
  }
  require(isValidUtf8(csvText(groups)));
}

void checkReceipts(const BoM& receipts) {
  require(isValidUtf8(receipts.csvText()));
  for (std::size_t i = 0; i < receipts.children.size(); ++i) {
    const BoMItem& receipt = *receipts.children[i];
    require(isFinite(receipt.installDate) && isValidUtf8(receipt.name));
    require(i == 0 || receipt.installDate <= receipts.children[i - 1]->installDate);
    const std::string listing = receipt.listBoM();
    ListingSearch search{PathPattern("/")};
    search.take(listing);
    search.finish();
    require(search.isListing() == (listing != noBomInformation));
    for (const ListedFile& file : search.files()) require(file.path().starts_with('/'));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  test::MemoryFileManager files;
  files.files[installHistoryPath] = takePart(bytes);
  files.files[systemVersionPath] = takePart(bytes);
  for (const std::string name : {"first", "second"}) {
    files.files[receiptsFolder + name + ".plist"] = takePart(bytes);
    files.folders[receiptsFolder].push_back(name + ".plist");
  }
  files.files[receiptsFolder + std::string("first.bom")] = takePart(bytes);

  test::TestServices services;
  services.services.fileManager = &files;
  services.services.composedForm = qt::composedForm;
  services.services.foldedForm = qt::foldedForm;
  services.services.makePipe = [] { return std::make_unique<MemoryPipe>(); };
  services.services.makeTask = [&files] { return std::make_unique<ListerTask>(files); };

  const auto groups = readInstallHistory();
  require(services.alerts.size() <= 1 && (services.alerts.empty() || groups.empty()));
  checkHistory(groups);

  BoM receipts;
  receipts.readBoMPLists();
  checkReceipts(receipts);

  const std::string version = qt::VolumeProcessInfo(files, posix::Volume("/")).operatingSystemVersionString();
  require(version.starts_with("Version ") && version.size() < 600 && isValidUtf8(version));
  return 0;
}
