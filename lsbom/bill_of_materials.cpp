// The layout of what the leaves' pairs name, from public format notes and real files:
//
//   numbers  u32 id, u32 block of the record. Ids start at 1 and may have gaps
//   name     u32 id of the parent (0 at the top), the name, NUL
#include "lsbom/bill_of_materials.h"

#include <algorithm>
#include <atomic>
#include <vector>

#include "lsbom/cursor.h"
#include "lsbom/parallel.h"
#include "lsbom/store.h"
#include "lsbom/tree.h"

namespace pelmarix::lsbom {
namespace {

// About eight thousand paths, where leaves are full: less is not worth a thread.
constexpr std::size_t leavesAtOnce = 16;
constexpr std::size_t pathsAtOnce = 8192;

// Several paths may share a record, so the texts of all records may be about so many times the file.
constexpr std::size_t mostSharing = 16;

constexpr std::uint32_t none = UINT32_MAX;

}  // namespace

// Finds paths by their ids.
class BillOfMaterials::Ids {
 public:
  // Takes the largest id of the paths.
  Ids(std::span<const Path> paths, std::uint32_t largest) {
    if (largest / 8 <= paths.size()) {
      fillTable(paths, largest);
    } else {
      fillKeys(paths);
    }
  }

  std::uint32_t find(std::uint32_t id) const {
    if (!table_.empty()) return id < table_.size() ? table_[id].load(std::memory_order_relaxed) - 1 : none;
    const auto key = std::lower_bound(keys_.begin(), keys_.end(), std::uint64_t{id} << 32);
    return key == keys_.end() || *key >> 32 != id ? none : static_cast<std::uint32_t>(*key);
  }

 private:
  // Of several paths with one id the last is found afterwards, whichever thread comes first.
  void fillTable(std::span<const Path> paths, std::uint32_t largest) {
    table_ = std::vector<std::atomic<std::uint32_t>>(std::size_t{largest} + 1);
    inParallel(paths.size(), pathsAtOnce, [this, paths](std::size_t begin, std::size_t end) {
      for (std::size_t i = begin; i < end; ++i) {
        std::atomic<std::uint32_t>& place = table_[paths[i].id];
        const auto own = static_cast<std::uint32_t>(i + 1);
        std::uint32_t last = place.load(std::memory_order_relaxed);
        while (last < own && !place.compare_exchange_weak(last, own, std::memory_order_relaxed)) {
        }
      }
    });
  }

  void fillKeys(std::span<const Path> paths) {
    keys_.reserve(paths.size());
    for (std::uint32_t i = 0; i < paths.size(); ++i) keys_.push_back((std::uint64_t{paths[i].id} << 32) | i);
    std::sort(keys_.begin(), keys_.end());
  }

  std::vector<std::atomic<std::uint32_t>> table_;  // indices plus 1, by id, where ids are dense enough
  std::vector<std::uint64_t> keys_;                // else sorted: an id above its index
};

class BillOfMaterials::Reader {
 public:
  explicit Reader(BillOfMaterials& bill) : bill_(bill), bytes_(bill.bytes_) {}

  Failure run() {
    if (const Failure failure = store_.open(bytes_)) return failure;
    Leaves leaves;
    if (const Failure failure = readTree(store_, leaves)) return failure;
    if (const Failure failure = readPaths(leaves)) return failure;
    if (const Failure failure = findChildren()) return failure;
    return arrange();
  }

 private:
  std::string_view nameOf(const Path& path) const { return bytes_.substr(path.name, path.nameLength); }
  std::uint32_t offsetOf(std::string_view bytes) const {
    return static_cast<std::uint32_t>(store_.offsetOf(bytes));
  }

  // What was seen of some paths while they were read.
  struct Survey {
    Failure failure;
    bool sorted = true;  // as the usual writer sorts; others need not
    std::uint32_t largestId = 0;

    void add(const Survey& other) {
      if (!failure) failure = other.failure;
      sorted = sorted && other.sorted;
      largestId = std::max(largestId, other.largestId);
    }
  };

