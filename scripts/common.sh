# Sourced by the other scripts.

# With --help as the first argument, prints the comment at the top of the script and exits.
show_help() {
  case ${1:-} in -h | --help) ;; *) return 0 ;; esac
  sed -n '2,/^[^#]/ s/^# \{0,1\}//p' "$0"
  exit
}

# Runs apt-get as root. Waits for up to ten minutes if another one is at work.
apt() {
  local command=(env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=5 "$@") output
  local deadline=$((SECONDS + 600))
  [ "$(id -u)" -eq 0 ] || command=(sudo "${command[@]}")
  until output=$(quietly "${command[@]}"); do
    if ((SECONDS > deadline)) || ! grep -q 'Could not get lock' <<<"$output"; then
      printf '%s\n' "$output"
      return 1
    fi
    echo "Another apt is at work; waiting for it."
    sleep 5
  done
}

# Installs the Debian packages that are missing and prints their names.
ensure_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local install=(install -y -qq --no-install-recommends "${missing[@]}")
  if [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; then
    echo "Installing what is missing: ${missing[*]}"
    { apt update -qq && apt "${install[@]}"; } && return
  fi
  echo "Packages are missing. Run this as root, then try again:"
  echo "  apt-get update && apt-get install --no-install-recommends ${missing[*]}"
  return 1
}

# Runs a command and shows its output only if it fails. Of one that takes long, prints the last line to standard error from
# time to time.
quietly() {
  local output status=0 ticker
  output=$(mktemp)
  (while sleep 30 >/dev/null 2>&1 && kill -0 $$ 2>/dev/null; do tail -n 1 "$output" | cut -c 1-100 | sed 's/^/  ... /'; done) >&2 &
  ticker=$!
  "$@" >"$output" 2>&1 || status=$?
  kill "$ticker"
  wait "$ticker" 2>/dev/null || true
  [ "$status" -eq 0 ] || cat "$output"
  rm -f "$output"
  return "$status"
}

windows_packages=(g++-mingw-w64-x86-64-posix wine64 googletest)

# Keeps Wine's server running for programs of the preset windows until this script ends; otherwise each test would start its
# own. A first program starts Wine's services, which would otherwise keep a later program's output open while they run.
keep_wine_running() {
  export LC_ALL=C.UTF-8 WINEPREFIX=$top/build/windows/wine
  mkdir -p "$WINEPREFIX"
  trap '/usr/lib/wine/wineserver64 -k || true' EXIT
  /usr/lib/wine/wineserver64 -p >/dev/null 2>&1 || true  # it is already running
  "$top/scripts/wine" cmd /c exit >/dev/null 2>&1 </dev/null
}
