#include "storage/clsCRC.h"

#include <gtest/gtest.h>

#include "errors/ModuloGestioneErrori.h"
#include "storage/CrcInDue.h"
#include "storage/Retries.h"

namespace tandemize {
namespace {

using test::countInLog;
using test::ProgramWithoutRetries;
using test::retryLine;

// The checksum bit by bit, as its polynomial defines it.
std::int32_t slowCrc(std::string_view bytes) {
  std::uint32_t crc = 0xFFFFFFFFU;
  for (char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return static_cast<std::int32_t>(~crc);
}

std::string pattern(std::size_t size) {
  std::string bytes(size, '\0');
  std::uint32_t state = 1;
  for (char& byte : bytes) byte = static_cast<char>((state = state * 1664525U + 1013904223U) >> 24U);
  return bytes;
}

TEST(clsCRC, The_nine_digits_give_the_known_value_as_a_signed_number) {
  clsCRC crc;
  EXPECT_EQ(crc.CalculateString("123456789"), -873187034);
  EXPECT_EQ(crc.Value(), -873187034);
}

TEST(clsCRC, A_single_zero_byte_gives_its_known_value) {
  clsCRC crc;
  EXPECT_EQ(crc.CalculateBytes(std::vector<std::uint8_t>{0}), -771559539);
}

TEST(clsCRC, The_value_after_clear_is_0) {
  clsCRC crc;
  EXPECT_EQ(crc.Value(), 0);
  crc.AddString("x");
  crc.Clear();
  EXPECT_EQ(crc.Value(), 0);
}

TEST(clsCRC, Two_halves_give_the_same_as_the_whole) {
  const std::string bytes = pattern(1001);
  clsCRC whole, halves;
  whole.AddString(bytes);
  halves.AddString(bytes.substr(0, 500));
  EXPECT_EQ(halves.AddString(bytes.substr(500)), whole.Value());
  EXPECT_EQ(whole.Value(), slowCrc(bytes));
}

TEST(clsCRC, Calculating_begins_anew_and_adding_goes_on) {
  clsCRC crc;
  crc.AddString("before");
  EXPECT_EQ(crc.CalculateString("12345"), slowCrc("12345"));
  EXPECT_EQ(crc.AddString("6789"), -873187034);
}

TEST(clsCRC, No_bytes_give_no_value_and_leave_the_register) {
  clsCRC crc;
  crc.AddString("1234");
  EXPECT_EQ(crc.AddBytes({}), std::nullopt);
  EXPECT_EQ(crc.AddString("56789"), -873187034);
}

TEST(clsCRC, Writing_back_what_was_read_does_not_restore_the_state) {
  clsCRC crc;
  crc.AddString("1234");
  const std::int32_t value = crc.Value();
  crc.SetValue(value);
  EXPECT_EQ(crc.Value(), ~value);
}

TEST(CalculateFile, Files_of_every_size_around_a_piece_give_the_checksum_of_their_bytes) {
  ProgramWithoutRetries program;
  for (std::size_t size : {1U, 99999U, 100000U, 100001U, 262143U, 262144U, 262145U, 524289U, 1500000U}) {
    const std::string bytes = pattern(size);
    program.work().write("file", bytes);
    const RisultatoCRC result = CalcolaCRC(program.program("file"), false);
    EXPECT_FALSE(result.fallito);
    EXPECT_EQ(result.valore, slowCrc(bytes)) << size;
  }
}

TEST(CalculateFile, An_empty_file_has_no_value) {
  ProgramWithoutRetries program;
  program.work().write("file", "");
  const RisultatoCRC result = CalcolaCRC(program.program("file"), false);
  EXPECT_FALSE(result.fallito);
  EXPECT_EQ(result.valore, std::nullopt);
}

TEST(CalculateFile, What_the_register_held_before_does_not_count) {
  ProgramWithoutRetries program;
  program.work().write("file", "123456789");
  clsCRC crc;
  crc.AddString("before");
  EXPECT_EQ(crc.CalculateFile(program.program("file")).valore, -873187034);
}

TEST(CalculateFile, Events_run_between_the_pieces) {
  ProgramWithoutRetries program;
  program.work().write("file", pattern(3000000));
  const long before = program.screen.events;
  static_cast<void>(CalcolaCRC(program.program("file"), false));
  EXPECT_GE(program.screen.events - before, 3);
}

TEST(CalculateFile, A_stop_ends_it_as_failed_and_stays_set_for_the_one_who_consumes_it) {
  ProgramWithoutRetries program;
  program.work().write("file", pattern(3000000));
  program.screen.onEvents = [] { AnnullamentoRichiesto = true; };
  EXPECT_TRUE(CalcolaCRC(program.program("file"), false).fallito);
  EXPECT_TRUE(AnnullamentoRichiesto);
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(CalculateFile, A_missing_file_goes_to_the_retry_rules_with_the_run_times_number) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(2);
  const std::string path = program.program("") + "\\gone";
  clsCRC crc;
  EXPECT_TRUE(crc.CalculateFile(path).fallito);
  EXPECT_EQ(countInLog(retryLine(0, "CalculateFile", 53)), 1);
  EXPECT_EQ(countInLog(retryLine(1, "CalculateFile", 53)), 1);
  EXPECT_EQ(countInLog("File/Folder Name: < " + path + " >"), 1);
}

TEST(CalculateFile, A_retry_that_goes_through_reads_the_file_anew_and_raises_one_notice) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(3);
  const std::string path = program.program("") + "\\late";
  test::mendAfterFailure(program.screen, [&program] { program.work().write("late", "123456789"); });
  clsCRC crc;
  const RisultatoCRC result = crc.CalculateFile(path);
  EXPECT_EQ(result.valore, -873187034);
  EXPECT_EQ(test::countRecoveryNotices(program.screen), 1);
}

TEST(CalculateFile, A_file_cut_short_while_it_is_read_fails_and_the_retry_tells_its_new_checksum) {
  ProgramWithoutRetries program;
  const std::string bytes = pattern(3000000);
  for (std::uint8_t attempts : {std::uint8_t{1}, std::uint8_t{3}}) {
    test::retryWithoutPause(attempts);
    program.work().write("file", bytes);
    int calls = 0;
    program.screen.onEvents = [&] {
      if (++calls == 2) std::filesystem::resize_file(program.work().host("file"), 1000);
    };
    clsCRC crc;
    const RisultatoCRC result = crc.CalculateFile(program.program("file"));
    EXPECT_EQ(result.fallito, attempts == 1);
    EXPECT_EQ(result.valore, attempts == 1 ? std::nullopt : std::optional(slowCrc(bytes.substr(0, 1000))));
  }
  EXPECT_EQ(countInLog(retryLine(0, "CalculateFile", 62)), 2);
}

constexpr std::size_t Big = 32U * 1024U * 1024U;  // from here on two threads share the work

TEST(CalculateFile, Big_files_that_two_threads_share_give_the_checksum_of_their_bytes) {
  ProgramWithoutRetries program;
  const std::string bytes = pattern(Big + 1);
  clsCRC crc;
  for (std::size_t size : {Big - 1, Big, Big + 1}) {
    program.work().write("file", bytes.substr(0, size));
    const RisultatoCRC result = crc.CalculateFile(program.program("file"));
    clsCRC whole;
    EXPECT_EQ(result.valore, whole.CalculateString(std::string_view(bytes).substr(0, size))) << size;
    EXPECT_EQ(crc.Value(), whole.Value());
  }
}

TEST(CalculateFile, A_stop_ends_the_two_threads_of_a_big_file) {
  ProgramWithoutRetries program;
  program.work().write("file", std::string(Big, 'x'));
  for (int stopAt : {1, 2}) {
    AnnullamentoRichiesto = false;
    int calls = 0;
    program.screen.onEvents = [&] { AnnullamentoRichiesto = ++calls >= stopAt; };
    EXPECT_TRUE(CalcolaCRC(program.program("file"), false).fallito) << stopAt;
  }
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(CalculateFile, A_big_file_cut_short_fails_and_the_retry_tells_its_new_checksum) {
  ProgramWithoutRetries program;
  test::retryWithoutPause(3);
  program.work().write("file", std::string(Big, 'x'));
  program.screen.onEvents = [&program, done = false]() mutable {
    if (!done) std::filesystem::resize_file(program.work().host("file"), 1000);
    done = true;
  };
  clsCRC crc, expected;
  EXPECT_EQ(crc.CalculateFile(program.program("file")).valore,
            expected.CalculateString(std::string(1000, 'x')));
  EXPECT_EQ(countInLog(retryLine(0, "CalculateFile", 62)), 1);
  EXPECT_EQ(test::countRecoveryNotices(program.screen), 1);
}

TEST(UnisciCrc, Two_checksums_give_that_of_both_texts_in_a_row) {
  clsCRC crc;
  auto of = [&crc](std::string_view text) {
    return static_cast<std::uint32_t>(crc.CalculateString(text).value_or(0));
  };
  for (std::size_t cut = 0; cut <= 9; ++cut) {
    const std::string_view digits = "123456789";
    EXPECT_EQ(UnisciCrc(of(digits.substr(0, cut)), of(digits.substr(cut)), 9 - cut), 0xCBF43926U) << cut;
  }
}

TEST(CalcolaCRC, A_file_that_cannot_be_opened_fails_without_a_retry) {
  ProgramWithoutRetries program;
  program.work().makeFolder("folder");
  test::retryWithoutPause(3);
  for (const char* name : {"gone", "folder"}) {
    const RisultatoCRC result = CalcolaCRC(program.program("") + "\\" + name, false);
    EXPECT_TRUE(result.fallito) << name;
    EXPECT_EQ(result.valore, std::nullopt);
  }
  EXPECT_EQ(countInLog("Tetativo"), 0);
}

TEST(CalcolaCRC, A_file_that_may_not_be_read_fails_without_a_retry) {
  ProgramWithoutRetries program;
  program.work().write("file", "1");
  std::filesystem::permissions(program.work().host("file"), std::filesystem::perms::none);
  const std::string path = program.program("file");
  EXPECT_TRUE(test::asAnyUser(
      program, [&path] { return CalcolaCRC(path, false).fallito && countInLog("Tetativo") == 0; }));
}

TEST(CalcolaCRC, A_server_without_a_session_fails) {
  ProgramWithoutRetries program;
  EXPECT_TRUE(CalcolaCRC("/public/file", true).fallito);
}

}  // namespace
}  // namespace tandemize
