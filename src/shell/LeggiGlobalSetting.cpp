// Reading the settings file.
#include "platform/newfile.h"
#include "profile/LettoreItem.h"
#include "shell/ChiaviGlobalSetting.h"
#include "shell/DopoCaratteri.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/LetturaGlobale.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr std::uint64_t LimiteFile = 4'194'304;  // bytes; the file of a hundred servers has some ten thousand
constexpr std::string_view SegnoUtf8 = "\xEF\xBB\xBF";

std::string TestoDi(const std::string& percorso, platform::ErrorCode errore) {
  const std::string motivo =
      errore == platform::kFileTooLarge
          ? InLingua("è troppo grande per un file di impostazioni", "it is too large for a settings file")
          : platform::systemErrorText(errore);
  return InLingua("Impossibile leggere il file delle impostazioni '", "The settings file '") + percorso +
         InLingua("': ", "' cannot be read: ") + motivo;
}

// Val: the number at the start of a text, 0 if there is none.
int NumeroIniziale(std::string_view testo) {
  int numero = 0;
  while (!testo.empty() && testo.front() == ' ') testo.remove_prefix(1);
  for (const char c : testo) {
    if (c < '0' || c > '9') break;
    numero = numero * 10 + (c - '0');
  }
  return numero;
}

// Whether a control shows what the file says. A text box counts only while it is enabled.
bool Confronta(const CasellaTesto& casella, std::string_view valore) {
  return !casella.Enabled || casella.Text == valore;
}
bool Confronta(const CasellaCombo& combo, std::string_view valore) {
  return combo.Text == valore;
}
bool Confronta(const CasellaSpunta& spunta, std::string_view valore) {
  return (spunta.Value != 0) == (NumeroIniziale(valore) != 0);
}
bool Confronta(const GruppoOpzioni& gruppo, std::string_view valore) {
  const int membro = NumeroIniziale(valore);
  return membro >= gruppo.Membri || gruppo.Accesa(membro);
}

void Imposta(CasellaTesto& casella, std::string_view valore) {
  casella.Text = valore;
}
void Imposta(CasellaCombo& combo, std::string_view valore) {
  combo.Text = valore;
}
void Imposta(CasellaSpunta& spunta, std::string_view valore) {
  spunta.Value = NumeroIniziale(valore) != 0 ? 1 : 0;
}
// A number that no member has, such as 255, leaves the group as it is.
void Imposta(GruppoOpzioni& gruppo, std::string_view valore) {
  const int membro = NumeroIniziale(valore);
  if (membro < gruppo.Membri) gruppo.Attiva = membro;
}

// The two characters behind the key hold the index.
std::size_t IndiceServer(std::string_view riga, const ChiaveGlobale& chiave) {
  const std::string_view resto = DopoCaratteri(riga, chiave.Chiave.size());
  const std::size_t lunghezza = resto.size() - DopoCaratteri(resto, 2).size();
  return static_cast<std::size_t>(NumeroIniziale(resto.substr(0, lunghezza)));
}

// From index 10 on a value begins with "= ", the rest of the key's own. The texts keep it; a number could not
// be read with it.
bool ImpostaCampo(ServerFtp& server, const ChiaveGlobale& chiave, std::string_view valore) {
  if (const auto* testo = std::get_if<std::string ServerFtp::*>(&chiave.Destinazione))
    return Converti(valore, server.**testo);
  if (valore.starts_with("= ")) valore.remove_prefix(2);
  const auto* numero = std::get_if<std::uint8_t ServerFtp::*>(&chiave.Destinazione);
  return numero != nullptr && Converti(valore, server.**numero);
}

bool StessoCampo(const ServerFtp& uno, const ServerFtp& altro, const ChiaveGlobale& chiave) {
  if (const auto* testo = std::get_if<std::string ServerFtp::*>(&chiave.Destinazione))
    return uno.**testo == altro.**testo;
  const auto* numero = std::get_if<std::uint8_t ServerFtp::*>(&chiave.Destinazione);
  return numero != nullptr && uno.**numero == altro.**numero;
}

}  // namespace

std::string_view ValoreDiRiga(std::string_view riga, std::string_view chiave) {
  // One character more than " = " has: with a one-digit index behind the key this is where the value's blank
  // stands, and without an index the value itself.
  std::string_view valore = DopoCaratteri(riga, chiave.size() + 3);
  while (!valore.empty() && valore.front() == ' ') valore.remove_prefix(1);
  return valore;
}

std::string ErroreDiRiga(const LetturaGlobale& lettura, std::string_view chiave) {
  return InLingua("Il file delle impostazioni '", "The settings file '") + lettura.percorso +
         InLingua("' non è corretto: riga ", "' is not correct: line ") + std::to_string(lettura.riga) +
         InLingua(", chiave '", ", key '") + std::string(chiave) +
         InLingua("', il valore non è ammesso.", "', the value is not allowed.");
}

bool FrmGlobalSetting::OpenFileGlobal(const std::string& Percorso, bool& Cambiato, bool FermaAlPrimo,
                                      bool SoloVariabili) {
  Cambiato = false;
  errore_.clear();
  LetturaGlobale lettura{Percorso, FermaAlPrimo, SoloVariabili};
  const bool letto = LeggiFile(lettura);
  Cambiato = lettura.cambiato;
  return CaricaLingua() == EsitoLingua::Caricata && letto;
}

