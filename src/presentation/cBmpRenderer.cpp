#include "presentation/cBmpRenderer.h"

#include <algorithm>

namespace tandemize {

namespace {

constexpr std::size_t LatoQuadretto = 8, BytePixel = 3;
constexpr std::uint8_t GrigioChiaro = 255, GrigioScuro = 204;

// The first row of squares begins with the light one, the next with the dark one, and so on.
void RiempiConMotivo(ImmagineBgr& tela) {
  std::vector<std::uint8_t> pari(tela.Passo), dispari(tela.Passo);
  for (std::size_t x = 0; x < tela.Passo; ++x) {
    const bool chiaro = x / (LatoQuadretto * BytePixel) % 2 == 0;
    pari[x] = chiaro ? GrigioChiaro : GrigioScuro;
    dispari[x] = chiaro ? GrigioScuro : GrigioChiaro;
  }
  auto riga = tela.Byte.begin();
  for (std::size_t y = 0; riga != tela.Byte.end(); ++y)
    riga = std::ranges::copy(y / LatoQuadretto % 2 == 0 ? pari : dispari, riga).out;
}

}  // namespace

bool cBmpRenderer::Init(cGifReader& Reader) {
  if (!Reader.Aperto()) return false;
  reader_ = &Reader;
  const auto larghezza = static_cast<std::size_t>(Reader.ScreenWidth());
  tela_ = {Reader.ScreenWidth(), Reader.ScreenHeight(), (larghezza * BytePixel + 3) & ~std::size_t{3}, {}};
  tela_.Byte.resize(tela_.Passo * static_cast<std::size_t>(tela_.Altezza));
  RiempiConMotivo(tela_);
  return true;
}

void cBmpRenderer::MoveFirst() {
  if (reader_ == nullptr) return;
  RiempiConMotivo(tela_);
  reader_->MoveFirst();
}

bool cBmpRenderer::MoveNext() {
  if (reader_ == nullptr || !reader_->MoveNext()) return false;
  MergeCurrentImage();
  return true;
}

void cBmpRenderer::MergeCurrentImage() {
  if (reader_ == nullptr) return;
  const auto larghezza = static_cast<std::size_t>(reader_->ImageWidth());
  if (larghezza == 0) return;
  const int visibili = std::min(reader_->ImageWidth(), tela_.Larghezza - reader_->ImageLeft());
  const auto righe = std::min(static_cast<std::size_t>(std::max(0, tela_.Altezza - reader_->ImageTop())),
                              reader_->ImageBits().size() / larghezza);
  if (visibili <= 0) return;
  for (std::size_t riga = 0; riga < righe; ++riga)
    CopiaPixel((static_cast<std::size_t>(reader_->ImageTop()) + riga) * tela_.Passo +
                   static_cast<std::size_t>(reader_->ImageLeft()) * BytePixel,
               riga * larghezza, static_cast<std::size_t>(visibili));
}

void cBmpRenderer::CopiaPixel(std::size_t destinazione, std::size_t sorgente, std::size_t numero) {
  const auto& tavolozza = reader_->ImageLut();
  const int trasparente = reader_->IsTransparent() ? reader_->TransparentIndex() : -1;
  for (std::size_t i = 0; i < numero; ++i) {
    const std::uint8_t indice = reader_->ImageBits()[sorgente + i];
    if (indice == trasparente) continue;
    for (std::size_t colore = 0; colore < BytePixel; ++colore)
      tela_.Byte[destinazione + i * BytePixel + 2 - colore] = tavolozza[indice * BytePixel + colore];
  }
}

}  // namespace tandemize
