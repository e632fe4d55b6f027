// The test of a server in the FTP tab of the settings.
#include "errors/ModuloGestioneErrori.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/OperazioniInCorso.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/ModuloInternet.h"

namespace tandemize {

namespace {

constexpr int MessaggioCollegato = 409;

}  // namespace

void FrmGlobalSetting::ProvaServerFtp(FinestraOperazione& finestra, const std::function<void()>& collegato,
                                      bool runDelDialogo) {
  if (ListFtpSelezione < 0) return;
  ScriviCampiFtp();
  // It may be connecting, or hold the session.
  if (!OperazioneDaFermare(runDelDialogo).empty()) {
    MsgBox(InLingua("Un'operazione è in corso. Il server si può provare al suo termine.",
                    "An operation is in progress. The server can be tested when it has ended."),
           StileInformazione);
    return;
  }
  // A server that counts as connected would pass with fields that are wrong.
  DisconnettiServer("");
  const auto indice = static_cast<std::size_t>(ListFtpSelezione);
  const std::string server = FtpServers[indice].Ftp_Server_Name;
  std::string messaggio;
  bool fallita = false;
  const std::int32_t errore =
      Connetti_Al_Server_FTP(static_cast<std::int16_t>(indice), messaggio, fallita, false);
  DisconnettiServer("");
  if (collegato) collegato();
  if (finestra.ProcessoAnnullato) AnnullamentoRichiesto = false;
  if (errore != platform::kFtpStopped) finestra.ErroreInCorso = finestra.ErroreInCorso || fallita;
  const bool riuscita = FineOperazione(finestra.ErroreInCorso, messaggio, finestra.ProcessoAnnullato);
  if (riuscita && errore == platform::kNoError)
    MsgBox(Messaggio(MessaggioCollegato) + " '" + server + "' OK.", StileInformazione);
}

}  // namespace tandemize
