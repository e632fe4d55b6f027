// What the mail window shows of a dialogue.
#pragma once

#include <string_view>

namespace tandemize {

// The window's three display objects.
class OggettiPosta {
 public:
  OggettiPosta() = default;
  virtual ~OggettiPosta() = default;
  OggettiPosta(const OggettiPosta&) = delete;
  OggettiPosta& operator=(const OggettiPosta&) = delete;

  virtual void lblStatus(std::string_view testo) = 0;  // the status label
  virtual void TxtLog(std::string_view testo) = 0;     // all replies so far; shown from their end
  virtual void ProgBar(int valore) = 0;                // 0 to 100
};

// The objects of the dialogue that runs; null without a window, and every write is then left out.
void UsaOggettiPosta(OggettiPosta* oggetti);
void ScriviStato(std::string_view testo);
void ScriviRisposte(std::string_view testo);
void ScriviAvanzamento(long long valore);  // what lies outside 0 to 100 counts as the nearer end

}  // namespace tandemize
