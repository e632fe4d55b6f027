#include "mail/SocketSmtp.h"

#include <utility>

#include "errors/ModuloGestioneErrori.h"
#include "mail/ComposizioneMessaggio.h"
#include "mail/ConnessioneTcp.h"
#include "mail/OggettiPosta.h"
#include "platform/machine.h"
#include "platform/sockets.h"
#include "shell/Lingua.h"
#include "shell/Schermo.h"

namespace tandemize {

AttesePosta Attese;
bool WinsockAvviato = false;
std::unique_ptr<ConnessioneSmtp> SmtpSocket;

namespace {

constexpr std::uint16_t PortaRifiutata = 0xFFFF;
constexpr unsigned PassoAttesa = 5;  // milliseconds

int ultimoErrore = 0;
FabbricaConnessioni fabbricaInUso;

// A stop from before the mail is not its concern: it stays set until a retry consumes it.
bool arrestoPrecedente = false;
bool interrotta = false;

bool ArrestoArrivato() {
  return interrotta || platform::stopRequested() || (AnnullamentoRichiesto && !arrestoPrecedente);
}

// Waits until the new connection can be written to; the caller keeps it even if that takes too long.
void AttendiScrittura(std::int32_t& status) {
  const std::uint64_t inizio = platform::monotonicMilliseconds();
  while (status != StatoAnnullato && !SmtpSocket->PuoScrivere() &&
         platform::monotonicMilliseconds() - inizio <= Attese.scrittura) {
    LasciaEventi(status);
    platform::sleepMilliseconds(PassoAttesa);
  }
}

void AbbandonaInvio() {
  ultimoErrore = SmtpSocket->Errore();
  ScriviStato(Messaggio(321) + std::to_string(ultimoErrore) + std::string(TestoErroreSocket(ultimoErrore)));
  ChiudiWinsock();
}

}  // namespace

void UsaConnessioni(FabbricaConnessioni fabbrica) {
  fabbricaInUso = std::move(fabbrica);
}

bool AvviaWinsock() {
  // The host's sockets need no start.
  return WinsockAvviato = true;
}

void ChiudiWinsock() {
  SmtpSocket.reset();
  WinsockAvviato = false;
}

int UltimoErroreSocket() {
  return ultimoErrore;
}

bool ApriSocket(std::string_view server, std::uint16_t porta, std::int32_t& status) {
  AvviaWinsock();
  const platform::NetworkAddress indirizzo = platform::splitHostAndPort(server, porta);
  const auto continua = [&status] {
    LasciaEventi(status);
    return status != StatoAnnullato;
  };
  SmtpSocket.reset();
  ultimoErrore = platform::kSocketInvalid;
  if (indirizzo.port != PortaRifiutata) {
    const FabbricaConnessioni& fabbrica = fabbricaInUso ? fabbricaInUso : ApriConnessioneTcp;
    SmtpSocket = fabbrica(indirizzo.ip, indirizzo.port, continua, ultimoErrore);
  }
  if (!SmtpSocket) {
    ChiudiWinsock();
    return false;
  }
  AttendiScrittura(status);
  return true;
}

void InviaDati(std::string_view testo, std::int32_t& status) {
  const std::string_view dati = PrimoPezzo(testo);
  if (dati.empty()) return;
  const std::uint64_t inizio = platform::monotonicMilliseconds();
  for (;;) {
    LasciaEventi(status);
    if (status == StatoAnnullato || !SmtpSocket) return;
    const int inviati = SmtpSocket->Invia(dati);
    if (inviati > 0) return;
    if (inviati < 0 && platform::monotonicMilliseconds() - inizio >= Attese.invio) break;
    platform::sleepMilliseconds(PassoAttesa);
  }
  AbbandonaInvio();
}

void LasciaEventi(std::int32_t& status) {
  // Looked at before as well: the screen takes a stop signal away when it hands it to an operation.
  bool arresto = ArrestoArrivato();
  DoEvents();
  arresto = arresto || ArrestoArrivato();
  if (arresto) status = StatoAnnullato;
}

void SorvegliaArresto() {
  arrestoPrecedente = AnnullamentoRichiesto;
  interrotta = false;
}

void InterrompiPosta() {
  interrotta = true;
}

void AzzeraSocketSmtp() {
  ChiudiWinsock();
  Attese = {};
  fabbricaInUso = nullptr;
  ultimoErrore = 0;
  arrestoPrecedente = interrotta = false;
}

}  // namespace tandemize
