#include "synchronisation/Confronto.h"

#include <algorithm>

#include "errors/ModuloLog.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "synchronisation/AggiungiOperazione.h"
#include "synchronisation/ChiaviColonna.h"
#include "synchronisation/ConfrontoCoppia.h"
#include "synchronisation/Fusione.h"

namespace tandemize {

namespace {

constexpr std::size_t MolteDifferenzeDa = 1001, MolteDifferenzeFino = 6999, TroppeDifferenzeDa = 7001;
constexpr double BarraPiena = 100;

// Path of each column, with its separator.
std::vector<std::string> PercorsiDelleColonne() {
  std::vector<std::string> percorsi(ArrayScansione.Colonne());
  for (std::size_t c = 0; c < std::min(percorsi.size(), Backup_Path.size()); ++c)
    if (!Backup_Path[c].empty()) percorsi[c] = ConSeparatore(Backup_Path[c]);
  return percorsi;
}

// A server's names get the separator of all others; their full paths keep their own.
void NormalizzaSeparatori(TabellaScansione& tabella) {
  for (std::size_t c = 0; c < tabella.Colonne(); ++c) {
    if (tabella.Tipo(c) != PercorsoFtp) continue;  // a local name holds no "/"
    for (std::size_t r = 0; r < tabella.Righe(c); ++r) tabella.Riga(c, r).NomeConBarre = true;
  }
}

// So many that announcing them pays, and few enough for the processor's cache.
bool ProssimiPassi(Fusione& fusione, std::vector<PassoFusione>& passi) {
  constexpr std::size_t Massimo = 512;
  passi.clear();
  for (PassoFusione passo{}; passi.size() < Massimo && fusione.Prossimo(passo);) passi.push_back(passo);
  return !passi.empty();
}

bool FileInNumeroUguale() {
  for (std::size_t c = 1; c < ArrayScansione.Colonne(); ++c)
    if (ArrayScansione.Righe(c) != ArrayScansione.Righe(0)) return false;
  return true;
}

}  // namespace

Confronto::Confronto(FinestraOperazione& proprietaria) : proprietaria_(proprietaria) {}
Confronto::~Confronto() = default;

void Confronto::ContaDifferenze() {
  std::size_t totale = 0;
  for (std::size_t c = 0; c + 1 < ArrayScansione.Colonne(); c += 2) {
    const std::size_t uno = ArrayScansione.Righe(c), altro = ArrayScansione.Righe(c + 1);
    totale += std::max(uno, altro) - std::min(uno, altro);
  }
  // Exactly 7000 sets neither, and that gap is to be kept.
  if (totale >= MolteDifferenzeDa && totale <= MolteDifferenzeFino) MoltiDifferenze = true;
  if (totale >= TroppeDifferenzeDa) TroppeDifferenze = true;
}

void Confronto::OrdinaTutteLeUnita(FrmProgressBar& avanzamento) {
  const std::size_t colonne = ArrayScansione.Colonne();
  chiavi_.clear();
  chiavi_.resize(colonne);
  for (std::size_t c = 0; c < colonne && !proprietaria_.ProcessoAnnullato; ++c) {
    avanzamento.Testo(Messaggio(285) + " " + std::to_string(c + 1));
    OrdinaUnita(c);
    avanzamento.Valore(BarraPiena * static_cast<double>(c + 1) / static_cast<double>(colonne));
    DoEvents();
  }
}

void Confronto::OrdinaUnita(std::size_t colonna) {
  if (ArrayScansione.Righe(colonna) == 0) return;
  chiavi_[colonna] =
      std::make_unique<ChiaviColonna>(ArrayScansione, colonna, proprietaria_.ProcessoAnnullato);
  if (!proprietaria_.ProcessoAnnullato) chiavi_[colonna]->OrdinaArray(ArrayScansione, colonna);
}

void Confronto::VisualizzaRapporto(FrmProgressBar& avanzamento) {
  contatori_.assign(ArrayScansione.Colonne(), {});
  NormalizzaSeparatori(ArrayScansione);
  if (FileInNumeroUguale()) MoltiDifferenze = false;
  avanzamento.Testo(Messaggio(284));
  ScriviLog(Messaggio(73), RigaNormale);
  PreparaChiavi();
  Operazioni operazioni(*this, PercorsiDelleColonne());
  const std::vector<Coppia> coppie = Coppie();
  double base = 0;
  for (const Coppia& coppia : coppie) {
    if (proprietaria_.ProcessoAnnullato) break;
    ConfrontaCoppia(coppia, operazioni, avanzamento, base);
    schermo().AggiornaInfo(coppia.a, contatori_[coppia.a]);
    schermo().AggiornaInfo(coppia.b, contatori_[coppia.b]);
  }
  chiavi_.clear();
  if (TandemMode == ModoSingolo && !proprietaria_.ProcessoAnnullato) ControllaSomme(coppie);
  if (ServerConnesso("")) DisconnettiServer("");
}

// Single Mode compares every path with every later one, Multiple Mode the two of each row.
std::vector<Confronto::Coppia> Confronto::Coppie() const {
  const std::size_t colonne = ArrayScansione.Colonne();
  std::vector<Coppia> coppie;
  for (std::size_t a = 0; a < colonne; a += TandemMode == ModoSingolo ? 1 : 2)
    for (std::size_t b = a + 1; b < (TandemMode == ModoSingolo ? colonne : std::min(a + 2, colonne)); ++b)
      coppie.push_back({a, b});
  return coppie;
}

// Columns that no sort has gone over are taken as they stand.
void Confronto::PreparaChiavi() {
  chiavi_.resize(ArrayScansione.Colonne());
  for (std::size_t c = 0; c < chiavi_.size(); ++c)
    if (!chiavi_[c] || chiavi_[c]->Numero() != ArrayScansione.Righe(c))
      chiavi_[c] = std::make_unique<ChiaviColonna>(ArrayScansione, c, proprietaria_.ProcessoAnnullato);
}

void Confronto::ConfrontaCoppia(const Coppia& coppia, Operazioni& operazioni, FrmProgressBar& avanzamento,
                                double& base) {
  ContatoriUnita &contatoriA = contatori_[coppia.a], &contatoriB = contatori_[coppia.b];
  contatoriA.Posizione = contatoriB.Posizione = 0;
  if (!operazioni.HaPercorso(coppia.a) || !operazioni.HaPercorso(coppia.b)) return;
  Fusione fusione({ArrayScansione, coppia.a, *chiavi_[coppia.a]},
                  {ArrayScansione, coppia.b, *chiavi_[coppia.b]});
  ConfrontoCoppia confronto(*this, proprietaria_, operazioni, contatori_, coppia.a, coppia.b);
  const double totale = TotaleAvanzamento();
  std::vector<PassoFusione> passi;
  while (ProssimiPassi(fusione, passi)) {
    confronto.Annuncia(passi);
    for (const PassoFusione& passo : passi) {
      confronto.Esegui(passo);
      avanzamento.Valore(BarraPiena * (base + contatoriA.Posizione + contatoriB.Posizione) / totale);
      DoEvents();
      if (proprietaria_.ProcessoAnnullato) return;
    }
  }
  base += contatoriA.Posizione + contatoriB.Posizione;
}

// Each path counts one more than its files; in Single Mode each pair counts its two paths.
double Confronto::TotaleAvanzamento() const {
  double totale = 0;
  const std::size_t colonne = ArrayScansione.Colonne();
  for (std::size_t c = 0; c < colonne; ++c) totale += static_cast<double>(ArrayScansione.Righe(c)) + 1;
  return TandemMode == ModoSingolo ? totale * static_cast<double>(colonne - 1) : totale;
}

// An alarm only: nothing is undone. The counters run on over the pairs while the positions are those of a
// path's last pair, so that paths which lack different files raise it too.
void Confronto::ControllaSomme(const std::vector<Coppia>& coppie) const {
  const auto somma = [&](std::size_t c) { return contatori_[c].Posizione + contatori_[c].Mancanti; };
  for (const Coppia& coppia : coppie)
    if (somma(coppia.a) != somma(coppia.b))
      MsgBox("Errore grave la somma dei file non corrisponde", StileSemplice);
}

}  // namespace tandemize
