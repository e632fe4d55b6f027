#include "mail/windows/FrmSendEMailWindow.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "fixtures/SmtpServer.h"
#include "fixtures/windows/Desktop.h"
#include "mail/ModuloEmail.h"
#include "platform/environment.h"
#include "platform/paths.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

using test::SmtpServer;
using Lines = std::vector<std::string>;

constexpr const char* Name = "FrmSendEMail";

// It greets, and says nothing more.
constexpr int LookEveryMs = 5, Looks = 2000;
const Lines Silence{"say '220 ready\\r\\n'", "rest"};

struct FrmSendEMailWindowTest : testing::Test {
  FrmSendEMailWindowTest() {
    desktop.folder.home().write(
        "Registry.ini",
        "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager]\r\n"
        "Default Mail Account=00000001\r\n"
        "[HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager\\Accounts\\"
        "00000001]\r\nSMTP Email Address=pc@home.example\r\n");
    platform::setProgramFolder(desktop.folder.home().host());
    Email_Email = "anna@mail.example";
    CreaListaLog();
    InstallaFinestraPosta();
  }
  ~FrmSendEMailWindowTest() override { UsaFinestraPosta(nullptr); }
  FrmSendEMailWindowTest(const FrmSendEMailWindowTest&) = delete;
  FrmSendEMailWindowTest& operator=(const FrmSendEMailWindowTest&) = delete;

  // Shows the window over a server that only greets, and lets `act` have it once the greeting is seen. The
  // dialogue goes on under `act`, and is ended behind it.
  void show(const SmtpServer& server, std::function<void(QWidget&)> act) {
    Email_Smtp = server.name();
    desktop.whenShown(Name, [act = std::move(act)](QWidget& mail) {
      auto* look = new QTimer(&mail);
      QObject::connect(look, &QTimer::timeout, look, [look, &mail, act, left = Looks]() mutable {
        const bool greeted =
            test::control<QPlainTextEdit>(mail, "TxtLog")->toPlainText().startsWith("220 ready");
        if (!greeted && --left > 0) return;
        look->stop();
        if (greeted)
          act(mail);
        else
          ADD_FAILURE() << "the greeting is not shown";
        InterrompiPosta();
      });
      look->start(LookEveryMs);
    });
    MostraFrmSendEMail();
  }
  // The same over one that takes the mail.
  bool shownWhileSendingTo(const SmtpServer& server) {
    Email_Smtp = server.name();
    bool shown = false;
    desktop.whenShown(Name, [&shown](QWidget& mail) { shown = mail.isVisible() && mail.isModal(); });
    MostraFrmSendEMail();
    return shown;
  }
  static QPushButton& button(QWidget& mail, const char* name) {
    return *test::control<QPushButton>(mail, name);
  }
  static bool logged(const std::string& text) {
    return std::ranges::any_of(ListaLog, [&text](const std::string& line) { return line.ends_with(text); });
  }

  const test::ScopedVariable network{"TANDEMIZE_NETWORK", "up"};
  test::Desktop desktop;
};

