#include "mail/ConnessioneTcp.h"

#include "platform/sockets.h"

namespace tandemize {

namespace {

class ConnessioneTcp : public ConnessioneSmtp {
 public:
  platform::ErrorCode Connetti(const std::string& host, std::uint16_t porta,
                               const std::function<bool()>& continua) {
    const platform::ErrorCode errore = tcp_.connect(host, porta, Attese.connessione, continua);
    if (errore == platform::kNoError) tcp_.dropWhenClosed();
    return errore;
  }

  bool PuoScrivere() override { return tcp_.writableNow(); }

  // What the host does not take at once is kept here and goes out later, so that a text is taken whole or not
  // at all.
  int Invia(std::string_view byte) override {
    if (!InviaResto()) return -1;
    resto_ = byte;
    if (!InviaResto() && (errore_ != platform::kSocketWouldBlock || resto_.size() == byte.size())) {
      resto_.clear();
      return -1;
    }
    return static_cast<int>(byte.size());
  }

  // A connection that broke brings nothing more, as one that the server has ended.
  int Ricevi(std::string& pezzo, std::size_t massimo) override {
    static_cast<void>(InviaResto());
    pezzo.resize(massimo);
    std::size_t letti = 0;
    const platform::ErrorCode errore = tcp_.read(pezzo.data(), pezzo.size(), letti);
    pezzo.resize(errore == platform::kNoError ? letti : 0);
    return errore == platform::kSocketWouldBlock ? -1 : static_cast<int>(pezzo.size());
  }

  void Attendi(unsigned millisecondi) override {
    static_cast<void>(platform::waitToRead(tcp_, millisecondi, {}));
  }

  [[nodiscard]] int Errore() const override { return errore_; }

 private:
  // True if nothing is left to send.
  bool InviaResto() {
    while (!resto_.empty()) {
      std::size_t presi = 0;
      errore_ = tcp_.write(resto_.data(), resto_.size(), presi);
      if (errore_ != platform::kNoError) return false;
      resto_.erase(0, presi);
    }
    return true;
  }

  platform::TcpChannel tcp_;
  std::string resto_;
  platform::ErrorCode errore_ = platform::kNoError;
};

}  // namespace

std::unique_ptr<ConnessioneSmtp> ApriConnessioneTcp(const std::string& host, std::uint16_t porta,
                                                    const std::function<bool()>& continua, int& errore) {
  auto connessione = std::make_unique<ConnessioneTcp>();
  errore = connessione->Connetti(host, porta, continua);
  if (errore != platform::kNoError) return nullptr;
  return connessione;
}

}  // namespace tandemize
