#include "profile/MenuProfilo.h"

#include "platform/files.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/OperazioniInCorso.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::string_view NomeProgramma = "Tandemize Backup";

bool Esiste(const std::string& percorso) {
  platform::FileStatus stato;
  return platform::query(percorso, stato) == platform::kNoError;
}

bool AccettaSostituzione(const std::string& percorso) {
  if (!Esiste(percorso)) return true;
  const std::string domanda = InLingua("Il file '", "The file '") + percorso +
                              InLingua("' esiste già. Sostituirlo con un profilo vuoto?",
                                       "' exists already. Replace it with an empty profile?");
  return MsgBox(domanda, StileSìNo) == Risposta::Sì;
}

}  // namespace

std::string DescrizioneProfili() {
  return "File " + Messaggio(441) + " (*.cfg)";
}

std::string ConEstensioneProfilo(std::string_view percorso) {
  const std::size_t lunghezza = EstensioneProfilo.size();
  std::string nome(percorso);
  if (nome.size() < lunghezza ||
      Maiuscolo(nome.substr(nome.size() - lunghezza)) != Maiuscolo(EstensioneProfilo))
    nome += EstensioneProfilo;
  return nome;
}

std::string TitoloPrincipale() {
  const bool predefinito = NomeFinale(FileProfilo) == NomeProfiloPredefinito;
  return std::string(NomeProgramma) + " - [" + (predefinito ? Messaggio(446) : FileProfilo) + "]";
}

bool ProfiloSostituibile(bool runDelDialogo) {
  if (OperazioneDaFermare(runDelDialogo).empty()) return true;
  MsgBox(InLingua("Un'operazione è in corso. Il profilo si può cambiare quando sarà finita.",
                  "An operation is going on. The profile can be changed when it has ended."),
         StileInformazione);
  return false;
}

bool NuovoProfilo(std::string_view percorso) {
  if (percorso.empty()) return false;
  const std::string nome = ConEstensioneProfilo(percorso);
  if (!AccettaSostituzione(nome)) return false;
  if (!CreaNuovoProfilo(nome)) {
    MsgBox(Messaggio(448), StileCritico);
    return false;
  }
  FileProfilo = nome;
  MsgBox(Messaggio(447), StileInformazione);
  return true;
}

bool CaricaProfilo(std::string_view percorso) {
  if (percorso.empty()) return false;
  const std::string nome(percorso);
  if (!ProfiloValido(nome)) {
    MsgBox(Messaggio(444) + " '" + nome + "' " + Messaggio(445), StileInformazione);
    return false;
  }
  FileProfilo = nome;
  return true;
}

}  // namespace tandemize
