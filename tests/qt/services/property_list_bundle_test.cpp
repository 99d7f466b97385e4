#include "qt/services/property_list_bundle.h"

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <algorithm>
#include <any>
#include <string>

namespace pelmarix::qt {
namespace {

std::string text(const platform::InfoDictionary& dictionary, const std::string& key) {
  const auto found = dictionary.find(key);
  if (found == dictionary.end()) return "missing";
  const auto* value = std::any_cast<std::string>(&found->second);
  return value == nullptr ? "no text" : *value;
}

// Under which name a Mac's preferences have what QSettings stores for an application of an organization. A
// domain is turned around where it ends in two letters or in one of these; any other name gets a ".com".
std::string preferencesIdentifier(QString organization, const QString& application) {
  const QString end = organization.section(QLatin1Char('.'), -1);
  const QStringList known =
      QStringLiteral("com org net edu gov mil biz info name pro aero coop museum").split(QLatin1Char(' '));
  if (end == organization || (end.size() != 2 && !known.contains(end)))
    organization = organization.replace(QLatin1Char('.'), QLatin1Char('-')) + QStringLiteral(".com");
  QStringList labels = organization.toLower().split(QLatin1Char('.'));
  std::reverse(labels.begin(), labels.end());
  return (labels << application).join(QLatin1Char('.')).toStdString();
}

TEST(PropertyListBundle, HasTheIdentifierOfTheProgramsPreferences) {
  ASSERT_EQ(preferencesIdentifier(QStringLiteral("pelmarix.example"), QStringLiteral("Pelmarix")),
            "com.pelmarix-example.Pelmarix");
  EXPECT_EQ(text(*PropertyListBundle().infoDictionary(), "CFBundleIdentifier"),
            preferencesIdentifier(QStringLiteral(PELMARIX_ORGANIZATION_DOMAIN), QStringLiteral("Pelmarix")));
}

TEST(PropertyListBundle, TellsTheProgramsNameAndVersion) {
  const auto dictionary = PropertyListBundle().infoDictionary();
  ASSERT_TRUE(dictionary.has_value());
  EXPECT_EQ(text(*dictionary, "CFBundleShortVersionString"), PELMARIX_VERSION);
  EXPECT_EQ(text(*dictionary, "CFBundleName"), "Pelmarix");
  EXPECT_EQ(text(*dictionary, "NSHighResolutionCapable"), "no text");
}

TEST(PropertyListBundle, HasNoDictionaryWhereThereIsNone) {
  EXPECT_FALSE(PropertyListBundle("").infoDictionary().has_value());
  EXPECT_FALSE(PropertyListBundle("<plist><array/></plist>").infoDictionary().has_value());
}

TEST(PropertyListBundle, HasAnEmptyDictionaryWhereItIsEmpty) {
  const auto dictionary = PropertyListBundle("<plist><dict/></plist>").infoDictionary();
  ASSERT_TRUE(dictionary.has_value());
  EXPECT_TRUE(dictionary->empty());
}

TEST(PropertyListBundle, HoldsTextsAndTellsOtherValuesApartFromThem) {
  const auto dictionary = PropertyListBundle(
                              "<plist><dict><key>a</key><string>x</string><key>b</key><integer>1</integer>"
                              "<key>a</key><string>last</string></dict></plist>")
                              .infoDictionary();
  ASSERT_TRUE(dictionary.has_value());
  EXPECT_EQ(text(*dictionary, "a"), "last");
  EXPECT_EQ(text(*dictionary, "b"), "no text");
  EXPECT_EQ(text(*dictionary, "c"), "missing");
}

}  // namespace
}  // namespace pelmarix::qt
