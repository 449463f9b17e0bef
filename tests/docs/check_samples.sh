#!/usr/bin/env bash
# Runs the commands of a page's console blocks and compares what they print with what stands below them:
# check_samples.sh TOOL PAGE
set -euo pipefail
export LC_ALL=C

tool=$1 page=$2
PATH=$(dirname "$tool"):$PATH
export PATH

shown=$(awk '/^```console$/ {inside = 1; next} /^```$/ {inside = 0} inside' "$page")
commands=$(grep '^\$ ' <<<"$shown") || { echo "$page shows no commands." >&2; exit 1; }

printed=$(while IFS= read -r command; do
    printf '%s\n' "$command"
    bash -c "${command#\$ }" 2>&1 || true
done <<<"$commands")
diff <(echo "$shown") <(echo "$printed") ||
    { echo "$page shows something else than the commands print (< page, > printed)." >&2; exit 1; }
