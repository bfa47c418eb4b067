#!/usr/bin/env bash
# Installs what building, running and testing need and this machine lacks (Debian and its kin).
# Done in a moment when nothing is missing.
set -euo pipefail

packages=(cmake ninja-build g++ g++-mingw-w64-i686-posix wine wine32:i386 fonts-wine xvfb xauth
  imagemagick googletest libbenchmark-dev clang-format clang-tidy clang libclang-rt-dev cppcheck
  zip)

Missing() {
  local package
  for package in "${packages[@]}"; do
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
      echo "$package"
  done
}

AsRoot() {
  if ((EUID == 0)); then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "setup: '$*' needs root: run this once as root, or install sudo" >&2
    return 1
  fi
}

Install() {
  dpkg --print-foreign-architectures | grep -qx i386 || AsRoot dpkg --add-architecture i386
  # A mirror may lag behind for one architecture; what it offers is enough as a rule.
  AsRoot apt-get -q update || echo "setup: the package index is not quite fresh; going on" >&2
  # Naming the suite keeps both architectures at one version, where libraries demand it.
  AsRoot env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends \
    -t "$suite" "$@"
}

if ! command -v apt-get >/dev/null; then
  echo "setup: no apt-get here; these Debian packages are needed: ${packages[*]}" >&2
  exit 1
fi
mapfile -t missing < <(Missing)
((${#missing[@]})) || exit 0

suite=$(. /etc/os-release && echo "${VERSION_CODENAME:-stable}")
echo "setup: installing ${missing[*]}"
for attempt in first second; do
  if Install "${missing[@]}"; then
    break
  fi
  echo "setup: the $attempt attempt failed" >&2
done
mapfile -t missing < <(Missing)
if ((${#missing[@]})); then
  echo "setup: could not install: ${missing[*]} (suite $suite; see the messages above)" >&2
  exit 1
fi
