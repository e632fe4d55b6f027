#include "errors/FileDiLog.h"

#include "platform/files.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

SceltaLog FileDiLog::Scegli() {
  if (indice_.Aggiorna(PercorsoApplicazione)) Chiudi();
  const std::int32_t ultimo = indice_.Ultimo();
  return {ultimo, ultimo == 0 || Piena(ultimo) ? ultimo + 1 : 0};
}

platform::ErrorCode FileDiLog::Scrivi(std::string_view record) {
  if (const platform::ErrorCode errore = Apri(Scegli()); errore != platform::kNoError) return errore;
  const platform::ErrorCode errore = file_.append(record);
  if (errore != platform::kNoError) Chiudi();
  return errore;
}

void FileDiLog::Azzera() {
  Chiudi();
  indice_.Azzera();
}

bool FileDiLog::Piena(std::int32_t numero) const {
  std::uint64_t byte = 0;
  if (aperto_ == numero) {
    if (file_.size(byte) != platform::kNoError) byte = 0;
  } else {
    platform::FileStatus stato;
    if (platform::query(PercorsoApplicazione + NomeDelNumero(numero), stato) == platform::kNoError)
      byte = stato.size;
  }
  return static_cast<std::int64_t>(byte) >= std::int64_t{Log_Max_File_Size} * 1024;
}

platform::ErrorCode FileDiLog::Apri(const SceltaLog& scelta) {
  const std::int32_t numero = scelta.nuovo != 0 ? scelta.nuovo : scelta.attuale;
  if (aperto_ == numero) return platform::kNoError;
  Chiudi();
  // Never emptied: should another process have made the new file meanwhile, its records stay.
  const platform::ErrorCode errore = file_.open(PercorsoApplicazione + NomeDelNumero(numero), false);
  if (errore != platform::kNoError) return errore;
  aperto_ = numero;
  if (scelta.nuovo != 0) indice_.Creato(numero);
  return platform::kNoError;
}

void FileDiLog::Chiudi() {
  file_.close();
  aperto_ = 0;
}

}  // namespace tandemize
