# Sourced by the other scripts.

# Installs the Debian packages that are missing and prints their names.
ensure_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing what is missing: ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq
  quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Runs a command and shows its output only if it fails.
quietly() {
  local output
  output=$("$@" 2>&1) && return
  local status=$?
  printf '%s\n' "$output"
  return $status
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
