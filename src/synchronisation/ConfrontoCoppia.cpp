#include "synchronisation/ConfrontoCoppia.h"

#include <limits>
#include <optional>
#include <utility>

#include "profile/ModuloProfilo.h"
#include "storage/File_System.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

using Tipo = PassoFusione::Tipo;

constexpr std::int32_t CrcNonLetto = -1;  // in Attributi

bool SuFtp(const RecordFile& record) {
  return record.TipoPercorso == PercorsoFtp;
}

bool Uguali(const RisultatoCRC& uno, const RisultatoCRC& altro) {
  return uno.fallito == altro.fallito && uno.valore == altro.valore;
}

// A text that is no date stands before every date.
double ValoreData(const RecordFile& record) {
  const std::optional<std::int64_t> data = SecondiDaTesto(record.DataFile());
  return data ? static_cast<double>(*data) : std::numeric_limits<double>::lowest();
}

}  // namespace

void ConfrontoCoppia::Annuncia(const std::vector<PassoFusione>& passi) {
  const bool primeDue = CompareMethod == ConfrontoCrc;
  std::vector<const RecordFile*> record;
  for (const PassoFusione& passo : passi) {
    if (!ChiederàCrc(passo)) continue;
    record.push_back(&ArrayScansione.Riga(primeDue ? 0 : a_, passo.prima));
    record.push_back(&ArrayScansione.Riga(primeDue ? 1 : b_, passo.seconda));
  }
  crc_.Annuncia(std::move(record));
}

// Near enough to what the methods do: a checksum that is not asked for in the end was read for nothing.
bool ConfrontoCoppia::ChiederàCrc(const PassoFusione& passo) const {
  if (passo.tipo != Tipo::InEntrambe || FixFileOption == SoloMancanti) return false;
  const RecordFile& uno = ArrayScansione.Riga(a_, passo.prima);
  const RecordFile& altro = ArrayScansione.Riga(b_, passo.seconda);
  if (CompareMethod == ConfrontoCrc) return HaCrc(passo) && NomiUguali(uno, altro);
  return CompareMethod == ConfrontoIntelligente && uno.Data != altro.Data &&
         uno.Dimensione == altro.Dimensione && NomiUguali(uno, altro);
}

void ConfrontoCoppia::Esegui(const PassoFusione& passo) {
  if (passo.tipo != Tipo::InEntrambe) {
    ConfrontaArray_Per_File_Mancanti(passo);
  } else if (FixFileOption != SoloMancanti) {
    ConfrontaArray_Per_Data_Dimensione_CRC32(passo);
  }
  if (passo.tipo != Tipo::SoloNellaSeconda) ++contatori_[a_].Posizione;
  if (passo.tipo != Tipo::SoloNellaPrima) ++contatori_[b_].Posizione;
}

void ConfrontoCoppia::ConfrontaArray_Per_File_Mancanti(const PassoFusione& passo) {
  const bool nellaPrima = passo.tipo == Tipo::SoloNellaPrima;
  const std::size_t qui = nellaPrima ? a_ : b_, altrove = nellaPrima ? b_ : a_;
  RecordFile& record = ArrayScansione.Riga(qui, nellaPrima ? passo.prima : passo.seconda);
  if (passo.soloPerMaiuscole && CèGià(altrove, record)) return;
  if (!nellaPrima) return SoloNellaSeconda(record);
  operazioni_.AggiungiMancante(record, b_);
  ++contatori_[b_].Mancanti;
}

// Where the other path takes both cases of a name for one, the file is not missing there: a copy would go
// over its twin. A server cannot be asked for a single name, and a folder of that name is no such file.
bool ConfrontoCoppia::CèGià(std::size_t colonna, const RecordFile& record) const {
  if (ArrayScansione.Tipo(colonna) == PercorsoFtp) return false;
  const std::string percorso = operazioni_.PercorsoIn(colonna, record);
  return EsisteFile(percorso) && !EsisteCartella(percorso, true);
}

void ConfrontoCoppia::SoloNellaSeconda(RecordFile& record) {
  if (EraseFile != 0)
    operazioni_.AggiungiEliminazione(record, a_, b_);
  else if (SourceNotChange == 0)
    operazioni_.AggiungiMancante(record, a_);
  else
    return;
  ++contatori_[a_].Mancanti;
}