  Failure readPaths(const Leaves& tree) {
    // Not cleared ahead: every path is written below, by several threads at once.
    bill_.pathStore_.reset(new Path[tree.pathCount]);
    bill_.paths_ = paths_ = {bill_.pathStore_.get(), tree.pathCount};
    std::atomic<std::size_t> textLength = 0;
    std::vector<Survey> surveys(tree.leaves.size());
    std::atomic<std::size_t> failed = SIZE_MAX;  // leaves that are begun behind this one are not read
    inParallel(surveys.size(), leavesAtOnce, [&](std::size_t begin, std::size_t end) {
      for (std::size_t i = begin; i < end && begin < failed; ++i) {
        surveys[i] = readLeaf(tree.leaves[i], textLength);
        if (surveys[i].failure) failed = begin;
      }
    });
    for (const Survey& survey : surveys) all_.add(survey);
    if (all_.failure) return all_.failure;
    for (const Leaf& leaf : tree.leaves) {
      const std::size_t first = leaf.firstPath;
      if (first == 0 || first == paths_.size()) continue;
      all_.sorted = all_.sorted && !precedes(paths_[first], paths_[first - 1]);
    }
    if (!all_.sorted) {
      std::sort(paths_.begin(), paths_.end(),
                [this](const Path& left, const Path& right) { return precedes(left, right); });
    }
    return {};
  }

  // Blocks may overlap, but texts that are far longer in all than the file would be the same bytes over and
  // over. No two paths have their names in common; records they may well share.
  Survey readLeaf(const Leaf& leaf, std::atomic<std::size_t>& textLength) const {
    Survey survey;
    std::size_t index = leaf.firstPath;
    std::size_t length = 0;
    for (Cursor cursor(leaf.pairs); !cursor.rest().empty(); ++index) {
      const std::uint32_t numbers = cursor.u32();
      const std::uint32_t name = cursor.u32();
      Path& path = paths_[index];
      Record record;
      if (const Failure failure = readNumbers(numbers, path, record)) return {failure};
      if (const Failure failure = readName(name, path)) return {failure};
      length += path.nameLength + (record.linkTarget.size() + record.programParts.size()) / mostSharing;
      if (length > bytes_.size()) return {{Fault::textsTooLong, 0}};
      survey.largestId = std::max(survey.largestId, path.id);
      if (index > leaf.firstPath && precedes(path, paths_[index - 1])) survey.sorted = false;
    }
    textLength += length;
    if (textLength > bytes_.size()) return {{Fault::textsTooLong, 0}};
    return survey;
  }

  Failure readNumbers(std::uint32_t number, Path& path, Record& record) const {
    std::string_view block;
    if (const Failure failure = store_.block(number, block)) return failure;
    Cursor cursor(block);
    path.id = cursor.u32();
    const std::uint32_t recordNumber = cursor.u32();
    if (!cursor.ok()) return {Fault::shortNumbers, offsetOf(block)};
    if (path.id == 0) return {Fault::idZero, offsetOf(block)};

    if (const Failure failure = store_.block(recordNumber, block)) return failure;
    path.record = offsetOf(block);
    path.recordLength = static_cast<std::uint32_t>(block.size());
    return {decodeRecord(block, record), path.record};
  }

  Failure readName(std::uint32_t number, Path& path) const {
    std::string_view block;
    if (const Failure failure = store_.block(number, block)) return failure;
    Cursor cursor(block);
    path.parent = cursor.u32();
    if (!cursor.ok()) return {Fault::shortName, offsetOf(block)};
    if (path.parent == path.id) return {Fault::ownParent, offsetOf(block)};
    const std::string_view name = cursor.rest();
    const std::size_t length = name.find('\0');
    if (length == std::string_view::npos) return {Fault::unendedName, offsetOf(block)};
    path.name = offsetOf(name);
    path.nameLength = static_cast<std::uint32_t>(length);
    return {};
  }

  bool precedes(const Path& left, const Path& right) const {
    if (left.parent != right.parent) return left.parent < right.parent;
    const int order = nameOf(left).compare(nameOf(right));
    return order < 0 || (order == 0 && left.id < right.id);
  }

