#!/usr/bin/env bash
# clang-tidy over the rules that money follows. Exit status 77, skipped, where it is not installed.
#   tidy.sh ROOT
set -euo pipefail
cd "$1"
if ! command -v clang-tidy >/dev/null; then
  echo "clang-tidy is not installed: not checked"
  exit 77
fi
clang-tidy --quiet src/common/*.cpp src/instructions/{advloan_*,premium_*,schedule*,total_interest}.cpp \
  src/premium/premium_{data,entry,write}.cpp \
  src/recovery/{adjustment*,emi_entry,receipt_entry,reducing_interest}.cpp -- -std=c++20 -Isrc -DFMT_SHARED
