#include "qt/text_conversion.h"

#include <QFile>
#include <QStringDecoder>
#include <QStringEncoder>

namespace pelmarix::qt {

QString toQString(std::string_view utf8) {
  // Not QString::fromUtf8, which drops a byte-order mark. Stateless: a text cut in the middle of a letter
  // ends there, nothing is kept for a next piece.
  QStringDecoder decoder(QStringDecoder::Utf8,
                         QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  return decoder.decode(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

std::string toUtf8(const QString& text) { return text.toUtf8().toStdString(); }

std::string toFileName(const QString& name) { return QFile::encodeName(name).toStdString(); }

std::string composedForm(std::string_view utf8) {
  return toUtf8(toQString(utf8).normalized(QString::NormalizationForm_C));
}

}  // namespace pelmarix::qt
