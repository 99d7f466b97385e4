#include "qt/text_conversion.h"

#include <QFile>

namespace pelmarix::qt {

QString toQString(std::string_view utf8) {
  // QString::fromUtf8 drops a byte-order mark at the beginning.
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  QString text;
  for (; utf8.starts_with(byteOrderMark); utf8.remove_prefix(byteOrderMark.size()))
    text += QChar(QChar::ByteOrderMark);
  return text += QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::string toUtf8(const QString& text) { return text.toUtf8().toStdString(); }

std::string toFileName(const QString& name) { return QFile::encodeName(name).toStdString(); }

std::string composedForm(std::string_view utf8) {
  return toUtf8(toQString(utf8).normalized(QString::NormalizationForm_C));
}

}  // namespace pelmarix::qt
