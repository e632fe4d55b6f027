// Reads a text item by item, as the program's own files are read: an item ends at a comma or a line end.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tandemize {

// The text must outlive the reader. Lines end with CR LF, LF or CR; the last one need not end.
//
// - Blanks and tabs before an item are skipped. Those behind it belong to it: names that end in blanks
// survive.
// - A comma ends an item, so "a, b" is "a" and "b". Nothing follows a comma or line end that closes the text.
// - An item that begins with a double quote goes to the next quote of its line, or to the line's end if there
//   is none. The quotes are not part of it, commas between them are. Text behind the closing quote is an item
//   of its own unless it is blank. A quote anywhere else is an ordinary character.
// - An empty line is an empty item.
class LettoreItem {
 public:
  explicit LettoreItem(std::string_view testo) : testo_(testo) {}

  // Gives the next item; false, with `item` empty, at the end of the text.
  [[nodiscard]] bool Leggi(std::string& item);

  // Number, from 1, of the line that the last item read began on; 0 before the first.
  [[nodiscard]] std::size_t Riga() const { return rigaItem_; }

 private:
  void SaltaBlank();
  void SaltaSeparatore();
  [[nodiscard]] std::string_view FinoAUnoDi(std::string_view caratteri);

  std::string_view testo_;
  std::size_t posizione_ = 0, riga_ = 1, rigaItem_ = 0;
};

}  // namespace tandemize
