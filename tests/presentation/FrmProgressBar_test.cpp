#include "presentation/FrmProgressBar.h"

#include "errors/ErrorsTest.h"

namespace tandemize {
namespace {

using FrmProgressBarTest = test::ErrorsTest;

TEST_F(FrmProgressBarTest, Its_button_stops_the_work_of_its_owner) {
  FinestraOperazione owner("owner");
  FrmProgressBar bar(&owner, "", 100);
  EXPECT_TRUE(screen.lastProgress.annullabile);
  screen.answers = {Risposta::Sì};
  bar.Annulla(false);
  EXPECT_TRUE(owner.ProcessoAnnullato);
}

TEST_F(FrmProgressBarTest, Work_without_an_owner_cannot_be_stopped_and_nobody_is_asked) {
  FrmProgressBar bar(nullptr, "", 100);
  EXPECT_FALSE(screen.lastProgress.annullabile);
  bar.Annulla(false);
  bar.Annulla(true);
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_FALSE(bar.ProcessoAnnullato);
  EXPECT_FALSE(AnnullamentoRichiesto);
  EXPECT_EQ(count(Messaggio(329)), 0);
  EXPECT_FALSE(AnnullaOperazioneInCorso());
}

TEST_F(FrmProgressBarTest, A_stop_signal_passes_work_without_an_owner_by) {
  FinestraOperazione transfer("FrmFileTransfer");
  const FrmProgressBar bar(nullptr, "", 100);
  EXPECT_TRUE(AnnullaOperazioneInCorso());
  EXPECT_TRUE(transfer.ProcessoAnnullato);
}

}  // namespace
}  // namespace tandemize
