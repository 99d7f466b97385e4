// Writes boms (bills of materials): the files beside package receipts that say what a package installed.
// Knows their format only; what they list is the caller's.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pelmarix::sample {

enum class BomKind : std::uint8_t { file = 1, folder = 2, link = 3, device = 4 };

/// One processor's part of a program.
struct BomProcessor {
  std::uint32_t type;      ///< 7 and 0x1000007: the 32-bit and 64-bit kinds of the same family
  std::uint32_t subtype;   ///< 3: all of them
  std::uint32_t size;      ///< in bytes
  std::uint32_t checksum;  ///< of this part's bytes, see posixChecksum
};

/// One path that the package installed.
struct BomEntry {
  std::string path;  ///< "." or "./Library/Some File": any bytes but NUL; "/" parts the components
  BomKind kind = BomKind::file;               ///< what the record says; the mode may say otherwise
  std::uint16_t mode = 0100644;               ///< with the file-type bits
  std::uint32_t user = 0;                     ///< its id
  std::uint32_t group = 0;                    ///< its id
  std::uint32_t modificationTime = 0;         ///< seconds since 1970
  std::uint32_t size = 0;                     ///< in bytes; a link's is computed from its target
  std::uint32_t checksum = 0;                 ///< a file's; a device's number; a link's is computed
  std::string linkTarget = {};                ///< links only
  std::vector<BomProcessor> processors = {};  ///< a program for these; none for any other file
};

/// How the file is laid out. The defaults are what the usual writer does today.
struct BomLayout {
  bool oldRecords = false;           ///< records without the eight bytes that close them today
  bool variablesFirst = false;       ///< ahead of the blocks, not behind them
  bool indexFirst = false;           ///< ahead of all blocks, not at the file's end
  bool blocksReversed = false;       ///< the last numbered block stands first
  bool paddedNodes = true;           ///< every node fills the node size, however few paths it has
  std::uint32_t pathsPerNode = 510;  ///< 2 to 510; more paths than this make inner nodes
  std::uint32_t firstId = 1;         ///< of the first path, at least 1
  std::uint32_t idStep = 1;          ///< from path to path, at least 1: above 1, ids have gaps
};

/// The bytes of a bom. Paths may come in any order. A folder above a path that has no entry of its own is
/// added: mode 40755, owned by 0/0, the modification time of the path that asked for it. No entries make an
/// empty list. A path given twice is listed twice.
std::string writeBillOfMaterials(const std::vector<BomEntry>& entries, const BomLayout& layout = {});

/// The checksum that a bom holds: the one of the POSIX utility cksum.
std::uint32_t posixChecksum(std::string_view bytes);

}  // namespace pelmarix::sample
