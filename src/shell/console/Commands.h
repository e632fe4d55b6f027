// The commands of the console program, the unattended side of the program.
#pragma once

#include <string>
#include <vector>

namespace tandemize {

// Runs the program with the words behind its name, and gives its exit status: 0 done, 1 stopped, 2 an error
// was passed over, 3 a file failed, 4 refused before it started, 64 the words are wrong.
int runConsole(const std::vector<std::string>& words);

}  // namespace tandemize
