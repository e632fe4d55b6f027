#include <gtest/gtest.h>

#include <string_view>
#include <utility>

#include "errors/ModuloGestioneErrori.h"

namespace tandemize {
namespace {

TEST(TestoErroreRuntimeTest, Knows_the_numbers_of_file_access) {
  struct {
    int number;
    std::string_view text;
  } const rows[] = {{5, "Invalid procedure call or argument"},
                    {6, "Overflow"},
                    {7, "Out of memory"},
                    {9, "Subscript out of range"},
                    {13, "Type mismatch"},
                    {14, "Out of string space"},
                    {52, "Bad file name or number"},
                    {53, "File not found"},
                    {54, "Bad file mode"},
                    {55, "File already open"},
                    {57, "Device I/O error"},
                    {58, "File already exists"},
                    {61, "Disk full"},
                    {62, "Input past end of file"},
                    {63, "Bad record number"},
                    {67, "Too many files"},
                    {68, "Device unavailable"},
                    {70, "Permission denied"},
                    {71, "Disk not ready"},
                    {74, "Can't rename with different drive"},
                    {75, "Path/File access error"},
                    {76, "Path not found"},
                    {0, ""},
                    {77, ""},
                    {-1, ""}};
  for (const auto& row : rows) EXPECT_EQ(TestoErroreRuntime(row.number), row.text) << row.number;
}

TEST(TestoErroreRuntimeTest, Each_system_number_has_a_run_time_number) {
  const std::pair<int, int> rows[] = {{0, 0},    {2, 53},   {3, 76},   {4, 67},   {5, 75},    {8, 7},
                                      {15, 68},  {17, 74},  {19, 70},  {21, 71},  {32, 70},   {33, 70},
                                      {38, 62},  {80, 58},  {87, 5},   {112, 61}, {123, 52},  {145, 75},
                                      {183, 58}, {206, 52}, {267, 76}, {59, 57},  {1117, 57}, {99999, 57}};
  for (const auto& [system, runTime] : rows) {
    EXPECT_EQ(ErroreRuntimeDaSistema(system), runTime) << system;
    if (system != 0) {
      EXPECT_NE(TestoErroreRuntime(runTime), "") << system;
    }
  }
}

}  // namespace
}  // namespace tandemize
