#!/usr/bin/env bash
# Whatever the tests of the screens have said to an embedded company must be what SQL Server takes too.
# sqlserver.sh KTLCOMPANY LOGS
set -euo pipefail
logs=("$2"/*.log)
if [[ ! -e ${logs[0]} ]]; then
  echo "No test of a screen has run."
  exit 77
fi
exec "$1" check "${logs[@]}"
