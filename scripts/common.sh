# Sourced by the other scripts.

# Installs the Debian packages that are missing, and says so.
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
