#include "shell/console/ConsoleScreen.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "errors/ModuloGestioneErrori.h"
#include "platform/machine.h"
#include "presentation/Avvisi.h"
#include "shell/TestiPropri.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::uint64_t MillisecondsBetweenLines = 100;

// Texts part their lines by CR, which would overwrite each other on a terminal.
std::string withLineEnds(std::string_view text) {
  std::string result;
  for (const char c : text)
    if (c != '\n') result.push_back(c == '\r' ? '\n' : c);
  while (!result.empty() && result.back() == '\n') result.pop_back();
  return result;
}

void writeError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace

ConsoleScreen::ConsoleScreen(bool answerYes)
    : answerYes_(answerYes), terminal_(platform::errorOutputIsTerminal()) {
  UsaSchermo(this);
}

ConsoleScreen::~ConsoleScreen() {
  clearProgress();
  UsaSchermo(nullptr);
}

void ConsoleScreen::print(std::string_view line) {
  clearProgress();
  writeError(withLineEnds(line) + "\n");
}

Risposta ConsoleScreen::MsgBox(std::string_view testo, int stile, std::string_view) {
  const bool question = stile == StileSìNo || stile == StileSìNoInformazione || stile == StileSìNoAnnulla;
  const std::string answer = answerYes_ ? InLingua("sì", "yes") : InLingua("no", "no");
  print(question ? std::string(testo) + " [" + answer + "]" : std::string(testo));
  if (!question) return Risposta::Ok;
  return answerYes_ ? Risposta::Sì : Risposta::No;
}

void ConsoleScreen::DoEvents() {
  if (!platform::stopRequested() || !AnnullaOperazioneInCorso()) return;
  stopSignalled_ = true;
  platform::clearStopRequest();
}

void ConsoleScreen::ApriBalloon(const Avviso& avviso) {
  print(avviso.testo);
  BalloonCorrente.clear();
}

void ConsoleScreen::MostraElencoErrori(std::string_view testo, std::string_view titolo) {
  print(titolo);
  print(testo);
}

void ConsoleScreen::FineProgramma(int stato) {
  clearProgress();
  std::fflush(nullptr);
  std::exit(stato);
}

bool ConsoleScreen::tooSoon() {
  const std::uint64_t now = platform::monotonicMilliseconds();
  if (now - lastShown_ < MillisecondsBetweenLines) return true;
  lastShown_ = now;
  return false;
}

void ConsoleScreen::Mostra(const StatoScansione& stato) {
  if (!terminal_) return;
  if (!stato.visibile) return clearProgress();
  if (!tooSoon())
    showProgress(lastColumns(stato.cartella.empty() ? stato.titolo : stato.cartella,
                             static_cast<std::size_t>(platform::terminalWidth() - 1)));
}

void ConsoleScreen::Mostra(const StatoAvanzamento& stato) {
  if (!terminal_) return;
  if (!stato.visibile) return clearProgress();
  const double share = stato.massimo > 0 ? std::clamp(stato.valore / stato.massimo, 0.0, 1.0) : 0;
  if (!tooSoon())
    showProgress(lastColumns(std::to_string(static_cast<int>(share * 100)) + " %  " + stato.testo,
                             static_cast<std::size_t>(platform::terminalWidth() - 1)));
}

void ConsoleScreen::Mostra(const StatoTrasferimento& stato) {
  if (!terminal_) return;
  if (!stato.visibile) return clearProgress();
  if (!tooSoon()) showProgress(progressLine(stato, platform::terminalWidth() - 1));
}

void ConsoleScreen::showProgress(const std::string& line) {
  writeError("\r\x1b[K" + line);
  progressShown_ = true;
}

void ConsoleScreen::clearProgress() {
  if (progressShown_) writeError("\r\x1b[K");
  progressShown_ = false;
}

std::string progressLine(const StatoTrasferimento& stato, int width) {
  const double share = stato.byteTotali > 0   ? stato.byteCopiati / stato.byteTotali
                       : stato.fileTotali > 0 ? static_cast<double>(stato.fileCopiati) / stato.fileTotali
                                              : 1;
  std::string line =
      std::to_string(static_cast<int>(std::clamp(share, 0.0, 1.0) * 100)) + " %  " + stato.trasferiti;
  if (!stato.velocità.empty()) line += "  " + stato.velocità;
  if (!stato.tempo.empty()) line += "  " + stato.tempo;
  const std::size_t used = LunghezzaInCaratteri(line) + 2;
  const std::size_t columns = static_cast<std::size_t>(std::max(width, 20));
  if (used + 12 < columns) line += "  " + lastColumns(stato.sorgente, columns - used);
  return lastColumns(line, columns);
}

std::string lastColumns(std::string_view text, std::size_t columns) {
  const std::size_t length = LunghezzaInCaratteri(text);
  if (length <= columns) return std::string(text);
  std::size_t toSkip = length - columns + 1;
  while (toSkip > 0) {
    do {
      text.remove_prefix(1);
    } while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0U) == 0x80U);
    --toSkip;
  }
  return "…" + std::string(text);
}

}  // namespace tandemize
