// A started program without pauses between its attempts, whose FTP session begins and ends closed, on a
// machine whose network is up.
#pragma once

#include <string>
#include <utility>

#include "errors/ModuloGestioneErrori.h"
#include "platform/environment.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "storage/ModuloInternet.h"
#include "storage/Retries.h"

namespace tandemize::test {

class FtpProgram : public ProgramWithoutRetries {
 public:
  FtpProgram() {
    AzzeraInternet();
    Language = 1;
    Errors_Alert_Mode = Email_Action = Log_Show_Window = 0;
    FtpServers.assign(1, {});
  }
  ~FtpProgram() { AzzeraInternet(); }

  // Adds a server of the table in front of the spare one.
  void define(ServerFtp server) { FtpServers.insert(FtpServers.end() - 1, std::move(server)); }

  std::int32_t connect(int server = 0, bool silent = true) {
    return Connetti_Al_Server_FTP(static_cast<std::int16_t>(server), message, failed, silent);
  }

  std::string message;
  bool failed = false;

 private:
  ScopedVariable network_{"TANDEMIZE_NETWORK", "up"};
};

}  // namespace tandemize::test
