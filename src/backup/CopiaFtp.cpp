// One file on its way to or from the server of the session.
//
// A download takes its final name only when it is whole. An upload writes under the final name, so what a
// stop or a failure leaves there is removed.

#include <algorithm>

#include "backup/FrmFileTransfer.h"
#include "backup/ServerDelRecord.h"
#include "errors/ModuloLog.h"
#include "platform/ftp.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/File_System.h"
#include "storage/Guardia.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

// Events run between blocks of at most this size, however large the buffer is set.
constexpr std::int64_t BloccoMassimo = std::int64_t{1024} * 1024;

std::string DescrizioneLocale(bool lettura, const std::string& percorso, platform::ErrorCode errore) {
  return std::string(lettura ? "==> Error While Reading File : " : "==> Error While Writing File : ") +
         percorso + " (" + platform::systemErrorText(errore) + "){ Err. N° " + std::to_string(errore) + " }";
}

// The file that a record from server to server passes through; it goes when the record is done.
class FileDiPassaggio {
 public:
  FileDiPassaggio() : percorso_(PercorsoApplicazione + "Transfer.tmp") {}
  ~FileDiPassaggio() { static_cast<void>(platform::deleteFile(percorso_)); }
  FileDiPassaggio(const FileDiPassaggio&) = delete;
  FileDiPassaggio& operator=(const FileDiPassaggio&) = delete;
  [[nodiscard]] const std::string& Percorso() const { return percorso_; }

 private:
  std::string percorso_;
};

// The moment as the program keeps dates, in whole seconds.
platform::FileTime InSecondi(platform::FileTime momento) {
  return {momento.seconds, 0};
}

}  // namespace

struct FrmFileTransfer::CopiaFtp {
  const std::string& sorgente;
  const std::string& destinazione;
  bool conta = true;        // its bytes and itself count for the bars
  std::uint64_t fatti = 0;  // bytes moved by the attempt at hand, as counted for the bars
  bool contata = false;
  bool aperta = false;        // the server has opened its file for writing, in this attempt or an earlier one
  bool dubbia = false;        // it may have done so
  std::string colpaLocale{};  // what failed on this machine; such a failure is not tried again
  platform::ErrorCode erroreLocale = platform::kNoError;

  // For the guard: neither a stop nor a failure of this machine is a matter of trying again.
  platform::ErrorCode Locale(bool lettura, const std::string& percorso, platform::ErrorCode errore) {
    erroreLocale = errore;
    colpaLocale = DescrizioneLocale(lettura, percorso, errore);
    return platform::kFtpStopped;
  }
};

bool FrmFileTransfer::InviaFileAlServer(const std::string& sorgente, const std::string& destinazione,
                                        std::int64_t buffer) {
  PreparaBlocco(buffer);
  CopiaFtp copia{sorgente, destinazione};
  return Invia(copia) ? ConcludiFtp() : AbbandonaFtp(copia, "InviaFileAlServer");
}

bool FrmFileTransfer::ScaricaFileDalServer(const std::string& destinazione, const std::string& sorgente,
                                           std::int64_t buffer) {
  PreparaBlocco(buffer);
  CopiaFtp copia{sorgente, destinazione};
  return Scarica(copia) ? ConcludiFtp() : AbbandonaFtp(copia, "ScaricaFileDalServer");
}

// Both sides lie on a server. There is one session, so both must lie on its server.
bool FrmFileTransfer::CopiaFraServer(const std::string& sorgente, const std::string& destinazione,
                                     std::int64_t buffer) {
  if (!SullaSessione(ModoTrasferimento, sorgente, destinazione)) {
    const std::string testo =
        InLingua(
            "==> Sorgente e destinazione stanno su server FTP diversi, il file non può essere copiato : ",
            "==> Source and destination lie on different FTP servers, the file cannot be copied : ") +
        sorgente;
    RiferisciFallito(sorgente, "InviaFileAlServer", 0, testo);
    return false;
  }
  PreparaBlocco(buffer);
  const FileDiPassaggio passaggio;
  CopiaFtp andata{sorgente, passaggio.Percorso(), false};
  if (!Scarica(andata)) return AbbandonaFtp(andata, "ScaricaFileDalServer");
  CopiaFtp ritorno{passaggio.Percorso(), destinazione};
  return Invia(ritorno) ? ConcludiFtp() : AbbandonaFtp(ritorno, "InviaFileAlServer");
}

bool FrmFileTransfer::ConcludiFtp() {
  ScriviLog("", RigaOk);
  return true;
}

