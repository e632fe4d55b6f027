#include "presentation/windows/Icone.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <array>
#include <cmath>

#include "presentation/windows/ModuloGrafica.h"

namespace tandemize {

namespace {

constexpr qreal Lato = 32;  // all pictures are drawn on a square of this side
constexpr qreal OpacitàSpenta = 0.38;
constexpr std::array<int, 8> Misure{16, 22, 24, 32, 48, 64, 128, 256};

const QColor ColoreAmbra{247, 181, 56};
const QColor ColoreAzzurro{22, 116, 156};

using Disegno = void (*)(QPainter& pittore);

// A picture without pixels: painted anew at the size that is asked for.
class MotoreIcona : public QIconEngine {
 public:
  explicit MotoreIcona(Disegno disegno) : disegno_(disegno) {}

  void paint(QPainter* pittore, const QRect& rettangolo, QIcon::Mode modo, QIcon::State) override {
    const qreal lato = std::min(rettangolo.width(), rettangolo.height());
    pittore->save();
    pittore->setRenderHint(QPainter::Antialiasing);
    if (modo == QIcon::Disabled) pittore->setOpacity(pittore->opacity() * OpacitàSpenta);
    pittore->translate(rettangolo.x() + (rettangolo.width() - lato) / 2,
                       rettangolo.y() + (rettangolo.height() - lato) / 2);
    pittore->scale(lato / Lato, lato / Lato);
    disegno_(*pittore);
    pittore->restore();
  }

  QPixmap pixmap(const QSize& misura, QIcon::Mode modo, QIcon::State stato) override {
    QPixmap immagine(misura);
    immagine.fill(Qt::transparent);
    QPainter pittore(&immagine);
    paint(&pittore, QRect(QPoint(0, 0), misura), modo, stato);
    return immagine;
  }

  // Notification areas ask which sizes there are.
  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
    QList<QSize> misure;
    for (const int misura : Misure) misure.append({misura, misura});
    return misure;
  }

  bool isNull() override { return false; }
  QIconEngine* clone() const override { return new MotoreIcona(disegno_); }

