// Texts on their way between the engines (UTF-8) and the toolkit.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace tandemize {

[[nodiscard]] inline QString Testo(std::string_view testo) {
  return QString::fromUtf8(testo.data(), static_cast<qsizetype>(testo.size()));
}

// The same for a control that takes "&" for the mark of an access key: each one stands for itself.
[[nodiscard]] inline QString Didascalia(std::string_view testo) {
  return Testo(testo).replace(u'&', QStringLiteral("&&"));
}

[[nodiscard]] inline std::string Testo(const QString& testo) {
  return testo.toStdString();
}

// Name of a member of a control array: "cmd(0)".
[[nodiscard]] inline QString Membro(const char* nome, int indice) {
  return QStringLiteral("%1(%2)").arg(QLatin1String(nome)).arg(indice);
}

}  // namespace tandemize
