# shellcheck shell=bash
# Sets the machine up for `run`, `test` and `.ci/run`, which source this file; bash only.
#
# Nothing is asked and nothing is installed unless a package is missing. What is going to be installed, and what for,
# is said before it happens.

# Debian packages and what each is for. Everything that a machine with only git on it lacks is named here.
declare -A package_use=(
  [g++]="compiles the program"
  [cmake]="configures the build"
  [ninja-build]="carries the build out"
  [pkg-config]="finds the libraries"
  [libdeflate-dev]="library: CRC-32 of files"
  [libutf8proc-dev]="library: upper case of file names"
  [libsystemd-dev]="library: asks the login service over D-Bus"
  [qt6-base-dev]="library: the windows"
  [libgl-dev]="headers that the windows' library asks for"
  [qt6-qpa-plugins]="the windows' library on a screen, and without one"
  [fonts-liberation]="the font of the windows"
  [libgtest-dev]="the tests' framework"
  [tzdata]="the tests' time zones"
  [dbus-daemon]="the tests' private message bus"
  [python3-aiosmtpd]="the tests' mail server"
  [python3-pyftpdlib]="the tests' FTP server"
  [vsftpd]="the tests' second FTP server"
  [python3]="the tools that draw and check"
  [clang]="second compiler, for its own warnings"
  [clang-format]="checks the form of the sources"
  [clang-tidy]="finds faults in the sources"
)

build_packages=(g++ cmake ninja-build pkg-config libdeflate-dev libutf8proc-dev libsystemd-dev)
desktop_packages=("${build_packages[@]}" qt6-base-dev libgl-dev qt6-qpa-plugins fonts-liberation)
test_packages=("${desktop_packages[@]}" libgtest-dev python3 tzdata dbus-daemon python3-aiosmtpd python3-pyftpdlib)
# shellcheck disable=SC2034
ci_packages=("${test_packages[@]}" vsftpd clang clang-format clang-tidy)

say() { printf '== %s\n' "$*" >&2; }
stop() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

is_installed() { [[ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]; }

# Prints the words that give apt-get its rights: none for root, sudo for others. Fails if there is no way without a
# question and no terminal to ask it on.
root_words() {
  if [[ $EUID -eq 0 ]]; then return 0; fi
  command -v sudo >/dev/null || return 1
  if sudo -n true 2>/dev/null; then
    echo "sudo -n"
  elif [[ -t 0 && -t 2 ]]; then
    echo "sudo"
  else
    return 1
  fi
}

# Installs those of the given packages that are missing.
need_packages() {
  local package words
  local -a missing=() rights=()
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "No Debian package tools here; these packages, or what they are called here, must be there: $*"
    return 0
  fi
  for package in "$@"; do is_installed "$package" || missing+=("$package"); done
  if [[ ${#missing[@]} -eq 0 ]]; then return 0; fi

  say "Missing Debian packages:"
  for package in "${missing[@]}"; do printf '     %-16s %s\n' "$package" "${package_use[$package]}" >&2; done
  words=$(root_words) || stop "no right to install them here. Please have them installed, then start again:
  apt-get install ${missing[*]}"
  read -ra rights <<<"$words"
  say "Installing them with: ${words:+$words }apt-get install ${missing[*]}"
  local -a apt=("${rights[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o DPkg::Lock::Timeout=300)
  "${apt[@]}" update >&2 </dev/null || say "The package lists could not all be renewed; going on with those at hand."
  "${apt[@]}" install --no-install-recommends "${missing[@]}" >&2 </dev/null ||
    stop "the packages could not be installed: ${missing[*]}"
}

# Configures and builds: build PRESET FOLDER TARGET [cmake options]. The folder is relative to the top folder.
build() {
  local preset=$1 folder=$2 target=$3
  shift 3
  local -a options=("$@")
  if command -v ccache >/dev/null; then options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
  say "Building $target in $folder"
  cmake --preset "$preset" -B "$folder" "${options[@]}" >&2 || stop "the build could not be configured"
  cmake --build "$folder" --target "$target" --parallel "$(nproc)" >&2 || stop "the build failed"
}
