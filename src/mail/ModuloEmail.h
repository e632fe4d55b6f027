// A small SMTP client: the dialogue that hands one message to a server. Plain SMTP with HELO, without
// authentication and encryption.
//
// A dialogue is a chain of calls: each good reply starts the next step from inside the waiting loop of the
// step before. One receive is one reply, whatever it holds; only its first three characters count. A server
// that says nothing holds the dialogue for as long as the connection stands, or until `status` is 8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mail/SocketSmtp.h"

namespace tandemize {

// Result status of a dialogue.
inline constexpr std::int32_t StatoSpedito = 0;
inline constexpr std::int32_t StatoConnessione = 1;   // failed before the sender was named
inline constexpr std::int32_t StatoMittente = 2;      // failed at the sender
inline constexpr std::int32_t StatoDestinatario = 3;  // failed at the recipient, or later
inline constexpr std::int32_t StatoAllegato = 4;      // an attachment is missing
inline constexpr std::int32_t StatoTempo = 6;         // set by no step
inline constexpr std::int32_t StatoMessaggio = 7;     // set by no step
inline constexpr std::int32_t StatoSenzaRete = 9;     // no network

// State of the dialogue. Written here.
extern std::string RispostaServer;  // all replies of the attempt, each followed by CR LF
extern std::int32_t CodiceAtteso;   // the reply code that the next step needs
extern bool DialogoAttivo;          // replies are looked at
extern std::int32_t ByteRicevuti;   // what the last receive gave; below 0 while nothing came
extern std::int16_t PassoSmtp;      // the step reached, 0 to 6
extern bool ConAllegati;            // attachments were passed

struct MessaggioPosta {
  std::string from, to, subject, body;
  std::vector<std::string> allegati;  // paths in the program's notation
};

// Sends one message through a server ("host" or "host:port"). Progress goes to the objects of
// `UsaOggettiPosta`. A server that answers 421 anywhere is tried again at once, seven times in all. `status`
// tells the outcome; nothing is open afterwards. Line ends and NULs inside addresses and subject count as
// blanks.
void SpedisciEmail(std::string_view server, MessaggioPosta messaggio, std::int32_t& status);

// The step that `PassoSmtp` says: sends its line and waits for the answer.
void ProssimoPassoSmtp(const MessaggioPosta& messaggio, std::int32_t& status);
// Looks once whether a reply has come, and goes on with the dialogue if it has.
void LeggiRisposta(const MessaggioPosta& messaggio, std::int32_t& status);
// Waits for a reply, and through all that follows from it.
void AttendiRisposta(const MessaggioPosta& messaggio, std::int32_t& status);

// The sender's address as the system's mail account has it, empty without one.
[[nodiscard]] std::string AccountPredefinito();

[[nodiscard]] bool EsisteConnessione();  // a network is up

// Sends headers and body, with attachments also these, and the closing line. `status` becomes 4 if an
// attachment is missing, and nothing of the attachments or the closing line has gone then.
void ComponiMessaggio(const MessaggioPosta& messaggio, std::int32_t& status);
void InviaAllegati(const std::vector<std::string>& allegati, std::int32_t& status);

// Back to the state at the program's start, for tests.
void AzzeraModuloEmail();

}  // namespace tandemize
