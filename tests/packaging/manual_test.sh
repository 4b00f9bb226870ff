#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# manual_test.sh PREFIX: mandoc has nothing to say about the installed manual pages.
set -euo pipefail
command -v mandoc >/dev/null || { echo "skipped: no mandoc"; exit 77; }
status=0
for page in "$1"/share/man/man?/*.gz; do
  gzip -dc "$page" | mandoc -T lint -W warning || { echo "^ $page"; status=1; }
done
exit "$status"
