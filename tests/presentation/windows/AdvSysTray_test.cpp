#include "presentation/windows/AdvSysTray.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <string>
#include <vector>

#include "fixtures/windows/Desktop.h"
#include "presentation/windows/Icone.h"

namespace tandemize {
namespace {

QString tipIn(QWidget& owner) {
  const auto* icon = owner.findChild<QSystemTrayIcon*>("AdvSysTray");
  return icon == nullptr ? QString() : icon->toolTip();
}

struct AdvSysTrayTest : ::testing::Test {
  AdvSysTrayTest() {
    tray.Icon(IconaProgramma());
    tray.SinistroPremuto = [this] { events.emplace_back("left down"); };
    tray.SinistroRilasciato = [this] { events.emplace_back("left up"); };
    tray.SinistroDoppio = [this] { events.emplace_back("left double"); };
    tray.DestroPremuto = [this] { events.emplace_back("right down"); };
    tray.DestroRilasciato = [this] { events.emplace_back("right up"); };
    tray.DestroDoppio = [this] { events.emplace_back("right double"); };
    tray.ChiediDisponibile = [this] { return available; };
  }
  QSystemTrayIcon* icon() { return owner.findChild<QSystemTrayIcon*>("AdvSysTray"); }

  bool available = true;
  std::vector<std::string> events;
  QWidget owner;
  AdvSysTray tray;
};

TEST_F(AdvSysTrayTest, The_tool_tip_is_cut_to_what_the_shell_takes) {
  const struct {
    int version;
    std::size_t given, kept;
  } rows[]{{4, 62, 62},   {4, 63, 63},   {4, 64, 63},   {4, 500, 63},  {0, 64, 63},
           {5, 126, 126}, {5, 127, 127}, {5, 128, 127}, {5, 500, 127}, {6, 500, 127}};
  for (const auto& row : rows) {
    AdvSysTray versioned(row.version);
    EXPECT_EQ(versioned.ShellVersion(), row.version);
    versioned.ToolTip(std::string(row.given, 'x'));
    EXPECT_EQ(versioned.ToolTip(), std::string(row.kept, 'x')) << row.version << ": " << row.given;
  }
}

TEST_F(AdvSysTrayTest, The_tool_tip_is_cut_by_characters_and_none_of_them_is_cut_in_half) {
  AdvSysTray old(4);
  for (const std::string character : {"à", "漢", "😀"}) {
    std::string text, expected;
    for (int i = 0; i < 70; ++i) text += character;
    for (int i = 0; i < 63; ++i) expected += character;
    old.ToolTip(text);
    EXPECT_EQ(old.ToolTip(), expected);
  }
}

TEST_F(AdvSysTrayTest, What_was_set_before_the_icon_is_made_holds_for_it_and_changes_reach_it) {
  tray.ToolTip("before");
  tray.Create(&owner);
  ASSERT_NE(icon(), nullptr);
  EXPECT_EQ(tipIn(owner), "before");
  EXPECT_FALSE(icon()->icon().isNull());
  tray.ToolTip("after");
  EXPECT_EQ(tipIn(owner), "after");
  const qint64 old = icon()->icon().cacheKey();
  tray.Icon(IconaAnimazione());
  EXPECT_NE(icon()->icon().cacheKey(), old);
  EXPECT_EQ(icon()->icon().cacheKey(), tray.Icon().cacheKey());
}

TEST_F(AdvSysTrayTest, Is_made_once_and_gone_when_destroyed) {
  EXPECT_FALSE(tray.Creata());
  tray.Create(&owner);
  const QPointer<QSystemTrayIcon> first = icon();
  tray.Create(&owner);
  EXPECT_EQ(owner.findChildren<QSystemTrayIcon*>().size(), 1);
  EXPECT_TRUE(first->isVisible());
  tray.Destroy();
  EXPECT_FALSE(tray.Creata());
  EXPECT_FALSE(first->isVisible());
  test::letEventsRun();
  EXPECT_TRUE(first.isNull());
  tray.Destroy();
  tray.Create(&owner);
  EXPECT_TRUE(tray.Creata());
}

TEST_F(AdvSysTrayTest, Goes_with_its_owner) {
  auto* window = new QWidget;
  tray.Create(window);
  delete window;
  EXPECT_FALSE(tray.Creata());
  tray.ToolTip("nobody sees it");
  tray.VerificaDisponibilità();
}

TEST_F(AdvSysTrayTest, What_the_toolkit_tells_becomes_the_six_events) {
  tray.Create(&owner);
  Q_EMIT icon()->activated(QSystemTrayIcon::Trigger);
  EXPECT_EQ(events, (std::vector<std::string>{"left down", "left up"}));
  events.clear();
  Q_EMIT icon()->activated(QSystemTrayIcon::DoubleClick);
  EXPECT_EQ(events, (std::vector<std::string>{"left double"}));
  events.clear();
  Q_EMIT icon()->activated(QSystemTrayIcon::Context);
  EXPECT_EQ(events, (std::vector<std::string>{"right down", "right up"}));
  events.clear();
  Q_EMIT icon()->activated(QSystemTrayIcon::MiddleClick);
  Q_EMIT icon()->activated(QSystemTrayIcon::Unknown);
  EXPECT_TRUE(events.empty());
}

TEST_F(AdvSysTrayTest, The_messages_513_to_518_raise_the_events_in_their_order) {
  for (int message = 513; message <= 518; ++message) tray.Solleva(static_cast<EventoTray>(message));
  EXPECT_EQ(events, (std::vector<std::string>{"left down", "left up", "left double", "right down", "right up",
                                              "right double"}));
}

TEST_F(AdvSysTrayTest, Any_other_message_raises_none) {
  for (const int message : {0, 512, 519}) tray.Solleva(static_cast<EventoTray>(message));
  EXPECT_TRUE(events.empty());
}

TEST_F(AdvSysTrayTest, Events_that_nobody_wants_are_dropped) {
  const AdvSysTray silent;
  for (int message = 513; message <= 518; ++message) silent.Solleva(static_cast<EventoTray>(message));
}

TEST_F(AdvSysTrayTest, May_be_destroyed_by_one_of_its_own_events) {
  tray.Create(&owner);
  tray.SinistroPremuto = [this] { tray.Destroy(); };
  Q_EMIT icon()->activated(QSystemTrayIcon::Trigger);
  EXPECT_FALSE(tray.Creata());
  EXPECT_EQ(events, (std::vector<std::string>{"left up"}));
}

TEST_F(AdvSysTrayTest, Tells_when_the_notification_area_comes_and_goes) {
  available = false;
  std::vector<bool> told;
  tray.DisponibilitàCambiata = [&] { told.push_back(tray.EDisponibile()); };
  tray.Create(&owner);
  EXPECT_FALSE(tray.EDisponibile());
  tray.VerificaDisponibilità();
  EXPECT_TRUE(told.empty());
  available = true;
  tray.VerificaDisponibilità();
  tray.VerificaDisponibilità();
  available = false;
  for (int i = 0; i < 50; ++i) tray.VerificaDisponibilità();
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

TEST_F(AdvSysTrayTest, After_Destroy_nothing_is_told_any_more) {
  int told = 0;
  tray.DisponibilitàCambiata = [&] { ++told; };
  tray.Create(&owner);
  tray.Destroy();
  available = false;
  tray.VerificaDisponibilità();
  EXPECT_EQ(told, 0);
}

TEST_F(AdvSysTrayTest, A_menu_may_be_given_before_and_after_the_icon_is_made) {
  QMenu one, two;
  tray.Menu(&one);
  tray.Create(&owner);
  EXPECT_EQ(icon()->contextMenu(), &one);
  tray.Menu(&two);
  EXPECT_EQ(icon()->contextMenu(), &two);
  tray.Menu(nullptr);
  EXPECT_EQ(icon()->contextMenu(), nullptr);
}

TEST_F(AdvSysTrayTest, Without_a_notification_area_its_place_is_not_known) {
  EXPECT_TRUE(AdvSysTray::Posizione().isEmpty());
  tray.Create(&owner);
  EXPECT_FALSE(AdvSysTray::Disponibile());
  EXPECT_TRUE(AdvSysTray::Posizione().isEmpty());
}

}  // namespace
}  // namespace tandemize
