#include "shell/windows/Avvio.h"

int main(int argc, char** argv) {
  return tandemize::AvviaDesktop(argc, argv);
}
