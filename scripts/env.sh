# Sourced by the other scripts: where things are and the Wine they run under.
# shellcheck shell=bash

QV_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
QV_BUILD=${QV_BUILD:-$QV_ROOT/build}
QV_BIN=$QV_BUILD/windows/bin
# Certificates of the local service; scripts/make_authority.sh makes them.
QV_TLS=$QV_BUILD/tls
# Debian's python3: the one that has the UNO bindings and openpyxl.
QV_PYTHON=/usr/bin/python3
QV_WINE=/usr/lib/wine/wine64
QV_WINESERVER=/usr/lib/wine/wineserver64
export QV_ROOT QV_BUILD QV_BIN QV_TLS QV_PYTHON QV_WINE QV_WINESERVER

export WINEPREFIX=${QV_WINEPREFIX:-$QV_BUILD/wine-prefix}
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# Gecko and Mono are not wanted; without winedbg a crash ends the process with an exit code instead of a dialog.
# Beside a program that has it, the stand-in for the HTTP Server API goes before Wine's own.
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d;httpapi=n,b"

# Programs that Windows has and Wine lacks, and what a test adds: Windows folders, separated by ";".
WINEPATH="Z:${QV_BIN//\//\\}\\tools${QV_WINE_PATH:+;$QV_WINE_PATH}"
export WINEPATH

say() { printf '%s\n' "$*"; }
die() { printf '%s\n' "$*" >&2; exit 1; }

# Makes the scratch prefix once. Dialogs close at once without a window manager, crashes show no dialog.
prepare_prefix() {
  [ -e "$WINEPREFIX/.quorvantis-ready" ] && prepare_fonts && return 0
  mkdir -p "$(dirname "$WINEPREFIX")"
  "$QV_WINE" wineboot.exe --init >/dev/null 2>&1 || die "The Wine prefix could not be created."
  "$QV_WINE" reg.exe add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1
  "$QV_WINE" reg.exe add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1
  "$QV_WINESERVER" -w
  : >"$WINEPREFIX/.quorvantis-ready"
  prepare_fonts
}

# Wine draws a script that has to be shaped only with the font that was asked for, and borrows the glyphs of all others
# from linked fonts. So the hosts' user-interface fonts become one with Arabic, Cyrillic and Vietnamese, and ideographs
# are linked to it and to the fonts of workbooks.
prepare_fonts() {
  [ -e "$WINEPREFIX/.quorvantis-fonts" ] && return 0
  local font key='HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontLink\SystemLink'
  for font in 'Segoe UI' 'Microsoft YaHei UI' 'MS Shell Dlg' 'MS Shell Dlg 2' Tahoma; do
    "$QV_WINE" reg.exe add 'HKCU\Software\Wine\Fonts\Replacements' /v "$font" /t REG_SZ /d 'DejaVu Sans' /f >/dev/null 2>&1
  done
  for font in 'Microsoft Sans Serif' Tahoma 'DejaVu Sans' 'DejaVu Sans Bold' 'Liberation Sans' 'Liberation Sans Bold' \
    Carlito 'Carlito Bold'; do
    "$QV_WINE" reg.exe add "$key" /v "$font" /t REG_MULTI_SZ /f \
      /d 'DejaVuSans.ttf,DejaVu Sans\0wqy-microhei.ttc,WenQuanYi Micro Hei' >/dev/null 2>&1
  done
  # The signs on the buttons of window frames.
  ln -sf /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
  : >"$WINEPREFIX/.quorvantis-fonts"
}

# Answers the first-run welcome beforehand, so that its box stays away from scripted windows.
skip_welcome() {
  "$QV_WINE" reg.exe add 'HKCU\Software\Quorvantis' /v WelcomeShown /t REG_DWORD /d 1 /f >/dev/null 2>&1
}

# A display of our own where there is none; ended by stop_started.
QV_STARTED=()
start_display() {
  [ -n "${DISPLAY:-}" ] && return 0
  local ready
  ready=$(mktemp)
  Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$ready" >/dev/null 2>&1 &
  QV_STARTED+=($!)
  for _ in $(seq 200); do [ -s "$ready" ] && break; sleep 0.05; done
  [ -s "$ready" ] || die "Xvfb did not start."
  DISPLAY=:$(cat "$ready")
  export DISPLAY
  rm -f "$ready"
}

# start_service LOGFILE ARGS… — the local service on a free port; sets QV_SERVICE_URL. With "--tls $QV_TLS" over
# https, and whoever uses it trusts $QV_TLS/authority.pem.
start_service() {
  local log=$1
  shift
  : >"$log"
  node "$QV_ROOT/service/server.js" --port 0 "$@" >"$log" 2>&1 </dev/null &
  QV_STARTED+=($!)
  for _ in $(seq 200); do
    QV_SERVICE_URL=$(sed -n 's/^listening \(http[^ ]*\).*/\1/p' "$log" | head -n 1)
    [ -n "$QV_SERVICE_URL" ] && break
    sleep 0.05
  done
  [ -n "$QV_SERVICE_URL" ] || { cat "$log" >&2; die "The local service did not start."; }
  export QV_SERVICE_URL
}

# Ends what this script started, by id.
stop_started() {
  local pid
  for pid in "${QV_STARTED[@]}"; do kill "$pid" 2>/dev/null; done
  for pid in "${QV_STARTED[@]}"; do wait "$pid" 2>/dev/null; done
  QV_STARTED=()
  return 0
}
