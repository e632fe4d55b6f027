#include "errors/ErrorsTest.h"
#include "errors/ModuloGestioneErrori.h"
#include "platform/environment.h"

namespace tandemize {
namespace {

using test::Lines;
using ErroreFataleTest = test::ErrorsTest;

TEST_F(ErroreFataleTest, A_system_number_gives_the_system_s_text_without_a_line_end) {
  FinestraOperazione window("FrmScan");
  ErroreFatale(5, "EliminaFile", 0, 0, "File Name: < C:\\a >", "", 7);
  EXPECT_EQ(ListaLog, (Lines{"", "Fatal Error:", "Form Name: < FrmScan >", "Routine Name: < EliminaFile >",
                             "Error Number: < 5 >", "Error Description: < Access is denied. >", "Line N° 7",
                             "File Name: < C:\\a >", "", ""}));
}

TEST_F(ErroreFataleTest, A_run_time_number_has_a_detail_heading) {
  ErroreFatale(53, "Apri", 1, 0, "detail", "", 42);
  EXPECT_EQ(ListaLog, (Lines{"", "Fatal Error:", "", "Detail:", "Form Name: < FrmStart >",
                             "Routine Name: < Apri >", "Error Number: < 53 >",
                             "Error Description: < File not found >", "Line N° 42", "detail", "", ""}));
}

TEST_F(ErroreFataleTest, Numbers_from_12001_to_12174_get_the_text_of_the_internet_table) {
  ErroreFatale(12002, "R", 0, 0, "", "", 0);
  EXPECT_TRUE(logged("Error Description: < The request has timed out. >"));
  ErroreFatale(12174, "R", 0, 0, "", "", 0);
  EXPECT_EQ(count("Error Description: < The MS-Logoff digest header"), 1);
  ErroreFatale(12175, "R", 0, 0, "", "", 0);
  EXPECT_TRUE(logged("Error Description: <  >"));
}

TEST_F(ErroreFataleTest, Any_other_kind_without_a_text_of_its_own_logs_an_empty_text) {
  ErroreFatale(53, "R", 2, 0, "detail", "", 1);
  EXPECT_EQ(ListaLog, (Lines{"", "", "", ""}));
}

TEST_F(ErroreFataleTest, A_text_of_its_own_replaces_the_composed_one) {
  for (const int kind : {0, 1, 2}) {
    CreaListaLog();
    ErroreFatale(5, "R", kind, 0, "detail", "own text", 1);
    EXPECT_EQ(ListaLog, (Lines{"", "own text", "", ""}));
  }
}

TEST_F(ErroreFataleTest, The_mode_chooses_between_log_and_alert) {
  struct {
    int mode;
    bool log, alert;
  } const rows[] = {{0, true, false}, {1, false, true}, {2, true, false}, {3, true, true}};
  for (const auto& row : rows) {
    CreaListaLog();
    screen.boxes.clear();
    ErroreFatale(5, "R", 0, row.mode, "", "own", 0);
    EXPECT_EQ(logged("own"), row.log) << row.mode;
    ASSERT_EQ(screen.boxes.size(), row.alert ? 1U : 0U) << row.mode;
    if (row.alert) {
      EXPECT_EQ(screen.boxes[0].text, "own");
      EXPECT_EQ(screen.boxes[0].style, StileInformazione);
    }
  }
}

TEST_F(ErroreFataleTest, An_alert_without_a_text_of_its_own_is_message_340) {
  ErroreFatale(5, "R", 0, 3, "", "", 0);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, Messaggio(340));
}

TEST_F(ErroreFataleTest, A_hidden_program_is_alerted_by_a_balloon_that_stays) {
  ApplicazioneNascosta = true;
  ErroreFatale(5, "R", 0, 3, "", "own", 0);
  EXPECT_TRUE(screen.boxes.empty());
  ASSERT_EQ(screen.balloons.size(), 1U);
  EXPECT_EQ(screen.balloons[0].nomeForm, "FrmStart");
  EXPECT_EQ(screen.balloons[0].testo, "own");
  EXPECT_EQ(screen.balloons[0].titolo, TitoloApplicazione);
  EXPECT_EQ(screen.balloons[0].secondi, 0);
}

TEST_F(ErroreFataleTest, The_log_window_opens_once_when_the_settings_ask_for_each_error) {
  ErroreFatale(5, "R", 0, 0, "", "", 0);
  EXPECT_EQ(screen.logShows, 0);
  Log_Show_Window = 1;
  ErroreFatale(5, "R", 0, 0, "", "", 0);
  ErroreFatale(5, "R", 0, 0, "", "", 0);
  EXPECT_EQ(screen.logShows, 1);
}

TEST_F(ErroreFataleTest, A_wanted_mail_is_tried_before_the_report_returns) {
  const test::ScopedVariable network("TANDEMIZE_NETWORK", "down");
  ErroreFatale(5, "R", 0, 0, "", "own", 0);
  EXPECT_EQ(count(Messaggio(338)), 0);
  Email_Action = 1;
  ErroreFatale(5, "R", 0, 0, "", "own", 0);
  EXPECT_EQ(count(Messaggio(338)), 1);
}

}  // namespace
}  // namespace tandemize
