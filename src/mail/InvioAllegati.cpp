// The parts of a message with attachments.
#include <algorithm>
#include <array>

#include "mail/Base64.h"
#include "mail/ComposizioneMessaggio.h"
#include "mail/DomandaAllegato.h"
#include "mail/ModuloEmail.h"
#include "mail/OggettiPosta.h"
#include "platform/machine.h"
#include "platform/newfile.h"
#include "shell/Lingua.h"

namespace tandemize {

namespace {

constexpr std::size_t CaratteriPerRiga = 76;
constexpr std::size_t BytePerLettura = 32'768;
constexpr std::uint64_t PassoPausa = 20;  // milliseconds
constexpr int MetàBarra = 50, MassimoBarra = 100;

enum class EsitoLettura { Letto, Annullato, Fallito };

struct Invio {
  double inviati = 0, previsti = 0;  // letters
};

// Adds up the sizes of the files; false if one is missing.
bool SommaDimensioni(const std::vector<std::string>& allegati, double& byte) {
  for (const std::string& percorso : allegati) {
    platform::FileStatus stato;
    if (platform::query(percorso, stato) != platform::kNoError) return false;
    if ((stato.attributes & platform::kDirectory) != 0) return false;
    byte += static_cast<double>(stato.size);
  }
  return true;
}

EsitoLettura LeggiIntero(platform::SourceFile& file, std::string& contenuto, std::int32_t& status) {
  std::array<char, BytePerLettura> pezzo{};
  for (std::size_t letti = 0;;) {
    if (file.read(pezzo.data(), pezzo.size(), letti) != platform::kNoError) return EsitoLettura::Fallito;
    contenuto.append(pezzo.data(), letti);
    LasciaEventi(status);
    if (status == StatoAnnullato) return EsitoLettura::Annullato;
    if (letti == 0) return EsitoLettura::Letto;
  }
}

std::string CodificaInRighe(std::string_view contenuto) {
  TabellaCodifica codifica{};
  TabellaDecodifica decodifica{};
  PreparaBase64(codifica, decodifica);
  ByteDati byte, codificati, righe;
  StringaInByte(contenuto, byte);
  CodificaBase64(byte, codificati, codifica);
  SpezzaRighe(CaratteriPerRiga, codificati, righe);
  return {righe.begin(), righe.end()};
}

// Paces the server.
void Pausa(std::int32_t& status) {
  const std::uint64_t inizio = platform::monotonicMilliseconds();
  for (;;) {
    LasciaEventi(status);
    const std::uint64_t passati = platform::monotonicMilliseconds() - inizio;
    if (status == StatoAnnullato || passati >= Attese.pausaAllegati) return;
    platform::sleepMilliseconds(static_cast<unsigned>(std::min(Attese.pausaAllegati - passati, PassoPausa)));
  }
}

void InviaCodificato(const std::string& percorso, const std::string& codificato, Invio& invio,
                     std::int32_t& status) {
  for (const PezzoMessaggio& pezzo : PezziDelMessaggio(codificato)) {
    Pausa(status);
    InviaDati(pezzo.testo, status);
    if (status == StatoAnnullato) return;
    invio.inviati += static_cast<double>(CaratteriPerInvio);
    const auto avanzamento = static_cast<long long>(invio.inviati * MetàBarra / invio.previsti + MetàBarra);
    if (avanzamento <= MassimoBarra) ScriviAvanzamento(avanzamento);
    ScriviStato(Messaggio(323) + " " + percorso + "... " +
                std::to_string(pezzo.testo.size() + pezzo.posizione) + " Bytes from " +
                std::to_string(codificato.size()));
  }
}

std::string_view NomeAllegato(std::string_view percorso) {
  return SenzaBianchi(percorso.substr(percorso.rfind('\\') + 1));
}

// False ends the message where it stands, without boundary and closing line: after a stop, an empty file, and
// a file that cannot be read, which counts as missing.
bool InviaAllegato(const std::string& percorso, Invio& invio, std::int32_t& status) {
  InviaDati(TestataAllegato(NomeAllegato(percorso)), status);
  platform::SourceFile file;
  std::string contenuto;
  if (file.open(percorso) != platform::kNoError) {
    status = StatoAllegato;
    return false;
  }
  if (!AllegatoAccettato(file.status().size)) return true;
  ScriviStato(Messaggio(322) + " " + percorso);
  const EsitoLettura esito = LeggiIntero(file, contenuto, status);
  file.close();
  if (esito == EsitoLettura::Fallito) status = StatoAllegato;
  if (esito != EsitoLettura::Letto || contenuto.empty()) return false;
  InviaCodificato(percorso, CodificaInRighe(contenuto), invio, status);
  return true;
}

}  // namespace

void InviaAllegati(const std::vector<std::string>& allegati, std::int32_t& status) {
  constexpr double LetterePerByte = 1.4;
  ScriviAvanzamento(MetàBarra);
  double byte = 0;
  if (!SommaDimensioni(allegati, byte)) {
    status = StatoAllegato;
    return;
  }
  Invio invio{0, std::max(byte * LetterePerByte, 1.0)};
  for (const std::string& percorso : allegati)
    if (!InviaAllegato(percorso, invio, status)) return;
  InviaDati(ChiusuraParti, status);
  if (status != StatoAnnullato) InviaDati(ChiusuraMessaggio, status);
}

}  // namespace tandemize
