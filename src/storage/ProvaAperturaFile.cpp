#include "storage/File_System.h"

namespace tandemize {

std::string ProvaAperturaFile(std::string_view path, bool write, std::int32_t& errore) {
  errore = platform::tryOpen(path, write);
  if (errore == platform::kNoError) return {};
  std::string text = platform::systemErrorText(errore);
  // A failure must never look like success for want of words.
  return text.empty() ? "Error " + std::to_string(errore) : text;
}

}  // namespace tandemize
