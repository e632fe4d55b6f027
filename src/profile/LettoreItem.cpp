#include "profile/LettoreItem.h"

namespace tandemize {

bool LettoreItem::Leggi(std::string& item) {
  item.clear();
  if (posizione_ >= testo_.size()) return false;
  rigaItem_ = riga_;
  SaltaBlank();
  if (posizione_ < testo_.size() && testo_[posizione_] == '"') {
    ++posizione_;
    item = FinoAUnoDi("\"\r\n");
    if (posizione_ < testo_.size() && testo_[posizione_] == '"') ++posizione_;
    SaltaBlank();
  } else {
    item = FinoAUnoDi(",\r\n");
  }
  SaltaSeparatore();
  return true;
}

void LettoreItem::SaltaBlank() {
  while (posizione_ < testo_.size() && (testo_[posizione_] == ' ' || testo_[posizione_] == '\t'))
    ++posizione_;
}

void LettoreItem::SaltaSeparatore() {
  if (posizione_ >= testo_.size()) return;
  const char c = testo_[posizione_];
  if (c != ',' && c != '\r' && c != '\n') return;
  ++posizione_;
  if (c == ',') return;
  if (c == '\r' && posizione_ < testo_.size() && testo_[posizione_] == '\n') ++posizione_;
  ++riga_;
}

std::string_view LettoreItem::FinoAUnoDi(std::string_view caratteri) {
  const std::size_t inizio = posizione_;
  posizione_ = testo_.find_first_of(caratteri, inizio);
  if (posizione_ == std::string_view::npos) posizione_ = testo_.size();
  return testo_.substr(inizio, posizione_ - inizio);
}

}  // namespace tandemize
