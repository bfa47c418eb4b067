#!/usr/bin/env bash
# Writes docs/host-reference.md: every export with its contract from include/zefext.h and its example
# from examples/reference.c. With --check, writes nothing and fails when the page is not up to date
# or an export has no contract or no example.
set -euo pipefail
cd "$(dirname "$0")/.."
page=docs/host-reference.md

Reference() {
  awk '
    FNR == NR {
      # An example begins at a comment that is its function name alone.
      if ($0 ~ /^ *\/\* ([A-Za-z0-9]+) \*\/$/) {
        name = $2
        indent = match($0, /[^ ]/) - 1
        if (name == "end") name = ""
        next
      }
      if ($0 ~ /^}/) name = ""
      if (name != "") example[name] = example[name] substr($0, indent + 1) "\n"
      next
    }
    /^\/\* ---- / {
      title = $0
      sub(/^\/\* -+ /, "", title)
      sub(/ -+ \*\/$/, "", title)
      printf "\n## %s\n", title
      next
    }
    /^\/\*/ { comment = ""; inside = 1 }
    inside {
      line = $0
      ended = sub(/ ?\*\/$/, "", line)
      sub(/^(\/\*| \*) ?/, "", line)
      comment = comment line "\n"
      if (ended) inside = 0
      next
    }
    # Types and their values, with what is said of them.
    /^(typedef|enum) / {
      sub(/\n+$/, "", comment)
      if (title && comment != "") { print ""; Paragraphs(comment) }
      comment = ""
      if (/^enum/) { values = 1; printf "\n```c\n" }
    }
    values { print }
    values && /^};/ { values = 0; print "```" }
    values || /^(typedef|};)/ { next }
    /^[a-zA-Z].*ZEFEXT_API / || prototype != "" {
      prototype = prototype $0 "\n"
      if ($0 !~ /;$/) next
      match(prototype, /ZEFEXT_API [A-Za-z0-9]+/)
      name = substr(prototype, RSTART + 11, RLENGTH - 11)
      code = example[name]
      delete example[name]
      sub(/\n+$/, "", comment)
      printf "\n### %s\n\n```c\n%s```\n\n", name, prototype
      if (comment == "") { print "no contract of " name >"/dev/stderr"; failed = 1 }
      Paragraphs(comment)
      if (code == "") { print "no example of " name >"/dev/stderr"; failed = 1 }
      printf "\n```c\n%s```\n", code
      prototype = comment = ""
      next
    }
    /^$/ { }
    function Paragraphs(text,   lines, count, i, aligned) {
      count = split(text, lines, "\n")
      for (i = 1; i <= count; ++i) {
        # Aligned lists stay as they are.
        if (lines[i] ~ /^  / && !aligned) { aligned = 1; print "```text" }
        if (lines[i] !~ /^  / && aligned) { aligned = 0; print "```" }
        print lines[i]
      }
      if (aligned) print "```"
    }
    END {
      for (name in example) {
        if (example[name] != "") { print "no function " name >"/dev/stderr"; failed = 1 }
      }
      exit failed
    }
  ' examples/reference.c include/zefext.h
}

Page() {
  echo "# Reference of zefext.dll"
  echo
  echo "Made from \`include/zefext.h\` and \`examples/reference.c\` by \`scripts/host_reference.sh\`."
  echo "How to load, bind, call and unload: [host-guide.md](host-guide.md)."
  Reference
}

if [[ ${1:-} == --check ]]; then
  Page | diff -u "$page" - || { echo "$page is out of date: run scripts/host_reference.sh"; exit 1; }
else
  Page >"$page.new" && mv "$page.new" "$page"
fi
