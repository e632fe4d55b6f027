// One local copy. It goes through phases, which its report names: 0 the source is looked for, 1 it is opened,
// 2 the destination is opened, 3 both are open.

#include <algorithm>
#include <cmath>

#include "backup/FrmFileTransfer.h"
#include "errors/ModuloLog.h"
#include "platform/newfile.h"
#include "shell/Impostazioni.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/File_System.h"

namespace tandemize {

namespace {

// Events run between blocks of at most this size, however large the buffer is set: a stop is seen in time on
// a slow disc too.
constexpr std::int64_t BloccoMassimo = std::int64_t{1024} * 1024;
constexpr std::uint64_t LunghezzaDaRiservare = 16'777'216;

constexpr std::uint32_t BitScritturaProprietario = 0200;
constexpr std::int32_t ErroreFileInUso = 70;

}  // namespace

struct FrmFileTransfer::Copia {
  const std::string& sorgente;
  const std::string& destinazione;
  std::int64_t buffer;
  int FaseAperturaFile = 0;
  platform::ErrorCode errore = platform::kNoError;
  bool letturaFallita = false;
  std::uint64_t fatti = 0;  // bytes moved, as counted for the bars
  platform::SourceFile in{};
  platform::NewFile out{};

  [[nodiscard]] std::uint64_t Lunghezza() const { return in.status().size; }
};

bool FrmFileTransfer::Copy_File(const std::string& sorgente, const std::string& destinazione,
                                std::int64_t buffer) {
  Copia copia{sorgente, destinazione, buffer};
  bool riuscita = EseguiCopia(copia);
  const bool discoPieno = !riuscita && copia.FaseAperturaFile >= 2 && copia.errore == platform::kDiskFull &&
                          !copia.letturaFallita;
  if (discoPieno && !ProcessoAnnullato) riuscita = CopiaSenzaVecchia(copia);
  if (riuscita) {
    ScriviLog("", RigaOk);
    return true;
  }
  if (ProcessoAnnullato) {
    EsitoCopia = EsitoTrasferimento::Annullato;
    return true;
  }
  return BloccoDiErrore(copia);
}

bool FrmFileTransfer::EseguiCopia(Copia& copia) {
  const bool riuscita =
      ApriSorgente(copia) && ApriDestinazione(copia) && CopiaBlocchi(copia) && ConcludiCopia(copia);
  copia.in.close();
  if (!riuscita) copia.out.discard();
  return riuscita;
}

bool FrmFileTransfer::ApriSorgente(Copia& copia) {
  copia.errore = copia.in.open(copia.sorgente);
  if (copia.errore != platform::kNoError && !EsisteFile(copia.sorgente)) return false;
  ++FileCopiati;
  AggiornaProgressBarFileSingolo(100, 0);
  copia.FaseAperturaFile = 1;
  return copia.errore == platform::kNoError;
}

bool FrmFileTransfer::ApriDestinazione(Copia& copia) {
  copia.FaseAperturaFile = 2;
  copia.errore = copia.out.create(copia.destinazione, copia.in.permissions(), &scorta_);
  if (copia.errore != platform::kNoError) return false;
  // Otherwise the host may look for all of its room in the moment in which it takes the place of an older
  // copy, and the program would stand still meanwhile.
  if (copia.Lunghezza() >= LunghezzaDaRiservare) copia.out.reserve(copia.Lunghezza());
  return true;
}

bool FrmFileTransfer::CopiaBlocchi(Copia& copia) {
  copia.FaseAperturaFile = 3;
  const std::uint64_t lunghezza = copia.Lunghezza();
  const auto blocco = static_cast<std::uint64_t>(std::clamp<std::int64_t>(copia.buffer, 1, BloccoMassimo));
  if (lunghezza > blocco) copia.in.willReadThrough();
  while (copia.fatti < lunghezza) {
    DoEvents();
    if (ProcessoAnnullato) return false;
    std::uint64_t mossi = 0;
    copia.errore =
        copia.out.copyFrom(copia.in, std::min(blocco, lunghezza - copia.fatti), mossi, copia.letturaFallita);
    if (copia.errore != platform::kNoError) return false;
    if (mossi == 0) {  // the source has become shorter since it was opened
      copia.errore = platform::kEndOfFile;
      copia.letturaFallita = true;
      return false;
    }
    copia.fatti += mossi;
    const double percento =
        std::floor(static_cast<double>(copia.fatti) / static_cast<double>(lunghezza) * 100 + 1);
    AggiornaProgressBar(static_cast<double>(mossi));
    AggiornaProgressBarFileSingolo(100, percento);
  }
  return !ProcessoAnnullato;
}

bool FrmFileTransfer::ConcludiCopia(Copia& copia) {
  bool sostituita = false;
  copia.errore = copia.out.setTime(copia.in.status().lastWrite);
  if (copia.errore == platform::kNoError) copia.errore = copia.out.commit(sostituita);
  if (copia.errore != platform::kNoError) return false;
  attributiCopiati_ = (copia.in.permissions() & BitScritturaProprietario) != 0
                          ? 0
                          : static_cast<std::int32_t>(platform::kReadOnly);
  return true;
}

// Where there is no room for the old copy and the new one together, the old one goes first, if that makes
// room enough.
bool FrmFileTransfer::CopiaSenzaVecchia(Copia& copia) {
  platform::FileStatus vecchia, nuova;
  platform::SpaceOnDisc spazio;
  if (platform::query(copia.destinazione, vecchia) != platform::kNoError) return false;
  if (platform::query(copia.sorgente, nuova) != platform::kNoError) return false;
  if (platform::freeSpace(copia.destinazione, spazio) != platform::kNoError) return false;
  if (spazio.available + vecchia.size < nuova.size) return false;
  ScriviLog(
      InLingua("Spazio insufficiente per la vecchia e la nuova copia, la vecchia viene eliminata prima: '",
               "No room for the old and the new copy together, the old one goes first: '") +
          copia.destinazione + "'",
      RigaNormale);
  ByteCopiati -= static_cast<double>(copia.fatti);
  --FileCopiati;
  copia.fatti = 0;
  static_cast<void>(platform::setAttributes(copia.destinazione, 0));
  static_cast<void>(platform::deleteFile(copia.destinazione));
  return EseguiCopia(copia);
}

// The platform's own copy, for a source that cannot be opened although the system names no reason.
bool FrmFileTransfer::CopiaConSistema(Copia& copia) {
  ScriviLog("Use Api CopyFile ...", RigaNormale);
  --FileCopiati;
  if (EseguiCopia(copia)) {
    ScriviLog("", RigaOk);
    return true;
  }
  ScriviLog("", BloccoErrore);
  return false;
}

bool FrmFileTransfer::BloccoDiErrore(Copia& copia) {
  const int fase = copia.FaseAperturaFile;
  const std::int32_t erroreRuntime = ErroreRuntimeDaSistema(copia.errore);
  std::string extra = erroreRuntime == ErroreFileInUso ? " (File in use by system)" : "";
  std::string descrizione;
  std::int32_t numero = 0;
  if (fase == 1) {
    const std::string messaggio = ProvaAperturaFile(copia.sorgente, false, numero);
    extra = " (" + messaggio + ")";
    if (messaggio.empty() && CopiaConSistema(copia)) return true;
    if (numero != 0) extra += "{ Err. N° " + std::to_string(numero) + " }";
    descrizione = "==> Error While Reading File : " + copia.sorgente + extra;
  } else if (fase == 2) {
    std::string messaggio = ProvaAperturaFile(copia.destinazione, true, numero);
    // A destination that is not there yet says nothing about why it cannot be made.
    if (numero == platform::kFileNotFound || numero == platform::kPathNotFound) {
      numero = copia.errore;
      messaggio = platform::systemErrorText(copia.errore);
    }
    extra = messaggio.empty() ? " (Error No Api)" : " (" + messaggio + ")";
    if (numero != 0) extra += "{ Err. N° " + std::to_string(numero) + " }";
    descrizione = "==> Error While Writing File : " + copia.destinazione + extra;
  } else {
    if (extra.empty()) extra = " (" + platform::systemErrorText(copia.errore) + ")";
    descrizione = "FaseAperturaFile = " + std::to_string(fase) + extra + " : " +
                  (fase == 0 || copia.letturaFallita ? copia.sorgente : copia.destinazione);
  }
  const std::int32_t modo = Errors_Alert_Mode == 0 ? 3 : 2;
  ErroreFatale(erroreRuntime, "Copy_File", 2, modo, "", descrizione, 0);
  EsitoCopia = EsitoTrasferimento::FileFallito;
  NotaFallito(copia.sorgente, descrizione);
  return false;
}

}  // namespace tandemize
