// The layout of what the leaves' pairs name, from public format notes and real files:
//
//   numbers  u32 id, u32 block of the record. Ids start at 1 and may have gaps
//   name     u32 id of the parent (0 at the top), the name, NUL
#include "lsbom/bill_of_materials.h"

#include <algorithm>
#include <map>
#include <utility>

#include "lsbom/cursor.h"
#include "lsbom/path_tree.h"
#include "lsbom/store.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::size_t mostSharing = 16;
// In bytes, so many whatever the size of the file.
constexpr std::size_t sharingAllowance = std::size_t{4} << 20U;
// A program that takes the listing must have room for it.
constexpr std::size_t longestListing = std::size_t{256} << 20U;

constexpr std::uint32_t none = UINT32_MAX;

// The indices of paths by their ids.
class PathsById {
 public:
  // A table where the ids are dense, as the usual writer's are; else a search.
  PathsById(std::size_t pathCount, std::uint32_t largestId) {
    if (largestId / 8 <= pathCount) table_.assign(std::size_t{largestId} + 1, none);
  }

  // Gives the path that has the id: this one, or another one that had it before.
  std::uint32_t add(std::uint32_t id, std::uint32_t path) {
    std::uint32_t& place = table_.empty() ? map_.try_emplace(id, none).first->second : table_[id];
    if (place == none) place = path;
    return place;
  }

  std::uint32_t find(std::uint32_t id) const {
    if (!table_.empty()) return id < table_.size() ? table_[id] : none;
    const auto found = map_.find(id);
    return found == map_.end() ? none : found->second;
  }

 private:
  std::vector<std::uint32_t> table_;
  std::map<std::uint32_t, std::uint32_t> map_;
};

}  // namespace

class BillOfMaterials::Reader {
 public:
  Reader(std::string_view bytes, const Store& store) : store_(store), bom_(bytes) {}

  Result<BillOfMaterials, Failure> run() {
    if (const auto read = readPaths(); !read) return read.error();
    sortPaths();
    if (const auto found = findChildren(); !found) return found.error();
    if (const auto arranged = arrange(); !arranged) return arranged.error();
    return std::move(bom_);
  }

 private:
  // Blocks may overlap, and paths share records. But the names together may not be longer than the file, nor
  // the link targets and program parts than mostSharing times the file: a small file would give a huge
  // listing.
  Result<void, Failure> readPaths() {
    const auto leaves = readTree(store_);
    if (!leaves) return leaves.error();
    paths_.reserve(leaves->pathCount);
    std::size_t length = 0;
    for (const std::string_view pairs : leaves->pairs) {
      for (Cursor cursor(pairs); !cursor.rest().empty();) {
        Path path{};
        if (const auto read = readNumbers(cursor.u32(), path); !read) return read.error();
        const auto record = decodeRecord(bom_.at(path.record));
        if (!record) return Failure{record.error(), path.record.offset};
        if (const auto read = readName(cursor.u32(), path); !read) return read.error();
        length += path.name.length + (record->linkTarget.size() + record->programParts.size()) / mostSharing;
        if (length > bom_.bytes_.size()) return Failure{Fault::tooMuchSharing, 0};
        paths_.push_back(path);
      }
    }
    return {};
  }

  Result<void, Failure> readNumbers(std::uint32_t number, Path& path) const {
    const auto block = store_.block(number);
    if (!block) return block.error();
    Cursor cursor(*block);
    path.id = cursor.u32();
    const std::uint32_t recordNumber = cursor.u32();
    if (!cursor.ok()) return Failure{Fault::shortNumbers, store_.offsetOf(*block)};
    if (path.id == 0) return Failure{Fault::idZero, store_.offsetOf(*block)};
    const auto record = store_.block(recordNumber);
    if (!record) return record.error();
    path.record = rangeOf(*record);
    return {};
  }

  Result<void, Failure> readName(std::uint32_t number, Path& path) const {
    const auto block = store_.block(number);
    if (!block) return block.error();
    Cursor cursor(*block);
    path.parent = cursor.u32();
    if (!cursor.ok()) return Failure{Fault::shortName, store_.offsetOf(*block)};
    if (path.parent == path.id) return Failure{Fault::ownParent, store_.offsetOf(*block)};
    const std::size_t length = cursor.rest().find('\0');
    if (length == std::string_view::npos) return Failure{Fault::unterminatedName, store_.offsetOf(*block)};
    path.name = rangeOf(cursor.take(length));
    return {};
  }

