#include "shell/windows/Avvio.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "fixtures/windows/Desktop.h"
#include "platform/appendfile.h"
#include "platform/machine.h"
#include "presentation/Avvisi.h"
#include "presentation/windows/Form.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

namespace fs = std::filesystem;

class AvvioTest : public testing::Test {
 protected:
  AvvioTest() { avvio_.emplace(desktop_.screen); }
  ~AvvioTest() override {
    ApplicazioneNascosta = false;
    avvio_.reset();
    desktop_.screen.Diagramma = nullptr;
    test::letEventsRun();
  }
  void setting(const std::string& key, const std::string& value) { desktop_.folder.setting(key, value); }
  [[nodiscard]] std::string home() { return desktop_.folder.home().host(); }
  FrmStartWindow& start() {
    EXPECT_TRUE(avvio_->Prepara(home()));
    FrmStartWindow& window = avvio_->Apri();
    avvio_->ApriFinestraIniziale();
    test::letEventsRun();
    return window;
  }
  [[nodiscard]] const std::vector<test::ShownBox>& boxes() const { return desktop_.boxes; }

  test::Desktop desktop_{false};
  std::optional<Avvio> avvio_;
};

TEST_F(AvvioTest, A_program_folder_that_does_not_exist_is_made_and_filled) {
  const std::string folder = desktop_.folder.work().host("new/home");
  EXPECT_TRUE(avvio_->Prepara(folder));
  EXPECT_TRUE(fs::exists(folder + "/GlobalSetting.dat"));
  EXPECT_EQ(FileProfilo, PercorsoApplicazione + "Config.cfg");
  EXPECT_TRUE(boxes().empty());
}

TEST_F(AvvioTest, One_that_cannot_be_made_is_told_and_the_program_does_not_start) {
  desktop_.folder.work().write("file", "x");
  EXPECT_FALSE(avvio_->Prepara(desktop_.folder.work().host("file/home")));
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes().front().style, StileCritico);
}

TEST_F(AvvioTest, A_second_process_is_told_which_one_works_on_the_folder) {
  platform::FolderLock other;
  int holder = 0;
  ASSERT_EQ(other.acquire(PercorsoApplicazione, holder), platform::kNoError);
  EXPECT_FALSE(avvio_->Prepara(home()));
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_NE(boxes().front().text.find(std::to_string(platform::processNumber())), std::string::npos);
  EXPECT_NE(boxes().front().text.find(home()), std::string::npos);
}

TEST_F(AvvioTest, The_folder_is_this_process_s_for_as_long_as_it_lives) {
  platform::FolderLock other;
  int holder = 0;
  ASSERT_TRUE(avvio_->Prepara(home()));
  EXPECT_EQ(other.acquire(PercorsoApplicazione, holder), platform::kSharingViolation);
  avvio_.reset();
  EXPECT_EQ(other.acquire(PercorsoApplicazione, holder), platform::kNoError);
}

TEST_F(AvvioTest, A_setting_with_a_bad_value_is_told_and_the_start_goes_on) {
  setting("Log_Max_File_Size", "many");
  start();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_NE(boxes().front().text.find("Log_Max_File_Size"), std::string::npos);
}

TEST_F(AvvioTest, Lines_of_the_drives_file_that_make_no_sense_are_told_at_once) {
  setting("StartUp_Pr_Mode", "2");
  desktop_.folder.home().write("Drives.dat", "first nonsense\r\nsecond nonsense\r\n");
  start();
  ASSERT_GE(boxes().size(), 1U);
  EXPECT_NE(boxes().front().text.find("first nonsense"), std::string::npos);
  EXPECT_NE(boxes().front().text.find("second nonsense"), std::string::npos);
}

TEST_F(AvvioTest, A_hidden_start_tells_them_by_a_notice_that_stays) {
  setting("StartUp_PC_Mode", "2");
  desktop_.folder.home().write("Drives.dat", "nonsense\r\n");
  start();
  EXPECT_TRUE(boxes().empty());
  EXPECT_NE(BalloonCorrente.find("nonsense"), std::string::npos);
}

TEST_F(AvvioTest, Shows_the_main_window_or_hides_from_the_start) {
  setting("StartUp_Pr_Mode", "2");
  for (const char* mode : {"0", "1", "2"}) {
    setting("StartUp_PC_Mode", mode);
    avvio_.emplace(desktop_.screen);
    ApplicazioneNascosta = false;
    const FrmStartWindow& window = start();
    const bool hidden = mode == std::string("2");
    EXPECT_EQ(ApplicazioneNascosta, hidden) << mode;
    // Without a notification area the task bar has it.
    EXPECT_EQ(window.isMinimized(), hidden);
    EXPECT_TRUE(window.isVisible());
    avvio_.reset();
    test::letEventsRun();
  }
}

TEST_F(AvvioTest, Opens_the_window_that_the_settings_name) {
  setting("Language", "1");
  for (const char* mode : {"1", "2"}) {
    setting("StartUp_Pr_Mode", mode);
    avvio_.emplace(desktop_.screen);
    desktop_.boxes.clear();
    start();
    if (mode == std::string("2"))
      EXPECT_NE(FormDiNome("FrmBackupChoice"), nullptr);
    else
      EXPECT_NE(boxes().at(0).text.find("Tandemize"), std::string::npos);
    avvio_.reset();
    test::letEventsRun();
  }
}

}  // namespace
}  // namespace tandemize
