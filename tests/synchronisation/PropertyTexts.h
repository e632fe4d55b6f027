// What the property test compares: the program's plan, log and screen in the words of the model, and the
// differences between the two as text.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "errors/EsitoOperazione.h"
#include "fixtures/LogLines.h"
#include "fixtures/ScriptedScreen.h"
#include "fixtures/SyncModel.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "synchronisation/RecordFile.h"

namespace tandemize::test {

using Lines = std::vector<std::string>;

// Answers questions from the case's list and notes what the engines show.
class WatchingScreen : public ScriptedScreen {
 public:
  Risposta MsgBox(std::string_view text, int style, std::string_view title) override {
    if (style != StileSìNoAnnulla) return ScriptedScreen::MsgBox(text, style, title);
    questions.emplace_back(text);
    return given.empty() ? Risposta::No : given[(questions.size() - 1) % given.size()];
  }
  [[nodiscard]] bool MostraUnita() const override { return showsRows; }
  void AggiungiRigaUnita(std::size_t list, const RigaUnita& row) override {
    rows.push_back(std::to_string(list) + " " + row.chiave + " | " +
                   row.nome.substr(row.nome.starts_with('\\') ? 1 : 0) + " | " + row.stato + " " +
                   std::to_string(row.etichettaStato));
  }
  void AggiornaInfo(std::size_t path, ContatoriUnita now) override {
    if (counters.size() <= path) counters.resize(path + 1);
    counters[path] = now;
  }
  using ScriptedScreen::AggiornaInfo;

  void forget() {
    questions.clear();
    rows.clear();
    counters.clear();
    boxes.clear();
    balloons.clear();
    answers.clear();
    events = 0;
    onEvents = nullptr;
  }

  std::vector<Risposta> given;
  bool showsRows = false;
  Lines questions, rows;
  std::vector<ContatoriUnita> counters;
};

inline std::string joinedLines(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += "  " + line + "\n";
  return text.empty() ? "  nothing\n" : text;
}

inline std::string differenceOf(const std::string& what, const std::string& expected,
                                const std::string& found) {
  return expected == found ? "" : what + "\nexpected:\n" + expected + "found:\n" + found;
}
inline std::string differenceOf(const std::string& what, const Lines& expected, const Lines& found) {
  if (expected == found) return "";
  const auto place = std::mismatch(expected.begin(), expected.end(), found.begin(), found.end());
  const auto lineAt = [](const Lines& lines, auto at) { return at == lines.end() ? "the end" : *at; };
  return differenceOf(what + "\nfirst difference in line " +
                          std::to_string(place.first - expected.begin() + 1) + ":\n- " +
                          lineAt(expected, place.first) + "\n+ " + lineAt(found, place.second),
                      joinedLines(expected), joinedLines(found));
}

inline std::string difference(const std::string& what, bool expected, bool found) {
  return expected == found ? "" : what + ": " + (found ? "yes" : "no") + ", not as expected\n";
}

inline std::string textOf(EsitoOperazione outcome) {
  const char* const texts[] = {"done",         "nothing to do", "stopped", "error passed over",
                               "files failed", "refused"};
  return texts[static_cast<int>(outcome)];
}

inline std::string textOf(const std::vector<ContatoriUnita>& counters) {
  std::string text;
  for (const ContatoriUnita& path : counters)
    text += "  position " + std::to_string(path.Posizione) + ", missing " + std::to_string(path.Mancanti) +
            ", to be replaced " + std::to_string(path.Sostituire) + "\n";
  return text;
}

// The program's plan in the words of the model.
inline Lines planInModelWords() {
  Lines lines;
  for (std::size_t i = 0; i < ArrayTrasferimento.Numero(); ++i) {
    const auto& [source, destination] = ArrayTrasferimento[i];
    const bool deletion = EraseFile == 1 && source.DaEliminare;
    const bool isNew = destination.FileNuovo;
    const char* reason = deletion || isNew                                    ? "-"
                         : destination.Motivo == MotivoOperazione::Data       ? "date"
                         : destination.Motivo == MotivoOperazione::Dimensione ? "size"
                                                                              : "crc";
    lines.push_back(std::string(deletion ? "delete"
                                : isNew  ? "missing"
                                         : "different") +
                    " " + reason + " " + source.Percorso() + " -> " + destination.Percorso() +
                    (isNew && destination.Dimensione != 0 ? " (with a size)" : ""));
  }
  return lines;
}

// Files of one folder whose names differ only in case have no order among themselves.
inline Lines inGroupOrder(const ExpectedPlan& plan, Lines lines) {
  if (lines.size() != plan.operations.size()) return lines;
  for (std::size_t i = 0, end = 0; i < lines.size(); i = end) {
    while (end < lines.size() && plan.operations[end].group == plan.operations[i].group) ++end;
    std::sort(lines.begin() + static_cast<std::ptrdiff_t>(i),
              lines.begin() + static_cast<std::ptrdiff_t>(end));
  }
  return lines;
}

inline std::string planDifference(const ExpectedPlan& plan, const Lines& found) {
  return differenceOf("the plan", inGroupOrder(plan, plan.texts()), inGroupOrder(plan, found));
}

// Copies, deletions and removed folders as the log tells them.
inline Lines deedsInLog(const std::string& log) {
  const std::string copying = "| " + Messaggio(188) + "  '", deleting = "| Deleting File '",
                    removing = "| Deleting Folder '", middle = "' to '";
  Lines deeds;
  for (const std::string& line : logLines(log)) {
    const std::string text = line.substr(0, line.rfind('\''));
    if (line.starts_with(copying)) {
      const std::size_t to = text.find(middle);
      deeds.push_back("copy " + text.substr(copying.size(), to - copying.size()) + " to " +
                      text.substr(to + middle.size()));
    } else if (line.starts_with(deleting)) {
      deeds.push_back("delete " + text.substr(deleting.size()));
    } else if (line.starts_with(removing)) {
      deeds.push_back("remove " + text.substr(removing.size()));
    }
  }
  return deeds;
}

// What an observer of the program folder sees: names, sizes, dates.
inline std::string folderListing(const std::filesystem::path& folder) {
  Lines lines;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    lines.push_back(entry.path().string() + " " +
                    (entry.is_directory() ? "" : std::to_string(entry.file_size())) + " " +
                    std::to_string(entry.last_write_time().time_since_epoch().count()));
  std::sort(lines.begin(), lines.end());
  return joinedLines(lines);
}

}  // namespace tandemize::test
