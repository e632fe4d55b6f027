#include "backup/ServerDelRecord.h"

#include <algorithm>
#include <string>
#include <vector>

#include "profile/ModelloBackup.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "storage/ModuloInternet.h"
#include "storage/Percorsi.h"
#include "storage/Unita.h"

namespace tandemize {

namespace {

bool Contiene(const std::string& cartella, std::string_view percorso) {
  return TipoPercorso(cartella) == PercorsoFtp && percorso.starts_with(ConSeparatore(cartella));
}

bool Contiene(const OggettoBackup& oggetto, std::string_view percorso) {
  if (!oggetto.Vivo() || oggetto.BackIgnorato) return false;
  if (!oggetto.BackPath.empty()) return Contiene(oggetto.BackPath, percorso);
  return std::ranges::any_of(oggetto.Files, [percorso](const std::string& file) { return file == percorso; });
}

// Descriptions as the diagram, or the profile, has them; one that names no server stands for the first.
std::vector<std::string> ServerDelDiagramma(std::uint8_t verso, std::string_view percorso) {
  std::vector<std::string> trovati;
  for (std::size_t k = 1; k < ArrayOggetti.size(); ++k)
    if (ArrayOggetti[k].BackTipoTrasferimento == verso && Contiene(ArrayOggetti[k], percorso))
      trovati.push_back(ArrayOggetti[k].BackFtpServerDescription);
  return trovati;
}

std::vector<std::string> ServerDelProfilo(std::string_view percorso) {
  std::vector<std::string> trovati;
  for (std::size_t i = 0; i < Backup_Path.size(); ++i)
    if (Contiene(Backup_Path[i], percorso))
      trovati.push_back(i < Backup_FTP.size() ? Backup_FTP[i] : std::string());
  return trovati;
}

bool TuttiSullaSessione(const std::vector<std::string>& server) {
  const auto sua = [](const ServerInElenco& voce) { return voce.Handle != 0 && voce.Handle == HSessioneFtp; };
  const auto sessione = std::ranges::find_if(ServerConnessi, sua);
  if (sessione == ServerConnessi.end()) return false;
  return std::ranges::all_of(server, [&](const std::string& descrizione) {
    const std::size_t indice = IndiceServerDaDescrizione(descrizione);
    return indice < FtpServers.size() && FtpServers[indice].Ftp_Description == sessione->Descrizione;
  });
}

}  // namespace

bool SullaSessione(std::uint8_t modo, std::string_view sorgente, std::string_view destinazione) {
  if (modo == 1)
    return TuttiSullaSessione(ServerDelProfilo(sorgente)) &&
           TuttiSullaSessione(ServerDelProfilo(destinazione));
  return TuttiSullaSessione(ServerDelDiagramma(TipoSorgente, sorgente)) &&
         TuttiSullaSessione(ServerDelDiagramma(TipoDestinazione, destinazione));
}

}  // namespace tandemize