// Always false: the destination does not hold the source's content now.
bool FrmFileTransfer::AbbandonaFtp(const CopiaFtp& copia, std::string_view routine) {
  if (ProcessoAnnullato) {
    if (routine == "ScaricaFileDalServer") ScriviLog("Copy interrupt by user.", RigaNormale);
    EsitoCopia = EsitoTrasferimento::Annullato;
  } else if (!copia.colpaLocale.empty()) {
    RiferisciFallito(copia.sorgente, routine, ErroreRuntimeDaSistema(copia.erroreLocale), copia.colpaLocale);
  } else {
    // The guard has reported it.
    EsitoCopia = EsitoTrasferimento::ErroreSuperato;
    NotaFallito(copia.sorgente, UltimoErroreFtp().Parole.empty()
                                    ? TestoErroreInternet(UltimoErroreFtp().Numero)
                                    : UltimoErroreFtp().Parole);
  }
  return false;
}

void FrmFileTransfer::RiferisciFallito(const std::string& percorso, std::string_view routine,
                                       std::int32_t errore, const std::string& testo) {
  ErroreFatale(errore, routine, 2, Errors_Alert_Mode == 0 ? 3 : 2, "", testo, 0);
  EsitoCopia = EsitoTrasferimento::FileFallito;
  NotaFallito(percorso, testo);
}

void FrmFileTransfer::PreparaBlocco(std::int64_t buffer) {
  blocco_.resize(static_cast<std::size_t>(std::clamp<std::int64_t>(buffer, 1, BloccoMassimo)));
}

// The bytes of an attempt that failed are not copied.
void FrmFileTransfer::RicominciaFtp(CopiaFtp& copia) {
  if (copia.conta) ByteCopiati -= static_cast<double>(copia.fatti);
  copia.fatti = 0;
  copia.colpaLocale.clear();
}

void FrmFileTransfer::ContaFtp(CopiaFtp& copia, std::uint64_t lunghezza) {
  if (copia.conta && !copia.contata) ++FileCopiati;
  copia.contata = true;
  AggiornaProgressBarFileSingolo(static_cast<double>(lunghezza), 0);
}

void FrmFileTransfer::AvanzaFtp(CopiaFtp& copia, std::size_t byte, std::uint64_t lunghezza) {
  copia.fatti += byte;
  AggiornaProgressBar(copia.conta ? static_cast<double>(byte) : 0);
  AggiornaProgressBarFileSingolo(static_cast<double>(lunghezza), static_cast<double>(copia.fatti));
}

// --- upload

bool FrmFileTransfer::Invia(CopiaFtp& copia) {
  const bool riuscita =
      ConRiprovaFtp([&](platform::FtpSession& sessione) { return TentaInvio(sessione, copia); },
                    "InviaFileAlServer", DettaglioPercorso("File Name: ", copia.destinazione));
  if (!riuscita) EliminaParziale(copia);
  return riuscita;
}

platform::ErrorCode FrmFileTransfer::TentaInvio(platform::FtpSession& sessione, CopiaFtp& copia) {
  RicominciaFtp(copia);
  // Before the server is asked for its file: a source that cannot be read costs no older copy its content.
  platform::SourceFile in;
  if (const platform::ErrorCode errore = in.open(copia.sorgente); errore != platform::kNoError)
    return copia.Locale(true, copia.sorgente, errore);
  DoEvents();
  if (ProcessoAnnullato) return platform::kFtpStopped;
  platform::FtpData out;
  const platform::ErrorCode errore = sessione.openWrite(copia.destinazione, out);
  copia.aperta = copia.aperta || errore == platform::kNoError;
  copia.dubbia = copia.dubbia || (errore != platform::kFtpRefused && errore != platform::kInvalidName);
  if (errore != platform::kNoError) return errore;
  if (ProcessoAnnullato) return platform::kFtpStopped;
  const std::uint64_t lunghezza = in.status().size;
  ContaFtp(copia, lunghezza);
  if (lunghezza > blocco_.size()) in.willReadThrough();
  const platform::ErrorCode esito = InviaBlocchi(in, out, copia);
  return esito == platform::kNoError ? out.close() : esito;
}

platform::ErrorCode FrmFileTransfer::InviaBlocchi(platform::SourceFile& in, platform::FtpData& out,
                                                  CopiaFtp& copia) {
  const std::uint64_t lunghezza = in.status().size;
  while (copia.fatti < lunghezza) {
    DoEvents();
    std::size_t letti = 0;
    const std::size_t voluti =
        static_cast<std::size_t>(std::min<std::uint64_t>(blocco_.size(), lunghezza - copia.fatti));
    platform::ErrorCode errore = in.read(blocco_.data(), voluti, letti);
    // The source may have become shorter since it was opened.
    if (errore == platform::kNoError && letti == 0) errore = platform::kEndOfFile;
    if (errore != platform::kNoError) return copia.Locale(true, copia.sorgente, errore);
    DoEvents();
    if (ProcessoAnnullato) return platform::kFtpStopped;
    errore = out.write(blocco_.data(), letti);
    if (errore != platform::kNoError) return errore;
    AvanzaFtp(copia, letti, lunghezza);
  }
  return platform::kNoError;
}

