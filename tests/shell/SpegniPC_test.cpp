#include "shell/SpegniPC.h"

#include <gtest/gtest.h>

#include <optional>

#include "fixtures/LoginService.h"
#include "fixtures/ProgramFolder.h"
#include "platform/environment.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

using test::ScopedVariable;
using Words = std::vector<std::string>;

constexpr const char* Access = "org.freedesktop.DBus.Error.AccessDenied";

// A started program whose requests go to a bus of the test's own.
template <typename Bus>
class On : public test::ProgramFolder {
 public:
  On() : power_("TANDEMIZE_POWER", std::nullopt), address_("DBUS_SYSTEM_BUS_ADDRESS", bus.address()) {}

  Bus bus;

 private:
  ScopedVariable power_, address_;
};
using WithService = On<test::LoginService>;
using WithSilentBus = On<test::SilentBus>;

std::string lowered(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

std::string raised(std::string text) {
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

TEST(SpegniPC, Other_computers_are_listed_and_nothing_is_asked_for) {
  WithSilentBus t;
  EXPECT_TRUE(SpegniPC("server", false, 30, "message"));
  EXPECT_TRUE(SpegniPC("\\\\server", false, 30, "message"));
  EXPECT_TRUE(SpegniPC("nas\\", false, 30, "message"));
  EXPECT_FALSE(t.bus.anyoneCame());
  EXPECT_TRUE(t.screen.boxes.empty());
  EXPECT_TRUE(t.screen.balloons.empty());
  EXPECT_EQ(t.log(), "");
}

TEST(SpegniPC, Without_the_word_to_carry_it_out_not_even_this_computer_is_asked) {
  WithSilentBus t;
  EXPECT_TRUE(SpegniPC(NomeComputer()));
  EXPECT_TRUE(SpegniPC("", false, 30, "message"));
  EXPECT_FALSE(t.bus.anyoneCame());
}

TEST(SpegniPC, This_computer_is_asked_with_the_message_and_nothing_is_shown) {
  WithService t;
  EXPECT_TRUE(SpegniPC(NomeComputer(), true, 30, "message"));
  ASSERT_EQ(t.bus.members(), (Words{"SetWallMessage", "ScheduleShutdown"}));
  EXPECT_EQ(t.bus.calls()[0].arguments, (Words{"message", "true"}));
  EXPECT_TRUE(t.screen.boxes.empty());
  EXPECT_TRUE(t.screen.balloons.empty());
  EXPECT_EQ(t.log(), "");
}

TEST(SpegniPC, This_computer_may_be_named_with_backslashes_in_any_case_or_not_at_all) {
  ASSERT_NE(NomeComputer(), "");
  for (const std::string& name : {"\\\\" + NomeComputer(), lowered(NomeComputer()), raised(NomeComputer()),
                                  std::string(), std::string("\\\\")}) {
    WithService t;
    EXPECT_TRUE(SpegniPC(name, true, 30, "message")) << name;
    EXPECT_EQ(t.bus.calls().size(), 2U) << name;
  }
}

TEST(SpegniPC, Another_computer_is_never_touched_even_if_told_to) {
  for (const std::string& name :
       {std::string("another"), std::string("\\\\another"), NomeComputer() + "2", NomeComputer() + "\\"}) {
    WithSilentBus t;
    EXPECT_FALSE(SpegniPC(name, true, 30, "message"));
    EXPECT_FALSE(t.bus.anyoneCame());
    ASSERT_EQ(t.screen.boxes.size(), 1U);
    EXPECT_EQ(t.screen.boxes[0].text, "ShoutDown Fallito Errore 50");
  }
}

TEST(SpegniPC, A_refusal_is_told_in_a_plain_box_with_its_number_and_the_log_says_why) {
  WithService t;
  t.bus.refuse("ScheduleShutdown", Access);
  EXPECT_FALSE(SpegniPC(NomeComputer(), true, 30, "message"));
  ASSERT_EQ(t.screen.boxes.size(), 1U);
  EXPECT_EQ(t.screen.boxes[0].text, "ShoutDown Fallito Errore 5");
  EXPECT_EQ(t.screen.boxes[0].style, StileSemplice);
  EXPECT_NE(t.log().find("ShoutDown Fallito Errore 5 (" + std::string(Access) + ": the test's refusal)\r\n"),
            std::string::npos)
      << t.log();
}

TEST(SpegniPC, While_the_program_is_hidden_a_failure_waits_for_no_click) {
  WithService t;
  t.bus.refuse("ScheduleShutdown", Access);
  ApplicazioneNascosta = true;
  EXPECT_FALSE(SpegniPC(NomeComputer(), true, 30, "message"));
  EXPECT_TRUE(t.screen.boxes.empty());
  ASSERT_EQ(t.screen.balloons.size(), 1U);
  EXPECT_EQ(t.screen.balloons[0].testo, "ShoutDown Fallito Errore 5");
}

TEST(SpegniPC, A_machine_that_has_no_such_service_says_so) {
  On<test::PrivateBus> t;
  EXPECT_FALSE(SpegniPC(NomeComputer(), true, 30, "message"));
  ASSERT_EQ(t.screen.boxes.size(), 1U);
  EXPECT_EQ(t.screen.boxes[0].text, "ShoutDown Fallito Errore 50");
}

TEST(SpegniPC, A_request_that_is_only_to_be_logged_is_one_line_of_the_log) {
  for (const bool english : {false, true}) {
    WithSilentBus t;
    const ScopedVariable power("TANDEMIZE_POWER", "log");
    Language = english ? 1 : 0;
    EXPECT_TRUE(SpegniPC(NomeComputer(), true, 30, "message"));
    EXPECT_FALSE(t.bus.anyoneCame());
    const std::string expected = english ? "Shutdown of this PC after 30 seconds only noted down"
                                         : "Spegnimento di questo PC dopo 30 secondi solo annotato";
    EXPECT_NE(t.log().find(expected + " (TANDEMIZE_POWER=log): 'message'\r\n"), std::string::npos) << t.log();
    EXPECT_TRUE(t.screen.boxes.empty());
  }
}

// --- forceguest

std::vector<std::string> written;
bool note(std::string_view value) {
  written.emplace_back(value);
  return true;
}
bool refuse(std::string_view value) {
  written.emplace_back(value);
  return false;
}

TEST(ForceguestSospeso, A_value_of_1_is_0_for_the_time_of_the_call) {
  written.clear();
  {
    const ForceguestSospeso suspended("1", note);
    EXPECT_EQ(written, (Words{"0"}));
  }
  EXPECT_EQ(written, (Words{"0", "1"}));
}

TEST(ForceguestSospeso, Any_other_value_is_not_touched) {
  for (const char* const value : {"", "0", "2", "01", "1 "}) {
    written.clear();
    { const ForceguestSospeso suspended(value, note); }
    EXPECT_TRUE(written.empty()) << "'" << value << "'";
  }
}

TEST(ForceguestSospeso, A_machine_that_does_not_obey_the_value_gets_nothing_back) {
  written.clear();
  { const ForceguestSospeso suspended("1", refuse); }
  EXPECT_EQ(written, (Words{"0"}));
}

TEST(ForceguestSospeso, The_users_note_of_it_stays_as_it_is) {
  for (const char* const value : {"0", "1"}) {
    WithService t;
    const std::string text =
        "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Lsa]\r\nforceguest=" + std::string(value) +
        "\r\n";
    t.home().write("Registry.ini", text);
    EXPECT_TRUE(SpegniPC(NomeComputer(), true, 30, "message"));
    EXPECT_EQ(t.bus.calls().size(), 2U);
    EXPECT_EQ(t.home().read("Registry.ini"), text);
  }
}

}  // namespace
}  // namespace tandemize
