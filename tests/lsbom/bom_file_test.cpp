#include "lsbom/bom_file.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace pelmarix::lsbom {
namespace {

std::string bytesOf(const std::string& path) {
  const auto file = BomFile::read(path);
  return file ? std::string(file->bytes()) : file.error().message();
}

TEST(BomFile, HoldsAllOfABomAndTheBeginningOfAnythingElse) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(bytesOf(folder.addFile("bom", "BOMStore and more")), "BOMStore and more");
  EXPECT_EQ(bytesOf(folder.addFile("short", "BOMStore")), "BOMStore");
  EXPECT_EQ(bytesOf(folder.addFile("other", "no bom, but long")), "no bom, ");
  EXPECT_EQ(bytesOf(folder.addFile("empty", "")), "");
}

#ifdef __linux__
TEST(BomFile, HoldsNoMoreThanTheFileSaidThatItHas) {
  const std::string bytes = test::inChild([]() -> std::string {
    // The name of the process, and a line end: a file that says that it is empty.
    std::ofstream("/proc/self/comm") << "BOMStore";
    return bytesOf("/proc/self/comm");
  });
  EXPECT_EQ(bytes, "BOMStore");
}
#endif

}  // namespace
}  // namespace pelmarix::lsbom
