#include "Album.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "presentation/windows/Ridisegno.h"

namespace tandemize::screenshots {

namespace {

constexpr int TitleHeight = 26, Border = 1, Margin = 9;
const QColor TitleColour{225, 229, 233}, TitleText{40, 48, 56}, BorderColour{140, 150, 158};

bool hasTitleBar(const QWidget& window) {
  const Qt::WindowType kind = window.windowType();
  return (kind == Qt::Window || kind == Qt::Dialog) &&
         !window.windowFlags().testFlag(Qt::FramelessWindowHint);
}

QPixmap grabWithMenus(QWidget& window) {
  QPixmap picture = window.grab();
  QPainter painter(&picture);
  const QWidgetList all = QApplication::topLevelWidgets();
  for (QWidget* widget : all)
    if (auto* menu = qobject_cast<QMenu*>(widget); menu != nullptr && menu->isVisible())
      painter.drawPixmap(window.mapFromGlobal(menu->pos()), menu->grab());
  return picture;
}

QPixmap framed(const QPixmap& content, const QString& title) {
  QPixmap picture(content.width() + 2 * Border, content.height() + TitleHeight + Border);
  picture.fill(BorderColour);
  QPainter painter(&picture);
  const QRect bar(Border, Border, content.width(), TitleHeight - Border);
  painter.fillRect(bar, TitleColour);
  painter.setPen(TitleText);
  QFont font = QApplication::font();
  font.setBold(true);
  painter.setFont(font);
  const QRect text = bar.adjusted(Margin, 0, -3 * Margin, 0);
  painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft,
                   painter.fontMetrics().elidedText(title, Qt::ElideRight, text.width()));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(TitleText, 1.4));
  const QRectF cross(bar.right() - 17, bar.center().y() - 3.5, 8, 8);
  painter.drawLine(cross.topLeft(), cross.bottomRight());
  painter.drawLine(cross.topRight(), cross.bottomLeft());
  painter.drawPixmap(Border, TitleHeight, content);
  return picture;
}

}  // namespace

void giveUp(const std::string& why) {
  std::fprintf(stderr, "tandemize-screenshots: %s\n", why.c_str());
  std::_Exit(1);
}

void settle() {
  QElapsedTimer time;
  time.start();
  while (time.elapsed() < 3 * Ridisegno::Intervallo) {
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents,
                                    Ridisegno::Intervallo);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

Album::Album(std::filesystem::path folder) : folder_(std::move(folder)) {}

void Album::keep(const std::string& name, QWidget& window) {
  if (!names_.insert(name).second) giveUp("two pictures are named " + name);
  settle();
  if (!window.isVisible()) giveUp("the window of " + name + " does not show");
  QPixmap picture = grabWithMenus(window);
  if (hasTitleBar(window)) picture = framed(picture, window.windowTitle());
  const std::filesystem::path file = folder_ / (name + ".png");
  QImage image = picture.toImage();
  // Only a window of a shape of its own has transparent corners.
  if (hasTitleBar(window)) image = image.convertToFormat(QImage::Format_RGB888);
  if (!image.save(QString::fromStdString(file.string()), "PNG", 0)) giveUp("cannot write " + file.string());
}

}  // namespace tandemize::screenshots