bool FrmGlobalSetting::LeggiFile(LetturaGlobale& lettura) {
  std::string contenuto;
  if (const auto errore = platform::readFile(lettura.percorso, contenuto, LimiteFile);
      errore != platform::kNoError) {
    errore_ = TestoDi(lettura.percorso, errore);
    return false;
  }
  const bool letto = LeggiTesto(contenuto, lettura);
  if (letto && !lettura.soloVariabili && !lettura.fermaAlPrimo) letti_ = *this;
  return letto;
}

bool FrmGlobalSetting::LeggiTesto(std::string_view testo, LetturaGlobale& lettura) {
  if (testo.substr(0, SegnoUtf8.size()) == SegnoUtf8) testo.remove_prefix(SegnoUtf8.size());
  LettoreItem lettore(testo);
  for (std::string item; lettore.Leggi(item);) {
    lettura.riga = lettore.Riga();
    const EsitoRiga esito = LeggiItem(item, lettore, lettura);
    if (esito == EsitoRiga::Differenza) return true;
    if (esito == EsitoRiga::Errore) return false;
  }
  // Without a single key the zeros of a start would pass for settings, and a size limit of 0 gives each line
  // of the log a file of its own.
  if (!lettura.qualcosa) {
    errore_ = InLingua("Il file delle impostazioni '", "The settings file '") + lettura.percorso +
              InLingua("' non contiene alcuna impostazione.", "' holds no settings.");
    return false;
  }
  FineLettura(lettura);
  return true;
}

FrmGlobalSetting::EsitoRiga FrmGlobalSetting::LeggiItem(const std::string& item, LettoreItem& lettore,
                                                        LetturaGlobale& lettura) {
  if (item.size() < ChiavePiùCorta) return EsitoRiga::Continua;
  for (const ChiaveGlobale& chiave : ChiaviGlobali()) {
    const EsitoRiga esito = LeggiRiga(item, chiave, lettura);
    if (esito != EsitoRiga::Continua) return esito;
  }
  return LeggiTimerAvanzato(item, lettore, lettura);
}

FrmGlobalSetting::EsitoRiga FrmGlobalSetting::LeggiRiga(std::string_view Riga, const ChiaveGlobale& chiave,
                                                        LetturaGlobale& lettura) {
  // Anywhere in the line, so a value that holds another setting's key sets that one too.
  if (Riga.find(chiave.Chiave) == std::string_view::npos) return EsitoRiga::Continua;
  lettura.qualcosa = true;
  const std::string_view valore = ValoreDiRiga(Riga, chiave.Chiave);
  if (DelServer(chiave)) return LeggiRigaFtp(Riga, valore, chiave, lettura);

  const bool convertito = std::visit(
      [&](auto destinazione) {
        if constexpr (std::is_pointer_v<decltype(destinazione)>) {
          auto prova = *destinazione;
          return Converti(valore, lettura.soloProva ? prova : *destinazione);
        }
        return true;
      },
      chiave.Destinazione);
  if (!convertito) {
    errore_ = ErroreDiRiga(lettura, chiave.Chiave);
    return EsitoRiga::Errore;
  }
  return LeggiControllo(valore, chiave, lettura);
}

FrmGlobalSetting::EsitoRiga FrmGlobalSetting::LeggiControllo(std::string_view valore,
                                                             const ChiaveGlobale& chiave,
                                                             LetturaGlobale& lettura) {
  if (lettura.soloVariabili) return EsitoRiga::Continua;
  return std::visit(
      [&](auto controllo) {
        if constexpr (!std::is_same_v<decltype(controllo), std::monostate>) {
          if (!Confronta(this->*controllo, valore) && lettura.Differenza()) return EsitoRiga::Differenza;
          Imposta(this->*controllo, valore);
        }
        return EsitoRiga::Continua;
      },
      chiave.Controllo);
}

FrmGlobalSetting::EsitoRiga FrmGlobalSetting::LeggiRigaFtp(std::string_view Riga, std::string_view valore,
                                                           const ChiaveGlobale& chiave,
                                                           LetturaGlobale& lettura) {
  std::vector<ServerFtp>& server = lettura.server;
  const std::size_t indice = IndiceServer(Riga, chiave);
  if (indice + 1 >= server.size()) server.emplace_back();
  // A number that leaves others out has no place.
  if (indice + 1 >= server.size() || !ImpostaCampo(server[indice], chiave, valore)) {
    errore_ = ErroreDiRiga(lettura, chiave.Chiave);
    return EsitoRiga::Errore;
  }
  if (lettura.soloVariabili) return EsitoRiga::Continua;
  const bool uguale =
      indice + 1 < FtpServers.size() && StessoCampo(FtpServers[indice], server[indice], chiave);
  return !uguale && lettura.Differenza() ? EsitoRiga::Differenza : EsitoRiga::Continua;
}

// Takes over the lists. They are complete only now: a reading that ended before leaves those in use as they
// are.
void FrmGlobalSetting::FineLettura(LetturaGlobale& lettura) {
  if (lettura.soloProva) return;
  if (!lettura.soloVariabili) {
    const bool stessiServer = lettura.server.size() == FtpServers.size();
    const bool stessiTimer = !OptTipoTimer.Accesa(1) || lettura.righeTimer == ListTimer;
    if ((!stessiServer || !stessiTimer) && lettura.Differenza()) return;
    ListTimer = std::move(lettura.righeTimer);
    ListTimerSelezione = -1;
    cmdListAbilitato = {true, false, false};
  }
  FtpServers = std::move(lettura.server);
  if (!PartenzaAutomaticaAttiva) TimerAdvList = std::move(lettura.timer);
}

}  // namespace tandemize
