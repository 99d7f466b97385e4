// The layout, from public format notes and real files:
//
//   header     "BOMStore", u32 version, u32 number of blocks (often wrong: not used),
//              u32 offset and u32 length of the index, u32 offset and u32 length of the variables
//   index      u32 count, and for each block u32 offset and u32 length; block 0 is the null block.
//              A list of free ranges follows, which a reader does not need
//   variables  u32 count, and for each u32 block, u8 length of the name, the name
#include "lsbom/store.h"

namespace pelmarix::lsbom {

Result<Store, Failure> Store::open(std::string_view file) {
  Cursor header(file);
  const std::string_view magic = header.take(storeMagic.size());
  if (header.ok() && magic != storeMagic) return Failure{Fault::wrongMagic, 0};
  const std::uint32_t version = header.u32();
  header.u32();  // the number of blocks
  const std::uint32_t indexOffset = header.u32();
  const std::uint32_t indexLength = header.u32();
  const std::uint32_t variablesOffset = header.u32();
  const std::uint32_t variablesLength = header.u32();
  if (!header.ok()) return Failure{Fault::shortHeader, 0};
  if (version != 1) return Failure{Fault::wrongVersion, 8};

  Store store(file);
  if (const auto index = store.openIndex(indexOffset, indexLength); !index) return index.error();
  if (const auto variables = store.openVariables(variablesOffset, variablesLength); !variables)
    return variables.error();
  return store;
}

Result<void, Failure> Store::openIndex(std::uint32_t offset, std::uint32_t length) {
  if (!isInside(offset, length)) return Failure{Fault::indexPastEnd, offset};
  Cursor cursor(file_.substr(offset, length));
  blockCount_ = cursor.u32();
  index_ = cursor.take(blockCount_ * indexPairLength);
  if (!cursor.ok()) return Failure{Fault::indexTooShort, offset};
  return {};
}

Result<void, Failure> Store::openVariables(std::uint32_t offset, std::uint32_t length) {
  if (!isInside(offset, length)) return Failure{Fault::variablesPastEnd, offset};
  Cursor cursor(file_.substr(offset, length));
  bool found = false;
  for (std::uint32_t left = cursor.u32(); left > 0 && cursor.ok(); --left) {
    const std::uint32_t number = cursor.u32();
    const std::string_view name = cursor.take(cursor.u8());
    if (name == "Paths" && !found) {
      pathsBlock_ = number;
      found = true;
    }
  }
  if (!cursor.ok()) return Failure{Fault::variablesTooShort, offset};
  if (!found) return Failure{Fault::noPaths, offset};
  return {};
}

}  // namespace pelmarix::lsbom
