// The settings of a synchronisation: the entry fields, the list of pairs, and browsing.
#include <utility>

#include "synchronisation/TandemizeConfigTest.h"

namespace tandemize {
namespace {

using ListPathConfigFtp = test::TandemizeConfigFtp;
using test::TandemizeConfigTest;
using test::Texts;
using Switches = std::array<bool, 3>;

using ListPathConfig = TandemizeConfigTest;

// --- entry fields and rows

TEST_F(ListPathConfig, Add_is_enabled_by_two_filled_fields_and_not_disabled_by_an_emptied_one) {
  loadNew();
  form.ScriviPercorso(0, "C:\\a");
  EXPECT_FALSE(form.cmdListAbilitato[0]);
  form.ScriviPercorso(1, "C:\\b");
  EXPECT_TRUE(form.cmdListAbilitato[0]);
  form.ScriviPercorso(1, "");
  EXPECT_TRUE(form.cmdListAbilitato[0]);
}

TEST_F(ListPathConfig, Add_stays_disabled_while_a_row_is_being_modified) {
  load();
  form.SelezionaRiga(0);
  EXPECT_EQ(form.cmdListAbilitato, (Switches{false, true, true}));
  enter("C:\\a", "C:\\b");
  EXPECT_FALSE(form.cmdListAbilitato[0]);
}

TEST_F(ListPathConfig, Add_checks_the_fields_makes_a_row_of_them_and_empties_them) {
  loadNew();
  enter(path("one"), path("two"));
  form.cmdList(0);
  EXPECT_EQ(form.ListPath, (std::vector<RigaCoppia>{{{path("one"), path("two")}, {"", ""}}}));
  EXPECT_EQ(form.TxtPath[0].Text + form.TxtPath[1].Text, "");
  EXPECT_EQ(form.cmdListAbilitato, (Switches{false, false, false}));
  EXPECT_EQ(boxes(), Texts{});
}

TEST_F(ListPathConfig, Add_refuses_a_path_that_cannot_be_used_and_keeps_the_fields) {
  loadNew();
  enter(path("one"), path("gone"));
  form.cmdList(0);
  EXPECT_EQ(boxes(), Texts{noFolder(path("gone"))});
  EXPECT_TRUE(form.ListPath.empty());
  EXPECT_EQ(form.TxtPath[1].Text, path("gone"));
  form.ScriviPercorso(1, "");
  form.cmdList(0);
  EXPECT_EQ(boxes(), Texts{Messaggio(313)});
  EXPECT_TRUE(form.ListPath.empty());
}

TEST_F(ListPathConfig, A_full_list_takes_no_row_that_the_profile_could_not_give_back) {
  loadNew();
  for (std::size_t i = 0; i < FrmTandemizeConfig::RigheMassime; ++i) addRow("C:\\a", "C:\\b");
  enter(path("one"), path("two"));
  form.cmdList(0);
  EXPECT_EQ(form.ListPath.size(), FrmTandemizeConfig::RigheMassime);
  EXPECT_EQ(boxes().size(), 1U);
}

TEST_F(ListPathConfig, As_many_rows_as_fit_come_back_from_the_profile) {
  loadNew();
  for (std::size_t i = 0; i < FrmTandemizeConfig::RigheMassime; ++i) {
    const std::string number = std::to_string(i);
    program.work().makeFolder("s" + number);
    program.work().makeFolder("d" + number);
    addRow(path("s" + number), path("d" + number));
  }
  ASSERT_TRUE(form.Salvataggio());
  const std::vector<RigaCoppia> saved = form.ListPath;
  ASSERT_TRUE(form.Carica());
  EXPECT_EQ(form.ListPath, saved);
}

TEST_F(ListPathConfig, Remove_asks_and_takes_the_selected_row_away) {
  profile.paths = {path("one"), path("two"), path("three"), path("four")};
  load();
  form.SelezionaRiga(0);
  answer(Risposta::No);
  form.cmdList(1);
  EXPECT_EQ(boxes(StileSìNo), Texts{Messaggio(432)});
  EXPECT_EQ(form.ListPath.size(), 2U);
  EXPECT_EQ(form.TxtPath[0].Text, path("one"));
  answer(Risposta::Sì);
  form.cmdList(1);
  ASSERT_EQ(form.ListPath.size(), 1U);
  EXPECT_EQ(form.ListPath[0].Percorsi[0], path("three"));
  EXPECT_EQ(form.TxtPath[0].Text, "");
  EXPECT_EQ(form.ListPathSelezione, -1);
  EXPECT_EQ(form.cmdListAbilitato, (Switches{false, false, false}));
}

TEST_F(ListPathConfig, Remove_without_a_selected_row_does_nothing) {
  load();
  form.cmdList(1);
  EXPECT_EQ(form.ListPath.size(), 1U);
  EXPECT_EQ(boxes(), Texts{});
}

TEST_F(ListPathConfig, Modify_asks_checks_and_writes_the_fields_into_the_selected_row) {
  load();
  form.SelezionaRiga(0);
  enter(path("three"), path("four"));
  answer(Risposta::No);
  form.cmdList(2);
  EXPECT_EQ(boxes(StileSìNo), Texts{Messaggio(431)});
  EXPECT_EQ(form.ListPath[0].Percorsi[0], path("one"));
  answer(Risposta::Sì);
  form.cmdList(2);
  EXPECT_EQ(form.ListPath, (std::vector<RigaCoppia>{{{path("three"), path("four")}, {"", ""}}}));
  EXPECT_EQ(form.TxtPath[1].Text, "");
  EXPECT_EQ(form.cmdListAbilitato, (Switches{false, false, false}));
}

TEST_F(ListPathConfig, Modify_leaves_the_row_when_a_path_cannot_be_used_or_no_row_is_selected) {
  load();
  form.SelezionaRiga(0);
  enter(path("gone"), path("four"));
  answer(Risposta::Sì);
  form.cmdList(2);
  ASSERT_EQ(screen.boxes.size(), 2U);
  EXPECT_EQ(screen.boxes[1].text, noFolder(path("gone")));
  EXPECT_EQ(form.ListPath[0].Percorsi[0], path("one"));

  form.SelezionaRiga(-1);
  enter(path("three"), path("four"));
  answer(Risposta::Sì);
  form.cmdList(2);
  EXPECT_EQ(form.ListPath, (std::vector<RigaCoppia>{{{path("one"), path("two")}, {"", ""}}}));
  EXPECT_EQ(form.TxtPath[0].Text, path("three"));
}

TEST_F(ListPathConfigFtp, A_row_and_the_fields_hand_the_servers_to_each_other) {
  profile.paths = {"/public/", path("two")};
  profile.servers = {"Work", ""};
  load();
  form.SelezionaRiga(0);
  EXPECT_EQ(form.TxtPath[0].Text, "/public/");
  EXPECT_EQ(form.TxtPath[1].Text, path("two"));
  EXPECT_EQ(form.ChkFtp[0].Value, 1);
  EXPECT_EQ(form.ComboFtp[0].Text, "Work");
  EXPECT_TRUE(form.ComboFtp[0].Enabled);
  EXPECT_EQ(form.ChkFtp[1].Value, 0);
  EXPECT_EQ(form.ComboFtp[1].Text, "");
  EXPECT_FALSE(form.ComboFtp[1].Enabled);
  form.ComboFtp[0].Text = "Home";
  answer(Risposta::Sì);
  form.cmdList(2);
  EXPECT_EQ(form.ListPath[0].ServerFtp, (std::array<std::string, 2>{"Home", ""}));
  // Beside the description, the choice of the server is what counts: the check asked the one chosen.
  EXPECT_EQ(server.commands("USER"), Texts{"USER anna"});
}

TEST_F(ListPathConfig, A_click_on_a_row_with_an_empty_path_or_in_an_empty_list_does_nothing) {
  profile.paths = {path("one"), ""};
  load();
  enter("C:\\x", "");
  form.SelezionaRiga(0);
  EXPECT_EQ(form.ListPathSelezione, -1);
  EXPECT_EQ(form.TxtPath[0].Text, "C:\\x");
  form.ListPath.clear();
  form.SelezionaRiga(0);
  form.SelezionaRiga(-1);
  EXPECT_EQ(form.TxtPath[0].Text, "C:\\x");
}

TEST_F(ListPathConfig, A_click_beside_the_rows_lets_a_row_be_added_again) {
  load();
  form.SelezionaRiga(0);
  form.SelezionaRiga(-1);
  EXPECT_EQ(form.TxtPath[0].Text, "");
  enter(path("three"), path("four"));
  EXPECT_TRUE(form.cmdListAbilitato[0]);
}

TEST_F(ListPathConfigFtp, PulisciCampi_empties_fields_marks_and_combos) {
  loadNew();
  form.SpuntaAbilitàFtp(true);
  for (const int i : {0, 1}) {
    form.ScriviPercorso(i, "/public");
    form.SpuntaFtp(i, true);
    form.ComboFtp[static_cast<std::size_t>(i)].Text = "Home";
  }
  form.PulisciCampi();
  for (const std::size_t i : {0U, 1U}) {
    EXPECT_EQ(form.TxtPath[i].Text, "");
    EXPECT_EQ(form.ChkFtp[i].Value, 0);
    EXPECT_TRUE(form.ChkFtp[i].Enabled);
    EXPECT_EQ(form.ComboFtp[i].Text, "");
    EXPECT_TRUE(form.ComboFtp[i].Elementi.empty());
  }
}

// --- browsing

TEST_F(ListPathConfig, Browsing_takes_the_folder_that_was_chosen) {
  loadNew();
  Texts asked;
  form.ScegliCartella = [&](const std::string& start) {
    asked.push_back(start);
    return asked.size() == 1 ? "C:\\chosen" : "";
  };
  form.ScriviPercorso(1, "C:\\start");
  EXPECT_EQ(form.Sfoglia(0), EsitoSfoglia::Fatto);
  EXPECT_EQ(form.TxtPath[0].Text, "C:\\chosen");
  EXPECT_TRUE(form.cmdListAbilitato[0]);
  form.Sfoglia(1);
  EXPECT_EQ(form.TxtPath[1].Text, "C:\\start");
  EXPECT_EQ(asked, (Texts{"", "C:\\start"}));
}

TEST_F(ListPathConfigFtp, Browsing_a_server_needs_one_to_be_chosen) {
  loadNew();
  form.SpuntaFtp(1, true);
  EXPECT_EQ(form.Sfoglia(1), EsitoSfoglia::FuocoSuComboFtp);
  EXPECT_EQ(boxes(), Texts{Messaggio(106)});
  EXPECT_EQ(server.connections(), 0);
}

TEST_F(ListPathConfigFtp, Browsing_connects_to_the_chosen_server_and_takes_the_folder) {
  loadNew();
  form.ScriviPercorso(0, "/public");
  form.SpuntaFtp(0, true);
  form.ComboFtp[0].Text = "Work";
  bool open = false;
  std::string answer = "/other";
  form.SfogliaServer = [&](const std::string& start) {
    EXPECT_EQ(start, "/public");
    open = ServerConnesso("Work");
    return std::exchange(answer, "");
  };
  EXPECT_EQ(form.Sfoglia(0), EsitoSfoglia::Fatto);
  EXPECT_TRUE(open);
  EXPECT_EQ(form.TxtPath[0].Text, "/other");
  form.ScriviPercorso(0, "/public");
  form.Sfoglia(0);
  EXPECT_EQ(form.TxtPath[0].Text, "/public");
}

TEST_F(ListPathConfigFtp, A_failed_connect_is_told_once_by_either_alert_mode_and_no_browser_opens) {
  loadNew();
  server.answer([](const std::string& line) {
    return line.starts_with("PASS") ? std::optional<std::string>("530 No.") : std::nullopt;
  });
  form.SfogliaServer = [](const std::string&) {
    ADD_FAILURE() << "opened without a session";
    return std::string();
  };
  for (const char* mode : {"0", "1"}) {
    program.setting("Errors_Alert_Mode", mode);
    Errors_Correction = 0;
    FtpServers = {{"Home", server.name(), "anna", "secret", 1}, {}};
    form.SpuntaFtp(0, true);
    form.ComboFtp[0].Text = "Home";
    EXPECT_EQ(form.Sfoglia(0), EsitoSfoglia::Fatto);
    EXPECT_EQ(boxes().size(), 1U) << mode;
    EXPECT_FALSE(ConnessioneFallita);
    EXPECT_FALSE(form.ErroreInCorso);
  }
}

}  // namespace
}  // namespace tandemize
