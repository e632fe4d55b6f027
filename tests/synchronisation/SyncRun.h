// What tests of a synchronisation share: a started program with two trees, lists on a screen, and a user for
// whom permission bits count.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "backup/BackupRun.h"
#include "errors/ModuloLog.h"
#include "fixtures/SyncProfile.h"
#include "profile/ModuloProfilo.h"
#include "synchronisation/FrmTandemize.h"

namespace tandemize::test {

// Work folders "one" and "two", and a profile over them. The program is hidden, as in an unattended run,
// unless a test shows it.
class SyncFolder : public BackupFolder {
 public:
  SyncFolder() {
    work().makeFolder("one");
    work().makeFolder("two");
    profile.paths = {program("one"), program("two")};
    ApplicazioneNascosta = true;
  }
  ~SyncFolder() { forgetHooks(); }

  // A file with a date of its own, so that two files of the same date and size compare as equal.
  void file(const std::string& name, const std::string& content, std::time_t date = 1'100'000'000) {
    work().write(name, content);
    const std::array<struct timespec, 2> times{{{date, 0}, {date, 0}}};
    if (::utimensat(AT_FDCWD, work().host(name).c_str(), times.data(), 0) != 0) std::abort();
  }
  // A file that nobody may read, which an ordinary user is held to.
  void lock(const std::string& name) {
    std::filesystem::permissions(work().host(name), std::filesystem::perms::none);
  }
  void tryNext(bool on) {
    setting("Errors_Try_Next", on ? "1" : "0");
    setting("Errors_Correction", "0");
  }
  void saveProfile() { profile.write(host("Config.cfg")); }
  [[nodiscard]] std::string tree() { return describeTree(work().path()); }

  // A run that nobody watches, with the profile as it stands in this object.
  EsitoOperazione run() {
    saveProfile();
    FrmTandemize window;
    const EsitoOperazione outcome = window.PartenzaAutomatica();
    forgetHooks();
    return outcome;
  }

  // Called once, as soon as the scan has so many rows in a column.
  void whenScanned(std::size_t column, std::size_t rows, std::function<void()> action) {
    screen.onEvents = [=, done = false]() mutable {
      if (done || !FormCaricato("FrmScan") || ArrayScansione.Righe(column) < rows) return;
      done = true;
      action();
    };
  }

  SyncProfile profile;
};

// A screen with the lists of the window; it notes what it is asked for, in order.
class ListScreen : public ScriptedScreen {
 public:
  ListScreen() { keepsRows = true; }
  void AggiungiRigaUnita(std::size_t list, const RigaUnita& row) override {
    ScriptedScreen::AggiungiRigaUnita(list, row);
    calls.push_back("row " + std::to_string(list));
  }
  void SvuotaRigheUnita() override {
    ScriptedScreen::SvuotaRigheUnita();
    calls.emplace_back("empty");
  }
  void RifaiUnita() override { calls.emplace_back("make"); }
  using ScriptedScreen::AggiornaInfo;
  void AggiornaInfo(std::size_t path) override { calls.push_back("info " + std::to_string(path)); }
  void IntestazioneUnita(std::size_t path, std::string_view text) override {
    calls.push_back("header " + std::to_string(path) + " '" + std::string(text) + "'");
  }
  void MostraRigheUnita(bool shown) override { calls.emplace_back(shown ? "show" : "hide"); }

  std::vector<std::string> calls;
};

// While it lives, this process is a user for whom permission bits count, and both folders of the test belong
// to that user.
class AsOrdinaryUser {
 public:
  explicit AsOrdinaryUser(ProgramFolder& folder) {
    if (::geteuid() != 0) return;
    constexpr uid_t nobody = 65534;
    for (const TemporaryFolder* one : {&folder.home(), &folder.work()}) {
      if (::lchown(one->host().c_str(), nobody, nobody) != 0) std::abort();
      for (const auto& entry : std::filesystem::recursive_directory_iterator(one->path()))
        if (::lchown(entry.path().c_str(), nobody, nobody) != 0) std::abort();
    }
    if (::seteuid(nobody) != 0) std::abort();
    changed_ = true;
  }
  ~AsOrdinaryUser() {
    if (changed_ && ::seteuid(0) != 0) std::abort();
  }
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

 private:
  bool changed_ = false;
};

// "what source -> destination" for each operation planned.
[[nodiscard]] inline std::vector<std::string> plannedOperations() {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i) {
    const RecordOperazione& operation = ArrayTrasferimento[i];
    const char* what = operation.Sorgente.DaEliminare     ? "delete "
                       : operation.Destinazione.FileNuovo ? "missing "
                                                          : "different ";
    lines.push_back(what + operation.Sorgente.Percorso() + " -> " + operation.Destinazione.Percorso());
  }
  return lines;
}

}  // namespace tandemize::test