 private:
  Disegno disegno_;
};

QIcon Icona(Disegno disegno) {
  return QIcon(new MotoreIcona(disegno));
}

QPen Penna(const QColor& colore, qreal spessore) {
  return {colore, spessore, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void Riempi(QPainter& pittore, const QColor& colore) {
  pittore.setPen(Qt::NoPen);
  pittore.setBrush(colore);
}

void Traccia(QPainter& pittore, const QColor& colore, qreal spessore) {
  pittore.setPen(Penna(colore, spessore));
  pittore.setBrush(Qt::NoBrush);
}

QPointF Polare(QPointF centro, qreal raggio, qreal gradi) {
  const qreal radianti = gradi * 3.14159265358979 / 180;
  return centro + QPointF(std::cos(radianti), -std::sin(radianti)) * raggio;
}

// Part of a ring with an arrow head at its end; angles run against the clock, `ampiezza` may be negative.
struct Giro {
  QPointF centro;
  qreal raggio, spessore, inizio, ampiezza, punta;
};

void DisegnaGiro(QPainter& pittore, const Giro& giro, const QColor& colore) {
  pittore.setPen(QPen(colore, giro.spessore, Qt::SolidLine, Qt::FlatCap));
  pittore.setBrush(Qt::NoBrush);
  const QRectF cerchio(giro.centro - QPointF(giro.raggio, giro.raggio), QSizeF(2, 2) * giro.raggio);
  QPainterPath arco;
  arco.arcMoveTo(cerchio, giro.inizio);
  arco.arcTo(cerchio, giro.inizio, giro.ampiezza);
  pittore.drawPath(arco);

  const qreal fine = giro.inizio + giro.ampiezza;
  const QPointF base = Polare(giro.centro, giro.raggio, fine);
  const QPointF avanti = Polare({0, 0}, giro.punta, fine + (giro.ampiezza < 0 ? -90 : 90));
  const QPointF lato = Polare({0, 0}, giro.punta, fine);
  // The base lies a little inside the ring, so that no seam shows.
  const QPointF dentro = base - avanti * 0.04;
  Riempi(pittore, colore);
  pittore.drawPolygon(QPolygonF{{dentro + lato, base + avanti * 1.15, dentro - lato}});
}

void DisegnaGiri(QPainter& pittore, QPointF centro, qreal raggio, qreal spessore, qreal inizio,
                 const QColor& primo, const QColor& secondo) {
  const qreal punta = spessore * 1.25;
  DisegnaGiro(pittore, {centro, raggio, spessore, inizio, -118, punta}, primo);
  DisegnaGiro(pittore, {centro, raggio, spessore, inizio - 180, -118, punta}, secondo);
}

void DisegnaTessera(QPainter& pittore, const QColor& alto, const QColor& basso) {
  QLinearGradient sfumatura(0, 1, 0, 31);
  sfumatura.setColorAt(0, alto);
  sfumatura.setColorAt(1, basso);
  pittore.setPen(Qt::NoPen);
  pittore.setBrush(sfumatura);
  pittore.drawRoundedRect(QRectF(1, 1, 30, 30), 7, 7);
}

void Programma(QPainter& pittore) {
  DisegnaTessera(pittore, {17, 104, 140}, ColoreBase);
  DisegnaGiri(pittore, {16, 16}, 9, 4, 203, ColoreBianco, ColoreIntestazione);
  Riempi(pittore, ColoreArancio);
  pittore.drawEllipse(QPointF(16, 16), 2.7, 2.7);
}

void Animazione(QPainter& pittore) {
  DisegnaTessera(pittore, {255, 132, 88}, {214, 62, 28});
  DisegnaGiri(pittore, {16, 16}, 9, 4, 113, ColoreBianco, ColoreBianco);
  Riempi(pittore, ColoreBase);
  pittore.drawEllipse(QPointF(16, 16), 2.7, 2.7);
}

void Sincronizza(QPainter& pittore) {
  DisegnaGiri(pittore, {16, 16}, 10.4, 4.2, 165, ColoreAzzurro, ColoreArancio);
}

// An arrow that goes down into a drive.
void Backup(QPainter& pittore) {
  Riempi(pittore, ColoreAzzurro);
  pittore.drawRoundedRect(QRectF(3, 20, 26, 9), 2.5, 2.5);
  Riempi(pittore, ColoreBianco);
  pittore.drawRoundedRect(QRectF(6.5, 23.5, 12, 2), 1, 1);
  pittore.drawEllipse(QPointF(24.5, 24.5), 1.6, 1.6);
  Riempi(pittore, ColoreArancio);
  pittore.drawPolygon(
      QPolygonF{{{13.5, 3}, {18.5, 3}, {18.5, 9.5}, {23.5, 9.5}, {16, 17.8}, {8.5, 9.5}, {13.5, 9.5}}});
}

// A toothed wheel.
void Impostazioni(QPainter& pittore) {
  constexpr int Denti = 8;
  QPainterPath ruota;
  ruota.addEllipse(QPointF(16, 16), 9.6, 9.6);
  for (int dente = 0; dente < Denti; ++dente) {
    QTransform giro;
    giro.translate(16, 16);
    giro.rotate(360.0 / Denti * dente);
    QPainterPath forma;
    forma.addPolygon(QPolygonF{{{-3.2, -8.5}, {-2.2, -13.6}, {2.2, -13.6}, {3.2, -8.5}, {-3.2, -8.5}}});
    ruota = ruota.united(giro.map(forma));
  }
  QPainterPath foro;
  foro.addEllipse(QPointF(16, 16), 4.4, 4.4);
  Riempi(pittore, ColoreAzzurro);
  pittore.drawPath(ruota.subtracted(foro));
}

// A sheet with a folded corner and lines on it.
void FileLog(QPainter& pittore) {
  const QPolygonF foglio{{{6.5, 3}, {19.5, 3}, {26, 9.5}, {26, 29}, {6.5, 29}}};
  pittore.setPen(Penna(ColoreAzzurro, 2.2));
  pittore.setBrush(ColoreBianco);
  pittore.drawPolygon(foglio);
  Riempi(pittore, ColoreAzzurro);
  pittore.drawPolygon(QPolygonF{{{19, 3}, {26, 10}, {19, 10}}});
  Traccia(pittore, ColoreArancio, 2.2);
  pittore.drawLine(QPointF(11, 14.5), QPointF(16, 14.5));
  Traccia(pittore, ColoreAzzurro, 2.2);
  pittore.drawLine(QPointF(11, 19.2), QPointF(21.5, 19.2));
  pittore.drawLine(QPointF(11, 24), QPointF(21.5, 24));
}

// A window with a list in it.
void FinestraLog(QPainter& pittore) {
  QPainterPath cornice;
  cornice.addRoundedRect(QRectF(2.6, 4.6, 26.8, 22.8), 2.5, 2.5);
  pittore.setPen(Penna(ColoreAzzurro, 2.2));
  pittore.setBrush(ColoreBianco);
  pittore.drawPath(cornice);
  Riempi(pittore, ColoreAzzurro);
  pittore.drawRect(QRectF(2.6, 4.6, 26.8, 5.4));
  for (int riga = 0; riga < 3; ++riga) {
    const qreal y = 14 + riga * 4.7;
    Riempi(pittore, riga == 0 ? ColoreArancio : ColoreAzzurro);
    pittore.drawEllipse(QPointF(8, y), 1.5, 1.5);
    Traccia(pittore, ColoreAzzurro, 2);
    pittore.drawLine(QPointF(12.5, y), QPointF(riga == 1 ? 21.0 : 24.5, y));
  }
}

// A door with an arrow that goes out.
void Uscita(QPainter& pittore) {
  Traccia(pittore, ColoreAzzurro, 2.6);
  pittore.drawPolyline(QPolygonF{{{17, 9}, {17, 4}, {5, 4}, {5, 28}, {17, 28}, {17, 23}}});
  Riempi(pittore, ColoreArancio);
  pittore.drawPolygon(
      QPolygonF{{{11, 13.6}, {20.5, 13.6}, {20.5, 8.8}, {29.5, 16}, {20.5, 23.2}, {20.5, 18.4}, {11, 18.4}}});
}

// The signs of a notice's pictures, for both forms.
void SegnoInformazione(QPainter& pittore, const QColor& colore) {
  Riempi(pittore, colore);
  pittore.drawEllipse(QPointF(16, 9.6), 2.2, 2.2);
  Traccia(pittore, colore, 3.8);
  pittore.drawLine(QPointF(16, 15.6), QPointF(16, 22.6));
}

void SegnoAttenzione(QPainter& pittore, const QColor& colore) {
  Traccia(pittore, colore, 3.4);
  pittore.drawLine(QPointF(16, 12.4), QPointF(16, 18.6));
  Riempi(pittore, colore);
  pittore.drawEllipse(QPointF(16, 23.7), 2, 2);
}

void SegnoRiprova(QPainter& pittore, const QColor& colore) {
  DisegnaGiro(pittore, {{16, 16.4}, 6.6, 3, 35, -275, 3.9}, colore);
}

void Cerchio(QPainter& pittore, const QColor& colore) {
  Riempi(pittore, colore);
  pittore.drawEllipse(QPointF(16, 16), 14, 14);
}

void CerchioVuoto(QPainter& pittore) {
  Traccia(pittore, ColoreBase, 2.4);
  pittore.drawEllipse(QPointF(16, 16), 13, 13);
}

void Triangolo(QPainter& pittore) {
  pittore.drawPolygon(QPolygonF{{{16, 4.2}, {29, 27.6}, {3, 27.6}}});
}

void InformazionePiena(QPainter& pittore) {
  Cerchio(pittore, ColoreAzzurro);
  SegnoInformazione(pittore, ColoreBianco);
}

void InformazioneLinee(QPainter& pittore) {
  CerchioVuoto(pittore);
  SegnoInformazione(pittore, ColoreBase);
}

void AttenzionePiena(QPainter& pittore) {
  pittore.setPen(Penna(ColoreAmbra, 4));
  pittore.setBrush(ColoreAmbra);
  Triangolo(pittore);
  SegnoAttenzione(pittore, ColoreBase);
}

void AttenzioneLinee(QPainter& pittore) {
  Traccia(pittore, ColoreBase, 2.4);
  Triangolo(pittore);
  SegnoAttenzione(pittore, ColoreBase);
}

void RiprovaPiena(QPainter& pittore) {
  Cerchio(pittore, ColoreArancio);
  SegnoRiprova(pittore, ColoreBianco);
}

void RiprovaLinee(QPainter& pittore) {
  CerchioVuoto(pittore);
  SegnoRiprova(pittore, ColoreBase);
}

void DisegnaCroce(QPainter& pittore, const QColor& colore) {
  Traccia(pittore, colore, 3.4);
  pittore.drawLine(QPointF(10.5, 10.5), QPointF(21.5, 21.5));
  pittore.drawLine(QPointF(21.5, 10.5), QPointF(10.5, 21.5));
}

void DomandaPiena(QPainter& pittore) {
  Cerchio(pittore, ColoreAzzurro);
  Traccia(pittore, ColoreBianco, 3.4);
  QPainterPath gancio;
  gancio.arcMoveTo(QRectF(11.3, 7.4, 9.4, 9.4), 165);
  gancio.arcTo(QRectF(11.3, 7.4, 9.4, 9.4), 165, -215);
  gancio.quadTo(QPointF(16, 16.6), QPointF(16, 19.2));
  pittore.drawPath(gancio);
  Riempi(pittore, ColoreBianco);
  pittore.drawEllipse(QPointF(16, 24.2), 2.1, 2.1);
}

void CriticaPiena(QPainter& pittore) {
  Cerchio(pittore, ColoreArancio);
  Traccia(pittore, ColoreBianco, 3.8);
  pittore.drawLine(QPointF(11, 11), QPointF(21, 21));
  pittore.drawLine(QPointF(21, 11), QPointF(11, 21));
}

void ChiusuraSu(QPainter& pittore) {
  pittore.setPen(QPen(ColoreBase, 1.6));
  pittore.setBrush(ColoreSfondoChiaro);
  pittore.drawRoundedRect(QRectF(1.5, 1.5, 29, 29), 7, 7);
  DisegnaCroce(pittore, ColoreBase);
}

void ChiusuraGiù(QPainter& pittore) {
  Riempi(pittore, ColoreArancio);
  pittore.drawRoundedRect(QRectF(0.7, 0.7, 30.6, 30.6), 7, 7);
  DisegnaCroce(pittore, ColoreBianco);
}

template <std::size_t N>
QIcon IconaDi(const std::array<Disegno, N>& disegni, int indice) {
  if (indice < 0 || indice >= static_cast<int>(N)) return {};
  return Icona(disegni[static_cast<std::size_t>(indice)]);
}

}  // namespace

QIcon IconaProgramma() {
  return Icona(Programma);
}

QIcon IconaAnimazione() {
  return Icona(Animazione);
}

QIcon IconaBarra(int bottone) {
  static constexpr std::array<Disegno, 6> Disegni{Sincronizza, Backup,      Impostazioni,
                                                  FileLog,     FinestraLog, Uscita};
  return IconaDi(Disegni, bottone);
}

QIcon IconaAvviso(int icona) {
  static constexpr std::array<Disegno, 6> Disegni{InformazionePiena, InformazioneLinee, AttenzionePiena,
                                                  AttenzioneLinee,   RiprovaPiena,      RiprovaLinee};
  return IconaDi(Disegni, icona);
}

QIcon IconaDomanda() {
  return Icona(DomandaPiena);
}

QIcon IconaCritica() {
  return Icona(CriticaPiena);
}

QIcon IconaChiusura(bool premuta) {
  return Icona(premuta ? ChiusuraGiù : ChiusuraSu);
}

}  // namespace tandemize
