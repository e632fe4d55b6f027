#include "backup/windows/FrmFileTransferWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <filesystem>

#include "backup/BackupRun.h"
#include "fixtures/windows/Desktop.h"
#include "fixtures/windows/WhileEventsRun.h"
#include "presentation/windows/ModuloGrafica.h"

namespace tandemize {
namespace {

using namespace test;

constexpr std::size_t MiB = 1'048'576;

StatoTrasferimento someState() {
  StatoTrasferimento state;
  state.visibile = true;
  state.titolo = "File Transfer";
  state.sorgente = "Copying file => C:\\from\\a & b.txt";
  state.destinazione = "Destination      => D:\\to\\a & b.txt";
  state.tempo = "30 seconds remaining";
  state.velocità = "12 MB/s";
  state.trasferiti = "Transferred 40/100 MB (3/7 Files)";
  state.byteTotali = 100e6;
  state.byteCopiati = 40e6;
  state.fileTotali = 7;
  state.fileCopiati = 3;
  state.valoreFile = 75;
  return state;
}

class FrmFileTransferWindowTest : public ::testing::Test {
 protected:
  ~FrmFileTransferWindowTest() override { desktop.screen.Mostra(StatoTrasferimento{}); }

  QWidget& show(const StatoTrasferimento& state) {
    desktop.screen.Mostra(state);
    letEventsRun();
    return *window("FrmFileTransfer");
  }
  // The bar is orange up to that percent of its width, and not beyond.
  static void expectFilled(QWidget& bar, int percent) {
    const QImage image = bar.grab().toImage();
    const int row = image.height() - 3;
    EXPECT_EQ(image.pixelColor(image.width() * (percent - 1) / 100, row), ColoreArancio) << percent;
    EXPECT_EQ(image.pixelColor(image.width() * (percent + 1) / 100, row), ColoreBianco) << percent;
  }

