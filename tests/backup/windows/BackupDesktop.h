// The dialog "Run Backup" on a real desktop: a diagram of one source and one destination, and the dialog
// driven by its controls' names.
#pragma once

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "backup/FrmFileTransfer.h"
#include "backup/windows/FrmBackupChoiceWindow.h"
#include "fixtures/Diagram.h"
#include "fixtures/windows/Desktop.h"
#include "presentation/windows/Form.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize::test {

enum Mode { QuickTest, AccurateTest, QuickRun, AccurateRun };
enum Type { Standard, Full, Incremental };

class BackupDesktop : public Desktop {
 public:
  explicit BackupDesktop(int files = 1) {
    folder.setting("Errors_Correction", "0");
    FrmFileTransfer::IntervalloSchermo = 0;
    for (int i = 0; i < files; ++i) write("source/f" + std::to_string(i), "content");
    folder.work().makeFolder("destination");
    use(Diagram::copying(folder.program("source"), folder.program("destination")));
  }
  ~BackupDesktop() override {
    ApplicazioneNascosta = false;
    ScaricaForm("FrmBackupChoice");
    letEventsRun();
    FrmFileTransfer::IntervalloSchermo = 33;
  }

  void write(const std::string& file, std::string_view content) { folder.work().write(file, content); }
  void use(const Diagram& diagram) { diagram.write(folder.host("Config.cfg")); }
  [[nodiscard]] bool copied(const std::string& file = "f0") {
    return std::filesystem::is_regular_file(folder.work().host("destination/" + file));
  }
  [[nodiscard]] int copies() {
    int number = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.work().host("destination")))
      number += entry.is_regular_file() ? 1 : 0;
    return number;
  }
  [[nodiscard]] std::vector<std::string> boxTexts() const {
    std::vector<std::string> texts;
    for (const ShownBox& box : boxes) texts.push_back(box.text);
    return texts;
  }

  // --- the dialog
  QWidget* open() {
    MostraFrmBackupChoice();
    letEventsRun();
    return FormDiNome("FrmBackupChoice");
  }
  template <class Control>
  [[nodiscard]] Control& get(std::string_view name) {
    return *control<Control>(*window("FrmBackupChoice"), name);
  }
  void choose(Type type, Mode mode = QuickRun) {
    get<QComboBox>("cmbTipoBackup").setCurrentIndex(type);
    get<QRadioButton>("Opt(" + std::to_string(mode) + ")").click();
  }
  void ok() { click(get<QPushButton>("cmd(0)")); }
  void run(Type type = Standard, Mode mode = QuickRun) {
    if (FormDiNome("FrmBackupChoice") == nullptr) open();
    choose(type, mode);
    ok();
  }
  // The lines of the error lists that were shown, each closed at once.
  void noteErrorLists() {
    whenShown("FrmBackupErrorLog", [this](QWidget& window) {
      errorTitle = window.windowTitle().toStdString();
      errorLines.clear();
      const auto* lines = window.findChild<QListWidget*>();
      for (int i = 0; lines != nullptr && i < lines->count(); ++i)
        errorLines.push_back(lines->item(i)->text().toStdString());
      ++errorLists;
      window.close();
    });
  }
  int errorLists = 0;
  std::string errorTitle;
  std::vector<std::string> errorLines;
};

[[nodiscard]] inline bool dialogLoaded() {
  return FormDiNome("FrmBackupChoice") != nullptr;
}

using Boxes = std::vector<std::string>;

}  // namespace tandemize::test
