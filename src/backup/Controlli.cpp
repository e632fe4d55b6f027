// The checks of the diagram's paths before a run, and the report of what they found.

#include <algorithm>

#include "backup/FrmBackupChoice.h"
#include "platform/newfile.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"

namespace tandemize {

namespace {

constexpr std::uint8_t SenzaRapporto = 32;

bool EsisteQualcosa(const std::string& percorso) {
  return EsisteCartella(percorso) || EsisteFile(percorso);
}

// Wording of the cause, empty for a drive type that has none.
std::string Causa(const ErrorePercorso& errore) {
  switch (errore.TipoUnita) {
    case UnitaAssente:
      if (errore.Codice == CodiceErrore::ScritturaFallita) return Messaggio(428);
      if (errore.Codice == CodiceErrore::SenzaInternet) return Messaggio(124);
      return EsisteQualcosa(errore.Percorso) ? Messaggio(126) : Messaggio(125);
    case UnitaRimovibile:
      return UnitaPronta(errore.Percorso) ? Messaggio(128) : Messaggio(127);
    case UnitaRemota:
      if (errore.Codice == CodiceErrore::NonTrovato) return Messaggio(129);
      return errore.Percorso.empty() || EsisteQualcosa(errore.Percorso) ? Messaggio(131) : Messaggio(130);
    case UnitaCdRom:
      return UnitaPronta(errore.Percorso) ? Messaggio(133) : Messaggio(132);
    default:
      return {};
  }
}

}  // namespace

void FrmBackupChoice::AggiungiErrore(std::string_view percorso, CodiceErrore codice) {
  ListaErrori.push_back({std::string(percorso), TipoPercorso(percorso), TipoUnita(percorso), codice});
}

bool FrmBackupChoice::ControllaPercorsiOggetti() {
  for (std::size_t k = 1; k < ArrayOggetti.size(); ++k)
    if (!ArrayOggetti[k].BackPath.empty() && ArrayOggetti[k].Vivo()) ControllaOggetto(ArrayOggetti[k]);
  return !ErroreInCorso;
}

void FrmBackupChoice::ControllaOggetto(OggettoBackup& oggetto) {
  const std::int32_t tipo = TipoPercorso(oggetto.BackPath);
  // The server is looked up among the synchronisation paths, so it falls to the first one for a path that is
  // none of them.
  const std::uint8_t server =
      tipo == PercorsoFtp ? IndiceServerDaPercorso(true, oggetto.BackPath) : std::uint8_t{0};
  const std::int32_t codice =
      VerificaPercorsi({{oggetto.BackPath, std::to_string(server)}}, SenzaRapporto, 0);
  if (codice != 0 && ChkIgnorePath) {
    oggetto.BackIgnorato = true;
    return;
  }
  const bool destinazione = oggetto.BackTipoTrasferimento == TipoDestinazione;
  const std::int32_t unita = TipoUnita(oggetto.BackPath);
  const bool siCreaCopiando =
      destinazione && (unita == UnitaRimovibile || unita == UnitaCdRom) && codice == 5;
  if (siCreaCopiando) return;
  if (codice != 0) {
    ErroreInCorso = true;
    AggiungiErrore(oggetto.BackPath, CodiceErrore::Generico);
  }
  if (tipo == PercorsoLan && destinazione && !TestScrittura(oggetto.BackPath)) {
    ErroreInCorso = true;
    AggiungiErrore(oggetto.BackPath, CodiceErrore::ScritturaFallita);
  }
}

bool FrmBackupChoice::TestScrittura(std::string_view percorso) {
  const std::string file = ConSeparatore(percorso) + "Test$$$.$$$";
  return platform::replaceFile(file, "") == platform::kNoError &&
         platform::deleteFile(file) == platform::kNoError;
}

void FrmBackupChoice::CreaRapporto(std::string& testo, bool& tuttoBene) const {
  tuttoBene = ListaErrori.empty();
  if (tuttoBene) {
    testo = Messaggio(139);
    return;
  }
  std::string percorsi, cause;
  std::vector<std::int32_t> unitaGiaDette;
  for (const ErrorePercorso& errore : ListaErrori) {
    percorsi += errore.Percorso + "\r";
    if (std::find(unitaGiaDette.begin(), unitaGiaDette.end(), errore.TipoUnita) != unitaGiaDette.end())
      continue;
    unitaGiaDette.push_back(errore.TipoUnita);
    if (const std::string causa = Causa(errore); !causa.empty()) cause += causa + "\r";
  }
  testo =
      Messaggio(134) + "\r\r" + Messaggio(135) + "\r\r" + percorsi + "\r\r" + Messaggio(136) + "\r\r" + cause;
}

bool FrmBackupChoice::MostraRapporto(bool silenzioso) {
  if (ProcessoAnnullato) return false;
  std::string testo;
  bool tuttoBene = false;
  CreaRapporto(testo, tuttoBene);
  if (!tuttoBene)
    schermo().MostraElencoErrori(testo, Messaggio(123));
  else if (!silenzioso)
    MsgBox(testo, StileInformazione);
  return tuttoBene;
}

bool Aggiungi_Verfica_Arr_Destinazioni(std::vector<std::string>& elenco, std::string_view percorso) {
  if (std::find(elenco.begin(), elenco.end(), percorso) != elenco.end()) return false;
  elenco.emplace_back(percorso);
  return true;
}

}  // namespace tandemize