// Names that differ in the case of letters are the same file for the merge and are never compared.
void ConfrontoCoppia::ConfrontaArray_Per_Data_Dimensione_CRC32(const PassoFusione& passo) {
  RecordFile& uno = ArrayScansione.Riga(a_, passo.prima);
  RecordFile& altro = ArrayScansione.Riga(b_, passo.seconda);
  if (!NomiUguali(uno, altro)) return;
  Valori valori;
  switch (CompareMethod) {
    case ConfrontoIntelligente:
      valori = PerTutto(uno, altro);
      break;
    case ConfrontoData:
      valori = PerData(uno, altro);
      break;
    case ConfrontoDimensione:
      valori = PerDimensione(uno, altro);
      break;
    case ConfrontoCrc:
      valori = PerCrc(passo);
      break;
    default:
      break;
  }
  Decidi(valori, uno, altro);
}

ConfrontoCoppia::Valori ConfrontoCoppia::PerData(RecordFile& uno, RecordFile& altro) {
  if (DateUguali(uno, altro)) return {};
  return {ValoreData(uno), ValoreData(altro), MotivoOperazione::Data};
}

ConfrontoCoppia::Valori ConfrontoCoppia::PerDimensione(const RecordFile& uno, const RecordFile& altro) {
  return {uno.Dimensione, altro.Dimensione, MotivoOperazione::Dimensione};
}

// The date outranks the size. Two empty files are equal, whatever their dates.
ConfrontoCoppia::Valori ConfrontoCoppia::PerTutto(RecordFile& uno, RecordFile& altro) {
  if (DateUguali(uno, altro)) return PerDimensione(uno, altro);
  if (uno.Dimensione != altro.Dimensione) return PerData(uno, altro);
  if (uno.Dimensione == 0) return {};
  return PerCrcSeServe(uno, altro);
}

// Same size, another date: the content decides whether they differ, and then the date. A file too large to be
// read for that, or on a server, counts as equal, and that is meant.
ConfrontoCoppia::Valori ConfrontoCoppia::PerCrcSeServe(RecordFile& uno, RecordFile& altro) {
  if (uno.Dimensione >= DimensioneMassimaCrc || SuFtp(uno) || SuFtp(altro)) return {};
  const RisultatoCRC crc = CrcDi(uno), altroCrc = CrcDi(altro);
  if (proprietaria_.ProcessoAnnullato) return {};
  // One failure alone counts as a difference; only two are told as failures.
  if (!Uguali(crc, altroCrc)) return {ValoreData(uno), ValoreData(altro), MotivoOperazione::Data};
  if (crc.fallito) {
    SegnaCrcFallito(uno);
    SegnaCrcFallito(altro);
  }
  return {};
}

// The checksums are those of the same rows of columns 0 and 1, whatever the pair is. That is how it is to
// behave.
ConfrontoCoppia::Valori ConfrontoCoppia::PerCrc(const PassoFusione& passo) {
  RecordFile& uno = ArrayScansione.Riga(a_, passo.prima);
  RecordFile& altro = ArrayScansione.Riga(b_, passo.seconda);
  const bool oltre = passo.prima >= ArrayScansione.Righe(0),
             altroOltre = passo.seconda >= ArrayScansione.Righe(1);
  if (oltre) SegnaCrcFallito(uno);
  if (altroOltre) SegnaCrcFallito(altro);
  if (oltre || altroOltre) return {};
  const RisultatoCRC crc = CrcDi(ArrayScansione.Riga(0, passo.prima));
  const RisultatoCRC altroCrc = CrcDi(ArrayScansione.Riga(1, passo.seconda));
  if (proprietaria_.ProcessoAnnullato) return {};
  if (crc.fallito) SegnaCrcFallito(uno);
  if (altroCrc.fallito) SegnaCrcFallito(altro);
  if (Uguali(crc, altroCrc) || (uno.Dimensione == 0 && altro.Dimensione == 0)) return {};
  return {ValoreData(uno), ValoreData(altro), MotivoOperazione::Data};
}

// A row beyond the end of one of the two columns has none.
bool ConfrontoCoppia::HaCrc(const PassoFusione& passo) {
  return passo.prima < ArrayScansione.Righe(0) && passo.seconda < ArrayScansione.Righe(1);
}

RisultatoCRC ConfrontoCoppia::CrcDi(const RecordFile& record) {
  return crc_.CrcDi(record, proprietaria_.ProcessoAnnullato);
}

void ConfrontoCoppia::SegnaCrcFallito(RecordFile& record) {
  record.Attributi = CrcNonLetto;
  confronto_.ErroreCrc = true;
}

void ConfrontoCoppia::Decidi(const Valori& valori, const RecordFile& uno, const RecordFile& altro) {
  if (valori.x < valori.y && SourceNotChange == 0) {
    operazioni_.AggiungiDiverso(altro, uno, a_, valori.motivo);
    ++contatori_[a_].Sostituire;
  } else if (valori.y < valori.x) {
    operazioni_.AggiungiDiverso(uno, altro, b_, valori.motivo);
    ++contatori_[b_].Sostituire;
  }
}

}  // namespace tandemize
