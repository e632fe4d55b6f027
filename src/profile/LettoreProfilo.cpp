#include "profile/LettoreProfilo.h"

#include <limits>
#include <type_traits>
#include <variant>

#include "profile/ModuloProfilo.h"

namespace tandemize {

struct CampoOggetto {
  ChiaveProfilo chiave;
  std::variant<std::uint8_t OggettoBackup::*, std::int16_t OggettoBackup::*, std::int32_t OggettoBackup::*,
               std::string OggettoBackup::*>
      membro;
};

namespace {

struct Opzione {
  ChiaveProfilo chiave;
  std::variant<std::uint8_t*, std::int32_t*> variabile;
};

const std::array<Opzione, 8> Opzioni{{{ChiaveProfilo{"FixFileOption = "}, &FixFileOption},
                                      {ChiaveProfilo{"FixScanAfterFix = "}, &FixScanAfterFix},
                                      {ChiaveProfilo{"FtpEnabled = "}, &FtpEnabled},
                                      {ChiaveProfilo{"CompareMethod = "}, &CompareMethod},
                                      {ChiaveProfilo{"TandemMode = "}, &TandemMode},
                                      {ChiaveProfilo{"SourceNotChange = "}, &SourceNotChange},
                                      {ChiaveProfilo{"EraseFile = "}, &EraseFile},
                                      {ChiaveProfilo{"AutoTandemize = "}, &AutoTandemize}}};

// The fields of an object in three groups: before its links, between links and files, behind its files.
const std::array<CampoOggetto, 2> CampiPrimaDeiLink{
    {{ChiaveProfilo{"BackTipoOggetto = "}, &OggettoBackup::BackTipoOggetto},
     {ChiaveProfilo{"BackTipoTrasferimento = "}, &OggettoBackup::BackTipoTrasferimento}}};
const std::array<CampoOggetto, 2> CampiPrimaDeiFile{
    {{ChiaveProfilo{"BackDescrizione = "}, &OggettoBackup::BackDescrizione},
     {ChiavePercorsoOggetto, &OggettoBackup::BackPath}}};
const std::array<CampoOggetto, 6> CampiDopoIFile{
    {{ChiaveProfilo{"BackTop = "}, &OggettoBackup::BackTop},
     {ChiaveProfilo{"BackLeft = "}, &OggettoBackup::BackLeft},
     {ChiaveProfilo{"BackHeight = "}, &OggettoBackup::BackHeight},
     {ChiaveProfilo{"BackWidth = "}, &OggettoBackup::BackWidth},
     {ChiaveProfilo{"BackFigura = "}, &OggettoBackup::BackFigura},
     {ChiaveServerOggetto, &OggettoBackup::BackFtpServerDescription}}};

constexpr ChiaveProfilo ChiaveIndice{"BackIndice = "};
constexpr ChiaveProfilo ChiaveLink{"BackLinkTo"};
constexpr ChiaveProfilo ChiaveFile{"Files"};

// The first two characters of a line as a number: an optional sign and digits, 0 for anything else.
int NumeroDavanti(std::string_view riga) {
  std::string_view testo = SenzaBlankIniziali(riga.substr(0, 2));
  const bool negativo = testo.starts_with('-');
  if (negativo || testo.starts_with('+')) testo.remove_prefix(1);
  int numero = 0;
  for (std::size_t i = 0; i < testo.size() && Cifra(testo[i]); ++i) numero = numero * 10 + (testo[i] - '0');
  return negativo ? -numero : numero;
}

}  // namespace

bool LettoreProfilo::Fallisce(std::int32_t errore, const ChiaveProfilo& chiave) {
  errore_ = errore;
  chiave_ = chiave.Testo();
  return false;
}

template <typename Numero>
bool LettoreProfilo::Converti(const ChiaveProfilo& chiave, std::string_view testo, Numero& valore) {
  std::int64_t letto = 0;
  const std::int32_t errore =
      ConvertiIntero(testo, std::numeric_limits<Numero>::min(), std::numeric_limits<Numero>::max(), letto);
  if (errore != 0) return Fallisce(errore, chiave);
  valore = static_cast<Numero>(letto);
  return true;
}

// Each test asks whether the key occurs anywhere in the line, and a hit does not end the tests: a line is
// read by all the keys that it holds, also inside a value.
bool LettoreProfilo::LeggiProfilo() {
  while (righe_.Leggi(riga_))
    if (!LeggiElenchi() || !LeggiOpzioni() || !LeggiOggetto()) return false;
  return true;
}

// A run of lines with the same key. Always leaves a spare entry, and the line behind the run as the current
// one; a run that ends the file fails.
template <typename Valore>
bool LettoreProfilo::LeggiSequenza(const ChiaveProfilo& chiave, std::vector<std::string>& elenco,
                                   Valore valore) {
  while (chiave.In(riga_)) {
    elenco.back() = valore(riga_);
    elenco.emplace_back();
    if (!righe_.Leggi(riga_)) return Fallisce(ErroreFineFile, chiave);
  }
  return true;
}

// The value stands at a fixed position, which suits a number of one digit; with two the blank before it is
// trimmed.
bool LettoreProfilo::LeggiElenchi() {
  const auto valoreDopo = [](const ChiaveProfilo& chiave) {
    return [posizione = chiave.Testo().size() + 5](std::string_view riga) {
      return SenzaBlankIniziali(DaCarattere(riga, posizione));
    };
  };
  return LeggiSequenza(ChiavePercorso, Backup_Path, valoreDopo(ChiavePercorso)) &&
         LeggiSequenza(ChiaveServer, Backup_FTP, valoreDopo(ChiaveServer));
}

bool LettoreProfilo::LeggiOpzioni() {
  for (const Opzione& opzione : Opzioni) {
    if (!opzione.chiave.In(riga_)) continue;
    const auto converti = [&](auto* variabile) {
      return Converti(opzione.chiave, opzione.chiave.Dietro(riga_), *variabile);
    };
    if (!std::visit(converti, opzione.variabile)) return false;
  }
  return true;
}

// Only two characters are the number, so object 100 is read as object 10 and replaces it. The array never
// shrinks.
bool LettoreProfilo::LeggiInizioOggetto() {
  if (!ChiaveIndice.In(riga_)) return true;
  const int numero = NumeroDavanti(riga_);
  if (numero < 0) return Fallisce(ErroreIndice, ChiaveIndice);
  numeroOggetto_ = static_cast<std::size_t>(numero);
  if (numeroOggetto_ >= ArrayOggetti.size()) ArrayOggetti.resize(numeroOggetto_ + 1);
  Oggetto().BackLinkTo.assign(1, "");
  Oggetto().Files.assign(1, "");
  return Converti(ChiaveIndice, RestituisciValore(riga_), Oggetto().BackIndice);
}

template <std::size_t N>
bool LettoreProfilo::LeggiCampi(const std::array<CampoOggetto, N>& campi) {
  for (const CampoOggetto& campo : campi) {
    if (!campo.chiave.In(riga_)) continue;
    const auto leggi = [&](auto membro) {
      auto& valore = Oggetto().*membro;
      if constexpr (std::is_same_v<std::remove_reference_t<decltype(valore)>, std::string>) {
        valore = RestituisciValore(riga_);
        return true;
      } else {
        return Converti(campo.chiave, RestituisciValore(riga_), valore);
      }
    };
    if (!std::visit(leggi, campo.membro)) return false;
  }
  return true;
}

bool LettoreProfilo::LeggiSequenzaOggetto(const ChiaveProfilo& chiave,
                                          std::vector<std::string> OggettoBackup::*elenco) {
  if (!chiave.In(riga_)) return true;
  if (!LeggiSequenza(chiave, Oggetto().*elenco, RestituisciValore)) return false;
  (Oggetto().*elenco).pop_back();
  return true;
}

bool LettoreProfilo::LeggiOggetto() {
  return LeggiInizioOggetto() && LeggiCampi(CampiPrimaDeiLink) &&
         LeggiSequenzaOggetto(ChiaveLink, &OggettoBackup::BackLinkTo) && LeggiCampi(CampiPrimaDeiFile) &&
         LeggiSequenzaOggetto(ChiaveFile, &OggettoBackup::Files) && LeggiCampi(CampiDopoIFile);
}

bool LettoreProfilo::LeggiCompagno() {
  while (righe_.Leggi(riga_)) {
    if (ChiaveFiltro.In(riga_)) FilterBackup = SenzaBlankIniziali(ChiaveFiltro.Dietro(riga_));
    if (ChiaveIgnora.In(riga_) &&
        !Converti(ChiaveIgnora, ChiaveIgnora.Dietro(riga_), FilterIgnoreInvalidPath))
      return false;
  }
  return true;
}

}  // namespace tandemize
