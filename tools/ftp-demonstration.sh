#!/usr/bin/env bash
# The demonstration over FTP: ftp-demonstration.sh PROGRAM FOLDER, both relative to the working folder.
#
# Starts a small FTP server of this machine's own on a free loopback port, backs a tree up to it by one profile and
# restores it from there by a second one. FOLDER gets a program folder (home), the tree (documents, photos), the
# server's folder (server) and the restored tree (restored); it is made anew each time.
set -euo pipefail

program=$1
demo=$2
home=$demo/home
python=/usr/bin/python3
server_process=

bold='' plain=''
if [[ -t 1 ]]; then bold=$'\e[1m' plain=$'\e[0m'; fi
say() { printf '\n%s# %s%s\n' "$bold" "$*" "$plain"; }
tell_command() { printf '\n%s$ tandemize-run --folder %s %s%s\n' "$bold" "$home" "$*" "$plain"; }
crlf() { sed 's/$/\r/'; }

end_server() { if [[ -n $server_process ]]; then kill "$server_process" 2>/dev/null || true; fi; }
trap end_server EXIT

# --- the server

# A real account with a password; the port that it found is the first line that it writes.
start_pyftpdlib() {
  "$python" - "$demo/server" >"$demo/port" 2>"$demo/server.log" <<'END' &
import logging, sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer
logging.basicConfig(level=logging.INFO, format="%(message)s")
accounts = DummyAuthorizer()
accounts.add_user("anna", "a secret", sys.argv[1], perm="elradfmwMT")
FTPHandler.authorizer = accounts
server = FTPServer(("127.0.0.1", 0), FTPHandler)
print(server.address[1], flush=True)
server.serve_forever()
END
  server_process=$!
  user=anna password='a secret' top=/ below=
}

