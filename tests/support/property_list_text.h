// XML property lists for tests, put together from their pieces.
#pragma once

#include <string>
#include <vector>

namespace pelmarix::test {

inline std::string propertyList(const std::string& object) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + object + "</plist>\n";
}

inline std::string key(const std::string& name, const std::string& value) {
  return "<key>" + name + "</key>" + value + "\n";
}
inline std::string string(const std::string& text) { return "<string>" + text + "</string>"; }
inline std::string date(const std::string& text) { return "<date>" + text + "</date>"; }

struct EntryText {
  std::string displayName;
  std::string displayVersion = "1.0";
  std::string contentType = {};  ///< no key when empty
  std::string date = "2019-03-26T10:11:12Z";
};

/// An install history of these entries.
inline std::string installHistory(const std::vector<EntryText>& entries) {
  std::string array = "<array>\n";
  for (const EntryText& entry : entries) {
    array += "<dict>\n";
    if (!entry.contentType.empty()) array += key("contentType", string(entry.contentType));
    array += key("date", date(entry.date)) + key("displayName", string(entry.displayName)) +
             key("displayVersion", string(entry.displayVersion)) + "</dict>\n";
  }
  return propertyList(array + "</array>\n");
}

/// A receipt of a package.
inline std::string receipt(const std::string& packageIdentifier, const std::string& installDate) {
  return propertyList("<dict>\n" + key("InstallDate", date(installDate)) +
                      key("PackageIdentifier", string(packageIdentifier)) + "</dict>\n");
}

}  // namespace pelmarix::test
