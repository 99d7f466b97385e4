// The layout of what the leaves' pairs name, from public format notes and real files:
//
//   numbers  u32 id, u32 block of the record. Ids start at 1 and may have gaps
//   name     u32 id of the parent (0 at the top), the name, NUL
#include "lsbom/bill_of_materials.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "lsbom/cursor.h"
#include "lsbom/parallel.h"
#include "lsbom/store.h"
#include "lsbom/tree.h"

namespace pelmarix::lsbom {
namespace {

// About eight thousand paths, where leaves are full: less is not worth a thread.
constexpr std::size_t leavesAtOnce = 16;
constexpr std::size_t pathsAtOnce = 8192;

}  // namespace

// Finds paths by their ids.
class BillOfMaterials::Ids {
 public:
  // Takes the largest id of the paths. Gives the index of a path whose id another path has as well, or none.
  std::uint32_t fill(std::span<const Path> paths, std::uint32_t largest) {
    return largest / 8 <= paths.size() ? fillTable(paths, largest) : fillKeys(paths);
  }

  std::uint32_t find(std::uint32_t id) const {
    if (!table_.empty()) return id < table_.size() ? table_[id] : none;
    const auto key = std::lower_bound(keys_.begin(), keys_.end(), std::uint64_t{id} << 32);
    return key == keys_.end() || *key >> 32 != id ? none : static_cast<std::uint32_t>(*key);
  }

 private:
  std::uint32_t fillTable(std::span<const Path> paths, std::uint32_t largest) {
    table_.assign(std::size_t{largest} + 1, none);
    for (std::uint32_t i = 0; i < paths.size(); ++i) {
      if (std::exchange(table_[paths[i].id], i) != none) return i;
    }
    return none;
  }

  std::uint32_t fillKeys(std::span<const Path> paths) {
    keys_.reserve(paths.size());
    for (std::uint32_t i = 0; i < paths.size(); ++i) keys_.push_back((std::uint64_t{paths[i].id} << 32) | i);
    std::sort(keys_.begin(), keys_.end());
    const auto sameId = [](std::uint64_t left, std::uint64_t right) { return left >> 32 == right >> 32; };
    const auto twice = std::adjacent_find(keys_.begin(), keys_.end(), sameId);
    return twice == keys_.end() ? none : static_cast<std::uint32_t>(*twice);
  }

  std::vector<std::uint32_t> table_;  // indices by id, where ids are dense enough
  std::vector<std::uint64_t> keys_;   // else sorted: an id above its index
};

class BillOfMaterials::Reader {
 public:
  explicit Reader(BillOfMaterials& bill) : bill_(bill), bytes_(bill.bytes_) {}

  Failure run() {
    if (const Failure failure = store_.open(bytes_)) return failure;
    Leaves leaves;
    if (const Failure failure = readTree(store_, leaves)) return failure;
    if (const Failure failure = readPaths(leaves)) return failure;
    const Survey all = survey();
    if (!all.sorted) {
      std::sort(paths_.begin(), paths_.end(),
                [this](const Path& left, const Path& right) { return precedes(left, right); });
    }
    if (const Failure failure = findChildren(all.largestId)) return failure;
    return arrange();
  }

 private:
  std::string_view nameOf(const Path& path) const { return bytes_.substr(path.name, path.nameLength); }
  std::uint32_t offsetOf(std::string_view bytes) const {
    return static_cast<std::uint32_t>(store_.offsetOf(bytes));
  }

  Failure readPaths(const Leaves& tree) {
    // Not cleared ahead: every path is written below, by several threads at once.
    bill_.pathStore_.reset(new Path[tree.pathCount]);
    bill_.paths_ = paths_ = {bill_.pathStore_.get(), tree.pathCount};
    std::atomic<std::size_t> namesLength = 0;
    std::vector<Failure> failures((tree.leaves.size() + leavesAtOnce - 1) / leavesAtOnce);
    inParallel(failures.size(), [&](std::size_t i) {
      const std::size_t end = std::min(tree.leaves.size(), (i + 1) * leavesAtOnce);
      for (std::size_t leaf = i * leavesAtOnce; leaf < end && !failures[i]; ++leaf) {
        failures[i] = readLeaf(tree.leaves[leaf], namesLength);
      }
    });
    const auto failed =
        std::find_if(failures.begin(), failures.end(), [](const Failure& failure) { return bool{failure}; });
    return failed == failures.end() ? Failure{} : *failed;
  }

  // Blocks may overlap, but names that are longer in all than the file would be the same bytes over and over.
  Failure readLeaf(const Leaf& leaf, std::atomic<std::size_t>& namesLength) const {
    std::size_t index = leaf.firstPath;
    std::size_t length = 0;
    for (Cursor cursor(leaf.pairs); !cursor.rest().empty(); ++index) {
      const std::uint32_t numbers = cursor.u32();
      const std::uint32_t name = cursor.u32();
      Path& path = paths_[index];
      if (const Failure failure = readNumbers(numbers, path)) return failure;
      if (const Failure failure = readName(name, path)) return failure;
      length += path.nameLength;
      if (length > bytes_.size()) return {Fault::namesTooLong, path.name};
    }
    namesLength += length;
    if (namesLength > bytes_.size()) return {Fault::namesTooLong, store_.offsetOf(leaf.pairs)};
    return {};
  }