# As an ordinary user vsftpd takes anonymous users alone, must not let them write into their top folder, and shows them
# this machine's own paths.
start_vsftpd() {
  local port=$((20000 + RANDOM % 20000))
  while (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; do port=$((port + 1)); done
  mkdir -p "$demo/empty" "$demo/server/anna"
  chmod a-w "$demo/server"
  printf '%s\n' listen=YES "listen_port=$port" listen_address=127.0.0.1 background=NO run_as_launching_user=YES \
    seccomp_sandbox=NO anonymous_enable=YES no_anon_password=YES anon_upload_enable=YES anon_mkdir_write_enable=YES \
    anon_other_write_enable=YES anon_umask=022 write_enable=YES "ftp_username=$(id -un)" \
    "anon_root=$PWD/$demo/server" "secure_chroot_dir=$PWD/$demo/empty" >"$demo/vsftpd.conf"
  "$vsftpd" "$PWD/$demo/vsftpd.conf" >"$demo/server.log" 2>&1 &
  server_process=$!
  echo "$port" >"$demo/port"
  user=anonymous password=anna@example.org top=$PWD/$demo/server/anna/ below=/anna
}

start_server() {
  mkdir -p "$demo/server"
  vsftpd=$(command -v vsftpd || command -v /usr/sbin/vsftpd || true)
  if "$python" -c 'import pyftpdlib' 2>/dev/null; then
    kind="pyftpdlib $("$python" -c 'import pyftpdlib; print(pyftpdlib.__ver__)')"
    start_pyftpdlib
  elif [[ -n $vsftpd ]]; then
    kind=vsftpd
    start_vsftpd
  else
    say "No small FTP server is installed here. One of these brings one:"
    printf '%s\n' "  apt-get install python3-pyftpdlib" "  apt-get install vsftpd"
    exit 0
  fi
  await_server
}

# Until it answers; the process ending instead is a failure.
await_server() {
  until [[ -s $demo/port ]] && (exec 3<>"/dev/tcp/127.0.0.1/$(cat "$demo/port")") 2>/dev/null; do
    if ! kill -0 "$server_process" 2>/dev/null; then
      cat "$demo/server.log" >&2
      return 1
    fi
    sleep 0.1
  done
  port=$(cat "$demo/port")
  say "$kind listens on 127.0.0.1:$port; its folder is $demo/server"
}

# --- the tree and the two profiles

put() {
  local name=$demo/$1 moment=$2
  mkdir -p "${name%/*}"
  cat >"$name"
  touch -d "$moment" "$name"
}

make_tree() {
  echo "Rent, light, water: 1,240" | put documents/household/budget.txt "2024-01-05 10:00:00"
  echo "Dear Anna, ..." | put documents/letters/anna.txt "2024-02-11 18:30:00"
  echo "Names with blanks, \"quotes\" and è, ü travel too" | put 'documents/letters/a "quoted" è.txt' "2024-02-12 09:15:00"
  head -c 300000 /dev/zero | tr '\0' 'p' | put "photos/2024 – Città/piazza.jpg" "2024-03-09 08:05:00"
  head -c 200000 /dev/zero | tr '\0' 'q' | put "photos/2024 – Città/fontana.jpg" "2024-03-09 08:07:00"
  mkdir -p "$demo/restored/documents" "$demo/restored/photos" \
    "$demo/server$below/documents" "$demo/server$below/photos"
}

# One object of the diagram: number, 0 source or 1 destination, description, path, kind of path, link.
object() {
  printf '%s\n' "$1BackIndice = $1" "$1BackTipoOggetto = 0" "$1BackTipoTrasferimento = $2" "$1BackLinkTo0 = $6" \
    "$1BackDescrizione = $3" "$1BackPath = $4" "$1Files0 = " "$1BackTop = 600" "$1BackLeft = $(($2 * 4200 + 600))" \
    "$1BackHeight = 735" "$1BackWidth = 735" "$1BackFigura = $5" "$1BackFtpServerDescription = $(server_of "$5")"
}
server_of() { if [[ $1 == 2 ]]; then echo "Web space"; fi; }

settings_of_a_synchronisation() {
  printf '%s\n' "Backup_Path_0 =" "Backup_Path_1 =" "Backup_FTP_0 =" "Backup_FTP_1 =" "FixFileOption = 2" \
    "FixScanAfterFix = 0" "FtpEnabled = 0" "CompareMethod = 0" "TandemMode = 1" "SourceNotChange = 0" "EraseFile = 0" \
    "AutoTandemize = 0"
}

write_profiles() {
  {
    settings_of_a_synchronisation
    object 1 0 "Documents" 'D:\documents' 0 "Documents on the server"
    object 2 0 "Photos" 'D:\photos' 0 "Photos on the server"
    object 3 1 "Documents on the server" "${top}documents" 2 "Documents"
    object 4 1 "Photos on the server" "${top}photos" 2 "Photos"
  } | crlf >"$home/Up.cfg"
  {
    settings_of_a_synchronisation
    object 1 0 "Documents on the server" "${top}documents" 2 "Documents"
    object 2 0 "Photos on the server" "${top}photos" 2 "Photos"
    object 3 1 "Documents" 'D:\restored\documents' 0 "Documents on the server"
    object 4 1 "Photos" 'D:\restored\photos' 0 "Photos on the server"
  } | crlf >"$home/Down.cfg"
}

make_program_folder() {
  "$program" --folder "$home" init
  sed -i 's/^Language = .*\r$/Language = 1\r/' "$home/GlobalSetting.dat"
  printf '%s\n' "Ftp_Description0 = Web space" "Ftp_Server_Name0 = 127.0.0.1:$port" "Ftp_User0 = $user" \
    "Ftp_Password0 = $password" "Ftp_PassiveMode0 = 1" | crlf >>"$home/GlobalSetting.dat"
  echo "D: = fixed $(cd "$demo" && pwd)" >"$home/Drives.dat"
  write_profiles
}

# --- the runs

whole_log() { find "$home" -name 'LogFile*.txt' -print0 | sort -zV | xargs -0r cat | tr -d '\r'; }

run_profile() {
  local before
  tell_command --profile "'$home/$1.cfg'" backup --preview
  "$program" --folder "$home" --profile "$home/$1.cfg" backup --preview | sed 's/\t/  ->  /g'
  before=$(whole_log | wc -l)
  tell_command --profile "'$home/$1.cfg'" backup
  "$program" --folder "$home" --profile "$home/$1.cfg" backup
  say "What it wrote into the log"
  whole_log | tail -n +"$((before + 1))"
}

# Owner and permissions are the server's own affair; name, size and date are what the program moves.
list() { (cd "$demo/$1" && find documents photos -type f -printf '%TY-%Tm-%Td %TH:%TM  %9s  %p\n' | sort -k4); }

if [[ -d $demo/server ]]; then chmod -R u+w "$demo/server"; fi
rm -rf "$demo"
mkdir -p "$demo"
start_server
make_tree
make_program_folder
say "The tree, to be backed up to ftp://127.0.0.1:$port$top"
list .
run_profile Up
say "What lies on the server now; a server dates what it is given by its own clock"
list "server$below"
run_profile Down
say "What came back, with the dates that the server tells"
list restored
diff -r "$demo/documents" "$demo/restored/documents"
diff -r "$demo/photos" "$demo/restored/photos"
say "Every file came back as it was."