// Removes what is on the server of a file that did not get there whole. A file that the server never opened
// is an older copy, and stays.
void FrmFileTransfer::EliminaParziale(const CopiaFtp& copia) {
  if (!copia.aperta && !copia.dubbia) return;
  const PuliziaFtp pulizia;
  platform::FtpSession& sessione = SessioneFtp();
  if (HSessioneFtp == 0 || !sessione.isOpen()) return NotaParziale(copia.destinazione);
  if (!copia.aperta && !VuotoSulServer(copia.destinazione)) return;
  // Whether something exists is a question about the current folder.
  std::string prima;
  const bool nota = sessione.currentFolder(prima) == platform::kNoError;
  static_cast<void>(sessione.setCurrentFolder(CartellaSuperiore(copia.destinazione)));
  const bool trovato = EsisteFile(copia.destinazione);
  if (trovato ? !EliminaFile(copia.destinazione) : !sessione.isOpen()) NotaParziale(copia.destinazione);
  if (nota) static_cast<void>(sessione.setCurrentFolder(prima));
}

// A server that began to write and lost the data connection at once leaves an empty file.
bool FrmFileTransfer::VuotoSulServer(const std::string& percorso) {
  platform::FtpEntry voce;
  return SessioneFtp().fileStatus(percorso, voce) == platform::kNoError && voce.hasSize && voce.size == 0;
}

void FrmFileTransfer::NotaParziale(const std::string& percorso) {
  ScriviLog(InLingua("Una parte del file può essere rimasta sul server: '",
                     "A part of the file may be left on the server: '") +
                percorso + "'",
            RigaNormale);
}

// --- download

bool FrmFileTransfer::Scarica(CopiaFtp& copia) {
  return ConRiprovaFtp([&](platform::FtpSession& sessione) { return TentaScarico(sessione, copia); },
                       "ScaricaFileDalServer", DettaglioPercorso("File Name: ", copia.sorgente));
}

platform::ErrorCode FrmFileTransfer::TentaScarico(platform::FtpSession& sessione, CopiaFtp& copia) {
  RicominciaFtp(copia);
  DoEvents();
  if (ProcessoAnnullato) return platform::kFtpStopped;
  platform::FtpData in;
  platform::ErrorCode errore = sessione.openRead(copia.sorgente, in, {.size = true, .time = copia.conta});
  if (errore != platform::kNoError) return errore;
  if (ProcessoAnnullato) return platform::kFtpStopped;
  const std::optional<std::uint64_t> lunghezza = in.size();
  const std::optional<platform::FileTime> momento = in.time();
  ContaFtp(copia, lunghezza.value_or(0));
  platform::NewFile out;
  errore = out.create(copia.destinazione, 0, copia.conta ? &scorta_ : nullptr);
  if (errore != platform::kNoError) return copia.Locale(false, copia.destinazione, errore);
  if (lunghezza && *lunghezza > blocco_.size()) out.reserve(*lunghezza);
  errore = ScaricaBlocchi(in, out, copia, lunghezza.value_or(0));
  if (errore == platform::kNoError) errore = in.close();
  if (errore != platform::kNoError) return errore;
  // A server that closed the data too early and yet calls it whole.
  if (lunghezza && copia.fatti < *lunghezza) return platform::kEndOfFile;
  return ConcludiScarico(out, copia, momento);
}

platform::ErrorCode FrmFileTransfer::ScaricaBlocchi(platform::FtpData& in, platform::NewFile& out,
                                                    CopiaFtp& copia, std::uint64_t lunghezza) {
  std::size_t letti = blocco_.size();
  while (letti == blocco_.size()) {
    platform::ErrorCode errore = in.read(blocco_.data(), blocco_.size(), letti);
    if (errore != platform::kNoError) return errore;
    if (ProcessoAnnullato) return platform::kFtpStopped;
    errore = out.write(blocco_.data(), letti);
    if (errore != platform::kNoError) return copia.Locale(false, copia.destinazione, errore);
    AvanzaFtp(copia, letti, lunghezza);
    DoEvents();
    if (ProcessoAnnullato) return platform::kFtpStopped;
  }
  return platform::kNoError;
}

// The file gets its own date: the one that the server tells of it, else that of its line in the listing.
platform::ErrorCode FrmFileTransfer::ConcludiScarico(platform::NewFile& out, CopiaFtp& copia,
                                                     const std::optional<platform::FileTime>& momento) {
  platform::ErrorCode errore = platform::kNoError;
  if (momento)
    errore = out.setTime(InSecondi(*momento));
  else if (dataElencata_ > 0)
    errore = out.setTime({dataElencata_, 0});
  bool sostituita = false;
  if (errore == platform::kNoError) errore = out.commit(sostituita);
  if (errore != platform::kNoError) return copia.Locale(false, copia.destinazione, errore);
  attributiCopiati_ = 0;
  return platform::kNoError;
}

}  // namespace tandemize
