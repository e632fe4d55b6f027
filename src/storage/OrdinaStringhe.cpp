#include <algorithm>

#include "storage/File_System.h"

namespace tandemize {

void OrdinaStringhe(std::vector<std::string>& stringhe, std::int32_t inferiore, std::int32_t superiore) {
  const auto last = static_cast<std::int64_t>(stringhe.size()) - 1;
  const std::int64_t from = std::max<std::int64_t>(inferiore, 0),
                     to = std::min<std::int64_t>(superiore, last);
  if (from < to) std::sort(stringhe.begin() + from, stringhe.begin() + to + 1);
}

}  // namespace tandemize
