#include "synchronisation/RecordFile.h"

#include <algorithm>
#include <cstring>

#include "presentation/FrmProgressBar.h"
#include "shell/Lingua.h"
#include "shell/Schermo.h"
#include "storage/File_System.h"
#include "storage/Percorsi.h"

namespace tandemize {

TabellaScansione ArrayScansione;
ListaTrasferimento ArrayTrasferimento;

namespace {
constexpr std::size_t ByteDiUnBlocco = std::size_t{256} * 1024;
const RecordFile RecordVuoto;
}  // namespace

const std::string* DepositoNomi::Cartella(std::string_view percorso) {
  if (cartelle_.empty() || cartelle_.back() != percorso) cartelle_.emplace_back(percorso);
  return &cartelle_.back();
}

const char* DepositoNomi::Testo(std::string_view testo) {
  if (testo.size() > liberi_) {
    liberi_ = std::max(ByteDiUnBlocco, testo.size());
    blocchi_.push_back(std::make_unique_for_overwrite<char[]>(liberi_));
    prossimo_ = blocchi_.back().get();
  }
  char* posto = prossimo_;
  if (!testo.empty()) std::memcpy(posto, testo.data(), testo.size());
  prossimo_ += testo.size();
  liberi_ -= testo.size();
  return posto;
}

std::string RecordFile::Percorso() const {
  std::string percorso;
  if (cartella_ == nullptr) return percorso;
  percorso.reserve(cartella_->size() + lunghezza_);
  percorso.append(*cartella_).append(nome_, lunghezza_);
  return percorso;
}

std::string RecordFile::Nome() const {
  if (Vuoto()) return {};
  std::string nome;
  nome.reserve(LunghezzaNome());
  nome.append(CartellaRelativa());
  nome.append(UltimoNome().substr(inizio_ > cartella_->size() ? inizio_ - cartella_->size() : 0));
  if (NomeConBarre) std::replace(nome.begin(), nome.end(), '/', '\\');
  return nome;
}

std::string RecordFile::NomeMaiuscolo() const {
  std::string nome = Maiuscolo(Nome());
  if (TipoPercorso == PercorsoFtp) std::replace(nome.begin(), nome.end(), '/', '\\');
  return nome;
}

std::string RecordFile::DataFile() const {
  return Data == DataAssente ? std::string() : TestoDataFile(Data);
}

void RecordFile::PrendiNomi(const RecordFile& altro) {
  cartella_ = altro.cartella_;
  nome_ = altro.nome_;
  lunghezza_ = altro.lunghezza_;
  inizio_ = altro.inizio_;
}

void TabellaScansione::Azzera(std::size_t colonne) {
  colonne_.clear();
  colonne_.resize(colonne);
  deposito_ = std::make_shared<DepositoNomi>();
}

void TabellaScansione::Riordina(std::size_t colonna, std::vector<std::uint32_t>& ordine) {
  ListaABlocchi<RecordFile>& righe = colonne_[colonna].righe;
  // Cycle by cycle: a place that has its row points to itself from then on.
  for (std::uint32_t inizio = 0; inizio < ordine.size(); ++inizio) {
    if (ordine[inizio] == inizio) continue;
    const RecordFile prima = righe[inizio];
    std::uint32_t posto = inizio;
    while (ordine[posto] != inizio) {
      const std::uint32_t prossimo = ordine[posto];
      righe[posto] = righe[prossimo];
      ordine[posto] = posto;
      posto = prossimo;
    }
    righe[posto] = prima;
    ordine[posto] = posto;
  }
}

const RecordFile& TabellaScansione::Riga(std::size_t colonna, std::size_t riga) const {
  return riga < Righe(colonna) ? colonne_[colonna].righe[riga] : RecordVuoto;
}

void ListaTrasferimento::Accorcia(std::size_t numero) {
  record_.Accorcia(numero);
  if (!record_.empty()) return;
  depositi_.clear();
  proprio_.reset();
}

DepositoNomi& ListaTrasferimento::Deposito() {
  if (!proprio_) proprio_ = std::make_shared<DepositoNomi>();
  return *proprio_;
}

void ListaTrasferimento::Conserva(const std::shared_ptr<DepositoNomi>& deposito) {
  if (depositi_.empty() || depositi_.back() != deposito) depositi_.push_back(deposito);
}

namespace {

constexpr std::size_t PassoDiSvuotamento = 4096;

void SvuotaConAvanzamento(std::size_t numero, const auto& accorcia) {
  if (numero > 1000) {
    FrmProgressBar finestra(nullptr, Messaggio(318), static_cast<double>(numero));
    for (std::size_t resto = numero; resto > PassoDiSvuotamento; resto -= PassoDiSvuotamento) {
      accorcia(resto - PassoDiSvuotamento);
      finestra.Valore(static_cast<double>(numero - resto));
      DoEvents();
    }
  }
  accorcia(0);
}

}  // namespace

void SvuotaListaAProgressione(int lista) {
  if (lista == 1) {
    for (std::size_t c = 0; c < ArrayScansione.Colonne(); ++c)
      SvuotaConAvanzamento(ArrayScansione.Righe(c), [&](std::size_t n) { ArrayScansione.Accorcia(c, n); });
    ArrayScansione.Azzera(0);
  }
  if (lista == 2)
    SvuotaConAvanzamento(ArrayTrasferimento.Numero(), [](std::size_t n) { ArrayTrasferimento.Accorcia(n); });
}

}  // namespace tandemize
