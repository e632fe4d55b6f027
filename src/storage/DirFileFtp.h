// The part of DirFile that lists a folder on the FTP session.
#pragma once

#include <string_view>

#include "platform/ftp.h"
#include "storage/File_System.h"

namespace tandemize {

// Makes the path, without every "*.*" in it, the session's current folder and lists that; a path that cannot
// be made current goes unnoticed, and the folder listed is the one that is. 18 for an empty folder. While a
// search is open no other can be: that gives 12110.
[[nodiscard]] platform::ErrorCode ApriRicercaFtp(HandleRicerca& handle, platform::FtpEntry& trovato,
                                                 std::string_view path);
// 18 at the end, and without a search. One that another search has taken the place of, after a new
// connect, fails: the rest of its folder is not known.
[[nodiscard]] platform::ErrorCode ProseguiRicercaFtp(HandleRicerca handle, platform::FtpEntry& trovato);
void ChiudiRicercaFtp(HandleRicerca handle);  // of another kind of search: nothing

}  // namespace tandemize
