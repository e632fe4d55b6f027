#include "mail/FrmSendEMail.h"

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "presentation/Avvisi.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

void MostraFrmSendEMail() {
  const std::string testo =
      InLingua("L'avviso di errore non è stato spedito per posta: questa versione non ha un client di posta.",
               "The error notice was not mailed: this version has no mail client yet.");
  ScriviLog(testo, RigaNormale);
  MostraBalloon(FormAttivo(), testo, TitoloApplicazione, 4, 0, false, true);
}

}  // namespace tandemize
