// The screen of the console program: boxes, notices and, on a terminal, progress go to standard error;
// questions are answered in advance.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shell/Schermo.h"

namespace tandemize {

class ConsoleScreen : public Schermo {
 public:
  // `answerYes`: every question is answered with yes, else with no.
  explicit ConsoleScreen(bool answerYes);
  ~ConsoleScreen() override;

  Risposta MsgBox(std::string_view testo, int stile, std::string_view titolo) override;
  void DoEvents() override;  // a stop signal stops the operation that runs
  void ApriBalloon(const Avviso& avviso) override;
  void ChiudiBalloon() override {}
  [[nodiscard]] bool BalloonAperto() const override { return false; }  // printed, so gone at once
  void Mostra(const StatoScansione& stato) override;
  void Mostra(const StatoAvanzamento& stato) override;
  void Mostra(const StatoTrasferimento& stato) override;
  void MostraElencoErrori(std::string_view testo, std::string_view titolo) override;
  void FineProgramma(int stato) override;

  // A stop signal came and was taken for the stop of an operation.
  [[nodiscard]] bool stopSignalled() const { return stopSignalled_; }

  // A line on standard error, over the progress line if one stands there.
  void print(std::string_view line);

 private:
  void showProgress(const std::string& line);
  void clearProgress();
  [[nodiscard]] bool tooSoon();

  bool answerYes_, terminal_;
  bool progressShown_ = false, stopSignalled_ = false;
  std::uint64_t lastShown_ = 0;
};

// Progress as one line of at most `width` columns: percent, files, amounts, speed, remaining time, and what
// fits of the source.
[[nodiscard]] std::string progressLine(const StatoTrasferimento& stato, int width);

// At most `columns` characters of a text, the front cut off and marked if it is longer.
[[nodiscard]] std::string lastColumns(std::string_view text, std::size_t columns);

}  // namespace tandemize
