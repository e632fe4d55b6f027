#include <gtest/gtest.h>

#include "fixtures/TemporaryFolder.h"
#include "platform/environment.h"
#include "platform/machine.h"
#include "platform/posix/registryfile.h"

namespace tandemize::platform {
namespace {

constexpr const char* kInternational = "HKEY_CURRENT_USER\\Control Panel\\International";

TEST(RegistryFile, Holds_values_by_section_and_name_without_regard_to_case) {
  const RegistryFile file(
      "\xEF\xBB\xBF[HKEY_CURRENT_USER\\Control Panel\\International]\r\n"
      "sShortDate = dd/MM/yyyy \r\n"
      "sTimeFormat=\"H.mm\"\r\n"
      "\r\n"
      "[ HKEY_LOCAL_MACHINE\\Software\\ ]\n"
      "Owner=Anna = Co.\n"
      "Empty=");
  EXPECT_EQ(file.value(kInternational, "sShortDate"), "dd/MM/yyyy");
  EXPECT_EQ(file.value("hkey_current_user\\control panel\\international\\", "SSHORTDATE"), "dd/MM/yyyy");
  EXPECT_EQ(file.value(kInternational, "sTimeFormat"), "\"H.mm\"");
  EXPECT_EQ(file.value("HKEY_LOCAL_MACHINE\\Software", "owner"), "Anna = Co.");
  EXPECT_EQ(file.value("HKEY_LOCAL_MACHINE\\Software", "Empty"), "");
  EXPECT_EQ(file.value("HKEY_LOCAL_MACHINE\\Software", "sShortDate"), std::nullopt);
}

TEST(RegistryFile, Passes_over_damaged_lines) {
  const RegistryFile file(
      "before=1\n[]\nunder=2\n[open\nx=3\n[Key]\nno "
      "sign\n=nameless\n\x01\xFF\nfirst=a\nFIRST=b\n[Key]\nlater=c\n");
  EXPECT_EQ(file.value("", "before"), std::nullopt);
  EXPECT_EQ(file.value("open", "x"), std::nullopt);
  EXPECT_EQ(file.value("Key", "first"), "a");
  EXPECT_EQ(file.value("Key", "later"), "c");
  EXPECT_EQ(file.value("Key", ""), std::nullopt);
}

class RegistryValue : public testing::Test {
 protected:
  RegistryValue() : all_("LC_ALL", "C") {}
  ~RegistryValue() override { setProgramFolder({}); }
  test::TemporaryFolder home_;
  test::ScopedVariable all_;
};

TEST_F(RegistryValue, Comes_from_the_file_of_the_program_folder) {
  home_.write("Registry.ini", "[HKEY_CURRENT_USER\\Control Panel\\International]\nsShortDate=yyyy-MM-dd\n");
  setProgramFolder(home_.host());
  EXPECT_EQ(registryValue(kInternational, "sShortDate"), "yyyy-MM-dd");
}

TEST_F(RegistryValue, Is_empty_where_neither_file_nor_host_knows_it) {
  setProgramFolder(home_.host());
  EXPECT_EQ(registryValue(kInternational, "sShortDate"), "");
  EXPECT_EQ(registryValue(kInternational, "sTimeFormat"), "");
  EXPECT_EQ(registryValue("HKEY_LOCAL_MACHINE\\Software\\Nothing", "Owner"), "");
}

TEST_F(RegistryValue, Is_read_anew_when_the_folder_is_set_again) {
  setProgramFolder(home_.host());
  EXPECT_EQ(registryValue("Key", "name"), "");
  home_.write("Registry.ini", "[Key]\nname=value\n");
  setProgramFolder(home_.host());
  EXPECT_EQ(registryValue("Key", "name"), "value");
}

}  // namespace
}  // namespace tandemize::platform
