#include "synchronisation/Fusione.h"

#include <algorithm>

namespace tandemize {

namespace {
using Tipo = PassoFusione::Tipo;
}  // namespace

bool Fusione::Prossimo(PassoFusione& passo) {
  if (prossimoDelGruppo_ == gruppo_.size()) {
    const bool finePrima = posizionePrima_ == prima_.chiavi.Numero();
    const bool fineSeconda = posizioneSeconda_ == seconda_.chiavi.Numero();
    if (finePrima && fineSeconda) return false;
    const bool insieme =
        !finePrima && !fineSeconda && prima_.chiavi[posizionePrima_] == seconda_.chiavi[posizioneSeconda_];
    const bool piùNomi = insieme && (prima_.chiavi.ComeLaProssima(posizionePrima_) ||
                                     seconda_.chiavi.ComeLaProssima(posizioneSeconda_));
    if (!piùNomi) {
      passo = insieme ? PassoFusione{Tipo::InEntrambe, false, posizionePrima_++, posizioneSeconda_++}
                      : PassoSemplice();
      return true;
    }
    PreparaGruppo();
  }
  passo = gruppo_[prossimoDelGruppo_++];
  return true;
}

// The smaller name is in its column only.
PassoFusione Fusione::PassoSemplice() {
  const bool finePrima = posizionePrima_ == prima_.chiavi.Numero();
  const bool fineSeconda = posizioneSeconda_ == seconda_.chiavi.Numero();
  if (fineSeconda || (!finePrima && prima_.chiavi[posizionePrima_] < seconda_.chiavi[posizioneSeconda_]))
    return {Tipo::SoloNellaPrima, false, posizionePrima_++, 0};
  return {Tipo::SoloNellaSeconda, false, 0, posizioneSeconda_++};
}

void Fusione::PreparaGruppo() {
  gruppo_.clear();
  prossimoDelGruppo_ = 0;
  Righe prime = RigheDelGruppo(prima_, posizionePrima_);
  Righe seconde = RigheDelGruppo(seconda_, posizioneSeconda_);
  AccoppiaUguali(prime, seconde);
  const std::size_t coppie = std::min(prime.size(), seconde.size());
  for (std::size_t i = 0; i < coppie; ++i) gruppo_.push_back({Tipo::InEntrambe, true, prime[i], seconde[i]});
  for (std::size_t i = coppie; i < prime.size(); ++i)
    gruppo_.push_back({Tipo::SoloNellaPrima, true, prime[i], 0});
  for (std::size_t i = coppie; i < seconde.size(); ++i)
    gruppo_.push_back({Tipo::SoloNellaSeconda, true, 0, seconde[i]});
}

Fusione::Righe Fusione::RigheDelGruppo(const ColonnaOrdinata& colonna, std::uint32_t& posizione) {
  Righe righe{posizione};
  while (colonna.chiavi.ComeLaProssima(posizione++)) righe.push_back(posizione);
  return righe;
}

// Both stand in the order of their names, so this is a merge again. What has found no partner stays.
void Fusione::AccoppiaUguali(Righe& prime, Righe& seconde) {
  Righe primeSole, secondeSole;
  std::size_t i = 0, j = 0;
  while (i < prime.size() || j < seconde.size()) {
    const std::string primo =
        i < prime.size() ? NomeRelativo(prima_.tabella.Riga(prima_.colonna, prime[i])) : std::string();
    const std::string secondo = j < seconde.size()
                                    ? NomeRelativo(seconda_.tabella.Riga(seconda_.colonna, seconde[j]))
                                    : std::string();
    if (primo == secondo)
      gruppo_.push_back({Tipo::InEntrambe, true, prime[i++], seconde[j++]});
    else if (secondo.empty() || (!primo.empty() && primo < secondo))
      primeSole.push_back(prime[i++]);
    else
      secondeSole.push_back(seconde[j++]);
  }
  prime = std::move(primeSole);
  seconde = std::move(secondeSole);
}

}  // namespace tandemize
