#include <string>
#include <vector>

#include "shell/console/Commands.h"

int main(int argc, char** argv) {
  return tandemize::runConsole(std::vector<std::string>(argv + 1, argv + argc));
}