  Failure readNumbers(std::uint32_t number, Path& path) const {
    std::string_view block;
    if (const Failure failure = store_.block(number, block)) return failure;
    Cursor cursor(block);
    path.id = cursor.u32();
    const std::uint32_t recordNumber = cursor.u32();
    if (!cursor.ok()) return {Fault::shortNumbers, offsetOf(block)};
    if (path.id == 0) return {Fault::idZero, offsetOf(block)};

    std::string_view record;
    if (const Failure failure = store_.block(recordNumber, record)) return failure;
    path.record = offsetOf(record);
    path.recordLength = static_cast<std::uint32_t>(record.size());
    Record decoded;
    return {decodeRecord(record, decoded), path.record};
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

  // What one look at all paths tells.
  struct Survey {
    bool sorted = true;  // as the usual writer sorts; others need not
    std::uint32_t largestId = 0;
  };

  Survey survey() const {
    std::vector<Survey> parts((paths_.size() + pathsAtOnce - 1) / pathsAtOnce);
    inParallel(parts.size(), [&](std::size_t part) {
      const std::size_t end = std::min(paths_.size(), (part + 1) * pathsAtOnce);
      for (std::size_t i = part * pathsAtOnce; i < end; ++i) {
        parts[part].largestId = std::max(parts[part].largestId, paths_[i].id);
        if (i > 0 && precedes(paths_[i], paths_[i - 1])) parts[part].sorted = false;
      }
    });
    Survey all;
    for (const Survey& part : parts) {
      all.sorted = all.sorted && part.sorted;
      all.largestId = std::max(all.largestId, part.largestId);
    }
    return all;
  }

  // The paths are sorted by now, so children of one parent stand next to each other.
  bool isFirstChild(std::size_t index) const {
    return index == 0 || paths_[index].parent != paths_[index - 1].parent;
  }

  Failure findChildren(std::uint32_t largestId) {
    Ids ids;
    if (const std::uint32_t twice = ids.fill(paths_, largestId); twice != none)
      return {Fault::idTwice, paths_[twice].name};
    firstChild_.assign(paths_.size(), none);
    for (std::uint32_t i = 0; i < paths_.size(); ++i) {
      if (!isFirstChild(i) || paths_[i].parent == 0) continue;
      const std::uint32_t parent = ids.find(paths_[i].parent);
      if (parent == none) return {Fault::unknownParent, paths_[i].name};
      firstChild_[parent] = i;
    }
    return {};
  }

  Failure arrange() {
    struct Next {
      std::uint32_t path;
      std::uint32_t depth;
      std::uint32_t parent;     // its place
      std::size_t lengthAbove;  // of the path of what stands above it, with the "/" behind that
    };
    std::vector<Place>& places = bill_.places_;
    places.reserve(paths_.size());
    std::vector<Next> stack;  // what comes behind the children of the folders above
    Next next{0, 0, none, 0};
    bool more = !paths_.empty() && paths_.front().parent == 0;
    while (more) {
      const std::uint32_t index = next.path;
      const std::size_t length = next.lengthAbove + paths_[index].nameLength;
      if (length > longestPath) return {Fault::pathTooLong, paths_[index].name};
      const auto place = static_cast<std::uint32_t>(places.size());
      places.push_back({index, next.depth, next.parent});

      const bool hasSibling = index + 1 < paths_.size() && !isFirstChild(index + 1);
      ++next.path;
      if (firstChild_[index] != none) {
        if (hasSibling) stack.push_back(next);
        next = {firstChild_[index], next.depth + 1, place, length + 1};
      } else if (!hasSibling) {
        more = !stack.empty();
        if (more) {
          next = stack.back();
          stack.pop_back();
        }
      }
    }
    return places.size() < paths_.size() ? parentCycle() : Failure{};
  }

  // Every parent is known, so what cannot be reached from the top is in a circle or below one.
  Failure parentCycle() const {
    std::vector<bool> reached(paths_.size());
    for (const Place& place : bill_.places_) reached[place.path] = true;
    const auto missed = std::find(reached.begin(), reached.end(), false) - reached.begin();
    return {Fault::parentCycle, paths_[static_cast<std::size_t>(missed)].name};
  }

  BillOfMaterials& bill_;
  std::string_view bytes_;
  Store store_;
  std::span<Path> paths_;
  std::vector<std::uint32_t> firstChild_;  // by path
};

Failure BillOfMaterials::read(std::string_view bytes) {
  bytes_ = bytes.substr(0, largestFile);
  places_.clear();
  const Failure failure = Reader(*this).run();
  if (failure) places_.clear();
  return failure;
}

Entry BillOfMaterials::entry(std::size_t index) const {
  const Place& place = places_[index];
  const Path& path = paths_[place.path];
  Entry entry{bytes_.substr(path.name, path.nameLength), place.depth, {}};
  decodeRecord(bytes_.substr(path.record, path.recordLength), entry.record);
  return entry;
}

}  // namespace pelmarix::lsbom
