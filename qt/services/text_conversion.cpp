#include "qt/services/text_conversion.h"

#include <QFile>

#include "base/utf8.h"

namespace pelmarix::qt {

QString toQString(std::string_view utf8) {
  QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  // fromUtf8 drops a byte-order mark at the beginning.
  if (utf8.starts_with("\xEF\xBB\xBF")) text.prepend(QChar(QChar::ByteOrderMark));
  return text;
}

std::string toUtf8(const QString& text) { return text.toUtf8().toStdString(); }

bool isValidAddress(const std::string& text) {
  // Qt takes letters beyond ASCII, and encodes them on its own.
  return isAscii(text) && QUrl(toQString(text), QUrl::StrictMode).isValid();
}

QUrl toQUrl(const platform::URL& url) { return QUrl(toQString(url.absoluteString()), QUrl::StrictMode); }

std::string toFileName(const QString& name) { return QFile::encodeName(name).toStdString(); }

std::string composedForm(std::string_view utf8) {
  return toUtf8(toQString(utf8).normalized(QString::NormalizationForm_C));
}

std::string foldedForm(std::string_view utf8) {
  // Letters lose their case best where their accents stand apart.
  const QString letters = toQString(utf8).normalized(QString::NormalizationForm_D).toCaseFolded();
  return toUtf8(letters.normalized(QString::NormalizationForm_C).replace(QChar::Nbsp, QLatin1Char(' ')));
}

}  // namespace pelmarix::qt
