#include "presentation/OrdineLista.h"

#include <cstdlib>
#include <string>

#include "storage/File_System.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

template <class Valore>
int Segno(const Valore& uno, const Valore& altro) {
  return uno < altro ? -1 : altro < uno ? 1 : 0;
}

}  // namespace

TipoColonna TipoDiColonna(std::string_view tag) {
  if (tag == "numeric") return TipoColonna::Numero;
  return tag == "date" ? TipoColonna::Data : TipoColonna::Testo;
}

Verso VersoSuccessivo(Verso verso) {
  return verso == Verso::Su ? Verso::Giù : Verso::Su;
}

double Val(std::string_view testo) {
  std::string cifre;
  bool punto = false;
  for (const char segno : testo) {
    if (segno == ' ' || segno == '\t') continue;
    const bool inizio = cifre.empty() && (segno == '-' || segno == '+');
    const bool primoPunto = segno == '.' && !punto;
    if (!inizio && !primoPunto && (segno < '0' || segno > '9')) break;
    punto = punto || primoPunto;
    cifre += segno;
  }
  return std::strtod(cifre.c_str(), nullptr);
}

int ConfrontaCelle(TipoColonna tipo, std::string_view una, std::string_view altra) {
  switch (tipo) {
    case TipoColonna::Numero:
      return Segno(Val(una), Val(altra));
    case TipoColonna::Data:
      return Segno(SecondiDaTesto(una), SecondiDaTesto(altra));
    case TipoColonna::Testo:
      break;
  }
  return Segno(Maiuscolo(una), Maiuscolo(altra));
}

}  // namespace tandemize
