// A list that grows by blocks: no element is copied or moved when it grows, and its memory goes back block by
// block.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace tandemize {

template <typename T, std::size_t PerBlocco = 4096>
class ListaABlocchi {
 public:
  [[nodiscard]] std::size_t size() const { return numero_; }
  [[nodiscard]] bool empty() const { return numero_ == 0; }

  T& operator[](std::size_t i) { return blocchi_[i / PerBlocco][i % PerBlocco]; }
  const T& operator[](std::size_t i) const { return blocchi_[i / PerBlocco][i % PerBlocco]; }

  T& Aggiungi(T elemento) {
    if (numero_ == blocchi_.size() * PerBlocco) blocchi_.push_back(std::make_unique<T[]>(PerBlocco));
    T& posto = (*this)[numero_++];
    posto = std::move(elemento);
    return posto;
  }

  // Cuts the list to `numero` elements and gives the blocks behind them back.
  void Accorcia(std::size_t numero) {
    if (numero >= numero_) return;
    numero_ = numero;
    blocchi_.resize((numero + PerBlocco - 1) / PerBlocco);
  }

 private:
  std::vector<std::unique_ptr<T[]>> blocchi_;
  std::size_t numero_ = 0;
};

}  // namespace tandemize
