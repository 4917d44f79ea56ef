#!/usr/bin/env bash
# How long a function, a file and a screen may be: 60, 500 and 700 lines. A definition begins at the left margin with
# a line that ends in "{" and ends with "}" there, which the formatter sees to; a "};" ends a type or a table.
#   budget.sh SRC
set -euo pipefail
cd "$1"
find . -name '*.cpp' -o -name '*.h' | sort | xargs awk '
  function close_file() {
    most = file ~ /\/(mod|frm)[A-Za-z]*\.(cpp|h)$/ ? 700 : 500
    if (lines > most) { printf "%s has %d lines, %d are allowed\n", file, lines, most; faults++ }
  }
  FNR == 1 { if (file != "") close_file(); file = FILENAME; begun = 0 }
  { lines = FNR }
  /^[A-Za-z].*\{$/ && !/^(namespace|class|struct|enum|union|extern) / { begun = FNR; name = $0 }
  /^\}/ {
    if (begun && !/^\};/ && FNR - begun + 1 > 60) {
      printf "%s:%d: %d lines, 60 are allowed: %s\n", file, begun, FNR - begun + 1, name; faults++
    }
    begun = 0
  }
  END { close_file(); if (faults) { printf "%d over the budget\n", faults; exit 1 } }'
