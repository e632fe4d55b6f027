#include "presentation/FrmTipMessage.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/newfile.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr std::uint64_t LimiteFile = 4'194'304;  // bytes, as the reader of the settings has it
constexpr std::string_view ChiaveTip = "Help_TipMessage", RigaTipSpenta = "Help_TipMessage = 0";
constexpr std::string_view SegnoUtf8 = "\xEF\xBB\xBF";
constexpr int MessaggioSuggerimento = 365, MessaggioContinua = 367, MessaggioDisattivati = 413;

platform::ErrorCode RiscriviImpostazioni(const std::string& file) {
  std::string testo;
  const platform::ErrorCode errore = platform::readFile(file, testo, LimiteFile);
  if (errore != platform::kNoError) return errore;
  const std::string prima = testo;
  SpegniTipMessage(testo);
  return testo == prima ? platform::kNoError : platform::replaceFile(file, testo);
}

}  // namespace

void SpegniTipMessage(std::string& testo) {
  std::string nuovo;
  std::string_view resto = testo;
  if (resto.starts_with(SegnoUtf8)) {
    nuovo = SegnoUtf8;
    resto.remove_prefix(SegnoUtf8.size());
  }
  while (!resto.empty()) {
    const std::size_t lunghezza = std::min(resto.find_first_of("\r\n"), resto.size());
    nuovo += resto.starts_with(ChiaveTip) ? RigaTipSpenta : resto.substr(0, lunghezza);
    resto.remove_prefix(lunghezza);
    if (resto.empty()) break;
    nuovo += resto.front();
    resto.remove_prefix(1);
  }
  testo = std::move(nuovo);
}

FrmTipMessage::FrmTipMessage(std::string_view titolo, std::string_view testo)
    : Caption(Messaggio(MessaggioSuggerimento)),
      LblTitolo(std::string(titolo) + " ..."),
      LblTip(testo),
      ChkCaption(Messaggio(MessaggioContinua)),
      CmdCloseCaption("&OK") {}

void FrmTipMessage::Init(std::string_view titolo, std::string_view testo, const Finestra& mostra) {
  if (Help_TipMessage != 1) return;
  FrmTipMessage scheda(titolo, testo);
  mostra(scheda);
  scheda.Chiudi();
}

void FrmTipMessage::Chiudi() const {
  if (Chk) return;
  Help_TipMessage = 0;
  const std::string file = PercorsoApplicazione + std::string(NomeFileGlobale);
  const platform::ErrorCode errore = RiscriviImpostazioni(file);
  if (errore == platform::kNoError) {
    MsgBox(Messaggio(MessaggioDisattivati), StileInformazione);
    return;
  }
  MsgBox(InLingua("Impossibile salvare il file '", "The file cannot be saved: '") + file +
             "': " + platform::systemErrorText(errore),
         StileCritico);
}

}  // namespace tandemize
