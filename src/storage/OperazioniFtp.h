// The FTP branch of the operations on paths, on the session that is open. Each contract is that of the
// operation of the same name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tandemize {

// With `quiet` and no session the answer is yes, without any contact. A failed question is a no.
[[nodiscard]] bool EsisteCartellaFtp(std::string_view path, bool quiet);
// Counts the entries of the session's current folder by the line ends of its listing, of which only the first
// 1,048,576 bytes are read, and then makes `path` the current folder. -253 if a step was given up.
[[nodiscard]] std::int32_t NumeroFileCartellaFtp(std::string_view path);

// These write nothing into the log but the reports of failures.
[[nodiscard]] bool EliminaFileFtp(std::string_view path);
// False, and reported as failed, even when the server has removed the folder.
[[nodiscard]] bool EliminaCartellaFtp(std::string_view path);
[[nodiscard]] bool CreaDirectoryFtp(std::string_view path);

// Whether the session's current folder is `path`: after the start of a search of that folder, whether what it
// finds lies there. Who walks a tree must ask, or a folder that cannot be entered is taken for the one that
// holds it, without end. No command goes out for a full path.
[[nodiscard]] bool CartellaFtpCorrente(std::string_view path);

// Last write date of one file as text, as the server tells it, else as its folder's listing does; empty if
// neither does. The current folder stays as it was.
[[nodiscard]] std::string DataFileFtp(std::string_view path);

}  // namespace tandemize
