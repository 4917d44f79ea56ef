#!/usr/bin/env bash
# Whether every source is formatted as .clang-format says. Exit status 77, skipped, where clang-format 14 is not there.
#   format.sh ROOT
set -euo pipefail
cd "$1"
if ! clang-format --version 2>/dev/null | grep -q 'version 14\.'; then
  echo "clang-format 14 is not installed: not checked"
  exit 77
fi
find src tests bench docs \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 clang-format --dry-run --Werror
