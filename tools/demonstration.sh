#!/usr/bin/env bash
# The demonstration: demonstration.sh PROGRAM FOLDER [fresh] [prepare], both relative to the working folder.
# `prepare` makes the folder, or changes its sources where they were backed up, and runs nothing.
#
# FOLDER gets a program folder (home), three sources (documents, photos, desk) and two destinations (stick, nas). The
# first call backs everything up; a later one changes a file, adds one and backs up what is new. Then two trees that
# have gone apart (office, laptop) are synchronised by a second profile.
#
# The program folder's Drives.dat gives the demonstration drives of its own. So its paths are short and the same
# wherever the checkout lies, and no dot of the checkout's path is part of the profile's: the name of its companion
# file is cut at the first one, which could put that file outside of FOLDER.
set -euo pipefail

program=$1
demo=$2
shift 2
home=$demo/home

fresh=no prepare=no
for word in "$@"; do
  case $word in
    fresh) fresh=yes ;;
    prepare) prepare=yes ;;
  esac
done

bold='' plain=''
if [[ -t 1 ]]; then bold=$'\e[1m' plain=$'\e[0m'; fi
say() { printf '\n%s# %s%s\n' "$bold" "$*" "$plain"; }
tell_command() { printf '\n%s$ tandemize-run --folder %s %s%s\n' "$bold" "$home" "$*" "$plain"; }
crlf() { sed 's/$/\r/'; }

# Writes a file with a date of its own, so that a copy's date can be seen to be the source's.
put() {
  local name=$demo/$1 moment=$2
  mkdir -p "${name%/*}"
  cat >"$name"
  touch -d "$moment" "$name"
}

make_sources() {
  echo "Rent, light, water: 1,240" | put documents/household/budget.txt "2024-01-05 10:00:00"
  echo "Dear Anna, ..." | put documents/letters/anna.txt "2024-02-11 18:30:00"
  echo "scratch" | put documents/letters/anna.tmp "2024-02-11 18:29:00"
  head -c 300000 /dev/zero | tr '\0' 'p' | put "photos/2024 – Città/piazza.jpg" "2024-03-09 08:05:00"
  head -c 200000 /dev/zero | tr '\0' 'q' | put "photos/2024 – Città/fontana.jpg" "2024-03-09 08:07:00"
  echo "milk, bread" | put desk/shopping.txt "2024-04-01 07:00:00"
  echo "not in the list of single files" | put desk/other.txt "2024-04-01 07:00:00"
  mkdir -p "$demo/stick/copies" "$demo/nas/copies"
}

# Two sides of the same work: one file is newer here, one there, each side has one that the other lacks.
make_sides() {
  echo "Agenda: budget, holidays" | put office/meetings/agenda.txt "2024-05-02 09:00:00"
  echo "Agenda: budget" | put laptop/meetings/agenda.txt "2024-04-30 17:00:00"
  echo "Draft 1" | put office/report.txt "2024-05-01 12:00:00"
  echo "Draft 2, with figures" | put laptop/report.txt "2024-05-03 22:10:00"
  echo "Same on both sides" | put office/plan.txt "2024-03-01 08:00:00"
  echo "Same on both sides" | put laptop/plan.txt "2024-03-01 08:00:00"
  echo "Minutes of the meeting" | put office/meetings/minutes.txt "2024-05-02 11:30:00"
  echo "Ideas from the train" | put laptop/ideas.txt "2024-05-03 18:45:00"
}