  // Offsets and lengths in a store have 32 bits.
  Range rangeOf(std::string_view bytes) const {
    return {static_cast<std::uint32_t>(store_.offsetOf(bytes)), static_cast<std::uint32_t>(bytes.size())};
  }

  // The usual writer has sorted them already; others need not.
  void sortPaths() {
    const auto precedes = [this](const Path& left, const Path& right) {
      if (left.parent != right.parent) return left.parent < right.parent;
      const int order = bom_.at(left.name).compare(bom_.at(right.name));
      return order < 0 || (order == 0 && left.id < right.id);
    };
    if (!std::is_sorted(paths_.begin(), paths_.end(), precedes))
      std::sort(paths_.begin(), paths_.end(), precedes);
  }

  // Children of one parent stand next to each other.
  Result<void, Failure> findChildren() {
    std::uint32_t largestId = 0;
    for (const Path& path : paths_) largestId = std::max(largestId, path.id);
    PathsById byId(paths_.size(), largestId);
    for (std::uint32_t i = 0; i < paths_.size(); ++i) {
      const std::uint32_t owner = byId.add(paths_[i].id, i);
      if (owner != i) return failureOf(Fault::idTwice, owner);
    }

    firstChild_.assign(paths_.size(), none);
    for (std::uint32_t i = 0; i < paths_.size(); ++i) {
      const std::uint32_t parent = paths_[i].parent;
      if (parent == 0 || (i > 0 && paths_[i - 1].parent == parent)) continue;
      const std::uint32_t above = byId.find(parent);
      if (above == none) return failureOf(Fault::unknownParent, i);
      firstChild_[above] = i;
    }
    return {};
  }

  Result<void, Failure> arrange() {
    // A folder that the walk is in.
    struct Level {
      std::uint32_t parent;  // its id
      std::uint32_t next;    // of its children
      std::size_t length;    // of its path, with the "/" behind that
    };
    // Every path repeats those of the folders that it is in.
    const std::size_t mostBytes =
        std::min(mostSharing * bom_.bytes_.size() + sharingAllowance, longestListing);
    std::size_t bytes = 0;
    bom_.order_.reserve(paths_.size());
    std::vector<Level> levels{{0, 0, 0}};
    while (!levels.empty()) {
      Level& level = levels.back();
      const std::uint32_t i = level.next++;
      if (i >= paths_.size() || paths_[i].parent != level.parent) {
        levels.pop_back();
        continue;
      }
      const std::size_t length = level.length + paths_[i].name.length;
      if (length > longestPath) return failureOf(Fault::pathTooLong, i);
      bytes += length;
      if (bytes > mostBytes) return failureOf(Fault::tooMuchSharing, i);
      bom_.order_.push_back(i);
      if (firstChild_[i] != none) levels.push_back({paths_[i].id, firstChild_[i], length + 1});
    }
    return bom_.size() < paths_.size() ? parentCycle() : Result<void, Failure>();
  }

  // Every parent is known, so what cannot be reached from the top is in a circle or below one.
  Result<void, Failure> parentCycle() const {
    std::vector<bool> reached(paths_.size());
    for (const std::uint32_t path : bom_.order_) reached[path] = true;
    const auto missed = std::find(reached.begin(), reached.end(), false) - reached.begin();
    return failureOf(Fault::parentCycle, static_cast<std::size_t>(missed));
  }

  Failure failureOf(Fault fault, std::size_t path) const { return {fault, paths_[path].name.offset}; }

  const Store& store_;
  BillOfMaterials bom_;
  std::vector<Path>& paths_ = bom_.paths_;
  std::vector<std::uint32_t> firstChild_;  // by path
};

Result<BillOfMaterials, Failure> BillOfMaterials::read(std::string_view bytes) {
  const auto store = Store::open(bytes);
  if (!store) return store.error();
  return Reader(bytes, *store).run();
}

Entry BillOfMaterials::entry(std::size_t index) const {
  const Path& path = paths_[order_[index]];
  return {path.id, path.parent, at(path.name), *decodeRecord(at(path.record))};
}

}  // namespace pelmarix::lsbom
