// The servers that lists of files need.
#include <array>
#include <string>
#include <unordered_set>

#include "profile/ModuloProfilo.h"
#include "storage/ModuloArray.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "synchronisation/RecordFile.h"

namespace tandemize {

namespace {

class Collegamento {
 public:
  Collegamento(bool sincronizzazione, bool& fallita)
      : sincronizzazione_(sincronizzazione), fallita_(fallita) {}

  // Files of one folder lie on one server, so the profile is asked once a folder.
  void connetti(const RecordFile& record) {
    if (record.TipoPercorso != PercorsoFtp) return;
    qualcuno_ = true;
    if (fermato_ || !cartelle_.insert(record.CartellaDelFile()).second) return;
    const std::uint8_t server = IndiceServerDaPercorso(sincronizzazione_, record.Percorso());
    if (std::exchange(provati_[server], true)) return;
    std::string messaggio;
    bool fallita = false;
    const std::int32_t errore = Connetti_Al_Server_FTP(server, messaggio, fallita, false);
    fallita_ = fallita_ || errore != 0;
    fermato_ = errore == platform::kFtpStopped;
  }

  [[nodiscard]] bool qualcuno() const { return qualcuno_; }

 private:
  bool sincronizzazione_;
  bool& fallita_;
  bool qualcuno_ = false, fermato_ = false;
  std::unordered_set<const std::string*> cartelle_;
  std::array<bool, UINT8_MAX + 1> provati_{};
};

}  // namespace

void ConnettiServerListe(const TabellaScansione& tabella, bool sincronizzazione, bool& fallita) {
  Collegamento collegamento(sincronizzazione, fallita);
  for (std::size_t colonna = 0; colonna < tabella.Colonne(); ++colonna)
    for (std::size_t riga = 0; riga < tabella.Righe(colonna); ++riga)
      collegamento.connetti(tabella.Riga(colonna, riga));
}

bool ConnettiServerOggetti(const ListaTrasferimento& lista, bool sincronizzazione, bool& fallita) {
  Collegamento collegamento(sincronizzazione, fallita);
  for (std::size_t i = 0; i < lista.Numero(); ++i) {
    collegamento.connetti(lista[i].Sorgente);
    collegamento.connetti(lista[i].Destinazione);
  }
  return collegamento.qualcuno();
}

}  // namespace tandemize
