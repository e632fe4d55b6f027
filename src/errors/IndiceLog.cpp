#include "errors/IndiceLog.h"

#include <charconv>

#include "platform/machine.h"

namespace tandemize {

namespace {

constexpr std::string_view Inizio = "LogFile", Fine = ".txt";

// Seconds. The coarsest dates in use, those of FAT, count in twos.
constexpr std::int64_t PassoDelleDate = 2;

}  // namespace

std::string NomeDelNumero(std::int32_t numero) {
  return std::string(Inizio) + std::to_string(numero) + std::string(Fine);
}

std::int32_t NumeroDelNome(std::string_view nome) {
  if (!nome.starts_with(Inizio) || !nome.ends_with(Fine) || nome.size() <= Inizio.size() + Fine.size())
    return 0;
  const std::string_view cifre = nome.substr(Inizio.size(), nome.size() - Inizio.size() - Fine.size());
  std::int32_t numero = 0;
  const auto [resto, errore] = std::from_chars(cifre.data(), cifre.data() + cifre.size(), numero);
  const bool soloCifre = errore == std::errc() && resto == cifre.data() + cifre.size();
  return soloCifre && numero > 0 && cifre.front() != '0' ? numero : 0;
}

bool IndiceLog::Aggiorna(const std::string& cartella) {
  if (cartella != cartella_) {
    Azzera();
    cartella_ = cartella;
    Sorveglia();
  } else if (!NomiForseCambiati()) {
    return false;
  }
  Leggi();
  return true;
}

// The program's own new file shows in the watch like any other change. The answer that it caused is taken at
// once, so that a folder with many log files is not read again for each new one. What another program may
// have done between the record's look and this one is found by the reading that is then due: after as many
// records as there are files, so that it costs each record the same however many there are.
void IndiceLog::Creato(std::int32_t numero) {
  Inserisci(numero);
  if (!sorvegliata_) return;
  static_cast<void>(guardia_.changed());
  if (letturaTra_ == 0) letturaTra_ = static_cast<std::size_t>(ultimo_) + oltreIlVuoto_.size() + 1;
}

void IndiceLog::Azzera() {
  guardia_.stop();
  sorvegliata_ = dataSicura_ = false;
  cartella_.clear();
  ultimo_ = 0;
  oltreIlVuoto_.clear();
  letturaTra_ = 0;
}

bool IndiceLog::NomiForseCambiati() {
  if (!sorvegliata_) {
    if (!DataCambiata()) return false;
    Sorveglia();
    return true;
  }
  if (guardia_.changed()) {
    // A watch whose folder has gone answers so for ever; another folder may have its name by now.
    if (guardia_.changed()) Sorveglia();
    return true;
  }
  return letturaTra_ > 0 && --letturaTra_ == 0;
}

bool IndiceLog::DataCambiata() {
  platform::FileStatus stato;
  return !dataSicura_ || platform::query(cartella_, stato) != platform::kNoError || stato.lastWrite != data_;
}

void IndiceLog::Sorveglia() {
  if (!conSorveglianza_) return;
  guardia_.start(cartella_);
  sorvegliata_ = !guardia_.changed();
}

void IndiceLog::Leggi() {
  ultimo_ = 0;
  oltreIlVuoto_.clear();
  letturaTra_ = 0;
  if (!sorvegliata_) {
    platform::FileStatus stato;
    dataSicura_ = platform::query(cartella_, stato) == platform::kNoError &&
                  platform::now() - stato.lastWrite.seconds >= PassoDelleDate;
    data_ = stato.lastWrite;
  }
  platform::FolderSearch ricerca;
  platform::FoundFile trovato;
  platform::ErrorCode errore =
      ricerca.open(cartella_ + std::string(Inizio) + "*" + std::string(Fine), trovato);
  for (; errore == platform::kNoError; errore = ricerca.next(trovato))
    if (const std::int32_t numero = NumeroDelNome(trovato.name); numero > 0) Inserisci(numero);
  if (errore != platform::kFileNotFound && errore != platform::kNoMoreFiles) CercaUnoPerUno();
}

// A folder may be closed to listing and yet let its files be opened by name.
void IndiceLog::CercaUnoPerUno() {
  ultimo_ = 0;
  oltreIlVuoto_.clear();
  platform::FileStatus stato;
  while (platform::query(cartella_ + NomeDelNumero(ultimo_ + 1), stato) == platform::kNoError) ++ultimo_;
}

void IndiceLog::Inserisci(std::int32_t numero) {
  if (numero > ultimo_ + 1) {
    oltreIlVuoto_.insert(numero);
    return;
  }
  if (numero == ultimo_ + 1) ++ultimo_;
  while (!oltreIlVuoto_.empty() && *oltreIlVuoto_.begin() == ultimo_ + 1) {
    oltreIlVuoto_.erase(oltreIlVuoto_.begin());
    ++ultimo_;
  }
}

}  // namespace tandemize
