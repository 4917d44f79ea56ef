#!/usr/bin/env bash
# Makes a folder, or what is in it go.
set -euo pipefail
rm -rf "$1"
mkdir -p "$1"