# One object of the diagram: number, 0 path or 1 custom path object, 0 source or 1 destination, description, path,
# kind of path, left, top, links; single files (if any) behind a "--".
object() {
  local k=$1 j=0 link
  printf '%s\n' "${k}BackIndice = $k" "${k}BackTipoOggetto = $2" "${k}BackTipoTrasferimento = $3"
  local description=$4 path=$5 kind=$6 left=$7 top=$8
  shift 8
  while [[ $# -gt 0 && $1 != -- ]]; do
    link=$1 && shift
    printf '%s\n' "${k}BackLinkTo$j = $link"
    j=$((j + 1))
  done
  printf '%s\n' "${k}BackDescrizione = $description" "${k}BackPath = $path"
  if [[ $# -gt 0 ]]; then shift; fi
  j=0
  # The list ends with an empty entry.
  for link in "$@" ""; do
    printf '%s\n' "${k}Files$j = $link"
    j=$((j + 1))
  done
  printf '%s\n' "${k}BackTop = $top" "${k}BackLeft = $left" "${k}BackHeight = 735" "${k}BackWidth = 735" \
    "${k}BackFigura = $kind" "${k}BackFtpServerDescription = "
}

in_program_notation() { "$program" --folder "$home" path "$1"; }

write_profile() {
  local documents photos shopping stick nas
  documents=$(in_program_notation "$demo/documents")
  photos=$(in_program_notation "$demo/photos")
  shopping=$(in_program_notation "$demo/desk/shopping.txt")
  stick=$(in_program_notation "$demo/stick/copies")
  nas=$(in_program_notation "$demo/nas/copies")
  {
    printf '%s\n' "Backup_Path_0 =" "Backup_Path_1 =" "Backup_FTP_0 =" "Backup_FTP_1 =" "FixFileOption = 2" \
      "FixScanAfterFix = 0" "FtpEnabled = 0" "CompareMethod = 0" "TandemMode = 1" "SourceNotChange = 0" \
      "EraseFile = 0" "AutoTandemize = 0"
    object 1 1 0 "Documents" "$documents" 0 600 600 "USB stick" "NAS"
    object 2 1 0 "Photos" "$photos" 0 600 2400 "NAS"
    object 3 1 0 "Shopping list" "" 0 600 4200 "USB stick" -- "$shopping"
    object 4 1 1 "USB stick" "$stick" 0 4800 1200 "Documents" "Shopping list"
    object 5 1 1 "NAS" "$nas" 1 4800 3000 "Documents" "Photos"
  } | crlf >"$home/Config.cfg"
  printf '%s\n' "FilterBackup = -|*.tmp|*.bak|" "FilterIgnoreInvalidPath = 0" | crlf >"$home/Configb.adv"
}

write_synchronisation() {
  printf '%s\n' "Backup_Path_0 = $(in_program_notation "$demo/office")\\" \
    "Backup_Path_1 = $(in_program_notation "$demo/laptop")\\" "Backup_FTP_0 = " "Backup_FTP_1 = " \
    "FixFileOption = 2" "FixScanAfterFix = 0" "FtpEnabled = 0" "CompareMethod = 0" "TandemMode = 1" \
    "SourceNotChange = 0" "EraseFile = 0" "AutoTandemize = 0" | crlf >"$home/Work.cfg"
}

start_anew() {
  rm -rf "$demo"
  mkdir -p "$demo"
  make_sources
  make_sides
  "$program" --folder "$home" init
  sed -i 's/^Language = .*\r$/Language = 1\r/' "$home/GlobalSetting.dat"
  local root
  root=$(cd "$demo" && pwd)
  cat >"$home/Drives.dat" <<END
D: = fixed $root
E: = removable $root/stick
\\\\nas\\anna = $root/nas
END
  write_profile
  write_synchronisation
}

change_sources() {
  local n=1
  while [[ -e $demo/documents/letters/letter-$n.txt ]]; do n=$((n + 1)); done
  echo "Letter number $n" >"$demo/documents/letters/letter-$n.txt"
  echo "and coffee" >>"$demo/desk/shopping.txt"
  # The list of what was saved tells files by their dates, in whole seconds.
  touch -d "@$((1714557600 + 60 * n))" "$demo/desk/shopping.txt" "$demo/documents/letters/letter-$n.txt"
  say "Changed: desk/shopping.txt, new: documents/letters/letter-$n.txt"
  echo "Ideas, page $n" >"$demo/laptop/ideas-$n.txt"
  echo "and page $n" >>"$demo/office/report.txt"
}

show_diagram() {
  say "The diagram of $home/Config.cfg"
  cat <<'END'
  Documents      D:\documents          -->  USB stick, NAS
  Photos         D:\photos             -->  NAS
  Shopping list  D:\desk\shopping.txt  -->  USB stick
  USB stick is E:\copies, NAS is \\nas\anna\copies. The filter leaves out *.tmp and *.bak.
END
}

# The numbered log files in their order, as one text.
whole_log() { find "$home" -name 'LogFile*.txt' -print0 | sort -zV | xargs -0r cat | tr -d '\r'; }

# Runs the words with a preview first, and shows what the run itself writes into the log.
preview_and_run() {
  local before status=0
  tell_command "$@" --preview
  "$program" --folder "$home" "$@" --preview | sed 's/\t/  ->  /g'
  before=$(whole_log | wc -l)
  tell_command "$@"
  "$program" --folder "$home" "$@" || status=$?
  echo "Exit status $status"
  say "What it wrote into the log"
  whole_log | tail -n +"$((before + 1))"
  return "$status"
}

back_up() { preview_and_run backup --type "$1"; }

sides() { (cd "$demo" && find office laptop -type f -printf '%TY-%Tm-%Td %TH:%TM  %5s  %p\n' | sort -k4); }

synchronise() {
  say "Two sides of the same work have gone apart"
  sides
  preview_and_run --profile "$home/Work.cfg" sync
  say "Now they agree"
  sides
}

# Inode and path of each copy. A copy never reuses the file that it replaces, so a file copied anew has a new pair.
copies() { (cd "$demo" && find stick nas -type f -printf '%i %p\n'); }

show_copies() {
  local before=$1 inode path mark
  say "The copies; * is copied now"
  while read -r inode path; do
    mark='*'
    if grep -qxF "$inode $path" <<<"$before"; then mark=' '; fi
    (cd "$demo" && find "$path" -printf "$mark %TY-%Tm-%Td %TH:%TM  %9s  %p\n")
  done < <(copies | sort -k2)
  say "They lie in $demo/stick and $demo/nas."
}

if [[ $prepare == yes ]]; then
  if [[ $fresh == yes || ! -f $home/GlobalSetting.dat ]]; then
    start_anew
  elif [[ -f $home/FilesList.Dat ]]; then
    change_sources
  fi
  show_diagram
  say "The program folder is $home, the copies will lie in $demo/stick and $demo/nas."
  exit 0
fi

if [[ $fresh == no && -f $home/FilesList.Dat ]]; then
  before=$(copies)
  change_sources
  back_up incremental
else
  before=
  start_anew
  show_diagram
  back_up full
fi
show_copies "$before"
synchronise
say "./run again backs up and synchronises what changes, ./run fresh starts anew."
