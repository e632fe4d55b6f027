// The FTP tab of the settings: the table of servers, its list and its fields.
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/Schermo.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::string_view NuovoServer = "New Ftp Server";
constexpr std::string_view ServerRipetuto =
    "Il Server FTP specificato è già stato inserito.Salvataggio annullato.";
constexpr int MessaggioNessunServer = 263, MessaggioEliminareServer = 264, MessaggioFineDomanda = 265;

}  // namespace

void FrmGlobalSetting::RiempiListFtp() {
  ListFtp.clear();
  for (std::size_t i = 0; i + 1 < FtpServers.size(); ++i) ListFtp.push_back(FtpServers[i].Ftp_Description);
  SelezionaServerFtp(ListFtpSelezione);
}

void FrmGlobalSetting::SelezionaServerFtp(int riga) {
  ListFtpSelezione = riga >= 0 && riga < static_cast<int>(ListFtp.size()) ? riga : -1;
  MostraCampiFtp();
}

void FrmGlobalSetting::MostraCampiFtp() {
  const bool scelto = ListFtpSelezione >= 0;
  const ServerFtp server = scelto ? FtpServers[static_cast<std::size_t>(ListFtpSelezione)] : ServerFtp{};
  txtFtpDescription.Text = server.Ftp_Description;
  txtFtpServer.Text = server.Ftp_Server_Name;
  txtFtpUser.Text = server.Ftp_User;
  txtFtpPassword.Text = server.Ftp_Password;
  ChkFtpPassive.Value = server.Ftp_PassiveMode != 0 ? 1 : 0;
  for (CasellaTesto* casella : {&txtFtpDescription, &txtFtpServer, &txtFtpUser, &txtFtpPassword})
    casella->Enabled = scelto;
}

void FrmGlobalSetting::ScriviCampiFtp() {
  if (ListFtpSelezione < 0) return;
  const auto indice = static_cast<std::size_t>(ListFtpSelezione);
  FtpServers[indice] = {txtFtpDescription.Text, txtFtpServer.Text, txtFtpUser.Text, txtFtpPassword.Text,
                        ChkFtpPassive.Value};
  ListFtp[indice] = txtFtpDescription.Text;
}

void FrmGlobalSetting::NuovoServerFtp() {
  FtpServers.back() = ServerFtp{std::string(NuovoServer), {}, {}, {}, 0};
  FtpServers.emplace_back();
  ListFtp.emplace_back(NuovoServer);
  SelezionaServerFtp(static_cast<int>(ListFtp.size()) - 1);
}

void FrmGlobalSetting::EliminaServerSelezionato() {
  if (ListFtpSelezione < 0) return;
  const auto indice = static_cast<std::size_t>(ListFtpSelezione);
  const std::string domanda =
      Messaggio(MessaggioEliminareServer) + ListFtp[indice] + Messaggio(MessaggioFineDomanda);
  if (MsgBox(domanda, StileSìNo) != Risposta::Sì) return;
  EliminaServerFtp(FtpServers, indice);
  ListFtp.erase(ListFtp.begin() + ListFtpSelezione);
  if (ListFtp.empty()) FtpServers.assign(1, {});
  SelezionaServerFtp(0);
}

void FrmGlobalSetting::VerificaDatiCorrettiFtp(bool& Esito) const {
  Esito = true;
  if (ListFtpSelezione < 0) return;
  for (const CasellaTesto* casella : {&txtFtpDescription, &txtFtpServer, &txtFtpUser, &txtFtpPassword})
    Esito = Esito && !casella->Text.empty();
  if (!Esito) return;
  // Only the newest row is compared.
  const std::string ultima = Maiuscolo(ListFtp.back());
  for (std::size_t i = 0; i + 1 < ListFtp.size() && Esito; ++i) Esito = Maiuscolo(ListFtp[i]) != ultima;
  if (!Esito) MsgBox(ServerRipetuto, StileInformazione);
}

void FrmGlobalSetting::ControllaInserimentoDatiFtp(bool& Esito) const {
  if (FtpServers.size() <= 1 || ListFtp.empty()) MsgBox(Messaggio(MessaggioNessunServer), StileInformazione);
  Esito = true;
}

void FrmGlobalSetting::EliminaServerFtp(std::vector<ServerFtp>& Array, std::size_t Indice) {
  if (Indice + 1 < Array.size()) Array.erase(Array.begin() + static_cast<std::ptrdiff_t>(Indice));
}

}  // namespace tandemize
