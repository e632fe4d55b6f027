#include "shell/windows/FinestreDiScelta.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>

#include "platform/paths.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/Testo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

// By the host's own bytes: a name need not be text.
QString SulHost(std::string_view percorso) {
  return QFile::decodeName(QByteArray::fromStdString(platform::toHost(percorso)));
}

std::string NelProgramma(const QString& percorso) {
  return platform::toProgram(QFile::encodeName(percorso).toStdString());
}

// "All Files (*)": here a file's name needs no dot. A description that tells its mask already does not tell
// it twice.
QString FiltroDelDialogo(const FiltroFile& filtro) {
  QString descrizione = Testo(filtro.descrizione);
  if (const qsizetype parentesi = descrizione.lastIndexOf(QStringLiteral(" (")); parentesi > 0)
    descrizione.truncate(parentesi);
  const QString maschera = filtro.maschera == "*.*" ? QStringLiteral("*") : Testo(filtro.maschera);
  return descrizione + QStringLiteral(" (") + maschera + u')';
}

// The toolkit's own dialog has its words in English only.
void Didascalie(QFileDialog& dialogo, const char* accetta, const char* accettaInglese) {
  dialogo.setLabelText(QFileDialog::LookIn, Testo(InLingua("Cerca in:", "Look in:")));
  dialogo.setLabelText(QFileDialog::FileName, Testo(InLingua("&Nome:", "File &name:")));
  dialogo.setLabelText(QFileDialog::FileType, Testo(InLingua("Tipo:", "Files of type:")));
  dialogo.setLabelText(QFileDialog::Accept, Testo(InLingua(accetta, accettaInglese)));
  dialogo.setLabelText(QFileDialog::Reject, Testo(InLingua("Annulla", "Cancel")));
}

class Dialogo : public QFileDialog {
 public:
  Dialogo(const char* nome, QWidget* owner, const QString& titolo, std::string_view cartella)
      : QFileDialog(owner != nullptr ? owner : FinestraPrincipale(), titolo) {
    setObjectName(QLatin1String(nome));
    // Without a desktop there is no dialog but the toolkit's.
    if (QApplication::platformName() == QLatin1String("offscreen"))
      setOption(QFileDialog::DontUseNativeDialog);
    const QString inizio = SulHost(cartella);
    if (!inizio.isEmpty() && QDir(inizio).exists()) setDirectory(inizio);
  }

  [[nodiscard]] std::vector<std::string> Chiedi() {
    std::vector<std::string> percorsi;
    if (exec() != QDialog::Accepted) return percorsi;
    const QStringList scelti = selectedFiles();
    percorsi.reserve(static_cast<std::size_t>(scelti.size()));
    for (const QString& scelto : scelti) percorsi.push_back(NelProgramma(scelto));
    return percorsi;
  }
};

std::string Primo(const std::vector<std::string>& percorsi) {
  return percorsi.empty() ? std::string() : percorsi.front();
}

}  // namespace

std::string SfogliaCartella(QWidget* owner, std::string_view iniziale) {
  Dialogo dialogo("SfogliaCartella", owner, Testo(InLingua("Selezione di una cartella", "Select a Folder")),
                  iniziale);
  dialogo.setFileMode(QFileDialog::Directory);
  dialogo.setOption(QFileDialog::ShowDirsOnly);
  Didascalie(dialogo, "&Scegli", "&Choose");
  return Primo(dialogo.Chiedi());
}

std::string ScegliFileSalvataggio(QWidget* owner, std::string_view cartella, std::string_view nomePredefinito,
                                  const FiltroFile& filtro) {
  Dialogo dialogo("ScegliFileSalvataggio", owner, QStringLiteral("Save File Profile"), cartella);
  dialogo.setAcceptMode(QFileDialog::AcceptSave);
  dialogo.setFileMode(QFileDialog::AnyFile);
  dialogo.setOption(QFileDialog::DontConfirmOverwrite);
  dialogo.setNameFilter(FiltroDelDialogo(filtro));
  Didascalie(dialogo, "&Salva", "&Save");
  dialogo.selectFile(Testo(nomePredefinito));
  return Primo(dialogo.Chiedi());
}

std::vector<std::string> ScegliFileApertura(QWidget* owner, const FiltroFile& filtro,
                                            std::string_view cartella) {
  Dialogo dialogo("ScegliFileApertura", owner, QStringLiteral("Select File/s"), cartella);
  dialogo.setFileMode(QFileDialog::ExistingFiles);
  dialogo.setNameFilter(FiltroDelDialogo(filtro));
  Didascalie(dialogo, "&Apri", "&Open");
  return dialogo.Chiedi();
}

}  // namespace tandemize
