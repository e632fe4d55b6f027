#include <optional>

#include "errors/ErrorsTest.h"
#include "errors/ModuloGestioneErrori.h"
#include "fixtures/NestingScreen.h"

namespace tandemize {
namespace {

using FinestraOperazioneTest = test::ErrorsTest;

TEST_F(FinestraOperazioneTest, The_last_one_made_is_the_active_one) {
  EXPECT_EQ(FormAttivo(), "FrmStart");
  FinestraOperazione below("FrmBackupChoice");
  {
    FinestraOperazione above("FrmScan");
    EXPECT_EQ(FormAttivo(), "FrmScan");
    EXPECT_TRUE(FormCaricato("FrmBackupChoice"));
  }
  EXPECT_EQ(FormAttivo(), "FrmBackupChoice");
  EXPECT_FALSE(FormCaricato("FrmScan"));
}

TEST_F(FinestraOperazioneTest, Windows_may_go_in_any_order) {
  std::optional<FinestraOperazione> below("one");
  FinestraOperazione above("two");
  below.reset();
  EXPECT_EQ(FormAttivo(), "two");
  EXPECT_FALSE(FormCaricato("one"));
}

TEST_F(FinestraOperazioneTest, The_user_s_stop_is_asked_about) {
  FinestraOperazione window("Frm");
  screen.answers = {Risposta::No, Risposta::Sì};
  window.Annulla(false);
  EXPECT_FALSE(window.ProcessoAnnullato);
  window.Annulla(false);
  EXPECT_TRUE(window.ProcessoAnnullato);
  EXPECT_EQ(screen.boxes.size(), 2U);
}

TEST_F(FinestraOperazioneTest, A_second_stop_changes_nothing) {
  FinestraOperazione window("Frm");
  window.Annulla(true);
  window.Annulla(true);
  window.Annulla(false);
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_EQ(count(Messaggio(329)), 1);
}

TEST_F(FinestraOperazioneTest, A_stop_signal_stops_the_active_window_without_a_question) {
  EXPECT_FALSE(AnnullaOperazioneInCorso());
  FinestraOperazione below("below");
  FinestraOperazione above("above");
  EXPECT_TRUE(AnnullaOperazioneInCorso());
  EXPECT_TRUE(above.ProcessoAnnullato);
  EXPECT_FALSE(below.ProcessoAnnullato);
  EXPECT_TRUE(screen.boxes.empty());
}

struct IdleWindow : FinestraOperazione {
  using FinestraOperazione::FinestraOperazione;
  [[nodiscard]] bool InEsecuzione() const override { return false; }
};

struct WindowThatRefuses : FinestraOperazione {
  using FinestraOperazione::FinestraOperazione;
  void Annulla(bool) override {}
};

TEST_F(FinestraOperazioneTest, A_stop_signal_is_not_lost_on_a_window_that_has_nothing_to_stop) {
  FinestraOperazione lowest("lowest");
  FinestraOperazione transfer("FrmFileTransfer");
  IdleWindow idle("FrmGlobalSetting");
  WindowThatRefuses refusing("FrmGlobalSetting");
  EXPECT_TRUE(AnnullaOperazioneInCorso());
  EXPECT_TRUE(transfer.ProcessoAnnullato);
  EXPECT_FALSE(idle.ProcessoAnnullato);
  EXPECT_FALSE(lowest.ProcessoAnnullato);
}

TEST_F(FinestraOperazioneTest, A_stop_signal_that_finds_nothing_to_stop_says_so) {
  IdleWindow idle("FrmGlobalSetting");
  WindowThatRefuses refusing("FrmGlobalSetting");
  EXPECT_FALSE(AnnullaOperazioneInCorso());
  EXPECT_FALSE(OperazioneAnnullata());
  EXPECT_EQ(count(Messaggio(329)), 0);
}

TEST_F(FinestraOperazioneTest, While_its_question_is_up_no_second_one_is_asked) {
  test::NestingScreen nesting;
  FinestraOperazione window("Frm");
  nesting.answers = {Risposta::No, Risposta::Sì};
  nesting.onBox = [&] { window.Annulla(false); };
  window.Annulla(false);
  EXPECT_EQ(nesting.boxes.size(), 1U);
  EXPECT_FALSE(window.ProcessoAnnullato);
  window.Annulla(false);
  EXPECT_TRUE(window.ProcessoAnnullato);
}

TEST_F(FinestraOperazioneTest, A_stop_signal_counts_while_the_question_is_up) {
  test::NestingScreen nesting;
  FinestraOperazione window("Frm");
  nesting.answers = {Risposta::No};
  nesting.onBox = [] { EXPECT_TRUE(AnnullaOperazioneInCorso()); };
  window.Annulla(false);
  EXPECT_TRUE(window.ProcessoAnnullato);
}

TEST_F(FinestraOperazioneTest, A_window_may_go_while_its_question_is_up) {
  test::NestingScreen nesting;
  std::optional<FinestraOperazione> window("Frm");
  nesting.answers = {Risposta::No};
  nesting.onBox = [&] { window.reset(); };
  EXPECT_FALSE(AnnullaFinestra("Frm"));
}

TEST_F(FinestraOperazioneTest, A_window_s_own_stop_button_asks_and_finds_it_by_name) {
  EXPECT_FALSE(AnnullaFinestra("FrmScan"));
  FinestraOperazione older("FrmScan");
  FinestraOperazione newer("FrmScan");
  FinestraOperazione above("FrmProgressBar");
  screen.answers = {Risposta::No, Risposta::Sì};
  EXPECT_FALSE(AnnullaFinestra("FrmScan"));
  EXPECT_FALSE(OperazioneAnnullata());
  EXPECT_TRUE(AnnullaFinestra("FrmScan"));
  EXPECT_TRUE(newer.ProcessoAnnullato);
  EXPECT_FALSE(older.ProcessoAnnullato);
  EXPECT_FALSE(above.ProcessoAnnullato);
  EXPECT_EQ(screen.boxes.size(), 2U);
}

}  // namespace
}  // namespace tandemize
