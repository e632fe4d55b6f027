// The bottom of the mail client: one TCP connection, sending with a bounded retry, and the texts of the
// sockets' error numbers. The process has one connection at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tandemize {

// Result status of a dialogue: 8 asks every loop of the client to end.
inline constexpr std::int32_t StatoAnnullato = 8;

inline constexpr std::uint16_t PortaSmtp = 25;

// An open connection. No call waits but `Attendi`.
class ConnessioneSmtp {
 public:
  ConnessioneSmtp() = default;
  virtual ~ConnessioneSmtp() = default;  // drops it at once, whatever is still to be sent
  ConnessioneSmtp(const ConnessioneSmtp&) = delete;
  ConnessioneSmtp& operator=(const ConnessioneSmtp&) = delete;

  [[nodiscard]] virtual bool PuoScrivere() = 0;
  // Gives the number of bytes taken, which go out on their own, or -1 with `Errore`.
  [[nodiscard]] virtual int Invia(std::string_view byte) = 0;
  // Puts what has come, at most `massimo` bytes, into `pezzo`. Gives their number, 0 when the connection has
  // ended, -1 when nothing has come.
  [[nodiscard]] virtual int Ricevi(std::string& pezzo, std::size_t massimo) = 0;
  // Returns when something has come or the connection has ended, at the latest after that time.
  virtual void Attendi(unsigned millisecondi) = 0;
  // The number of the last failure, one of those that `TestoErroreSocket` knows.
  [[nodiscard]] virtual int Errore() const = 0;
};

// Makes a connection. `continua` is called again and again while it waits, lets events run, and says whether
// to go on. Empty after a failure, whose number is in `errore`.
using FabbricaConnessioni = std::function<std::unique_ptr<ConnessioneSmtp>(
    const std::string& host, std::uint16_t porta, const std::function<bool()>& continua, int& errore)>;
// From now on connections come from `fabbrica`, from the host's own network when it is empty.
void UsaConnessioni(FabbricaConnessioni fabbrica);

// How long the client waits, in milliseconds. Shortened by tests.
struct AttesePosta {
  unsigned connessione = 130'000;  // until a server answers at all; the host itself gives up about then
  unsigned scrittura = 10'000;     // until a new connection can be written to
  unsigned invio = 5'000;          // until one piece is taken
  unsigned risposta = 20'000;      // until a reply counts as overdue, which ends nothing
  unsigned pausaAllegati = 200;    // before each piece of an attachment
};
extern AttesePosta Attese;  // written by tests only

extern bool WinsockAvviato;  // a connection may be open; written here
extern std::unique_ptr<ConnessioneSmtp>
    SmtpSocket;  // empty when there is none; written here and by the dialogue

bool AvviaWinsock();                     // gives `WinsockAvviato`, which is then set
void ChiudiWinsock();                    // drops the connection and clears `WinsockAvviato`
[[nodiscard]] int UltimoErroreSocket();  // of the last failure to connect or send

// Connects to a server, whose name may carry its port ("host:port"); otherwise `porta` stands. A dotted
// address is not looked up. True if `SmtpSocket` is open, even if it cannot be written to yet; false for port
// 65535, a name that cannot be resolved and a refused connection, with nothing open and `UltimoErroreSocket`
// set. `status` becomes 8 when the program is to end meanwhile.
[[nodiscard]] bool ApriSocket(std::string_view server, std::uint16_t porta, std::int32_t& status);

// Sends the first 8192 characters of a text, waiting until they are taken. When they are not after 5 seconds
// the number and text of the error go to the status label and the connection is closed; `status` stays.
// Nothing to send, or no connection, does nothing.
void InviaDati(std::string_view testo, std::int32_t& status);

// English text of a number, empty for one that is not in the table.
[[nodiscard]] std::string_view TestoErroreSocket(std::int32_t codice);

// Lets events run. `status` becomes 8 if since `SorvegliaArresto` the user stopped the operation that the
// mail belongs to, `InterrompiPosta` was called, or a stop signal came.
void LasciaEventi(std::int32_t& status);
void SorvegliaArresto();
// The program is to end: a dialogue that runs or waits gives up at its next look.
void InterrompiPosta();

// Back to the state at the program's start, for tests.
void AzzeraSocketSmtp();

}  // namespace tandemize
