// The least that a program of the toolkit can be: an empty main window. bench/startup.py starts it beside the
// desktop program.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  window.setWindowTitle(QStringLiteral("Empty window"));
  window.resize(960, 640);
  window.show();
  return QApplication::exec();
}
