#include <charconv>

#include "errors/ModuloGestioneErrori.h"
#include "presentation/Avvisi.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"

namespace tandemize {

namespace {

// Outcomes of a check.
enum Esito : std::int32_t {
  Utilizzabile = 0,
  CdNonPronto = 1,
  RimovibileNonPronto = 2,
  CartellaLanAssente = 3,
  CartellaLocaleAssente = 5,
  NessunaConnessione = 6,
  PercorsoVuoto = 7,
  CartellaFtpAssente = 8,
  ConnessioneNonRiuscita = 9
};

// Bits of `flags`.
constexpr unsigned ZittoUnita = 2, ZittoConnessione = 4, ZittoTutto = 8, ZittoServer = 16, SenzaRapporto = 32;

std::int32_t verificaSulServer(std::string_view path, std::int32_t serverIndex) {
  std::int32_t outcome = Utilizzabile;
  std::string message;
  bool failed = false;
  if (!ServerConnesso("") &&
      Connetti_Al_Server_FTP(static_cast<std::int16_t>(serverIndex), message, failed, true) != 0)
    outcome = ConnessioneNonRiuscita;
  else if (!EsisteCartella(path))
    outcome = CartellaFtpAssente;
  DisconnettiServer("");
  return outcome;
}

std::int32_t verificaFtp(std::string_view path, std::int32_t serverIndex) {
  if (!InternetConnesso()) return NessunaConnessione;
  // With no server defined nothing can be tested, and the path is let through.
  if (FtpServers.empty() || FtpServers[0].Ftp_Description.empty() || FtpServers[0].Ftp_Server_Name.empty())
    return Utilizzabile;
  return verificaSulServer(path, serverIndex);
}

// What one check of the whole table has found.
struct Rapporto {
  std::int32_t esito = Utilizzabile;
  std::string testo;
  bool domanda = false;
};

struct Zittito {
  unsigned tutto = 0;  // any of these bits: no text, and the outcome counts as usable
  unsigned testo = 0;  // any of these bits: no text
};

Zittito bitCheZittiscono(std::int32_t outcome) {
  switch (outcome) {
    case CdNonPronto:
    case RimovibileNonPronto:
      return {.tutto = ZittoUnita | ZittoTutto};
    case NessunaConnessione:
      return {.tutto = ZittoConnessione | ZittoTutto};
    case PercorsoVuoto:
      return {.tutto = ZittoUnita | ZittoConnessione | ZittoTutto};
    case ConnessioneNonRiuscita:
      return {.tutto = ZittoServer, .testo = ZittoTutto};
    default:
      return {};
  }
}

std::string testoUnita(std::int32_t outcome, std::uint8_t mode) {
  std::string_view drive = outcome == CdNonPronto ? "CD-ROM" : "Floppy Disk";
  return Messaggio(305) + " " + std::string(drive) + " " + Messaggio(mode == 0 ? 306 : 307);
}

std::string testoEsito(std::int32_t outcome, const std::string& path, std::uint8_t mode) {
  std::string quoted = " '" + path + "' ";
  switch (outcome) {
    case CdNonPronto:
    case RimovibileNonPronto:
      return testoUnita(outcome, mode);
    case CartellaLanAssente:
      return Messaggio(308) + quoted + Messaggio(387);
    case CartellaLocaleAssente:
      return Messaggio(310) + quoted + Messaggio(311);
    case NessunaConnessione:
      return Messaggio(102) + quoted + Messaggio(309);
    case PercorsoVuoto:
      return Messaggio(313);
    case CartellaFtpAssente:
      return Messaggio(312) + quoted + Messaggio(311);
    case ConnessioneNonRiuscita:
      return Messaggio(314) + quoted + Messaggio(315);
    default:
      return {};
  }
}

std::int32_t indiceServer(const RigaPercorso& row) {
  std::int32_t index = 0;
  if (TipoPercorso(row.percorso) == PercorsoFtp)
    std::from_chars(row.indiceServer.data(), row.indiceServer.data() + row.indiceServer.size(), index);
  return index;
}

void verificaRiga(Rapporto& report, const RigaPercorso& row, std::uint8_t flags, std::uint8_t mode) {
  std::int32_t outcome = VerificaPercorso(row.percorso, indiceServer(row));
  // The question belongs to the last row alone, although the text of an earlier row stays, and a quiet drive
  // keeps it.
  report.domanda = outcome == CdNonPronto || outcome == RimovibileNonPronto;
  Zittito quiet = bitCheZittiscono(outcome);
  if ((flags & quiet.tutto) != 0 || outcome == Utilizzabile) return;
  report.esito = outcome;
  if ((flags & quiet.testo) == 0) report.testo = testoEsito(outcome, row.percorso, mode);
}

// True if the user wants the check to run again.
bool mostraRapporto(const Rapporto& report, std::uint8_t mode) {
  switch (mode) {
    case 0:
      if (report.domanda) return MsgBox(report.testo, StileSìNoInformazione) == Risposta::Sì;
      MsgBox(report.testo, StileInformazione);
      return false;
    case 1:
      MostraBalloon(FormAttivo(), report.testo, "Avviso", 0, 15, false, false);
      return false;
    case 2:
      MostraBalloon(FormAttivo(), report.testo, TitoloApplicazione, 0, 0, false, true);
      return false;
    default:
      return false;
  }
}

}  // namespace

std::int32_t VerificaPercorso(std::string_view path, std::int32_t serverIndex) {
  switch (TipoUnita(path)) {
    case UnitaAssente:
      switch (TipoPercorso(path)) {
        case NessunPercorso:
          return PercorsoVuoto;
        case PercorsoLan:
          return EsisteCartella(path) ? Utilizzabile : CartellaLanAssente;
        case PercorsoFtp:
          return verificaFtp(path, serverIndex);
        default:
          break;
      }
      break;
    case UnitaRimovibile:
      if (!UnitaPronta(path)) return RimovibileNonPronto;
      break;
    case UnitaCdRom:
      if (!UnitaPronta(path)) return CdNonPronto;
      break;
    case UnitaFissa:
      break;
    default:
      return Utilizzabile;
  }
  return EsisteCartella(path) ? Utilizzabile : CartellaLocaleAssente;
}

std::int32_t VerificaPercorsi(const std::vector<RigaPercorso>& table, std::uint8_t flags, std::uint8_t mode) {
  for (;;) {
    Rapporto report;
    for (const RigaPercorso& row : table) verificaRiga(report, row, flags, mode);
    if (report.testo.empty() || (flags & SenzaRapporto) != 0 || !mostraRapporto(report, mode))
      return report.esito;
  }
}

}  // namespace tandemize
