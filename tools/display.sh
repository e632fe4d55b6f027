# shellcheck shell=bash
# Tells whether a person sits in front of this machine; for `run`, which sources this file; bash only.

# Packages besides desktop_packages that the display asks for, set by has_display.
# shellcheck disable=SC2034
display_packages=()
# shellcheck disable=SC2034,SC2154
package_use[qt6-wayland]="the windows' library on a Wayland display"

# Whether something accepts connections on a socket. Perl belongs to every Debian system.
socket_answers() {
  perl -MSocket -e '
    my $to = $ARGV[0] eq "unix" ? pack_sockaddr_un($ARGV[1])
                                : pack_sockaddr_in($ARGV[2], inet_aton($ARGV[1]) // exit 1);
    my $s;
    alarm 3;
    socket($s, $ARGV[0] eq "unix" ? AF_UNIX : AF_INET, SOCK_STREAM, 0) && connect($s, $to) or exit 1;' "$@"
}

# An X display is ":0", "host:0" or "/some/socket:0", perhaps with the number of a screen behind a dot.
x_display_answers() {
  local name=${DISPLAY-} host number
  [[ $name =~ ^(.*):([0-9]+)(\.[0-9]+)?$ ]] || return 1
  host=${BASH_REMATCH[1]} number=${BASH_REMATCH[2]}
  case $host in
    "" | unix) socket_answers unix "/tmp/.X11-unix/X$number" ;;
    /*) socket_answers unix "$host" || socket_answers unix "$host:$number" ;;
    *) socket_answers inet "$host" $((6000 + number)) ;;
  esac
}

wayland_display_answers() {
  local name=${WAYLAND_DISPLAY-}
  [[ -n $name ]] || return 1
  if [[ $name != /* ]]; then name=${XDG_RUNTIME_DIR-}/$name; fi
  socket_answers unix "$name"
}

has_display() {
  if x_display_answers 2>/dev/null; then return 0; fi
  if ! wayland_display_answers 2>/dev/null; then return 1; fi
  display_packages=(qt6-wayland)
}