TEST_F(FrmSendEMailWindowTest, It_sends_by_itself_and_closes_when_the_mail_has_gone) {
  const SmtpServer real;
  ScriviLog("Copying 'C:\\dati'", RigaNormale);
  EXPECT_TRUE(shownWhileSendingTo(real));
  EXPECT_EQ(FormDiNome(Name), nullptr);
  const auto mails = real.mails();
  ASSERT_EQ(mails.size(), 1U);
  EXPECT_EQ(mails[0].to, Lines{"anna@mail.example"});
  EXPECT_NE(mails[0].data.find("Copying 'C:\\dati'"), std::string::npos);
  EXPECT_TRUE(logged("- OK -"));
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(FrmSendEMailWindowTest, An_error_sends_its_notice_through_the_window_when_the_settings_say_so) {
  const SmtpServer real;
  Email_Smtp = real.name();
  Email_Action = 1;
  bool shown = false;
  desktop.whenShown(Name, [&shown](QWidget&) { shown = true; });
  ErroreFatale(5, "Copy_File", 0, 0, "", "own text", 0);
  EXPECT_TRUE(shown);
  EXPECT_EQ(real.mails().size(), 1U);
}

TEST_F(FrmSendEMailWindowTest, It_shows_where_the_sending_stands_and_which_buttons_work) {
  const SmtpServer silent(Silence);
  show(silent, [&silent](QWidget& mail) {
    EXPECT_EQ(mail.windowTitle().toStdString(), Messaggio(331));
    EXPECT_EQ(mail.size(), QSize(460, 300));
    EXPECT_EQ(test::text(*test::control<QLabel>(mail, "lblStatus")), Messaggio(320) + " " + silent.name());
    EXPECT_FALSE(button(mail, "CmdInvia").isEnabled());
    EXPECT_TRUE(button(mail, "CmdAnnulla").isEnabled());
    EXPECT_TRUE(test::control<QPlainTextEdit>(mail, "TxtLog")->isReadOnly());
    EXPECT_EQ(test::control<QProgressBar>(mail, "ProgBar")->maximum(), 100);
  });
  EXPECT_EQ(FormDiNome(Name), nullptr);
}

TEST_F(FrmSendEMailWindowTest, The_abort_button_asks_and_yes_swaps_the_buttons_while_the_dialogue_runs_on) {
  const SmtpServer silent(Silence);
  desktop.answers = {Risposta::No, Risposta::Sì};
  show(silent, [this](QWidget& mail) {
    test::click(button(mail, "CmdAnnulla"));
    EXPECT_TRUE(button(mail, "CmdAnnulla").isEnabled());
    test::click(button(mail, "CmdAnnulla"));
    EXPECT_FALSE(button(mail, "CmdAnnulla").isEnabled());
    EXPECT_TRUE(button(mail, "CmdInvia").isEnabled());
    test::click(button(mail, "CmdInvia"));
    EXPECT_TRUE(mail.isVisible());
    EXPECT_TRUE(DialogoAttivo);
    ASSERT_EQ(desktop.boxes.size(), 2U);
    EXPECT_EQ(desktop.boxes[0].text, "Are you sure to abort ?");
    EXPECT_EQ(desktop.boxes[0].style, StileSìNo);
  });
  EXPECT_EQ(silent.connections(), 1) << "the second press of the send button does nothing";
}

TEST_F(FrmSendEMailWindowTest, Closing_it_asks_and_no_keeps_it) {
  const SmtpServer silent(Silence);
  desktop.answers = {Risposta::No, Risposta::No};
  show(silent, [this](QWidget& mail) {
    EXPECT_FALSE(mail.close());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&mail, &escape);
    EXPECT_TRUE(mail.isVisible());
    EXPECT_EQ(desktop.boxes.size(), 2U);
  });
  EXPECT_EQ(FormDiNome(Name), nullptr);
}

TEST_F(FrmSendEMailWindowTest, Closed_by_yes_it_is_out_of_sight_and_the_caller_waits_for_the_dialogue) {
  const SmtpServer silent(Silence);
  desktop.answers = {Risposta::Sì};
  QPointer<QWidget> closed;
  show(silent, [&closed](QWidget& mail) {
    closed = &mail;
    EXPECT_TRUE(mail.close());
    EXPECT_FALSE(mail.isVisible());
    EXPECT_EQ(FormDiNome(Name), nullptr);
    test::letEventsRun();
    EXPECT_TRUE(DialogoAttivo);
    EXPECT_NE(closed, nullptr);
  });
  EXPECT_EQ(closed, nullptr);
  EXPECT_TRUE(logged("l'invio è stato interrotto."));
}

TEST_F(FrmSendEMailWindowTest, A_second_mail_while_one_is_under_way_does_nothing) {
  const SmtpServer silent(Silence);
  show(silent, [](QWidget& mail) {
    MostraFrmSendEMail();
    EXPECT_EQ(FormDiNome(Name), &mail);
  });
  EXPECT_EQ(silent.connections(), 1);
}

TEST_F(FrmSendEMailWindowTest, While_the_program_is_hidden_the_mail_goes_without_a_window) {
  const SmtpServer real;
  ApplicazioneNascosta = true;
  EXPECT_FALSE(shownWhileSendingTo(real));
  EXPECT_EQ(real.mails().size(), 1U);
  EXPECT_TRUE(logged("- OK -"));
}

TEST_F(FrmSendEMailWindowTest, Its_captions_speak_the_language_of_the_settings) {
  for (const char* language : {"0", "1"}) {
    desktop.folder.setting("Language", language);
    FrmSendEMailWindow mail(nullptr);
    EXPECT_EQ(mail.windowTitle().toStdString(), Messaggio(331));
    EXPECT_EQ(test::text(button(mail, "CmdAnnulla")), Messaggio(395));
    EXPECT_EQ(test::text(button(mail, "CmdInvia")), language[0] == '0' ? "&Invia" : "&Send");
    EXPECT_EQ(test::text(*test::control<QLabel>(mail, "lblStatus")), "Ready.");
  }
}

TEST_F(FrmSendEMailWindowTest, The_bar_is_orange) {
  FrmSendEMailWindow mail(nullptr);
  auto* bar = test::control<QProgressBar>(mail, "ProgBar");
  bar->setValue(50);
  const QImage picture = mail.grab().toImage();
  const QRect area(bar->mapTo(&mail, QPoint(0, 0)), bar->size());
  EXPECT_EQ(picture.pixelColor(area.left() + area.width() / 4, area.center().y()), ColoreArancio);
  EXPECT_EQ(picture.pixelColor(area.left() + area.width() * 3 / 4, area.center().y()), ColoreSfondoChiaro);
}

}  // namespace
}  // namespace tandemize