  // The paths are sorted by now, so children of one parent stand next to each other.
  Failure findChildren() {
    bill_.ids_ = std::make_unique<Ids>(paths_, all_.largestId);
    firstChild_.assign(paths_.size(), none);
    isLastChild_.assign(paths_.size(), 0);
    std::vector<Failure> failures(paths_.size() / pathsAtOnce + 1);
    inParallel(paths_.size(), pathsAtOnce, [&](std::size_t begin, std::size_t end) {
      failures[begin / pathsAtOnce] = findChildren(begin, end);
    });
    const auto failed =
        std::find_if(failures.begin(), failures.end(), [](const Failure& failure) { return bool{failure}; });
    return failed == failures.end() ? Failure{} : *failed;
  }

  // No two parents have a child in common, so several threads can do this for different children.
  Failure findChildren(std::size_t begin, std::size_t end) {
    const Ids& ids = *bill_.ids_;
    for (std::size_t i = begin; i < end; ++i) {
      const Path& path = paths_[i];
      if (ids.find(path.id) != i) return {Fault::idTwice, path.name};
      isLastChild_[i] = i + 1 == paths_.size() || paths_[i + 1].parent != path.parent;
      if (path.parent == 0 || (i > 0 && paths_[i - 1].parent == path.parent)) continue;
      const std::uint32_t parent = ids.find(path.parent);
      if (parent == none) return {Fault::unknownParent, path.name};
      firstChild_[parent] = static_cast<std::uint32_t>(i);
    }
    return {};
  }

  Failure arrange() {
    struct Next {
      std::uint32_t path;
      std::size_t lengthAbove;  // of the path of what stands above it, with the "/" behind that
    };
    bill_.orderStore_.reset(new std::uint32_t[paths_.size()]);
    std::uint32_t* end = bill_.orderStore_.get();
    std::vector<Next> stack;  // what comes behind the children of the folders above
    Next next{0, 0};
    bool more = !paths_.empty() && paths_.front().parent == 0;
    while (more) {
      const auto [path, lengthAbove] = next;
      if (lengthAbove + paths_[path].nameLength > longestPath) return {Fault::pathTooLong, paths_[path].name};
      *end++ = path;
      ++next.path;
      if (firstChild_[path] != none) {
        if (isLastChild_[path] == 0) stack.push_back(next);
        next = {firstChild_[path], lengthAbove + paths_[path].nameLength + 1};
      } else if (isLastChild_[path] != 0) {
        more = !stack.empty();
        if (more) {
          next = stack.back();
          stack.pop_back();
        }
      }
    }
    bill_.order_ = {bill_.orderStore_.get(), end};
    return bill_.order_.size() < paths_.size() ? parentCycle() : Failure{};
  }

  // Every parent is known, so what cannot be reached from the top is in a circle or below one.
  Failure parentCycle() const {
    std::vector<bool> reached(paths_.size());
    for (const std::uint32_t path : bill_.order_) reached[path] = true;
    const auto missed = std::find(reached.begin(), reached.end(), false) - reached.begin();
    return {Fault::parentCycle, paths_[static_cast<std::size_t>(missed)].name};
  }

  BillOfMaterials& bill_;
  std::string_view bytes_;
  Store store_;
  std::span<Path> paths_;
  Survey all_;
  std::vector<std::uint32_t> firstChild_;  // by path
  std::vector<std::uint8_t> isLastChild_;  // by path
};

BillOfMaterials::BillOfMaterials() = default;
BillOfMaterials::~BillOfMaterials() = default;

Failure BillOfMaterials::read(std::string_view bytes) {
  bytes_ = bytes.substr(0, largestFile);
  order_ = {};
  const Failure failure = Reader(*this).run();
  if (failure) order_ = {};
  return failure;
}

Entry BillOfMaterials::entryWithId(std::uint32_t id) const { return entryOf(ids_->find(id)); }

Entry BillOfMaterials::entryOf(std::uint32_t index) const {
  const Path& path = paths_[index];
  Entry entry{path.id, path.parent, bytes_.substr(path.name, path.nameLength), {}};
  decodeRecord(bytes_.substr(path.record, path.recordLength), entry.record);
  return entry;
}

}  // namespace pelmarix::lsbom
