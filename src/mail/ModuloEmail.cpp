#include "mail/ModuloEmail.h"

#include <utility>

#include "mail/ComposizioneMessaggio.h"
#include "mail/OggettiPosta.h"
#include "platform/machine.h"
#include "shell/Lingua.h"

namespace tandemize {

std::string RispostaServer;
std::int32_t CodiceAtteso = 0;
bool DialogoAttivo = false;
std::int32_t ByteRicevuti = -1;
std::int16_t PassoSmtp = 0;
bool ConAllegati = false;

namespace {

constexpr int TentativiMassimi = 7;
constexpr std::size_t CaratteriPerRisposta = 2048;
constexpr unsigned PassoAttesa = 20;  // milliseconds
constexpr std::string_view ServerOccupato = "421";
constexpr std::string_view ChiaveAccount = "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager";
constexpr std::size_t NomeAccountMinimo = 3;

// The number that a text begins with; blanks do not count, and a text without digits is 0.
std::int32_t Valore(std::string_view testo) {
  std::int32_t valore = 0;
  for (const char c : testo) {
    if (c == ' ') continue;
    if (c < '0' || c > '9') break;
    valore = valore * 10 + (c - '0');
  }
  return valore;
}

void Comando(std::string_view comando, std::int32_t codice, const MessaggioPosta& messaggio,
             std::int32_t& status) {
  CodiceAtteso = codice;
  InviaDati(std::string(comando) + "\r\n", status);
  if (status != StatoAnnullato) AttendiRisposta(messaggio, status);
}

// All of the address when it has no "@".
std::string_view DopoChiocciola(std::string_view indirizzo) {
  return indirizzo.substr(indirizzo.find('@') + 1);
}

void InviaMessaggio(const MessaggioPosta& messaggio, std::int32_t& status) {
  CodiceAtteso = 250;
  ComponiMessaggio(messaggio, status);
  if (status != StatoAnnullato && status != StatoAllegato) AttendiRisposta(messaggio, status);
}

// The message is the server's by now, so whatever it answers the mail is sent.
void Congeda(const MessaggioPosta& messaggio, std::int32_t& status) {
  Comando("QUIT", 221, messaggio, status);
  ScriviStato("Ready.");
  ScriviAvanzamento(0);
  ScriviRisposte("");
  RispostaServer.clear();
  DialogoAttivo = false;
  status = StatoSpedito;
}

void RispostaInattesa() {
  ChiudiWinsock();
  ScriviStato("The Server responds with an unexpected Response Code!");
}

void IniziaDialogo() {
  DialogoAttivo = true;
  PassoSmtp = 0;
  RispostaServer.clear();
  CodiceAtteso = 220;
}

void ConnessioneNonRiuscita(std::string_view server, std::int32_t& status) {
  if (status != StatoAnnullato) status = StatoConnessione;
  ScriviStato(Messaggio(319) + " " + std::string(server) +
              std::string(TestoErroreSocket(UltimoErroreSocket())));
  ChiudiWinsock();
}

// One attempt; true if another one may follow.
bool Tenta(std::string_view server, const MessaggioPosta& messaggio, std::int32_t& status) {
  if (!EsisteConnessione()) {
    status = StatoSenzaRete;
    return false;
  }
  if (!ApriSocket(server, PortaSmtp, status)) {
    ConnessioneNonRiuscita(server, status);
    return false;
  }
  ScriviStato(Messaggio(320) + " " + std::string(server));
  IniziaDialogo();
  AttendiRisposta(messaggio, status);
  DialogoAttivo = false;
  ChiudiWinsock();
  if (status == StatoSpedito || status == StatoAnnullato) return false;
  return RispostaServer.find(ServerOccupato) != std::string::npos;
}

}  // namespace

void SpedisciEmail(std::string_view server, MessaggioPosta messaggio, std::int32_t& status) {
  for (std::string* const valore : {&messaggio.from, &messaggio.to, &messaggio.subject})
    *valore = SuUnaRiga(*valore);
  RispostaServer.clear();
  status = StatoConnessione;
  ConAllegati = !messaggio.allegati.empty();
  for (int tentativo = 1; tentativo <= TentativiMassimi && Tenta(server, messaggio, status); ++tentativo) {
  }
}

void AttendiRisposta(const MessaggioPosta& messaggio, std::int32_t& status) {
  const std::uint64_t inizio = platform::monotonicMilliseconds();
  bool detto = false;
  ByteRicevuti = -1;
  for (;;) {
    LasciaEventi(status);
    if (status == StatoAnnullato) return;
    LeggiRisposta(messaggio, status);
    if (status == StatoAnnullato || ByteRicevuti >= 0 || !DialogoAttivo) return;
    if (!detto && platform::monotonicMilliseconds() - inizio > Attese.risposta) {
      ScriviStato("SMTP service error, timed out while waiting for response");
      detto = true;
    }
    if (SmtpSocket)
      SmtpSocket->Attendi(PassoAttesa);
    else
      platform::sleepMilliseconds(PassoAttesa);
  }
}

void LeggiRisposta(const MessaggioPosta& messaggio, std::int32_t& status) {
  if (!SmtpSocket) return;
  std::string risposta;
  ByteRicevuti = SmtpSocket->Ricevi(risposta, CaratteriPerRisposta);
  if (ByteRicevuti <= 0) return;
  RispostaServer += risposta + "\r\n";
  ScriviRisposte(RispostaServer);
  if (!DialogoAttivo) return;
  if (Valore(std::string_view(risposta).substr(0, 3)) != CodiceAtteso) {
    RispostaInattesa();
    return;
  }
  ++PassoSmtp;
  ProssimoPassoSmtp(messaggio, status);
}

void ProssimoPassoSmtp(const MessaggioPosta& messaggio, std::int32_t& status) {
  if (status == StatoAnnullato) {
    SmtpSocket.reset();
    return;
  }
  switch (PassoSmtp) {
    case 1:
      return Comando("HELO " + std::string(DopoChiocciola(messaggio.from)), 250, messaggio, status);
    case 2:
      status = StatoMittente;
      return Comando("MAIL FROM: <" + std::string(SenzaBianchi(messaggio.from)) + ">", 250, messaggio,
                     status);
    case 3:
      status = StatoDestinatario;
      return Comando("RCPT TO: <" + std::string(SenzaBianchi(messaggio.to)) + ">", 250, messaggio, status);
    case 4:
      return Comando("DATA", 354, messaggio, status);
    case 5:
      return InviaMessaggio(messaggio, status);
    case 6:
      return Congeda(messaggio, status);
    default:
      break;
  }
}

std::string AccountPredefinito() {
  const std::string account = platform::registryValue(ChiaveAccount, "Default Mail Account");
  if (account.size() < NomeAccountMinimo) return {};
  return platform::registryValue(std::string(ChiaveAccount) + "\\Accounts\\" + account, "SMTP Email Address");
}

bool EsisteConnessione() {
  return platform::networkUp();
}

void AzzeraModuloEmail() {
  AzzeraSocketSmtp();
  UsaOggettiPosta(nullptr);
  RispostaServer.clear();
  CodiceAtteso = 0;
  DialogoAttivo = ConAllegati = false;
  ByteRicevuti = -1;
  PassoSmtp = 0;
}

}  // namespace tandemize
