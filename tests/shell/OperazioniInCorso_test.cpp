#include "shell/OperazioniInCorso.h"

#include <gtest/gtest.h>

#include <optional>

#include "errors/ModuloGestioneErrori.h"
#include "fixtures/LogLines.h"
#include "fixtures/ProgramFolder.h"
#include "platform/machine.h"
#include "presentation/Avvisi.h"
#include "shell/Lingua.h"

namespace tandemize {
namespace {

class OperazioniInCorso : public testing::Test {
 protected:
  [[nodiscard]] std::size_t questions() const { return folder_.screen.boxes.size(); }
  test::ProgramFolder folder_;
};

using OperazioneDaFermareTest = OperazioniInCorso;
using FermaOperazioneTest = OperazioniInCorso;
using FermaTuttoTest = OperazioniInCorso;

TEST_F(OperazioneDaFermareTest, Is_the_one_that_the_user_looks_at) {
  EXPECT_EQ(OperazioneDaFermare(true), "");
  const FinestraOperazione dialog("FrmBackupChoice");
  EXPECT_EQ(OperazioneDaFermare(false), "");
  EXPECT_EQ(OperazioneDaFermare(true), "FrmBackupChoice");
  const FinestraOperazione progress("FrmProgressBar");
  EXPECT_EQ(OperazioneDaFermare(true), "FrmProgressBar");
  const FinestraOperazione scan("FrmScan");
  EXPECT_EQ(OperazioneDaFermare(false), "FrmScan");
  const FinestraOperazione transfer("FrmFileTransfer");
  EXPECT_EQ(OperazioneDaFermare(false), "FrmFileTransfer");
}

TEST_F(FermaOperazioneTest, Asks_nothing_when_nothing_goes_on) {
  const FinestraOperazione dialog("FrmBackupChoice");
  EXPECT_TRUE(FermaOperazione(false));
  EXPECT_EQ(questions(), 0U);
}

TEST_F(FermaOperazioneTest, Asks_once_and_the_user_may_let_it_go_on) {
  const FinestraOperazione transfer("FrmFileTransfer");
  folder_.screen.answers = {Risposta::No};
  EXPECT_FALSE(FermaOperazione(false));
  EXPECT_FALSE(transfer.ProcessoAnnullato);
  folder_.screen.answers = {Risposta::Sì};
  EXPECT_TRUE(FermaOperazione(false));
  EXPECT_TRUE(transfer.ProcessoAnnullato);
  EXPECT_EQ(questions(), 2U);
  EXPECT_EQ(folder_.screen.boxes.back().text, Messaggio(326));
  EXPECT_TRUE(FermaOperazione(false)) << "it is stopped already";
  EXPECT_EQ(questions(), 2U);
}

TEST_F(FermaTuttoTest, Stops_without_a_question_and_logs_the_stop_once) {
  const FinestraOperazione transfer("FrmFileTransfer");
  FermaTutto(false);
  FermaTutto(false);
  EXPECT_TRUE(transfer.ProcessoAnnullato);
  EXPECT_TRUE(AnnullamentoRichiesto);
  EXPECT_EQ(questions(), 0U);
  const std::string log = folder_.log();
  const std::size_t first = log.find(Messaggio(329));
  ASSERT_NE(first, std::string::npos);
  EXPECT_EQ(log.find(Messaggio(329), first + 1), std::string::npos);
}

TEST_F(FermaTuttoTest, Logs_no_stop_of_a_dialog_that_only_waits) {
  const FinestraOperazione dialog("FrmBackupChoice");
  FermaTutto(false);
  EXPECT_FALSE(dialog.ProcessoAnnullato);
  EXPECT_EQ(folder_.log().find(Messaggio(329)), std::string::npos);
}

TEST_F(FermaTuttoTest, Ends_a_wait_with_events) {
  folder_.screen.onEvents = [] { FermaTutto(false); };
  Attendi(3600, true);
  EXPECT_EQ(folder_.screen.events, 1);
}

}  // namespace
}  // namespace tandemize
