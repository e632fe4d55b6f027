#include "shell/windows/FinestreDiScelta.h"

#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

#include "fixtures/windows/Desktop.h"
#include "platform/paths.h"

namespace tandemize {
namespace {

using test::control;
using Paths = std::vector<std::string>;

class FinestreDiScelta : public testing::Test {
 protected:
  // Types into the next dialog and confirms it; gives up without a text.
  void answer(const char* dialog, const std::string& typed) {
    desktop_.whenShown(dialog, [this, typed](QWidget& shown) {
      auto& asked = static_cast<QFileDialog&>(shown);
      filters_ = asked.nameFilters().join(u'|').toStdString();
      mode_ = asked.fileMode();
      folder_ = asked.directory().absolutePath().toStdString();
      auto* buttons = asked.findChild<QDialogButtonBox*>();
      if (typed.empty()) return asked.close(), void();
      control<QLineEdit>(asked, "fileNameEdit")->setText(QString::fromStdString(typed));
      for (QAbstractButton* button : buttons->buttons())
        if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole) button->click();
    });
  }
  [[nodiscard]] std::string host(const std::string& name) { return desktop_.folder.work().host(name); }
  [[nodiscard]] std::string program(const std::string& name) { return desktop_.folder.program(name); }

  test::Desktop desktop_;
  std::string filters_, folder_;
  QFileDialog::FileMode mode_ = QFileDialog::AnyFile;
};

TEST_F(FinestreDiScelta, A_folder_comes_back_in_the_program_s_notation) {
  desktop_.folder.work().makeFolder("pictures");
  answer("SfogliaCartella", host("pictures"));
  EXPECT_EQ(SfogliaCartella(nullptr, program("")), program("pictures"));
  EXPECT_EQ(mode_, QFileDialog::Directory);
  EXPECT_EQ(folder_, desktop_.folder.work().host());
}

TEST_F(FinestreDiScelta, Characters_that_the_notation_cannot_hold_survive) {
  desktop_.folder.work().makeFolder("a:b?c");
  answer("SfogliaCartella", host("a:b?c"));
  const std::string chosen = SfogliaCartella(nullptr);
  EXPECT_EQ(chosen, program("a:b?c"));
  EXPECT_EQ(platform::toHost(chosen), host("a:b?c"));
}

TEST_F(FinestreDiScelta, Who_gives_up_has_chosen_nothing) {
  answer("SfogliaCartella", "");
  EXPECT_EQ(SfogliaCartella(nullptr), "");
  answer("ScegliFileSalvataggio", "");
  EXPECT_EQ(ScegliFileSalvataggio(nullptr, "", "x.cfg", {"Profile", "*.cfg"}), "");
  answer("ScegliFileApertura", "");
  EXPECT_TRUE(ScegliFileApertura(nullptr).empty());
}

TEST_F(FinestreDiScelta, The_name_to_save_under_is_what_was_typed) {
  answer("ScegliFileSalvataggio", host("Night"));
  EXPECT_EQ(ScegliFileSalvataggio(nullptr, program(""), "Config2.cfg", {"File Profile (*.cfg)", "*.cfg"}),
            program("Night"));
  EXPECT_EQ(filters_, "File Profile (*.cfg)");
  desktop_.folder.work().write("There.cfg", "x");
  answer("ScegliFileSalvataggio", host("There.cfg"));
  EXPECT_EQ(ScegliFileSalvataggio(nullptr, program(""), "Config2.cfg", {"Profile", "*.cfg"}),
            program("There.cfg"))
      << "whether to replace it is the caller's question";
}

TEST_F(FinestreDiScelta, Several_files_may_be_chosen_with_or_without_a_dot) {
  for (const char* name : {"one.txt", "two", "three.x y"}) desktop_.folder.work().write(name, "x");
  answer("ScegliFileApertura", "\"one.txt\" \"two\" \"three.x y\"");
  EXPECT_EQ(ScegliFileApertura(nullptr, {}, program("")),
            (Paths{program("one.txt"), program("two"), program("three.x y")}));
  EXPECT_EQ(mode_, QFileDialog::ExistingFiles);
  EXPECT_EQ(filters_, "All Files (*)");
}

TEST_F(FinestreDiScelta, A_folder_to_begin_in_that_is_not_there_does_no_harm) {
  desktop_.folder.work().write("one.txt", "x");
  answer("ScegliFileApertura", host("one.txt"));
  EXPECT_EQ(ScegliFileApertura(nullptr, {}, program("missing")), Paths{program("one.txt")});
  EXPECT_NE(folder_, host("missing"));
}

}  // namespace
}  // namespace tandemize
