#include "synchronisation/AggiungiOperazione.h"

#include <algorithm>

#include "profile/ModuloProfilo.h"
#include "shell/Formati.h"
#include "shell/Lingua.h"
#include "storage/File_System.h"
#include "storage/Percorsi.h"
#include "synchronisation/ChiaviColonna.h"

namespace tandemize {

namespace {

constexpr std::int32_t CrcNonLetto = -1;  // in Attributi

const std::string& TestoDelMotivo(MotivoOperazione motivo) {
  static const std::string nessuno;
  switch (motivo) {
    case MotivoOperazione::Data:
      return Messaggio(74);
    case MotivoOperazione::Dimensione:
      return Messaggio(75);
    case MotivoOperazione::Crc:
      return Messaggio(76);
    case MotivoOperazione::Nessuno:
      break;
  }
  return nessuno;
}

bool DaEliminare(const RecordFile& sorgente) {
  return EraseFile != 0 && sorgente.DaEliminare;
}

// The same record with its texts elsewhere; `Nome` keeps its length.
RecordFile ConNomi(const RecordFile& record, const std::string* cartella, std::string_view nome) {
  RecordFile copia = record;
  const std::size_t lunghezza = cartella->size() + nome.size();
  copia.PrendiNomi({cartella, nome, lunghezza - std::min(lunghezza, record.LunghezzaNome())});
  return copia;
}

void ConSeparatoriDi(std::int32_t tipo, std::string& nome) {
  const char separatore = SeparatorePercorso(tipo);
  std::replace(nome.begin(), nome.end(), separatore == '/' ? '\\' : '/', separatore);
}

std::string EstensioneMaiuscola(std::string_view nome) {
  return nome.find('.') == std::string_view::npos ? std::string() : Maiuscolo(EstensioneFile(nome));
}

std::string_view Copiato(std::string_view testo) {
  return {ArrayTrasferimento.Deposito().Testo(testo), testo.size()};
}

}  // namespace

Operazioni::Operazioni(Confronto& confronto, std::vector<std::string> percorsi)
    : confronto_(confronto), percorsi_(std::move(percorsi)), destinazioni_(percorsi_.size()) {
  for (std::size_t c = 0; c < percorsi_.size(); ++c) tipi_.push_back(ArrayScansione.Tipo(c));
}

std::string Operazioni::PercorsoIn(std::size_t colonna, const RecordFile& record) const {
  std::string percorso = percorsi_[colonna] + NomeRelativo(record);
  if (tipi_[colonna] == PercorsoFtp) ConSeparatoriDi(PercorsoFtp, percorso);
  return percorso;
}

const std::string* Operazioni::Copia(const std::string* cartella) {
  if (originali_.ultima == cartella) return originali_.copiaUltima;
  const std::string*& copia = originali_.copie[cartella];
  if (copia == nullptr) copia = ArrayTrasferimento.Deposito().Cartella(*cartella);
  originali_.ultima = cartella;
  return originali_.copiaUltima = copia;
}

// Two columns may share a folder's text and have it begin elsewhere: one path can lie inside another. So what
// counts is the place where the relative part begins.
const std::string* Operazioni::CartellaIn(std::size_t colonna, const RecordFile& record) {
  Archivio& archivio = destinazioni_[colonna];
  const std::string& cartella = *record.CartellaDelFile();
  const void* parteRelativa = cartella.data() + (cartella.size() - record.CartellaRelativa().size());
  if (archivio.ultima == parteRelativa) return archivio.copiaUltima;
  const std::string*& copia = archivio.copie[parteRelativa];
  if (copia == nullptr) {
    std::string percorso = PercorsoIn(colonna, record);
    percorso.resize(percorso.size() - record.UltimoNome().size());
    copia = ArrayTrasferimento.Deposito().Cartella(percorso);
  }
  archivio.ultima = parteRelativa;
  return archivio.copiaUltima = copia;
}

// The record that a file has at the other path. A name from a server may hold a separator of this side, and
// is then parted anew.
RecordFile Operazioni::RecordDiLavoro(const RecordFile& sorgente, std::string_view nome, std::size_t verso) {
  RecordFile record;
  if (nome.find_first_of("\\/") == std::string_view::npos && sorgente.LunghezzaNome() >= nome.size()) {
    record = ConNomi(sorgente, CartellaIn(verso, sorgente), nome);
  } else {
    const std::string percorso = PercorsoIn(verso, sorgente);
    const std::size_t fine = percorso.rfind(SeparatorePercorso(tipi_[verso])) + 1;
    record = ConNomi(sorgente, ArrayTrasferimento.Deposito().Cartella(percorso.substr(0, fine)),
                     Copiato(percorso.substr(fine)));
  }
  record.TipoPercorso = static_cast<std::int8_t>(tipi_[verso]);
  record.NomeConBarre = false;
  return record;
}

void Operazioni::AggiungiMancante(const RecordFile& sorgente, std::size_t verso) {
  const std::string_view nome = Copiato(sorgente.UltimoNome());
  AggiungiOperazione(ConNomi(sorgente, Copia(sorgente.CartellaDelFile()), nome),
                     RecordDiLavoro(sorgente, nome, verso), verso, false, MotivoOperazione::Nessuno);
}

void Operazioni::AggiungiEliminazione(RecordFile& sorgente, std::size_t verso, std::size_t lista) {
  const std::string_view nome = Copiato(sorgente.UltimoNome());
  const RecordFile destinazione = RecordDiLavoro(sorgente, nome, verso);
  sorgente.DaEliminare = true;
  AggiungiOperazione(ConNomi(sorgente, Copia(sorgente.CartellaDelFile()), nome), destinazione, lista, false,
                     MotivoOperazione::Nessuno);
}

void Operazioni::AggiungiDiverso(const RecordFile& sorgente, const RecordFile& destinazione,
                                 std::size_t lista, MotivoOperazione motivo) {
  const std::string_view nome = Copiato(sorgente.UltimoNome());
  const std::string_view altro =
      destinazione.UltimoNome() == nome ? nome : Copiato(destinazione.UltimoNome());
  AggiungiOperazione(ConNomi(sorgente, Copia(sorgente.CartellaDelFile()), nome),
                     ConNomi(destinazione, Copia(destinazione.CartellaDelFile()), altro), lista, true,
                     motivo);
}

void Operazioni::AggiungiOperazione(RecordFile sorgente, RecordFile destinazione, std::size_t lista,
                                    bool aggiornamento, MotivoOperazione motivo) {
  if (destinazione.Attributi == CrcNonLetto) confronto_.ErroreCrc = true;
  destinazione.Motivo = motivo;
  if (schermo().MostraUnita()) AggiungiRiga({sorgente, destinazione}, lista, aggiornamento);
  if (!aggiornamento) {
    destinazione.Dimensione = 0;
    destinazione.FileNuovo = true;
  }
  ArrayTrasferimento.Aggiungi({sorgente, destinazione});
}

void Operazioni::AggiungiRiga(const RecordOperazione& operazione, std::size_t lista,
                              bool aggiornamento) const {
  const RecordFile &sorgente = operazione.Sorgente, &destinazione = operazione.Destinazione;
  bool cartella = false;
  RigaUnita riga;
  riga.sorgente = sorgente.Percorso();
  riga.destinazione = destinazione.Percorso();
  riga.chiave = DaEliminare(sorgente) ? riga.sorgente : riga.destinazione;
  riga.nome = destinazione.Nome();
  riga.data = destinazione.DataFile();
  riga.dimensione = FormattaMigliaia(destinazione.Dimensione) + " Byte";
  riga.attributi = DescrizioneAttributi(destinazione.Attributi, cartella);
  riga.stato = aggiornamento ? TestoDelMotivo(destinazione.Motivo) : Messaggio(286);
  riga.etichettaStato = aggiornamento ? 1 : 0;
  if (DaEliminare(sorgente)) riga.stato = Messaggio(423);
  riga.estensione = EstensioneMaiuscola(destinazione.UltimoNome());
  riga.icona = IconaDi(riga.estensione);
  schermo().AggiungiRigaUnita(lista, riga);
}

// Taking the icon of each file costs too much where there are many.
RigaUnita::Icona Operazioni::IconaDi(const std::string& estensione) const {
  if (confronto_.TroppeDifferenze) return RigaUnita::Icona::Nessuna;
  const bool propria = estensione == ".EXE" || !confronto_.MoltiDifferenze;
  return propria ? RigaUnita::Icona::DelFile : RigaUnita::Icona::DelTipo;
}

}  // namespace tandemize
