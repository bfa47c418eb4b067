#!/usr/bin/env bash
# check_binary.sh LIBRARY MAP: what must hold of the library as it is shipped, whoever built it with
# whatever flags. Says each fault; gives 1 when there is one.
#
# The map is the linker's for this library; tests/binary/windows7_functions.txt says which functions
# Windows has had since when.
set -euo pipefail
library=$1
map=$2
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
table=$root/tests/binary/windows7_functions.txt
objdump=i686-w64-mingw32-objdump
faults=0

Fault() {
  echo "$(basename "$library"): $*"
  faults=$((faults + 1))
}

headers=$($objdump -p "$library" | tr '\t' ' ' | tr -s ' ')

# Header NAME PATTERN: a line of the headers.
Header() {
  grep -qE "^ *$1 *$2 *\$" <<<"$headers" ||
    Fault "$1 should be '$2' and is '$(grep -m1 -E "^ *$1" <<<"$headers" || true)'"
}

# Windows 7 and no console, nothing that changes from build to build, and what the system offers
# against attacks.
Header MajorOSystemVersion 6
Header MinorOSystemVersion 1
Header MajorSubsystemVersion 6
Header MinorSubsystemVersion 1
Header Subsystem '0*2 .*'
for hardening in DYNAMIC_BASE NX_COMPAT; do Header "$hardening" ''; done
grep -qE '^Time/Date (Thu Jan 1 00:00:00 1970|0*|.*not set.*)$' <<<"$headers" ||
  Fault "bears a time stamp: $(grep -m1 '^Time/Date' <<<"$headers")"

# A host's stack is aligned to 4 bytes. Only vector instructions and those that save their state
# need more, and the library is built without them: then no frame can be misaligned, realigned or
# not. Tables of exceptions lie behind the code in the same section, and are no instructions.
code_end=$(awk '$1 ~ /^\.gcc_except_table/ {
    address = $2
    if (address == "") { getline; address = $1 }
    if (address ~ /^0x0*[1-9a-f]/) { print address; exit }
  }' "$map")
code=$($objdump -d --no-show-raw-insn -j .text ${code_end:+--stop-address="$code_end"} "$library")
(($(wc -l <<<"$code") > 10000)) || Fault "hardly any code found to look at"
while read -r line; do
  Fault "needs an aligned stack or a processor's vectors: $line"
done < <(grep -E '%[xy]mm[0-9]|\s(fxsave|fxrstor|xsave|xrstor|cmpxchg16b)' <<<"$code" | head -5)

# Every function that it imports exists on Windows 7.
Known() { awk -v name="$1" -v module="${2:-}" '
  $2 == name && (module == "" || $1 == tolower(module)) { print $3; exit }' "$table"; }

while read -r module function; do
  since=$(Known "$function" "$module")
  [[ $since == 7 ]] ||
    Fault "imports $module $function, which is of Windows ${since:-unknown to $(basename "$table")}"
done < <(awk '
  /DLL Name:/ { module = $3 }
  module && $1 ~ /^[0-9a-f]+$/ && $2 ~ /^[0-9]+$/ && NF == 3 { print module, $3 }' <<<"$headers")

# Those that it asks for by name are in the table too: whoever adds one has looked it up.
while read -r function; do
  [[ -n $(Known "$function") ]] ||
    Fault "asks for $function, which $(basename "$table") does not know"
done < <(grep -rhE 'GetProcAddress|Function<|[Ff]ind\(' "$root/src" --include='*.cpp' |
  grep -oE '"_*[A-Z][A-Za-z0-9_]+"' | tr -d '"' | sort -u)

((faults == 0))
