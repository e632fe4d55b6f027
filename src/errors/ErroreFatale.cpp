// The final report of a failure: its text, and who gets to see it.
#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "mail/FrmSendEMail.h"
#include "platform/errors.h"
#include "presentation/Avvisi.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "storage/ModuloInternet.h"

namespace tandemize {

namespace {

enum Origine : std::int32_t { DelSistema = 0, DelRuntime = 1 };  // of the number; `Tipo` of a report
enum Via : std::int32_t { SoloAvviso = 1, LogEAvviso = 3 };      // `Modo` of a report; all others: the log

constexpr int IconaAvviso = 4;
constexpr std::int32_t PrimoErroreInternet = 12001, UltimoErroreInternet = 12174;

std::string DescrizioneDi(std::int32_t numero, std::int32_t origine) {
  if (origine == DelRuntime) return TestoErroreRuntime(numero);
  if (numero >= PrimoErroreInternet && numero <= UltimoErroreInternet) return TestoErroreInternet(numero);
  return platform::systemErrorText(numero);
}

std::string Voce(std::string_view etichetta, std::string_view valore) {
  return std::string(etichetta) + "< " + std::string(valore) + " >\r";
}

std::string TestoComposto(std::int32_t numero, std::string_view routine, std::int32_t origine,
                          std::string_view dettaglio, std::int16_t riga) {
  if (origine != DelSistema && origine != DelRuntime) return "";
  std::string testo = "Fatal Error:\r";
  if (origine == DelRuntime) testo += "\rDetail:\r";
  testo += Voce("Form Name: ", FormAttivo());
  testo += Voce("Routine Name: ", routine);
  testo += Voce("Error Number: ", std::to_string(numero));
  testo += Voce("Error Description: ", DescrizioneDi(numero, origine));
  testo += "Line N° " + std::to_string(riga) + "\r";
  return testo += dettaglio;
}

void Avvisa(std::string_view testo) {
  if (ApplicazioneNascosta)
    MostraBalloon(FormAttivo(), testo, TitoloApplicazione, IconaAvviso, 0, false, true);
  else
    MsgBox(testo, StileInformazione);
}

}  // namespace

void ErroreFatale(std::int32_t Numero, std::string_view Routine, std::int32_t Tipo, std::int32_t Modo,
                  std::string_view Dettaglio, std::string_view TestoProprio, std::int16_t Riga) {
  const std::string testo = TestoProprio.empty() ? TestoComposto(Numero, Routine, Tipo, Dettaglio, Riga)
                                                 : std::string(TestoProprio);
  if (Modo != SoloAvviso) ScriviLog(testo, BloccoErrore);
  if (Modo == SoloAvviso || Modo == LogEAvviso)
    Avvisa(TestoProprio.empty() ? std::string_view(Messaggio(340)) : TestoProprio);
  if (Email_Action == 1) MostraFrmSendEMail();
  if (Log_Show_Window == 1 && !schermo().LogCaricato()) schermo().MostraLog();
}

}  // namespace tandemize
