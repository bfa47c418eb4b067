# Sourced: a Wine of our own under build/, a virtual display, and Windows programs run in both.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

export WINEPREFIX=$root/build/prefix
export WINEARCH=win32
# No offers to install .NET or a web engine, no trace output.
export WINEDLLOVERRIDES="mscoree=;mshtml="
export WINEDEBUG=-all
# A western ANSI code page, whatever the user's language.
export LC_ALL=C.UTF-8

# Programs that are driven by a script run inside one virtual desktop, where windows get real
# captions without a window manager. Large enough for the largest dialog at 144 DPI.
driven_programs=(outside_tests.exe host_utf8.exe host_bare.exe outside_bench.exe
  platform_tests.exe tour.exe)
desktop_size=1600x1200
prefix_revision="5 $(wine --version 2>/dev/null || true)"

displays_started=()

# A display of our own, whatever display the user has: scripted input must not meet a real user's.
StartDisplay() {
  local number log=$root/build/display
  mkdir -p "$root/build"
  : >"$log"
  Xvfb -displayfd 5 -screen 0 "${desktop_size}x24" -nolisten tcp 5>"$log" 2>/dev/null &
  displays_started+=($!)
  for _ in {1..100}; do
    number=$(<"$log")
    [[ -n $number ]] && break
    sleep 0.1
  done
  [[ -n $number ]] || { echo "the virtual display did not start" >&2; return 1; }
  export DISPLAY=:$number
}

# An empty drive D: on another file system than C:, where this machine has one: moving from one volume
# to another is not renaming.
EnsureSecondDrive() {
  local folder=/dev/shm/zefext_drive_$(id -u)_$(cksum <<<"$root" | cut -d' ' -f1)
  mkdir -p "$folder" 2>/dev/null || folder=$root/build/drive_d
  mkdir -p "$folder"
  # What a run that was cut short left there would refuse a move.
  find "$folder" -mindepth 1 -delete
  ln -sfn "$folder" "$WINEPREFIX/dosdevices/d:"
}

# Makes the prefix, or makes it anew when it was made by another Wine or an older recipe. Needs a
# display.
EnsurePrefix() {
  local stamp=$WINEPREFIX/made_by program
  if [[ -f $stamp && $(<"$stamp") == "$prefix_revision" ]]; then
    EnsureSecondDrive
    return
  fi
  echo "Preparing Wine"
  StopWine
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  timeout 180 wine wineboot --init >/dev/null 2>&1 || { echo "wineboot failed" >&2; return 1; }
  cp /usr/share/wine/fonts/*.ttf /usr/share/wine/fonts/*.fon "$WINEPREFIX/drive_c/windows/Fonts/"
  {
    printf 'REGEDIT4\n\n'
    printf '[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]\n"zef"="%s"\n\n' "$desktop_size"
    for program in "${driven_programs[@]}"; do
      printf '[HKEY_CURRENT_USER\\Software\\Wine\\AppDefaults\\%s\\Explorer]\n"Desktop"="zef"\n\n' \
        "$program"
    done
    # A crash must end the program, not wait for someone to press a button.
    printf '[HKEY_CURRENT_USER\\Software\\Wine\\WineDbg]\n"ShowCrashDialog"=dword:00000000\n'
  } >"$WINEPREFIX/drive_c/settings.reg"
  timeout 60 wine regedit /S 'C:\settings.reg' || { echo "Wine's settings failed" >&2; return 1; }
  wineserver -w
  EnsureSecondDrive
  echo "$prefix_revision" >"$stamp"
}

# RunWindows SECONDS PROGRAM [ARGUMENT...]: runs to its end and gives its exit code; one that takes
# longer is ended with everything else in the prefix, and gives 124.
RunWindows() {
  local seconds=$1 status=0
  shift
  timeout --kill-after=5 "$seconds" wine "$@" || status=$?
  if ((status == 124 || status == 137)); then
    echo "$(basename "$1") was still running after $seconds seconds" >&2
    StopWine
    status=124
  fi
  return $status
}

# TakeTour DIRECTORY [DPI | contrast]: gives the number of stops that could not be made.
TakeTour() {
  local arguments=() status=0 desktop='HKCU\Control Panel\Desktop'
  case ${2:-} in
    '') ;;
    contrast) arguments=(--contrast) ;;
    *) wine reg add "$desktop" /v LogPixels /t REG_DWORD /d "$2" /f >/dev/null && wineserver -k ;;
  esac
  RunWindows 900 "$root/build/win32/bin/tour.exe" "$(winepath -w "$(realpath "$1")" 2>/dev/null)" \
    "${arguments[@]}" || status=$?
  # A prefix is made for 96.
  [[ ${2:-} != [0-9]* ]] || wine reg add "$desktop" /v LogPixels /t REG_DWORD /d 96 /f >/dev/null
  return $status
}

StopWine() {
  [[ -d $WINEPREFIX ]] || return 0
  wineserver -k 2>/dev/null || true
}

StopDisplays() {
  local pid
  for pid in "${displays_started[@]}"; do
    kill "$pid" 2>/dev/null || true
  done
  displays_started=()
}