  Desktop desktop;
};

TEST_F(FrmFileTransferWindowTest, The_texts_of_a_state_arrive) {
  QWidget& shown = show(someState());
  EXPECT_EQ(shown.windowTitle(), "File Transfer");
  EXPECT_EQ(text(*control<QLabel>(shown, "LblFileSource")), someState().sorgente);
  EXPECT_EQ(text(*control<QLabel>(shown, "lblFileDestination")), someState().destinazione);
  EXPECT_EQ(text(*control<QLabel>(shown, "lblTempo")), "30 seconds remaining");
  EXPECT_EQ(text(*control<QLabel>(shown, "lblVelocità")), "12 MB/s");
  EXPECT_EQ(text(*control<QLabel>(shown, "lblTrasferiti")), "Transferred 40/100 MB (3/7 Files)");
  EXPECT_EQ(text(*control<QPushButton>(shown, "CmbAnnulla")), Messaggio(395));
}

TEST_F(FrmFileTransferWindowTest, Both_bars_are_filled_to_their_share) {
  QWidget& shown = show(someState());
  auto& overall = *control<QProgressBar>(shown, "Picture1");
  auto& file = *control<QProgressBar>(shown, "Picture2");
  expectFilled(overall, 40);
  expectFilled(file, 75);
  EXPECT_EQ(text(*control<QLabel>(shown, "Label1")), "40%");
  EXPECT_EQ(text(*control<QLabel>(shown, "Label2")), "75%");
  EXPECT_EQ(overall.value(), 40);
  StatoTrasferimento later = someState();
  later.byteCopiati = 80e6;
  desktop.screen.Mostra(later);
  ASSERT_TRUE(reached([&] { return overall.value() == 80; }));
  expectFilled(overall, 80);
  shown.resize(shown.width() + 200, shown.height());
  letEventsRun();
  expectFilled(overall, 80);
}

TEST_F(FrmFileTransferWindowTest, The_next_file_begins_with_an_empty_bar) {
  StatoTrasferimento state = someState();
  QWidget& shown = show(state);
  auto& file = *control<QProgressBar>(shown, "Picture2");
  state.sorgente = "Copying file => C:\\from\\next";
  state.valoreFile = 80;
  desktop.screen.Mostra(state);
  ASSERT_TRUE(reached([&] { return file.value() == 80; }));
  state.valoreFile = 0;
  desktop.screen.Mostra(state);
  ASSERT_TRUE(reached([&] { return text(*control<QLabel>(shown, "Label2")).empty(); }));
  EXPECT_EQ(file.grab().toImage().pixelColor(3, file.height() - 3), ColoreBianco);
}

TEST_F(FrmFileTransferWindowTest, A_server_files_own_length_is_the_bars_maximum) {
  StatoTrasferimento state = someState();
  state.massimoFile = 5000;
  state.valoreFile = 1250;
  QWidget& shown = show(state);
  EXPECT_EQ(control<QProgressBar>(shown, "Picture2")->value(), 25);
}

TEST_F(FrmFileTransferWindowTest, Names_of_any_length_leave_the_window_its_size) {
  StatoTrasferimento state = someState();
  QWidget& shown = show(state);
  const QSize size = shown.size(), minimum = shown.minimumSizeHint();
  for (std::string* text :
       {&state.sorgente, &state.destinazione, &state.tempo, &state.velocità, &state.trasferiti})
    *text = "C:\\" + std::string(3000, 'W');
  desktop.screen.Mostra(state);
  auto& source = *control<QLabel>(shown, "LblFileSource");
  ASSERT_TRUE(reached([&] { return text(source) == state.sorgente; }));
  letEventsRun();
  EXPECT_EQ(shown.size(), size);
  EXPECT_EQ(shown.minimumSizeHint(), minimum);
  EXPECT_EQ(source.toolTip().toStdString(), state.sorgente);
}

TEST_F(FrmFileTransferWindowTest, The_end_is_on_the_screen_before_the_window_goes) {
  StatoTrasferimento state = someState();
  QWidget& shown = show(state);
  state.byteCopiati = state.byteTotali;
  state.fileCopiati = state.fileTotali;
  desktop.screen.Mostra(state);
  EXPECT_EQ(control<QProgressBar>(shown, "Picture1")->value(), 100) << "no matter when the last drawing was";
}

TEST_F(FrmFileTransferWindowTest, A_run_of_another_window_that_ends_while_it_draws_does_no_harm) {
  StatoTrasferimento state = someState();
  state.byteCopiati = 0;
  show(state);
  bool done = false;
  const WhileEventsRun during([&] {
    if (!std::exchange(done, true)) desktop.screen.Mostra(StatoTrasferimento{});
  });
  state.byteCopiati = 90e6;
  desktop.screen.Mostra(state);
  EXPECT_TRUE(reached([&] { return done; }));
  EXPECT_EQ(FormDiNome("FrmFileTransfer"), nullptr);
}

TEST_F(FrmFileTransferWindowTest, A_hidden_program_shows_no_window) {
  ApplicazioneNascosta = true;
  EXPECT_FALSE(show(someState()).isVisible());
}

// Real transfers from the work folder's "from" to its "to".
class TransferRun : public FrmFileTransferWindowTest {
 protected:
  TransferRun() {
    Errors_Correction = 0;
    desktop.folder.work().makeFolder("to");
    ArrayTrasferimento.Svuota();
    ArrayScansione.Azzera(0);
    FrmFileTransfer::IntervalloSchermo = 0;
    file("a", "first");
    file("big", std::string(8 * MiB, 'x'));
    file("z", "last");
  }
  ~TransferRun() override { FrmFileTransfer::IntervalloSchermo = 33; }

