// Loading the window, its options, its entry fields and its list.
#include "synchronisation/FrmTandemizeConfig.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "presentation/Avvisi.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "synchronisation/OccupataTandemizeConfig.h"

namespace tandemize {

namespace {

constexpr std::string_view EsempioOrigine = "c:\\DatiAziendali ", EsempioDestinazione = "d:\\backup";
constexpr int IconaSuggerimento = 0;

std::optional<int> Membro(const GruppoOpzioni& gruppo, std::int32_t valore) {
  if (valore < 0 || valore >= gruppo.Membri) return std::nullopt;
  return valore;
}

std::uint8_t Spunta(std::uint8_t valore) {
  return valore != 0 ? 1 : 0;
}

std::string Elemento(const std::vector<std::string>& elenco, std::size_t i) {
  return i < elenco.size() ? elenco[i] : std::string();
}

bool ServerConfigurati() {
  return FtpServers.size() > 1;
}

void MostraSuggerimento(const std::string& finestra) {
  if (Help_Suggest == 0) return;
  const std::string testo =
      Messaggio(64) + std::string(EsempioOrigine) + Messaggio(52) + std::string(EsempioDestinazione);
  MostraBalloon(finestra, testo, Messaggio(66), IconaSuggerimento, 0, false, false);
}

}  // namespace

FrmTandemizeConfig::FrmTandemizeConfig() : FinestraOperazione("FrmTandemizeConfig") {}

bool FrmTandemizeConfig::Carica() {
  const bool letto = LeggiFileProfilo(FileProfilo);
  CaricaImpostazioni();
  TraduciTutto();
  MostraSuggerimento(Nome());
  return letto;
}

void FrmTandemizeConfig::CaricaImpostazioni() {
  ListPath.clear();
  for (std::size_t i = 0; i < static_cast<std::size_t>(PathCount); i += 2) {
    if (Elemento(Backup_Path, i).empty()) continue;
    ListPath.push_back({{Elemento(Backup_Path, i), Elemento(Backup_Path, i + 1)},
                        {Elemento(Backup_FTP, i), Elemento(Backup_FTP, i + 1)}});
  }
  PulisciCampi();
  FineModifica();
  Opt.Attiva = Membro(Opt, FixFileOption);
  OptCampareType.Attiva = Membro(OptCampareType, CompareMethod);
  Chk.Value = Spunta(FixScanAfterFix);
  ChkAbilitàFtp.Value = Spunta(FtpEnabled);
  ChkSourceNotChange.Value = Spunta(SourceNotChange);
  ChkAutoTandem.Value = Spunta(AutoTandemize);
  ChkDeleteFile.Value = Spunta(EraseFile);
  ApplicaAbilitàFtp();
  ApplicaSourceNotChange();
  if (const auto modalità = Membro(Optmode, TandemMode))
    ScegliModalità(*modalità);
  else
    Optmode.Attiva.reset();
}

void FrmTandemizeConfig::TraduciTutto() {
  Caption = Messaggio(9);
  TitoloModalità = Messaggio(288);
  TitoloPercorsi = Messaggio(291);
  TitoloOperazioni = Messaggio(292);
  TitoloConfronto = Messaggio(293);
  TestoOptmode = {Messaggio(289), Messaggio(290)};
  TestoChkAbilitàFtp = Messaggio(299);
  ColonneListPath = {Messaggio(378), Messaggio(89), InLingua("Server FTP di origine", "Source FTP server"),
                     InLingua("Server FTP di destinazione", "Destination FTP server")};
}

// --- options

void FrmTandemizeConfig::ScegliModalità(int membro) {
  Optmode.Attiva = membro;
  for (std::size_t i = 0; i < LblPath.size(); ++i) {
    if (membro == 1)
      LblPath[i] = Messaggio(i % 2 == 0 ? 378 : 89);
    else
      LblPath[i] = Messaggio(20) + "  " + std::to_string(i + 1);
  }
  // The choice holds in both modes, so the other mode does not take it away.
  if (membro == 1) ChkSourceNotChange.Enabled = true;
}

void FrmTandemizeConfig::SpuntaSourceNotChange(bool accesa) {
  ChkSourceNotChange.Value = accesa ? 1 : 0;
  ApplicaSourceNotChange();
}

// Files are only ever deleted towards a first path that nothing else changes.
void FrmTandemizeConfig::ApplicaSourceNotChange() {
  ChkDeleteFile.Enabled = ChkSourceNotChange.Value != 0;
  if (!ChkDeleteFile.Enabled) ChkDeleteFile.Value = 0;
}

void FrmTandemizeConfig::SpuntaDeleteFile(bool accesa) {
  ChkDeleteFile.Value = accesa && MsgBox(Messaggio(422), StileSìNo) == Risposta::Sì ? 1 : 0;
}

void FrmTandemizeConfig::SpuntaAbilitàFtp(bool accesa) {
  ChkAbilitàFtp.Value = accesa ? 1 : 0;
  if (accesa && !ServerConfigurati()) {
    MsgBox(Messaggio(105), StileInformazione);
    if (ApriImpostazioniFtp) ApriImpostazioniFtp();
    if (!ServerConfigurati()) ChkAbilitàFtp.Value = 0;
  }
  ApplicaAbilitàFtp();
}

void FrmTandemizeConfig::ApplicaAbilitàFtp() {
  for (std::size_t i = 0; i < ChkFtp.size(); ++i) {
    ChkFtp[i].Enabled = ChkAbilitàFtp.Value != 0;
    if (ChkFtp[i].Enabled) continue;
    ChkFtp[i].Value = 0;
    SpegniComboFtp(i);
  }
}

void FrmTandemizeConfig::SpegniComboFtp(std::size_t i) {
  ComboFtp[i] = {};
  ComboFtp[i].Enabled = false;
}

void FrmTandemizeConfig::SpuntaFtp(int indice, bool accesa) {
  const auto i = static_cast<std::size_t>(indice);
  if (accesa && !TxtPath[i].Text.empty() && TipoPercorso(TxtPath[i].Text) != PercorsoFtp) {
    MsgBox(Messaggio(379), StileInformazione);
    accesa = false;
  }
  ChkFtp[i].Value = accesa ? 1 : 0;
  if (accesa) {
    ComboFtp[i].Enabled = true;
    AggiornaComboFtp(indice);
  } else {
    SpegniComboFtp(i);
  }
}

void FrmTandemizeConfig::AggiornaComboFtp(int indice) {
  CasellaCombo& combo = ComboFtp[static_cast<std::size_t>(indice)];
  combo.Elementi.clear();
  combo.Text.clear();
  // The last entry of the table is a spare.
  for (std::size_t i = 0; i + 1 < FtpServers.size(); ++i)
    combo.Elementi.push_back(FtpServers[i].Ftp_Description);
}

// --- the entry fields and the list

void FrmTandemizeConfig::ScriviPercorso(int indice, std::string_view testo) {
  TxtPath[static_cast<std::size_t>(indice)].Text = testo;
  AggiornaPulsanti();
}

// The button goes off again only when the fields have been used, not when one of them is emptied.
void FrmTandemizeConfig::AggiornaPulsanti() {
  if (!TxtPath[0].Text.empty() && !TxtPath[1].Text.empty() && !cmdListAbilitato[2])
    cmdListAbilitato[0] = true;
}

void FrmTandemizeConfig::PulisciCampi() {
  for (std::size_t i = 0; i < TxtPath.size(); ++i) {
    TxtPath[i].Text.clear();
    ChkFtp[i].Value = 0;
    SpegniComboFtp(i);
  }
}

void FrmTandemizeConfig::FineModifica() {
  ListPathSelezione = -1;
  cmdListAbilitato = {false, false, false};
}

EsitoSfoglia FrmTandemizeConfig::Sfoglia(int indice) {
  const auto i = static_cast<std::size_t>(indice);
  const Occupata occupata(*this);
  if (!occupata) return EsitoSfoglia::Fatto;
  std::string scelto;
  if (ChkFtp[i].Value == 0) {
    if (ScegliCartella) scelto = ScegliCartella(TxtPath[i].Text);
  } else if (ComboFtp[i].Text.empty()) {
    MsgBox(Messaggio(106), StileInformazione);
    return EsitoSfoglia::FuocoSuComboFtp;
  } else if (ConnettiServer(ComboFtp[i].Text) && SfogliaServer) {
    scelto = SfogliaServer(TxtPath[i].Text);
  }
  if (!scelto.empty()) ScriviPercorso(indice, scelto);
  return EsitoSfoglia::Fatto;
}

bool FrmTandemizeConfig::ConnettiServer(const std::string& descrizione) {
  std::string messaggio;
  bool fallita = false;
  const std::uint8_t server = IndiceServerDaDescrizione(descrizione);
  if (Connetti_Al_Server_FTP(server, messaggio, fallita, false) == 0) return true;
  // Tells what the connect left for the end of an operation, and keeps the failure from the next one.
  FineOperazione(ErroreInCorso, ErroreInCorso_Descrizione, ProcessoAnnullato);
  return false;
}

void FrmTandemizeConfig::cmdList(int membro) {
  const Occupata occupata(*this);
  if (!occupata) return;
  if (membro == 0) AggiungiRiga();
  if (membro == 1) RimuoviRiga();
  if (membro == 2) ModificaRiga();
}

RigaCoppia FrmTandemizeConfig::RigaDaiCampi() const {
  return {{TxtPath[0].Text, TxtPath[1].Text}, {ComboFtp[0].Text, ComboFtp[1].Text}};
}

bool FrmTandemizeConfig::RigaScelta() const {
  return ListPathSelezione >= 0 && ListPathSelezione < static_cast<int>(ListPath.size());
}

void FrmTandemizeConfig::AggiungiRiga() {
  if (ListPath.size() >= RigheMassime) {
    MsgBox(InLingua("L'elenco dei percorsi è pieno.", "The list of paths is full."), StileInformazione);
    return;
  }
  // Taken before the check, as events run in it.
  RigaCoppia riga = RigaDaiCampi();
  if (!ControllaPercorsi()) return;
  ListPath.push_back(std::move(riga));
  PulisciCampi();
  FineModifica();
}

void FrmTandemizeConfig::RimuoviRiga() {
  if (!RigaScelta() || MsgBox(Messaggio(432), StileSìNo) != Risposta::Sì) return;
  ListPath.erase(ListPath.begin() + ListPathSelezione);
  PulisciCampi();
  FineModifica();
}

void FrmTandemizeConfig::ModificaRiga() {
  if (MsgBox(Messaggio(431), StileSìNo) != Risposta::Sì) return;
  RigaCoppia riga = RigaDaiCampi();
  if (!ControllaPercorsi()) return;
  if (!RigaScelta() || riga.Percorsi[0].empty() || riga.Percorsi[1].empty()) return;
  ListPath[static_cast<std::size_t>(ListPathSelezione)] = std::move(riga);
  PulisciCampi();
  FineModifica();
}

void FrmTandemizeConfig::DimenticaRiga() {
  if (!RigaScelta()) return;
  PulisciCampi();
  FineModifica();
}

void FrmTandemizeConfig::SelezionaRiga(int riga) {
  if (occupata_) return;
  if (riga < 0) {
    DimenticaRiga();
    return;
  }
  if (riga >= static_cast<int>(ListPath.size())) return;
  const RigaCoppia& coppia = ListPath[static_cast<std::size_t>(riga)];
  if (coppia.Percorsi[0].empty() || coppia.Percorsi[1].empty()) return;
  ListPathSelezione = riga;
  cmdListAbilitato = {false, true, true};
  for (std::size_t i = 0; i < TxtPath.size(); ++i) {
    TxtPath[i].Text = coppia.Percorsi[i];
    SpuntaFtp(static_cast<int>(i), false);
    if (coppia.ServerFtp[i].empty()) continue;
    ChkFtp[i].Value = 1;
    ComboFtp[i].Enabled = true;
    AggiornaComboFtp(static_cast<int>(i));
    ComboFtp[i].Text = coppia.ServerFtp[i];
  }
}

}  // namespace tandemize
