// Step 5 of the dialogue: headers and body, piece by piece.
#include "mail/ComposizioneMessaggio.h"
#include "mail/ModuloEmail.h"
#include "mail/OggettiPosta.h"
#include "platform/machine.h"
#include "shell/Lingua.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

// The bar passes over the first piece of a message in parts. The count is the position behind the piece, from
// 1 on as positions of texts are: that of the last piece is one more than the length, unless blanks were
// trimmed.
void MostraAvanzamento(const PezzoMessaggio& pezzo, std::size_t lunghezza) {
  const std::size_t conto = LunghezzaInCaratteri(pezzo.testo) + pezzo.posizione;
  if (!ConAllegati || pezzo.posizione > 1) ScriviAvanzamento(static_cast<long long>(conto * 100 / lunghezza));
  ScriviStato(Messaggio(324) + std::to_string(conto) + " Bytes from " + std::to_string(lunghezza));
}

}  // namespace

void ComponiMessaggio(const MessaggioPosta& messaggio, std::int32_t& status) {
  const std::string testo = ProteggiPunti(TestoMessaggio(messaggio.from, messaggio.to, messaggio.subject,
                                                         messaggio.body, platform::now(), ConAllegati));
  const std::size_t lunghezza = LunghezzaInCaratteri(testo);
  for (const PezzoMessaggio& pezzo : PezziDelMessaggio(testo)) {
    InviaDati(pezzo.testo, status);
    if (status == StatoAnnullato) return;
    MostraAvanzamento(pezzo, lunghezza);
  }
  if (ConAllegati)
    InviaAllegati(messaggio.allegati, status);
  else
    InviaDati(ChiusuraMessaggio, status);
}

}  // namespace tandemize
