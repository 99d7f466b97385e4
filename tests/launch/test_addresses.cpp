// In place of the maker's addresses: the update list is wherever the test says.
#include <cstdlib>

#include "app/addresses.h"

namespace pelmarix {
namespace {

const char* addressFromTest() {
  const char* const address = std::getenv("PELMARIX_TEST_UPDATE_LIST");
  return address != nullptr ? address : "https://localhost:1/";
}

}  // namespace

const char* const updateListAddress = addressFromTest();
const char* const downloadHostPrefix = "https://file-hosting.downloads.pelmarix.example/";
const char* const supportPageAddress = "https://www.pelmarix.example/support/";
const char* const olderSystemUpdatesPageAddress = "https://www.pelmarix.example/older/";
const char* const newerSystemUpdatesPageAddress = "https://www.pelmarix.example/newer/";

}  // namespace pelmarix
