// Between the program's text, UTF-8 in std::string, and Qt's; and its addresses. Nothing else converts.
#pragma once

#include <QString>
#include <QUrl>
#include <string>
#include <string_view>

#include "platform/url.h"

namespace pelmarix::qt {

/// Every byte that is no part of valid UTF-8 becomes U+FFFD. Nothing is dropped, neither NUL nor a byte-order
/// mark at the start.
QString toQString(std::string_view utf8);

/// A lone surrogate becomes a question mark.
std::string toUtf8(const QString& text);

/// What Services::isValidAddress asks for.
bool isValidAddress(const std::string& text);

QUrl toQUrl(const platform::URL& url);

/// The bytes of a file name that Qt gave.
std::string toFileName(const QString& name);

/// Unicode's composed form (NFC) of UTF-8 text.
std::string composedForm(std::string_view utf8);

/// What Services::foldedForm asks for.
std::string foldedForm(std::string_view utf8);

}  // namespace pelmarix::qt
