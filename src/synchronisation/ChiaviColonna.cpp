#include "synchronisation/ChiaviColonna.h"

#include <algorithm>
#include <span>

#include "shell/Schermo.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::size_t RighePerEvento = 4096;

std::string_view SenzaSeparatoreDavanti(std::string_view nome) {
  if (nome.starts_with('\\') || nome.starts_with('/')) nome.remove_prefix(1);
  return nome;
}

void ConBarre(std::string& nome) {
  std::replace(nome.begin(), nome.end(), '/', '\\');
}

// What the sort works on: the key, the row that it belongs to, and the eight bytes that are compared now.
struct Voce {
  std::uint64_t pezzo;
  const char* testo;
  std::uint32_t lunghezza, riga;

  [[nodiscard]] std::string_view Resto(std::size_t da) const {
    return std::string_view(testo, lunghezza).substr(std::min<std::size_t>(da, lunghezza));
  }
};

constexpr std::size_t BytePerPezzo = sizeof(std::uint64_t);

// The first byte weighs most; behind the end stand zeros, which no name holds.
std::uint64_t PezzoDi(std::string_view resto) {
  std::uint64_t pezzo = 0;
  for (std::size_t i = 0; i < BytePerPezzo; ++i)
    pezzo = pezzo << 8U | (i < resto.size() ? static_cast<unsigned char>(resto[i]) : 0U);
  return pezzo;
}

class Ordinamento {
 public:
  Ordinamento(const TabellaScansione& tabella, std::size_t colonna) : tabella_(tabella), colonna_(colonna) {}

  // `da`: so many bytes are equal in all keys. Names share long beginnings, so eight bytes of each are
  // compared at a time, and only those that are equal in them go on to the next eight.
  void Ordina(std::span<Voce> voci, std::size_t da) const {
    for (bool uguali = true; uguali && voci.size() >= PocheVoci; da += BytePerPezzo) {
      if (FinisconoTutte(voci, da)) break;
      for (Voce& voce : voci) voce.pezzo = PezzoDi(voce.Resto(da));
      uguali = std::all_of(voci.begin(), voci.end(), [&](const Voce& v) { return v.pezzo == voci[0].pezzo; });
      if (!uguali) return OrdinaPerPezzo(voci, da);
    }
    std::sort(voci.begin(), voci.end(), [&](const Voce& a, const Voce& b) { return Minore(a, b, da); });
  }

 private:
  static constexpr std::size_t PocheVoci = 16;

  static bool FinisconoTutte(std::span<const Voce> voci, std::size_t da) {
    return std::all_of(voci.begin(), voci.end(), [&](const Voce& v) { return v.lunghezza <= da; });
  }

  void OrdinaPerPezzo(std::span<Voce> voci, std::size_t da) const {
    std::sort(voci.begin(), voci.end(), [](const Voce& a, const Voce& b) { return a.pezzo < b.pezzo; });
    for (std::size_t inizio = 0, fine = 0; inizio < voci.size(); inizio = fine) {
      while (fine < voci.size() && voci[fine].pezzo == voci[inizio].pezzo) ++fine;
      if (fine - inizio > 1) Ordina(voci.subspan(inizio, fine - inizio), da + BytePerPezzo);
    }
  }

  [[nodiscard]] bool Minore(const Voce& a, const Voce& b, std::size_t da) const {
    const int ordine = a.Resto(da).compare(b.Resto(da));
    if (ordine != 0) return ordine < 0;
    return NomeRelativo(tabella_.Riga(colonna_, a.riga)) < NomeRelativo(tabella_.Riga(colonna_, b.riga));
  }

  const TabellaScansione& tabella_;
  std::size_t colonna_;
};

}  // namespace

ChiaviColonna::ChiaviColonna(const TabellaScansione& tabella, std::size_t colonna, const bool& fermo) {
  const std::size_t righe = tabella.Righe(colonna);
  chiavi_.reserve(righe);
  for (std::size_t r = 0; r < righe && !fermo; ++r) {
    Aggiungi(tabella.Riga(colonna, r));
    if (r % RighePerEvento == RighePerEvento - 1) DoEvents();
  }
  SegnaUguali();
}

// The files of a folder stand together in a scan, so its part is made once for all of them.
void ChiaviColonna::Aggiungi(const RecordFile& record) {
  const bool intera = record.CartellaRelativa().empty();
  if (intera || record.CartellaDelFile() != cartella_) {
    prefisso_ = Maiuscolo(SenzaSeparatoreDavanti(intera ? std::string_view() : record.CartellaRelativa()));
    cartella_ = intera ? nullptr : record.CartellaDelFile();
  }
  const std::size_t lunghezzaPrefisso = prefisso_.size();
  prefisso_ += intera ? Maiuscolo(NomeRelativo(record)) : Maiuscolo(record.UltimoNome());
  if (record.TipoPercorso == PercorsoFtp) ConBarre(prefisso_);
  chiavi_.push_back({testi_.Testo(prefisso_), static_cast<std::uint32_t>(prefisso_.size()), false});
  prefisso_.resize(lunghezzaPrefisso);
}

void ChiaviColonna::SegnaUguali() {
  for (std::size_t r = 0; r + 1 < chiavi_.size(); ++r)
    chiavi_[r].comeLaProssima = (*this)[r] == (*this)[r + 1];
}

void ChiaviColonna::OrdinaArray(TabellaScansione& tabella, std::size_t colonna) {
  std::vector<Voce> voci;
  voci.reserve(chiavi_.size());
  for (const Chiave& chiave : chiavi_)
    voci.push_back({0, chiave.testo, chiave.lunghezza, static_cast<std::uint32_t>(voci.size())});
  Ordinamento(tabella, colonna).Ordina(voci, 0);
  std::vector<std::uint32_t> ordine;
  ordine.reserve(voci.size());
  for (std::size_t r = 0; r < voci.size(); ++r) {
    chiavi_[r] = {voci[r].testo, voci[r].lunghezza, false};
    ordine.push_back(voci[r].riga);
  }
  tabella.Riordina(colonna, ordine);
  SegnaUguali();
}

std::string NomeRelativo(const RecordFile& record) {
  std::string nome(SenzaSeparatoreDavanti(record.Nome()));
  if (record.TipoPercorso == PercorsoFtp) ConBarre(nome);
  return nome;
}

bool NomiUguali(const RecordFile& uno, const RecordFile& altro) {
  const bool ftp = uno.TipoPercorso == PercorsoFtp || altro.TipoPercorso == PercorsoFtp;
  const std::string_view cartella = uno.CartellaRelativa(), altraCartella = altro.CartellaRelativa();
  if (ftp || cartella.size() != altraCartella.size() || cartella.empty())
    return NomeRelativo(uno) == NomeRelativo(altro);
  return uno.UltimoNome() == altro.UltimoNome() && cartella == altraCartella;
}

}  // namespace tandemize
