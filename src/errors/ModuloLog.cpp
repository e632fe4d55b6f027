#include "errors/ModuloLog.h"

#include <utility>

#include "errors/FileDiLog.h"
#include "platform/machine.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Percorsi.h"

namespace tandemize {

std::vector<std::string> ListaLog{""};

namespace {

FileDiLog fileDiLog;
bool soloInMemoria = false;
platform::ErrorCode erroreLog = platform::kNoError;

// The text of a second's date, kept for the many records of the same second.
struct PrefissoDelSecondo {
  std::int64_t secondo = -1;
  std::string formatoData, formatoOra, testo;
};
PrefissoDelSecondo ultimoPrefisso;

const std::string& Prefisso() {
  PrefissoDelSecondo& prefisso = ultimoPrefisso;
  const std::int64_t adesso = platform::now();
  if (prefisso.secondo != adesso || prefisso.formatoData != FormatoData ||
      prefisso.formatoOra != FormatoOra) {
    prefisso = {adesso, FormatoData, FormatoOra, "(" + DataOraGenerale(adesso) + ") "};
  }
  return prefisso.testo;
}

std::string TestoDelRecord(std::string_view testo, std::int32_t tipo) {
  switch (tipo) {
    case Intestazione: {
      const std::string riga = "<==" + std::string(LunghezzaInCaratteri(testo), '=') + "==>\r";
      return riga + "      " + std::string(testo) + "\r" + riga;
    }
    case RigaOk:
      return "- OK -\r";
    case RigaArresto:
      return "- " + Messaggio(329) + " -\r";
    case BloccoErrore:
      return "\r" + std::string(testo) + "\r";
    default:
      return std::string(testo);
  }
}

void AggiungiALista(std::string riga) {
  if (ListaLog.empty()) ListaLog.emplace_back();
  ListaLog.back() = std::move(riga);
  ListaLog.emplace_back();
}

// Cuts a record at each CR into lines of the list and of the file, and gives the file's. From the first empty
// piece on, the lines of the record carry no date. What stands behind the last CR reaches the list alone: the
// file gets its date and no text.
std::string InRighe(std::string_view testo) {
  std::string righe;
  std::string_view prefisso = Prefisso();
  for (bool primo = true;; primo = false) {
    const std::size_t fine = testo.find('\r');
    const bool ultimo = fine == std::string_view::npos;
    const std::string_view pezzo = testo.substr(0, fine);
    if (pezzo.empty()) prefisso = {};
    AggiungiALista(std::string(prefisso) + std::string(pezzo));
    righe += prefisso;
    if (primo || !ultimo) righe += pezzo;
    righe += "\r\n";
    if (ultimo) return righe;
    testo.remove_prefix(fine + 1);
  }
}

// The list holds twice what a log file may hold, a line taken as 100 characters; beyond that its older half
// goes. The new upper bound is half the old one plus one, so that after an even one the spare element is
// followed by one more: the next line leaves it empty.
void LimitaLista() {
  const std::size_t limite = ListaLog.size() - 1;
  if (static_cast<std::int64_t>(limite) * 100 <= std::int64_t{Log_Max_File_Size} * 1024 * 2) return;
  const std::size_t metà = limite / 2;
  ListaLog.erase(ListaLog.begin(), ListaLog.begin() + static_cast<std::ptrdiff_t>(metà));
  ListaLog.resize(metà + 2);
}

// The setting chooses nothing: whatever it says, and whatever the kind, every record reaches the file.
bool VaScritto(std::int32_t tipo) {
  bool scrivi = tipo == BloccoErrore;
  if (!(tipo == BloccoErrore && Log_Update_Mode != 1)) scrivi = true;
  return scrivi;
}

}  // namespace

void ScriviLog(std::string_view Testo, std::int32_t Tipo) {
  const std::string righe = InRighe(TestoDelRecord(Testo, Tipo));
  LimitaLista();
  if (soloInMemoria || !VaScritto(Tipo)) return;
  const platform::ErrorCode errore = fileDiLog.Scrivi(righe);
  if (erroreLog == platform::kNoError) erroreLog = errore;
}

platform::ErrorCode ErroreLog() {
  return erroreLog;
}

void AzzeraErroreLog() {
  erroreLog = platform::kNoError;
}

std::string NomeLogFile(std::string& NuovoFile) {
  const SceltaLog scelta = fileDiLog.Scegli();
  NuovoFile = scelta.nuovo == 0 ? "" : NomeDelNumero(scelta.nuovo);
  return scelta.attuale == 0 ? "" : NomeDelNumero(scelta.attuale);
}

void CreaListaLog() {
  ListaLog.assign(1, "");
}

void SoloLogInMemoria(bool acceso) {
  soloInMemoria = acceso;
}

void AzzeraLog() {
  fileDiLog.Azzera();
  soloInMemoria = false;
  erroreLog = platform::kNoError;
  ultimoPrefisso = {};
  CreaListaLog();
}

}  // namespace tandemize
