// Found files, the table of a scan, and the list of things to do.
//
// A record is 48 bytes: its texts lie in a store that the table shares with the list, each folder's path once
// and each name once, so that a million files take tens of megabytes. The texts are put together when they
// are asked for.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "synchronisation/ListaABlocchi.h"

namespace tandemize {

// Texts that live as long as the store. Nothing in it is ever changed or removed.
class DepositoNomi {
 public:
  // A folder's path, with its separator behind it. The same text as the call before gives the same address.
  const std::string* Cartella(std::string_view percorso);
  const char* Testo(std::string_view testo);

 private:
  std::deque<std::string> cartelle_;
  std::vector<std::unique_ptr<char[]>> blocchi_;
  std::size_t liberi_ = 0;
  char* prossimo_ = nullptr;
};

inline constexpr std::int64_t DataAssente = INT64_MIN;

// What told two files of the same name apart.
enum class MotivoOperazione : std::uint8_t { Nessuno, Data, Dimensione, Crc };

class RecordFile {
 public:
  RecordFile() = default;
  // `inizio`: byte of the full path at which `Nome` begins.
  RecordFile(const std::string* cartella, std::string_view nomeNelDeposito, std::size_t inizio)
      : cartella_(cartella),
        nome_(nomeNelDeposito.data()),
        lunghezza_(static_cast<std::uint32_t>(nomeNelDeposito.size())),
        inizio_(static_cast<std::uint32_t>(inizio)) {}

  // True for the empty record that ends a column or a list: its `Nome` is empty.
  [[nodiscard]] bool Vuoto() const {
    return cartella_ == nullptr || inizio_ >= cartella_->size() + lunghezza_;
  }

  [[nodiscard]] std::string Percorso() const;  // full path of the file
  [[nodiscard]] std::string Nome() const;  // relative to the scanned path, with the separator of that path
  // Upper-cased, with "\" as separator for every kind of path: the sort key.
  [[nodiscard]] std::string NomeMaiuscolo() const;
  [[nodiscard]] std::string DataFile() const;  // last write date as text; empty if there is none
  [[nodiscard]] std::string_view UltimoNome() const { return {nome_, lunghezza_}; }  // behind the folder
  [[nodiscard]] const std::string* CartellaDelFile() const {
    return cartella_;
  }  // with its separator; nullptr for an empty record
  // The part of `Nome` that lies in the folder's text; the rest of it is UltimoNome, or the end of that.
  [[nodiscard]] std::string_view CartellaRelativa() const {
    return cartella_ == nullptr || inizio_ >= cartella_->size()
               ? std::string_view()
               : std::string_view(*cartella_).substr(inizio_);
  }
  [[nodiscard]] std::size_t LunghezzaNome() const {
    return Vuoto() ? 0 : cartella_->size() + lunghezza_ - inizio_;
  }
  void PrendiNomi(const RecordFile& altro);  // Nome and Percorso of another record

  std::int64_t Data = DataAssente;  // last write date, seconds in UTC
  double Dimensione = 0;            // bytes

 private:
  const std::string* cartella_ = nullptr;
  const char* nome_ = nullptr;
  std::uint32_t lunghezza_ = 0, inizio_ = 0;

 public:
  std::int32_t Attributi = 0;                           // -1 marks a file whose CRC could not be read
  std::int8_t TipoPercorso = 0;                         // kind of storage
  bool FileNuovo : 1 = false;                           // of a destination: the file does not exist there yet
  bool DaEliminare : 1 = false;                         // the file is to be deleted
  bool NomeConBarre : 1 = false;                        // `Nome` has "\" for every "/"; `Percorso` keeps them
  MotivoOperazione Motivo = MotivoOperazione::Nessuno;  // of a destination: why it is to be replaced
};
static_assert(sizeof(RecordFile) <= 48);

// One column a scanned path, one row a file. A row beyond the end of its column is the empty record.
class TabellaScansione {
 public:
  TabellaScansione() { Azzera(0); }

  // `colonne` empty columns and a new store. Records taken from here live on as long as somebody holds the
  // old store.
  void Azzera(std::size_t colonne);
  [[nodiscard]] std::size_t Colonne() const { return colonne_.size(); }
  [[nodiscard]] std::size_t Righe(std::size_t colonna) const {
    return colonne_[colonna].righe.size();
  }  // files of the column
  RecordFile& Aggiungi(std::size_t colonna, const RecordFile& record) {
    return colonne_[colonna].righe.Aggiungi(record);
  }
  [[nodiscard]] RecordFile& Riga(std::size_t colonna, std::size_t riga) {
    return colonne_[colonna].righe[riga];
  }
  [[nodiscard]] const RecordFile& Riga(std::size_t colonna, std::size_t riga) const;
  void Svuota(std::size_t colonna) { colonne_[colonna].righe.Accorcia(0); }
  void Accorcia(std::size_t colonna, std::size_t righe) { colonne_[colonna].righe.Accorcia(righe); }
  // Brings the rows of a column into a new order: row i becomes the one that was row `ordine[i]`. Every row
  // must stand in `ordine` once; its content is used up.
  void Riordina(std::size_t colonna, std::vector<std::uint32_t>& ordine);

  // Kind of the whole path of a column, set before its walk starts.
  [[nodiscard]] std::int32_t Tipo(std::size_t colonna) const { return colonne_[colonna].tipo; }
  void ImpostaTipo(std::size_t colonna, std::int32_t tipo) { colonne_[colonna].tipo = tipo; }

  [[nodiscard]] DepositoNomi& Deposito() { return *deposito_; }
  [[nodiscard]] const std::shared_ptr<DepositoNomi>& DepositoCondiviso() const { return deposito_; }

 private:
  struct Colonna {
    ListaABlocchi<RecordFile> righe;
    std::int32_t tipo = 0;
  };
  std::vector<Colonna> colonne_;
  std::shared_ptr<DepositoNomi> deposito_;
};

struct RecordOperazione {
  RecordFile Sorgente, Destinazione;
};

// The list of things to do. It always has one empty element behind the last.
class ListaTrasferimento {
 public:
  [[nodiscard]] std::size_t Numero() const {
    return record_.size();
  }  // without the empty element; the upper bound
  [[nodiscard]] bool Vuota() const { return record_.empty(); }
  RecordOperazione& operator[](std::size_t i) { return record_[i]; }
  const RecordOperazione& operator[](std::size_t i) const { return record_[i]; }
  void Aggiungi(const RecordOperazione& operazione) { record_.Aggiungi(operazione); }
  void Accorcia(std::size_t numero);
  void Svuota() { Accorcia(0); }

  // The list's own store, for records whose texts shall not hold a whole scan in memory. It goes when the
  // list is emptied.
  [[nodiscard]] DepositoNomi& Deposito();
  // Keeps a store alive that records of the list take their texts from.
  void Conserva(const std::shared_ptr<DepositoNomi>& deposito);

 private:
  ListaABlocchi<RecordOperazione> record_;
  std::vector<std::shared_ptr<DepositoNomi>> depositi_;
  std::shared_ptr<DepositoNomi> proprio_;
};

extern TabellaScansione ArrayScansione;        // written by FrmScan and the planning of single files
extern ListaTrasferimento ArrayTrasferimento;  // written by the planning of a backup and by the comparison

// The large lists by number: 1 the table of the scan, 2 the list of things to do; 0 and 3 belong to the
// preview of a synchronisation. Empties one; a list of more than 1000 elements under a progress window, with
// events.
void SvuotaListaAProgressione(int lista);

}  // namespace tandemize