  void file(const std::string& name, const std::string& content) {
    desktop.folder.work().write("from/" + name, content);
    addTransfer(desktop.folder.program("from/" + name), desktop.folder.program("to/" + name),
                static_cast<double>(content.size()));
  }
  // Runs, and does something once while the big file is on its way.
  void run(const std::function<void(QWidget&)>& act) {
    FrmFileTransfer engine;
    bool done = false;
    const WhileEventsRun during([&] {
      const StatoTrasferimento& state = engine.Stato();
      const bool inTheMiddle = state.sorgente.ends_with("big") && state.valoreFile > 20;
      if (inTheMiddle && !std::exchange(done, true)) act(*window("FrmFileTransfer"));
    });
    engine.Init(0, false, false);
    EXPECT_TRUE(done);
    outcome = engine.EsitoCopia;
    EXPECT_EQ(FormDiNome("FrmFileTransfer"), nullptr);
  }
  void expectStopped() {
    EXPECT_EQ(outcome, EsitoTrasferimento::Annullato);
    EXPECT_EQ(copied(), std::set<std::string>{"a"});
    EXPECT_EQ(boxes(), (std::vector<std::string>{Messaggio(326), Messaggio(190)}));
  }
  void expectFinished(std::size_t questions) {
    EXPECT_EQ(outcome, EsitoTrasferimento::Nessuno);
    EXPECT_EQ(copied(), (std::set<std::string>{"a", "big", "z"}));
    std::vector<std::string> expected(questions, Messaggio(326));
    expected.push_back(Messaggio(189));
    EXPECT_EQ(boxes(), expected);
  }
  // Everything that lies in the destination, whatever its name.
  std::set<std::string> copied() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(desktop.folder.work().host("to")))
      names.insert(entry.path().filename());
    return names;
  }
  std::vector<std::string> boxes() {
    std::vector<std::string> texts;
    for (const ShownBox& box : desktop.boxes) texts.push_back(box.text);
    return texts;
  }
  static QWidget& button(QWidget& shown) { return *control<QPushButton>(shown, "CmbAnnulla"); }

  EsitoTrasferimento outcome = EsitoTrasferimento::Nessuno;
};

TEST_F(TransferRun, The_button_stops_in_mid_file_and_leaves_no_part_of_it) {
  desktop.answers = {Risposta::Sì};
  run([](QWidget& shown) {
    click(button(shown));
    EXPECT_FALSE(button(shown).isEnabled());
    EXPECT_TRUE(shown.isVisible()) << "until the engine has ended";
  });
  expectStopped();
}

TEST_F(TransferRun, The_windows_X_stops_in_the_same_way) {
  desktop.answers = {Risposta::Sì};
  run([](QWidget& shown) { EXPECT_FALSE(shown.close()); });
  expectStopped();
}

TEST_F(TransferRun, The_Escape_key_stops_in_the_same_way) {
  desktop.answers = {Risposta::Sì};
  run([](QWidget& shown) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&shown, &press);
  });
  expectStopped();
}

TEST_F(TransferRun, Answered_with_no_it_goes_on_to_the_end) {
  desktop.answers = {Risposta::No, Risposta::No};
  run([](QWidget& shown) {
    click(button(shown));
    EXPECT_TRUE(button(shown).isEnabled());
    EXPECT_FALSE(shown.close());
    EXPECT_TRUE(shown.isVisible());
  });
  expectFinished(2);
}

TEST_F(TransferRun, No_and_then_yes_stops) {
  desktop.answers = {Risposta::No, Risposta::Sì};
  run([](QWidget& shown) {
    click(button(shown));
    click(button(shown));
  });
  EXPECT_EQ(outcome, EsitoTrasferimento::Annullato);
  EXPECT_EQ(copied(), std::set<std::string>{"a"});
}

TEST_F(TransferRun, A_second_click_while_the_question_is_up_does_nothing) {
  run([this](QWidget& shown) {
    desktop.onBox = [&shown](QMessageBox& box) {
      click(button(shown));
      shown.close();
      box.escapeButton()->click();
    };
    click(button(shown));
  });
  expectFinished(1);
}

// Looks at a window at the moment when it goes.
class LastLook : public QObject {
 public:
  LastLook(QWidget& window, std::function<void(QWidget&)> look) : QObject(&window), look_(std::move(look)) {
    window.installEventFilter(this);
  }
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Hide) look_(*static_cast<QWidget*>(object));
    return false;
  }

 private:
  std::function<void(QWidget&)> look_;
};

TEST_F(TransferRun, The_last_file_and_100_percent_are_on_the_screen_when_the_window_goes) {
  bool seen = false;
  run([&](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle().toStdString(), Messaggio(388));
    new LastLook(shown, [&](QWidget& going) {
      seen = true;
      EXPECT_EQ(text(*control<QLabel>(going, "LblFileSource")),
                Messaggio(188) + " => " + desktop.folder.program("from/z"));
      EXPECT_EQ(text(*control<QLabel>(going, "Label1")), "100%");
      EXPECT_TRUE(text(*control<QLabel>(going, "lblTrasferiti")).ends_with("8/8 MB (3/3 Files)"));
    });
  });
  EXPECT_TRUE(seen);
  expectFinished(0);
}

}  // namespace
}  // namespace tandemize
