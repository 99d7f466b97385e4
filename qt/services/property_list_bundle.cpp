#include "qt/services/property_list_bundle.h"

#include <QCoreApplication>
#include <any>
#include <string>

#include "plist/document.h"
#include "posix/posix_file_manager.h"
#include "qt/services/info_plist.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

std::string ownInfoPlist() {
#ifdef __APPLE__
  const std::string path = toFileName(QCoreApplication::applicationDirPath()) + "/../Info.plist";
  const auto contents = posix::PosixFileManager(posix::Volume()).readFile(path);
  return contents ? *contents : std::string();
#else
  return infoPlist;
#endif
}

}  // namespace

PropertyListBundle::PropertyListBundle() : PropertyListBundle(ownInfoPlist()) {}

PropertyListBundle::PropertyListBundle(std::string_view bytes) {
  const auto decoded = plist::Document::decode(bytes);
  if (!decoded || decoded->root().type() != plist::Type::dictionary) return;
  infoDictionary_.emplace();
  for (const auto [key, value] : decoded->root().entries()) {
    const auto text = value.string();
    (*infoDictionary_)[std::string(key)] = text ? std::any(std::string(*text)) : std::any(value.type());
  }
}

}  // namespace pelmarix::qt
