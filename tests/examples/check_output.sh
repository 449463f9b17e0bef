#!/usr/bin/env bash
# Runs a command and compares what it prints with a file: check_output.sh EXPECTED COMMAND...
set -euo pipefail

expected=$1
shift
"$@" | diff "$expected" -
