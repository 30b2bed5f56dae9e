#!/usr/bin/env bash
# Installs what the other scripts need on Debian 12, by name. Quiet, and nothing to do on the second run.
set -u
. "$(dirname "$0")/env.sh"

packages=(
  # build
  cmake ninja-build g++ g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 mingw-w64-tools libz-mingw-w64-dev
  googletest nlohmann-json3-dev librapidxml-dev clang-format git librsvg2-bin
  # Windows programs
  wine64 libwine xvfb
  # what shows the panel's pages
  chromium
  # letters of every language of the user interface; marks of Wine's window frames
  fonts-tlwg-waree-ttf fonts-wine
  # spreadsheet and pictures of it
  libreoffice-calc python3 python3-uno poppler-utils fonts-dejavu-core fonts-liberation fonts-crosextra-carlito
  fonts-wqy-microhei
  # machine translation
  apertium apertium-eng-spa
  # words in pictures, and the text that is drawn in their place
  tesseract-ocr tesseract-ocr-eng tesseract-ocr-spa python3-gi python3-gi-cairo gir1.2-pango-1.0
  # certificates of the local service
  openssl
  # tests
  python3-pytest python3-openpyxl
)
# A Node.js that is there already serves as well as Debian's.
if ! command -v node >/dev/null 2>&1 || ! command -v npm >/dev/null 2>&1; then packages+=(nodejs npm); fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done

if [ ${#missing[@]} -gt 0 ]; then
  as_root=()
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null 2>&1 || die "Missing packages: ${missing[*]}. Install them, or run as root."
    as_root=(sudo)
  fi
  log=$(mktemp)
  say "Installing ${#missing[@]} packages (a few minutes on a bare machine)…"
  if ! { "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
      "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    die "The packages could not be installed: ${missing[*]}"
  fi
  rm -f "$log"
fi

# install_modules FOLDER WHAT — the npm packages that the folder's lock file names.
install_modules() {
  local modules=$1/node_modules log
  [ -e "$modules/.package-lock.json" ] && [ ! "$1/package-lock.json" -nt "$modules/.package-lock.json" ] && return 0
  log=$(mktemp)
  if ! (cd "$1" && npm ci --no-audit --no-fund) >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    die "The packages of $2 could not be installed."
  fi
  rm -f "$log"
  touch "$modules/.package-lock.json"
}

install_modules "$QV_ROOT/service" "the local service"
install_modules "$QV_ROOT/tests/e2e/node" "the agents' clients"
